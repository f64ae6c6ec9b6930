#include "MainWindowTools.h"
#include "frame/Fouten.h"
#include "frame/ProcessRunner.h"
#include "frame/Texts.h"

#include <QMenu>
#include <QSignalSpy>
#include <QUrl>
#include <gtest/gtest.h>

namespace {

class frmMainDatabaseTest : public MainWindowTest {
protected:
    void LastDatabase(const QString& path, bool exists = true)
    {
        if (exists)
            m_installation.Write("data/databases/boezem.mdb", "x");
        gIniFile().SaveString("Randvoorwaarden", "lastRvwFile", path);
    }
    QString Mdb() const { return m_installation.Path("data/databases/boezem.mdb"); }
};

class Shore : public ShoreFile {
public:
    QString Path() const override { return path; }
    void SetPath(const QString& told) override { path = told; }
    QString path;
};

TEST_F(frmMainDatabaseTest, TheLastDatabaseOpensCheckedAndThenUnchecked)
{
    LastDatabase(".\\data\\databases\\boezem.mdb");
    Load();
    QSignalSpy opened(m_window.get(), &frmMain::RandvoorwaardenOpened);
    m_window->Initialiseer();
    EXPECT_EQ(m_database.opened, (QStringList{"controle boezem.mdb", "boezem.mdb"}));
    ASSERT_EQ(opened.count(), 1);
    EXPECT_EQ(opened[0][0].toString(), Mdb());
    EXPECT_EQ(m_window->windowTitle(), "Zandvoet - boezem");
    EXPECT_TRUE(MenuEnabled("mnuLocatie"));
    EXPECT_TRUE(m_map.calls.contains("namen aan"));
    EXPECT_EQ(m_window->SetStatusBarText(""), "Gereed");
    EXPECT_EQ(m_window->GetChekedButton(), 0);
}

TEST_F(frmMainDatabaseTest, ADeletedLastDatabaseIsPassedOverInSilence)
{
    LastDatabase(".\\data\\databases\\weg.mdb", false);
    Load();
    m_window->Initialiseer();
    EXPECT_TRUE(m_database.opened.isEmpty());
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
    EXPECT_FALSE(MenuEnabled("mnuLocatie"));
}

TEST_F(frmMainDatabaseTest, EachResultOfTheOpenHasItsOwnText)
{
    const QList<std::pair<int, QString>> cases{
        {1, FoutText(4, {Mdb(), "omdat"})},  {2, FoutText(6, {"omdat"})},
        {3, FoutText(28, {Mdb(), "omdat"})}, {4, FoutText(27, {Mdb(), "omdat"})},
        {9, FoutText(4, {Mdb(), "omdat"})},
    };
    LastDatabase(".\\data\\databases\\boezem.mdb");
    for (const auto& [result, text] : cases) {
        m_database.result = result;
        Load();
        m_window->Initialiseer();
        EXPECT_EQ(m_boxes.Texts().last(), text) << result;
        EXPECT_FALSE(m_database.isOpen);
        EXPECT_FALSE(MenuEnabled("mnuLocatie"));
    }
    EXPECT_EQ(m_boxes.Texts().size(), cases.size());
}

TEST_F(frmMainDatabaseTest, OpeningStoresTheFolderAndTheFileRelative)
{
    m_installation.Write("data/databases/boezem.mdb", "x");
    Load();
    m_database.chosen = Mdb();
    m_window->MenuAction("mnuFileOpen")->trigger();
    EXPECT_EQ(gIniFile().GetString("Mappen", "DatabasesMap"), ".\\data\\databases");
    EXPECT_EQ(gIniFile().GetString("Randvoorwaarden", "lastRvwFile"),
              ".\\data\\databases\\boezem.mdb");
    EXPECT_EQ(m_database.opened, QStringList{"boezem.mdb"});
    EXPECT_TRUE(MenuEnabled("mnuLocatie"));
}

TEST_F(frmMainDatabaseTest, ACancelledOpenChangesNothing)
{
    Load();
    m_window->MenuAction("mnuFileOpen")->trigger();
    EXPECT_TRUE(m_database.opened.isEmpty());
    EXPECT_EQ(gIniFile().GetString("Randvoorwaarden", "lastRvwFile"), "");
}

TEST_F(frmMainDatabaseTest, ASecondDatabaseClosesTheFirstAndKeepsTheLabelSetting)
{
    m_installation.Write("data/databases/boezem.mdb", "x");
    Load();
    m_database.chosen = Mdb();
    m_window->MenuAction("mnuFileOpen")->trigger();
    QSignalSpy closing(m_window.get(), &frmMain::RandvoorwaardenClosing);
    QSignalSpy opened(m_window.get(), &frmMain::RandvoorwaardenOpened);
    m_map.calls.clear();
    m_window->MenuAction("mnuFileOpen")->trigger();
    EXPECT_EQ(closing.count(), 1);
    EXPECT_EQ(opened.count(), 1);
    EXPECT_EQ(m_map.calls.first(), "namen uit");
    EXPECT_EQ(m_map.calls.count("namen aan"), 1);
    EXPECT_TRUE(m_window->Labels().shown);
    EXPECT_EQ(gIniFile().GetString("LABELS", "STATUS"), "AAN");
}

TEST_F(frmMainDatabaseTest, WithLabelsOffNoneAreDrawn)
{
    gIniFile().SaveString("LABELS", "STATUS", "UIT");
    LastDatabase(".\\data\\databases\\boezem.mdb");
    Load();
    m_window->Initialiseer();
    EXPECT_FALSE(m_map.calls.contains("namen aan"));
}

TEST_F(frmMainDatabaseTest, LoadRemovesTheListedDataSources)
{
    gIniFile().SaveString("ODBC", "odbc1", "driver,Oude bron,x");
    Load();
    EXPECT_TRUE(m_database.removed.contains("Oude bron"));
}

TEST_F(frmMainDatabaseTest, ClosingStoresWhatTheNextStartNeeds)
{
    Shore shore;
    m_window = std::make_unique<frmMain>();
    Load();
    m_window->setShoreFile(&shore);
    gIniFile().SaveString("Algemeen", "FetchShapefile", ".\\data\\oevers.shp");
    m_window->Initialiseer();
    EXPECT_EQ(shore.path, m_installation.Path("data/oevers.shp"));
    m_browser.key = "LOCATIE_noord";
    shore.path = m_installation.Path("data/kaarten/oevers2.shp");
    Show();
    QSignalSpy unloaded(m_window.get(), &frmMain::Unloaded);
    m_window->MenuAction("mnuFileExit")->trigger();
    EXPECT_EQ(unloaded.count(), 1);
    EXPECT_FALSE(m_window->isVisible());
    EXPECT_EQ(gIniFile().GetString("Randvoorwaarden", "lastNode"), "LOCATIE_noord");
    EXPECT_EQ(gIniFile().GetString("Algemeen", "FetchShapefile"), ".\\data\\kaarten\\oevers2.shp");
    EXPECT_EQ(gIniFile().GetString("Kwaliteteitscodes", "code1"), "0|&HFF");
}

TEST_F(frmMainDatabaseTest, AFailureWhileClosingDoesNotKeepTheRestFromBeingStored)
{
    class BrokenShore : public ShoreFile {
        QString Path() const override { throw std::runtime_error("stuk"); }
        void SetPath(const QString&) override {}
    } broken;
    Load();
    m_window->setShoreFile(&broken);
    Show();
    gIniFile().RemoveKey("SETTINGS", "frmMainLeft");
    m_window->close();
    EXPECT_FALSE(m_window->isVisible());
    EXPECT_NE(gIniFile().GetString("SETTINGS", "frmMainLeft"), "");
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
}

TEST_F(frmMainDatabaseTest, ClosingUnloadsTheOtherForms)
{
    Load();
    Show();
    QWidget other;
    other.setObjectName("frmMapResultaat");
    other.show();
    m_window->close();
    EXPECT_FALSE(other.isVisible());
}

TEST_F(frmMainDatabaseTest, AMissingWindWaveCalculatorIsNamed)
{
    Load();
    OpenDatabase();
    m_window->MenuAction("mnuExtraBSA")->trigger();
    const QString path = m_installation.Path("WindWaveCalculator.exe");
    EXPECT_EQ(m_boxes.Texts(), QStringList{FoutText(11, {path, ""})});
}

TEST_F(frmMainDatabaseTest, TheWindWaveCalculatorIsStartedWithItsArguments)
{
    const QString out = m_installation.Path("argumenten.txt");
    m_installation.Write("WindWaveCalculator",
                         ("#!/bin/sh\necho \"$@\" > '" + out + "'\n").toUtf8());
    QFile::setPermissions(m_installation.Path("WindWaveCalculator"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    Load();
    OpenDatabase();
    m_window->MenuAction("mnuExtraBSA")->trigger();
    QByteArray told;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            QFile file(out);
            told = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            return !told.isEmpty();
        },
        5000));
    EXPECT_EQ(told.trimmed().toStdString(), "NL BYH");
}

TEST_F(frmMainDatabaseTest, HelpOpensTheManualOrNamesItWhenItIsMissing)
{
    QUrl asked;
    SetUrlOpener([&](const QUrl& url) {
        asked = url;
        return true;
    });
    Load();
    m_window->MenuAction("mnuHelpHandleiding")->trigger();
    EXPECT_EQ(m_boxes.Texts(),
              QStringList{FoutText(7, {m_installation.Path("data/Handleiding.html")})});
    m_installation.Write("data/Handleiding.html", "<html></html>");
    m_window->MenuAction("mnuHelpHandleiding")->trigger();
    EXPECT_EQ(asked.toLocalFile(), m_installation.Path("data/Handleiding.html"));
    SetUrlOpener([](const QUrl&) { return false; });
    m_window->MenuAction("mnuHelpHandleiding")->trigger();
    EXPECT_EQ(m_boxes.Texts().last(),
              MessageText(3, {"html", m_installation.Path("data/Handleiding.html")}));
    SetUrlOpener({});
}

} // namespace
