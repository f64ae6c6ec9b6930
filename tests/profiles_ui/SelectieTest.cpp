// The selection of locations by mouse and keyboard, and what can be done with it.
#include "LocatiesFixture.h"

#include "frame/Busy.h"
#include "frame/Texts.h"

namespace {

class SelectieTest : public LocatiesTest {
protected:
    void KlikMet(const QString& key, Qt::KeyboardModifiers modifiers)
    {
        const QPoint place = PlaceOf(key);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, modifiers, place);
    }
    static QString Plas(int number)
    {
        return QString("ROOTLOCATIES\\Plas-%1").arg(number, 2, 10, QChar('0'));
    }
    QStringList Gekleurd() const
    {
        QStringList names;
        const auto* root = form->LocatiesNode();
        for (int i = 0; root && i < root->childCount(); ++i)
            if (MapSelection::IsPreselected(root->child(i)))
                names << root->child(i)->text(0);
        return names;
    }
    /// The picture of a node's row.
    QImage Row(const QString& key)
    {
        const QPoint place = PlaceOf(key);
        QCoreApplication::processEvents();
        QRect rect = tree->visualItemRect(tree->itemAt(place));
        return tree->viewport()->grab(rect).toImage();
    }
    static bool Contains(const QImage& image, const QColor& colour)
    {
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y) == colour)
                    return true;
        return false;
    }
    BoxReader boxes;
};

TEST_F(SelectieTest, ControlClicksBuildASelectionThatTreeMapAndCommandsFollow)
{
    Klik(Plas(1));
    KlikMet(Plas(3), Qt::ControlModifier);
    KlikMet(Plas(5), Qt::ControlModifier);
    EXPECT_EQ(selection.Namen(), (QStringList{"Plas-01", "Plas-03", "Plas-05"}));
    EXPECT_EQ(Gekleurd(), selection.Namen());
    EXPECT_EQ(CurrentKey(), Plas(5)) << "a click is a click";
    EXPECT_TRUE(host.commands["mnuBerekeningStart"]);
    EXPECT_TRUE(host.commands["mnuLocatieDelete"]);
    EXPECT_EQ(host.redraws, 3);

    for (const int number : {1, 3, 5})
        KlikMet(Plas(number), Qt::ControlModifier);
    EXPECT_TRUE(Gekleurd().isEmpty());
    EXPECT_FALSE(host.commands["mnuBerekeningStart"]);
    EXPECT_FALSE(host.commands["mnuLocatieDelete"]);
    EXPECT_EQ(tree->currentItem(), Node(Plas(5)));
    EXPECT_TRUE(tree->currentItem()->isSelected()) << "Control leaves the highlight";
}

TEST_F(SelectieTest, AShiftClickSelectsARange)
{
    Klik(Plas(2));
    KlikMet(Plas(4), Qt::ShiftModifier);
    EXPECT_EQ(Gekleurd(), (QStringList{"Plas-02", "Plas-03", "Plas-04"}));
    Klik(Plas(7));
    EXPECT_EQ(Gekleurd(), QStringList{"Plas-07"}) << "a plain click selects one";
}

TEST_F(SelectieTest, ADoubleClickWithControlTogglesOnce)
{
    const QPoint place = PlaceOf(Plas(3));
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::ControlModifier, place);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::ControlModifier, place);
    EXPECT_EQ(selection.Namen(), QStringList{"Plas-03"});
}

TEST_F(SelectieTest, TheKeyboardDoesTheSame)
{
    Klik("ROOTLOCATIES");
    Toets(Qt::Key_Down);
    EXPECT_FALSE(selection.HasSelectedNodes()) << "moving is not selecting";
    Toets(Qt::Key_Down, Qt::ShiftModifier);
    Toets(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(selection.Namen(), (QStringList{"Plas-01", "Plas-02", "Plas-03"}));
    EXPECT_EQ(CurrentKey(), Plas(3));
    Toets(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(selection.Namen(), (QStringList{"Plas-01", "Plas-02"}));
    Toets(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(selection.Namen(), QStringList{"Plas-01"});
    Toets(Qt::Key_Space);
    EXPECT_EQ(selection.Namen(), QStringList{"Plas-02"});
    Toets(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selection.AantalLocaties(), 24);
    EXPECT_EQ(Gekleurd().size(), 24);
}

TEST_F(SelectieTest, AllThatTheFilterShowsIsSelected)
{
    filter->setText("vaart");
    Toets(Qt::Key_A, Qt::ControlModifier);
    EXPECT_FALSE(selection.Namen().isEmpty());
    for (const QString& naam : selection.Namen())
        EXPECT_TRUE(naam.startsWith("Vaart")) << naam.toStdString();
    const QStringList vaarten = selection.Namen();
    filter->clear();
    EXPECT_EQ(Gekleurd(), vaarten) << "the selection stays";
}

TEST_F(SelectieTest, OtherNodesLeaveTheSelection)
{
    Klik(Plas(1));
    KlikMet(Plas(2), Qt::ControlModifier);
    for (const char* key : {"ROOTPROFIELEN\\Strekdam", "ROOTDIJKRINGEN\\Ring Oost",
                            "ROOTLOCATIES\\Plas-01\\profielen"})
        for (const auto modifiers : {Qt::ControlModifier, Qt::ShiftModifier})
            KlikMet(key, modifiers);
    EXPECT_EQ(selection.Namen(), (QStringList{"Plas-01", "Plas-02"}));
}

TEST_F(SelectieTest, TheColourOfASelectedLocationShowsOnTheCurrentOneToo)
{
    const QColor yellow(255, 255, 0);
    for (const bool dark : {false, true}) {
        SCOPED_TRACE(dark);
        QPalette palette = tree->palette();
        palette.setColor(QPalette::Base, dark ? QColor(30, 30, 30) : QColor(Qt::white));
        palette.setColor(QPalette::Text, dark ? QColor(Qt::white) : QColor(Qt::black));
        tree->setPalette(palette);
        Klik(Plas(1));
        KlikMet(Plas(2), Qt::ControlModifier);
        EXPECT_TRUE(Contains(Row(Plas(1)), yellow));
        EXPECT_TRUE(Contains(Row(Plas(2)), yellow)) << "current and selected";
        EXPECT_TRUE(Contains(Row(Plas(2)), palette.color(QPalette::Highlight)));
        EXPECT_FALSE(Contains(Row(Plas(3)), yellow));
        KlikMet(Plas(2), Qt::ControlModifier);
        EXPECT_FALSE(Contains(Row(Plas(2)), yellow)) << "current and not selected";
    }
}

// Deleting the selection

TEST_F(SelectieTest, TheSelectionIsDeletedAfterOneQuestion)
{
    Klik(Plas(1));
    KlikMet(Plas(2), Qt::ControlModifier);
    boxes.Press("Ja");
    EXPECT_TRUE(form->DeleteLocaties());
    EXPECT_EQ(boxes.Texts(), QStringList{QuestionText(3)});
    EXPECT_EQ(boxes.Texts(), QStringList{"De geselecteerde locaties verwijderen?"});
    EXPECT_FALSE(form->NodeExists(Plas(1)));
    EXPECT_FALSE(form->NodeExists(Plas(2)));
    EXPECT_FALSE(form->NodeExists("ROOTBEREKENINGEN\\som"));
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-01")));
    EXPECT_EQ(db.GetLocatie_ID("Plas-02"), kNietBekend);
    EXPECT_FALSE(selection.HasSelectedNodes());
    EXPECT_EQ(CurrentKey(), Plas(3)) << "the next location";
    EXPECT_FALSE(host.commands["mnuLocatieDelete"]);
    EXPECT_FALSE(host.commands["mnuBerekeningStart"]);
    EXPECT_EQ(BusyCount(), 0);
}

TEST_F(SelectieTest, NoKeepsAllLocations)
{
    Klik(Plas(1));
    EXPECT_FALSE(form->DeleteLocaties()); // "no" is the default
    EXPECT_TRUE(form->NodeExists(Plas(1)));
    EXPECT_EQ(selection.Namen(), QStringList{"Plas-01"});
    EXPECT_EQ(boxes.Texts().size(), 1);
}

TEST_F(SelectieTest, WithoutASelectionNothingIsAsked)
{
    Klik("ROOTLOCATIES");
    EXPECT_FALSE(form->DeleteLocaties());
    EXPECT_TRUE(boxes.Texts().isEmpty());
}

TEST_F(SelectieTest, NoHourglassStandsOverAQuestion)
{
    int busyAtQuestion = -1;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        if (QApplication::activeModalWidget() && busyAtQuestion < 0)
            busyAtQuestion = BusyCount();
    });
    look.start(0);
    Klik(Plas(1));
    form->DeleteLocaties();
    EXPECT_EQ(busyAtQuestion, 0);
    for (const char* key : {"ROOTPROFIELEN\\Strekdam", "ROOTBEREKENINGEN\\som"}) {
        busyAtQuestion = -1;
        Klik(key);
        Toets(Qt::Key_Delete);
        EXPECT_EQ(busyAtQuestion, 0) << key;
    }
}

TEST_F(SelectieTest, ANodeElsewhereStaysCurrent)
{
    Klik(Plas(1));
    Klik("ROOTPROFIELEN\\Strekdam");
    boxes.Press("Ja");
    EXPECT_TRUE(form->DeleteLocaties());
    EXPECT_EQ(CurrentKey(), "ROOTPROFIELEN\\Strekdam");
    EXPECT_FALSE(host.commands["mnuProfielAssign2SelectedLocations"]);
}

TEST_F(SelectieTest, ACalculationThatGoesAlongGivesWayToItsRoot)
{
    Klik(Plas(1));
    Klik("ROOTBEREKENINGEN\\rest");
    boxes.Press("Ja");
    EXPECT_TRUE(form->DeleteLocaties());
    EXPECT_EQ(CurrentKey(), "ROOTBEREKENINGEN");
}

TEST_F(SelectieTest, BehindTheLastLocationComesTheOneBeforeAndThenTheRoot)
{
    const auto* root = form->LocatiesNode();
    const QString last = NavTree::Key(root->child(root->childCount() - 1));
    const QString before = NavTree::Key(root->child(root->childCount() - 2));
    Klik(last);
    boxes.Press("Ja");
    form->DeleteLocaties();
    EXPECT_EQ(CurrentKey(), before);
    Toets(Qt::Key_A, Qt::ControlModifier);
    boxes.Press("Ja");
    form->DeleteLocaties();
    EXPECT_EQ(CurrentKey(), "ROOTLOCATIES");
    EXPECT_EQ(root->childCount(), 0);
}

TEST_F(SelectieTest, AFailingDeleteKeepsSelectionAndCurrentNode)
{
    db.CloseDB();
    Voeruit(db.fileName(), {"DROP TABLE Scheefstand"});
    Klik(Plas(1));
    KlikMet(Plas(2), Qt::ControlModifier);
    boxes.Press("Ja");
    EXPECT_EQ(FoutVan([&] { form->DeleteLocaties(); }), 1520);
    EXPECT_EQ(Gekleurd(), (QStringList{"Plas-01", "Plas-02"}));
    EXPECT_EQ(CurrentKey(), Plas(2));
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/rest")));
    EXPECT_EQ(BusyCount(), 0);
}

} // namespace
