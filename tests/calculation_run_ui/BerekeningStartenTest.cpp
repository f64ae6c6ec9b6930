#include "calculation/ui/run/BerekeningStarten.h"

#include "BatchFixture.h"
#include "frame/Fouten.h"

#include <QDir>

using BerekeningStartenTest = BatchTest;

TEST_F(BerekeningStartenTest, AWholeBatchEndsInTreeDatabaseAndList)
{
    bijLijst = [this](QDialog&) { EXPECT_EQ(status.text, StatusBarTekst(1)); };
    const auto uitkomst = Start();
    EXPECT_TRUE(uitkomst.gestart);
    EXPECT_FALSE(uitkomst.mislukt);
    EXPECT_EQ(uitkomst.verloop.gedaan, 3);
    EXPECT_EQ(uitkomst.lijst,
              "Plas-01: ontwerp OK\r\nPlas-02: ontwerp OK\r\nPlas-03: ontwerp OK\r\n");
    EXPECT_EQ(samenvatting, "3 van 3 berekeningen uitgevoerd.");
    EXPECT_EQ(forms.Met("frmBatchjob"), 3);
    EXPECT_EQ(gemeld, 1);
    EXPECT_EQ(status.history.first(), StatusBarTekst(2));
    for (const char* locatie : {"Plas-01", "Plas-02", "Plas-03"}) {
        EXPECT_TRUE(InBoom(locatie)) << locatie;
        EXPECT_EQ(Lees(Map(locatie, "ontwerp") + "/uitvoer.txt"), "klaar\n");
        EXPECT_TRUE(Lees(Map(locatie, "ontwerp") + "/invoer.txt").contains("= ''")) << "no profile";
        EXPECT_EQ(ResultaatRijen(locatie), 5) << "the norm is one of the five periods";
    }
    EXPECT_TRUE(db.BerekeningExists("ontwerp"));
    EXPECT_EQ(browser.toegepast.last(), Node("Plas-03", "ontwerp"));
}

TEST_F(BerekeningStartenTest, ACancelledStartDoesNothing)
{
    forms.On("frmBerekeningStart", [](QDialog& form) { Click(form, "cmdCancel"); });
    const auto uitkomst = Start();
    EXPECT_FALSE(uitkomst.gestart);
    EXPECT_TRUE(status.history.isEmpty());
    EXPECT_EQ(forms.Met("frmBatchresult"), 0);
    EXPECT_EQ(gemeld, 0);
    EXPECT_FALSE(QDir(db.WerkMap() + "/Plas-01").exists());
}

TEST_F(BerekeningStartenTest, ProgressCountsThroughTheBatch)
{
    QStringList getoond;
    forms.On("frmBatchjob", [&](QDialog& form) {
        getoond << Find<QLabel>(form, "lblBezig")->text() + " / " +
                       Find<QLabel>(form, "lblAantal")->text();
    });
    Rekenhart("sleep 0.1");
    Start();
    EXPECT_EQ(getoond, (QStringList{"Bezig met Plas-01: ontwerp / 0 van 3 berekeningen gereed",
                                    "Bezig met Plas-02: ontwerp / 1 van 3 berekeningen gereed",
                                    "Bezig met Plas-03: ontwerp / 2 van 3 berekeningen gereed"}));
}

TEST_F(BerekeningStartenTest, AFailedCoreLeavesItsCalculationAndALineWithItsCode)
{
    Rekenhart("case \"$PWD\" in *Plas-02*) exit 3;; esac");
    const auto uitkomst = Start();
    EXPECT_EQ(
        uitkomst.lijst,
        "Plas-01: ontwerp OK\r\nPlas-02: ontwerp FOUT: EXITCODE=3\r\nPlas-03: ontwerp OK\r\n");
    EXPECT_EQ(samenvatting, "3 van 3 berekeningen uitgevoerd, waarvan 1 met een fout.");
    EXPECT_TRUE(InBoom("Plas-02"));
    EXPECT_TRUE(QFile::exists(Map("Plas-02", "ontwerp") + "/uitvoer.log"));
}

TEST_F(BerekeningStartenTest, NoAtTheSecondPairLeavesThatOneOut)
{
    const QString bestaand = Map("Plas-02", "ontwerp");
    QDir().mkpath(bestaand);
    QFile oud(bestaand + "/oud.txt");
    ASSERT_TRUE(oud.open(QIODevice::WriteOnly));
    BoxReader boxes; // no is the default
    naam = "ontwerp";
    const auto uitkomst = Start();
    EXPECT_EQ(boxes.Texts(), (QStringList{QuestionText(20, {bestaand, "Plas-02"})}));
    EXPECT_EQ(uitkomst.lijst, "Plas-01: ontwerp OK\r\nPlas-03: ontwerp OK\r\n");
    EXPECT_EQ(uitkomst.verloop.Gepland(), 2);
    EXPECT_TRUE(oud.exists());
    EXPECT_FALSE(InBoom("Plas-02"));
}

TEST_F(BerekeningStartenTest, AnAbortDuringTheSecondKeepsTheFirst)
{
    Rekenhart("case \"$PWD\" in *Plas-02*) while :; do echo bezig; sleep 0.02; done;; esac");
    BoxReader boxes;
    boxes.Press("Ja");
    std::unique_ptr<WhenReady> afbreken;
    forms.On("frmBatchjob", [&](QDialog& form) {
        if (forms.Met("frmBatchjob") != 2)
            return;
        auto* knop = Find<QPushButton>(form, "cmdCancel");
        auto* box = Find<QPlainTextEdit>(form, "rtfLog");
        afbreken = std::make_unique<WhenReady>(
            [=] { return knop->isEnabled() && !box->toPlainText().isEmpty(); },
            [=] { QTest::mouseClick(knop, Qt::LeftButton); });
    });
    const auto uitkomst = Start();
    EXPECT_EQ(boxes.Texts(), (QStringList{QuestionText(5001)}));
    EXPECT_TRUE(uitkomst.verloop.afgebroken);
    EXPECT_EQ(uitkomst.lijst, "Plas-01: ontwerp OK\r\n");
    EXPECT_EQ(samenvatting, "Afgebroken: 1 van 3 berekeningen uitgevoerd.\nNiet uitgevoerd: "
                            "Plas-02: ontwerp, Plas-03: ontwerp.");
    EXPECT_EQ(forms.Met("frmBatchjob"), 2);
    EXPECT_TRUE(QFile::exists(Map("Plas-01", "ontwerp") + "/uitvoer.log"));
    EXPECT_TRUE(InBoom("Plas-01"));
    EXPECT_FALSE(QDir(Map("Plas-02", "ontwerp")).exists());
    EXPECT_FALSE(InBoom("Plas-02"));
    EXPECT_FALSE(QFile::exists(Map("Plas-03", "ontwerp") + "/invoer.txt"));
    EXPECT_EQ(ResultaatRijen("Plas-02"), 5) << "made for the run that was stopped";
    EXPECT_EQ(ResultaatRijen("Plas-03"), 0);
    EXPECT_TRUE(status.history.contains(StatusBarTekst(8)));
}

TEST_F(BerekeningStartenTest, ACoreThatVanishesEndsTheBatchAndTheListTellsWhatIsLeft)
{
    Rekenhart("rm -f '" + Pad("Rekenprogramma").toLocal8Bit() + "'");
    BoxReader boxes;
    const auto uitkomst = Start();
    ASSERT_EQ(boxes.Texts().size(), 1) << "error 701, reported once";
    EXPECT_TRUE(boxes.Texts()[0].startsWith("Het programma kan niet worden gestart."));
    EXPECT_TRUE(uitkomst.mislukt);
    EXPECT_EQ(uitkomst.verloop.gedaan, 1);
    EXPECT_EQ(uitkomst.lijst, "Plas-01: ontwerp OK\r\n");
    EXPECT_EQ(samenvatting,
              "Gestopt door een fout: 1 van 3 berekeningen uitgevoerd.\nNiet uitgevoerd: "
              "Plas-02: ontwerp, Plas-03: ontwerp.");
    EXPECT_EQ(gemeld, 1);
}

TEST_F(BerekeningStartenTest, APathThatIsTooLongEndsTheBatchBeforeAnyRun)
{
    // Of 240 characters the installation's own folder takes what it takes.
    db.CloseDB();
    const QString diep = Pad(QString(100, 'd') + "/" + QString(90, 'e'));
    QDir().mkpath(diep);
    ASSERT_TRUE(QFile::rename(Pad("boezem.mdb"), diep + "/boezem.mdb"));
    ASSERT_EQ(db.OpenDB(diep + "/boezem.mdb", false, false), OpenResult::Accepted);
    naam = QString(60, 'n');
    try {
        Start();
        FAIL() << "no error";
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Number(), FoutCode(26));
    }
    EXPECT_EQ(status.text, StatusBarTekst(1));
    EXPECT_EQ(forms.Met("frmBatchjob"), 0);
    EXPECT_EQ(forms.Met("frmBatchresult"), 0);
}

TEST_F(BerekeningStartenTest, ADoubleClickInTheListShowsTheNode)
{
    QStringList na;
    bijLijst = [&](QDialog& form) {
        browser.toegepast.clear();
        auto* box = Find<QPlainTextEdit>(form, "txtLog");
        const QTextCursor begin(box->document());
        QTest::mouseDClick(box->viewport(), Qt::LeftButton, {},
                           box->cursorRect(begin).center() + QPoint(5, 0));
        na = browser.toegepast;
        boom.Remove(browser.GetNodeByKey(Node("Plas-01", "ontwerp")));
        QTest::mouseDClick(box->viewport(), Qt::LeftButton, {},
                           box->cursorRect(begin).center() + QPoint(5, 0));
        EXPECT_EQ(browser.toegepast.size(), 1) << "a node that is gone is passed over";
    };
    Start();
    EXPECT_EQ(na, (QStringList{Node("Plas-01", "ontwerp")}));
}

TEST_F(BerekeningStartenTest, ProfilesGiveFoldersOfTheirOwn)
{
    ZetInstelling("Faalmechanisme", "INDEXFAALMECHANISME", "1");
    const auto uitkomst = Start();
    EXPECT_EQ(uitkomst.verloop.gedaan, 3);
    EXPECT_TRUE(uitkomst.lijst.startsWith("Plas-01: ontwerp_")) << uitkomst.lijst.toStdString();
    const auto regel = LeesResultaatregel(uitkomst.lijst.section("\r\n", 0, 0));
    ASSERT_TRUE(regel);
    EXPECT_TRUE(InBoom("Plas-01", regel->berekening));
    EXPECT_TRUE(db.BerekeningExists("ontwerp")) << "the bare name";
}
