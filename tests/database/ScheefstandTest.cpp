#include "DatabaseFixture.h"

class ScheefstandTest : public DatabaseTest {
protected:
    /// What the log says of Plas-01 after `statements` on the example.
    QString OordeelNa(const std::vector<std::string>& statements)
    {
        const QString bestand = VoorbeeldDatabase("s" + std::to_string(m_nummer++) + ".mdb");
        Voeruit(bestand, statements);
        EXPECT_EQ(db.OpenDB(bestand, false), OpenResult::Accepted);
        db.Checkscheefstandtabel();
        const QString regel = log.text.section("\r\n", 0, 0);
        EXPECT_TRUE(regel.startsWith("Controle locatie Plas-01 ["));
        return regel.section('[', 1).chopped(1);
    }

    QString Slotregel() const { return log.text.section("\r\n", -1); }

private:
    int m_nummer = 0;
};

namespace {

std::string Wis(const char* voorwaarde)
{
    return std::string("DELETE * FROM Scheefstand WHERE Locatie_ID=1 AND ") + voorwaarde;
}

std::string Zet(const char* waarde, const char* voorwaarde)
{
    return std::string("UPDATE Scheefstand SET ") + waarde + " WHERE Locatie_ID=1 AND " +
           voorwaarde;
}

} // namespace

TEST_F(ScheefstandTest, WritesALinePerLocationAndTheCount)
{
    OpenVoorbeeld();
    log.text = "oud";
    db.Checkscheefstandtabel();
    const auto regels = log.text.split("\r\n");
    ASSERT_EQ(regels.size(), 26) << "24 locations, an empty line, the count";
    EXPECT_EQ(regels[0], "Controle locatie Plas-01 [OK]");
    EXPECT_EQ(regels[23], "Controle locatie Vaart-4 [OK]");
    EXPECT_EQ(regels[24], "");
    EXPECT_EQ(regels[25], "Aantal geconstateerde fouten: 0");
}

TEST_F(ScheefstandTest, ShowsThatItIsBusyAndRestoresTheStatusText)
{
    OpenVoorbeeld();
    status.text = "Gereed";
    db.Checkscheefstandtabel();
    EXPECT_TRUE(status.history.contains("Controle scheefstandtabel, kan even duren..."));
    EXPECT_EQ(status.text, "Gereed");
}

TEST_F(ScheefstandTest, ANewLocationPasses)
{
    OpenVoorbeeld();
    db.AddLocatie(1, 2, "Nieuw");
    db.Checkscheefstandtabel();
    EXPECT_TRUE(log.text.contains("Controle locatie Nieuw [OK]"));
}

TEST_F(ScheefstandTest, FindsAFirstSectorWithoutRows)
{
    EXPECT_EQ(OordeelNa({Wis("Richting_ID=1")}), "Geen windsnelheden bij windsector 1");
}

TEST_F(ScheefstandTest, FindsFewerThanFiveSpeedsInTheFirstSector)
{
    EXPECT_EQ(OordeelNa({Wis("Richting_ID=1 AND Windsnelheid=20")}),
              "Er zijn minder dan 5 windsnelheden bij windsector 1");
}

TEST_F(ScheefstandTest, ASectorWithFourRowsBehindAGoodFirstOneDiffers)
{
    EXPECT_EQ(OordeelNa({Wis("Richting_ID=3 AND Windsnelheid=20")}),
              "Windsnelheden bij windsector 1 en windsector 3 verschillen");
}

TEST_F(ScheefstandTest, FindsSpeedsTooCloseInTheFirstSectorOnly)
{
    EXPECT_EQ(OordeelNa({Zet("Windsnelheid=10.05", "Richting_ID=1 AND Windsnelheid=20"),
                         Zet("Windsnelheid=10", "Richting_ID=1 AND Windsnelheid=10")}),
              "Sommige windsnelheden liggen minder dan 0.1 m/s uit elkaar bij windsector 1");
    EXPECT_EQ(OordeelNa({Zet("Windsnelheid=10.05", "Richting_ID=2 AND Windsnelheid=20")}),
              "Windsnelheden bij windsector 1 en windsector 2 verschillen");
}

TEST_F(ScheefstandTest, SpeedsOfATenthApartAreComparedAsTheyAreStored)
{
    EXPECT_EQ(OordeelNa({Zet("Windsnelheid=0.1", "Windsnelheid=10")}), "OK") << "0 and 0.1";
    EXPECT_EQ(OordeelNa({Zet("Windsnelheid=10.1", "Windsnelheid=20")}),
              "Sommige windsnelheden liggen minder dan 0.1 m/s uit elkaar bij windsector 1")
        << "10.1 - 10 is a hair less than 0.1 in a double";
}

TEST_F(ScheefstandTest, EqualSetUpsAtRisingSpeedsPass)
{
    EXPECT_EQ(OordeelNa({Zet("Scheefstand=0.3", "Richting_ID=5")}), "OK");
}

TEST_F(ScheefstandTest, AnEmptyFieldIsAFaultOfItsLocationAndTheCheckGoesOn)
{
    EXPECT_EQ(OordeelNa({Zet("Scheefstand=NULL", "Richting_ID=5 AND Windsnelheid=20")}),
              "De windsnelheden zijn niet oplopend bij windsector 5");
    EXPECT_TRUE(log.text.contains("Controle locatie Plas-02 [OK]"));
    EXPECT_EQ(OordeelNa({Zet("Windsnelheid=NULL", "Richting_ID=5 AND Windsnelheid=20")}),
              "Windsnelheden bij windsector 1 en windsector 5 verschillen");
}

TEST_F(ScheefstandTest, FindsASectorWithoutRows)
{
    EXPECT_EQ(OordeelNa({Wis("Richting_ID=16")}), "Geen windsnelheden bij windsector 16");
}

TEST_F(ScheefstandTest, CallsAFallingSetUpSpeedsThatDoNotRise)
{
    // The words speak of wind speeds, the test looks at the set-up: kept.
    EXPECT_EQ(OordeelNa({Zet("Scheefstand=0.3", "Richting_ID=5 AND Windsnelheid=30"),
                         Zet("Scheefstand=0.2", "Richting_ID=5 AND Windsnelheid=40")}),
              "De windsnelheden zijn niet oplopend bij windsector 5");
    EXPECT_EQ(OordeelNa({Zet("Scheefstand=0.3", "Richting_ID=1 AND Windsnelheid=30"),
                         Zet("Scheefstand=0.2", "Richting_ID=1 AND Windsnelheid=40")}),
              "De windsnelheden zijn niet oplopend bij windsector 1");
}

TEST_F(ScheefstandTest, FindsANegativeSetUpInAllButTheFirstSector)
{
    EXPECT_EQ(OordeelNa({Zet("Scheefstand=-0.1", "Richting_ID=5 AND Windsnelheid=0")}),
              QStringLiteral("Er zijn één of meer negatieve windsnelheden bij windsector 5"));
    EXPECT_EQ(OordeelNa({Zet("Scheefstand=-0.1", "Richting_ID=1 AND Windsnelheid=0")}), "OK")
        << "the reference sector is spared";
}

TEST_F(ScheefstandTest, NamesSectorOneWhateverTheFirstIs)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DELETE * FROM Windsectoren WHERE Richting_ID=1",
                      Wis("Richting_ID=3 AND Windsnelheid=20")});
    db.OpenDB(bestand, false);
    db.Checkscheefstandtabel();
    EXPECT_TRUE(log.text.startsWith("Controle locatie Plas-01 [Windsnelheden bij windsector 1 en "
                                    "windsector 3 verschillen]"));
}

TEST_F(ScheefstandTest, GoesOnBehindAFaultAndCountsLocations)
{
    OordeelNa({Wis("Richting_ID=3"), Wis("Richting_ID=4"),
               "DELETE * FROM Scheefstand WHERE Locatie_ID=2 AND Richting_ID=4"});
    EXPECT_TRUE(log.text.contains("Controle locatie Plas-03 [OK]"));
    EXPECT_EQ(Slotregel(), "Aantal geconstateerde fouten: 2");
}

TEST_F(ScheefstandTest, Raises14WithoutSectors)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DELETE * FROM Windsectoren"});
    db.OpenDB(bestand, false);
    QString omschrijving;
    EXPECT_EQ(FoutVan([&] { db.Checkscheefstandtabel(); }, &omschrijving), 14);
    EXPECT_TRUE(omschrijving.contains(".\\boezem.mdb")) << omschrijving.toStdString();
}

TEST_F(ScheefstandTest, Raises12WhenALocationHasNoRows)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DELETE * FROM Scheefstand WHERE Locatie_ID=7"});
    db.OpenDB(bestand, false);
    QString omschrijving;
    EXPECT_EQ(FoutVan([&] { db.Checkscheefstandtabel(); }, &omschrijving), 12);
    EXPECT_TRUE(omschrijving.contains(".\\boezem.mdb")) << omschrijving.toStdString();
    EXPECT_TRUE(omschrijving.contains("24"));
    EXPECT_TRUE(omschrijving.contains("23"));
}

TEST_F(ScheefstandTest, RowsOfALocationThatIsGoneCountForNothing)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DELETE * FROM Locatie WHERE Locatie_ID=7"});
    db.OpenDB(bestand, false);
    db.Checkscheefstandtabel();
    EXPECT_EQ(Slotregel(), "Aantal geconstateerde fouten: 0");
}

TEST_F(ScheefstandTest, TheStatusTextComesBackAfterAFailureToo)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DELETE * FROM Windsectoren"});
    db.OpenDB(bestand, false);
    status.text = "Gereed";
    EXPECT_THROW(db.Checkscheefstandtabel(), Fout);
    EXPECT_EQ(status.text, "Gereed");
}

TEST_F(ScheefstandTest, AnEmptyLocationTableSaysNothing)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DELETE * FROM Locatie"});
    db.OpenDB(bestand, false);
    db.Checkscheefstandtabel();
    EXPECT_EQ(log.text, "");
}
