#pragma once

#include "jet/base/Error.h"
#include "jet/base/Flush.h"
#include "jet/catalog/OpenOptions.h"
#include "jet/dao/Database.h"

#include <filesystem>
#include <memory>

namespace jet {

class FileSystem;
class SessionGroup;

/// Opens databases and holds the transactions over all of them. One thread.
///
///     jet::Workspace workspace;
///     auto db = workspace.OpenDatabase("boezem.mdb");
///     workspace.BeginTrans();
///     db->Execute("DELETE * FROM Resultaat WHERE Berekening_ID=3");
///     workspace.CommitTrans(jet::Flush::Yes);
class Workspace {
public:
    Workspace();
    /// Over another file system than the computer's; `files` must outlive this.
    explicit Workspace(FileSystem& files);
    /// Databases still open are closed; an open transaction is rolled back.
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// Throws FileNotFound, AccessDenied, Locked, NotADatabase, Unsupported,
    /// ReadOnly (a file that can only be read was to be written), Damaged.
    std::unique_ptr<Database> OpenDatabase(const std::filesystem::path& path,
                                           const OpenOptions& options = {});
    /// A new, empty database, opened exclusively. Throws AlreadyExists.
    std::unique_ptr<Database> CreateDatabase(const std::filesystem::path& path);

    /// Nested up to any depth. Throws NoTransaction from the last two.
    void BeginTrans();
    void CommitTrans(Flush flush = Flush::No);
    void Rollback();
    int TransactionDepth() const;

private:
    std::shared_ptr<SessionGroup> m_group;
};

/// Rewrites `path` without lost space. The original is replaced only when the
/// copy has passed Check. The file must not be open.
void CompactDatabase(const std::filesystem::path& path);

} // namespace jet
