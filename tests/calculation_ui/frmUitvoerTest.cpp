#include "calculation/ui/frmUitvoer.h"

#include "BoxReader.h"
#include "Installation.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/ProcessRunner.h"
#include "frame/Texts.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

namespace {

class frmUitvoerTest : public testing::Test {
protected:
    frmUitvoerTest()
    {
        installation.Write("uitvoer.txt", "HBN\t1.50\r\nsta\xEB");
        installation.Write("extra.txt", "Meer");
        box = form.findChild<QPlainTextEdit*>("rtfUitvoer");
        uitvoer = form.findChild<QPushButton*>("cmdUitvoer");
        extra = form.findChild<QPushButton*>("cmdExtra");
    }
    ~frmUitvoerTest() override { SetUrlOpener({}); }
    static void Press(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    Installation installation;
    frmUitvoer form;
    QPlainTextEdit* box = nullptr;
    QPushButton *uitvoer = nullptr, *extra = nullptr;
};

TEST_F(frmUitvoerTest, WithoutAnExtraFileThereIsNothingToSwitch)
{
    form.ShowUitvoerFile(installation.Path("uitvoer.txt"));
    form.show();
    EXPECT_FALSE(extra->isVisible());
    EXPECT_FALSE(uitvoer->isVisible());
    EXPECT_EQ(box->toPlainText(), QString::fromUtf8("HBN\t1.50\nstaë"));
    EXPECT_TRUE(box->isReadOnly());
    EXPECT_EQ(box->lineWrapMode(), QPlainTextEdit::NoWrap);
    EXPECT_TRUE(box->textCursor().atStart());
    EXPECT_EQ(form.windowTitle(), "Zandvoet - Uitvoer");
}

TEST_F(frmUitvoerTest, TheButtonsSwitchBetweenTheFiles)
{
    form.ShowUitvoerFile(installation.Path("uitvoer.txt"), installation.Path("extra.txt"));
    form.show();
    EXPECT_TRUE(extra->isVisible() && extra->isEnabled());
    EXPECT_TRUE(uitvoer->isVisible() && !uitvoer->isEnabled());
    Press(extra);
    EXPECT_EQ(box->toPlainText(), "Meer");
    EXPECT_FALSE(extra->isEnabled());
    EXPECT_TRUE(uitvoer->isEnabled());
    EXPECT_EQ(form.windowTitle(), "Extra uitvoer");
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    QTest::keyClick(&form, Qt::Key_U, Qt::AltModifier);
    QTest::qWait(150); // a button that is pressed by a letter stays down for a moment
    EXPECT_TRUE(box->toPlainText().startsWith("HBN"));
    EXPECT_TRUE(extra->isEnabled());
    EXPECT_FALSE(uitvoer->isEnabled());
    EXPECT_EQ(form.windowTitle(), "Uitvoer");
}

TEST_F(frmUitvoerTest, AnExtraFileThatIsNotThereCannotBeShown)
{
    form.ShowUitvoerFile(installation.Path("uitvoer.txt"), installation.Path("weg.txt"));
    form.show();
    EXPECT_TRUE(extra->isVisible());
    EXPECT_FALSE(extra->isEnabled());
}

TEST_F(frmUitvoerTest, AFileThatIsNotThereIsRefused)
{
    EXPECT_THROW(form.ShowUitvoerFile(installation.Path("weg.txt")), Fout);
    EXPECT_THROW(form.ShowUitvoerFile(installation.Path("data")), Fout);
}

TEST_F(frmUitvoerTest, AnExtraFileThatHasGoneIsReportedAndTheFirstStays)
{
    form.ShowUitvoerFile(installation.Path("uitvoer.txt"), installation.Path("extra.txt"));
    form.show();
    QFile::remove(installation.Path("extra.txt"));
    const BoxReader boxes;
    Press(extra);
    EXPECT_EQ(boxes.Texts().size(), 1);
    EXPECT_TRUE(box->toPlainText().startsWith("HBN"));
}

TEST_F(frmUitvoerTest, PrintingHandsTheFileInViewToItsProgram)
{
    QList<QUrl> opened;
    SetUrlOpener([&](const QUrl& url) {
        opened << url;
        return true;
    });
    form.ShowUitvoerFile(installation.Path("uitvoer.txt"), installation.Path("extra.txt"));
    form.show();
    Press(form.findChild<QPushButton*>("cmdPrint"));
    Press(extra);
    Press(form.findChild<QPushButton*>("cmdPrint"));
    EXPECT_EQ(opened, (QList<QUrl>{QUrl::fromLocalFile(installation.Path("uitvoer.txt")),
                                   QUrl::fromLocalFile(installation.Path("extra.txt"))}));
}

TEST_F(frmUitvoerTest, WithoutAProgramForTheFileMessage3IsShown)
{
    const BoxReader boxes;
    SetUrlOpener([](const QUrl&) { return false; });
    const QString path = installation.Path("uitvoer.txt");
    form.ShowUitvoerFile(path);
    form.show();
    Press(form.findChild<QPushButton*>("cmdPrint"));
    EXPECT_EQ(boxes.Texts(), QStringList{MessageText(3, {"txt", path})});
    EXPECT_EQ(boxes.Owner(), &form);
}

TEST_F(frmUitvoerTest, OkEnterAndEscapeCloseTheWindow)
{
    form.ShowUitvoerFile(installation.Path("uitvoer.txt"));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        form.show();
        QTest::keyClick(&form, key);
        EXPECT_FALSE(form.isVisible());
    }
    form.show();
    form.resize(600, 500);
    Press(form.findChild<QPushButton*>("cmdOK"));
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(gIniFile().GetString("SETTINGS", "frmUitvoerWidth"), "9000");
}

TEST_F(frmUitvoerTest, BinaryContentIsHarmless)
{
    QByteArray all;
    for (int i = 0; i < 512; ++i)
        all += static_cast<char>(i);
    installation.Write("uitvoer.txt", all);
    form.ShowUitvoerFile(installation.Path("uitvoer.txt"));
    EXPECT_TRUE(box->toPlainText().contains("ABCDEFG"));
}

TEST_F(frmUitvoerTest, TheTextFillsTheWindowAboveTheButtons)
{
    form.ShowUitvoerFile(installation.Path("uitvoer.txt"));
    form.show();
    const auto* ok = form.findChild<QPushButton*>("cmdOK");
    for (const QSize size : {QSize(1000, 700), QSize(50, 50)}) {
        form.resize(size);
        QCoreApplication::processEvents();
        EXPECT_GE(box->width(), form.width() - 40);
        EXPECT_LT(box->geometry().bottom(), ok->geometry().top());
        EXPECT_LE(ok->geometry().right(), form.width());
        EXPECT_GE(box->width(), 240) << "the smallest size is guarded";
    }
}

} // namespace
