#pragma once

#include "BoxReader.h"
#include "frame/ui/FileDialogs.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/parts/LocatieRecords.h"
#include "mainwindow/parts/MainCommands.h"
#include "mainwindow/parts/MainPanes.h"
#include "maps/ui/MapView.h"
#include "navigation/MapSelection.h"
#include "database/WerkmapFixture.h"
#include "profiles/ui/frmLocaties.h"

#include <QMenu>
#include <QTest>
#include <QTreeWidget>

/// The real window with its real parts, beside a database in a folder of its own.
class MainPartsTest : public WerkmapTest {
protected:
    MainPartsTest()
    {
        namespace fs = std::filesystem;
        for (const auto& entry : fs::directory_iterator(PROJECT_DATA_FOLDER)) {
            if (entry.path().extension() == ".ini")
                fs::copy_file(entry.path(), folder / "data" / entry.path().filename(),
                              fs::copy_options::skip_existing);
        }
        db.CloseDB();
        window = std::make_unique<frmMain>();
        panes = new MainPanes(*window, {db, selection, strijklengte});
        SetMainCommands(*window, *panes);
        window->Load();
        EXPECT_TRUE(window->IsLoaded());
    }
    ~MainPartsTest() override
    {
        SetFileChooser(nullptr);
        window.reset();
    }

    QString First() const { return Pad("boezem.mdb"); }
    QString Second()
    {
        const QString path = VoorbeeldDatabase("plas.mdb");
        Voeruit(path, {"DELETE FROM Locatie WHERE omschrijving <> 'Plas-01'"});
        return path;
    }
    void Open()
    {
        window->OpenRandvoorwaarden(First());
        window->UpdateMenus();
    }
    void Click(const QString& key)
    {
        QTreeWidgetItem* node = panes->Locaties().GetNodeByKey(key);
        ASSERT_NE(node, nullptr) << key.toStdString();
        panes->Locaties().ClickNode(node);
    }
    bool Enabled(const QString& menu) const { return window->MenuAction(menu)->isEnabled(); }
    bool MenuEnabled(const QString& menu) const
    {
        return window->findChild<QMenu*>(menu)->menuAction()->isEnabled();
    }
    QStringList TreeNames() const
    {
        QStringList names;
        const QTreeWidgetItem* root = panes->Locaties().LocatiesNode();
        for (int i = 0; root && i < root->childCount(); ++i)
            names.append(root->child(i)->text(0));
        return names;
    }
    QPoint PlaceOnMap(const QString& naam)
    {
        for (const LocatiePunt& punt : LeesLocatiePunten(db).locaties) {
            if (punt.omschrijving == naam)
                return panes->Map().Transform().ToPixel(punt.x, punt.y).toPoint();
        }
        return {-1, -1};
    }

    BoxReader messages;
    MapSelection selection;
    Strijklengte strijklengte;
    std::unique_ptr<frmMain> window;
    MainPanes* panes = nullptr; // a child of the window
};
