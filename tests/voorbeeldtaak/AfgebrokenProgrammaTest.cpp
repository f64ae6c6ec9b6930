// The program is killed in the middle of a batch; what does the next start find?
#include "Taakrun.h"

#include "FakePorts.h"
#include "database/HRdb.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "jet/dao/Database.h"
#include "jet/dao/Workspace.h"
#include "navigation/NavTree.h"

#include <QDir>
#include <QSet>
#include <QTest>
#include <QTreeWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace {

/// The first three pairs are calculated at once; at the fourth, Eiland-2 with Rietoever,
/// the core waits until it is told to go on.
constexpr char kWachtBijVierde[] = "case \"$PWD\" in\n"
                                   "*Eiland-2*rietoever|*Eiland-2*Rietoever)\n"
                                   "  touch bezig\n"
                                   "  while [ ! -e door ]; do sleep 0.02; done\n"
                                   "  \"$rekenhart\" \"$@\" > wees.log 2>&1\n"
                                   "  echo $? > afgelopen;;\n"
                                   "*) exec \"$rekenhart\" \"$@\";;\n"
                                   "esac\n";

class AfgebrokenProgrammaTest : public testing::Test {
protected:
    AfgebrokenProgrammaTest()
    {
        SetProgramFolder(taak.Programma().chopped(1));
        SetIniPath(taak.Programma("data"));
        gBoxes.Refer(boxen);
    }
    ~AfgebrokenProgrammaTest() override
    {
        Laat("door"); // the core ends, whatever became of the test
        gBoxes.Release();
        gIniFile.Release();
        SetProgramFolder({});
    }

    QString Vierde() const { return taak.Map("Eiland-2", "Rietoever"); }
    void Laat(const char* bestand) const
    {
        QFile merk(Vierde() + "/" + bestand);
        static_cast<void>(merk.open(QIODevice::WriteOnly));
    }
    static bool Wacht(const QString& bestand)
    {
        return QTest::qWaitFor([&] { return QFile::exists(bestand); }, 30000);
    }
    static void Dood(QProcess& proces)
    {
        proces.kill(); // SIGKILL: nothing is put in order
        proces.waitForFinished();
        ASSERT_EQ(proces.exitStatus(), QProcess::CrashExit);
    }
    /// Runs the job until the fourth core waits, and kills the program.
    void DoodBijVierde()
    {
        taak.Rekenhart(kWachtBijVierde);
        const auto proces = taak.Start();
        ASSERT_TRUE(Wacht(Vierde() + "/bezig")) << proces->readAll().toStdString();
        Dood(*proces);
    }

    void ExpectHeel() const
    {
        jet::Workspace workspace;
        const auto database = workspace.OpenDatabase(taak.Database().toStdString(),
                                                     {.exclusive = true, .readOnly = true});
        EXPECT_THAT(database->Check().faults, testing::IsEmpty());
    }
    /// As the next start does, with all checks.
    void Open(HRdb& db) const
    {
        ASSERT_EQ(db.OpenDB(taak.Database(), false, true), OpenResult::Accepted)
            << db.OpenErrDescription().toStdString();
    }
    static int Tel(HRdb& db, const QString& voorwaarde)
    {
        const auto rijen = db.GetRecordSet("SELECT COUNT(*) FROM Resultaat INNER JOIN Locatie ON "
                                           "Resultaat.Locatie_ID=Locatie.Locatie_ID WHERE " +
                                           voorwaarde);
        return rijen->Get(0).AsInt();
    }
    /// Pairs that have result rows.
    static qsizetype AantalBerekend(HRdb& db)
    {
        QSet<std::pair<int, int>> paren;
        const auto rijen = db.GetRecordSet("SELECT Berekening_ID, Locatie_ID FROM Resultaat");
        if (!HRdb::heeftRecords(rijen))
            return 0;
        for (; !rijen->EndOfFile(); rijen->MoveNext())
            paren << std::pair(rijen->Get(0).AsInt(), rijen->Get(1).AsInt());
        return paren.size();
    }
    /// "Eiland-1: voorbeeld_palenrij" for each calculation that the tree shows.
    static QStringList InBoom(HRdb& db)
    {
        QTreeWidget venster;
        NavTree boom(db);
        boom.setTreeViewObject(&venster);
        QTreeWidgetItem* root = boom.AddRoot(navkey::RootLocaties, "Locaties", false);
        boom.addLocatiesFromDb2Root(
            root,
            db.GetRecordSet("SELECT omschrijving AS OMSCHR FROM Locatie ORDER BY omschrijving"));
        boom.addBerekeningenFromWerkmap2Locaties(root, db.WerkMap());
        QStringList berekeningen;
        for (int i = 0; i < root->childCount(); ++i)
            for (int j = 0; j < root->child(i)->childCount(); ++j)
                for (int k = 0; k < root->child(i)->child(j)->childCount(); ++k)
                    berekeningen << root->child(i)->text(0) + ": " +
                                        root->child(i)->child(j)->child(k)->text(0).toLower();
        return berekeningen;
    }

    Taakrun taak;
    FakeBoxes boxen;
};

} // namespace

TEST_F(AfgebrokenProgrammaTest, TheNextStartFindsTheDatabaseWholeAndWhatWasFinished)
{
    DoodBijVierde();
    ExpectHeel();
    HRdb db;
    Open(db);
    EXPECT_TRUE(boxen.questions.isEmpty()) << "every calculation has its folder";
    EXPECT_TRUE(boxen.reported.isEmpty());
    EXPECT_EQ(InBoom(db),
              (QStringList{"Eiland-1: voorbeeld_palenrij", "Eiland-1: voorbeeld_rietoever",
                           "Eiland-2: voorbeeld_palenrij", "Eiland-2: voorbeeld_rietoever"}))
        << "those that never began are not there";
    EXPECT_EQ(Tel(db, "HBN_MS_MO<>-999 AND omschrijving='Eiland-1'"), 10);
    EXPECT_EQ(Tel(db, "HBN_MS_MO<>-999 AND omschrijving='Eiland-2'"), 5);
    EXPECT_EQ(Tel(db, "HBN_MS_MO=-999 AND omschrijving='Eiland-2'"), 5) << "the one in the middle";
    EXPECT_EQ(Tel(db, "omschrijving<>'Eiland-1' AND omschrijving<>'Eiland-2'"), 0);
    EXPECT_FALSE(Taakrun::Lees(taak.Map("Eiland-1", "Palenrij") + "/uitvoer.log").isEmpty());
}

TEST_F(AfgebrokenProgrammaTest, ACoreLeftBehindFinishesItsRowsWhenItHasTheDatabaseAlone)
{
    DoodBijVierde();
    Laat("door");
    ASSERT_TRUE(Wacht(Vierde() + "/afgelopen"));
    EXPECT_EQ(Taakrun::Lees(Vierde() + "/afgelopen").trimmed(), "0")
        << Taakrun::Lees(Vierde() + "/wees.log").toStdString();
    ExpectHeel();
    HRdb db;
    Open(db);
    EXPECT_EQ(Tel(db, "HBN_MS_MO<>-999 AND omschrijving='Eiland-2'"), 10);
}

TEST_F(AfgebrokenProgrammaTest, ACoreLeftBehindIsTurnedAwayWhileTheProgramHasTheDatabase)
{
    DoodBijVierde();
    HRdb db;
    Open(db);
    Laat("door");
    ASSERT_TRUE(Wacht(Vierde() + "/afgelopen"));
    EXPECT_EQ(Taakrun::Lees(Vierde() + "/afgelopen").trimmed(), "4") << "cannot be opened";
    EXPECT_EQ(Tel(db, "HBN_MS_MO<>-999 AND omschrijving='Eiland-2'"), 5);
    db.CloseDB();
    ExpectHeel();
}

TEST_F(AfgebrokenProgrammaTest, KilledAtAnyMomentItLeavesAWholeDatabase)
{
    taak.Rekenhart("echo klaar\n");
    for (int moment = 150; moment <= 1350; moment += 120) {
        QDir(taak.Uit()).removeRecursively();
        const auto proces = taak.Start();
        if (!Wacht(taak.Database()))
            FAIL() << "the job has not begun";
        QTest::qWait(moment); // many of its writes fall within the second that follows
        proces->kill();
        proces->waitForFinished();
        ExpectHeel();
        HRdb db;
        Open(db);
        EXPECT_TRUE(boxen.questions.isEmpty()) << moment;
        const auto zonderRijen = InBoom(db).size() - AantalBerekend(db);
        EXPECT_TRUE(zonderRijen == 0 || zonderRijen == 1)
            << moment << ": " << zonderRijen << ", the one that was about to begin";
    }
}
