#pragma once

#include <QString>
#include <QStringList>

#include <exception>

/// What low floors need of windows. They speak to these classes; windows
/// implement them, the roof ties them, tests use fakes.

/// The status bar of the main window.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    /// Both return the text that stood there. A blank text, or a number that
    /// is not above 0, changes nothing: that is how to ask for the present text.
    QString SetStatusBarText(const QString& text);
    QString SetStatusBarTextByNumber(const QString& number, const QStringList& arguments = {});
    QString SetStatusBarTextByNumber(int number, const QStringList& arguments = {});
    /// Empties the bar (SetStatusBarText cannot) and returns what stood there.
    QString ClearStatusBarText();

    virtual void ShowProgress(int maximum) = 0;
    virtual void SetProgress(int value) = 0;
    virtual void HideProgress() = 0;

protected:
    [[nodiscard]] virtual QString StatusText() const = 0;
    virtual void ShowStatusText(const QString& text) = 0;
};

/// A box of text: the log pane, the box of a run.
class LogSink {
public:
    virtual ~LogSink() = default;
    [[nodiscard]] virtual QString Text() const = 0;
    /// Replaces everything and brings the end into view.
    virtual void SetText(const QString& text) = 0;
    /// Adds at the end and brings it into view; brings its own line ends.
    virtual void Append(const QString& text) = 0;
    virtual void Clear() { SetText({}); }
    /// Paints what stands there at once, also when no events are processed.
    virtual void Refresh() {}
};

/// The form that watches a run of another program.
class RunForm {
public:
    virtual ~RunForm() = default;
    /// True while the run processes window events, false when it is over.
    virtual void SetRunUsable(bool usable) = 0;
};

/// Answers of questions.
namespace Answer {
inline constexpr int First = 3;
inline constexpr int Second = 4;
inline constexpr int Third = 5;
inline constexpr int Yes = 6;
inline constexpr int No = 7;
} // namespace Answer

/// Boxes for code without a window of its own: the box belongs to the window
/// that is active. Numbers are those of the numbered texts.
class Boxes {
public:
    virtual ~Boxes() = default;
    virtual void ShowMessage(int number, const QStringList& arguments) = 0;
    virtual void ShowFout(int number, const QStringList& arguments) = 0;
    /// Answer::Yes or Answer::No.
    [[nodiscard]] virtual int AskQuestion(int number, const QStringList& arguments) = 0;
    /// Answer::First, Second or Third; with an empty `button3` Yes or No.
    [[nodiscard]] virtual int AskQuestionButtons(int number, const QString& button1,
                                                 const QString& button2, const QString& button3,
                                                 const QStringList& arguments) = 0;
    virtual void ReportError(const std::exception& error) = 0;
};
