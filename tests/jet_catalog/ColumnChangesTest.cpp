#include "ScratchCatalog.h"

namespace {

using jet::ColumnType;
using jet::ErrorKind;
using jet::Row;
using jet::Value;

class ColumnChanges : public testing::Test {
protected:
    ColumnChanges()
    {
        catalog->Create({.name = "T",
                         .fields = {{.name = "Id", .type = ColumnType::Long, .autoNumber = true},
                                    {.name = "Naam", .type = ColumnType::Text},
                                    {.name = "Maat", .type = ColumnType::Double},
                                    {.name = "Tekst", .type = ColumnType::Memo}},
                         .indexes = {{.name = "PrimaryKey", .fields = {{"Id"}}, .primary = true},
                                     {.name = "OpNaam", .fields = {{"Naam"}}}}});
        for (int i = 1; i <= 40; ++i)
            catalog.Insert("T", {Value(), "naam " + std::to_string(i), i / 4.0,
                                 std::string(static_cast<std::size_t>(i) * 100, 'm')});
    }

    Value At(int row, const char* column)
    {
        const auto table = catalog->Open("T");
        const int place = table->Definition().FindColumn(column);
        EXPECT_GE(place, 0) << column;
        return catalog.Rows("T")[static_cast<std::size_t>(row)][static_cast<std::size_t>(place)];
    }

    ScratchCatalog catalog;
};

TEST_F(ColumnChanges, ExistingRowsReadNullInANewColumn)
{
    catalog->AddColumns("T", {{.name = "Getal", .type = ColumnType::Long, .defaultValue = "5"},
                              {.name = "Vlag", .type = ColumnType::Boolean},
                              {.name = "Woord", .type = ColumnType::Text},
                              {.name = "Lang", .type = ColumnType::Memo}});
    EXPECT_TRUE(At(0, "Getal").IsNull());
    EXPECT_EQ(At(0, "Vlag"), Value(false));
    EXPECT_TRUE(At(39, "Woord").IsNull());
    EXPECT_TRUE(At(39, "Lang").IsNull());
    EXPECT_EQ(At(39, "Naam"), Value("naam 40"));
    EXPECT_EQ(catalog->NewRow(*catalog->Open("T"))[4], Value(5));
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, NewColumnsTakeValues)
{
    catalog->AddColumns("T", {{.name = "Getal", .type = ColumnType::Long},
                              {.name = "Lang", .type = ColumnType::Memo}});
    const auto table = catalog->Open("T");
    const auto row = [&] {
        jet::TableScan scan(*table);
        scan.Next();
        return scan.Id();
    }();
    const jet::Table::Change changes[] = {{4, Value(12)}, {5, std::string(9000, 'z')}};
    table->Update(row, changes);
    catalog.Reopen();
    EXPECT_EQ(At(0, "Getal"), Value(12));
    EXPECT_EQ(At(0, "Lang"), Value(std::string(9000, 'z')));
    EXPECT_EQ(At(0, "Tekst"), Value(std::string(100, 'm')));
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, RequiredColumnsAreFilledWithZeroOrTheirDefault)
{
    catalog->AddColumns(
        "T", {{.name = "Breedte", .type = ColumnType::Single, .required = true},
              {.name = "Soort", .type = ColumnType::Integer, .required = true, .defaultValue = "3"},
              {.name = "Woord", .type = ColumnType::Text, .required = true},
              {.name = "Vrij", .type = ColumnType::Long, .defaultValue = "8"},
              {.name = "Dag", .type = ColumnType::DateTime, .required = true}});
    for (const int row : {0, 39}) {
        EXPECT_EQ(At(row, "Breedte"), Value(0.0f));
        EXPECT_EQ(At(row, "Soort"), Value(std::int16_t{3}));
        EXPECT_EQ(At(row, "Woord"), Value(""));
        EXPECT_TRUE(At(row, "Vrij").IsNull());
        EXPECT_EQ(At(row, "Dag"), Value(jet::DateTime{0}));
    }
    Row missing = catalog->NewRow(*catalog->Open("T"));
    EXPECT_EQ(KindOf([&] { catalog.Insert("T", missing); }), ErrorKind::NullNotAllowed);
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, ANewAutonumberCountsTheRows)
{
    catalog->Create({.name = "Kaal", .fields = {{.name = "A"}}});
    for (int i = 0; i < 5; ++i)
        catalog.Insert("Kaal", {Value(i)});
    catalog->AddColumns("Kaal", {{.name = "Nr", .type = ColumnType::Long, .autoNumber = true}});
    catalog.Insert("Kaal", {Value(5), Value()});
    const auto rows = catalog.Rows("Kaal");
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(rows[static_cast<std::size_t>(i)][1], Value(i + 1));
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, AllColumnsAreAddedOrNone)
{
    EXPECT_EQ(KindOf([&] {
                  catalog->AddColumns("T", {{.name = "Een"}, {.name = "naam"}});
              }),
              ErrorKind::NameInUse);
    EXPECT_EQ(catalog->Open("T")->Definition().columns.size(), 4u);
    catalog->AddColumns("T", {{.name = "Een"}});
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, ARefusedFillLeavesNothing)
{
    const auto refused = [&] {
        catalog->AddColumns("T", {{.name = "Nieuw",
                                   .type = ColumnType::Text,
                                   .required = true,
                                   .allowZeroLength = false}});
    };
    EXPECT_EQ(KindOf(refused), ErrorKind::EmptyNotAllowed);
    EXPECT_EQ(catalog->Open("T")->Definition().columns.size(), 4u);
    EXPECT_EQ(catalog->Properties("T", "Nieuw").size(), 0u);
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, DroppedColumnsTakeTheirLongValuesAlong)
{
    catalog->DropColumn("T", "tekst");
    EXPECT_EQ(catalog->Open("T")->Definition().FindColumn("Tekst"), -1);
    EXPECT_EQ(At(39, "Maat"), Value(10.0));
    catalog.ExpectSpotless();
    catalog.Insert("T", {Value(), "na", 1.5});
    EXPECT_EQ(At(40, "Naam"), Value("na"));
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, AColumnAddedAfterADropDoesNotReadItsBytes)
{
    catalog->DropColumn("T", "Maat");
    catalog->AddColumns("T", {{.name = "Erbij", .type = ColumnType::Double}});
    EXPECT_TRUE(At(3, "Erbij").IsNull());
    const auto table = catalog->Open("T");
    jet::TableScan scan(*table);
    scan.Next();
    const jet::Table::Change changes[] = {{table->Definition().FindColumn("Erbij"), 6.5}};
    table->Update(scan.Id(), changes);
    EXPECT_EQ(At(0, "Erbij"), Value(6.5));
    EXPECT_EQ(At(0, "Naam"), Value("naam 1"));
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, TheLastFixedColumnsPlaceIsNotGivenAwayTwice)
{
    // Old rows hold eight bytes where the dropped column stood; a new column there
    // must not read them, nor may a rewritten row be laid out shorter.
    catalog->DropColumn("T", "Maat");
    catalog.Reopen();
    catalog->AddColumns("T", {{.name = "Erbij", .type = ColumnType::Double}});
    const auto table = catalog->Open("T");
    EXPECT_EQ(table->Definition().columns.back().position, 12); // behind Id (4) and Maat (8)
}

TEST_F(ColumnChanges, PropertiesGoWithTheColumn)
{
    catalog->SetProperty("T", "Maat", "Description", "meters");
    catalog->DropColumn("T", "Maat");
    catalog->AddColumns("T", {{.name = "Maat", .type = ColumnType::Text}});
    EXPECT_TRUE(catalog->Property("T", "Maat", "Description").IsNull());
}

TEST_F(ColumnChanges, ColumnsOfAnIndexStay)
{
    EXPECT_EQ(KindOf([&] { catalog->DropColumn("T", "Naam"); }), ErrorKind::InUse);
    EXPECT_EQ(KindOf([&] { catalog->DropColumn("T", "Id"); }), ErrorKind::InUse);
    EXPECT_EQ(KindOf([&] { catalog->DropColumn("T", "Geen"); }), ErrorKind::UnknownField);
    catalog->DropIndex("T", "OpNaam");
    catalog->DropColumn("T", "Naam");
    EXPECT_EQ(At(1, "Id"), Value(2));
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, TheLastColumnStays)
{
    catalog->Create({.name = "Een", .fields = {{.name = "A"}}});
    EXPECT_EQ(KindOf([&] { catalog->DropColumn("Een", "A"); }), ErrorKind::BadSchema);
}

TEST_F(ColumnChanges, ColumnNumbersRunOutAt255)
{
    catalog->Create({.name = "Vol", .fields = {{.name = "A"}, {.name = "B"}}});
    for (int i = 0; i < 253; ++i) {
        catalog->AddColumns("Vol", {{.name = "Tijdelijk", .type = ColumnType::Boolean}});
        catalog->DropColumn("Vol", "Tijdelijk");
    }
    EXPECT_EQ(KindOf([&] { catalog->AddColumns("Vol", {{.name = "Een te veel"}}); }),
              ErrorKind::BadSchema);
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, IndexesAreStillRightAfterADropBeforeTheirColumn)
{
    catalog->CreateIndex("T", {.name = "OpMaat", .fields = {{"Maat", true}}});
    catalog->DropIndex("T", "OpNaam");
    catalog->DropColumn("T", "Naam");
    const auto table = catalog->Open("T");
    const auto& definition = table->Definition();
    const int index = definition.FindIndex("OpMaat");
    const auto& physical = definition.physicalIndexes[static_cast<std::size_t>(
        definition.logicalIndexes[static_cast<std::size_t>(index)].physical)];
    EXPECT_EQ(definition.columns[static_cast<std::size_t>(physical.columns[0].column)].name,
              "Maat");
    catalog.Insert("T", {Value(), 99.0, Value()});
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, AColumnOfAnotherTypeKeepsItsNameItsPlaceAndItsValues)
{
    catalog->ChangeColumn("T", {.name = "maat", .type = ColumnType::Text, .size = 10});
    const auto table = catalog->Open("T");
    ASSERT_EQ(table->Definition().columns.size(), 4u);
    EXPECT_EQ(table->Definition().columns[2].name, "Maat");
    EXPECT_EQ(table->Definition().columns[2].type, ColumnType::Text);
    EXPECT_EQ(At(0, "Maat"), Value("0.25"));
    EXPECT_EQ(At(39, "Maat"), Value("10"));
    EXPECT_EQ(At(39, "Tekst").AsText().size(), 4000u);
    EXPECT_EQ(catalog->Open("T")->Definition().physicalIndexes[1].columns[0].column, 1);
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, AColumnBeforeAnIndexedOneCanChange)
{
    catalog->CreateIndex("T", {.name = "OpMaat", .fields = {{"Maat"}}});
    catalog->DropIndex("T", "OpNaam");
    catalog->ChangeColumn("T", {.name = "Naam", .type = ColumnType::Memo});
    const auto table = catalog->Open("T");
    EXPECT_EQ(table->Definition().columns[1].type, ColumnType::Memo);
    EXPECT_EQ(table->Definition().physicalIndexes[1].columns[0].column, 2) << "still Maat";
    EXPECT_EQ(At(4, "Naam"), Value("naam 5"));
    catalog.ExpectSpotless();
}

TEST_F(ColumnChanges, AColumnDoesNotChangeWhenAValueDoesNotFit)
{
    EXPECT_EQ(
        KindOf([&] { catalog->ChangeColumn("T", {.name = "Naam", .type = ColumnType::Memo}); }),
        ErrorKind::InUse);
    catalog->DropIndex("T", "OpNaam");
    EXPECT_EQ(KindOf([&] {
                  catalog->ChangeColumn("T", {.name = "Naam", .type = ColumnType::Text, .size = 6});
              }),
              ErrorKind::TooLong)
        << "'naam 10' has seven characters";
    catalog.Insert("T", {Value(), "leeg", Value(), Value()});
    EXPECT_EQ(KindOf([&] {
                  catalog->ChangeColumn(
                      "T", {.name = "Maat", .type = ColumnType::Single, .required = true});
              }),
              ErrorKind::NullNotAllowed);
    EXPECT_EQ(catalog->Open("T")->Definition().columns[1].name, "Naam");
    EXPECT_EQ(catalog->Open("T")->Definition().columns[1].Size(), 255);
    EXPECT_EQ(At(39, "Maat"), Value(10.0));
    catalog.ExpectSpotless();
}

} // namespace
