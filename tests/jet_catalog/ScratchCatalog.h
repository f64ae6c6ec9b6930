#pragma once

#include "MemoryFileSystem.h"
#include "jet/catalog/Catalog.h"
#include "jet/catalog/Session.h"
#include "jet/upkeep/Check.h"

#include <gtest/gtest.h>

/// A new database in memory, with its catalog.
class ScratchCatalog {
public:
    ScratchCatalog()
    {
        const jet::Bytes pages = jet::Catalog::EmptyFile(jet::DateTime::FromCivil(2020, 5, 17, 9));
        m_files.Put("kladblok.mdb", pages);
        Reopen();
    }

    void Reopen()
    {
        m_catalog.reset();
        m_pager.reset();
        m_pager = jet::Pager::Open(m_files, "kladblok.mdb", {});
        m_catalog = std::make_unique<jet::Catalog>(*m_pager);
    }

    jet::Pager& Pager() { return *m_pager; }
    jet::Catalog* operator->() { return m_catalog.get(); }
    jet::Catalog& operator*() { return *m_catalog; }

    /// The rows of a table in page order.
    std::vector<jet::Row> Rows(std::string_view name)
    {
        const auto table = m_catalog->Open(name);
        std::vector<jet::Row> rows;
        for (jet::TableScan scan(*table); scan.Next();)
            rows.push_back(scan.GetRow());
        return rows;
    }

    jet::RowId Insert(std::string_view name, jet::Row row)
    {
        return m_catalog->Open(name)->Insert(row);
    }

    /// Nothing to report at all, remarks included.
    void ExpectSpotless()
    {
        const jet::CheckReport report = jet::CheckFile(*m_pager);
        EXPECT_EQ(report.faults, std::vector<std::string>());
        EXPECT_EQ(report.remarks, std::vector<std::string>());
    }

private:
    jet_testing::MemoryFileSystem m_files;
    std::unique_ptr<jet::Pager> m_pager;
    std::unique_ptr<jet::Catalog> m_catalog;
};

/// The kind of the error that `action` throws; a failure when it throws none.
template <typename Action>
std::optional<jet::ErrorKind> KindOf(Action&& action)
{
    try {
        action();
    } catch (const jet::Error& error) {
        EXPECT_NE(std::string_view(error.what()), "");
        return error.Kind();
    }
    ADD_FAILURE() << "no error was thrown";
    return std::nullopt;
}
