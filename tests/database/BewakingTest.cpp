#include "DatabaseFixture.h"

#include "frame/Globals.h"
#include "frame/QLMIniFile.h"

#include <QDir>
#include <QFile>

/// What the guard does to a file that is opened checked.
class BewakingTest : public DatabaseTest {
protected:
    void SetUp() override { boxes.answers = {Answer::No}; }

    /// Result and description of a checked open after `statements` on a copy of the example.
    OpenResult OpenNa(const std::vector<std::string>& statements)
    {
        bestand = VoorbeeldDatabase("b" + std::to_string(m_nummer++) + ".mdb");
        Voeruit(bestand, statements);
        return db.OpenDB(bestand, false, true);
    }

    std::string Omschrijving() const { return db.OpenErrDescription().toStdString(); }

    void GebruikStatistieken(const std::string& pad)
    {
        gIniFile().SaveString("ALGEMEEN", "Statistieken.mdb", QString::fromStdString(pad));
    }

    /// A calculation with one result row at each of the named locations.
    static std::vector<std::string> MetResultaten(const std::vector<int>& locaties,
                                                  const std::string& profiel = "1")
    {
        std::vector<std::string> statements{
            "INSERT INTO Berekening (Naam,ProfielId,Faalmechanisme,QOverslag) VALUES ('ontwerp'," +
            profiel + ",'OVERLOOP',-999)"};
        for (const int locatie : locaties)
            for (const char* periode : {"10", "100"})
                statements.push_back("INSERT INTO Resultaat (Berekening_ID,Locatie_ID,"
                                     "Herhalingstijd) VALUES (1," +
                                     std::to_string(locatie) + "," + periode + ")");
        return statements;
    }

    /// And so many locations that there are 1001.
    static std::vector<std::string> MetTeVeelLocaties(std::vector<std::string> statements)
    {
        for (int i = 24; i < 1001; ++i)
            statements.push_back("INSERT INTO Locatie (omschrijving) VALUES ('L" +
                                 std::to_string(i) + "')");
        return statements;
    }

    QStringList Kopieen() const { return QDir(Pad("")).entryList({"*.voor-opwaardering-*.mdb"}); }

    QString bestand;

private:
    int m_nummer = 0;
};

namespace {

const std::vector<std::string> kStatistiektabellen{
    "Kanswindrichting winter", "Kanswindrichting zomer", "Windstatistiek winter",
    "Windstatistiek zomer", "Transformatietabel"};

} // namespace

TEST_F(BewakingTest, AcceptsTheExampleWithoutChangingItsStructure)
{
    EXPECT_EQ(OpenNa({}), OpenResult::Accepted) << Omschrijving();
    EXPECT_TRUE(db.IsOpen());
    EXPECT_TRUE(Kopieen().isEmpty());
    EXPECT_TRUE(boxes.questions.isEmpty());
    EXPECT_TRUE(QDir(db.WerkMap()).exists()) << "the work folder is made";
    db.CloseDB();
    ExpectSound(bestand);
}

// --- upgrade ---

TEST_F(BewakingTest, UpgradesAnOldFile)
{
    GebruikStatistieken(".\\Statistieken.mdb");
    VoorbeeldDatabase("Statistieken.mdb");
    const QString oud = OudeDatabase();
    EXPECT_EQ(db.OpenDB(oud, false, true), OpenResult::Accepted) << Omschrijving();
    db.CloseDB();
    ExpectSound(oud);

    EXPECT_EQ(Lees(oud, "SELECT * FROM VeiligheidsklasseHerhalingstijd ORDER BY Veiligheidsklasse"),
              (Rijen{{"1", "10"}, {"2", "30"}, {"3", "100"}, {"4", "300"}, {"5", "1000"}}));
    EXPECT_EQ(Lees(oud, "SELECT Kruinbreedte,Taludhelling,Constructietype,Palenrij,Paaldiameter,"
                        "HartafstandPalen,Rietkraag,Vegetatiebreedte,AantalLevendeStengels,"
                        "SeizoensinvloedFactor FROM Profielen WHERE Naam='Rietoever'"),
              (Rijen{{"0", "0", "0", "0", "0", "0", "0", "0", "0", "0"}}));
    EXPECT_EQ(Lees(oud, "SELECT COUNT(*) FROM ProfielSegmenten WHERE Gras=True"), (Rijen{{"0"}}));
    EXPECT_EQ(
        Lees(oud, "SELECT [Momentane kans] FROM [Kanswindrichting zomer] WHERE Richting_ID=1"),
        (Rijen{{"0.07"}}))
        << "the statistics are the reference file's";
    const auto profielen = jet::Workspace()
                               .OpenDatabase(oud.toStdString(), {.readOnly = true})
                               ->GetTableDef("Profielen");
    for (const char* naam : {"Constructietype", "Palenrij", "Rietkraag"}) {
        EXPECT_EQ(profielen.FindField(naam)->type, jet::ColumnType::Integer) << naam;
        EXPECT_TRUE(profielen.FindField(naam)->required) << naam;
    }
    EXPECT_EQ(profielen.FindField("Paaldiameter")->type, jet::ColumnType::Single);
    for (const char* naam : {"Berekening", "Resultaat"})
        EXPECT_EQ(Lees(oud, std::string("SELECT COUNT(*) FROM ") + naam), (Rijen{{"0"}})) << naam;
}

TEST_F(BewakingTest, TheTablesItMakesCanBeUsedAtOnce)
{
    ASSERT_EQ(OpenNa({"DROP TABLE Berekening", "DROP TABLE Resultaat"}), OpenResult::Accepted);
    const int id = db.AddBerekening("een", 0, "OVERLOOP", -999);
    EXPECT_EQ(FoutVan([&] { db.AddBerekening("een", 0, "OVERLOOP", -999); }), 1509)
        << "SecondaryKey is unique";
    db.AddNewResultaatRecord(id, "Plas-01", 10);
    EXPECT_EQ(Lees("SELECT HBN_MS_MO, GOLFRICHTING, [DOMINANTE WINDRICHTING] FROM Resultaat"),
              (Rijen{{"-999", "-999", "-999"}}));
}

TEST_F(BewakingTest, OneEqualSectorCostsAllFiveStatisticTables)
{
    EXPECT_EQ(OpenNa({"UPDATE [Kanswindrichting zomer] SET [Momentane kans]=0.04 WHERE "
                      "Richting_ID=1"}),
              OpenResult::CheckFailed);
    EXPECT_FALSE(db.IsOpen());
    EXPECT_TRUE(db.fileName().isEmpty());
    EXPECT_TRUE(db.OpenErrDescription().contains("Kanswindrichting winter")) << Omschrijving();
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(bestand.toStdString());
    for (const std::string& tabel : kStatistiektabellen)
        EXPECT_FALSE(database->HasTable(tabel)) << tabel << " stays lost";
}

TEST_F(BewakingTest, EqualStatisticsAreReplacedFromTheReferenceFile)
{
    VoorbeeldDatabase("Statistieken.mdb");
    GebruikStatistieken(".\\Statistieken.mdb");
    EXPECT_EQ(OpenNa({"UPDATE [Kanswindrichting zomer] SET [Momentane kans]=0.04 WHERE "
                      "Richting_ID=1"}),
              OpenResult::Accepted)
        << Omschrijving();
    EXPECT_EQ(Lees("SELECT [Momentane kans] FROM [Kanswindrichting zomer] WHERE Richting_ID=1"),
              (Rijen{{"0.07"}}));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM [Windstatistiek winter]"), (Rijen{{"352"}}));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Transformatietabel"), (Rijen{{"11"}}));
}

TEST_F(BewakingTest, ADamagedReferenceFileRefusesTheDatabase)
{
    QFile kapot(Pad("Statistieken.mdb"));
    ASSERT_TRUE(kapot.open(QIODevice::WriteOnly));
    kapot.write("geen database");
    kapot.close();
    GebruikStatistieken(".\\Statistieken.mdb");
    EXPECT_EQ(OpenNa({"UPDATE [Kanswindrichting zomer] SET [Momentane kans]=0.04 WHERE "
                      "Richting_ID=1"}),
              OpenResult::CheckFailed);
    EXPECT_FALSE(Omschrijving().empty());
}

TEST_F(BewakingTest, AFileWithoutStatisticTablesFailsAtTheTestQuery)
{
    EXPECT_EQ(OpenNa({"DROP TABLE [Kanswindrichting winter]"}), OpenResult::CheckFailed);
    EXPECT_TRUE(db.OpenErrDescription().contains("Kanswindrichting winter")) << Omschrijving();
}

TEST_F(BewakingTest, AProfileTableWithSomeOfTheTenFieldsIsRefused)
{
    const QString oud = OudeDatabase();
    GebruikStatistieken(".\\Statistieken.mdb");
    VoorbeeldDatabase("Statistieken.mdb");
    Voeruit(oud, {"ALTER TABLE Profielen ADD COLUMN Kruinbreedte SINGLE NOT NULL, Taludhelling "
                  "SINGLE NOT NULL"});
    EXPECT_EQ(db.OpenDB(oud, false, true), OpenResult::CheckFailed);
    EXPECT_FALSE(Omschrijving().empty());
}

// --- tables and fields ---

TEST_F(BewakingTest, AMissingTableIs1500ButOnlyAfterTheOthersWereMade)
{
    EXPECT_EQ(OpenNa({"DROP TABLE Locatie", "DROP TABLE Berekening", "DROP TABLE Resultaat"}),
              OpenResult::CheckFailed);
    EXPECT_TRUE(db.OpenErrDescription().contains("Locatie")) << Omschrijving();
    EXPECT_TRUE(db.OpenErrDescription().contains(bestand)) << Omschrijving();
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(bestand.toStdString());
    EXPECT_TRUE(database->HasTable("Berekening"));
    EXPECT_TRUE(database->HasTable("Resultaat"));
}

TEST_F(BewakingTest, AMissingFieldIs1501)
{
    bestand = VoorbeeldDatabase();
    {
        jet::Workspace workspace;
        workspace.OpenDatabase(bestand.toStdString())->DropField("Geometrie", "B_org");
    }
    EXPECT_EQ(db.OpenDB(bestand, false, true), OpenResult::CheckFailed);
    EXPECT_TRUE(db.OpenErrDescription().contains("Geometrie")) << Omschrijving();
    EXPECT_TRUE(db.OpenErrDescription().contains("B_org")) << Omschrijving();
}

TEST_F(BewakingTest, BehindTheUpgradeOfProfilesTheOtherFieldsAreStillAskedFor)
{
    bestand = OudeDatabase();
    GebruikStatistieken(".\\Statistieken.mdb");
    VoorbeeldDatabase("Statistieken.mdb");
    {
        jet::Workspace workspace;
        workspace.OpenDatabase(bestand.toStdString())->DropField("Profielen", "Memo");
    }
    EXPECT_EQ(db.OpenDB(bestand, false, true), OpenResult::CheckFailed);
    EXPECT_TRUE(db.OpenErrDescription().contains("Profielen")) << Omschrijving();
    EXPECT_TRUE(db.OpenErrDescription().contains("Memo")) << Omschrijving();
}

TEST_F(BewakingTest, AFieldOfProfilesThatIsNoneOfTheTenIs1501)
{
    bestand = VoorbeeldDatabase();
    {
        jet::Workspace workspace;
        workspace.OpenDatabase(bestand.toStdString())->DropField("Profielen", "DamHoogte");
    }
    EXPECT_EQ(db.OpenDB(bestand, false, true), OpenResult::CheckFailed);
    EXPECT_TRUE(db.OpenErrDescription().contains("DamHoogte")) << Omschrijving();
}

// --- names of locations ---

TEST_F(BewakingTest, RefusesNamesThatMakeNoFolder)
{
    for (const char* naam : {"'.punt'", "'vraag?'", "'a/b'", "'a\\b'", "'a:b'", "'a*b'", "'a<b'",
                             "'a>b'", "'a|b'", "'a\"b'"}) {
        EXPECT_EQ(OpenNa({std::string("UPDATE Locatie SET omschrijving=") + naam +
                          " WHERE Locatie_ID=3"}),
                  OpenResult::CheckFailed)
            << naam;
        EXPECT_TRUE(db.OpenErrDescription().contains("mapnaam")) << naam << Omschrijving();
    }
}

TEST_F(BewakingTest, RefusesAnEmptyName)
{
    EXPECT_EQ(OpenNa({"UPDATE Locatie SET omschrijving=NULL WHERE Locatie_ID=3"}),
              OpenResult::CheckFailed);
}

TEST_F(BewakingTest, NamesThatDifferInCaseAloneAreOneName)
{
    EXPECT_EQ(OpenNa({"UPDATE Locatie SET omschrijving='PLAS-01' WHERE Locatie_ID=3"}),
              OpenResult::CheckFailed);
    EXPECT_TRUE(db.OpenErrDescription().contains("niet uniek")) << Omschrijving();
    EXPECT_TRUE(db.OpenErrDescription().contains("Locaties")) << "the first of the two checks";
}

TEST_F(BewakingTest, AFileWithoutLocationsPassesTheNameChecks)
{
    EXPECT_EQ(OpenNa({"DELETE * FROM Locatie"}), OpenResult::Accepted) << Omschrijving();
}

TEST_F(BewakingTest, AThousandLocationsPassAndOneMoreIsCode3)
{
    bestand = VoorbeeldDatabase();
    const auto vul = [this](int tot) {
        jet::Workspace workspace;
        const auto database = workspace.OpenDatabase(bestand.toStdString());
        workspace.BeginTrans();
        const auto tabel = database->OpenRecordset("Locatie");
        for (int i = tabel->RecordCount(); i < tot; ++i) {
            tabel->AddNew();
            tabel->Set("omschrijving", jet::Value("L" + std::to_string(i)));
            tabel->Update();
        }
        workspace.CommitTrans();
    };
    vul(1000);
    EXPECT_EQ(db.OpenDB(bestand, false, true), OpenResult::Accepted) << Omschrijving();
    db.CloseDB();
    vul(1001);
    HRdb ander;
    EXPECT_EQ(ander.OpenDB(bestand, false, true), OpenResult::TooManyLocations);
    EXPECT_TRUE(ander.IsOpen()) << "the caller closes it";
    EXPECT_EQ(ander.fileName(), bestand);
}

TEST_F(BewakingTest, WithTooManyLocationsNoResultIsAskedForWhileTheWorkFolderIsThere)
{
    MaakMap(Pad("b0"));
    boxes.answers = {Answer::Third};
    EXPECT_EQ(OpenNa(MetTeVeelLocaties(MetResultaten({1}))), OpenResult::TooManyLocations);
    EXPECT_TRUE(boxes.questions.isEmpty());
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"2"}}));
}

TEST_F(BewakingTest, WithTooManyLocationsAMissingWorkFolderIsAskedForAllTheSame)
{
    boxes.answers = {Answer::Yes};
    EXPECT_EQ(OpenNa(MetTeVeelLocaties(MetResultaten({1}))), OpenResult::TooManyLocations);
    ASSERT_EQ(boxes.questions.size(), 1);
    EXPECT_EQ(boxes.questions[0].number, 200);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"0"}}));

    boxes.answers = {Answer::No};
    EXPECT_EQ(OpenNa(MetTeVeelLocaties(MetResultaten({1}))), OpenResult::ResultsDeclined);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"2"}}));
}

// --- results and their folders ---

TEST_F(BewakingTest, ResultsWithTheirFolderAreLeftAlone)
{
    MaakMap(Pad("b0/Plas-01/berekeningen/ONTWERP_gras 1op3"));
    EXPECT_EQ(OpenNa(MetResultaten({1})), OpenResult::Accepted);
    EXPECT_TRUE(boxes.questions.isEmpty()) << "folder names compare without regard to case";
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"2"}}));
}

TEST_F(BewakingTest, AsksOncePerLocationAndCalculation)
{
    MaakMap(Pad("b0"));
    boxes.answers = {Answer::First};
    EXPECT_EQ(OpenNa(MetResultaten({1, 2})), OpenResult::Accepted);
    ASSERT_EQ(boxes.questions.size(), 2) << "not once per result row";
    EXPECT_EQ(boxes.questions[0].number, 201);
    EXPECT_EQ(boxes.questions[0].arguments, (QStringList{"ontwerp_Gras 1op3", "Plas-01"}));
    EXPECT_EQ(boxes.buttons, (QStringList{"Ja", "Nee", "Ja op alles"}));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"0"}}));
    EXPECT_FALSE(db.BerekeningExists("ontwerp"));
}

TEST_F(BewakingTest, YesToAllAsksNoFurther)
{
    MaakMap(Pad("b0"));
    boxes.answers = {Answer::Third};
    EXPECT_EQ(OpenNa(MetResultaten({1, 2, 3})), OpenResult::Accepted);
    EXPECT_EQ(boxes.questions.size(), 1);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"0"}}));
}

TEST_F(BewakingTest, NoIsCode4AndWhatWasDeletedStaysDeleted)
{
    MaakMap(Pad("b0"));
    boxes.answers = {Answer::First, Answer::Second};
    EXPECT_EQ(OpenNa(MetResultaten({1, 2, 3})), OpenResult::ResultsDeclined);
    EXPECT_TRUE(db.IsOpen()) << "the caller closes it";
    EXPECT_EQ(boxes.questions.size(), 2);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"4"}}));
}

TEST_F(BewakingTest, ACalculationWithoutProfileHasNoSuffix)
{
    MaakMap(Pad("b0/Plas-01/Berekeningen/ontwerp"));
    EXPECT_EQ(OpenNa(MetResultaten({1}, "0")), OpenResult::Accepted);
    EXPECT_TRUE(boxes.questions.isEmpty());
}

TEST_F(BewakingTest, WithoutWorkFolderAYesRemovesEveryCalculationWithResults)
{
    boxes.answers = {Answer::Yes};
    EXPECT_EQ(OpenNa(MetResultaten({1, 2})), OpenResult::Accepted);
    ASSERT_EQ(boxes.questions.size(), 1);
    EXPECT_EQ(boxes.questions[0].number, 200);
    EXPECT_EQ(boxes.questions[0].arguments, QStringList{Pad("b0")});
    EXPECT_TRUE(QDir(Pad("b0")).exists());
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Berekening"), (Rijen{{"0"}}));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"0"}}));
}

TEST_F(BewakingTest, WithoutWorkFolderANoIsCode4)
{
    EXPECT_EQ(OpenNa(MetResultaten({1})), OpenResult::ResultsDeclined);
    EXPECT_FALSE(QDir(Pad("b0")).exists());
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"2"}}));
}

TEST_F(BewakingTest, WithoutAnybodyToAskNothingIsDeleted)
{
    gBoxes.Release();
    EXPECT_EQ(OpenNa(MetResultaten({1})), OpenResult::ResultsDeclined) << "no work folder";
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"2"}}));
    MaakMap(Pad("b1"));
    EXPECT_EQ(OpenNa(MetResultaten({1})), OpenResult::ResultsDeclined) << "no output folder";
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"2"}}));
    EXPECT_TRUE(Kopieen().isEmpty());
}

TEST_F(BewakingTest, AFileBesideTheOutputFoldersIsNoOutput)
{
    MaakMap(Pad("b0/Plas-01/Berekeningen/dieper/ontwerp_Gras 1op3"));
    QFile geenMap(Pad("b0/Plas-01/Berekeningen/ontwerp_Gras 1op3"));
    ASSERT_TRUE(geenMap.open(QIODevice::WriteOnly));
    geenMap.close();
    EXPECT_EQ(OpenNa(MetResultaten({1})), OpenResult::ResultsDeclined);
    EXPECT_EQ(boxes.questions.size(), 1);
}

TEST_F(BewakingTest, TheQualityMarksAreRefreshedWhateverTheOutcome)
{
    auto statements = MetResultaten({1});
    statements.push_back("UPDATE Locatie SET kwaliteitskenmerk=0");
    EXPECT_EQ(OpenNa(statements), OpenResult::ResultsDeclined);
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-01"), 2);
}

// --- read-only ---

TEST_F(BewakingTest, AReadOnlyOpenRefreshesNothing)
{
    bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Locatie SET kwaliteitskenmerk=0"});
    EXPECT_EQ(db.OpenDB(bestand, true, true), OpenResult::Accepted) << Omschrijving();
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-01"), 0);
}

TEST_F(BewakingTest, AReadOnlyOpenCannotUpgrade)
{
    const QString oud = OudeDatabase();
    QFile voor(oud);
    ASSERT_TRUE(voor.open(QIODevice::ReadOnly));
    const QByteArray inhoud = voor.readAll();
    EXPECT_EQ(db.OpenDB(oud, true, true), OpenResult::CheckFailed);
    EXPECT_FALSE(Omschrijving().empty());
    QFile na(oud);
    ASSERT_TRUE(na.open(QIODevice::ReadOnly));
    EXPECT_EQ(na.readAll(), inhoud);
    EXPECT_TRUE(Kopieen().isEmpty());
}

// --- the copy that is kept ---

TEST_F(BewakingTest, KeepsACopyOfTheFileAsItWasBeforeTheFirstChange)
{
    const QString oud = OudeDatabase();
    QFile bestandVoor(oud);
    ASSERT_TRUE(bestandVoor.open(QIODevice::ReadOnly));
    const QByteArray inhoud = bestandVoor.readAll();
    db.OpenDB(oud, false, true);
    ASSERT_EQ(Kopieen().size(), 1);
    EXPECT_TRUE(Kopieen().first().startsWith("oud.voor-opwaardering-"));
    QFile kopie(Pad(Kopieen().first().toStdString()));
    ASSERT_TRUE(kopie.open(QIODevice::ReadOnly));
    EXPECT_EQ(kopie.readAll(), inhoud);
    EXPECT_TRUE(status.history.filter(Kopieen().first()).size() > 0) << "the status bar says so";
}

TEST_F(BewakingTest, KeepsACopyBeforeDeletingResults)
{
    MaakMap(Pad("b0"));
    boxes.answers = {Answer::Third};
    OpenNa(MetResultaten({1, 2}));
    ASSERT_EQ(Kopieen().size(), 1);
    EXPECT_EQ(Lees(Pad(Kopieen().first().toStdString()), "SELECT COUNT(*) FROM Resultaat"),
              (Rijen{{"4"}}));
}

TEST_F(BewakingTest, KeepsACopyBeforeRemovingTheCalculationsOfAMissingWorkFolder)
{
    boxes.answers = {Answer::Yes};
    OpenNa(MetResultaten({1, 2}));
    ASSERT_EQ(Kopieen().size(), 1);
    EXPECT_EQ(Lees(Pad(Kopieen().first().toStdString()), "SELECT COUNT(*) FROM Resultaat"),
              (Rijen{{"4"}}));
}

TEST_F(BewakingTest, NeverOverwritesAnEarlierCopy)
{
    for (int keer = 0; keer < 2; ++keer) {
        const QString oud = OudeDatabase();
        db.OpenDB(oud, false, true);
        db.CloseDB();
        QFile::remove(oud);
    }
    EXPECT_EQ(Kopieen().size(), 2);
}
