#pragma once

#include "frame/Busy.h"
#include "frame/Ports.h"

#include <QString>
#include <QStringList>

#include <exception>
#include <utility>

class QWidget;

/// Boxes with numbered texts (see frame/Texts.h). Each beeps first. Titles and
/// buttons come from the program's ini, so they speak its language whatever that
/// of the desktop is. A box without an owner belongs to the active window.

void ShowMessage(int number, const QStringList& arguments = {});
void ShowMessageForm(QWidget* owner, int number, const QStringList& arguments = {});
void ShowFoutForm(QWidget* owner, int number, const QStringList& arguments = {});

/// Answer::Yes or Answer::No; "no" is the default button.
[[nodiscard]] int AskQuestion(QWidget* owner, int number, const QStringList& arguments = {});

/// Answer::First, Second or Third, the third being the default button; with an
/// empty `button3` it is a question with two buttons of the given texts.
[[nodiscard]] int AskQuestionButtons(QWidget* owner, int number, const QString& button1,
                                     const QString& button2, const QString& button3,
                                     const QStringList& arguments = {});

/// The last-resort box: shows what went wrong, and nothing else.
void ReportError(const std::exception& error);

/// The boxes themselves, for texts from elsewhere. A line break is CR LF or LF.
void WrappedOkBox(QWidget* owner, const QString& caption, const QString& prompt);
void WrappedFoutBox(QWidget* owner, const QString& caption, const QString& prompt);
[[nodiscard]] int WrappedQuestionBox(QWidget* owner, const QString& caption, const QString& prompt,
                                     const QString& button1, const QString& button2,
                                     const QString& button3);

/// The error frame of every event handler: whatever `body` throws ends here,
/// in one box. A body that calls SetBusy may throw without a ResetBusy.
template <typename Body>
void RunHandler(Body&& body)
{
    try {
        std::forward<Body>(body)();
    } catch (const std::exception& error) {
        ReportError(error);
        ResetBusy(); // does no harm when nothing was busy
    }
}

/// The boxes for code below the windows; see gBoxes.
class WindowBoxes : public Boxes {
public:
    void ShowMessage(int number, const QStringList& arguments) override;
    void ShowFout(int number, const QStringList& arguments) override;
    [[nodiscard]] int AskQuestion(int number, const QStringList& arguments) override;
    [[nodiscard]] int AskQuestionButtons(int number, const QString& button1, const QString& button2,
                                         const QString& button3,
                                         const QStringList& arguments) override;
    void ReportError(const std::exception& error) override;
};

/// Ties the windows to the ports of the frame: boxes, hourglass, and the opening
/// of documents with the desktop's programs. Called once, after the application
/// object is made.
void InstallWindowParts();
