#include "frame/ui/LbnBox.h"

#include "BoxReader.h"
#include "Installation.h"

#include <QDialog>
#include <QLabel>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

/// A form with a box in it, a second control to go to, and the usual buttons.
class NumBoxTest : public testing::Test {
protected:
    NumBoxTest()
    {
        auto* layout = new QVBoxLayout(&m_form);
        layout->addWidget(&m_other);
        layout->addWidget(&m_box);
        layout->addWidget(&m_ok);
        layout->addWidget(&m_cancel);
        m_cancel.setObjectName("cmdCancel");
        for (QPushButton* button : {&m_ok, &m_cancel})
            button->setFocusPolicy(Qt::StrongFocus);
        m_form.show();
        m_form.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_form));
        m_other.setFocus();
    }
    ~NumBoxTest() override
    {
        for (QWidget* widget :
             {(QWidget*)&m_other, (QWidget*)&m_box, (QWidget*)&m_ok, (QWidget*)&m_cancel})
            widget->setParent(nullptr);
    }
    void SetRange(double lower, double upper, const QString& message)
    {
        m_box.setMinimumValue(lower);
        m_box.setMaximumValue(upper);
        m_box.setMessageText(message);
    }
    void Enter(const QString& text)
    {
        m_box.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&m_box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&m_box, Qt::Key_Delete);
        QTest::keyClicks(&m_box, text);
    }
    /// The focus is on its way back while the window becomes active again.
    bool KeepsFocus()
    {
        return QTest::qWaitFor([this] { return m_box.hasFocus(); }, 1000);
    }
    void Tab() { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); }

    Installation m_installation;
    BoxReader m_boxes;
    QWidget m_form;
    QLineEdit m_other;
    NumBox m_box;
    QPushButton m_ok;
    QPushButton m_cancel;
};

TEST_F(NumBoxTest, AValueInRangeLetsTheFocusGo)
{
    SetRange(1, 10, "aantal");
    Enter("10");
    Tab();
    EXPECT_TRUE(m_ok.hasFocus());
    EXPECT_FALSE(m_box.RangeError());
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
}

TEST_F(NumBoxTest, AValueOutOfRangeShowsTheBoundsAndKeepsTheFocus)
{
    SetRange(1, 10, " aantal ");
    Enter("11");
    Tab();
    EXPECT_EQ(m_boxes.Texts(), QStringList{"1<= aantal <=10"});
    EXPECT_EQ(m_boxes.Icons(), QList{QMessageBox::Critical});
    EXPECT_TRUE(KeepsFocus());
    EXPECT_EQ(m_box.selectedText(), "11");
    EXPECT_TRUE(m_box.RangeError());
}

TEST_F(NumBoxTest, WithoutMessageTextOnlyTheFocusStays)
{
    SetRange(1, 10, "");
    Enter("11");
    Tab();
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
    EXPECT_TRUE(KeepsFocus());
}

TEST_F(NumBoxTest, AnEmptyBoxKeepsTheFocusUnlessItMayBeEmpty)
{
    SetRange(1, 10, "aantal");
    Enter("");
    Tab();
    EXPECT_TRUE(KeepsFocus());
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
    m_box.setMayBeEmpty(true);
    Tab();
    EXPECT_TRUE(m_ok.hasFocus());
}

TEST_F(NumBoxTest, EnterIsKeptFromTheFormWhileTheValueIsRefused)
{
    QDialog dialog;
    auto* layout = new QVBoxLayout(&dialog);
    auto* box = new NumBox;
    auto* ok = new QPushButton;
    auto* cancel = new QPushButton;
    cancel->setObjectName("cmdCancel");
    for (QWidget* widget : std::initializer_list<QWidget*>{box, ok, cancel})
        layout->addWidget(widget);
    ok->setDefault(true);
    box->setMinimumValue(1);
    box->setMaximumValue(10);
    box->setMessageText("aantal");
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    box->setFocus();
    QSignalSpy clicked(ok, &QPushButton::clicked);
    QTest::keyClicks(box, "11");
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(clicked.count(), 0);
    EXPECT_EQ(m_boxes.Texts(), QStringList{"1<=aantal<=10"});
    EXPECT_TRUE(QTest::qWaitFor([box] { return box->hasFocus(); }, 1000));
    EXPECT_EQ(box->selectedText(), "11");
    EXPECT_TRUE(box->RangeError());

    QTest::keyClicks(box, "10");
    QTest::keyClick(box, Qt::Key_Enter);
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_FALSE(box->RangeError());

    // Where Enter gives the form up, the value does not matter.
    cancel->setDefault(true);
    QSignalSpy cancelled(cancel, &QPushButton::clicked);
    box->selectAll();
    QTest::keyClicks(box, "11");
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(cancelled.count(), 1);
    EXPECT_EQ(m_boxes.Texts().size(), 1);
}

TEST_F(NumBoxTest, BothBoundsNoughtMeansNoRange)
{
    Enter("123456");
    Tab();
    EXPECT_TRUE(m_ok.hasFocus());
}

TEST_F(NumBoxTest, AClickOnAButtonDoesNothingWhileTheValueIsRefused)
{
    SetRange(1, 10, "aantal");
    QSignalSpy clicked(&m_ok, &QPushButton::clicked);
    Enter("11");
    QTest::mouseClick(&m_ok, Qt::LeftButton);
    EXPECT_EQ(clicked.count(), 0);
    EXPECT_FALSE(m_ok.isDown());
    EXPECT_TRUE(KeepsFocus());
    EXPECT_EQ(m_boxes.Texts().size(), 1);
    Enter("10");
    QTest::mouseClick(&m_ok, Qt::LeftButton);
    EXPECT_EQ(clicked.count(), 1);
}

TEST_F(NumBoxTest, TheCancelButtonIsNeverRefused)
{
    SetRange(1, 10, "aantal");
    QSignalSpy clicked(&m_cancel, &QPushButton::clicked);
    Enter("11");
    QTest::mouseClick(&m_cancel, Qt::LeftButton);
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
}

TEST_F(NumBoxTest, WithoutValidationTheFocusLeavesAndRangeErrorTellsIt)
{
    SetRange(1, 10, "aantal");
    m_box.setValidate(false);
    Enter("11");
    Tab();
    EXPECT_TRUE(m_ok.hasFocus());
    EXPECT_TRUE(m_box.RangeError());
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
    Enter("9");
    Tab();
    EXPECT_FALSE(m_box.RangeError());
}

TEST_F(NumBoxTest, EscapeRestoresTheTextAtEntryNotTheLastValidOne)
{
    SetRange(1, 10, "aantal");
    m_box.setText("3");
    Enter("5");
    QTest::keyClicks(&m_box, "0");
    Tab(); // refused
    ASSERT_TRUE(KeepsFocus());
    QTest::keyClick(&m_box, Qt::Key_Escape);
    EXPECT_EQ(m_box.text(), "3");
    EXPECT_EQ(m_box.cursorPosition(), 1);
    EXPECT_EQ(m_box.OldText(), "3");
}

TEST_F(NumBoxTest, EnteringSelectsAllAndKeepsTheText)
{
    m_box.setText("12");
    m_box.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(m_box.SelStart(), 0);
    EXPECT_EQ(m_box.SelLength(), 2);
    EXPECT_EQ(m_box.OldText(), "12");
}

TEST_F(NumBoxTest, EnteringWithTheMouseSelectsAllToo)
{
    m_box.setText("12");
    QTest::mouseClick(&m_box, Qt::LeftButton);
    EXPECT_EQ(m_box.selectedText(), "12");
}

TEST_F(NumBoxTest, ANumberIsShownWithTheSystemsSign)
{
    m_box.setText("1.5");
    EXPECT_EQ(m_box.text(), "1,5");
    m_box.setText("1.5e+3");
    EXPECT_EQ(m_box.text(), "1,5e+3");
}

TEST_F(NumBoxTest, ATextBoxKeepsItsPoints)
{
    m_box.setDataType(0);
    m_box.setText("profiel 1.5");
    EXPECT_EQ(m_box.text(), "profiel 1.5");
}

TEST_F(NumBoxTest, ChangeTellsEachTextOnce)
{
    QSignalSpy changed(&m_box, &NumBox::Change);
    Enter("1x2");
    EXPECT_EQ(m_box.text(), "12");
    EXPECT_EQ(changed.count(), 2);
    m_box.setText("7");
    EXPECT_EQ(m_box.text(), "7");
    EXPECT_EQ(changed.count(), 3);
}

TEST_F(NumBoxTest, PropertiesCarryTheNamesThatFormsUse)
{
    for (const char* name :
         {"Alignment",    "Appearance", "BackColor",   "BorderStyle", "Enabled",  "Font",
          "ForeColor",    "Locked",     "MaxLength",   "TTipText",    "DataType", "MaximumValue",
          "MinimumValue", "MayBeEmpty", "MessageText", "Name",        "OldText",  "RangeError",
          "SelLength",    "SelStart",   "SelText",     "Sound",       "text"}) {
        EXPECT_GE(m_box.metaObject()->indexOfProperty(name), 0) << name;
        EXPECT_GE(LbnBox::staticMetaObject.indexOfProperty(name), 0) << name;
    }
    for (const char* name :
         {"CaptionLeft", "CaptionRight", "LeftTextBox", "WidthTextBox", "Validate"})
        EXPECT_GE(LbnBox::staticMetaObject.indexOfProperty(name), 0) << name;
}

TEST_F(NumBoxTest, DependentControlsFollowTheValue)
{
    SetRange(1, 10, "aantal");
    LbnBox other;
    m_box.AddControl(&m_ok);
    m_box.AddControl(&other);
    EXPECT_FALSE(m_ok.isEnabled()); // empty is not usable
    m_box.setText("5");
    EXPECT_TRUE(m_ok.isEnabled());
    EXPECT_TRUE(other.isEnabled());
    m_box.setText("11");
    EXPECT_FALSE(m_ok.isEnabled());
    EXPECT_FALSE(other.isEnabled());
    m_box.ClearControls();
    m_box.setText("5");
    EXPECT_FALSE(m_ok.isEnabled());
}

TEST_F(NumBoxTest, ACountShowsOnlyTheTabsItNeeds)
{
    QTabWidget tabs;
    for (int i = 0; i < 3; ++i) {
        auto* page = new QWidget;
        if (i < 2)
            page->setProperty("tag", QString::number(i + 1));
        tabs.addTab(page, "deel");
    }
    m_box.AddControl(&tabs);
    m_box.setText("1");
    EXPECT_TRUE(tabs.isTabVisible(0));
    EXPECT_FALSE(tabs.isTabVisible(1));
    EXPECT_FALSE(tabs.isTabEnabled(1));
    m_box.setText("2");
    EXPECT_TRUE(tabs.isTabVisible(1));
    EXPECT_TRUE(tabs.isTabEnabled(1));
    EXPECT_FALSE(tabs.isTabVisible(2)); // no number in its tag
    m_box.setText("1e999");             // more than any number: no failure
    EXPECT_TRUE(tabs.isTabVisible(1));
}

TEST_F(NumBoxTest, AControlThatIsGoneIsPassedOver)
{
    auto button = std::make_unique<QPushButton>();
    m_box.AddControl(button.get());
    button.reset();
    m_box.setText("5");
    EXPECT_EQ(m_box.text(), "5");
}

TEST_F(NumBoxTest, ALbnBoxPassesFocusAndChangesOn)
{
    LbnBox box(&m_form);
    box.setCaptionLeft("&Peil");
    box.setCaptionRight("m");
    box.setWidthTextBox(1500);
    box.show();
    QSignalSpy changed(&box, &LbnBox::Change);
    box.setFocus();
    EXPECT_TRUE(box.Box()->hasFocus());
    QTest::keyClicks(box.Box(), "2,5");
    EXPECT_EQ(box.text(), "2,5");
    EXPECT_EQ(changed.count(), 3);
    EXPECT_EQ(box.Box()->width(), 100);
    EXPECT_GT(box.Box()->x(), 0);
}

TEST_F(NumBoxTest, ACaptionIsNeverCutOffByTheBox)
{
    LbnBox box;
    box.setLeftTextBox(150);
    box.setCaptionLeft("Een bijschrift dat meer plaats vraagt");
    box.resize(box.sizeHint());
    const auto* caption = box.findChild<QLabel*>();
    EXPECT_GE(box.Box()->x(), caption->sizeHint().width());
    EXPECT_GE(box.width(), box.Box()->geometry().right());
}

} // namespace
