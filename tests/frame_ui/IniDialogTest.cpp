#include "frame/ui/IniDialog.h"

#include "BoxReader.h"
#include "Installation.h"
#include "frame/Fouten.h"
#include "frame/Texts.h"
#include "frame/ui/NumBox.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

class frmProef : public IniDialog {
public:
    explicit frmProef(Place place = Place::Kept, bool withCancel = true)
        : IniDialog("Proef.ini", nullptr, place)
    {
        setObjectName("frmProef");
        auto* layout = new QVBoxLayout(this);
        const auto add = [&](auto* widget, const char* name) {
            widget->setObjectName(name);
            layout->addWidget(widget);
            return widget;
        };
        auto* label = add(new QLabel, "lblNaam");
        naam = add(new QLineEdit, "txtNaam");
        label->setBuddy(naam);
        ok = add(new QPushButton, "cmdOK");
        extra = add(new QPushButton, "cmdExtra");
        if (withCancel) {
            cancel = add(new QPushButton, "cmdCancel");
            connect(cancel, &QPushButton::clicked, this, [this] {
                ++cancelled;
                reject();
            });
        }
        LoadForm();
        connect(ok, &QPushButton::clicked, this, [this] { CloseOK(); });
    }
    using IniDialog::iniFile;

    QLineEdit* naam;
    QPushButton* ok;
    QPushButton* extra;
    QPushButton* cancel = nullptr;
    int cancelled = 0;
};

class IniDialogTest : public testing::Test {
protected:
    IniDialogTest()
    {
        m_installation.Write("data/Proef.ini",
                             "[Captions]\r\nfrmProef=Proef\r\nfrmProef.lblNaam=&Naam\r\n"
                             "frmProef.cmdOK=&Goed\r\n[GridHeaderText]\r\ntext.0=x\r\ntext.1=y");
    }
    ~IniDialogTest() override { SetHelpHandler({}); }
    static void Show(QDialog& form)
    {
        form.show();
        form.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    }

    Installation m_installation;
};

TEST_F(IniDialogTest, AFormIsTranslatedFromItsOwnIni)
{
    frmProef form;
    EXPECT_EQ(form.windowTitle(), "Zandvoet - Proef");
    EXPECT_EQ(form.ok->text(), "&Goed");
    EXPECT_EQ(ReadTexts(form.iniFile(), "GridHeaderText", 3), (QStringList{"x", "y", ""}));
}

TEST_F(IniDialogTest, EnterPressesOkFromATextBox)
{
    frmProef form;
    Show(form);
    form.naam->setFocus();
    QTest::keyClick(form.naam, Qt::Key_Return);
    EXPECT_TRUE(form.OK());
    EXPECT_FALSE(form.isVisible());
}

TEST_F(IniDialogTest, OnlyOneButtonIsTheDefault)
{
    frmProef form;
    EXPECT_TRUE(form.ok->isDefault());
    EXPECT_FALSE(form.extra->autoDefault());
}

TEST_F(IniDialogTest, EscapePressesCancel)
{
    frmProef form;
    Show(form);
    QTest::keyClick(form.naam, Qt::Key_Escape);
    EXPECT_EQ(form.cancelled, 1);
    EXPECT_FALSE(form.OK());
    EXPECT_FALSE(form.isVisible());
}

TEST_F(IniDialogTest, EscapeDoesNothingWhileCancelIsOff)
{
    frmProef form;
    Show(form);
    form.cancel->setEnabled(false);
    QTest::keyClick(form.naam, Qt::Key_Escape);
    EXPECT_TRUE(form.isVisible());
}

TEST_F(IniDialogTest, EscapeClosesAFormWithoutCancel)
{
    frmProef form(IniDialog::Place::Kept, false);
    Show(form);
    QTest::keyClick(form.naam, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
    EXPECT_FALSE(form.OK());
}

TEST_F(IniDialogTest, AMnemonicLeadsToItsControl)
{
    frmProef form;
    Show(form);
    form.extra->setFocus();
    QTest::keyClick(&form, Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(form.naam->hasFocus());
}

TEST_F(IniDialogTest, AButtonsLetterDoesNothingWhileANumberIsRefused)
{
    BoxReader boxes;
    frmProef form;
    auto* box = new NumBox(&form);
    form.layout()->addWidget(box);
    box->setMinimumValue(1);
    box->setMaximumValue(10);
    box->setMessageText("aantal");
    form.cancel->setText("&Annuleren");
    Show(form);
    box->setFocus();
    QTest::keyClicks(box, "11");
    QTest::keyClick(box, Qt::Key_G, Qt::AltModifier);
    QTest::qWait(200); // a click by letter takes its time
    EXPECT_FALSE(form.OK());
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(boxes.Texts(), QStringList{"1<=aantal<=10"});
    EXPECT_TRUE(QTest::qWaitFor([box] { return box->hasFocus(); }, 1000));

    QTest::keyClick(box, Qt::Key_A, Qt::AltModifier); // cancelling is always allowed
    EXPECT_TRUE(QTest::qWaitFor([&form] { return form.cancelled == 1; }, 1000));
    EXPECT_EQ(boxes.Texts().size(), 1);
}

TEST_F(IniDialogTest, AButtonsLetterClicksItOnAGoodNumber)
{
    frmProef form;
    auto* box = new NumBox(&form);
    form.layout()->addWidget(box);
    box->setMinimumValue(1);
    box->setMaximumValue(10);
    Show(form);
    box->setFocus();
    QTest::keyClicks(box, "10");
    QTest::keyClick(box, Qt::Key_G, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&form] { return form.OK(); }, 1000));
}

TEST_F(IniDialogTest, F1OpensTheManual)
{
    QWidget* asked = nullptr;
    SetHelpHandler([&](QWidget* form) { asked = form; });
    frmProef form;
    Show(form);
    QTest::keyClick(form.naam, Qt::Key_F1);
    EXPECT_EQ(asked, &form);
}

TEST_F(IniDialogTest, AManualThatIsMissingIsReported)
{
    BoxReader boxes;
    SetHelpHandler([](QWidget*) { RaiseFout(7, {"weg.html"}); });
    ShowHelp(nullptr);
    EXPECT_EQ(boxes.Texts(), QStringList{FoutText(7, {"weg.html"})});
}

TEST_F(IniDialogTest, TheFormComesBackWhereTheUserLeftIt)
{
    {
        frmProef form;
        Show(form);
        form.move(70, 80);
        form.resize(260, 190);
        form.reject();
    }
    frmProef form;
    Show(form);
    EXPECT_EQ(form.pos(), QPoint(70, 80));
    EXPECT_EQ(form.size(), QSize(260, 190));
}

TEST_F(IniDialogTest, ThePlaceIsStoredByEveryWayOut)
{
    for (const auto& leave :
         {+[](frmProef& form) { form.ok->click(); }, +[](frmProef& form) { form.cancel->click(); },
          +[](frmProef& form) { form.close(); }}) {
        frmProef form;
        Show(form);
        form.move(30, 40);
        gIniFile().RemoveKey("SETTINGS", "frmProefLeft");
        leave(form);
        EXPECT_EQ(gIniFile().GetString("SETTINGS", "frmProefLeft"), "450");
    }
}

TEST_F(IniDialogTest, ACentredFormStoresNothing)
{
    frmProef form(IniDialog::Place::Centred);
    Show(form);
    form.move(0, 0);
    form.reject();
    EXPECT_EQ(gIniFile().GetString("SETTINGS", "frmProefLeft", "niets"), "niets");
}

TEST_F(IniDialogTest, AFormThatIsShownAgainIsNotConfirmedYet)
{
    frmProef form;
    Show(form);
    form.ok->click();
    EXPECT_TRUE(form.OK());
    Show(form);
    EXPECT_FALSE(form.OK());
    form.cancel->click();
    EXPECT_FALSE(form.OK());
}

} // namespace
