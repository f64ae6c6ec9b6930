#pragma once

#include "MemoryFileSystem.h"

#include "jet/table/TableInternals.h"

#include <memory>
#include <string>
#include <vector>

/// A copy of an empty database, in memory, to try things in.
class ScratchFile {
public:
    ScratchFile();
    /// A copy of the sample with this name.
    explicit ScratchFile(const std::string& sample);

    jet::Pager& Pager() { return *m_pager; }
    jet::PageAllocator& Pages() { return *m_pages; }
    /// Closes and opens again, so that nothing kept in memory can help.
    void Reopen();

private:
    jet_testing::MemoryFileSystem m_files;
    std::unique_ptr<jet::Pager> m_pager;
    std::unique_ptr<jet::PageAllocator> m_pages;
};

/// Columns and indexes as a test writes them down; numbers, places and maps are filled in.
struct TableSketch {
    std::vector<jet::Column> columns;
    std::vector<jet::PhysicalIndex> indexes; ///< columns by position
    bool firstIsPrimary = false;

    int Add(const std::string& name, jet::ColumnType type, int size = 0, bool fixed = true);
    void Index(std::vector<jet::IndexColumn> columns, bool unique = false,
               bool ignoreNulls = false);
};

/// Makes the table's pages, outside any catalog.
jet::TableDefinition MakeTable(ScratchFile& file, const TableSketch& sketch);
std::unique_ptr<jet::Table> OpenTable(ScratchFile& file, jet::PageNumber page,
                                      const std::string& name = "Proef");

/// All pages that are neither free nor named by the table or by the parts of an empty file.
/// After everything was erased none may be left.
std::size_t CountPagesInUse(ScratchFile& file);
