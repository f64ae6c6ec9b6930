#include "MdbInput.h"

#include "MemoryFileSystem.h"
#include "jet/base/Error.h"
#include "jet/dao/Workspace.h"

namespace {

// A damaged map or chain may name pages again and again; a walk that gives more
// rows than the file has bytes has gone wrong.
class RunAway : public std::exception {
public:
    const char* what() const noexcept override { return "a walk has no end"; }
};

void ReadRows(jet::Recordset& rows, std::size_t most)
{
    std::size_t count = 0;
    for (; !rows.EndOfFile(); rows.MoveNext()) {
        if (++count > most)
            throw RunAway();
        for (std::size_t i = 0; i < rows.Fields().size(); ++i) {
            try {
                rows.Get(static_cast<int>(i));
            } catch (const jet::Error&) {
            }
        }
    }
}

template <typename Action>
void Try(Action&& action)
{
    try {
        action();
    } catch (const jet::Error&) {
    }
}

void ChangeRows(jet::Recordset& rows)
{
    for (int i = 0; i < 3; ++i) {
        Try([&] {
            rows.AddNew();
            for (std::size_t f = 0; f < rows.Fields().size(); ++f)
                if (!rows.Fields()[f].autoNumber && rows.Fields()[f].type == jet::ColumnType::Text)
                    rows.Set(static_cast<int>(f), "nieuw " + std::to_string(i));
            rows.Update();
        });
    }
    int count = 0;
    Try([&] {
        for (rows.MoveFirst(); !rows.EndOfFile() && count < 40; rows.MoveNext(), ++count) {
            if (count % 3 == 0) {
                Try([&] { rows.Delete(); });
            } else if (count % 3 == 1) {
                Try([&] {
                    rows.Edit();
                    for (std::size_t f = 0; f < rows.Fields().size(); ++f)
                        if (rows.Fields()[f].type == jet::ColumnType::Memo)
                            rows.Set(static_cast<int>(f), std::string(6000, 'g'));
                    rows.Update();
                });
            }
        }
    });
}

} // namespace

bool ReadEverything(std::span<const std::byte> bytes)
{
    jet_testing::MemoryFileSystem files;
    files.Put("invoer.mdb", {bytes.begin(), bytes.end()});
    jet::Workspace workspace(files);
    std::unique_ptr<jet::Database> database;
    std::vector<std::string> names;
    try {
        database = workspace.OpenDatabase("invoer.mdb", {.readOnly = true});
        names = database->TableNames(true);
    } catch (const jet::Error&) {
    }
    if (!database)
        return false;
    for (const std::string& name : names) {
        try {
            const jet::TableDef table = database->GetTableDef(name);
            const auto rows = database->OpenRecordset(name, jet::RecordsetType::Table);
            ReadRows(*rows, bytes.size());
            for (const jet::IndexDef& index : table.indexes) {
                try {
                    rows->SetIndex(index.name);
                    ReadRows(*rows, bytes.size());
                    rows->MoveLast();
                    rows->MovePrevious();
                } catch (const jet::Error&) {
                }
            }
        } catch (const jet::Error&) {
        }
    }
    database->Check();
    return true;
}

void ChangeEverything(std::span<const std::byte> bytes)
{
    jet_testing::MemoryFileSystem files;
    files.Put("invoer.mdb", {bytes.begin(), bytes.end()});
    jet::Workspace workspace(files);
    std::unique_ptr<jet::Database> database;
    std::vector<std::string> names;
    Try([&] {
        database = workspace.OpenDatabase("invoer.mdb");
        names = database->TableNames();
    });
    if (!database)
        return;
    for (const bool keep : {false, true}) {
        workspace.BeginTrans();
        for (const std::string& name : names) {
            Try([&] { ChangeRows(*database->OpenRecordset(name, jet::RecordsetType::Table)); });
            Try([&] {
                database->AddField(name, {.name = "Erbij", .type = jet::ColumnType::Memo});
                database->DropField(name, "Erbij");
            });
        }
        Try([&] { database->CreateTable({.name = "Nieuw", .fields = {{.name = "A"}}}); });
        Try([&] { database->DropTable(names.empty() ? "Nieuw" : names.front()); });
        bool committed = false;
        if (keep)
            Try([&] {
                workspace.CommitTrans();
                committed = true;
            });
        if (!committed)
            Try([&] { workspace.Rollback(); });
    }
    database->Check();
}
