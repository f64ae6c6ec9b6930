#pragma once

#include "frame/Ports.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QIODevice;
class QProcess;
class QUrl;

/// A program and its arguments: a list, so that blanks and quotes survive.
struct ProgramCall {
    QString program;
    QStringList arguments;

    /// As one line, for error 701 and for the log.
    [[nodiscard]] QString CommandLine() const;
};

struct RunResult {
    /// What the program ended with. Outside Windows 128 plus the signal for a
    /// program that crashed; 999 after Terminate.
    int exitCode = 0;
    bool aborted = false;
};

/// Runs one program at a time on the user-interface thread and shows its
/// output while it works.
class ProcessRunner {
public:
    ProcessRunner();
    ~ProcessRunner();
    ProcessRunner(const ProcessRunner&) = delete;
    ProcessRunner& operator=(const ProcessRunner&) = delete;

    /// Runs the program and waits; window events are processed all the while,
    /// so that a cancel button works also while the program is quiet.
    /// Output and error output go, in the order they come, to `log` byte by
    /// byte and to the box, which keeps its last 5000 characters and the chunk
    /// behind them. A code other than 0, or an abort, adds a line to both.
    /// Raises 700 if there is no pipe, 701 if the program does not start.
    RunResult Execute(RunForm* form, const ProgramCall& call, const QString& workingFolder,
                      LogSink* box, QIODevice* log = nullptr);

    /// Runs a program that ends quickly, without events; returns all output.
    int ExecuteWithResult(const ProgramCall& call, const QString& workingFolder, QString& output);

    /// Kills the running program; Execute then returns with `aborted`. Too late for one
    /// that has ended, also when Execute has not returned yet: its own code counts.
    void Terminate();

    /// A program is running.
    [[nodiscard]] bool Rekent() const { return m_rekent; }

    /// Stores the box's text, replacing a file even if it is read-only.
    /// A failure goes to ReportError.
    static void SaveLogfile(const QString& fileName, const LogSink& box);

    /// The box keeps this many characters, and what came last behind them.
    static constexpr int kBoxCharacters = 5000;
    /// Characters of one read.
    static constexpr int kChunk = 255;
    static constexpr int kTerminated = 999;

private:
    class Output;

    void Start(QProcess& process, const ProgramCall& call, const QString& workingFolder);

    QProcess* m_process = nullptr; // only while Execute runs
    bool m_abortedByUser = false;
    bool m_rekent = false;
};

/// `text`, " (Exitcode:<code>)" and CR LF; a second line for the code of an
/// unexpected error (0xC00000AA), in the language of gLanguage.
[[nodiscard]] QString ExitCodeText(int exitCode, const QString& text);

/// Who opens documents, folders and mail; returns whether it worked. Installed
/// by the part that has windows; without it nothing can be opened.
void SetUrlOpener(std::function<bool(const QUrl&)> opener);

/// Above 32 when it worked; 2 for a file or folder that does not exist, 31
/// when nothing is associated with it.
int ShellOpen(const QString& file);
int ShellOpenPrint(const QString& file);
/// Opens a mail to an address; subject and body may be empty.
bool ShellMail(const QString& address, const QString& subject, const QString& body);
/// The address that ShellMail opens, unencoded.
[[nodiscard]] QString MailTarget(const QString& address, const QString& subject,
                                 const QString& body);
/// Starts a program and does not wait.
bool StartProgram(const ProgramCall& call);
