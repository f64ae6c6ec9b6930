// Deleting, renaming, copying and linking from the tree.
#include "LocatiesFixture.h"

#include "frame/Texts.h"

#include <QClipboard>

namespace {

class OpdrachtenTest : public LocatiesTest {
protected:
    BoxReader boxes;
};

const QString kRest = "ROOTLOCATIES\\Plas-01\\berekeningen\\rest";
const QString kSom = "ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3";

// Deleting calculations

TEST_F(OpdrachtenTest, DeletingACalculationAsksOnceAndMovesOn)
{
    boxes.Press("Ja");
    Klik(kRest);
    Toets(Qt::Key_Delete);
    EXPECT_EQ(boxes.Texts(), QStringList{QuestionText(2, {"rest"})});
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-01/berekeningen/rest")));
    EXPECT_FALSE(form->NodeExists(kRest));
    EXPECT_EQ(CurrentKey(), kSom) << "the next node";
    EXPECT_EQ(logViewer.shown, InWerkmap("Plas-01/berekeningen/som_Gras 1op3/uitvoer.log"));
    EXPECT_FALSE(db.BerekeningExists("rest"));
    EXPECT_EQ(tree->currentItem(), form->CurrentNode());
}

TEST_F(OpdrachtenTest, NoKeepsEverything)
{
    for (const QString& key :
         {kRest, QString("ROOTBEREKENINGEN\\som"), QString("ROOTDIJKRINGEN\\Ring Oost"),
          QString("ROOTDIJKRINGEN\\Ring Oost\\berekeningen\\Overloop"),
          QString("ROOTPROFIELEN\\Strekdam")}) {
        Klik(key);
        Toets(Qt::Key_X, Qt::ControlModifier); // "no" is the default
        EXPECT_TRUE(form->NodeExists(key));
        EXPECT_EQ(CurrentKey(), key);
    }
    EXPECT_EQ(boxes.Texts(),
              (QStringList{QuestionText(2, {"rest"}), QuestionText(2, {"som"}),
                           QuestionText(4, {"Ring Oost"}), QuestionText(5, {"Overloop"}),
                           QuestionText(100, {"Strekdam"})}));
    EXPECT_TRUE(MapBestaat(InWerkmap("Dijkringen/Ring Oost/berekeningen/Overloop")));
    EXPECT_TRUE(db.BerekeningExists("rest"));
}

TEST_F(OpdrachtenTest, TheLastCalculationOfALocationTakesItsFolderNodeAlong)
{
    boxes.Press("Ja");
    Klik("ROOTLOCATIES\\Plas-02\\berekeningen\\som_Gras 1op3");
    form->BerekeningDelete();
    EXPECT_FALSE(form->NodeExists("ROOTLOCATIES\\Plas-02\\berekeningen"));
    EXPECT_EQ(CurrentKey(), "ROOTLOCATIES\\Plas-02");
}

TEST_F(OpdrachtenTest, DeletingAtTheRootDeletesAtAllLocations)
{
    boxes.Press("Ja");
    Klik("ROOTBEREKENINGEN\\som");
    Toets(Qt::Key_Delete);
    EXPECT_EQ(boxes.Texts(), QStringList{QuestionText(2, {"som"})});
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-01/berekeningen/som_Gras 1op3")));
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-02/berekeningen/som_Gras 1op3")));
    EXPECT_EQ(CurrentKey(), "ROOTBEREKENINGEN\\rest");
    EXPECT_FALSE(db.BerekeningExists("som"));
}

TEST_F(OpdrachtenTest, ACalculationOfARingAsksItsOwnQuestion)
{
    boxes.Press("Ja");
    Klik("ROOTDIJKRINGEN\\Ring Oost\\berekeningen\\Overloop");
    Toets(Qt::Key_Delete);
    EXPECT_EQ(boxes.Texts(), QStringList{QuestionText(5, {"Overloop"})});
    EXPECT_FALSE(MapBestaat(InWerkmap("Dijkringen/Ring Oost/berekeningen/Overloop")));
    EXPECT_EQ(CurrentKey(), "ROOTDIJKRINGEN\\Ring Oost");
}

TEST_F(OpdrachtenTest, NodesThatCannotBeDeletedOrRenamedIgnoreTheKeys)
{
    for (const char* key :
         {"ROOTLOCATIES", "ROOTLOCATIES\\Plas-01", "ROOTLOCATIES\\Plas-01\\profielen",
          "ROOTLOCATIES\\Plas-01\\berekeningen", "ROOTDIJKRINGEN", "ROOTPROFIELEN",
          "ROOTBEREKENINGEN", "ROOTDIJKRINGEN\\Ring Oost\\berekeningen"}) {
        Klik(key);
        Toets(Qt::Key_Delete);
        Toets(Qt::Key_X, Qt::ControlModifier);
        Toets(Qt::Key_F2);
        EXPECT_EQ(Editor(), nullptr) << key;
        EXPECT_TRUE(form->NodeExists(key));
    }
    Klik("ROOTPROFIELEN\\Strekdam");
    Toets(Qt::Key_F2);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_TRUE(boxes.Texts().isEmpty());
}

TEST_F(OpdrachtenTest, ACommandWithoutItsNodeDoesNothing)
{
    form->SetCurrentNodeNothing();
    form->ProfielDelete();
    form->BerekeningDelete();
    form->BerekeningRename();
    form->DijkringCopy();
    form->DijkringPaste();
    form->DijkringDelete();
    form->DijkringRename();
    form->BerekeningNodeDelete("ROOTLOCATIES\\Plas-01\\berekeningen\\onbekend");
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_EQ(Editor(), nullptr);
}

TEST_F(OpdrachtenTest, ANodeIsTakenOutBeforeItsCalculationIsReplaced)
{
    Klik(kSom);
    form->BerekeningNodeDelete(kSom);
    EXPECT_TRUE(form->NodeExists(kSom)) << "the current node stays";
    form->BerekeningNodeDelete("ROOTLOCATIES\\Plas-02\\Berekeningen\\som_gras 1op3");
    EXPECT_FALSE(form->NodeExists("ROOTLOCATIES\\Plas-02\\berekeningen"));
    EXPECT_EQ(CurrentKey(), "ROOTLOCATIES\\Plas-02");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-02/berekeningen/som_Gras 1op3"))) << "only the node";

    auto* node = form->AddBerekening2Locatie(Node("ROOTLOCATIES\\Plas-02"), "som_gras 1op3");
    form->AddBerekening2Root("som_gras 1op3");
    form->ResetCurrentNode();
    form->ApplyNode(node);
    EXPECT_EQ(CurrentKey(), "ROOTLOCATIES\\Plas-02\\berekeningen\\som_gras 1op3");
}

TEST_F(OpdrachtenTest, AFolderOfAnotherCaseIsShownRenamedAndDeleted)
{
    QDir().rename(InWerkmap("Plas-01"), InWerkmap("PLAS-01"));
    QDir().rename(InWerkmap("PLAS-01/berekeningen"), InWerkmap("PLAS-01/Berekeningen"));
    Bouw();
    Klik(kRest);
    EXPECT_TRUE(QFileInfo::exists(InWerkmap("PLAS-01/Berekeningen/rest/uitvoer.log")));
    EXPECT_FALSE(logViewer.shown.isEmpty());
    Hernoem(kRest, "anders");
    EXPECT_TRUE(boxes.Texts().isEmpty()) << boxes.Texts().join('|').toStdString();
    EXPECT_TRUE(MapBestaat(InWerkmap("PLAS-01/Berekeningen/anders")));
    boxes.Press("Ja");
    Toets(Qt::Key_Delete);
    EXPECT_FALSE(MapBestaat(InWerkmap("PLAS-01/Berekeningen/anders")));
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-01"))) << "no second folder was made";
}

TEST_F(OpdrachtenTest, AFolderRenamedBehindOurBackDoesNotStopTheNode)
{
    Klik(kRest);
    QDir().rename(InWerkmap("Plas-01/berekeningen/rest"), InWerkmap("Plas-01/berekeningen/weg"));
    Klik(kRest);
    EXPECT_EQ(logViewer.shown, "");
    boxes.Press("Ja");
    Toets(Qt::Key_Delete);
    EXPECT_FALSE(form->NodeExists(kRest));
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/weg"))) << "nobody's to delete";
}

// Renaming

TEST_F(OpdrachtenTest, ACalculationIsRenamedAtTheRoot)
{
    Hernoem("ROOTBEREKENINGEN\\som", "Nieuw");
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_EQ(CurrentKey(), "ROOTBEREKENINGEN\\Nieuw");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/Nieuw_Gras 1op3")));
    EXPECT_TRUE(form->NodeExists("ROOTLOCATIES\\Plas-02\\berekeningen\\Nieuw_Gras 1op3"));
    EXPECT_TRUE(db.BerekeningExists("Nieuw"));
}

TEST_F(OpdrachtenTest, ACalculationIsRenamedAtItsLocation)
{
    Klik(kSom);
    form->BerekeningRename();
    Typ("anders");
    EXPECT_EQ(CurrentKey(), "ROOTLOCATIES\\Plas-01\\berekeningen\\anders");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/anders")));
    EXPECT_EQ(logViewer.shown, InWerkmap("Plas-01/berekeningen/anders/uitvoer.log"));
    EXPECT_TRUE(db.BerekeningExists("som"));
    EXPECT_TRUE(form->NodeExists("ROOTBEREKENINGEN\\anders"));
}

TEST_F(OpdrachtenTest, RefusedNamesLeaveTheLabelAsItWas)
{
    Hernoem("ROOTBEREKENINGEN\\som", "som");
    Hernoem("ROOTBEREKENINGEN\\som", "rest");
    Hernoem("ROOTBEREKENINGEN\\som", "a.b");
    Hernoem("ROOTDIJKRINGEN\\Ring Oost", QString(51, 'x'));
    Hernoem("ROOTDIJKRINGEN\\Ring Oost", "wat?");
    Hernoem("ROOTDIJKRINGEN\\Ring Oost", "Ring Vaart");
    EXPECT_EQ(boxes.Texts(), (QStringList{FoutText(102), FoutText(102), FoutText(101),
                                          FoutText(21, {"50"}), FoutText(22), FoutText(23)}));
    EXPECT_EQ(Node("ROOTBEREKENINGEN\\som")->text(0), "som");
    EXPECT_EQ(Node("ROOTDIJKRINGEN\\Ring Oost")->text(0), "Ring Oost");
}

TEST_F(OpdrachtenTest, AnEmptyTextAndEscapeChangeNothing)
{
    Hernoem("ROOTBEREKENINGEN\\som", "");
    Hernoem("ROOTBEREKENINGEN\\som", "   ");
    Klik("ROOTDIJKRINGEN\\Ring Oost");
    Toets(Qt::Key_F2);
    Typ("anders", Qt::Key_Escape);
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_EQ(Node("ROOTBEREKENINGEN\\som")->text(0), "som");
    EXPECT_TRUE(db.DijkringExists("Ring Oost"));
    EXPECT_EQ(Editor(), nullptr);
}

TEST_F(OpdrachtenTest, LeavingAnUntouchedLabelIsNoRename)
{
    Klik("ROOTBEREKENINGEN\\som");
    Toets(Qt::Key_F2);
    ASSERT_NE(Editor(), nullptr);
    filter->setFocus();
    QTest::qWait(10);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_TRUE(boxes.Texts().isEmpty());
}

TEST_F(OpdrachtenTest, ACharacterThatFilesCannotHoldIsNotTaken)
{
    Klik("ROOTDIJKRINGEN\\Ring Vaart");
    Toets(Qt::Key_F2);
    ASSERT_NE(Editor(), nullptr);
    QApplication::clipboard()->setText(QString::fromUtf8("K\xD0\x9A"
                                                         "ad\xC3\xA9")); // Cyrillic, accent
    Editor()->selectAll();
    QTest::keyClick(Editor(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Editor()->text(), QString::fromUtf8("Kad\xC3\xA9"));
    QTest::keyClick(Editor(), Qt::Key_Return);
    Verwerk();
    EXPECT_EQ(Node(QString::fromUtf8("ROOTDIJKRINGEN\\kad\xC3\xA9"))->text(0),
              QString::fromUtf8("Kad\xC3\xA9"));
}

TEST_F(OpdrachtenTest, ARingIsRenamedFromAnyNodeBelowIt)
{
    Klik("ROOTDIJKRINGEN\\Ring Oost\\berekeningen\\Overloop");
    form->DijkringRename();
    Typ("Ring Zuid");
    EXPECT_EQ(CurrentKey(), "ROOTDIJKRINGEN\\ring zuid\\berekeningen\\Overloop");
    EXPECT_TRUE(MapBestaat(InWerkmap("Dijkringen/Ring Zuid/berekeningen/Overloop")));
    EXPECT_TRUE(db.DijkringExists("Ring Zuid"));
    EXPECT_TRUE(Node("ROOTDIJKRINGEN\\ring zuid")->font(0).bold());
    Klik("ROOTLOCATIES");
    EXPECT_FALSE(Node("ROOTDIJKRINGEN\\ring zuid")->font(0).bold());
}

// Rings

TEST_F(OpdrachtenTest, ACopiedRingIsPastedUnderTheFirstFreeName)
{
    Klik("ROOTDIJKRINGEN\\Ring Oost");
    form->DijkringCopy();
    EXPECT_TRUE(host.commands["mnuDijkringPaste"]);
    form->DijkringPaste();
    EXPECT_EQ(CurrentKey(), "ROOTDIJKRINGEN\\Ring Oost_1");
    form->DijkringPaste();
    EXPECT_EQ(CurrentKey(), "ROOTDIJKRINGEN\\Ring Oost_2") << "the copied ring is remembered";
    EXPECT_TRUE(db.DijkringExists("Ring Oost_2"));
}

TEST_F(OpdrachtenTest, ACopiedRingThatIsGoneIsForgotten)
{
    Klik("ROOTDIJKRINGEN\\Ring Oost");
    form->DijkringCopy();
    boxes.Press("Ja");
    Toets(Qt::Key_Delete);
    EXPECT_EQ(boxes.Texts(), QStringList{QuestionText(4, {"Ring Oost"})});
    EXPECT_EQ(CurrentKey(), "ROOTDIJKRINGEN\\Ring Vaart");
    EXPECT_FALSE(MapBestaat(InWerkmap("Dijkringen/Ring Oost")));
    form->DijkringPaste();
    EXPECT_EQ(Node("ROOTDIJKRINGEN")->childCount(), 1);
    Klik("ROOTDIJKRINGEN\\Ring Vaart");
    form->DijkringDelete();
    boxes.Press("Ja");
    form->DijkringDelete();
    EXPECT_EQ(CurrentKey(), "ROOTDIJKRINGEN") << "behind the last ring comes the root";
}

TEST_F(OpdrachtenTest, ARenamedRingIsStillTheCopiedOne)
{
    Klik("ROOTDIJKRINGEN\\Ring Oost");
    form->DijkringCopy();
    Hernoem("ROOTDIJKRINGEN\\Ring Oost", "Ring Zuid");
    form->DijkringPaste();
    EXPECT_EQ(CurrentKey(), "ROOTDIJKRINGEN\\Ring Zuid_1");
}

// Profiles

TEST_F(OpdrachtenTest, AProfileInARingIsNeverDeletedNorUnlinked)
{
    for (const char* key :
         {"ROOTPROFIELEN\\Gras 1op3", "ROOTLOCATIES\\Plas-01\\profielen\\Gras 1op3"}) {
        Klik(key);
        Toets(Qt::Key_Delete);
        EXPECT_TRUE(form->NodeExists(key));
    }
    const QString message = MessageText(2003, {"Gras 1op3"});
    EXPECT_EQ(boxes.Texts(), (QStringList{message, message}));
}

TEST_F(OpdrachtenTest, AProfileOfALocationIsUnlinkedWithoutAQuestion)
{
    Klik("ROOTLOCATIES\\Plas-02\\profielen\\Voorland 1op4");
    const int redraws = host.redraws;
    Toets(Qt::Key_Delete);
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_FALSE(form->NodeExists("ROOTLOCATIES\\Plas-02\\profielen\\Voorland 1op4"));
    EXPECT_TRUE(form->NodeExists("ROOTPROFIELEN\\Voorland 1op4"));
    EXPECT_EQ(CurrentKey(), "ROOTLOCATIES\\Plas-02\\profielen\\Gras 1op3");
    EXPECT_GT(host.redraws, redraws) << "the location's mark may have changed";
    Klik("ROOTLOCATIES\\Vaart-1\\profielen\\Damwand kaal");
    form->ProfielDelete();
    EXPECT_FALSE(form->NodeExists("ROOTLOCATIES\\Vaart-1\\profielen"));
    EXPECT_EQ(CurrentKey(), "ROOTLOCATIES\\Vaart-1");
}

TEST_F(OpdrachtenTest, DeletingAProfileAsksByItsUse)
{
    Klik("ROOTPROFIELEN\\Damwand kaal");
    boxes.Press("Ja");
    Toets(Qt::Key_Delete);
    EXPECT_FALSE(form->NodeExists("ROOTLOCATIES\\Vaart-1\\profielen"));
    EXPECT_EQ(db.GetProfiel_ID("Damwand kaal"), kNietBekend);

    db.DeleteProfielFromLocation(db.GetLocatie_ID("Plas-04"), db.GetProfiel_ID("Strekdam"));
    db.DeleteProfielFromLocation(db.GetLocatie_ID("Plas-08"), db.GetProfiel_ID("Strekdam"));
    db.DeleteProfielFromLocation(db.GetLocatie_ID("Plas-12"), db.GetProfiel_ID("Strekdam"));
    Klik("ROOTPROFIELEN\\Strekdam");
    boxes.Press("Ja");
    form->ProfielDelete();
    EXPECT_FALSE(form->NodeExists("ROOTPROFIELEN\\Strekdam"));
    EXPECT_EQ(boxes.Texts(),
              (QStringList{QuestionText(100, {"Damwand kaal"}), QuestionText(101, {"Strekdam"})}));
}

TEST_F(OpdrachtenTest, AProfileIsAssignedToTheSelection)
{
    selection.AddALocation2Selection("Plas-01");
    selection.AddALocation2Selection("Vaart-1");
    form->ProfielAssign2SelectedLocations("Strekdam");
    EXPECT_TRUE(form->NodeExists("ROOTLOCATIES\\Plas-01\\profielen\\Strekdam"));
    EXPECT_TRUE(form->NodeExists("ROOTLOCATIES\\Vaart-1\\profielen\\Strekdam"));
    EXPECT_THROW(form->ProfielAssign2SelectedLocations("Strekdam"), std::exception)
        << "the engine refuses a link that is there";
}

} // namespace
