#include "frame/ui/Grid.h"

#include "BoxReader.h"
#include "Installation.h"
#include "frame/ui/MessageBoxes.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

using Verdict = Grid::EditVerdict;

/// A grid of numbers in a form with a button; the check allows 0 to 10.
class GridEditTest : public testing::Test {
protected:
    GridEditTest()
    {
        auto* layout = new QVBoxLayout(&m_form);
        m_grid = new Grid;
        m_ok = new QPushButton("OK");
        m_cancel = new QPushButton("Annuleren");
        m_cancel->setObjectName("cmdCancel");
        layout->addWidget(m_grid);
        for (QPushButton* button : {m_ok, m_cancel}) {
            button->setFocusPolicy(Qt::StrongFocus);
            layout->addWidget(button);
        }
        m_grid->setHeaders({"a", "b", "soort"});
        m_grid->setColumnKind(0, Grid::ColumnKind::Decimal);
        m_grid->setColumnKind(1, Grid::ColumnKind::Text);
        m_grid->setColumnKind(2, Grid::ColumnKind::List);
        m_grid->setList(2, {"gras", "steen"});
        m_grid->AddRow({"1", "x", "gras"});
        m_grid->AddRow({"2", "y", "steen"});
        m_grid->setEditCheck([this](int, int column, QString& text) {
            if (column != 0)
                return Verdict::Accepted;
            ++m_checks;
            if (gConvert().ConvDbl(text) > 10) {
                ShowMessageForm(m_grid, 700, {"0", "10"});
                return m_refusal;
            }
            return Verdict::Accepted;
        });
        m_form.resize(400, 300);
        m_form.show();
        m_form.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_form));
        m_grid->setFocus();
        m_grid->setCurrentCell(0, 0);
    }
    QLineEdit* Editor() const
    {
        for (auto* edit : m_grid->findChildren<QLineEdit*>()) {
            if (edit->isVisible())
                return edit;
        }
        return nullptr;
    }
    void Type(const QString& text)
    {
        QTest::keyClicks(m_grid, text.left(1));
        ASSERT_NE(Editor(), nullptr);
        QTest::keyClicks(Editor(), text.mid(1));
    }

    Installation m_installation;
    BoxReader m_boxes;
    QWidget m_form;
    Grid* m_grid;
    QPushButton* m_ok;
    QPushButton* m_cancel;
    Verdict m_refusal = Verdict::StaysOpen;
    int m_checks = 0;
};

TEST_F(GridEditTest, TypingOpensTheCellAndEnterClosesIt)
{
    QSignalSpy edited(m_grid, &Grid::CellEdited);
    Type("7,5");
    EXPECT_TRUE(m_grid->IsEditing());
    QTest::keyClick(Editor(), Qt::Key_Return);
    EXPECT_FALSE(m_grid->IsEditing());
    EXPECT_EQ(m_grid->Text(0, 0), "7,5");
    ASSERT_EQ(edited.count(), 1);
    EXPECT_EQ(edited[0], (QList<QVariant>{0, 0}));
    EXPECT_EQ(m_checks, 1);
}

TEST_F(GridEditTest, KeysThatANumberCannotHoldAreRefused)
{
    Type("7x5");
    EXPECT_EQ(Editor()->text(), "75");
}

TEST_F(GridEditTest, WhatIsNoNumberStaysOpen)
{
    Type("-");
    QTest::keyClick(Editor(), Qt::Key_Return);
    EXPECT_TRUE(m_grid->IsEditing());
    EXPECT_EQ(m_checks, 0) << "the form is not asked about it";
    QTest::keyClicks(Editor(), "5");
    QTest::keyClick(Editor(), Qt::Key_Return);
    EXPECT_FALSE(m_grid->IsEditing());
    EXPECT_EQ(m_grid->Text(0, 0), "5");
}

TEST_F(GridEditTest, EscapeGivesTheOldValueBackWithoutACheck)
{
    Type("99");
    QTest::keyClick(Editor(), Qt::Key_Escape);
    EXPECT_FALSE(m_grid->IsEditing());
    EXPECT_EQ(m_grid->Text(0, 0), "1");
    EXPECT_EQ(m_checks, 0);
}

TEST_F(GridEditTest, ARefusedEditStaysOpenBehindItsMessage)
{
    Type("99");
    QTest::keyClick(Editor(), Qt::Key_Return);
    EXPECT_EQ(m_boxes.Texts().size(), 1);
    ASSERT_TRUE(m_grid->IsEditing());
    EXPECT_EQ(Editor()->selectedText(), "99");
    EXPECT_EQ(m_grid->Text(0, 0), "1");
    QTest::keyClicks(Editor(), "8");
    QTest::keyClick(Editor(), Qt::Key_Return);
    EXPECT_EQ(m_grid->Text(0, 0), "8");
}

TEST_F(GridEditTest, ARefusedEditCanTakeItsOldValue)
{
    m_refusal = Verdict::Restored;
    Type("99");
    QTest::keyClick(Editor(), Qt::Key_Return);
    EXPECT_EQ(m_boxes.Texts().size(), 1);
    EXPECT_FALSE(m_grid->IsEditing());
    EXPECT_EQ(m_grid->Text(0, 0), "1");
}

TEST_F(GridEditTest, TabClosesTheCellAndOpensTheNext)
{
    Type("3");
    QTest::keyClick(Editor(), Qt::Key_Tab);
    EXPECT_EQ(m_grid->Text(0, 0), "3");
    EXPECT_EQ(m_grid->currentColumn(), 1);
    EXPECT_TRUE(m_grid->IsEditing());
}

TEST_F(GridEditTest, LeavingForAnotherControlChecksOnce)
{
    Type("9");
    m_ok->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(m_grid->Text(0, 0), "9");
    EXPECT_TRUE(m_ok->hasFocus());
    EXPECT_EQ(m_checks, 1);
}

TEST_F(GridEditTest, AButtonDoesNotWorkOnARefusedValue)
{
    QSignalSpy clicked(m_ok, &QPushButton::clicked);
    Type("99");
    QTest::mouseClick(m_ok, Qt::LeftButton);
    EXPECT_EQ(clicked.count(), 0);
    EXPECT_TRUE(m_grid->IsEditing());
    EXPECT_EQ(m_boxes.Texts().size(), 1);
    EXPECT_EQ(m_checks, 1);
}

TEST_F(GridEditTest, AnotherCellCannotBeChosenWithARefusedValue)
{
    Type("99");
    const QRect cell = m_grid->visualRect(m_grid->model()->index(1, 1));
    QTest::mouseClick(m_grid->viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(m_grid->currentRow(), 0);
    EXPECT_TRUE(m_grid->IsEditing());
    EXPECT_EQ(m_boxes.Texts().size(), 1);
}

TEST_F(GridEditTest, CancelLeavesARefusedValueUnchecked)
{
    QSignalSpy clicked(m_cancel, &QPushButton::clicked);
    Type("99");
    QTest::mouseClick(m_cancel, Qt::LeftButton);
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
    EXPECT_EQ(m_grid->Text(0, 0), "1");
}

TEST_F(GridEditTest, EndEditTellsWhetherTheValueWasAccepted)
{
    EXPECT_TRUE(m_grid->EndEdit());
    Type("99");
    EXPECT_FALSE(m_grid->EndEdit());
    EXPECT_TRUE(m_grid->IsEditing());
    Editor()->setText("4");
    EXPECT_TRUE(m_grid->EndEdit());
    EXPECT_EQ(m_grid->Text(0, 0), "4");
}

TEST_F(GridEditTest, TheCheckMayChangeWhatTheCellShows)
{
    m_grid->setEditCheck([](int, int, QString& text) {
        text = FixedText(gConvert().ConvDbl(text), 2).replace('.', ',');
        return Verdict::Accepted;
    });
    Type("7,5");
    QTest::keyClick(Editor(), Qt::Key_Return);
    EXPECT_EQ(m_grid->Text(0, 0), "7,50");
}

TEST_F(GridEditTest, AReadOnlyCellDoesNotOpen)
{
    m_grid->setCellReadOnly(0, 0, true);
    QTest::keyClicks(m_grid, "5");
    EXPECT_FALSE(m_grid->IsEditing());
    QTest::keyClick(m_grid, Qt::Key_F2);
    EXPECT_FALSE(m_grid->IsEditing());
}

TEST_F(GridEditTest, F2OpensTheCellWithItsText)
{
    QTest::keyClick(m_grid, Qt::Key_F2);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->text(), "1");
}

TEST_F(GridEditTest, AListCellOffersItsTexts)
{
    m_grid->setCellList(1, 2, {"klei"});
    m_grid->setCurrentCell(0, 2);
    QTest::keyClick(m_grid, Qt::Key_F2);
    auto* list = m_grid->findChild<QComboBox*>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->count(), 2);
    EXPECT_EQ(list->currentText(), "gras");
    list->setCurrentIndex(1);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(m_grid->Text(0, 2), "steen");
    EXPECT_EQ(m_grid->List(1, 2), QStringList{"klei"});
}

TEST_F(GridEditTest, MovingTheCurrentCellByProgramEndsTheEditThroughTheCheck)
{
    Type("99");
    m_grid->setCurrentCell(1, 1);
    EXPECT_FALSE(m_grid->IsEditing());
    EXPECT_EQ(m_grid->Text(0, 0), "1"); // refused
    m_grid->setCurrentCell(0, 0);
    Type("6");
    m_grid->setCurrentCell(1, 1);
    EXPECT_EQ(m_grid->Text(0, 0), "6");
}

TEST_F(GridEditTest, ARowThatGoesWhileItsCellIsOpenDoesNoHarm)
{
    Type("9");
    m_grid->removeRow(0);
    EXPECT_TRUE(m_grid->EndEdit());
    EXPECT_EQ(m_grid->Text(0, 0), "2");
}

} // namespace
