#pragma once

#include "TemporaryFolder.h"
#include "jet/dao/Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jet::testing {

/// One row as texts, the fields joined by "|", a null as "null".
std::string RowText(Recordset& rows);
std::string TypeName(ColumnType type);
std::optional<ErrorKind> KindNamed(std::string_view name);
std::string KindName(ErrorKind kind);

/// An empty database in a folder of its own.
struct ScratchDatabase {
    TemporaryFolder folder;
    Workspace workspace;
    std::unique_ptr<Database> db = workspace.CreateDatabase(folder / "proef.mdb");

    /// Runs statements one after the other.
    void Run(const std::vector<std::string>& statements);
    std::unique_ptr<Recordset> Open(std::string_view source,
                                    RecordsetType type = RecordsetType::Snapshot);
    /// All rows as RowText.
    std::vector<std::string> Rows(std::string_view source);
    /// The names of the fields joined by "|".
    std::string Names(std::string_view source);
    /// The first field of the first row.
    Value One(std::string_view source);
    /// What a statement is refused with.
    std::string Refusal(std::string_view statement, ErrorKind expected);
};

} // namespace jet::testing
