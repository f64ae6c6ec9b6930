#include "mainwindow/RecentDatabases.h"
#include "MainWindowTools.h"

#include <QDropEvent>
#include <QMimeData>
#include <QPointer>
#include <QSignalSpy>
#include <QUrl>
#include <gtest/gtest.h>

namespace {

class RecentDatabasesTest : public MainWindowTest {
protected:
    QString Mdb(const QString& name) const
    {
        return m_installation.Path("data/databases/" + name + ".mdb");
    }
    void Add(const QString& name) { AddRecentDatabase(gIniFile(), Mdb(name)); }
    QStringList Names() const
    {
        QStringList names;
        for (const QString& path : LoadRecentDatabases(gIniFile()))
            names.append(path.section('/', -1).chopped(4));
        return names;
    }
    QList<QAction*> Recent()
    {
        auto* menu = m_window->findChild<QMenu*>("mnuFile");
        emit menu->aboutToShow();
        QList<QAction*> actions;
        for (QAction* action : menu->actions())
            if (action->toolTip().endsWith(".mdb"))
                actions.append(action);
        return actions;
    }
    void Drop(const QList<QUrl>& urls, bool* accepted)
    {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_window.get(), &enter);
        *accepted = enter.isAccepted();
        if (!*accepted)
            return;
        QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_window.get(), &drop);
        QTest::qWait(1);
    }
};

TEST_F(RecentDatabasesTest, TheLatestStandsFirstAndNoneTwice)
{
    Add("een");
    Add("twee");
    Add("EEN");
    EXPECT_EQ(Names(), (QStringList{"EEN", "twee"}));
}

TEST_F(RecentDatabasesTest, TheListIsBounded)
{
    for (int i = 1; i <= 12; ++i)
        Add(QString::number(i));
    EXPECT_EQ(Names(), (QStringList{"12", "11", "10", "9", "8", "7", "6", "5"}));
}

TEST_F(RecentDatabasesTest, FilesBelowTheProgramAreStoredRelative)
{
    Add("een");
    EXPECT_EQ(gIniFile().GetString("Randvoorwaarden", "recentRvwFile1"), RelativePath(Mdb("een")));
    EXPECT_FALSE(
        gIniFile().GetString("Randvoorwaarden", "recentRvwFile1").contains("databases/../"));
}

TEST_F(RecentDatabasesTest, OnlyAFileThatIsGoneIsForgotten)
{
    m_installation.Write("data/databases/een.mdb", "x");
    Add("een");
    Add("weg");
    ForgetRecentDatabaseWhenGone(gIniFile(), Mdb("een"));
    ForgetRecentDatabaseWhenGone(gIniFile(), Mdb("weg"));
    EXPECT_EQ(Names(), QStringList{"een"});
}

TEST_F(RecentDatabasesTest, OpeningADatabasePutsItInTheFileMenu)
{
    Load();
    EXPECT_TRUE(Recent().isEmpty());
    m_window->OpenRandvoorwaarden(Mdb("een"));
    m_window->OpenRandvoorwaarden(Mdb("a&b"));
    const QList<QAction*> recent = Recent();
    ASSERT_EQ(recent.size(), 2);
    EXPECT_EQ(recent[0]->text(), "&1 a&&b");
    EXPECT_EQ(recent[1]->text(), "&2 een");
    EXPECT_EQ(Recent().size(), 2); // shown once more: not doubled
}

TEST_F(RecentDatabasesTest, TheEntriesGoWithTheWindow)
{
    Add("een");
    Load();
    const QPointer<QAction> entry = Recent().at(0);
    m_window.reset();
    EXPECT_TRUE(entry.isNull());
}

TEST_F(RecentDatabasesTest, ADatabaseFromTheMenuIsCheckedAndReplacesTheOpenOne)
{
    Add("een");
    Load();
    QSignalSpy closing(m_window.get(), &frmMain::RandvoorwaardenClosing);
    Recent().at(0)->trigger();
    QTest::qWait(1);
    EXPECT_EQ(m_database.checked, QStringList{Mdb("een")});
    EXPECT_EQ(m_database.opened, QStringList{"een.mdb"});
    EXPECT_EQ(closing.count(), 1);
    EXPECT_EQ(m_window->windowTitle(), "Zandvoet - een");
}

TEST_F(RecentDatabasesTest, ARefusedFileLeavesTheOpenOneAndAMissingOneGoesFromTheList)
{
    Add("weg");
    Load();
    m_database.accepts = false;
    QSignalSpy closing(m_window.get(), &frmMain::RandvoorwaardenClosing);
    Recent().at(0)->trigger();
    QTest::qWait(1);
    EXPECT_EQ(closing.count(), 0);
    EXPECT_TRUE(m_database.opened.isEmpty());
    EXPECT_TRUE(Names().isEmpty());
}

TEST_F(RecentDatabasesTest, ADatabaseDroppedOnTheWindowIsOpened)
{
    Load();
    bool accepted = false;
    Drop({QUrl::fromLocalFile(Mdb("een"))}, &accepted);
    EXPECT_TRUE(accepted);
    EXPECT_EQ(m_database.checked, QStringList{Mdb("een")});
    EXPECT_EQ(m_database.opened, QStringList{"een.mdb"});
}

TEST_F(RecentDatabasesTest, AnythingElseCannotBeDropped)
{
    Load();
    bool accepted = true;
    Drop({QUrl::fromLocalFile("/a/b.txt")}, &accepted);
    EXPECT_FALSE(accepted);
    Drop({QUrl::fromLocalFile(Mdb("a")), QUrl::fromLocalFile(Mdb("b"))}, &accepted);
    EXPECT_FALSE(accepted);
    Drop({QUrl("https://example.org/a.mdb")}, &accepted);
    EXPECT_FALSE(accepted);
    EXPECT_TRUE(m_database.checked.isEmpty());
}

} // namespace
