#include "ScratchCatalog.h"

#include <algorithm>

namespace {

using jet::ColumnType;
using jet::ErrorKind;
using jet::FieldDef;
using jet::Row;
using jet::TableDef;
using jet::Value;

TableDef Everything()
{
    using enum ColumnType;
    return {.name = "Alles",
            .fields = {{.name = "Id", .type = Long, .autoNumber = true},
                       {.name = "Vlag", .type = Boolean},
                       {.name = "Klein", .type = Byte},
                       {.name = "Kort", .type = Integer},
                       {.name = "Geld", .type = Currency},
                       {.name = "Enkel", .type = Single},
                       {.name = "Dubbel", .type = Double, .defaultValue = "-999"},
                       {.name = "Dag", .type = DateTime},
                       {.name = "Naam",
                        .type = Text,
                        .size = 50,
                        .required = true,
                        .allowZeroLength = false,
                        .description = "hoe het heet"},
                       {.name = "Rauw", .type = Binary, .size = 20},
                       {.name = "Verhaal", .type = Memo},
                       {.name = "Plaat", .type = Ole},
                       {.name = "Kenmerk", .type = Guid},
                       {.name = "Deel", .type = Decimal, .precision = 20, .scale = 5}},
            .indexes = {{.name = "PrimaryKey", .fields = {{"Id"}}, .primary = true},
                        {.name = "Naam", .fields = {{"Naam"}, {"Dag", true}}, .unique = true},
                        {.name = "Kort", .fields = {{"Kort"}}, .ignoreNulls = true}}};
}

TableDef Simple(const char* name)
{
    return {.name = name, .fields = {{.name = "A", .type = ColumnType::Long}}};
}

TEST(Catalog, ListsTablesInTheOrderOfTheirNames)
{
    ScratchCatalog catalog;
    for (const char* name : {"Zand", "boezem", "Dijk"})
        catalog->Create(Simple(name));
    std::vector<std::string> users;
    for (const auto& entry : catalog->Tables())
        if (!entry.system)
            users.push_back(entry.name);
    EXPECT_EQ(users, (std::vector<std::string>{"boezem", "Dijk", "Zand"}));
}

TEST(Catalog, CreatesATableWithEveryType)
{
    ScratchCatalog catalog;
    const TableDef spec = Everything();
    catalog->Create(spec);
    catalog.Reopen();

    const auto table = catalog->Open("alles");
    const jet::TableDefinition& definition = table->Definition();
    EXPECT_EQ(table->Name(), "Alles");
    ASSERT_EQ(definition.columns.size(), spec.fields.size());
    for (std::size_t i = 0; i < spec.fields.size(); ++i) {
        EXPECT_EQ(definition.columns[i].name, spec.fields[i].name);
        EXPECT_EQ(definition.columns[i].type, spec.fields[i].type);
        EXPECT_EQ(definition.columns[i].autoNumber, spec.fields[i].autoNumber);
    }
    const auto column = [&](const char* name) {
        return definition.columns[static_cast<std::size_t>(definition.FindColumn(name))];
    };
    EXPECT_EQ(column("Naam").Size(), 50);
    EXPECT_TRUE(column("Naam").required);
    EXPECT_FALSE(column("Naam").allowZeroLength);
    EXPECT_EQ(column("Naam").description, "hoe het heet");
    EXPECT_EQ(column("Rauw").Size(), 20);
    EXPECT_EQ(column("Dubbel").defaultValue, "-999");
    EXPECT_EQ(column("Deel").precision, 20);
    EXPECT_EQ(column("Deel").scale, 5);

    ASSERT_EQ(definition.logicalIndexes.size(), 3u);
    const auto& unique = definition.physicalIndexes[1];
    EXPECT_TRUE(unique.unique);
    EXPECT_EQ(unique.columns,
              (std::vector<jet::IndexColumn>{{definition.FindColumn("Naam"), true},
                                             {definition.FindColumn("Dag"), false}}));
    EXPECT_TRUE(definition.physicalIndexes[2].ignoreNulls);
    EXPECT_EQ(definition.PrimaryKey(), 0);
    catalog.ExpectSpotless();
}

TEST(Catalog, FillsDefaultsInNewRows)
{
    ScratchCatalog catalog;
    catalog->Create(
        {.name = "T",
         .fields = {{.name = "A", .type = ColumnType::Double, .defaultValue = "-999"},
                    {.name = "B", .type = ColumnType::Text, .defaultValue = "\"leeg\""},
                    {.name = "C", .type = ColumnType::Boolean, .defaultValue = "True"},
                    {.name = "D", .type = ColumnType::DateTime, .defaultValue = "Date()"},
                    {.name = "E", .type = ColumnType::Long}}});
    const auto table = catalog->Open("T");
    const Row row = catalog->NewRow(*table);
    EXPECT_EQ(row[0], Value(-999.0));
    EXPECT_EQ(row[1], Value("leeg"));
    EXPECT_EQ(row[2], Value(true));
    EXPECT_GT(row[3].AsDateTime().days, 45000);
    EXPECT_TRUE(row[4].IsNull());
}

TEST(Catalog, RefusesANewRowWhoseDefaultItCannotEvaluate)
{
    ScratchCatalog catalog;
    catalog->Create({.name = "T",
                     .fields = {{.name = "A", .type = ColumnType::Long, .defaultValue = "1+[B]"},
                                {.name = "B", .type = ColumnType::Long}}});
    const auto table = catalog->Open("T");
    EXPECT_EQ(KindOf([&] { catalog->NewRow(*table); }), ErrorKind::BadValue);
    EXPECT_TRUE(catalog->NewRow(*table, {true, false})[0].IsNull());
}

TEST(Catalog, GivesANewTableTheOwnerAndRightsOfItsFile)
{
    ScratchCatalog catalog;
    catalog->Create(Simple("T"));
    const auto page = static_cast<std::int32_t>(catalog->Open("T")->Definition().page);
    const auto objects = catalog->Open("MSysObjects");
    const auto at = [&](const char* name) { return objects->Definition().FindColumn(name); };
    bool found = false;
    for (jet::TableScan scan(*objects); scan.Next();) {
        if (scan.Get(at("Id")) != Value(page))
            continue;
        found = true;
        EXPECT_EQ(scan.Get(at("ParentId")), Value(0x0F000001));
        EXPECT_EQ(scan.Get(at("Type")), Value(std::int16_t{1}));
        EXPECT_EQ(scan.Get(at("Owner")), Value(jet::Bytes{std::byte{0x64}, std::byte{0x8B}}));
        EXPECT_EQ(scan.Get(at("Flags")), Value(0));
        EXPECT_EQ(scan.Get(at("DateCreate")), scan.Get(at("DateUpdate")));
    }
    EXPECT_TRUE(found);

    // The container of tables has three users; each gets full access.
    const auto access = catalog->Open("MSysACEs");
    int rights = 0;
    for (jet::TableScan scan(*access); scan.Next();) {
        if (scan.Get(access->Definition().FindColumn("ObjectId")) != Value(page))
            continue;
        ++rights;
        EXPECT_EQ(scan.Get(access->Definition().FindColumn("ACM")), Value(0xFFFFF));
    }
    EXPECT_EQ(rights, 3);
}

TEST(Catalog, ComparesNamesWithoutRegardToCase)
{
    ScratchCatalog catalog;
    catalog->Create(Simple("Locatie"));
    EXPECT_TRUE(catalog->HasTable("LOCATIE"));
    EXPECT_EQ(catalog->Open("locatie"), catalog->Open("Locatie"));
    EXPECT_EQ(KindOf([&] { catalog->Create(Simple("LoCaTiE")); }), ErrorKind::NameInUse);
    EXPECT_EQ(KindOf([&] { catalog->Create(Simple("msysobjects")); }), ErrorKind::NameInUse);
    EXPECT_EQ(KindOf([&] { catalog->Open("Locaties"); }), ErrorKind::UnknownTable);
}

TEST(Catalog, RefusesBadNames)
{
    ScratchCatalog catalog;
    for (const std::string name :
         {"", " vooraan", "met.punt", "uitroep!", "haak[", "haak]", "accent`", "tab\there"})
        EXPECT_EQ(KindOf([&] { catalog->Create(Simple(name.c_str())); }), ErrorKind::BadName)
            << name;
    EXPECT_EQ(KindOf([&] { catalog->Create(Simple(std::string(65, 'x').c_str())); }),
              ErrorKind::BadName);
    catalog->Create(Simple(std::string(64, 'x').c_str()));
    catalog->Create(Simple("met spatie & teken-'s"));
    EXPECT_EQ(KindOf([&] { catalog->Create({.name = "T", .fields = {{.name = "a.b"}}}); }),
              ErrorKind::BadName);
    catalog.ExpectSpotless();
}

TEST(Catalog, RefusesTablesThatCannotBe)
{
    ScratchCatalog catalog;
    const auto kind = [&](const TableDef& spec) { return KindOf([&] { catalog->Create(spec); }); };
    EXPECT_EQ(kind({.name = "T"}), ErrorKind::BadSchema) << "no columns";
    EXPECT_EQ(kind({.name = "T", .fields = {{.name = "a"}, {.name = "A"}}}), ErrorKind::NameInUse);
    EXPECT_EQ(
        kind({.name = "T",
              .fields = {{.name = "a", .autoNumber = true}, {.name = "b", .autoNumber = true}}}),
        ErrorKind::BadSchema);
    EXPECT_EQ(kind({.name = "T",
                    .fields = {{.name = "a", .type = ColumnType::Text, .autoNumber = true}}}),
              ErrorKind::BadSchema);
    EXPECT_EQ(kind({.name = "T", .fields = {{.name = "a", .type = ColumnType::Text, .size = 256}}}),
              ErrorKind::BadSchema);
    EXPECT_EQ(kind({.name = "T",
                    .fields = {{.name = "a", .type = ColumnType::Decimal, .precision = 29}}}),
              ErrorKind::BadSchema);
    std::vector<FieldDef> many;
    for (int i = 0; i < 256; ++i)
        many.push_back({.name = "v" + std::to_string(i), .type = ColumnType::Boolean});
    EXPECT_EQ(kind({.name = "T", .fields = many}), ErrorKind::BadSchema);
    many.pop_back();
    catalog->Create({.name = "Breed", .fields = many});
    EXPECT_EQ(catalog->Open("Breed")->Definition().columns.size(), 255u);

    std::vector<FieldDef> wide(250, {.name = "", .type = ColumnType::Decimal});
    for (std::size_t i = 0; i < wide.size(); ++i)
        wide[i].name = "d" + std::to_string(i);
    EXPECT_EQ(kind({.name = "T", .fields = wide}), ErrorKind::BadSchema) << "4250 bytes a row";

    EXPECT_FALSE(catalog->HasTable("T"));
    catalog.ExpectSpotless();
}

TEST(Catalog, RefusesIndexesThatCannotBe)
{
    ScratchCatalog catalog;
    const auto kind = [&](const jet::IndexDef& index) {
        return KindOf([&] {
            TableDef spec{.name = "T",
                          .fields = {{.name = "a"}, {.name = "o", .type = ColumnType::Ole}},
                          .indexes = {index}};
            for (int i = 0; i < 11; ++i)
                spec.fields.push_back({.name = "v" + std::to_string(i)});
            catalog->Create(spec);
        });
    };
    EXPECT_EQ(kind({.name = "i", .fields = {{"b"}}}), ErrorKind::UnknownField);
    EXPECT_EQ(kind({.name = "i", .fields = {}}), ErrorKind::BadSchema);
    EXPECT_EQ(kind({.name = "i", .fields = {{"o"}}}), ErrorKind::BadSchema);
    EXPECT_EQ(kind({.name = "i", .fields = {{"a"}, {"A"}}}), ErrorKind::BadSchema);
    jet::IndexDef eleven{.name = "i", .fields = {}};
    for (int i = 0; i < 11; ++i)
        eleven.fields.push_back({"v" + std::to_string(i)});
    EXPECT_EQ(kind(eleven), ErrorKind::BadSchema);
    EXPECT_EQ(kind({.name = "i.j", .fields = {{"a"}}}), ErrorKind::BadName);
    catalog.ExpectSpotless();
}

TEST(Catalog, DropsATableAndAllItsPages)
{
    ScratchCatalog catalog;
    const auto before = catalog.Pager().PageCount();
    catalog->Create(Everything());
    for (int i = 0; i < 300; ++i) {
        const auto table = catalog->Open("Alles");
        Row row = catalog->NewRow(*table);
        row[3] = Value(static_cast<std::int16_t>(i));
        row[8] = "rij " + std::to_string(i);
        row[10] = std::string(static_cast<std::size_t>(i) * 40, 'x');
        row[11] = jet::Bytes(static_cast<std::size_t>(i) * 30, std::byte{7});
        catalog.Insert("Alles", row);
    }
    catalog.ExpectSpotless();
    catalog->Drop("ALLES");
    EXPECT_FALSE(catalog->HasTable("Alles"));
    EXPECT_EQ(catalog.Rows("MSysObjects").size(), 8u);
    EXPECT_EQ(catalog.Rows("MSysACEs").size(), 16u);
    catalog.ExpectSpotless();

    // What became free is used again.
    const auto after = catalog.Pager().PageCount();
    EXPECT_GT(after, before);
    catalog->Create(Everything());
    EXPECT_EQ(catalog.Pager().PageCount(), after);
    catalog.ExpectSpotless();
}

TEST(Catalog, DoesNotTouchSystemTables)
{
    ScratchCatalog catalog;
    EXPECT_EQ(KindOf([&] { catalog->Drop("MSysObjects"); }), ErrorKind::InUse);
    EXPECT_EQ(KindOf([&] { catalog->Rename("MSysACEs", "X"); }), ErrorKind::InUse);
    EXPECT_EQ(KindOf([&] { catalog->DropColumn("MSysQueries", "Flag"); }), ErrorKind::InUse);
}

TEST(Catalog, KeepsTablesThatARelationshipNames)
{
    ScratchCatalog catalog;
    catalog->Create(Simple("Ouder"));
    catalog->Create(Simple("Kind"));
    const auto relationships = catalog->Open("MSysRelationships");
    Row row(relationships->Definition().columns.size());
    const auto set = [&](const char* name, Value value) {
        row[static_cast<std::size_t>(relationships->Definition().FindColumn(name))] =
            std::move(value);
    };
    set("szRelationship", "OuderKind");
    set("szObject", "Kind");
    set("szReferencedObject", "Ouder");
    set("szColumn", "A");
    set("szReferencedColumn", "A");
    relationships->Insert(row);

    EXPECT_EQ(KindOf([&] { catalog->Drop("ouder"); }), ErrorKind::InUse);
    EXPECT_EQ(KindOf([&] { catalog->Drop("Kind"); }), ErrorKind::InUse);

    catalog->Rename("Ouder", "Stam");
    const auto rows = catalog.Rows("MSysRelationships");
    EXPECT_EQ(rows[0][static_cast<std::size_t>(
                  relationships->Definition().FindColumn("szReferencedObject"))],
              Value("Stam"));
    catalog.ExpectSpotless();
}

TEST(Catalog, RenamesATableForEverybodyWhoHoldsIt)
{
    ScratchCatalog catalog;
    catalog->Create(Simple("Oud"));
    catalog->Create(Simple("Bezet"));
    const auto table = catalog->Open("Oud");
    catalog.Insert("Oud", {Value(5)});
    EXPECT_EQ(KindOf([&] { catalog->Rename("Oud", "bezet"); }), ErrorKind::NameInUse);
    EXPECT_EQ(KindOf([&] { catalog->Rename("Oud", "a!b"); }), ErrorKind::BadName);
    catalog->Rename("oud", "Nieuw");
    EXPECT_FALSE(catalog->HasTable("Oud"));
    EXPECT_EQ(catalog->Open("nieuw"), table);
    EXPECT_EQ(table->Name(), "Nieuw");
    EXPECT_EQ(catalog.Rows("Nieuw").size(), 1u);
    catalog->Rename("Nieuw", "NIEUW"); // another case of the same name
    EXPECT_EQ(table->Name(), "NIEUW");
    catalog.ExpectSpotless();
}

TEST(Catalog, ForgetsARolledBackTable)
{
    ScratchCatalog catalog;
    const auto version = catalog->SchemaVersion();
    catalog.Pager().Begin();
    catalog->Create(Everything());
    EXPECT_TRUE(catalog->HasTable("Alles"));
    catalog.Pager().Rollback();
    EXPECT_FALSE(catalog->HasTable("Alles"));
    EXPECT_GT(catalog->SchemaVersion(), version);
    catalog.ExpectSpotless();
    EXPECT_EQ(catalog.Pager().PageCount(), 16u);
}

TEST(Catalog, BringsBackATableWhoseDropIsRolledBack)
{
    ScratchCatalog catalog;
    catalog->Create(Everything());
    Row row = catalog->NewRow(*catalog->Open("Alles"));
    row[8] = "blijft";
    catalog.Insert("Alles", row);
    catalog.Pager().Begin();
    catalog->Drop("Alles");
    catalog.Pager().Rollback();
    ASSERT_EQ(catalog.Rows("Alles").size(), 1u);
    EXPECT_EQ(catalog.Rows("Alles")[0][8], Value("blijft"));
    catalog.ExpectSpotless();
}

TEST(Catalog, UndoesTheInnerPartOfNestedChangesOnly)
{
    ScratchCatalog catalog;
    catalog.Pager().Begin();
    catalog->Create(Simple("Buiten"));
    catalog.Pager().Begin();
    catalog->Create(Simple("Binnen"));
    catalog->AddColumns("Buiten", {{.name = "Erbij"}});
    catalog.Pager().Rollback();
    EXPECT_TRUE(catalog->HasTable("Buiten"));
    EXPECT_FALSE(catalog->HasTable("Binnen"));
    EXPECT_EQ(catalog->Open("Buiten")->Definition().columns.size(), 1u);
    catalog.Pager().Commit(jet::Flush::No);
    catalog.Reopen();
    EXPECT_TRUE(catalog->HasTable("Buiten"));
    catalog.ExpectSpotless();
}

TEST(Catalog, LeavesAnOpenTransactionUsableWhenAChangeFails)
{
    ScratchCatalog catalog;
    catalog->Create(Simple("T"));
    catalog.Insert("T", {Value(1)});
    catalog.Insert("T", {Value(1)});
    catalog.Pager().Begin();
    catalog->Create(Simple("Erbij"));
    EXPECT_EQ(KindOf([&] {
                  catalog->CreateIndex("T", {.name = "i", .fields = {{"A"}}, .unique = true});
              }),
              ErrorKind::Duplicate);
    catalog.Insert("Erbij", {Value(2)});
    catalog.Pager().Commit(jet::Flush::No);
    EXPECT_EQ(catalog.Rows("Erbij").size(), 1u);
    catalog.ExpectSpotless();
}

TEST(Catalog, StoresPropertiesOfTablesAndColumns)
{
    ScratchCatalog catalog;
    catalog->Create(Simple("T"));
    const auto table = catalog->Open("T");
    catalog->SetProperty("T", "", "Description", "de tabel");
    catalog->SetProperty("t", "a", "Required", true);
    catalog->SetProperty("T", "A", "DefaultValue", "7");
    catalog->SetProperty("T", "A", "Caption", "Kop");
    EXPECT_TRUE(table->Definition().columns[0].required);
    EXPECT_EQ(catalog->NewRow(*table)[0], Value(7));
    catalog.Reopen();
    EXPECT_EQ(catalog->Property("T", "", "description"), Value("de tabel"));
    EXPECT_EQ(catalog->Properties("T", "A").size(), 3u);
    catalog->SetProperty("T", "A", "Required", {});
    EXPECT_TRUE(catalog->Property("T", "A", "Required").IsNull());
    EXPECT_FALSE(catalog->Open("T")->Definition().columns[0].required);
    EXPECT_EQ(KindOf([&] { catalog->SetProperty("T", "B", "Required", true); }),
              ErrorKind::UnknownField);
    catalog.ExpectSpotless();
}

TEST(Catalog, KeepsTheNamesOfQueriesAndLinksFree)
{
    ScratchCatalog catalog;
    const auto objects = catalog->Open("MSysObjects");
    Row row(objects->Definition().columns.size());
    const auto set = [&](const char* name, Value value) {
        row[static_cast<std::size_t>(objects->Definition().FindColumn(name))] = std::move(value);
    };
    set("Id", static_cast<std::int32_t>(0x80000001));
    set("ParentId", 0x0F000001);
    set("Name", "Vraag");
    set("Type", 5);
    objects->Insert(row);
    catalog.Reopen();
    EXPECT_FALSE(catalog->HasTable("Vraag"));
    EXPECT_EQ(KindOf([&] { catalog->Create(Simple("vraag")); }), ErrorKind::NameInUse);
}

} // namespace
