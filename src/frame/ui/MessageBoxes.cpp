#include "frame/ui/MessageBoxes.h"

#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/ProcessRunner.h"
#include "frame/Texts.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>

namespace {

QString Shown(QString text)
{
    return text.replace("\r\n", "\n");
}

/// A box under a plain pointer, also while the program is busy.
class Box : public QMessageBox {
public:
    Box(QMessageBox::Icon icon, QWidget* owner, const QString& caption, const QString& prompt)
        : QMessageBox(icon, caption, Shown(prompt), QMessageBox::NoButton,
                      owner ? owner->window() : QApplication::activeWindow())
    {
        setTextFormat(Qt::PlainText);
        setTextInteractionFlags(Qt::TextSelectableByMouse);
    }

    void Show()
    {
        const bool busy = QApplication::overrideCursor() != nullptr;
        if (busy)
            QApplication::setOverrideCursor(Qt::ArrowCursor);
        exec();
        if (busy)
            QApplication::restoreOverrideCursor();
    }
};

void OneButtonBox(QMessageBox::Icon icon, QWidget* owner, const QString& caption,
                  const QString& prompt)
{
    Box box(icon, owner, caption, prompt);
    QPushButton* ok = box.addButton(ButtonText("OK"), QMessageBox::AcceptRole);
    box.setDefaultButton(ok);
    box.setEscapeButton(ok);
    box.Show();
}

// Not ShowCursor, of which windows.h has one of its own.
void ShowBusyCursor(int mode)
{
    // What the map and the forms ask for; other pointers belong to their widgets.
    static bool shown = false;
    if (shown)
        QApplication::restoreOverrideCursor();
    shown = mode != kPointerDefault;
    if (shown)
        QApplication::setOverrideCursor(mode == kPointerHourglass ? Qt::WaitCursor
                                                                  : Qt::CrossCursor);
}

} // namespace

void WrappedOkBox(QWidget* owner, const QString& caption, const QString& prompt)
{
    OneButtonBox(QMessageBox::Information, owner, caption, prompt);
}

void WrappedFoutBox(QWidget* owner, const QString& caption, const QString& prompt)
{
    OneButtonBox(QMessageBox::Critical, owner, caption, prompt);
}

int WrappedQuestionBox(QWidget* owner, const QString& caption, const QString& prompt,
                       const QString& button1, const QString& button2, const QString& button3)
{
    Box box(QMessageBox::Question, owner, caption, prompt);
    if (button3.isEmpty()) {
        QPushButton* yes = box.addButton(button1, QMessageBox::YesRole);
        QPushButton* no = box.addButton(button2, QMessageBox::NoRole);
        box.setDefaultButton(no);
        box.setEscapeButton(no);
        box.Show();
        return box.clickedButton() == yes ? Answer::Yes : Answer::No;
    }
    // One role for all three keeps them in the order of the numbers everywhere.
    QPushButton* first = box.addButton(button1, QMessageBox::ActionRole);
    QPushButton* second = box.addButton(button2, QMessageBox::ActionRole);
    QPushButton* third = box.addButton(button3, QMessageBox::ActionRole);
    box.setDefaultButton(third);
    box.Show();
    if (box.clickedButton() == first)
        return Answer::First;
    return box.clickedButton() == second ? Answer::Second : Answer::Third;
}

void ShowMessage(int number, const QStringList& arguments)
{
    const QString text = ShowMessageText(number, arguments);
    QApplication::beep();
    WrappedOkBox(nullptr, BoxTitle(), text);
}

void ShowMessageForm(QWidget* owner, int number, const QStringList& arguments)
{
    const QString text = MessageText(number, arguments);
    QApplication::beep();
    WrappedOkBox(owner, BoxTitle(), text);
}

void ShowFoutForm(QWidget* owner, int number, const QStringList& arguments)
{
    const QString text = FoutText(number, arguments);
    QApplication::beep();
    WrappedFoutBox(owner, BoxTitle(), text);
}

int AskQuestion(QWidget* owner, int number, const QStringList& arguments)
{
    return AskQuestionButtons(owner, number, ButtonText("YES"), ButtonText("NO"), QString(),
                              arguments);
}

int AskQuestionButtons(QWidget* owner, int number, const QString& button1, const QString& button2,
                       const QString& button3, const QStringList& arguments)
{
    const QString text = QuestionText(number, arguments);
    QApplication::beep();
    return WrappedQuestionBox(owner, BoxTitle(), text, button1, button2, button3);
}

void ReportError(const std::exception& error)
{
    QApplication::beep();
    WrappedFoutBox(nullptr, BoxTitle(), Bars2Lines(Description(error)));
}

void WindowBoxes::ShowMessage(int number, const QStringList& arguments)
{
    ShowMessageForm(nullptr, number, arguments);
}

void WindowBoxes::ShowFout(int number, const QStringList& arguments)
{
    ShowFoutForm(nullptr, number, arguments);
}

int WindowBoxes::AskQuestion(int number, const QStringList& arguments)
{
    return ::AskQuestion(nullptr, number, arguments);
}

int WindowBoxes::AskQuestionButtons(int number, const QString& button1, const QString& button2,
                                    const QString& button3, const QStringList& arguments)
{
    return ::AskQuestionButtons(nullptr, number, button1, button2, button3, arguments);
}

void WindowBoxes::ReportError(const std::exception& error)
{
    ::ReportError(error);
}

void InstallWindowParts()
{
    SetCursorHook(ShowBusyCursor);
    SetUrlOpener([](const QUrl& url) { return QDesktopServices::openUrl(url); });
    gBoxes.Set(std::make_shared<WindowBoxes>());
}
