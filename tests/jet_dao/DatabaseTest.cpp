#include "TemporaryFolder.h"
#include "jet/base/Error.h"
#include "jet/dao/Workspace.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace {

using jet::ColumnType;
using jet::ErrorKind;
using jet::Value;

namespace fs = std::filesystem;

template <typename Action>
ErrorKind KindOf(Action&& action)
{
    try {
        action();
    } catch (const jet::Error& error) {
        return error.Kind();
    }
    ADD_FAILURE() << "no error was thrown";
    return ErrorKind::Query;
}

fs::path Sample(const char* name)
{
    return fs::path(TEST_DATA_FOLDER) / "jet" / "samples" / name;
}

std::string BytesOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class DatabaseTest : public testing::Test {
protected:
    fs::path Writable(const char* sample)
    {
        const fs::path copy = folder / sample;
        fs::copy_file(Sample(sample), copy);
        fs::permissions(copy, fs::perms::owner_all);
        return copy;
    }

    TemporaryFolder folder;
    jet::Workspace workspace;
};

TEST_F(DatabaseTest, CreatesAnEmptyFile)
{
    const auto path = folder / "nieuw.mdb";
    {
        const auto database = workspace.CreateDatabase(path);
        EXPECT_EQ(database->Name(), path);
        EXPECT_TRUE(database->IsOpen());
        EXPECT_FALSE(database->IsReadOnly());
        EXPECT_TRUE(database->TableNames().empty());
        EXPECT_EQ(database->TableNames(true).size(), 4u);
    }
    EXPECT_EQ(fs::file_size(path), 65536u);
    EXPECT_EQ(KindOf([&] { workspace.CreateDatabase(path); }), ErrorKind::AlreadyExists);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1)
        << "nothing stays beside it";
}

TEST_F(DatabaseTest, IsFreeTheMomentItCloses)
{
    const auto path = folder / "boezem.mdb";
    const auto database = workspace.CreateDatabase(path);
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(path); }), ErrorKind::Locked);
    jet::Workspace other;
    EXPECT_EQ(KindOf([&] { other.OpenDatabase(path, {.exclusive = false, .readOnly = true}); }),
              ErrorKind::Locked);
    database->Close();
    EXPECT_FALSE(database->IsOpen());
    const auto again = other.OpenDatabase(path);
    EXPECT_TRUE(again->IsOpen());
    again->Close();
    EXPECT_TRUE(fs::remove(path));
}

TEST_F(DatabaseTest, EveryOperationOnAClosedDatabaseSaysSo)
{
    const auto database = workspace.CreateDatabase(folder / "boezem.mdb");
    database->Close();
    database->Close();
    EXPECT_EQ(KindOf([&] { database->TableNames(); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { database->HasTable("x"); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { database->GetTableDef("x"); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { database->CreateTable({.name = "x", .fields = {{.name = "a"}}}); }),
              ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { database->DropTable("x"); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { database->OpenRecordset("x"); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { database->OpenRecordset("x", jet::RecordsetType::Table); }),
              ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { database->Execute("DELETE * FROM x"); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { database->Check(); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { database->IsReadOnly(); }), ErrorKind::Closed);
}

TEST_F(DatabaseTest, SharedOpenersLiveTogether)
{
    const auto path = Writable("delV2000.mdb");
    jet::Workspace other;
    const auto a = workspace.OpenDatabase(path, {.exclusive = false, .readOnly = true});
    const auto b = other.OpenDatabase(path, {.exclusive = false, .readOnly = true});
    EXPECT_EQ(a->TableNames(), b->TableNames());
    EXPECT_EQ(KindOf([&] { other.OpenDatabase(path); }), ErrorKind::Locked);
}

TEST_F(DatabaseTest, ReadingWritesNothing)
{
    for (const char* sample : {"indexV1997.mdb", "common2V2000.mdb", "oracle-all-types.mdb"}) {
        const auto path = Writable(sample);
        const std::string before = BytesOf(path);
        {
            const auto database = workspace.OpenDatabase(path, {.readOnly = true});
            EXPECT_TRUE(database->IsReadOnly());
            for (const std::string& name : database->TableNames(true)) {
                const auto rows = database->OpenRecordset(name);
                EXPECT_FALSE(rows->Updatable());
                for (; !rows->EndOfFile(); rows->MoveNext())
                    for (std::size_t i = 0; i < rows->Fields().size(); ++i)
                        rows->Get(static_cast<int>(i));
            }
            database->Check();
            EXPECT_EQ(
                KindOf([&] { database->CreateTable({.name = "x", .fields = {{.name = "a"}}}); }),
                ErrorKind::ReadOnly);
            EXPECT_EQ(KindOf([&] { database->DropTable(database->TableNames().front()); }),
                      ErrorKind::ReadOnly);
        }
        EXPECT_EQ(BytesOf(path), before) << sample;
    }
}

TEST_F(DatabaseTest, AJet3FileIsForReadingOnly)
{
    const auto path = Writable("indexV1997.mdb");
    try {
        workspace.OpenDatabase(path);
        ADD_FAILURE();
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::ReadOnly);
        EXPECT_NE(std::string(error.what()).find("Jet 3"), std::string::npos) << error.what();
    }
    const auto database = workspace.OpenDatabase(path, {.fallBackToReadOnly = true});
    EXPECT_TRUE(database->IsReadOnly());
    EXPECT_FALSE(database->TableNames().empty());
}

TEST_F(DatabaseTest, FallsBackToReadingWithoutPermission)
{
    const auto path = Writable("delV2000.mdb");
    fs::permissions(path, fs::perms::owner_read);
    std::ofstream probe(path, std::ios::app);
    if (probe)
        GTEST_SKIP() << "this user may write everything";
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(path); }), ErrorKind::AccessDenied);
    const auto database = workspace.OpenDatabase(path, {.fallBackToReadOnly = true});
    EXPECT_TRUE(database->IsReadOnly());
}

TEST_F(DatabaseTest, RefusesWhatIsNoDatabase)
{
    const auto write = [&](const char* name, const std::string& content) {
        const auto path = folder / name;
        std::ofstream(path, std::ios::binary) << content;
        return path;
    };
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(folder / "er niet.mdb"); }),
              ErrorKind::FileNotFound);
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(folder.Path()); }), ErrorKind::NotADatabase);
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(write("leeg.mdb", "")); }),
              ErrorKind::NotADatabase);
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(write("tekst.mdb", "geen database")); }),
              ErrorKind::NotADatabase);
    const std::string good = BytesOf(Sample("adox_jet4.mdb"));
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(write("kop.mdb", good.substr(0, 4096))); }),
              ErrorKind::NotADatabase);
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(write("half.mdb", good.substr(0, 30000))); }),
              ErrorKind::Damaged);
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(write("kort.mdb", good.substr(0, 8192))); }),
              ErrorKind::Damaged);
    EXPECT_EQ(KindOf([&] {
                  workspace.OpenDatabase(
                      write("ruis.mdb", good.substr(0, 4096) + std::string(61440, '\x5A')));
              }),
              ErrorKind::Damaged);
    std::string ace = good;
    ace.replace(4, 15, "Standard ACE DB");
    ace[0x14] = 2;
    EXPECT_EQ(KindOf([&] { workspace.OpenDatabase(write("nieuw.accdb", ace)); }),
              ErrorKind::Unsupported);
    // Nothing refused stays open.
    for (const auto& entry : fs::directory_iterator(folder.Path()))
        EXPECT_TRUE(fs::remove(entry.path()));
}

TEST_F(DatabaseTest, DescribesATable)
{
    const auto database = workspace.OpenDatabase(Writable("indexPropertiesV2000.mdb"));
    const jet::TableDef table = database->GetTableDef("TABLEIGNORENULLS1");
    EXPECT_EQ(table.name, "TableIgnoreNulls1");
    EXPECT_EQ(table.recordCount, 10);
    ASSERT_NE(table.FindField("ROW"), nullptr);
    EXPECT_EQ(table.FindField("row")->size, 50);
    EXPECT_EQ(table.FindField("niets"), nullptr);
    ASSERT_NE(table.PrimaryKey(), nullptr);
    EXPECT_EQ(table.PrimaryKey()->fields[0].field, "row");
    ASSERT_NE(table.FindIndex("dataindex"), nullptr);
    EXPECT_TRUE(table.FindIndex("DataIndex")->ignoreNulls);
    EXPECT_FALSE(table.FindIndex("DataIndex")->unique);
}

TEST_F(DatabaseTest, MakesTablesFieldsAndIndexes)
{
    const auto path = folder / "boezem.mdb";
    {
        const auto database = workspace.CreateDatabase(path);
        database->CreateTable(
            {.name = "Resultaat",
             .fields = {{.name = "Berekening_ID", .required = true, .defaultValue = "0"},
                        {.name = "HBN", .type = ColumnType::Double, .defaultValue = "-999"}},
             .indexes = {{.name = "PrimaryKey", .fields = {{"Berekening_ID"}}, .primary = true}}});
        database->AddField(
            "Resultaat",
            {.name = "DOMINANTE WINDRICHTING", .type = ColumnType::Double, .defaultValue = "-999"});
        database->AddFields("Resultaat", {{.name = "a"}, {.name = "b", .type = ColumnType::Memo}});
        database->CreateIndex("Resultaat", {.name = "HBN", .fields = {{"HBN", true}}});
        database->SetFieldProperty("Resultaat", "HBN", "Description", "belastingniveau");
        database->DropField("Resultaat", "a");
    }
    const auto database = workspace.OpenDatabase(path);
    const jet::TableDef table = database->GetTableDef("Resultaat");
    ASSERT_EQ(table.fields.size(), 4u);
    EXPECT_TRUE(table.fields[0].required);
    EXPECT_EQ(table.FindField("hbn")->defaultValue, "-999");
    EXPECT_EQ(table.FindField("hbn")->description, "belastingniveau");
    EXPECT_EQ(table.FindField("b")->type, ColumnType::Memo);
    EXPECT_TRUE(table.FindIndex("HBN")->fields[0].descending);
    EXPECT_TRUE(table.PrimaryKey()->unique);
    EXPECT_EQ(database->FieldProperty("Resultaat", "HBN", "description"), Value("belastingniveau"));
    database->DropIndex("Resultaat", "HBN");
    database->RenameTable("Resultaat", "Uitkomst");
    database->DropTable("uitkomst");
    EXPECT_TRUE(database->TableNames().empty());
    EXPECT_TRUE(database->Check().remarks.empty());
}

TEST_F(DatabaseTest, LeavesWhatItDoesNotUnderstand)
{
    // A file with forms, relationships and system tables of its maker.
    const auto path = Writable("common2V2000.mdb");
    const auto rowsOf = [&](const char* table, const char* column) {
        const auto database = workspace.OpenDatabase(path);
        const auto rows = database->OpenRecordset(table, jet::RecordsetType::Table);
        std::vector<std::string> names;
        for (; !rows->EndOfFile(); rows->MoveNext())
            names.push_back(rows->Get(column).AsTextOr(""));
        return names;
    };
    const auto objects = rowsOf("MSysObjects", "Name");
    const auto rights = rowsOf("MSysACEs", "ObjectId");
    {
        const auto database = workspace.OpenDatabase(path);
        database->CreateTable({.name = "Erbij", .fields = {{.name = "a"}}});
        database->DropTable("Erbij");
    }
    EXPECT_EQ(rowsOf("MSysObjects", "Name"), objects);
    EXPECT_EQ(rowsOf("MSysACEs", "ObjectId"), rights);
}

} // namespace
