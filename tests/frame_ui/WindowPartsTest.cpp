#include "frame/ui/LogBox.h"
#include "frame/ui/MessageBoxes.h"
#include "frame/ui/QtTexts.h"

#include "BoxReader.h"
#include "Installation.h"
#include "frame/Busy.h"
#include "frame/Fouten.h"
#include "frame/Texts.h"

#include <QColorDialog>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QFontDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

class WindowPartsTest : public testing::Test {
protected:
    WindowPartsTest() { InstallWindowParts(); }
    ~WindowPartsTest() override
    {
        gBoxes.Release();
        SetCursorHook({});
    }

    Installation m_installation;
};

TEST_F(WindowPartsTest, TheHourglassStaysUntilTheOutermostOperationEnds)
{
    SetBusy();
    SetBusy();
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    ResetBusy();
    EXPECT_NE(QApplication::overrideCursor(), nullptr);
    ResetBusy();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    ResetBusy();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(WindowPartsTest, ABoxShownWhileBusyHasAnArrow)
{
    Qt::CursorShape shape = Qt::BlankCursor;
    BusyScope busy;
    DialogDriver driver([&](QDialog& dialog) {
        shape = QApplication::overrideCursor()->shape();
        dialog.accept();
    });
    WrappedOkBox(nullptr, "t", "x");
    EXPECT_EQ(shape, Qt::ArrowCursor);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
}

TEST_F(WindowPartsTest, CodeWithoutWindowsAsksThroughThePort)
{
    BoxReader boxes;
    boxes.Press("Ja");
    EXPECT_EQ(gBoxes().AskQuestion(101, {"x"}), Answer::Yes);
    gBoxes().ShowFout(5003, {});
    gBoxes().ShowMessage(5001, {});
    gBoxes().ReportError(Fout(1, "stuk"));
    EXPECT_EQ(boxes.Texts(),
              (QStringList{QuestionText(101, {"x"}), FoutText(5003), MessageText(5001), "stuk"}));
}

TEST_F(WindowPartsTest, ALogBoxIsReadOnlyDoesNotWrapAndShowsItsEnd)
{
    QPlainTextEdit edit;
    edit.resize(200, 100);
    edit.show();
    LogBox log(&edit);
    for (int i = 0; i < 100; ++i)
        log.Append("regel " + QString::number(i) + "\r\n");
    EXPECT_TRUE(edit.isReadOnly());
    EXPECT_EQ(edit.lineWrapMode(), QPlainTextEdit::NoWrap);
    EXPECT_EQ(edit.verticalScrollBar()->value(), edit.verticalScrollBar()->maximum());
    EXPECT_GT(edit.verticalScrollBar()->maximum(), 0);
    EXPECT_TRUE(log.Text().startsWith("regel 0\r\nregel 1\r\n"));
    EXPECT_TRUE(log.Text().endsWith("regel 99\r\n"));
}

TEST_F(WindowPartsTest, ALogBoxTakesPiecesOfALine)
{
    QPlainTextEdit edit;
    LogBox log(&edit);
    log.Append("half");
    log.Append("weg\r\nklaar");
    EXPECT_EQ(log.Text(), "halfweg\r\nklaar");
    log.SetText("nieuw");
    EXPECT_EQ(log.Text(), "nieuw");
    log.Clear();
    EXPECT_EQ(log.Text(), "");
}

TEST_F(WindowPartsTest, ALogBoxShowsBytesOfAnyKind)
{
    QPlainTextEdit edit;
    edit.resize(200, 100);
    edit.show();
    LogBox log(&edit);
    QString all;
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\r' && byte != '\n')
            all += QChar(byte);
    }
    log.SetText(all + "\r\n");
    log.Append(all);
    log.Refresh();
    EXPECT_EQ(log.Text().size(), 2 * all.size() + 2);
    EXPECT_TRUE(log.Text().endsWith(QString::fromUtf16(u"\u00FE\u00FF")));
}

TEST_F(WindowPartsTest, ALogBoxOutlivesItsWidget)
{
    auto edit = std::make_unique<QPlainTextEdit>();
    LogBox log(edit.get());
    edit.reset();
    log.Append("x");
    EXPECT_EQ(log.Text(), "");
}

TEST_F(WindowPartsTest, TheMenuOfAScrollBarIsDutch)
{
    InstallQtTexts();
    QPlainTextEdit edit;
    edit.resize(100, 60);
    edit.setPlainText(QString("regel\n").repeated(50));
    edit.show();
    QStringList texts;
    QTimer::singleShot(50, &edit, [&texts] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (const QAction* action : menu->actions())
            texts.append(action->text());
        menu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(3, 3), QPoint(3, 3));
    QApplication::sendEvent(edit.verticalScrollBar(), &event); // runs the menu
    texts.removeAll("");
    EXPECT_EQ(texts, (QStringList{"Hierheen schuiven", "Bovenkant", "Onderkant", "Pagina omhoog",
                                  "Pagina omlaag", "Omhoog schuiven", "Omlaag schuiven"}));
}

TEST_F(WindowPartsTest, TheDialogsOfTheToolkitAreDutch)
{
    InstallQtTexts();
    QColorDialog colours;
    colours.setOptions(QColorDialog::DontUseNativeDialog | QColorDialog::ShowAlphaChannel);
    QFontDialog fonts;
    fonts.setOption(QFontDialog::DontUseNativeDialog);
    QFileDialog files;
    files.setOption(QFileDialog::DontUseNativeDialog);
    static const QRegularExpression english(
        "\\b(color|colors|custom|pick|red|green|channel|style|writing|sample|underline|strikeout|"
        "cancel|look in|files of|file name|choose|new folder|back|forward)\\b",
        QRegularExpression::CaseInsensitiveOption);
    int texts = 0;
    for (QWidget* dialog : std::initializer_list<QWidget*>{&colours, &fonts, &files}) {
        dialog->ensurePolished();
        const auto look = [&](QString text) {
            ++texts;
            EXPECT_FALSE(text.remove('&').contains(english)) << text.toStdString();
        };
        for (const QLabel* label : dialog->findChildren<QLabel*>())
            look(label->text());
        for (const QAbstractButton* button : dialog->findChildren<QAbstractButton*>()) {
            look(button->text());
            look(button->toolTip());
        }
        for (const QGroupBox* group : dialog->findChildren<QGroupBox*>())
            look(group->title());
    }
    EXPECT_GT(texts, 40);
}

TEST_F(WindowPartsTest, TheMenuOfATextBoxIsDutch)
{
    InstallQtTexts();
    QLineEdit edit("tekst");
    const std::unique_ptr<QMenu> menu(edit.createStandardContextMenu());
    QStringList texts;
    for (const QAction* action : menu->actions())
        texts.append(action->text().section('\t', 0, 0).remove('&'));
    EXPECT_TRUE(texts.contains("Plakken"));
    EXPECT_TRUE(texts.contains("Kopiëren"));
    EXPECT_TRUE(texts.contains("Alles selecteren"));
    EXPECT_FALSE(texts.contains("Paste"));
}

} // namespace
