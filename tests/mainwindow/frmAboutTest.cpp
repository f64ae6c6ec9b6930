#include "mainwindow/frmAbout.h"
#include "mainwindow/ProgrammaVersie.h"

#include "BoxReader.h"
#include "Installation.h"
#include "frame/ProcessRunner.h"
#include "mainwindow/frmSplash.h"

#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

/// Stands in for the browser.
class LinkCatcher : public QObject {
    Q_OBJECT
public:
    LinkCatcher() { QDesktopServices::setUrlHandler("https", this, "Open"); }
    ~LinkCatcher() override { QDesktopServices::unsetUrlHandler("https"); }

    QStringList asked;

public slots:
    void Open(const QUrl& url) { asked.append(url.toString()); }
};

namespace {

class frmAboutTest : public testing::Test {
protected:
    void Core(const QByteArray& script)
    {
        m_installation.Write("Rekenprogramma", "#!/bin/sh\n" + script);
        QFile::setPermissions(m_installation.Path("Rekenprogramma"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    static QString Text(const QWidget& form, const QString& label)
    {
        return form.findChild<QLabel*>(label)->text();
    }

    Installation m_installation;
};

TEST_F(frmAboutTest, TheSplashShowsBothVersions)
{
    Core("test \"$1\" = -VERSIE && echo ' 3.1.4 '\n");
    const frmSplash splash;
    EXPECT_EQ(Text(splash, "lblVersion"), "Versie 1.0 november 2021");
    EXPECT_EQ(Text(splash, "lblRekenhart"), "Rekenhart 3.1.4");
}

TEST_F(frmAboutTest, TheSplashStandsInTheMiddleAtOnce)
{
    frmSplash splash;
    splash.ShowNow();
    EXPECT_TRUE(splash.isVisible());
    EXPECT_EQ(Text(splash, "lblRekenhart"), "Rekenhart ");
}

TEST_F(frmAboutTest, ACoreThatFailsHasNoVersion)
{
    Core("echo fout; exit 3\n");
    const frmSplash splash;
    EXPECT_EQ(Text(splash, "lblRekenhart"), "Rekenhart ");
}

TEST_F(frmAboutTest, TheAboutBoxTellsItsVersionsAndClosesWithEnterAndEscape)
{
    Core("echo 3.1.4\n");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        frmAbout about;
        about.show();
        about.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&about));
        EXPECT_EQ(about.windowTitle(), "Zandvoet - Info");
        EXPECT_EQ(Text(about, "lblVersion"), "Versie 1.0 november 2021");
        EXPECT_EQ(Text(about, "lblRekenhart"), "Rekenhart 3.1.4");
        QTest::keyClick(&about, key);
        EXPECT_FALSE(about.isVisible());
    }
}

TEST_F(frmAboutTest, MailGoesToTheAddressOfTheIni)
{
    QUrl asked;
    SetUrlOpener([&](const QUrl& url) {
        asked = url;
        return true;
    });
    frmAbout about;
    about.show();
    QTest::mouseClick(about.findChild<QPushButton*>("cmdMAILWaterkeren"), Qt::LeftButton);
    EXPECT_EQ(asked.scheme(), "mailto");
    EXPECT_TRUE(asked.path().contains("waterkeren@zandvoet.example"));
    SetUrlOpener({});
}

TEST_F(frmAboutTest, EachLinkOpensItsAddress)
{
    LinkCatcher links;
    frmAbout about;
    about.show();
    for (const char* name : {"cmdURLqlm", "cmdURLNoorlo", "cmdURLWaterkeren"})
        QTest::mouseClick(about.findChild<QPushButton*>(name), Qt::LeftButton);
    EXPECT_EQ(links.asked,
              (QStringList{"https://zandvoet.example/", "https://zandvoet.example/ontwikkelaars",
                           "https://zandvoet.example/waterkeringen"}));
}

TEST(MetVersieTest, ACoreThatNamesItselfIsNotNamedTwice)
{
    EXPECT_EQ(MetVersie("Rekenhart", "2.5"), "Rekenhart 2.5");
    EXPECT_EQ(MetVersie("Rekenhart", "Rekenhart (open) 2.5"), "Rekenhart (open) 2.5");
    EXPECT_EQ(MetVersie("Rekenhart", "Rekenharten 2.5"), "Rekenhart Rekenharten 2.5");
}

} // namespace

#include "frmAboutTest.moc"
