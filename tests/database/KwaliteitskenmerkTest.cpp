#include "DatabaseFixture.h"

class KwaliteitskenmerkTest : public DatabaseTest {
protected:
    /// The mark of Plas-01 after `statements` on the example.
    int KenmerkNa(const std::vector<std::string>& statements)
    {
        const QString bestand = VoorbeeldDatabase("kenmerk" + std::to_string(m_nummer++) + ".mdb");
        Voeruit(bestand, statements);
        EXPECT_EQ(db.OpenDB(bestand, false), OpenResult::Accepted);
        db.UpdateKwaliteitskenmerk();
        return db.GetKwaliteitskenmerk("Plas-01");
    }

    /// Changes the open file beside the operations, so that no mark is refreshed.
    void WijzigErnaast(const std::string& statement)
    {
        db.CloseDB();
        Voeruit(db.fileName(), {statement});
    }

private:
    int m_nummer = 0;
};

TEST_F(KwaliteitskenmerkTest, IsTwoForACompleteLocationWithAProfile)
{
    EXPECT_EQ(KenmerkNa({}), 2);
}

TEST_F(KwaliteitskenmerkTest, IsOneWithoutAProfileAndTwoAfterAssigningOne)
{
    EXPECT_EQ(KenmerkNa({"DELETE * FROM Locatie_Profiel WHERE Locatie_ID=1"}), 1);
    db.AddProfiel2Location(1, 1);
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-01"), 2);
    db.DeleteProfielFromLocation(1, 1);
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-01"), 1);
}

TEST_F(KwaliteitskenmerkTest, IsZeroWhenAnythingIsUnknown)
{
    EXPECT_EQ(KenmerkNa({"UPDATE Geometrie SET FE=-999 WHERE Locatie_ID=1 AND Richting_ID=7"}), 0);
    EXPECT_EQ(KenmerkNa({"UPDATE Locatie SET dijknormaal=-999 WHERE Locatie_ID=1"}), 0);
    EXPECT_EQ(KenmerkNa({"UPDATE Locatie SET streefpeil=-999 WHERE Locatie_ID=1"}), 0);
    EXPECT_EQ(KenmerkNa({"UPDATE Scheefstand SET Scheefstand=-999 WHERE Locatie_ID=1 AND "
                         "Richting_ID=3 AND Windsnelheid=10"}),
              0);
    EXPECT_EQ(KenmerkNa({"UPDATE Boezempeilstatistiek SET Boezempeil=-999 WHERE Locatie_ID=1 AND "
                         "Herhalingstijd=30"}),
              0);
}

TEST_F(KwaliteitskenmerkTest, CountsExactlyTheFiveFixedReturnPeriods)
{
    EXPECT_EQ(KenmerkNa({"UPDATE Boezempeilstatistiek SET Herhalingstijd=50 WHERE Locatie_ID=1 AND "
                         "Herhalingstijd=100"}),
              0)
        << "four of the five";
    EXPECT_EQ(KenmerkNa({"INSERT INTO Boezempeilstatistiek VALUES (1,50,0.3)"}), 2)
        << "a sixth return period is passed over";
    EXPECT_EQ(KenmerkNa({"INSERT INTO Boezempeilstatistiek VALUES (1,100,0.3)"}), 0)
        << "six matching rows are not five";
}

TEST_F(KwaliteitskenmerkTest, ALocationWithoutFetchOrSetUpRowsCountsAsKnown)
{
    EXPECT_EQ(KenmerkNa({"DELETE * FROM Geometrie WHERE Locatie_ID=1",
                         "DELETE * FROM Scheefstand WHERE Locatie_ID=1"}),
              2);
}

TEST_F(KwaliteitskenmerkTest, RunsOverAllLocations)
{
    KenmerkNa({"UPDATE Locatie SET kwaliteitskenmerk=9",
               "UPDATE Locatie SET streefpeil=-999 WHERE Locatie_ID>20"});
    EXPECT_EQ(Lees("SELECT kwaliteitskenmerk, COUNT(*) FROM Locatie GROUP BY kwaliteitskenmerk "
                   "ORDER BY kwaliteitskenmerk"),
              (Rijen{{"0", "4"}, {"2", "20"}}));
}

TEST_F(KwaliteitskenmerkTest, Raises1506WhenATableIsMissing)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DROP TABLE Scheefstand"});
    db.OpenDB(bestand, false);
    EXPECT_EQ(FoutVan([&] { db.UpdateKwaliteitskenmerk(); }), 1506);
}

TEST_F(KwaliteitskenmerkTest, EveryChangeOfALocationsDataRefreshesIt)
{
    const auto naWijziging = [this](auto wijziging) {
        EXPECT_EQ(KenmerkNa({}), 2);
        wijziging();
        return db.GetKwaliteitskenmerk("Plas-01");
    };
    EXPECT_EQ(naWijziging([this] { db.UpdateDijknormaal("Plas-01", kNietBekend); }), 0);
    EXPECT_EQ(naWijziging([this] { db.UpdateStreefpeil("Plas-01", kNietBekend); }), 0);
    EXPECT_EQ(naWijziging([this] { db.UpdateBoezempeilstatistiek("Plas-01", {10}, {0.5}); }), 0);
    EXPECT_EQ(naWijziging([this] { db.UpdateFe("Plas-01", {45}, {kNietBekend}); }), 0);
    EXPECT_EQ(naWijziging([this] { db.UpdateFeHbodem("Plas-01", {45}, {0}, {kNietBekend}); }), 0);
}

TEST_F(KwaliteitskenmerkTest, ANewLocationKeepsItsMarkUntilTheNextRefresh)
{
    EXPECT_EQ(KenmerkNa({}), 2);
    db.UpdateStreefpeil("Plas-01", kNietBekend);
    db.AddLocatie(1, 2, "Nieuw");
    WijzigErnaast("UPDATE Locatie SET kwaliteitskenmerk=7 WHERE Locatie_ID=2");
    db.AddLocatie(1, 2, "Nieuwer");
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-02"), 7) << "adding refreshes nothing";
    EXPECT_EQ(db.GetKwaliteitskenmerk("Nieuw"), 1);
}
