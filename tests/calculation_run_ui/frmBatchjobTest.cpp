#include "calculation/ui/run/frmBatchjob.h"

#include "RunFixture.h"
#include "frame/Busy.h"
#include "frame/Fouten.h"
#include "frame/Paths.h"

#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>

namespace {

/// One run in a folder with an input file.
class frmBatchjobTest : public RunTest {
protected:
    frmBatchjobTest()
    {
        QDir().mkpath(map);
        Schrijf("invoer.txt", "invoer");
        form = std::make_unique<frmBatchjob>(db, voortgang);
        form->InitialiseerLocatie("ontwerp", map, "Plas-01");
    }
    void Schrijf(const QString& naam, const QByteArray& inhoud)
    {
        QFile bestand(map + "/" + naam);
        ASSERT_TRUE(bestand.open(QIODevice::WriteOnly));
        bestand.write(inhoud);
    }
    QByteArray Uit(const QString& naam) { return Lees(map + "/" + naam); }
    QString Box() { return Find<QPlainTextEdit>(*form, "rtfLog")->toPlainText(); }
    QPushButton* Cancel() { return Find<QPushButton>(*form, "cmdCancel"); }
    /// As soon as the core has said something.
    WhenReady OnceBusy(std::function<void()> work)
    {
        return {[this] { return Cancel()->isEnabled() && !Box().isEmpty(); }, std::move(work)};
    }

    const QString map = Pad("rekenmap met spaties");
    BatchVoortgang voortgang;
    std::unique_ptr<frmBatchjob> form;
};

const QByteArray kEndless = "while :; do echo bezig; sleep 0.02; done";

} // namespace

TEST_F(frmBatchjobTest, AGoodCoreLeavesItsOutputAndReadOnlyFiles)
{
    Rekenhart("echo \"$1 $2\"; echo fout >&2; pwd; echo resultaat > uitvoer.txt");
    form->Toon();
    EXPECT_EQ(form->ExitCode(), 0);
    EXPECT_TRUE(form->BerekeningOK());
    EXPECT_FALSE(form->IsAbortedByUser());
    EXPECT_FALSE(form->isVisible());
    const QString verwacht = "-INVOER " + map + "/invoer.txt\nfout\n" + map + "\n";
    EXPECT_EQ(QString::fromLatin1(Uit("uitvoer.log")), verwacht);
    EXPECT_EQ(Box(), verwacht);
    EXPECT_EQ(Uit("uitvoer.txt"), "resultaat\n");
    for (const char* naam : {"invoer.txt", "uitvoer.txt", "uitvoer.log"})
        EXPECT_TRUE(IsReadOnly(map + "/" + naam)) << naam;
    EXPECT_FALSE(db.IsOpen()) << "the core had it alone";
    EXPECT_EQ(BusyCount(), 0);
}

TEST_F(frmBatchjobTest, AnOlderLogIsReplacedAlsoWhenReadOnly)
{
    Schrijf("uitvoer.log", "van vorige keer");
    SetReadOnly(map + "/uitvoer.log", true);
    Rekenhart("echo nieuw");
    form->Toon();
    EXPECT_EQ(Uit("uitvoer.log"), "nieuw\n");
}

TEST_F(frmBatchjobTest, ACoreThatFailsTellsItsCode)
{
    Rekenhart("echo helaas; exit 3");
    form->Toon();
    EXPECT_EQ(form->ExitCode(), 3);
    EXPECT_FALSE(form->BerekeningOK());
    EXPECT_FALSE(form->IsAbortedByUser());
    EXPECT_TRUE(Box().contains("(Exitcode:3)"));
    EXPECT_TRUE(Uit("uitvoer.log").contains("(Exitcode:3)"));
}

TEST_F(frmBatchjobTest, ASilentCoreLeavesAnEmptyLog)
{
    Rekenhart("exit 0");
    form->Toon();
    EXPECT_EQ(form->ExitCode(), 0);
    EXPECT_TRUE(QFile::exists(map + "/uitvoer.log"));
    EXPECT_EQ(Uit("uitvoer.log"), "");
    EXPECT_EQ(Box(), "");
}

TEST_F(frmBatchjobTest, GarbageGoesToTheLogByteByByteAndItsEndToTheBox)
{
    Schrijf("bron", [] {
        QByteArray bytes;
        for (int i = 0; i < 200000; ++i)
            bytes += static_cast<char>((i * 7919) >> 3);
        return bytes;
    }());
    Rekenhart("cat bron");
    form->Toon();
    EXPECT_EQ(form->ExitCode(), 0);
    EXPECT_EQ(Uit("uitvoer.log"), Uit("bron"));
    EXPECT_LE(Box().size(), 5255);
    EXPECT_GT(Box().size(), 0);
}

TEST_F(frmBatchjobTest, ACoreMayDeleteItsInput)
{
    Rekenhart("rm -f invoer.txt");
    form->Toon();
    EXPECT_EQ(form->ExitCode(), 0);
    EXPECT_FALSE(QFile::exists(map + "/invoer.txt"));
}

TEST_F(frmBatchjobTest, EveryWayOutAsksAndYesKillsTheCore)
{
    const std::vector<std::function<void()>> ways{
        [this] { QTest::mouseClick(Cancel(), Qt::LeftButton); },
        [this] { QTest::keyClick(form.get(), Qt::Key_Escape); }, [this] { form->close(); }};
    Rekenhart(kEndless);
    for (std::size_t i = 0; i < ways.size(); ++i) {
        form = std::make_unique<frmBatchjob>(db, voortgang);
        form->InitialiseerLocatie("ontwerp", map, "Plas-01");
        BoxReader boxes;
        boxes.Press("Ja");
        const WhenReady leave = OnceBusy(ways[i]);
        form->Toon();
        EXPECT_EQ(boxes.Texts(), (QStringList{QuestionText(5001)})) << i;
        EXPECT_TRUE(form->IsAbortedByUser()) << i;
        EXPECT_TRUE(form->IsBatchStopped()) << i;
        EXPECT_FALSE(form->BerekeningOK());
        EXPECT_EQ(form->ExitCode(), 999);
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(BusyCount(), 0);
    }
}

TEST_F(frmBatchjobTest, NoLetsTheRunGoOn)
{
    Rekenhart("echo bezig; while [ ! -e klaar ]; do sleep 0.02; done; echo gereed");
    BoxReader boxes; // presses the default button, no
    bool stayed = false;
    const WhenReady leave = OnceBusy([&] {
        QTest::mouseClick(Cancel(), Qt::LeftButton);
        stayed = form->isVisible();
        Schrijf("klaar", "");
    });
    form->Toon();
    EXPECT_EQ(boxes.Texts(), (QStringList{QuestionText(5001)}));
    EXPECT_EQ(boxes.DefaultButton(), "Nee");
    EXPECT_TRUE(stayed);
    EXPECT_FALSE(form->IsAbortedByUser());
    EXPECT_FALSE(form->IsBatchStopped());
    EXPECT_EQ(form->ExitCode(), 0);
    EXPECT_TRUE(Uit("uitvoer.log").endsWith("gereed\n"));
}

TEST_F(frmBatchjobTest, YesToACoreThatEndedUnderTheQuestionAbortsNothing)
{
    Rekenhart("echo $$ > pid; echo bezig; while [ ! -e klaar ]; do sleep 0.02; done; exit 3");
    const WhenReady leave = OnceBusy([&] { QTest::mouseClick(Cancel(), Qt::LeftButton); });
    const WhenReady answer(
        [&] {
            if (!OpenBox())
                return false;
            Schrijf("klaar", "");
            return IsWeg(map + "/pid");
        },
        [] { PressInBox("Ja"); });
    form->Toon();
    EXPECT_TRUE(answer.Done());
    EXPECT_FALSE(form->IsAbortedByUser()) << "there was nothing left to abort";
    EXPECT_TRUE(form->IsBatchStopped());
    EXPECT_EQ(form->ExitCode(), 3);
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(Uit("uitvoer.log").contains("GEBRUIKER"));
    EXPECT_TRUE(IsReadOnly(map + "/uitvoer.log"));
}

TEST_F(frmBatchjobTest, OutputIsShownWhileTheCoreWorks)
{
    Rekenhart("echo eerste; while [ ! -e klaar ]; do sleep 0.02; done; echo tweede");
    QString halverwege;
    const WhenReady look = OnceBusy([&] {
        halverwege = Box();
        EXPECT_EQ(form->ExitCode(), frmBatchjob::kGeenExitCode);
        EXPECT_EQ(BusyCount(), 1);
        Schrijf("klaar", "");
    });
    form->Toon();
    EXPECT_EQ(halverwege, "eerste\n");
    EXPECT_EQ(Box(), "eerste\ntweede\n");
}

TEST_F(frmBatchjobTest, WithoutACoreTheErrorComesOutOfTheForm)
{
    try {
        form->Toon();
        FAIL() << "no error";
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Number(), FoutCode(701));
    }
    EXPECT_EQ(form->ExitCode(), frmBatchjob::kGeenExitCode);
    EXPECT_FALSE(form->IsAbortedByUser());
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(BusyCount(), 0);
}

TEST_F(frmBatchjobTest, ACoreThatIsNoProgramIsAnErrorToo)
{
    installatie.Write("Rekenprogramma", "geen programma");
    try {
        form->Toon();
        FAIL() << "no error";
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Number(), FoutCode(701));
    }
}

TEST_F(frmBatchjobTest, ASecondActivationStartsNothing)
{
    Rekenhart("echo keer >> ../teller");
    form->Toon();
    form->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    QTest::qWait(50);
    EXPECT_EQ(Lees(Pad("teller")), "keer\n");
    BoxReader boxes;
    form->close();
    EXPECT_TRUE(boxes.Texts().isEmpty()) << "no core runs, nothing to ask";
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmBatchjobTest, ShowsWhatRunsAndHowFarTheBatchIs)
{
    qint64 nu = 0;
    BatchVoortgang batch([&nu] { return nu; });
    batch.Begin(1, 24);
    nu = 60000;
    form = std::make_unique<frmBatchjob>(db, batch);
    form->InitialiseerLocatie("ontwerp", map, "Plas-02");
    form->ToonVoortgang(3, 24); // the second took no time to speak of
    EXPECT_EQ(Find<QLabel>(*form, "lblBezig")->text(), "Bezig met Plas-02: ontwerp");
    EXPECT_EQ(Find<QProgressBar>(*form, "prgBatch")->value(), 2);
    EXPECT_EQ(Find<QProgressBar>(*form, "prgBatch")->maximum(), 24);
    EXPECT_EQ(Find<QLabel>(*form, "lblAantal")->text(), "2 van 24 berekeningen gereed");
    EXPECT_EQ(Find<QLabel>(*form, "lblTijd")->text(), "Verstreken: 1:00, nog ongeveer: 11:00");
}

TEST_F(frmBatchjobTest, ASingleRunShowsNoBatch)
{
    form->InitialiseerDijkring("Golfoverslag", map, "Ring 1", 1);
    EXPECT_EQ(Find<QLabel>(*form, "lblBezig")->text(), "Bezig met Ring 1: Golfoverslag");
    EXPECT_EQ(form->IndexFaalmechanisme(), 1);
    EXPECT_TRUE(Find<QProgressBar>(*form, "prgBatch")->isHidden());
    EXPECT_TRUE(Find<QLabel>(*form, "lblAantal")->isHidden());
}

TEST_F(frmBatchjobTest, CarriesTheIconOfItsWindow)
{
    QWidget window;
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    window.setWindowIcon(QIcon(picture));
    const frmBatchjob job(db, voortgang, &window);
    EXPECT_EQ(job.windowIcon().cacheKey(), window.windowIcon().cacheKey());
}
