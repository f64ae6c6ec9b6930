#include "DatabaseFixture.h"

#include "frame/Busy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using VerbindingTest = DatabaseTest;

TEST_F(VerbindingTest, IsClosedWhenNew)
{
    EXPECT_FALSE(db.IsOpen());
    EXPECT_TRUE(db.fileName().isEmpty());
    EXPECT_TRUE(db.OpenErrDescription().isEmpty());
    EXPECT_FALSE(db.IsDirty());
}

TEST_F(VerbindingTest, OpensAndRemembersFileAndStamp)
{
    const QString bestand = VoorbeeldDatabase();
    EXPECT_EQ(db.OpenDB(bestand, false), OpenResult::Accepted);
    EXPECT_TRUE(db.IsOpen());
    EXPECT_EQ(db.fileName(), bestand);
    EXPECT_EQ(db.DateLastModifiedByOpen(), QFileInfo(bestand).lastModified());
}

TEST_F(VerbindingTest, NobodyElseOpensTheFileMeanwhile)
{
    OpenVoorbeeld();
    HRdb ander;
    EXPECT_EQ(ander.OpenDB(db.fileName(), false), OpenResult::CouldNotOpen);
    EXPECT_FALSE(ander.OpenErrDescription().isEmpty());
    EXPECT_FALSE(ander.IsOpen());
    EXPECT_TRUE(ander.fileName().isEmpty());
    db.CloseDB();
    EXPECT_EQ(ander.OpenDB(db.fileName(), false), OpenResult::Accepted);
}

TEST_F(VerbindingTest, AClosedConnectionReopensAtTheNextOperation)
{
    OpenVoorbeeld();
    const QString bestand = db.fileName();
    db.CloseDB();
    EXPECT_FALSE(db.IsOpen());
    EXPECT_EQ(db.fileName(), bestand);
    EXPECT_EQ(db.GetLocatie_ID("Plas-04"), 4);
    EXPECT_TRUE(db.IsOpen());
}

TEST_F(VerbindingTest, OpeningTheSameFileAgainRunsNoCheckWhateverItsCase)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DROP TABLE Geometrie"}); // a check would refuse it
    ASSERT_EQ(db.OpenDB(bestand, false, false), OpenResult::Accepted);
    db.setDateLastModifiedByOpen({});
    EXPECT_EQ(db.OpenDB(bestand, false, true), OpenResult::Accepted);
    EXPECT_EQ(db.DateLastModifiedByOpen(), QFileInfo(bestand).lastModified()) << "the stamp is new";
    EXPECT_EQ(db.OpenDB(bestand.toUpper(), false, true), OpenResult::Accepted);
    EXPECT_EQ(db.fileName(), bestand);
}

TEST_F(VerbindingTest, OpeningAnotherFileClosesTheFirst)
{
    OpenVoorbeeld();
    const QString eerste = db.fileName();
    const QString tweede = VoorbeeldDatabase("tweede.mdb");
    EXPECT_EQ(db.OpenDB(tweede, false), OpenResult::Accepted);
    EXPECT_EQ(db.fileName(), tweede);
    HRdb ander;
    EXPECT_EQ(ander.OpenDB(eerste, false), OpenResult::Accepted);
}

TEST_F(VerbindingTest, IsDirtyLeavesTheConnectionClosed)
{
    OpenVoorbeeld();
    EXPECT_FALSE(db.IsDirty());
    EXPECT_FALSE(db.IsOpen());
    const QDateTime stempel = db.DateLastModifiedByOpen();
    db.setDateLastModifiedByOpen(stempel.addMSecs(-900));
    EXPECT_FALSE(db.IsDirty()) << "less than a second";
    db.setDateLastModifiedByOpen(stempel.addSecs(-5));
    EXPECT_TRUE(db.IsDirty());
    db.setDateLastModifiedByOpen(stempel.addSecs(5));
    EXPECT_TRUE(db.IsDirty()) << "an older file is another one, too";
}

TEST_F(VerbindingTest, ReopeningTakesTheStampOnlyWhenAsked)
{
    OpenVoorbeeld();
    const QDateTime oud(QDate(2001, 2, 3), QTime(4, 5));
    db.setDateLastModifiedByOpen(oud);
    db.CloseDB();
    db.reOpenDB(false);
    EXPECT_EQ(db.DateLastModifiedByOpen(), oud);
    db.CloseDB();
    db.reOpenDB(true);
    EXPECT_EQ(db.DateLastModifiedByOpen(), QFileInfo(db.fileName()).lastModified());
}

TEST_F(VerbindingTest, TheWorkFolderLiesBesideTheFileUnderItsName)
{
    OpenVoorbeeld();
    EXPECT_EQ(db.WerkMap(), Pad("boezem"));
    EXPECT_EQ(db.Sourcefilename(), db.fileName());
    EXPECT_FALSE(QDir(db.WerkMap()).exists());
    db.OpenWerkMap(db.WerkMap());
    EXPECT_TRUE(QDir(db.WerkMap()).exists());
    db.OpenWerkMap(db.WerkMap());
}

TEST_F(VerbindingTest, TheWorkFolderOfANameWithPointsKeepsAllButTheLast)
{
    db.OpenDB(VoorbeeldDatabase("boezem v1.2.mdb"), false);
    EXPECT_EQ(db.WerkMap(), Pad("boezem v1.2"));
}

TEST_F(VerbindingTest, AWorkFolderNeedsItsParent)
{
    OpenVoorbeeld();
    EXPECT_ANY_THROW(db.OpenWerkMap(Pad("bestaat/niet")));
    EXPECT_FALSE(QDir(Pad("bestaat")).exists());
}

TEST_F(VerbindingTest, HeeftRecordsIsTheOneTestForRows)
{
    OpenVoorbeeld();
    const auto rijen = db.GetRecordSet("SELECT * FROM Locatie");
    rijen->MoveLast();
    EXPECT_TRUE(HRdb::heeftRecords(rijen));
    EXPECT_EQ(rijen->Get("Locatie_ID").AsInt(), 1) << "the cursor stands on the first row";
    EXPECT_FALSE(HRdb::heeftRecords(db.GetRecordSet("SELECT * FROM Locatie WHERE Locatie_ID=0")));
    EXPECT_FALSE(HRdb::heeftRecords(nullptr));
    const auto tabel = db.GetRecordSet("Locatie", jet::RecordsetType::Table);
    tabel->MoveLast();
    EXPECT_TRUE(HRdb::heeftRecords(tabel));
    EXPECT_FALSE(tabel->EndOfFile());
    EXPECT_FALSE(HRdb::heeftRecords(db.GetRecordSet("Resultaat", jet::RecordsetType::Table)));
    tabel->Close();
    EXPECT_FALSE(HRdb::heeftRecords(tabel)) << "not a valid recordset";
}

TEST_F(VerbindingTest, AFailureIsTheEnginesDescriptionAndLeavesNothingOpen)
{
    const auto geweigerd = [this](const QString& bestand) {
        HRdb geopend;
        geopend.setStatusbarForm(&status);
        status.text = "bezig";
        status.progressShown = true;
        EXPECT_EQ(geopend.OpenDB(bestand, false, true), OpenResult::CouldNotOpen);
        EXPECT_FALSE(geopend.IsOpen());
        EXPECT_TRUE(geopend.fileName().isEmpty());
        EXPECT_FALSE(geopend.OpenErrDescription().isEmpty());
        EXPECT_EQ(status.text, "");
        EXPECT_FALSE(status.progressShown);
        EXPECT_EQ(BusyCount(), 0);
    };
    geweigerd(Pad("bestaat niet.mdb"));
    geweigerd(Pad("data")); // a folder
    const QString leeg = Pad("leeg.mdb");
    QFile bestand(leeg);
    ASSERT_TRUE(bestand.open(QIODevice::WriteOnly));
    bestand.close();
    geweigerd(leeg);
    EXPECT_TRUE(QFile::remove(leeg)) << "not held open";
}

TEST_F(VerbindingTest, AGoodOpenEmptiesTheErrorOfTheLast)
{
    db.OpenDB(Pad("bestaat niet.mdb"), false);
    EXPECT_FALSE(db.OpenErrDescription().isEmpty());
    db.OpenDB(VoorbeeldDatabase(), false);
    EXPECT_TRUE(db.OpenErrDescription().isEmpty());
}

TEST_F(VerbindingTest, TheStatusBarShowsTheCheckAndGetsItsTextBack)
{
    status.text = "Gereed";
    status.progressShown = true;
    db.OpenDB(VoorbeeldDatabase(), false, true);
    EXPECT_TRUE(status.history.contains("Controleer of database geschikt is voor Zandvoet..."));
    EXPECT_EQ(status.text, "Gereed");
    EXPECT_FALSE(status.progressShown);
    EXPECT_EQ(BusyCount(), 0);
}

TEST_F(VerbindingTest, AnUncheckedOpenSpeaksOfNoCheck)
{
    status.text = "Gereed";
    db.OpenDB(VoorbeeldDatabase(), false, false);
    EXPECT_EQ(status.text, "Gereed");
    EXPECT_TRUE(status.history.filter("geschikt").isEmpty());
}

TEST_F(VerbindingTest, OperationsWithoutADatabaseSaySo)
{
    const auto gemeld = [](auto operatie) {
        QString omschrijving;
        FoutVan(operatie, &omschrijving);
        return omschrijving.contains("Er is geen database geopend.");
    };
    EXPECT_TRUE(gemeld([this] { db.GetProfielNamen(); }));
    EXPECT_TRUE(gemeld([this] { db.GetDijkringNamen(); }));
    EXPECT_TRUE(gemeld([this] { db.CopyDijkring("a", "b"); }));
    EXPECT_TRUE(gemeld([this] { db.AddLocatie(1, 2, "a"); }));
    EXPECT_TRUE(gemeld([this] { db.UpdateProfiel({}); }));
    EXPECT_TRUE(gemeld([this] { db.AddBerekening("a", 0, "b", 1); }));
    EXPECT_TRUE(gemeld([this] { db.DeleteBerekeningResultaten(1, 1); }));
    EXPECT_TRUE(gemeld([this] { db.Checkscheefstandtabel(); }));
    EXPECT_EQ(db.GetLocatie_ID("Plas-04"), kNietBekend);
    EXPECT_FALSE(db.DeleteLocatie("Plas-04"));
    db.RenameBerekening("a", "b");
    db.RenameDijkring("a", "b");
    db.DeleteDijkring("a");
    db.UpdateKwaliteitskenmerk();
    db.CloseDB();
}
