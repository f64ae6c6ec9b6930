#include "frame/ProcessRunner.h"
#include "frame/QLMIniFile.h"
#include "frame/Windows1252.h"

#include "FrameTestTools.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <csignal>

namespace {

class FakeLog : public LogSink {
public:
    QString Text() const override { return m_text; }
    void SetText(const QString& text) override
    {
        m_text = text;
        ++m_changes;
        m_longest = qMax(m_longest, text.size());
    }
    void Append(const QString& text) override
    {
        m_text += text;
        ++m_changes;
    }
    QString m_text;
    int m_changes = 0;
    qsizetype m_longest = 0;
};

class FakeForm : public RunForm {
public:
    void SetRunUsable(bool usable) override { m_states += usable ? "aan " : "uit "; }
    QString m_states;
};

class FailingBoxes : public Boxes {
public:
    void ShowMessage(int, const QStringList&) override {}
    void ShowFout(int, const QStringList&) override {}
    int AskQuestion(int, const QStringList&) override { return Answer::No; }
    int AskQuestionButtons(int, const QString&, const QString&, const QString&,
                           const QStringList&) override
    {
        return Answer::Third;
    }
    void ReportError(const std::exception& error) override { m_reported = Description(error); }
    QString m_reported;
};

class ProcessRunnerTest : public FrameTest {
protected:
    ProcessRunnerTest() { m_log.open(QIODevice::WriteOnly); }

    static ProgramCall Child(const QStringList& arguments) { return {RUNNER_CHILD, arguments}; }
    RunResult Run(const QStringList& arguments)
    {
        return m_runner.Execute(&m_form, Child(arguments), Folder(), &m_box, &m_log);
    }

    ProcessRunner m_runner;
    FakeForm m_form;
    FakeLog m_box;
    QBuffer m_log;
};

/// What a child ends with, as this platform passes it on.
int ExitStatus(int code)
{
#ifdef Q_OS_WIN
    return code;
#else
    return code & 0xFF;
#endif
}

QByteArray NumberedLines(int count)
{
    QByteArray lines;
    for (int i = 0; i < count; ++i)
        lines += QByteArray::number(i).rightJustified(61, '0') + "\r\n.";
    return lines;
}

} // namespace

TEST_F(ProcessRunnerTest, ASilentChildLeavesTheBoxAsItWas)
{
    m_box.m_text = "stond er al";
    const RunResult result = Run({"silent"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_FALSE(result.aborted);
    EXPECT_EQ(m_box.m_text, "stond er al");
    EXPECT_EQ(m_box.m_changes, 0);
    EXPECT_TRUE(m_log.data().isEmpty());
    EXPECT_FALSE(m_runner.Rekent());
}

TEST_F(ProcessRunnerTest, OutputFollowsWhatStandsInTheBox)
{
    m_box.m_text = "oud|";
    Run({"slow", "2"});
    EXPECT_EQ(m_box.m_text, "oud|stap\r\nstap\r\n");
    EXPECT_EQ(m_log.data(), "stap\r\nstap\r\n");
}

TEST_F(ProcessRunnerTest, AMegabyteLeavesItsTailInTheBoxAndEverythingInTheLog)
{
    const QByteArray all = NumberedLines(16384);
    ASSERT_EQ(all.size(), 1048576);
    Run({"lines", "16384"});
    EXPECT_EQ(m_log.data(), all);
    EXPECT_GE(m_box.m_text.size(), 5000);
    EXPECT_LE(m_box.m_text.size(), 5255);
    EXPECT_LE(m_box.m_longest, 5255);
    EXPECT_TRUE(QString::fromLatin1(all).endsWith(m_box.m_text));
}

TEST_F(ProcessRunnerTest, TheBoxIsNotSetForEachReadOfABurst)
{
    Run({"lines", "160000"}); // 10 MB
    EXPECT_EQ(m_log.data().size(), 10240000);
    EXPECT_LT(m_box.m_changes, 1000);
}

TEST_F(ProcessRunnerTest, ReadsErrorOutputTooInTheOrderItComes)
{
    Run({"both"});
    EXPECT_EQ(m_log.data(), "een twee drie");
    EXPECT_EQ(m_box.m_text, "een twee drie");
}

TEST_F(ProcessRunnerTest, ShowsBytesAsWindows1252AndLogsThemUnchanged)
{
    Run({"bytes"});
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    EXPECT_EQ(m_log.data(), all);
    EXPECT_EQ(m_box.m_text, FromWindows1252(all));
}

TEST_F(ProcessRunnerTest, ALineThatNothingEndsIsKeptInBounds)
{
    Run({"line", "10000000"});
    EXPECT_EQ(m_log.data().size(), 10000005);
    EXPECT_LE(m_box.m_longest, 5255);
    EXPECT_TRUE(m_box.m_text.endsWith("xxxeinde"));
}

TEST_F(ProcessRunnerTest, ACharacterInTwoHalvesArrivesAsItsBytes)
{
    Run({"halves"});
    EXPECT_EQ(m_log.data(), "caf\xC3\xA9");
    EXPECT_EQ(m_box.m_text, FromWindows1252("caf\xC3\xA9"));
}

#ifndef Q_OS_WIN
TEST_F(ProcessRunnerTest, AGrandchildThatKeepsTheOutputOpenIsNotWaitedFor)
{
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(Run({"leaves", "8000"}).exitCode, 0);
    EXPECT_EQ(m_log.data(), "ik ga\r\n");
    QString output;
    EXPECT_EQ(m_runner.ExecuteWithResult(Child({"leaves", "8000"}), Folder(), output), 0);
    EXPECT_EQ(output, "ik ga\r\n");
    EXPECT_LT(timer.elapsed(), 6000);
}

TEST_F(ProcessRunnerTest, TerminateDoesNotWaitForAGrandchildEither)
{
    QElapsedTimer timer;
    timer.start();
    QTimer::singleShot(200, [&] { m_runner.Terminate(); });
    EXPECT_TRUE(Run({"waits", "8000"}).aborted);
    EXPECT_LT(timer.elapsed(), 6000);
    EXPECT_TRUE(m_box.m_text.startsWith("ik ga\r\n\r\nBEREKENING IS AFGEBROKEN"));
}
#endif

TEST_F(ProcessRunnerTest, AFloodOfOutputLeavesTimeForTheUser)
{
    // Keys and clicks are served between two reads, as this timer is.
    int served = 0;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (++served == 20)
            m_runner.Terminate();
    });
    user.start(10);
    EXPECT_TRUE(Run({"lines", "100000000"}).aborted);
    EXPECT_GE(served, 20);
    EXPECT_GT(m_log.data().size(), 100000) << "all that time it came in";
}

TEST_F(ProcessRunnerTest, WorksWithoutFormBoxAndLog)
{
    EXPECT_EQ(m_runner.Execute(nullptr, Child({"lines", "100"}), Folder(), nullptr).exitCode, 0);
}

TEST_F(ProcessRunnerTest, AnExitCodeAddsALineOfTheCore)
{
    const RunResult result = Run({"exit", "1"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_FALSE(result.aborted);
    const QString line = "BEREKENING IS AFGEBROKEN DOOR REKENHART! (Exitcode:1)\r\n";
    EXPECT_EQ(m_box.m_text, line);
    EXPECT_EQ(m_log.data(), line.toLatin1());
}

TEST_F(ProcessRunnerTest, ExitCodesArriveAsThePlatformPassesThemOn)
{
    EXPECT_EQ(Run({"exit", "999"}).exitCode, ExitStatus(999));
    EXPECT_EQ(Run({"exit", "0xC00000AA"}).exitCode, ExitStatus(-1073741654));
}

TEST_F(ProcessRunnerTest, ACrashIsAnExitCodeToo)
{
    const RunResult result = Run({"crash"});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_FALSE(result.aborted);
#ifndef Q_OS_WIN
    EXPECT_EQ(result.exitCode, 128 + SIGABRT);
#endif
    EXPECT_TRUE(m_box.m_text.startsWith("voor de valBEREKENING IS AFGEBROKEN DOOR REKENHART!"));
}

TEST(ExitCodeText, HasASecondLineForTheUnexpectedError)
{
    EXPECT_EQ(ExitCodeText(3, "tekst"), "tekst (Exitcode:3)\r\n");
    EXPECT_EQ(ExitCodeText(-1073741654, "tekst"),
              "tekst (Exitcode:-1073741654)\r\nEr heeft zich een onverwachte fout voorgedaan. Neem "
              "contact op met de helpdesk (zie helpmenu).\r\n");
    SetLanguage("UK");
    EXPECT_EQ(ExitCodeText(-1073741654, "text"),
              "text (Exitcode:-1073741654)\r\nAn unexpected error has occurred. Get in touch with "
              "the helpdesk (see the helpmenu).\r\n");
    SetLanguage({});
}

TEST_F(ProcessRunnerTest, TerminateWorksWhileTheChildIsQuiet)
{
    QElapsedTimer sinceCancel;
    QTimer::singleShot(100, [&] {
        EXPECT_TRUE(m_runner.Rekent());
        sinceCancel.start();
        m_runner.Terminate();
    });
    const RunResult result = Run({"quiet", "20000"});
    EXPECT_LT(sinceCancel.elapsed(), 200);
    EXPECT_TRUE(result.aborted);
    EXPECT_EQ(result.exitCode, 999);
    EXPECT_FALSE(m_runner.Rekent());
    EXPECT_EQ(m_box.m_text, "\r\nBEREKENING IS AFGEBROKEN DOOR GEBRUIKER!");
    EXPECT_EQ(m_log.data(), "\r\nBEREKENING IS AFGEBROKEN DOOR GEBRUIKER!");
}

TEST_F(ProcessRunnerTest, TerminateWorksOnAChildThatIgnoresAPoliteEnd)
{
    SetLanguage("UK");
    QTimer::singleShot(300, [&] { m_runner.Terminate(); });
    EXPECT_TRUE(Run({"stubborn", "20000"}).aborted);
    EXPECT_EQ(m_box.m_text, "ik blijf\r\n\r\nCALCULATION CANCELLED BY USER!");
}

TEST_F(ProcessRunnerTest, TerminateWorksDuringABurst)
{
    QTimer::singleShot(50, [&] { m_runner.Terminate(); });
    EXPECT_TRUE(Run({"lines", "100000000"}).aborted);
    EXPECT_TRUE(m_box.m_text.endsWith("GEBRUIKER!"));
}

TEST_F(ProcessRunnerTest, TerminateIsTooLateForAProgramThatHasEnded)
{
    // Ended, and noticed in an event loop of a question.
    QTimer::singleShot(0, [&] {
        QEventLoop question;
        QTimer::singleShot(1000, &question, &QEventLoop::quit);
        question.exec();
        EXPECT_TRUE(m_runner.Rekent()) << "Execute has not returned";
        m_runner.Terminate();
    });
    RunResult result = Run({"exit", "3"});
    EXPECT_FALSE(result.aborted);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_FALSE(m_box.m_text.contains("GEBRUIKER"));
    // Ended, and not noticed yet.
    QTimer::singleShot(0, [&] {
        QThread::sleep(1);
        m_runner.Terminate();
    });
    result = Run({"silent"});
    EXPECT_FALSE(result.aborted);
    EXPECT_EQ(result.exitCode, 0);
}

TEST_F(ProcessRunnerTest, AnAbortIsForgottenAtTheNextRun)
{
    QTimer::singleShot(50, [&] { m_runner.Terminate(); });
    Run({"quiet", "20000"});
    m_runner.Terminate(); // nothing runs
    EXPECT_FALSE(Run({"silent"}).aborted);
}

TEST_F(ProcessRunnerTest, TheFormIsUsableDuringTheRunOnly)
{
    QString during;
    QTimer::singleShot(20, [&] { during = m_form.m_states; });
    Run({"quiet", "150"});
    EXPECT_EQ(during, "aan ");
    EXPECT_EQ(m_form.m_states, "aan uit ");
}

TEST_F(ProcessRunnerTest, OutputFlowsWhileAQuestionHoldsTheEvents)
{
    // As a box does: an event loop of its own inside the run.
    qsizetype seen = 0;
    QTimer::singleShot(60, [&] {
        QEventLoop box;
        QTimer::singleShot(300, &box, &QEventLoop::quit);
        box.exec();
        seen = m_log.data().size();
    });
    Run({"slow", "20"});
    EXPECT_GT(seen, 3 * 6);
}

TEST_F(ProcessRunnerTest, AProgramThatCannotStartIsError701WithItsCommandLine)
{
    WriteProgramIni("[Fouten]\r\nfout.0700=pipe\r\nfout.0701=start %1\r\n");
    WriteBytes(Path("geen programma.txt"), "x");
    for (const QString& program : {Path("bestaat niet"), Folder(), Path("geen programma.txt")}) {
        try {
            m_runner.Execute(&m_form, {program, {"-INVOER", "in voer.txt"}}, Folder(), &m_box);
            ADD_FAILURE() << "started " << program.toStdString();
        } catch (const Fout& fout) {
            EXPECT_EQ(fout.Number(), FoutCode(701));
            const ProgramCall call{program, {"-INVOER", "in voer.txt"}};
            EXPECT_EQ(fout.Description(), "start " + call.CommandLine());
        }
        EXPECT_FALSE(m_runner.Rekent());
    }
    QString output;
    EXPECT_EQ(RaisedNumber([&] {
                  static_cast<void>(
                      m_runner.ExecuteWithResult({Path("bestaat niet"), {}}, Folder(), output));
              }),
              FoutCode(701));
}

TEST_F(ProcessRunnerTest, AWorkingFolderThatIsMissingIsError701)
{
    EXPECT_EQ(
        RaisedNumber([&] { m_runner.Execute(nullptr, Child({"silent"}), Path("weg"), &m_box); }),
        FoutCode(701));
}

#ifndef Q_OS_WIN
TEST_F(ProcessRunnerTest, NoRoomForAPipeIsError700)
{
    int raised = 0;
    {
        const NoFreeFiles noRoom;
        raised =
            RaisedNumber([&] { m_runner.Execute(nullptr, Child({"silent"}), Folder(), &m_box); });
    }
    EXPECT_EQ(raised, FoutCode(700));
}
#endif

TEST_F(ProcessRunnerTest, ArgumentsArriveAsTheyAre)
{
    const QStringList arguments{"met blanks", "met \"quotes\"", "", "C:\\map\\"};
    QString output;
    EXPECT_EQ(
        m_runner.ExecuteWithResult(Child(QStringList("arguments") + arguments), Folder(), output),
        0);
    EXPECT_EQ(output, arguments.join("\n") + "\n");
}

TEST_F(ProcessRunnerTest, ExecuteWithResultGivesAllOutputAndTheCode)
{
    QString output;
    EXPECT_EQ(m_runner.ExecuteWithResult(Child({"lines", "2000"}), Folder(), output), 0);
    EXPECT_EQ(output.toLatin1(), NumberedLines(2000));
    EXPECT_EQ(m_runner.ExecuteWithResult(Child({"exit", "7"}), Folder(), output), 7);
    EXPECT_EQ(output, "");
}

TEST_F(ProcessRunnerTest, TheCommandLineQuotesWhatHasBlanks)
{
    EXPECT_EQ((ProgramCall{"C:\\a b\\r.exe", {"-INVOER", "c d"}}).CommandLine(),
              "\"C:\\a b\\r.exe\" -INVOER \"c d\"");
}

TEST_F(ProcessRunnerTest, SaveLogfileReplacesEvenAReadOnlyFile)
{
    WriteBytes(Path("uitvoer.log"), "oud");
    SetReadOnly(Path("uitvoer.log"), true);
    m_box.m_text = QString::fromUtf16(u"\u00E9\u00E9n\ntwee\r\ndrie");
    ProcessRunner::SaveLogfile(Path("UITVOER.log"), m_box);
    EXPECT_EQ(ReadBytes(Path("uitvoer.log")), "\xE9\xE9n\r\ntwee\r\ndrie");
}

TEST_F(ProcessRunnerTest, AFailureOfSaveLogfileIsReported)
{
    FailingBoxes boxes;
    gBoxes.Refer(boxes);
    ProcessRunner::SaveLogfile(Path("geen map/uitvoer.log"), m_box);
    EXPECT_TRUE(boxes.m_reported.contains("uitvoer.log")) << boxes.m_reported.toStdString();
}

TEST_F(ProcessRunnerTest, TheShellOpensWhatExists)
{
    QUrl opened;
    bool works = true;
    SetUrlOpener([&](const QUrl& url) {
        opened = url;
        return works;
    });
    WriteBytes(Path("Hand leiding.html"), "x");
    EXPECT_GT(ShellOpen(Folder() + "\\hand leiding.html"), 32);
    EXPECT_EQ(opened.toLocalFile(), Path("Hand leiding.html"));
    EXPECT_EQ(ShellOpenPrint(Path("bestaat niet.html")), 2);
    works = false;
    EXPECT_EQ(ShellOpenPrint(Path("Hand leiding.html")), 31);
    works = true;
    EXPECT_GT(ShellOpen("https://example.org/a b"), 32);
    EXPECT_EQ(opened.scheme(), "https");
    SetUrlOpener({});
    EXPECT_EQ(ShellOpen(Path("Hand leiding.html")), 31);
}

TEST_F(ProcessRunnerTest, MailTargets)
{
    EXPECT_EQ(MailTarget("a@b.nl", "", ""), "mailto:a@b.nl");
    EXPECT_EQ(MailTarget("a@b.nl", "Vraag", ""), "mailto:a@b.nl?Subject=Vraag");
    EXPECT_EQ(MailTarget("a@b.nl", "", "Hallo"), "mailto:a@b.nl?strBody=Hallo");
    EXPECT_EQ(MailTarget("a@b.nl", "Vraag", "Hallo"), "mailto:a@b.nl?Subject=Vraag&strBody=Hallo");
    QUrl opened;
    SetUrlOpener([&](const QUrl& url) {
        opened = url;
        return true;
    });
    EXPECT_TRUE(ShellMail("a@b.nl", "Een vraag", ""));
    EXPECT_EQ(opened.path(), "a@b.nl");
    EXPECT_EQ(opened.query(), "Subject=Een vraag");
    SetUrlOpener({});
    EXPECT_FALSE(ShellMail("a@b.nl", "", ""));
}

TEST_F(ProcessRunnerTest, StartProgramDoesNotWait)
{
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(StartProgram(Child({"quiet", "1500"})));
    EXPECT_LT(timer.elapsed(), 1000);
    EXPECT_FALSE(StartProgram({Path("bestaat niet"), {}}));
}
