#pragma once

#include "MemoryFileSystem.h"
#include "jet/dao/Workspace.h"
#include "jet/table/TableDefinition.h"

#include <functional>
#include <string>

/// A small database in memory whose pages a test can damage byte by byte.
///
/// It holds table "Dijk": Id (autonumber, primary key), Naam (text, indexed),
/// Verhaal (memo), 400 rows; every tenth row has a memo of 9,000 characters, the
/// others one of 200. Some rows have grown and moved.
class DamagedFile {
public:
    DamagedFile();

    jet::TableDefinition Definition();
    /// Bytes of a page as they are now.
    jet_testing::Bytes Page(jet::PageNumber page) const;
    void Change(jet::PageNumber page, const std::function<void(std::span<std::byte>)>& damage);

    jet::PageNumber RowPage();                ///< the first with rows of the table
    std::vector<jet::PageNumber> MemoPages(); ///< with parts of memos

    jet::CheckReport Check();
    jet_testing::MemoryFileSystem& Files() { return m_files; }

    static constexpr const char* kName = "boezem.mdb";

private:
    jet_testing::MemoryFileSystem m_files;
};

/// Whether one of `texts` holds `part`.
bool Mentions(const std::vector<std::string>& texts, const std::string& part);
