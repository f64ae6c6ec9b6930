#include "frame/ProcessRunner.h"

#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/Platform.h"
#include "frame/Texts.h"
#include "frame/Windows1252.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QIODevice>
#include <QProcess>
#include <QSaveFile>
#include <QTimer>

#include <exception>
#include <stdexcept>

namespace {

constexpr int kPipeFout = 700;
constexpr int kStartFout = 701;
constexpr int kUnexpectedError = -1073741654; // 0xC00000AA
constexpr int kCrashBase = 128;

/// How often the box is painted while output streams in.
constexpr int kBoxInterval = 40; // ms

int ExitCodeOf(const QProcess& process)
{
#ifndef Q_OS_WIN
    if (process.exitStatus() == QProcess::CrashExit)
        return kCrashBase + process.exitCode();
#endif
    return process.exitCode();
}

QString AbortedByCore()
{
    return IsDutch() ? "BEREKENING IS AFGEBROKEN DOOR REKENHART!"
                     : "CALCULATION CANCELLED BY COMPUTATIONAL CORE!";
}

QString AbortedByUser()
{
    return IsDutch() ? "BEREKENING IS AFGEBROKEN DOOR GEBRUIKER!"
                     : "CALCULATION CANCELLED BY USER!";
}

} // namespace

/// Where output goes: every byte to the log, the end of it to the box.
///
/// The box shows what it would show after reads of kChunk bytes, each putting
/// "the last 5000 characters of the box, followed by the chunk" into it; but
/// it is set a few times per second only, so that a burst does not keep the
/// window from answering.
class ProcessRunner::Output {
public:
    Output(LogSink* box, QIODevice* log) : m_box(box), m_log(log)
    {
        if (m_box)
            m_tail = m_box->Text();
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Show(); });
        m_sinceShown.start();
    }

    void Take(const QByteArray& bytes)
    {
        if (bytes.isEmpty())
            return;
        if (m_log)
            m_log->write(bytes);
        if (!m_box)
            return;
        const qsizetype lastChunk = (bytes.size() - 1) % kChunk + 1;
        const qsizetype kept = kBoxCharacters + lastChunk;
        m_tail = (m_tail + FromWindows1252(QByteArrayView(bytes).last(qMin(kept, bytes.size()))))
                     .right(kept);
        m_pending = true;
        if (m_sinceShown.elapsed() >= kBoxInterval)
            Show();
        else if (!m_timer.isActive())
            m_timer.start(kBoxInterval);
    }

    /// A line of our own, behind everything that has come.
    void AddLine(const QString& text)
    {
        Show();
        if (m_box) {
            m_box->Append(text);
            m_box->Refresh();
        }
        if (m_log)
            m_log->write(ToWindows1252(text));
    }

    void Show()
    {
        if (m_box && m_pending)
            m_box->SetText(m_tail);
        m_pending = false;
        m_sinceShown.restart();
    }

private:
    LogSink* m_box;
    QIODevice* m_log;
    QString m_tail;
    bool m_pending = false;
    QElapsedTimer m_sinceShown;
    QTimer m_timer;
};

QString ProgramCall::CommandLine() const
{
    QStringList parts{program};
    parts += arguments;
    for (QString& part : parts) {
        if (part.isEmpty() || part.contains(' '))
            part = '"' + part + '"';
    }
    return parts.join(' ');
}

ProcessRunner::ProcessRunner() = default;
ProcessRunner::~ProcessRunner() = default;

RunResult ProcessRunner::Execute(RunForm* form, const ProgramCall& call,
                                 const QString& workingFolder, LogSink* box, QIODevice* log)
{
    if (m_rekent)
        throw std::logic_error("one runner runs one program at a time");
    m_abortedByUser = false;
    Output output(box, log);
    QProcess process;
    QEventLoop loop;
    // Read in a slot, so that output flows also while a question of the form
    // ("stop the calculation?") runs an event loop of its own.
    QObject::connect(&process, &QProcess::readyRead, &process,
                     [&] { output.Take(process.readAll()); });
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    Start(process, call, workingFolder);

    m_process = &process;
    m_rekent = true;
    // Usable for the whole wait and not anew for each round of events: a button
    // that is disabled between press and release never clicks.
    if (form)
        form->SetRunUsable(true);
    if (process.state() != QProcess::NotRunning)
        loop.exec();
    if (process.state() != QProcess::NotRunning) { // the program as a whole is ending
        Terminate();
        process.waitForFinished(-1);
    }
    if (form)
        form->SetRunUsable(false);
    output.Take(process.readAll());
    output.Show();
    m_process = nullptr;
    m_rekent = false;

    // A program that was done before the kill reached it has not been aborted.
    RunResult result{ExitCodeOf(process),
                     m_abortedByUser && process.exitStatus() == QProcess::CrashExit};
    if (result.aborted) {
        result.exitCode = kTerminated;
        output.AddLine("\r\n" + AbortedByUser());
    } else if (result.exitCode != 0) {
        output.AddLine(ExitCodeText(result.exitCode, AbortedByCore()));
    }
    return result;
}

int ProcessRunner::ExecuteWithResult(const ProgramCall& call, const QString& workingFolder,
                                     QString& output)
{
    QProcess process;
    Start(process, call, workingFolder);
    process.waitForFinished(-1);
    output = FromWindows1252(process.readAll());
    return ExitCodeOf(process);
}

void ProcessRunner::Terminate()
{
    if (!m_process || m_process->state() == QProcess::NotRunning)
        return; // it may have ended under a question whether to stop it
    m_abortedByUser = true;
    m_process->kill();
}

void ProcessRunner::SaveLogfile(const QString& fileName, const LogSink& box)
{
    try {
        const QString path = ResolvePath(fileName);
        if (QFile::exists(path)) {
            SetReadOnly(path, false);
            if (!QFile::remove(path))
                RaiseRuntimeFout(RuntimeFout::FileAccess,
                                 "Het bestand kan niet worden vervangen.|" + path);
        }
        QSaveFile file(path);
        const QString text = box.Text().replace("\r\n", "\n").replace("\n", "\r\n");
        if (!file.open(QIODevice::WriteOnly) || file.write(ToWindows1252(text)) < 0 ||
            !file.commit())
            RaiseRuntimeFout(RuntimeFout::FileAccess,
                             "Het bestand kan niet worden geschreven.|" + path);
    } catch (const std::exception& error) {
        Boxes* const boxes = gBoxes.Get();
        if (!boxes)
            throw;
        boxes->ReportError(error);
    }
}

void ProcessRunner::Start(QProcess& process, const ProgramCall& call, const QString& workingFolder)
{
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setWorkingDirectory(ResolvePath(workingFolder));
    process.start(ResolvePath(call.program), call.arguments, QIODevice::ReadOnly);
    if (!process.waitForStarted(-1)) {
        if (!platform::CanMakePipe())
            RaiseFout(kPipeFout);
        RaiseFout(kStartFout, {call.CommandLine()});
    }
}

QString ExitCodeText(int exitCode, const QString& text)
{
    QString line = text + " (Exitcode:" + QString::number(exitCode) + ")\r\n";
    if (exitCode == kUnexpectedError)
        line += IsDutch() ? "Er heeft zich een onverwachte fout voorgedaan. Neem contact op met de "
                            "helpdesk (zie helpmenu).\r\n"
                          : "An unexpected error has occurred. Get in touch with the helpdesk (see "
                            "the helpmenu).\r\n";
    return line;
}
