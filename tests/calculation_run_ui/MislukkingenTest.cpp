// Batches with cores that misbehave.
#include "BatchFixture.h"

#include "LockedFolder.h"
#include "SmallDisk.h"
#include "frame/Paths.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

#include <fstream>

namespace {

class MislukkingenTest : public BatchTest {
protected:
    /// In the run of the second pair, as soon as the core has said something.
    void BijTweede(std::function<void(QDialog&)> work)
    {
        forms.On("frmBatchjob", [this, work](QDialog& form) {
            if (forms.Met("frmBatchjob") != 2)
                return;
            auto* box = Find<QPlainTextEdit>(form, "rtfLog");
            tweede = std::make_unique<WhenReady>([box] { return !box->document()->isEmpty(); },
                                                 [work, &form] { work(form); });
        });
    }
    void ExpectAllesOK(const BerekeningStarten::Uitkomst& uitkomst)
    {
        EXPECT_EQ(uitkomst.lijst,
                  "Plas-01: ontwerp OK\r\nPlas-02: ontwerp OK\r\nPlas-03: ontwerp OK\r\n");
        for (const char* locatie : {"Plas-01", "Plas-02", "Plas-03"})
            EXPECT_TRUE(InBoom(locatie)) << locatie;
    }
    void ExpectHeel()
    {
        const QString pad = db.fileName();
        db.CloseDB();
        jet::Workspace workspace;
        const auto database =
            workspace.OpenDatabase(pad.toStdString(), {.exclusive = true, .readOnly = true});
        EXPECT_THAT(database->Check().faults, testing::IsEmpty());
    }

    std::unique_ptr<WhenReady> tweede;
};

const std::vector<std::function<void(QDialog&)>> kWegen{
    [](QDialog& form) { QTest::mouseClick(Find<QPushButton>(form, "cmdCancel"), Qt::LeftButton); },
    [](QDialog& form) { QTest::keyClick(&form, Qt::Key_Escape); },
    [](QDialog& form) { form.close(); }};

/// Long enough to be met, short enough to end by itself.
const QByteArray kTweedeDuurt = "case \"$PWD\" in *Plas-02*) echo bezig; "
                                "while [ ! -e door ]; do sleep 0.02; done;; esac; echo klaar";

} // namespace

TEST_F(MislukkingenTest, ASilentCoreIsNoFailure)
{
    Rekenhart("exit 0");
    ExpectAllesOK(Start());
    EXPECT_EQ(Lees(Map("Plas-02", "ontwerp") + "/uitvoer.log"), "");
}

TEST_F(MislukkingenTest, GarbageOfAnySizeIsKeptAsItCame)
{
    // Bytes of every kind, a line of a megabyte, and lines without end.
    Rekenhart("i=0; while [ $i -lt 20 ]; do head -c 100000 /dev/urandom; i=$((i+1)); done > bron; "
              "head -c 1000000 /dev/zero | tr '\\0' x >> bron; yes | head -c 2000000 >> bron; "
              "cat bron");
    gekozen = {"Plas-01"};
    const auto uitkomst = Start();
    EXPECT_EQ(uitkomst.lijst, "Plas-01: ontwerp OK\r\n");
    const QByteArray log = Lees(Map("Plas-01", "ontwerp") + "/uitvoer.log");
    EXPECT_EQ(log.size(), 5000000);
    EXPECT_TRUE(log == Lees(Map("Plas-01", "ontwerp") + "/bron"));
}

TEST_F(MislukkingenTest, ACoreMayDeleteItsInputOrItsWholeFolder)
{
    Rekenhart("case \"$PWD\" in *Plas-01*) rm -f invoer.txt;; *) rm -rf \"$PWD\";; esac");
    ExpectAllesOK(Start());
    EXPECT_FALSE(QFile::exists(Map("Plas-01", "ontwerp") + "/invoer.txt"));
    EXPECT_FALSE(QDir(Map("Plas-02", "ontwerp")).exists());
}

TEST_F(MislukkingenTest, ACoreThatCrashesHasALineWithItsCode)
{
    Rekenhart("case \"$PWD\" in *Plas-02*) kill -SEGV $$;; esac");
    const auto uitkomst = Start();
    EXPECT_EQ(uitkomst.lijst, "Plas-01: ontwerp OK\r\nPlas-02: ontwerp FOUT: EXITCODE=139\r\n"
                              "Plas-03: ontwerp OK\r\n");
    EXPECT_FALSE(uitkomst.verloop.afgebroken);
    EXPECT_TRUE(InBoom("Plas-02"));
}

TEST_F(MislukkingenTest, WhatACoreLeavesRunningIsNotWaitedFor)
{
    Rekenhart("sleep 20 & echo $! > ../../../kind");
    gekozen = {"Plas-01"};
    QElapsedTimer klok;
    klok.start();
    EXPECT_EQ(Start().lijst, "Plas-01: ontwerp OK\r\n");
    EXPECT_LT(klok.elapsed(), 15000);
    QProcess::execute("kill", {QString::fromLatin1(Lees(db.WerkMap() + "/kind").trimmed())});
}

TEST_F(MislukkingenTest, WithoutACoreNothingIsRunAndTheListSaysSo)
{
    for (const bool aanwezig : {false, true}) {
        QFile::remove(Pad("Rekenprogramma"));
        if (aanwezig)
            installatie.Write("Rekenprogramma", "#!/bin/sh\nexit 0\n"); // not executable
        naam = aanwezig ? "tweede" : "eerste";
        BoxReader boxes;
        const auto uitkomst = Start();
        ASSERT_EQ(boxes.Texts().size(), 1) << naam.toStdString();
        EXPECT_TRUE(boxes.Texts()[0].startsWith("Het programma kan niet worden gestart."));
        EXPECT_TRUE(uitkomst.mislukt);
        EXPECT_EQ(uitkomst.lijst, "");
        EXPECT_TRUE(samenvatting.startsWith(
            "Gestopt door een fout: 0 van 3 berekeningen uitgevoerd.\nNiet uitgevoerd: Plas-01: "))
            << samenvatting.toStdString();
        EXPECT_FALSE(InBoom("Plas-01", naam));
    }
    ExpectHeel();
}

TEST_F(MislukkingenTest, YesOnEveryWayOutOfTheSecondKeepsTheFirstAndSkipsTheThird)
{
    Rekenhart(kTweedeDuurt);
    for (std::size_t i = 0; i < kWegen.size(); ++i) {
        SCOPED_TRACE(i);
        naam = "poging" + QString::number(i);
        BoxReader boxes;
        boxes.Press("Ja");
        BijTweede(kWegen[i]);
        forms.Vergeet();
        const auto uitkomst = Start();
        EXPECT_EQ(boxes.Texts(), (QStringList{QuestionText(5001)}));
        EXPECT_TRUE(uitkomst.verloop.afgebroken);
        EXPECT_EQ(uitkomst.lijst, "Plas-01: " + naam + " OK\r\n");
        EXPECT_TRUE(InBoom("Plas-01", naam));
        EXPECT_FALSE(QDir(Map("Plas-02", naam)).exists());
        EXPECT_FALSE(QDir(Map("Plas-03", naam)).exists());
        EXPECT_EQ(status.text, StatusBarTekst(8)) << "it stays to be read";
    }
    ExpectHeel();
}

TEST_F(MislukkingenTest, NoOnEveryWayOutOfTheSecondRunsThemAll)
{
    Rekenhart(kTweedeDuurt);
    for (std::size_t i = 0; i < kWegen.size(); ++i) {
        SCOPED_TRACE(i);
        naam = "poging" + QString::number(i);
        BoxReader boxes; // no is the default
        BijTweede([&](QDialog& form) {
            kWegen[i](form);
            EXPECT_TRUE(form.isVisible());
            QFile door(Map("Plas-02", naam) + "/door");
            EXPECT_TRUE(door.open(QIODevice::WriteOnly));
        });
        forms.Vergeet();
        const auto uitkomst = Start();
        EXPECT_EQ(boxes.Texts(), (QStringList{QuestionText(5001)}));
        EXPECT_FALSE(uitkomst.verloop.afgebroken);
        EXPECT_EQ(uitkomst.verloop.gedaan, 3);
        EXPECT_EQ(status.text, StatusBarTekst(1)) << "nothing is going on any more";
    }
}

TEST_F(MislukkingenTest, YesToACoreThatEndedUnderTheQuestionKeepsItAndSkipsTheThird)
{
    Rekenhart("echo $$ > pid; " + kTweedeDuurt);
    BijTweede(kWegen[0]);
    const QString map = Map("Plas-02", "ontwerp");
    const WhenReady antwoord(
        [&] {
            if (!OpenBox())
                return false;
            QFile door(map + "/door");
            EXPECT_TRUE(door.open(QIODevice::WriteOnly));
            return IsWeg(map + "/pid");
        },
        [] { PressInBox("Ja"); });
    const auto uitkomst = Start();
    EXPECT_TRUE(antwoord.Done());
    EXPECT_EQ(uitkomst.lijst, "Plas-01: ontwerp OK\r\nPlas-02: ontwerp OK\r\n");
    EXPECT_EQ(samenvatting, "Afgebroken: 2 van 3 berekeningen uitgevoerd.\n"
                            "Niet uitgevoerd: Plas-03: ontwerp.");
    EXPECT_TRUE(uitkomst.verloop.afgebroken);
    EXPECT_TRUE(InBoom("Plas-02"));
    EXPECT_EQ(Lees(map + "/uitvoer.log"), "bezig\nklaar\n");
    EXPECT_FALSE(QDir(Map("Plas-03", "ontwerp")).exists());
    EXPECT_EQ(status.text, StatusBarTekst(8));
}

TEST_F(MislukkingenTest, AnExistingFolderThatCannotBeEmptiedLeavesItsPairOut)
{
    const QString map = Map("Plas-02", "ontwerp");
    QDir().mkpath(map);
    QFile oud(map + "/uitvoer.txt");
    ASSERT_TRUE(oud.open(QIODevice::WriteOnly));
    const LockedFolder vast(map.toStdString());
    if (!vast.Locked())
        GTEST_SKIP() << "no folder can be locked here";
    BoxReader boxes;
    boxes.Press("Ja");
    const auto uitkomst = Start();
    EXPECT_EQ(boxes.Texts(),
              (QStringList{QuestionText(20, {map, "Plas-02"}), MessageText(205, {map})}));
    EXPECT_EQ(uitkomst.lijst, "Plas-01: ontwerp OK\r\nPlas-03: ontwerp OK\r\n");
    EXPECT_TRUE(oud.exists());
}

TEST_F(MislukkingenTest, AFullDiskStopsTheBatchAndNamesWhatIsLeft)
{
    const SmallDisk disk(Pad("schijf").toStdString(), 12 * 1024);
    if (!disk.Mounted())
        GTEST_SKIP() << "no disk can be mounted here";
    const QString kopie = Pad("schijf/boezem.mdb");
    db.CloseDB();
    ASSERT_TRUE(QFile::copy(Pad("boezem.mdb"), kopie));
    ASSERT_EQ(db.OpenDB(kopie, false, false), OpenResult::Accepted);
    // The second core writes until nothing fits any more, its log included.
    Rekenhart("case \"$PWD\" in *Plas-02*) cat /dev/zero > groot; yes | head -c 100000;; esac");
    BoxReader boxes;
    const auto uitkomst = Start();
    ASSERT_EQ(boxes.Texts().size(), 1) << boxes.Texts().join('\n').toStdString();
    EXPECT_TRUE(boxes.Texts()[0].contains("De schijf is vol."));
    EXPECT_TRUE(uitkomst.mislukt);
    EXPECT_EQ(uitkomst.verloop.gedaan, 2);
    EXPECT_EQ(samenvatting, "Gestopt door een fout: 2 van 3 berekeningen uitgevoerd.\n"
                            "Niet uitgevoerd: Plas-03: ontwerp.");
    EXPECT_EQ(ResultaatRijen("Plas-01"), 5);
    ExpectHeel();
    EXPECT_EQ(db.OpenDB(kopie, false, true), OpenResult::Accepted) << "and it opens again";
    db.CloseDB();
}

TEST_F(MislukkingenTest, AThousandLocationsOneAfterTheOtherInFlatMemory)
{
    constexpr int kAantal = 1000;
    QTreeWidgetItem* root = browser.GetNodeByKey(navkey::RootLocaties);
    db.CloseDB();
    {
        jet::Workspace workspace;
        const auto database = workspace.OpenDatabase(Pad("boezem.mdb").toStdString());
        workspace.BeginTrans();
        for (int i = 1; i <= kAantal; ++i)
            database->Execute("INSERT INTO Locatie (omschrijving,veiligheidsklasse) VALUES ('L" +
                              std::to_string(i) + "',1)");
        workspace.CommitTrans();
    }
    boom.addLocatiesFromDb2Root(root,
                                db.GetRecordSet("SELECT omschrijving AS OMSCHR FROM Locatie"));
    ZetInstelling("Frequenties", "EXTRAFREQ", "0");
    Rekenhart("echo bezig; echo klaar > uitvoer.txt; case \"$PWD\" in */L500/*) exit 3;; esac");

    Batch batch;
    batch.naam = "ontwerp";
    batch.instellingen = Pad("data/Instellingen.ini");
    QString verwacht;
    for (int i = 1; i <= kAantal; ++i) {
        const QString locatie = "L" + QString::number(i);
        batch.paren << TeBerekenen{locatie, {}};
        verwacht += locatie + (i == 500 ? ": ontwerp FOUT: EXITCODE=3\r\n" : ": ontwerp OK\r\n");
    }
    const auto geheugen = [] { // resident pages
        std::ifstream statm("/proc/self/statm");
        long long geheel = 0, aanwezig = 0;
        statm >> geheel >> aanwezig;
        return aanwezig * 4096;
    };
    FakeLog lijst;
    BatchVoortgang voortgang;
    BatchVerloop verloop;
    int begonnen = 0;
    long long naTweehonderd = 0;
    BerekenLocaties({db, status, browser, browser, lijst,
                     [&] {
                         if (++begonnen == 200)
                             naTweehonderd = geheugen();
                         return std::make_unique<frmBatchjob>(db, voortgang);
                     }},
                    batch, verloop);
    EXPECT_LT(geheugen() - naTweehonderd, 16 * 1024 * 1024);
    EXPECT_EQ(verloop.gedaan, kAantal);
    EXPECT_TRUE(verloop.niet.isEmpty());
    EXPECT_EQ(lijst.text, verwacht);
    EXPECT_EQ(browser.toegepast.size(), kAantal);
    for (int i = 1; i <= kAantal; ++i)
        EXPECT_TRUE(InBoom("L" + QString::number(i))) << i;
    EXPECT_EQ(browser.GetNodeByKey(navkey::RootBerekeningen)->childCount(), 1);
    EXPECT_EQ(Tel("SELECT COUNT(*) FROM Resultaat"), kAantal);
    EXPECT_EQ(Tel("SELECT COUNT(*) FROM Berekening"), 1);
    ExpectHeel();
}
