#include "frame/ui/FileBox.h"

#include "Installation.h"
#include "frame/ui/FileDialogs.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

class FileBoxTest : public testing::Test {
protected:
    FileBoxTest()
    {
        SetFileChooser([this](QWidget* owner, const FileRequest& request) {
            m_owner = owner;
            m_request = request;
            return m_answer;
        });
    }
    ~FileBoxTest() override { SetFileChooser({}); }
    void Browse() { QTest::mouseClick(m_box.findChild<QPushButton*>(), Qt::LeftButton); }

    Installation m_installation;
    QString m_answer;
    FileRequest m_request;
    QWidget* m_owner = nullptr;
    FileBox m_box;
};

TEST_F(FileBoxTest, DefaultsAreThoseOfTheControl)
{
    Browse();
    EXPECT_EQ(m_request.title, "Open");
    EXPECT_EQ(m_request.initialFolder, ".");
    EXPECT_TRUE(m_request.open);
    EXPECT_EQ(DialogFilter(m_request.filters), "All Files (*)");
    EXPECT_EQ(m_owner, &m_box);
}

TEST_F(FileBoxTest, TheChosenNameBecomesTheText)
{
    m_answer = "/ergens/kaart.shp";
    QSignalSpy changed(&m_box, &FileBox::Change);
    Browse();
    EXPECT_EQ(m_box.text(), "/ergens/kaart.shp");
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(m_box.findChild<QLineEdit*>()->selectedText(), "/ergens/kaart.shp");
}

TEST_F(FileBoxTest, ACancelledDialogLeavesTheText)
{
    m_box.setText("oud.shp");
    m_answer = "  ";
    Browse();
    EXPECT_EQ(m_box.text(), "oud.shp");
}

TEST_F(FileBoxTest, NamesBelowTheBasePathAreRelativeOthersAbsolute)
{
    m_box.setBasePath(m_installation.Path());
    m_box.setGetRelativeFileName(true);
    m_answer = m_installation.Path("data/kaart.shp");
    Browse();
    EXPECT_EQ(m_box.text(), ".\\data\\kaart.shp");
    m_answer = "/elders/kaart.shp";
    Browse();
    EXPECT_TRUE(m_box.text().endsWith("kaart.shp"));
    EXPECT_FALSE(m_box.text().startsWith("."));
}

TEST_F(FileBoxTest, ALockedTextChangesThroughTheDialogOnly)
{
    m_box.setTextboxLocked(true);
    auto* edit = m_box.findChild<QLineEdit*>();
    QTest::keyClicks(edit, "typ");
    EXPECT_EQ(m_box.text(), "");
    m_answer = "/a/b";
    Browse();
    EXPECT_EQ(m_box.text(), "/a/b");
}

TEST_F(FileBoxTest, LeftIsToldWhenTheFocusGoesOutside)
{
    QWidget form;
    QVBoxLayout layout(&form);
    QLineEdit other;
    layout.addWidget(&m_box);
    layout.addWidget(&other);
    form.show();
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    QSignalSpy left(&m_box, &FileBox::Left);
    m_box.setFocus(Qt::TabFocusReason);
    m_box.findChild<QPushButton*>()->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(left.count(), 0);
    other.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(left.count(), 1);
    m_box.setParent(nullptr);
    other.setParent(nullptr);
}

TEST_F(FileBoxTest, PropertiesCarryTheNamesThatFormsUse)
{
    for (const char* name : {"Appearance",     "BackColor",
                             "BasePath",       "BorderStyle",
                             "Caption",        "DialogPosition",
                             "DialogTitle",    "Enabled",
                             "Filters",        "Font",
                             "ForeColor",      "FileMustExist",
                             "FileOpenDialog", "GetRelativeFileName",
                             "InitialDir",     "LeftTextBox",
                             "TextboxLocked",  "text",
                             "TooltipTextbox", "TooltipCommandButton"})
        EXPECT_GE(m_box.metaObject()->indexOfProperty(name), 0) << name;
}

TEST_F(FileBoxTest, FiltersComeInPairsPartedByBarsOrNuls)
{
    EXPECT_EQ(DialogFilter("Shapebestanden (*.shp)|*.shp"), "Shapebestanden (*.shp)");
    EXPECT_EQ(DialogFilter(QString("Kaarten") + QChar(u'\0') + "*.shp;*.asc" + QChar(u'\0') +
                           "Alles (*.*)" + QChar(u'\0') + "*.*"),
              "Kaarten (*.shp *.asc);;Alles (*)");
    EXPECT_EQ(DialogFilter(""), "");
    EXPECT_EQ(DialogFilter("zonder patroon"), "");
}

} // namespace
