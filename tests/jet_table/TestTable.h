#pragma once

#include "ScratchTable.h"

#include "jet/base/Error.h"

#include <gtest/gtest.h>

/// A table "Proef" in a file of its own, for a test to change.
struct TestTable {
    ScratchFile file;
    std::unique_ptr<jet::Table> table;

    explicit TestTable(const TableSketch& sketch)
    {
        const jet::TableDefinition definition = MakeTable(file, sketch);
        table = OpenTable(file, definition.page);
    }

    jet::RowId Insert(jet::Row row) { return table->Insert(row); }
    void Update(jet::RowId row, std::vector<jet::Table::Change> changes)
    {
        table->Update(row, changes);
    }

    jet::Column& ColumnAt(int column)
    {
        return table->Internals().definition.columns[static_cast<std::size_t>(column)];
    }

    /// `change` is refused with an error of this kind that names `names`, and no page is touched.
    template <typename Change>
    void ExpectRefused(jet::ErrorKind kind, std::vector<std::string> names, Change change)
    {
        const std::uint64_t before = file.Pager().ChangeCount();
        try {
            change();
            ADD_FAILURE() << "not refused";
        } catch (const jet::Error& error) {
            EXPECT_EQ(error.Kind(), kind) << error.what();
            for (const std::string& name : names)
                EXPECT_NE(std::string(error.what()).find("\"" + name + "\""), std::string::npos)
                    << error.what();
        }
        EXPECT_EQ(file.Pager().ChangeCount(), before) << "pages were touched";
    }

    void ExpectInsertRefused(jet::ErrorKind kind, std::vector<std::string> names, jet::Row row)
    {
        ExpectRefused(kind, std::move(names), [&] { table->Insert(row); });
    }
};

inline TableSketch NumberAndText()
{
    TableSketch sketch;
    sketch.Add("Nummer", jet::ColumnType::Long);
    sketch.Add("Naam", jet::ColumnType::Text, 250);
    return sketch;
}

/// Bytes that differ with the seed.
inline jet::Bytes Pattern(std::size_t length, int seed = 1)
{
    jet::Bytes bytes(length);
    for (std::size_t i = 0; i < length; ++i)
        bytes[i] = static_cast<std::byte>((i * 7 + static_cast<std::size_t>(seed)) % 251);
    return bytes;
}
