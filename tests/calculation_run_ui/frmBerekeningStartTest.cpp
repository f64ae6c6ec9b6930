#include "calculation/ui/run/frmBerekeningStart.h"

#include "RunFixture.h"
#include "calculation/ui/run/frmBerekeningInstellingen.h"
#include "frame/ui/FileBox.h"
#include "frame/ui/FileDialogs.h"
#include "frame/ui/Grid.h"
#include "frame/ui/NumBox.h"
#include "navigation/MapSelection.h"

#include <QCheckBox>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

class frmBerekeningStartTest : public RunTest {
protected:
    frmBerekeningStartTest()
    {
        instellingen.SetFactory([] { return std::make_shared<frmBerekeningInstellingen>(); });
    }
    ~frmBerekeningStartTest() override { SetFileChooser({}); }

    void Mechanisme(int index)
    {
        ZetInstelling("Faalmechanisme", "INDEXFAALMECHANISME", QString::number(index));
    }
    frmBerekeningStart& Open()
    {
        form = std::make_unique<frmBerekeningStart>(
            frmBerekeningStart::Omgeving{db, locaties, instellingen});
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
        grid = Find<Grid>(*form, "vsfLocProf");
        return *form;
    }
    int Row(const QString& locatie)
    {
        for (int row = 0; row < grid->rowCount(); ++row)
            if (grid->Text(row, 0) == locatie)
                return row;
        ADD_FAILURE() << locatie.toStdString();
        return 0;
    }
    void ClickCell(int row, int column)
    {
        grid->scrollToItem(grid->item(row, column));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualItemRect(grid->item(row, column)).center());
    }
    void Name(const QString& naam) { Find<NumBox>(*form, "nbrBerekeningNaam")->setText(naam); }
    bool Enabled(const char* name) { return Find<QWidget>(*form, name)->isEnabled(); }
    QCheckBox* Overzicht() { return Find<QCheckBox>(*form, "chkOverzichtNm"); }
    FileBox* OverzichtNaam() { return Find<FileBox>(*form, "fsbOverzichtNm"); }
    /// Everything set, with an overview file.
    void Invullen(const QString& overzicht)
    {
        Open();
        Name("Ontwerp");
        ClickCell(0, 2);
        Overzicht()->setChecked(true);
        OverzichtNaam()->setText(overzicht);
    }
    QMenu* OpenMenu()
    {
        auto* menu = form->findChild<QMenu*>("mnuSelect");
        EXPECT_TRUE(QTest::qWaitFor([menu] { return menu->isVisible(); }, 1000));
        return menu;
    }

    Global<frmBerekeningInstellingen> instellingen;
    std::unique_ptr<frmBerekeningStart> form;
    Grid* grid = nullptr;
};

} // namespace

TEST_F(frmBerekeningStartTest, OverflowShowsEveryLocationOnce)
{
    Mechanisme(0);
    Open();
    ASSERT_EQ(grid->rowCount(), 24);
    for (int row = 0; row < 24; ++row) {
        EXPECT_EQ(grid->Text(row, 1), "N.V.T.");
        EXPECT_FALSE(grid->RowTextColour(row).isValid());
    }
    Name("Ontwerp");
    ClickCell(1, 2);
    Click(*form, "cmdOK");
    const auto selectie = form->GetSelection(Pad("data/Instellingen.ini"));
    EXPECT_EQ(selectie.locaties, (QStringList{"Plas-02"}));
    EXPECT_EQ(selectie.profielen, (QStringList{""}));
    EXPECT_EQ(selectie.debieten, (QStringList{""}));
}

TEST_F(frmBerekeningStartTest, OvertoppingShowsARowForEachProfile)
{
    Open();
    const int row = Row("Kleine-3");
    EXPECT_EQ(grid->Text(row, 1), "Damwand neus");
    EXPECT_EQ(grid->Text(row + 1, 0), "Kleine-3");
    EXPECT_EQ(grid->Text(row + 1, 1), "Gras 1op3");
    EXPECT_EQ(grid->horizontalHeaderItem(2)->text(), "Berekenen");
    EXPECT_EQ(grid->columnWidth(0), 133) << "2000 twips";
    EXPECT_EQ(grid->columnWidth(1), 300);
}

TEST_F(frmBerekeningStartTest, ALocationWithoutAUsableProfileIsRedAndCannotBeChecked)
{
    Mechanisme(2);
    Open();
    const int row = Row("Vaart-1");
    EXPECT_EQ(grid->Text(row, 1), "Geen geschikte profielen");
    EXPECT_EQ(grid->RowTextColour(row), QColor(255, 0, 0));
    ClickCell(row, 2);
    EXPECT_FALSE(grid->IsChecked(row, 2));
    grid->setCurrentCell(row, 2);
    QTest::keyClick(grid, Qt::Key_Space);
    EXPECT_FALSE(grid->IsChecked(row, 2));
    EXPECT_EQ(form->NSelected(), 0);
    ClickCell(row - 1, 2);
    EXPECT_TRUE(grid->IsChecked(row - 1, 2)) << "its neighbour can";
}

TEST_F(frmBerekeningStartTest, AnIncompleteLocationIsRed)
{
    Voeruit("UPDATE Locatie SET kwaliteitskenmerk=0 WHERE OMSCHRIJVING='Plas-01'");
    Open();
    EXPECT_EQ(grid->Text(0, 1), "Onvoldoende gegevens");
    EXPECT_EQ(grid->RowTextColour(0), QColor(255, 0, 0));
}

TEST_F(frmBerekeningStartTest, SelectedLocationsBeginCheckedAndInView)
{
    MapSelection selectie;
    selectie.AddALocation2Selection("Vaart-2");
    selectie.AddALocation2Selection("Vaart-3");
    selectie.ColorSelectionInTreeView(boom);
    Open();
    EXPECT_EQ(form->NSelected(), 2);
    const int row = Row("Vaart-2");
    EXPECT_TRUE(grid->IsChecked(row, 2));
    EXPECT_TRUE(grid->viewport()->rect().contains(grid->visualItemRect(grid->item(row, 0))));
}

TEST_F(frmBerekeningStartTest, OnlyTheCheckColumnCanBeEdited)
{
    Open();
    EXPECT_FALSE(grid->MayEdit(0, 0));
    EXPECT_FALSE(grid->MayEdit(0, 1));
    EXPECT_TRUE(grid->MayEdit(0, 2));
}

TEST_F(frmBerekeningStartTest, SelectAllLeavesRedRowsAloneWhenAProfileIsNeeded)
{
    Mechanisme(2);
    Open();
    int rood = 0;
    for (int row = 0; row < grid->rowCount(); ++row)
        rood += grid->RowTextColour(row).isValid() ? 1 : 0;
    ASSERT_GT(rood, 0);
    EXPECT_FALSE(Enabled("cmdSelectNone"));
    Click(*form, "cmdSelectAll");
    EXPECT_EQ(form->NSelected(), grid->rowCount() - rood);
    EXPECT_TRUE(Enabled("cmdSelectNone"));
    Click(*form, "cmdSelectNone");
    EXPECT_EQ(form->NSelected(), 0);
    EXPECT_FALSE(Enabled("cmdSelectNone"));
}

TEST_F(frmBerekeningStartTest, SelectAllSetsRedRowsTooWithOverflow)
{
    Voeruit("UPDATE Locatie SET kwaliteitskenmerk=0 WHERE OMSCHRIJVING='Plas-01'");
    Mechanisme(0);
    Open();
    ClickCell(0, 2);
    EXPECT_FALSE(grid->IsChecked(0, 2)) << "but not by a click";
    Click(*form, "cmdSelectAll");
    EXPECT_EQ(form->NSelected(), 24);
    Click(*form, "cmdSelectNone");
    EXPECT_EQ(form->NSelected(), 0);
}

TEST_F(frmBerekeningStartTest, TheContextMenuSelectsToo)
{
    Open();
    QContextMenuEvent click(QContextMenuEvent::Mouse, QPoint(40, 40),
                            grid->viewport()->mapToGlobal(QPoint(40, 40)));
    QApplication::sendEvent(grid->viewport(), &click);
    QMenu* menu = OpenMenu();
    ASSERT_TRUE(menu->isVisible());
    ASSERT_EQ(menu->actions().size(), 2);
    EXPECT_EQ(menu->actions()[0]->text(), "&Alles selecteren");
    EXPECT_FALSE(menu->actions()[1]->isEnabled());
    menu->actions()[0]->trigger();
    menu->close();
    EXPECT_EQ(form->NSelected(), grid->rowCount());

    QTest::keyClick(grid, Qt::Key_Menu);
    menu = OpenMenu();
    ASSERT_TRUE(menu->isVisible());
    EXPECT_TRUE(menu->actions()[1]->isEnabled());
    menu->actions()[1]->trigger();
    menu->close();
    EXPECT_EQ(form->NSelected(), 0);
}

TEST_F(frmBerekeningStartTest, OkNeedsANameARowAndAnOverviewFileWhenAsked)
{
    Open();
    EXPECT_FALSE(Enabled("cmdOK"));
    Name("Ontwerp");
    EXPECT_FALSE(Enabled("cmdOK"));
    ClickCell(0, 2);
    EXPECT_TRUE(Enabled("cmdOK"));
    Name("   ");
    EXPECT_FALSE(Enabled("cmdOK"));
    Name("Ontwerp");
    EXPECT_FALSE(Enabled("fsbOverzichtNm"));
    Overzicht()->click();
    EXPECT_TRUE(Enabled("fsbOverzichtNm"));
    EXPECT_FALSE(Enabled("cmdOK"));
    OverzichtNaam()->setText(Pad("overzicht.xls"));
    EXPECT_TRUE(Enabled("cmdOK"));
    ClickCell(0, 2);
    EXPECT_FALSE(Enabled("cmdOK"));
}

TEST_F(frmBerekeningStartTest, NamesAreFilteredAsTheyAreTyped)
{
    Open();
    auto* naam = Find<NumBox>(*form, "nbrBerekeningNaam");
    EXPECT_TRUE(naam->hasFocus());
    QTest::keyClicks(naam, "a[]b;=%{}c`^'*?d\\/<>:e|\"_f");
    EXPECT_EQ(naam->text(), "abcdef");
    naam->clear();
    QTest::keyClicks(naam, "." + QString(61, 'x'));
    EXPECT_EQ(naam->text(), QString(60, 'x'));
}

TEST_F(frmBerekeningStartTest, ANameInUseKeepsTheDialogOpen)
{
    db.AddBerekening("ontwerp", kNietBekend, "OVERLOOP", kNietBekend);
    Open();
    Name(" Ontwerp ");
    ClickCell(0, 2);
    BoxReader boxes;
    Click(*form, "cmdOK");
    EXPECT_EQ(boxes.Texts(), (QStringList{MessageText(300, {"Ontwerp"})}));
    EXPECT_TRUE(form->isVisible());
    EXPECT_FALSE(form->OK());
    Name("Ander");
    Click(*form, "cmdOK");
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(form->OK());
    EXPECT_EQ(form->Berekeningnaam(), "Ander");
}

TEST_F(frmBerekeningStartTest, TheSelectionHoldsThePairsInOrder)
{
    ZetInstelling("Faalmechanisme", "OVERSLAGDEBIET", "0,1");
    Open();
    Name("Ontwerp");
    const int row = Row("Kleine-3");
    ClickCell(row + 1, 2);
    ClickCell(0, 2);
    Find<QCheckBox>(*form, "chkOverwrite")->click();
    Click(*form, "cmdOK");
    const auto selectie = form->GetSelection(Pad("data/Instellingen.ini"));
    EXPECT_EQ(form->NSelected(), 2);
    EXPECT_EQ(selectie.locaties, (QStringList{"Plas-01", "Kleine-3"}));
    EXPECT_EQ(selectie.profielen[1], "Gras 1op3");
    EXPECT_EQ(selectie.debieten, (QStringList{"0.1", "0.1"}));
    EXPECT_TRUE(selectie.overschrijven);
    EXPECT_EQ(selectie.overzicht, "");
    EXPECT_EQ(selectie.memo, "");
    EXPECT_FALSE(instellingen.Exists()) << "nobody asked for the settings dialog";
}

TEST_F(frmBerekeningStartTest, TheOverviewFileIsRemembered)
{
    Open();
    EXPECT_FALSE(Overzicht()->isChecked());
    Overzicht()->click();
    OverzichtNaam()->setText(Pad("data/overzicht.xls"));
    Click(*form, "cmdCancel");
    EXPECT_EQ(gIniFile().GetString("DIJKVAKBEREKENING", "OverzichtBestand"),
              ".\\data\\overzicht.xls");
    EXPECT_EQ(gIniFile().GetString("DIJKVAKBEREKENING", "SchrijfOverzichtBestand"), "1");
    Open();
    EXPECT_TRUE(Overzicht()->isChecked());
    EXPECT_EQ(OverzichtNaam()->text(), Pad("data/overzicht.xls"));
    Overzicht()->click();
    form->close();
    EXPECT_EQ(gIniFile().GetString("DIJKVAKBEREKENING", "SchrijfOverzichtBestand"), "0");
}

TEST_F(frmBerekeningStartTest, ARelativeOverviewMeansOneFileEverywhere)
{
    // The core runs in the folder of its calculation, and would find another.
    const std::pair<QString, QString> paden[] = {
        {" .\\data\\los.xls ", Pad("data/los.xls")},
        {"nergens\\los.xls", QDir::current().absoluteFilePath("nergens/los.xls")}};
    for (const auto& [getypt, bedoeld] : paden) {
        Invullen(getypt);
        EXPECT_EQ(form->GetSelection(Pad("data/Instellingen.ini")).overzicht, bedoeld);
        Click(*form, "cmdCancel");
        Open();
        EXPECT_EQ(OverzichtNaam()->text(), bedoeld) << "also the next time";
    }
    installatie.Write("data/los.xls", "oud");
    Invullen(".\\data\\los.xls");
    BoxReader boxes;
    boxes.Press("Vervangen");
    Click(*form, "cmdOK");
    EXPECT_EQ(boxes.Texts().size(), 1);
    EXPECT_FALSE(QFile::exists(Pad("data/los.xls"))) << "asked about, and removed";
}

TEST_F(frmBerekeningStartTest, OpensWithAnySettings)
{
    for (const char* index : {"onzin", "99999999999999999999", "-1e999"}) {
        ZetInstelling("Faalmechanisme", "INDEXFAALMECHANISME", index);
        Open();
        EXPECT_EQ(grid->Text(0, 1), "N.V.T.") << index;
    }
}

TEST_F(frmBerekeningStartTest, WithoutAStoredNameTheOverviewBeginsOff)
{
    gIniFile().SaveString("DIJKVAKBEREKENING", "OverzichtBestand", "");
    gIniFile().SaveString("DIJKVAKBEREKENING", "SchrijfOverzichtBestand", "1");
    Open();
    EXPECT_FALSE(Overzicht()->isChecked());
    EXPECT_FALSE(Enabled("fsbOverzichtNm"));
}

TEST_F(frmBerekeningStartTest, AChosenOverviewFileGetsItsExtension)
{
    Open();
    Overzicht()->click();
    FileRequest gevraagd;
    QString antwoord = Pad("mijn.overzicht");
    SetFileChooser([&](QWidget*, const FileRequest& request) {
        gevraagd = request;
        return antwoord;
    });
    OverzichtNaam()->Browse();
    EXPECT_EQ(OverzichtNaam()->text(), Pad("mijn.overzicht.xls"));
    EXPECT_FALSE(gevraagd.open);
    EXPECT_EQ(gevraagd.title, "Overzichtsbestand kiezen");
    EXPECT_EQ(gevraagd.filters.count(QChar(u'\0')), 3);
    EXPECT_TRUE(gevraagd.filters.startsWith("Overzichtsbestanden (*.xls)"));
    antwoord = Pad("ander.XLS");
    OverzichtNaam()->Browse();
    EXPECT_EQ(OverzichtNaam()->text(), Pad("ander.XLS"));
}

TEST_F(frmBerekeningStartTest, OnlyTheFirstAnswerRemovesAnExistingOverview)
{
    const QString pad = Pad("overzicht.xls");
    for (const QString knop : {"Behouden", "Aanvullen", "Vervangen"}) {
        installatie.Write("overzicht.xls", "oud");
        Invullen(pad);
        BoxReader boxes;
        boxes.Press(knop);
        Click(*form, "cmdOK");
        ASSERT_EQ(boxes.Texts().size(), 1);
        EXPECT_EQ(boxes.Titles(), (QStringList{"Overzichtsbestand"}));
        EXPECT_TRUE(boxes.Texts()[0].contains(pad));
        EXPECT_EQ(boxes.DefaultButton(), "Behouden");
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(QFile::exists(pad), knop != "Vervangen");
        EXPECT_EQ(form->GetSelection({}).overzicht, pad);
    }
}

TEST_F(frmBerekeningStartTest, AnOverviewThatCannotBeRemovedKeepsTheDialogOpen)
{
    const QString pad = Pad("overzicht.xls");
    installatie.Write("overzicht.xls", "oud");
    SetReadOnly(pad, true);
    Invullen(pad);
    BoxReader boxes;
    boxes.Press("Vervangen");
    Click(*form, "cmdOK");
    ASSERT_EQ(boxes.Texts().size(), 2);
    EXPECT_EQ(boxes.Texts()[1], FoutText(555, {pad}));
    EXPECT_TRUE(form->isVisible());
    EXPECT_FALSE(form->OK());
    EXPECT_TRUE(QFile::exists(pad));
}

TEST_F(frmBerekeningStartTest, ANewOverviewIsNotAskedAbout)
{
    Invullen(Pad("nieuw.xls"));
    BoxReader boxes;
    Click(*form, "cmdOK");
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_TRUE(form->OK());
}

TEST_F(frmBerekeningStartTest, AnotherMechanismFillsTheGridAnew)
{
    Open();
    ClickCell(0, 2);
    FormDriver forms;
    forms.On("frmBerekeningInstellingen", [](QDialog& dialog) {
        Find<QRadioButton>(dialog, "optFaalmechanisme_0")->click();
        Click(dialog, "cmdOK");
    });
    Click(*form, "cmdparameters");
    EXPECT_EQ(grid->Text(0, 1), "N.V.T.");
    EXPECT_EQ(form->NSelected(), 0);
    EXPECT_TRUE(form->isVisible());
}

TEST_F(frmBerekeningStartTest, OtherSettingsLeaveTheGridAlone)
{
    Open();
    ClickCell(0, 2);
    FormDriver forms;
    forms.On("frmBerekeningInstellingen", [](QDialog& dialog) {
        Find<QCheckBox>(dialog, "chkWindreductie")->click();
        Click(dialog, "cmdOK");
    });
    Click(*form, "cmdparameters");
    EXPECT_TRUE(grid->IsChecked(0, 2));
    forms.On("frmBerekeningInstellingen", [](QDialog& dialog) {
        Find<QRadioButton>(dialog, "optFaalmechanisme_0")->click();
        Click(dialog, "cmdCancel");
    });
    Click(*form, "cmdparameters");
    EXPECT_TRUE(grid->IsChecked(0, 2));
    EXPECT_NE(grid->Text(0, 1), "N.V.T.");
}

TEST_F(frmBerekeningStartTest, TheMemoOfTheSettingsGoesAlong)
{
    Open();
    FormDriver forms;
    forms.On("frmMemo", [](QDialog& memo) {
        Find<QPlainTextEdit>(memo, "txtMemo")->setPlainText("proef");
        Click(memo, "cmdOK");
    });
    forms.On("frmBerekeningInstellingen", [](QDialog& dialog) {
        Click(dialog, "cmdMemo");
        Click(dialog, "cmdCancel");
    });
    Click(*form, "cmdparameters");
    EXPECT_EQ(form->GetSelection({}).memo, "proef");
    Open(); // the next batch of this session
    EXPECT_EQ(form->GetSelection({}).memo, "proef");
}
