#include "frame/ui/frmMemo.h"

#include "Installation.h"
#include "frame/Globals.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class frmMemoTest : public testing::Test {
protected:
    frmMemoTest()
    {
        form.SetMemo("oud\r\ntekst");
        form.show();
        box = form.findChild<QPlainTextEdit*>("txtMemo");
        box->setFocus();
    }
    void Press(const char* button)
    {
        QTest::mouseClick(form.findChild<QPushButton*>(button), Qt::LeftButton);
    }
    Installation installation;
    frmMemo form;
    QPlainTextEdit* box = nullptr;
};

TEST_F(frmMemoTest, ShowsItsText)
{
    EXPECT_EQ(box->toPlainText(), "oud\ntekst");
    EXPECT_EQ(form.GetMemo(), "oud\r\ntekst");
    EXPECT_EQ(form.windowTitle(), "Zandvoet - Memo");
    EXPECT_FALSE(box->accessibleName().isEmpty());
}

TEST_F(frmMemoTest, OkTakesTheTextOver)
{
    QTest::keyClick(box, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(box, " en meer");
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_TRUE(form.isVisible()) << "Enter belongs to the text";
    Press("cmdOK");
    EXPECT_TRUE(form.OK());
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.GetMemo(), "oud\r\ntekst en meer\r\n");
}

TEST_F(frmMemoTest, CancelPutsTheTextBack)
{
    for (const bool byKey : {false, true}) {
        form.show();
        box->setPlainText("anders");
        if (byKey)
            QTest::keyClick(box, Qt::Key_Escape);
        else
            Press("cmdCancel");
        EXPECT_FALSE(form.isVisible());
        EXPECT_FALSE(form.OK());
        EXPECT_EQ(form.GetMemo(), "oud\r\ntekst");
        EXPECT_EQ(box->toPlainText(), "oud\ntekst");
    }
    form.show();
    box->setPlainText("anders");
    form.close();
    EXPECT_EQ(form.GetMemo(), "oud\r\ntekst");
}

TEST_F(frmMemoTest, CharactersThatFilesCannotHoldAreNotTaken)
{
    box->setPlainText(QString::fromUtf8("caf\xC3\xA9 \xD0\x9A\xE2\x82\xAC\nx"));
    EXPECT_EQ(box->toPlainText(), QString::fromUtf8("caf\xC3\xA9 \xE2\x82\xAC\nx"));
}

TEST_F(frmMemoTest, KeepsItsPlace)
{
    form.resize(500, 400);
    Press("cmdOK");
    EXPECT_EQ(gIniFile().GetString("SETTINGS", "frmMemoWidth"), "7500");
}

} // namespace
