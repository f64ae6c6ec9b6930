#include "ScratchCatalog.h"

namespace {

using jet::ColumnType;
using jet::ErrorKind;
using jet::Value;

class IndexChanges : public testing::Test {
protected:
    IndexChanges()
    {
        catalog->Create({.name = "T",
                         .fields = {{.name = "Getal", .type = ColumnType::Long},
                                    {.name = "Woord", .type = ColumnType::Text}}});
        for (int i = 0; i < 2000; ++i)
            catalog.Insert("T", {i * 7919 % 2003, "woord " + std::to_string(i % 100)});
    }

    std::vector<int> InOrderOf(const char* index)
    {
        const auto table = catalog->Open("T");
        const auto& definition = table->Definition();
        jet::IndexScan scan(
            *table,
            definition.logicalIndexes[static_cast<std::size_t>(definition.FindIndex(index))]
                .physical,
            {});
        std::vector<int> numbers;
        while (scan.Next())
            numbers.push_back(table->Get(scan.Id(), 0).AsIntOr(-1));
        return numbers;
    }

    ScratchCatalog catalog;
};

TEST_F(IndexChanges, AnIndexIsBuiltOnTheRowsThatAreThere)
{
    catalog->CreateIndex("T", {.name = "Op", .fields = {{"Getal"}}, .unique = true});
    catalog->CreateIndex("T", {.name = "Neer", .fields = {{"Getal", true}}});
    std::vector<int> up = InOrderOf("Op"), down = InOrderOf("neer");
    EXPECT_EQ(up.size(), 2000u);
    EXPECT_TRUE(std::is_sorted(up.begin(), up.end()));
    std::reverse(down.begin(), down.end());
    EXPECT_EQ(up, down);
    EXPECT_EQ(catalog->Open("T")->Definition().physicalIndexes[0].distinctCount, 2000u);
    catalog.Insert("T", {-5, "nieuw"});
    EXPECT_EQ(InOrderOf("Op").front(), -5);
    catalog.ExpectSpotless();
}

TEST_F(IndexChanges, AUniqueIndexRefusesEqualRows)
{
    EXPECT_EQ(KindOf([&] {
                  catalog->CreateIndex("T", {.name = "W", .fields = {{"Woord"}}, .unique = true});
              }),
              ErrorKind::Duplicate);
    EXPECT_EQ(catalog->Open("T")->Definition().physicalIndexes.size(), 0u);
    catalog->CreateIndex("T", {.name = "W", .fields = {{"Woord"}, {"Getal"}}, .unique = true});
    catalog.ExpectSpotless();
}

TEST_F(IndexChanges, APrimaryKeyRefusesNulls)
{
    catalog.Insert("T", {Value(), "zonder"});
    EXPECT_EQ(KindOf([&] {
                  catalog->CreateIndex(
                      "T", {.name = "PrimaryKey", .fields = {{"Getal"}}, .primary = true});
              }),
              ErrorKind::NullNotAllowed);
    catalog->CreateIndex("T", {.name = "Los", .fields = {{"Getal"}}, .unique = true});
    EXPECT_EQ(InOrderOf("Los").size(), 2001u);
    catalog->CreateIndex("T", {.name = "Vol", .fields = {{"Getal"}}, .ignoreNulls = true});
    EXPECT_EQ(InOrderOf("Vol").size(), 2000u);
    catalog.ExpectSpotless();
}

TEST_F(IndexChanges, AUniqueIndexMayHoldSeveralEmptyKeys)
{
    catalog.Insert("T", {Value(), Value()});
    catalog.Insert("T", {Value(), Value()});
    catalog->CreateIndex("T", {.name = "Los", .fields = {{"Getal"}}, .unique = true});
    EXPECT_EQ(InOrderOf("Los").size(), 2002u);
    catalog.ExpectSpotless();
}

TEST_F(IndexChanges, ATextWithoutAKnownPlaceIsNotIndexed)
{
    catalog.Insert("T", {1, "漢字"});
    EXPECT_EQ(KindOf([&] { catalog->CreateIndex("T", {.name = "W", .fields = {{"Woord"}}}); }),
              ErrorKind::TextNotIndexable);
    catalog.ExpectSpotless();
}

TEST_F(IndexChanges, OnlyOnePrimaryKeyAndEveryNameOnce)
{
    catalog->CreateIndex("T", {.name = "PrimaryKey", .fields = {{"Getal"}}, .primary = true});
    EXPECT_EQ(KindOf([&] {
                  catalog->CreateIndex("T", {.name = "P2", .fields = {{"Getal"}}, .primary = true});
              }),
              ErrorKind::BadSchema);
    EXPECT_EQ(
        KindOf([&] { catalog->CreateIndex("T", {.name = "PRIMARYKEY", .fields = {{"Woord"}}}); }),
        ErrorKind::NameInUse);
    EXPECT_EQ(KindOf([&] { catalog->CreateIndex("Geen", {.name = "x", .fields = {{"Woord"}}}); }),
              ErrorKind::UnknownTable);
}

TEST_F(IndexChanges, ThirtyTwoIndexesAreEnough)
{
    for (int i = 0; i < 32; ++i)
        catalog->CreateIndex("T", {.name = "i" + std::to_string(i), .fields = {{"Getal"}}});
    EXPECT_EQ(KindOf([&] { catalog->CreateIndex("T", {.name = "i32", .fields = {{"Getal"}}}); }),
              ErrorKind::BadSchema);
    catalog.Insert("T", {3000, "x"});
    catalog.ExpectSpotless();
}

TEST_F(IndexChanges, ADroppedIndexGivesItsPagesBack)
{
    catalog->CreateIndex("T", {.name = "A", .fields = {{"Woord"}}});
    catalog->CreateIndex("T", {.name = "B", .fields = {{"Getal"}}});
    const auto pages = catalog.Pager().PageCount();
    catalog->DropIndex("T", "a");
    EXPECT_EQ(InOrderOf("B").size(), 2000u);
    catalog.ExpectSpotless();
    catalog->CreateIndex("T", {.name = "C", .fields = {{"Woord"}}});
    EXPECT_EQ(catalog.Pager().PageCount(), pages);
    EXPECT_EQ(KindOf([&] { catalog->DropIndex("T", "A"); }), ErrorKind::UnknownIndex);
    catalog.ExpectSpotless();
}

TEST_F(IndexChanges, ARolledBackIndexIsGone)
{
    const auto table = catalog->Open("T");
    catalog.Pager().Begin();
    catalog->CreateIndex("T", {.name = "A", .fields = {{"Getal"}}, .unique = true});
    catalog.Pager().Rollback();
    EXPECT_EQ(catalog->Open("T"), table);
    EXPECT_TRUE(table->Definition().physicalIndexes.empty());
    catalog.Insert("T", {0, "dubbel"}); // nothing forbids it any more
    catalog.ExpectSpotless();
}

} // namespace
