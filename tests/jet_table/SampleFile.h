#pragma once

#include "jet/storage/Pager.h"
#include "jet/table/Table.h"

#include <memory>
#include <string>
#include <vector>

/// A sample database opened by its pages alone: its tables are found through the
/// rows of the system table that stands on page 2 in every file.
class SampleFile {
public:
    /// Opens the original read-only, or (with `access` ReadWrite) `path` as it is.
    explicit SampleFile(const std::string& name);
    explicit SampleFile(const std::filesystem::path& path, jet::Access access);

    jet::Pager& Pager() { return *m_pager; }
    jet::PageAllocator& Pages() { return *m_pages; }
    /// Definition pages of all tables, system tables too, by name.
    const std::vector<std::pair<std::string, jet::PageNumber>>& Tables() const { return m_tables; }
    std::unique_ptr<jet::Table> Open(jet::PageNumber page, const std::string& name = "T");

    static std::filesystem::path Folder();
    static std::vector<std::string> Names();
    static std::vector<std::string> WritableNames(); ///< those that are Jet 4

private:
    void FindTables();

    std::unique_ptr<jet::Pager> m_pager;
    std::unique_ptr<jet::PageAllocator> m_pages;
    std::vector<std::pair<std::string, jet::PageNumber>> m_tables;
};

jet::Bytes ReadWholeFile(const std::filesystem::path& path);
