#include "calculation/ui/frmUitvoerHtml.h"

#include "BoxReader.h"
#include "Installation.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/ProcessRunner.h"
#include "frame/Texts.h"

#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <gtest/gtest.h>

namespace {

class frmUitvoerHtmlTest : public testing::Test {
protected:
    frmUitvoerHtmlTest()
    {
        installation.Write("ruwheid.html", "<h1>Ruwheden</h1><a href='meer.html'>meer</a>");
        installation.Write("meer.html", "<p>Meer</p>");
        browser = form.findChild<QTextBrowser*>("wbrUitvoer");
        back = form.findChild<QPushButton*>("cmdBack");
        form.ShowUitvoerFile(installation.Path("ruwheid.html"));
        form.show();
    }
    ~frmUitvoerHtmlTest() override { SetUrlOpener({}); }

    Installation installation;
    frmUitvoerHtml form;
    QTextBrowser* browser = nullptr;
    QPushButton* back = nullptr;
};

TEST_F(frmUitvoerHtmlTest, ShowsThePageAndTheWayBack)
{
    EXPECT_TRUE(browser->toPlainText().startsWith("Ruwheden"));
    EXPECT_FALSE(back->isEnabled());
    browser->setSource(QUrl("meer.html"));
    EXPECT_EQ(browser->toPlainText(), "Meer");
    EXPECT_TRUE(back->isEnabled());
    QTest::mouseClick(back, Qt::LeftButton);
    EXPECT_TRUE(browser->toPlainText().startsWith("Ruwheden"));
}

TEST_F(frmUitvoerHtmlTest, AMissingPageIsRefused)
{
    EXPECT_THROW(form.ShowUitvoerFile(installation.Path("weg.html")), Fout);
    EXPECT_TRUE(browser->toPlainText().startsWith("Ruwheden"));
}

TEST_F(frmUitvoerHtmlTest, OpensThePageInViewWithItsProgram)
{
    const BoxReader boxes;
    QUrl opened;
    SetUrlOpener([&](const QUrl& url) {
        opened = url;
        return true;
    });
    browser->setSource(QUrl("meer.html"));
    QTest::mouseClick(form.findChild<QPushButton*>("cmdOpenByAssoc"), Qt::LeftButton);
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_EQ(opened, QUrl::fromLocalFile(installation.Path("meer.html")));
}

TEST_F(frmUitvoerHtmlTest, WithoutAProgramMessage3IsShown)
{
    const BoxReader boxes;
    SetUrlOpener([](const QUrl&) { return false; });
    QTest::mouseClick(form.findChild<QPushButton*>("cmdOpenByAssoc"), Qt::LeftButton);
    EXPECT_EQ(boxes.Texts(),
              QStringList{ShowMessageText(3, {"html", installation.Path("ruwheid.html")})});
}

TEST_F(frmUitvoerHtmlTest, TheSizeIsStoredUnlessToldOtherwise)
{
    form.resize(600, 500);
    form.close();
    EXPECT_EQ(gIniFile().GetString("SETTINGS", "frmUitvoerHtmlWidth"), "9000");
    form.show();
    form.SaveSize(false);
    form.resize(500, 400);
    form.close();
    EXPECT_EQ(gIniFile().GetString("SETTINGS", "frmUitvoerHtmlWidth"), "9000");
    EXPECT_FALSE(form.isVisible());
}

} // namespace
