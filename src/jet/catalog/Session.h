#pragma once

#include "jet/base/Error.h"
#include "jet/catalog/Catalog.h"
#include "jet/catalog/OpenOptions.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace jet {

/// Whoever holds pages or tables of a file for longer than one call: a
/// recordset, a prepared statement. It is told when the file closes under it,
/// so that nothing of the file is held when its pages go.
class SessionUser {
public:
    /// Let go of every Table, scan and page. Called once at most.
    virtual void FileCloses() noexcept = 0;
    /// Whether it stands on this table, so that the table cannot be dropped,
    /// renamed or lose a column now.
    virtual bool Uses(std::string_view table) const = 0;

protected:
    ~SessionUser() = default;
};

class SessionGroup;

/// One open file, as the layers above the catalog share it: its pages, its
/// tables, and the group of files whose transactions go together.
class Session {
public:
    Session(std::shared_ptr<SessionGroup> group, std::filesystem::path path,
            std::unique_ptr<Pager> pager);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    bool IsOpen() const { return m_pager != nullptr; }
    /// Both throw Closed once the file is closed.
    Pager& File() const;
    Catalog& Tables() const;
    SessionGroup& Group() const { return *m_group; }

    /// Tells the users, rolls an open transaction back, frees the file.
    void Close() noexcept;

    void Enter(SessionUser& user);
    void Leave(SessionUser& user) noexcept; ///< no effect when it is not in
    /// Throws InUse when a user stands on the table.
    void RefuseWhileInUse(std::string_view table) const;

private:
    std::shared_ptr<SessionGroup> m_group;
    std::filesystem::path m_path;
    std::unique_ptr<Pager> m_pager;
    std::unique_ptr<Catalog> m_catalog;
    std::vector<SessionUser*> m_users; // not owned
};

/// The files open together, and the transaction over all of them. A commit is
/// atomic for each file, not over several files at once.
class SessionGroup : public std::enable_shared_from_this<SessionGroup> {
public:
    /// `files` must outlive the group.
    explicit SessionGroup(FileSystem& files) : m_files(files) {}

    /// See Workspace::OpenDatabase for the errors.
    std::shared_ptr<Session> Open(const std::filesystem::path& path, const OpenOptions& options);
    std::shared_ptr<Session> Create(const std::filesystem::path& path);
    /// The open session on this file, nullptr when there is none here.
    std::shared_ptr<Session> Find(const std::filesystem::path& path) const;
    void CloseAll() noexcept;

    void Begin();
    /// When one file fails to commit, the transaction stays open and only a
    /// roll-back is possible; files committed before it stay committed.
    void Commit(Flush flush);
    void Rollback();
    int Depth() const { return m_depth; }

private:
    std::shared_ptr<Session> Join(const std::filesystem::path& path, std::unique_ptr<Pager> pager);
    std::vector<std::shared_ptr<Session>> Sessions() const;

    FileSystem& m_files;
    std::vector<std::weak_ptr<Session>> m_sessions;
    int m_depth = 0;
};

/// Makes a change of several rows all or nothing, inside a transaction too:
/// without Done() everything since the construction is undone.
class AllOrNothing {
public:
    explicit AllOrNothing(Pager& pager);
    ~AllOrNothing();
    AllOrNothing(const AllOrNothing&) = delete;
    AllOrNothing& operator=(const AllOrNothing&) = delete;

    void Done();

private:
    Pager& m_pager;
    bool m_done = false;
};

} // namespace jet
