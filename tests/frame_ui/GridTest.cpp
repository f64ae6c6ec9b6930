#include "frame/ui/Grid.h"

#include "Installation.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using Kind = Grid::ColumnKind;

/// Name, x, check, list.
class GridTest : public testing::Test {
protected:
    GridTest()
    {
        m_grid.setHeaders({"Naam", "x|[m]", "Kies", "Soort"});
        m_grid.setColumnKind(0, Kind::Text);
        m_grid.setColumnKind(1, Kind::Decimal);
        m_grid.setColumnKind(2, Kind::Check);
        m_grid.setColumnKind(3, Kind::List);
        m_grid.setList(3, {"gras", "steen"});
        m_grid.AddRow({"noord", "1,5", "", "gras"});
        m_grid.AddRow({"zuid", "2,5", "", "steen"});
        m_grid.resize(500, 300);
        m_grid.show();
        m_grid.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_grid));
        m_grid.setFocus();
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&m_grid, key, modifiers);
    }

    Installation m_installation;
    Grid m_grid;
};

TEST_F(GridTest, HeadersStandOutsideTheRowsAndBreakAtABar)
{
    EXPECT_EQ(m_grid.rowCount(), 2);
    EXPECT_EQ(m_grid.columnCount(), 4);
    EXPECT_EQ(m_grid.horizontalHeaderItem(1)->text(), "x\n[m]");
}

TEST_F(GridTest, NothingCanBeEditedBeforeAColumnHasAKind)
{
    Grid grid;
    grid.setHeaders({"a"});
    grid.AddRow({"x"});
    EXPECT_FALSE(grid.MayEdit(0, 0));
    EXPECT_EQ(grid.Kind(0), Kind::ReadOnly);
}

TEST_F(GridTest, RowsAreAddedInsertedAndRemoved)
{
    EXPECT_EQ(m_grid.AddRow({"west"}), 2);
    EXPECT_EQ(m_grid.InsertRowBefore(1, {"midden"}), 1);
    EXPECT_EQ(m_grid.Text(1, 0), "midden");
    EXPECT_EQ(m_grid.Text(2, 0), "zuid");
    m_grid.removeRow(0);
    EXPECT_EQ(m_grid.Text(0, 0), "midden");
    m_grid.ClearRows();
    EXPECT_EQ(m_grid.rowCount(), 0);
    EXPECT_EQ(m_grid.Kind(2), Kind::Check);
}

TEST_F(GridTest, RowsMadeByTheTableItselfHaveTheirCheckCells)
{
    m_grid.setRowCount(3);
    EXPECT_FALSE(m_grid.IsChecked(2, 2));
    m_grid.setChecked(2, 2, true);
    EXPECT_TRUE(m_grid.IsChecked(2, 2));
}

TEST_F(GridTest, SpaceFlipsACheckCellAndTellsIt)
{
    QSignalSpy edited(&m_grid, &Grid::CellEdited);
    m_grid.setCurrentCell(0, 2);
    Key(Qt::Key_Space);
    EXPECT_TRUE(m_grid.IsChecked(0, 2));
    Key(Qt::Key_Space);
    EXPECT_FALSE(m_grid.IsChecked(0, 2));
    EXPECT_EQ(edited.count(), 2);
}

TEST_F(GridTest, SpaceFlipsAllSelectedChecksAlike)
{
    m_grid.setChecked(1, 2, true);
    m_grid.setCurrentCell(0, 2);
    m_grid.setRangeSelected(QTableWidgetSelectionRange(0, 2, 1, 2), true);
    Key(Qt::Key_Space);
    EXPECT_EQ(m_grid.CheckedCount(2), 2);
    Key(Qt::Key_Space);
    EXPECT_EQ(m_grid.CheckedCount(2), 0);
}

TEST_F(GridTest, AClickFlipsACheckCell)
{
    const QRect cell = m_grid.visualRect(m_grid.model()->index(1, 2));
    QTest::mouseClick(m_grid.viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_TRUE(m_grid.IsChecked(1, 2));
    EXPECT_FALSE(m_grid.IsChecked(0, 2));
}

TEST_F(GridTest, TheGuardKeepsTheUserOutNotTheProgram)
{
    m_grid.setRowTextColour(0, Qt::red);
    m_grid.setEditGuard(
        [this](int row, int) { return m_grid.RowTextColour(row) != QColor(Qt::red); });
    EXPECT_FALSE(m_grid.MayEdit(0, 2));
    EXPECT_TRUE(m_grid.MayEdit(1, 2));
    m_grid.setCurrentCell(0, 2);
    Key(Qt::Key_Space);
    EXPECT_FALSE(m_grid.IsChecked(0, 2));
    m_grid.setAllChecked(2, true, true);
    EXPECT_EQ(m_grid.CheckedCount(2), 1);
    m_grid.setAllChecked(2, true, false);
    EXPECT_EQ(m_grid.CheckedCount(2), 2);
}

TEST_F(GridTest, ACellCanBeReadOnlyOnItsOwn)
{
    m_grid.setCellReadOnly(0, 1, true);
    EXPECT_FALSE(m_grid.MayEdit(0, 1));
    EXPECT_TRUE(m_grid.MayEdit(1, 1));
    m_grid.setCellReadOnly(0, 1, false);
    EXPECT_TRUE(m_grid.MayEdit(0, 1));
}

TEST_F(GridTest, AColouredCellStaysReadable)
{
    const QColor light(0xFF, 0xE0, 0xC0);
    m_grid.setCellColour(0, 1, light);
    EXPECT_EQ(m_grid.CellColour(0, 1), light);
    EXPECT_EQ(m_grid.item(0, 1)->foreground().color(), QColor(Qt::black));
    m_grid.setCellColour(0, 1, Qt::darkBlue);
    EXPECT_EQ(m_grid.item(0, 1)->foreground().color(), QColor(Qt::white));
    m_grid.setCellColour(0, 1, QColor());
    EXPECT_FALSE(m_grid.CellColour(0, 1).isValid());
    EXPECT_FALSE(m_grid.item(0, 1)->data(Qt::ForegroundRole).isValid());
}

TEST_F(GridTest, ColumnWidthsAreInTwips)
{
    m_grid.setColumnWidths({2000, 750});
    EXPECT_EQ(m_grid.columnWidth(0), 133);
    EXPECT_EQ(m_grid.columnWidth(1), 50);
}

TEST_F(GridTest, TipsAndAlignmentHoldForNewRowsToo)
{
    m_grid.setColumnTip(1, "1 <= WAARDE <= 10");
    m_grid.setColumnAlignment(0, Qt::AlignCenter);
    const int row = m_grid.AddRow({"a", "1"});
    EXPECT_EQ(m_grid.item(row, 1)->toolTip(), "1 <= WAARDE <= 10");
    EXPECT_EQ(m_grid.item(row, 0)->textAlignment(), int(Qt::AlignCenter));
    EXPECT_TRUE(m_grid.item(row, 1)->textAlignment() & Qt::AlignRight);
}

TEST_F(GridTest, AFixedColumnIsNeitherSelectedNorEdited)
{
    m_grid.setColumnKind(0, Kind::Fixed);
    EXPECT_FALSE(m_grid.MayEdit(0, 0));
    EXPECT_FALSE(m_grid.item(0, 0)->flags() & Qt::ItemIsSelectable);
}

TEST_F(GridTest, CopyGivesTabsAndLineEnds)
{
    m_grid.setChecked(1, 2, true);
    m_grid.setRangeSelected(QTableWidgetSelectionRange(0, 0, 1, 2), true);
    Key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().replace("\r\n", "|"), "noord\t1,5\t0|zuid\t2,5\t1");
    EXPECT_EQ(m_grid.SelectedText(), "noord\t1,5\t0\r\nzuid\t2,5\t1");
    EXPECT_EQ(m_grid.AllText(), "noord\t1,5\t0\tgras\r\nzuid\t2,5\t1\tsteen");
}

TEST_F(GridTest, CopyWithoutASelectionGivesTheCurrentCell)
{
    m_grid.setCurrentCell(1, 0);
    m_grid.clearSelection();
    EXPECT_EQ(m_grid.SelectedText(), "zuid");
}

TEST_F(GridTest, HiddenColumnsAreNotCopiedAndNotPastedInto)
{
    m_grid.setColumnHidden(1, true);
    m_grid.setRangeSelected(QTableWidgetSelectionRange(0, 0, 0, 3), true);
    EXPECT_EQ(m_grid.SelectedText(), "noord\t0\tgras");
    EXPECT_TRUE(m_grid.Paste("oost\t1\tsteen", 0, 0));
    EXPECT_EQ(m_grid.Text(0, 1), "1,5");
    EXPECT_EQ(m_grid.Text(0, 3), "steen");
    EXPECT_TRUE(m_grid.IsChecked(0, 2));
}

TEST_F(GridTest, PasteWritesFromTheCurrentCellOn)
{
    QApplication::clipboard()->setText("a\t3,5\r\nb\t4,5\r\n");
    m_grid.setCurrentCell(0, 0);
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_grid.Text(0, 0), "a");
    EXPECT_EQ(m_grid.Text(1, 1), "4,5");
}

TEST_F(GridTest, PasteTakesEveryLineEnd)
{
    EXPECT_EQ(Grid::SplitCells("a\tb\r\nc\nd\re"),
              (QList<QStringList>{{"a", "b"}, {"c"}, {"d"}, {"e"}}));
    EXPECT_TRUE(Grid::SplitCells("").isEmpty());
    EXPECT_EQ(Grid::SplitCells("a\r\n\r\nb").size(), 3);
}

TEST_F(GridTest, PasteStopsAtTheLastRowUnlessItMayAddRows)
{
    EXPECT_FALSE(m_grid.Paste("a\nb\nc", 1, 0));
    EXPECT_EQ(m_grid.rowCount(), 2);
    m_grid.setPasteAddsRows(true);
    EXPECT_TRUE(m_grid.Paste("a\nb\nc", 1, 0));
    EXPECT_EQ(m_grid.rowCount(), 4);
    EXPECT_EQ(m_grid.Text(3, 0), "c");
}

TEST_F(GridTest, PasteStopsAtAnEmptyLine)
{
    EXPECT_FALSE(m_grid.Paste("a\n\nb", 0, 0));
    EXPECT_EQ(m_grid.Text(0, 0), "a");
    EXPECT_EQ(m_grid.Text(1, 0), "zuid");
}

TEST_F(GridTest, PastePassesTheCheckAndStopsWhereItRefuses)
{
    m_grid.setEditCheck([](int, int column, QString& text) {
        if (column == 1 && text == "99")
            return Grid::EditVerdict::Restored;
        if (column == 0)
            text = text.toUpper();
        return Grid::EditVerdict::Accepted;
    });
    EXPECT_FALSE(m_grid.Paste("a\t99\nb\t3", 0, 0));
    EXPECT_EQ(m_grid.Text(0, 0), "A");
    EXPECT_EQ(m_grid.Text(0, 1), "1,5");
    EXPECT_EQ(m_grid.Text(1, 0), "zuid");
}

TEST_F(GridTest, PasteDoesNotBringTextIntoANumberColumn)
{
    EXPECT_FALSE(m_grid.Paste("abc", 0, 1));
    EXPECT_EQ(m_grid.Text(0, 1), "1,5");
    EXPECT_TRUE(m_grid.Paste("7.25", 0, 1));
    EXPECT_EQ(m_grid.Text(0, 1), "7,25");
}

TEST_F(GridTest, PasteDoesNotBringAFractionIntoAWholeColumn)
{
    m_grid.setColumnKind(1, Grid::ColumnKind::Whole);
    m_grid.setText(0, 1, "7");
    for (const char* text : {"1,5", "1.5", "3000000000", "1e-1"})
        EXPECT_FALSE(m_grid.Paste(text, 0, 1)) << text;
    EXPECT_EQ(m_grid.Text(0, 1), "7");
    EXPECT_TRUE(m_grid.Paste("-12", 0, 1));
    EXPECT_EQ(m_grid.Text(0, 1), "-12");
}

TEST_F(GridTest, PasteDoesNotBringAnUnknownTextIntoAListColumn)
{
    EXPECT_FALSE(m_grid.Paste("klei", 0, 3));
    EXPECT_EQ(m_grid.Text(0, 3), "gras");
}

TEST_F(GridTest, PastePassesOverCellsThatCannotBeEdited)
{
    m_grid.setColumnKind(0, Kind::ReadOnly);
    EXPECT_TRUE(m_grid.Paste("a\t9", 0, 0));
    EXPECT_EQ(m_grid.Text(0, 0), "noord");
    EXPECT_EQ(m_grid.Text(0, 1), "9");
}

TEST_F(GridTest, TabLeavesTheGrid)
{
    EXPECT_FALSE(m_grid.tabKeyNavigation());
}

TEST_F(GridTest, ShowRowMakesItCurrent)
{
    for (int i = 0; i < 100; ++i)
        m_grid.AddRow({QString::number(i)});
    m_grid.ShowRow(90);
    EXPECT_EQ(m_grid.currentRow(), 90);
    EXPECT_TRUE(
        m_grid.viewport()->rect().intersects(m_grid.visualRect(m_grid.model()->index(90, 0))));
}

} // namespace
