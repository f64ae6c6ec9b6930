#pragma once

#include "BoxReader.h"
#include "calculation/LogViewer.h"
#include "navigation/MapSelection.h"
#include "database/WerkmapFixture.h"
#include "profiles/ui/BrowserHost.h"
#include "profiles/ui/frmLocaties.h"

#include <QHash>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

/// Notes what the browser asks of the main window.
class FakeHost : public BrowserHost {
public:
    void SetCommandEnabled(const QString& menu, bool enabled) override { commands[menu] = enabled; }
    void SetEnableButton(int command, bool enabled) override { buttons[command] = enabled; }
    void ShowContextMenu(const QString& menu, const QPoint&) override { calls << menu; }
    void EditProfiel() override { calls << "EditProfiel"; }
    void ShowBerekeningUitvoer() override { calls << "ShowBerekeningUitvoer"; }
    void EditAddDijkring() override { calls << "EditAddDijkring"; }
    void RefreshLocatiesAndLabelsOpMap() override { ++redraws; }

    QStringList Enabled() const
    {
        QStringList names;
        for (auto command = commands.cbegin(); command != commands.cend(); ++command)
            if (command.value())
                names << command.key();
        return names;
    }

    QMap<QString, bool> commands;
    QMap<int, bool> buttons;
    QStringList calls;
    int redraws = 0;
};

class FakeLogViewer : public LogViewer {
public:
    void ShowLogFile(const QString& path) override { shown = path; }
    void ClearLogWindow() override { shown.clear(); }
    QString shown;
};

/// The pane with the example database, a work folder with a few calculations,
/// and a window around it.
class LocatiesTest : public WerkmapTest {
protected:
    LocatiesTest()
    {
        namespace fs = std::filesystem;
        fs::copy_file(fs::path(PROJECT_DATA_FOLDER) / "Locaties.ini",
                      folder / "data" / "Locaties.ini");
        MaakBerekening("som", "Plas-01", "Gras 1op3");
        MaakBerekening("som", "Plas-02", "Gras 1op3");
        MaakBerekening("rest", "Plas-01", "");
        MaakMapVanRing("Ring Oost", "Overloop");
        Maak();
        Bouw();
    }
    ~LocatiesTest() override { form.reset(); }

    void Maak()
    {
        form = std::make_unique<frmLocaties>(
            frmLocaties::Omgeving{db, navTree, selection, host, logViewer});
        form->resize(320, 600);
        tree = form->findChild<QTreeWidget*>("treLocaties");
        filter = form->findChild<QLineEdit*>("txtFilter");
        form->show();
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    }
    /// As the main window does after opening a database.
    void Bouw()
    {
        form->CreateRvwBrowserTree("boezem", Locaties());
        form->ApplyNode(Node("ROOTLOCATIES"));
    }
    QTreeWidgetItem* Node(const QString& key)
    {
        auto* node = form->GetNodeByKey(key);
        EXPECT_NE(node, nullptr) << key.toStdString();
        return node;
    }
    QPoint PlaceOf(const QString& key)
    {
        auto* node = Node(key);
        tree->scrollToItem(node);
        return tree->visualItemRect(node).center();
    }
    void Klik(const QString& key, Qt::MouseButton button = Qt::LeftButton)
    {
        const QPoint place = PlaceOf(key);
        QTest::mouseClick(tree->viewport(), button, {}, place);
    }
    void Dubbelklik(const QString& key)
    {
        const QPoint place = PlaceOf(key);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseRelease(tree->viewport(), Qt::LeftButton, {}, place);
    }
    void Toets(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        tree->setFocus();
        QTest::keyClick(tree, key, modifiers);
        QCoreApplication::processEvents();
    }
    /// The open label edit, or nothing.
    QLineEdit* Editor()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return tree->viewport()->findChild<QLineEdit*>();
    }
    /// Types over the label that is being edited.
    void Typ(const QString& text, Qt::Key end = Qt::Key_Return)
    {
        auto* editor = Editor();
        ASSERT_NE(editor, nullptr);
        editor->selectAll();
        editor->del();
        QTest::keyClicks(editor, text);
        QTest::keyClick(editor, end);
        Verwerk();
    }
    /// An edit ends in steps, each of which waits for the one before.
    static void Verwerk()
    {
        for (int step = 0; step < 3; ++step)
            QCoreApplication::processEvents();
    }
    /// From a click to the end of a rename.
    void Hernoem(const QString& key, const QString& text)
    {
        Klik(key);
        Toets(Qt::Key_F2);
        Typ(text);
    }
    QString CurrentKey() const { return form->CurrentNodeKey(); }

    NavTree navTree{db};
    MapSelection selection;
    FakeHost host;
    FakeLogViewer logViewer;
    std::unique_ptr<frmLocaties> form;
    QTreeWidget* tree = nullptr;
    QLineEdit* filter = nullptr;
};
