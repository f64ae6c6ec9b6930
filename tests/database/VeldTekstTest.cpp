#include "DatabaseFixture.h"

#include "Installation.h"

/// A field of a row as the text of an export.
class VeldTekstTest : public DatabaseTest {
protected:
    VeldTekstTest() { OpenVoorbeeld(); }
};

TEST_F(VeldTekstTest, WritesAFieldAsTheTextOfAnExport)
{
    const auto rij = db.GetRecordSet(
        "SELECT omschrijving, x/8 AS deel, Locatie_ID, kwaliteitskenmerk, -999.0 AS weg, "
        "NULL AS niets FROM Locatie WHERE Locatie_ID=4");
    ASSERT_TRUE(HRdb::heeftRecords(rij));
    const double missing = -999;
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "omschrijving", true), "\"Plas-04\"");
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "deel", true), "22388.125");
    const FixedInternational komma(",");
    SetInternational(&komma);
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "deel", false), "22388,125");
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "Locatie_ID", false), "4");
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "deel", true), "22388.125");
    SetInternational(nullptr);
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "Locatie_ID", true), "4");
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "kwaliteitskenmerk", true), "2");
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "weg", true, &missing), "");
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "weg", true), "-999");
}

TEST_F(VeldTekstTest, ANullFieldIsEmptyAndANullTextTwoQuotes)
{
    const auto rijen = db.GetDataVoorCsv(99); // locations without results only
    ASSERT_TRUE(HRdb::heeftRecords(rijen));
    EXPECT_EQ(HRdb::GetDbValueFromField(*rijen, "HBN_MS_MO", true), "");
    EXPECT_EQ(HRdb::GetDbValueFromField(*rijen, "Berekeningnaam", true), "\"\"");
}

TEST_F(VeldTekstTest, AnExportWritesAVeryLargeNumberWhole)
{
    const auto rij = db.GetRecordSet("SELECT 1E20 AS groot FROM Locatie WHERE Locatie_ID=4");
    ASSERT_TRUE(HRdb::heeftRecords(rij));
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "groot", true), "1E+20");
}

TEST_F(VeldTekstTest, OtherTypesAreEmptyInAnExport)
{
    const auto rij = db.GetRecordSet("SELECT Naam, QOverslag FROM Dijkring");
    ASSERT_TRUE(HRdb::heeftRecords(rij));
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "Naam", true), "") << "a memo";
    EXPECT_EQ(HRdb::GetDbValueFromField(*rij, "QOverslag", true), "") << "a single";
}
