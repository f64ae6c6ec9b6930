#pragma once

#include "BoxReader.h"
#include "Installation.h"
#include "mainwindow/Panes.h"
#include "mainwindow/frmMain.h"

#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>
#include <gtest/gtest.h>

/// A map that notes what it is asked.
class FakeMap : public MapPane {
public:
    void AddAchtergrondLayers() override { calls.append("lagen"); }
    void SelectTool(int command, const QCursor& shape) override
    {
        calls.append("gereedschap " + QString::number(command));
        pointer = shape;
    }
    void ShowLabels(bool on) override { calls.append(on ? "namen aan" : "namen uit"); }
    void RefreshMap() override { calls.append("ververs"); }

    QStringList calls;
    QCursor pointer;
};

class FakeBrowser : public BrowserPane {
public:
    QString CurrentNodeKey() const override { return key; }
    QString CurrentNodeTag() const override { return tag; }
    bool HasLocations() const override { return hasLocations; }
    void EnsureCurrentNodeVisible() override { ++ensured; }
    void ResetCurrentNode() override { ++resets; }

    QString key;
    QString tag;
    bool hasLocations = false;
    int ensured = 0;
    int resets = 0;
};

class FakeDatabase : public MainDatabase {
public:
    int OpenDB(const QString& path, bool, bool check) override
    {
        opened.append((check ? "controle " : "") + path.section('/', -1));
        isOpen = result == 0;
        return result;
    }
    void CloseDB() override { isOpen = false; }
    bool IsOpen() const override { return isOpen; }
    QString OpenErrDescription() const override { return "omdat"; }
    QString ChooseChecked(const QString& folder, const QString& title) override
    {
        askedFolder = folder;
        askedTitle = title;
        return chosen;
    }
    bool Check(const QString& path) override
    {
        checked.append(path);
        return accepts;
    }
    void RemoveDataSources(const QStringList& names) override { removed = names; }

    QStringList opened;
    QStringList removed;
    QStringList checked;
    bool accepts = true;
    QString chosen;
    QString askedFolder;
    QString askedTitle;
    int result = 0;
    bool isOpen = false;
};

/// A main window with everything tied to it, loaded in an installation.
class MainWindowTest : public testing::Test {
protected:
    void Load()
    {
        m_window = std::make_unique<frmMain>();
        m_window->setPaneSizes(&m_sizes);
        if (m_withPanes) {
            m_window->setMapPane(new QWidget, &m_map);
            m_window->setTreePane(new QWidget, &m_browser);
            m_window->setLogPane(new QWidget);
            m_window->setDatabase(&m_database);
        }
        m_window->Load();
    }
    void Show()
    {
        m_window->show();
        m_window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    }
    void OpenDatabase()
    {
        m_database.isOpen = true;
        m_window->UpdateMenus();
    }
    bool MenuEnabled(const QString& name) const
    {
        return m_window->findChild<QMenu*>(name)->menuAction()->isEnabled();
    }
    bool Enabled(const QString& name) const { return m_window->MenuAction(name)->isEnabled(); }

    Installation m_installation;
    BoxReader m_boxes;
    FakeMap m_map;
    FakeBrowser m_browser;
    FakeDatabase m_database;
    PaneSizes m_sizes;
    bool m_withPanes = true;
    std::unique_ptr<frmMain> m_window;
};
