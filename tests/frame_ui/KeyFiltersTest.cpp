#include "frame/ui/KeyFilters.h"

#include "Installation.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class KeyFiltersTest : public testing::Test {
protected:
    QString Typed(const QString& keys)
    {
        m_edit.clear();
        QTest::keyClicks(&m_edit, keys);
        return m_edit.text();
    }

    Installation m_installation;
    QLineEdit m_edit;
};

TEST_F(KeyFiltersTest, AWholeNumberTakesDigitsAndASignInFront)
{
    AttachNumberFilter(&m_edit, {DataTypes::Integer, -10, 10});
    EXPECT_EQ(Typed("-1a2,3 "), "-123");
}

TEST_F(KeyFiltersTest, ADecimalNumberTakesEitherSignAndShowsTheSystems)
{
    AttachNumberFilter(&m_edit, {DataTypes::Double});
    EXPECT_EQ(Typed("1.5"), "1,5");
    EXPECT_EQ(Typed("1,5"), "1,5");
    EXPECT_EQ(Typed("1,5e3"), "1,53"); // an exponent cannot be typed
}

TEST_F(KeyFiltersTest, AnExponentCanBePasted)
{
    AttachNumberFilter(&m_edit, {DataTypes::Double, -1, 1});
    QApplication::clipboard()->setText("1.5e-3");
    QTest::keyClick(&m_edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_edit.text(), "1,5e-3");
}

TEST_F(KeyFiltersTest, WhatTheProgramPutsThereIsLeftAlone)
{
    AttachNumberFilter(&m_edit, {DataTypes::Double});
    m_edit.setText("1,5e-7");
    EXPECT_EQ(m_edit.text(), "1,5e-7");
    m_edit.setCursorPosition(0);
    QTest::keyClicks(&m_edit, "x");
    EXPECT_EQ(m_edit.text(), "1,5e-7");
}

TEST_F(KeyFiltersTest, ANumberTooLargeForItsTypeIsPutBack)
{
    AttachNumberFilter(&m_edit, {DataTypes::Integer});
    EXPECT_EQ(Typed("327678"), "32767");
}

TEST_F(KeyFiltersTest, PastedTextIsCleaned)
{
    AttachNumberFilter(&m_edit, {DataTypes::Integer});
    QApplication::clipboard()->setText("1 2x3");
    QTest::keyClick(&m_edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_edit.text(), "123");
}

TEST_F(KeyFiltersTest, PlainTextPassesTheNumberFilter)
{
    AttachNumberFilter(&m_edit, {0});
    EXPECT_EQ(Typed("tekst 1"), "tekst 1");
}

TEST_F(KeyFiltersTest, AttachingAgainChangesTheRule)
{
    AttachNumberFilter(&m_edit, {DataTypes::Integer});
    AttachNumberFilter(&m_edit, {DataTypes::Double});
    EXPECT_EQ(Typed("1,5"), "1,5");
}

TEST_F(KeyFiltersTest, ANameLosesWhatFoldersCannotHold)
{
    AttachNameFilter(&m_edit);
    EXPECT_EQ(Typed("Noord/zijde_1:*?"), "Noordzijde1");
}

TEST_F(KeyFiltersTest, ANameMayHoldAnUnderscoreWhereItIsAllowed)
{
    AttachNameFilter(&m_edit, NameRule::WithUnderscore);
    EXPECT_EQ(Typed("a_b"), "a_b");
}

TEST_F(KeyFiltersTest, ANameDoesNotBeginWithADot)
{
    AttachNameFilter(&m_edit);
    EXPECT_EQ(Typed(".a"), "a");
    EXPECT_EQ(Typed("a.b"), "a.b");
}

TEST_F(KeyFiltersTest, AFileNameLosesWhatItCannotHold)
{
    AttachFileNameFilter(&m_edit);
    EXPECT_EQ(Typed("a<b>c.txt"), "abc.txt");
}

TEST_F(KeyFiltersTest, TheCaretStaysWhereTheUserTypes)
{
    AttachNameFilter(&m_edit);
    m_edit.setText("Noord");
    m_edit.setCursorPosition(2);
    QTest::keyClicks(&m_edit, "x");
    EXPECT_EQ(m_edit.text(), "Noxord");
    EXPECT_EQ(m_edit.cursorPosition(), 3);
}

TEST_F(KeyFiltersTest, ComboItemsAreFoundByTextWithoutRegardToCase)
{
    QComboBox box;
    box.addItem("Riet", 10);
    box.addItem("Gras", 20);
    EXPECT_EQ(FindComboIndexByText("GRAS", box), 1);
    EXPECT_EQ(FindComboIndexByText("gra", box), -1);
    EXPECT_EQ(FindComboIndexByText("", box), -1);
    EXPECT_EQ(FindComboIndexByText("gras", QComboBox()), -1);
    EXPECT_EQ(FindComboIndexByItemData(20, box), 1);
    EXPECT_EQ(FindComboIndexByItemData(30, box), -1);
}

} // namespace
