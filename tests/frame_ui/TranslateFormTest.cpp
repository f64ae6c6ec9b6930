#include "frame/ui/TranslateForm.h"

#include "Installation.h"
#include "frame/ui/FileBox.h"
#include "frame/ui/LbnBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <gtest/gtest.h>

namespace {

class TranslateFormTest : public testing::Test {
protected:
    TranslateFormTest() { m_form.setObjectName("frmProef"); }

    template <typename Widget>
    Widget* Add(const QString& name)
    {
        auto* widget = new Widget(&m_form);
        widget->setObjectName(name);
        return widget;
    }
    void Translate(const QStringList& lines, const QString& language = {})
    {
        m_installation.Write("data/Proef.ini",
                             ("[Captions" + language + "]\r\n" + lines.join("\r\n")).toLatin1());
        QLMIniFile ini(m_installation.Path("data/Proef.ini"));
        TranslateForm(m_form, ini, language);
    }

    Installation m_installation;
    QDialog m_form;
};

TEST_F(TranslateFormTest, TheTitleIsTheApplicationAndTheCaptionOfTheForm)
{
    SetApplicationTitle("Zand_voet");
    Translate({"frmProef=Een proef"});
    EXPECT_EQ(m_form.windowTitle(), "Zand-voet - Een proef");
}

TEST_F(TranslateFormTest, AFormWithoutACaptionIsCalledByItsName)
{
    Translate({});
    EXPECT_EQ(m_form.windowTitle(), "Zandvoet - frmProef");
}

TEST_F(TranslateFormTest, EveryKindOfControlWithACaptionIsTranslated)
{
    auto* label = Add<QLabel>("lblNaam");
    auto* button = Add<QPushButton>("cmdOK");
    auto* option = Add<QRadioButton>("optKeuze");
    auto* check = Add<QCheckBox>("chkVlag");
    auto* frame = Add<QGroupBox>("fraGroep");
    Translate({"frmProef.lblNaam=&Naam", "frmProef.cmdOK=Goed", "frmProef.optKeuze=Keuze",
               "frmProef.chkVlag=Vlag", "frmProef.fraGroep=Groep"});
    EXPECT_EQ(label->text(), "&Naam");
    EXPECT_EQ(button->text(), "Goed");
    EXPECT_EQ(option->text(), "Keuze");
    EXPECT_EQ(check->text(), "Vlag");
    EXPECT_EQ(frame->title(), "Groep");
}

TEST_F(TranslateFormTest, AControlWithoutAKeyKeepsItsCaption)
{
    auto* label = Add<QLabel>("lblNaam");
    label->setText("ontwerp");
    Translate({"frmProef.lblAnders=x"});
    EXPECT_EQ(label->text(), "ontwerp");
}

TEST_F(TranslateFormTest, ThePlainKeyWinsOverTheKeyWithNought)
{
    auto* label = Add<QLabel>("lblNaam");
    Translate({"frmProef.lblNaam.0=nul", "frmProef.lblNaam=gewoon"});
    EXPECT_EQ(label->text(), "gewoon");
}

TEST_F(TranslateFormTest, ElementsOfAnArrayTakeTheirIndexAndTheFirstOneWithoutIt)
{
    auto* first = Add<QRadioButton>("optSoort_0");
    auto* second = Add<QRadioButton>("optSoort_1");
    auto* third = Add<QRadioButton>("optSoort_2");
    Translate({"frmProef.optSoort.0=nul", "frmProef.optSoort.1=een"});
    EXPECT_EQ(first->text(), "nul");
    EXPECT_EQ(second->text(), "een");
    EXPECT_EQ(third->text(), "nul");
    Translate({"frmProef.optSoort.1=een", "frmProef.optSoort=alle"});
    EXPECT_EQ(second->text(), "alle");
}

TEST_F(TranslateFormTest, ALbnBoxTakesItsTextAndBothCaptions)
{
    auto* box = Add<LbnBox>("lbnPeil");
    Translate({"frmProef.lbnPeil=1.5", "frmProef.lbnPeilLeft=&Peil", "frmProef.lbnPeilRight.0=m"});
    EXPECT_EQ(box->text(), "1,5");
    EXPECT_EQ(box->CaptionLeft(), "&Peil");
    EXPECT_EQ(box->CaptionRight(), "m");
}

TEST_F(TranslateFormTest, TextBoxesTakeTheirFirstText)
{
    auto* line = Add<QLineEdit>("txtNaam");
    auto* memo = Add<QPlainTextEdit>("txtMemo");
    auto* number = Add<NumBox>("nbrGetal");
    Translate({"frmProef.txtNaam=naam", "frmProef.txtMemo=memo", "frmProef.nbrGetal=2.5"});
    EXPECT_EQ(line->text(), "naam");
    EXPECT_EQ(memo->toPlainText(), "memo");
    EXPECT_EQ(number->text(), "2,5");
}

TEST_F(TranslateFormTest, BoxesThatShowFilesAreLeftAlone)
{
    auto* log = Add<QPlainTextEdit>("rtfLog");
    Translate({"frmProef.rtfLog=x"});
    EXPECT_EQ(log->toPlainText(), "");
}

TEST_F(TranslateFormTest, AFileBoxTakesItsCaptionAndKeepsItsText)
{
    auto* box = Add<FileBox>("fsbKaart");
    box->setText("kaart.shp");
    Translate({"frmProef.fsbKaart=&Kaart"});
    EXPECT_EQ(box->Caption(), "&Kaart");
    EXPECT_EQ(box->text(), "kaart.shp");
}

TEST_F(TranslateFormTest, AComboBoxTakesItsItemsAndLosesThemWithoutAKey)
{
    auto* filled = Add<QComboBox>("cboSoort");
    auto* without = Add<QComboBox>("cboLeeg");
    without->addItems({"a", "b"});
    Translate({"frmProef.cboSoort=een;twee;;drie"});
    EXPECT_EQ(filled->count(), 3);
    EXPECT_EQ(filled->itemText(2), "drie");
    EXPECT_EQ(without->count(), 0);
}

TEST_F(TranslateFormTest, TabsTakeTheirCaptionsByNumber)
{
    auto* tabs = Add<QTabWidget>("tabDelen");
    tabs->addTab(new QWidget, "een");
    tabs->addTab(new QWidget, "twee");
    Translate({"frmProef.tabDelen.0=Eerste", "frmProef.tabDelen.2=bestaat niet"});
    EXPECT_EQ(tabs->tabText(0), "Eerste");
    EXPECT_EQ(tabs->tabText(1), "twee");
}

TEST_F(TranslateFormTest, ControlsOnTabsAndInFramesAreFound)
{
    auto* tabs = Add<QTabWidget>("tabDelen");
    auto* page = new QWidget;
    tabs->addTab(page, "een");
    auto* group = new QGroupBox(page);
    auto* label = new QLabel(group);
    label->setObjectName("lblDiep");
    Translate({"frmProef.lblDiep=diep"});
    EXPECT_EQ(label->text(), "diep");
}

TEST_F(TranslateFormTest, MenusAndTheirEntriesAreTranslated)
{
    QMainWindow window;
    window.setObjectName("frmVenster");
    QMenu* menu = window.menuBar()->addMenu("x");
    menu->setObjectName("mnuFile");
    QAction* entry = menu->addAction("y");
    entry->setObjectName("mnuFileItem_1");
    m_installation.Write("data/V.ini", "[Captions]\r\nfrmVenster.mnuFile=&Bestand\r\n"
                                       "frmVenster.mnuFileItem.1=Tweede");
    QLMIniFile ini(m_installation.Path("data/V.ini"));
    TranslateForm(window, ini, QString());
    EXPECT_EQ(menu->title(), "&Bestand");
    EXPECT_EQ(entry->text(), "Tweede");
}

TEST_F(TranslateFormTest, AFormInsideTheFormIsNotTouched)
{
    auto* pane = Add<QWidget>("frmPaneel");
    auto* label = new QLabel("eigen", pane);
    label->setObjectName("lblNaam");
    Translate({"frmProef.lblNaam=vreemd"});
    EXPECT_EQ(label->text(), "eigen");
}

TEST_F(TranslateFormTest, ALanguageHasASectionOfItsOwn)
{
    auto* label = Add<QLabel>("lblNaam");
    Translate({"frmProef.lblNaam=Name"}, "UK");
    EXPECT_EQ(label->text(), "Name");
}

TEST_F(TranslateFormTest, AMissingIniLeavesTheFormAsItIs)
{
    auto* label = Add<QLabel>("lblNaam");
    label->setText("ontwerp");
    QLMIniFile ini(m_installation.Path("data/Bestaat niet.ini"));
    TranslateForm(m_form, ini, QString());
    EXPECT_EQ(label->text(), "ontwerp");
    EXPECT_FALSE(QFile::exists(m_installation.Path("data/Bestaat niet.ini")));
}

} // namespace
