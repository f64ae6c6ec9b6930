#include "frame/ui/Grid.h"

#include "frame/Convert.h"
#include "frame/Globals.h"
#include "frame/ui/FormUnits.h"
#include "frame/ui/GridDelegate.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>

#include <cmath>

namespace {

constexpr int kReadOnlyRole = Qt::UserRole + 1;
constexpr int kListRole = Qt::UserRole + 2;
constexpr int kTextColourRole = Qt::UserRole + 3;
constexpr double kLargestWhole = 2147483647; // of 32 bits

/// Black or white, whichever reads better on `background`.
QColor InkOn(const QColor& background)
{
    const double light =
        0.299 * background.redF() + 0.587 * background.greenF() + 0.114 * background.blueF();
    return light > 0.5 ? Qt::black : Qt::white;
}

bool IsNumberFor(Grid::ColumnKind kind, const QString& text)
{
    const auto number = ParseNumber(text);
    if (!number || kind != Grid::ColumnKind::Whole)
        return number.has_value();
    return RoundToEven(*number) == *number && std::fabs(*number) <= kLargestWhole;
}

} // namespace

Grid::Grid(QWidget* parent) : QTableWidget(parent), m_delegate(new GridDelegate(*this))
{
    setItemDelegate(m_delegate);
    setTabKeyNavigation(false);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed | SelectedClicked);
    setSelectionMode(ContiguousSelection);
    setAlternatingRowColors(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    connect(model(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) {
                for (int row = first; row <= last; ++row) {
                    for (int column = 0; column < columnCount(); ++column)
                        Cell(row, column);
                }
            });
}

void Grid::setHeaders(const QStringList& headers)
{
    setColumnCount(static_cast<int>(headers.size()));
    QStringList lines = headers;
    for (QString& header : lines)
        header.replace('|', '\n');
    setHorizontalHeaderLabels(lines);
    for (int column = 0; column < columnCount(); ++column)
        DressColumn(column);
}

const Grid::Column& Grid::At(int column) const
{
    static const Column unset;
    return column >= 0 && column < m_columns.size() ? m_columns[column] : unset;
}

Grid::Column& Grid::At(int column)
{
    while (m_columns.size() <= column)
        m_columns.append(Column());
    return m_columns[column];
}

void Grid::setColumnKind(int column, ColumnKind kind)
{
    At(column).kind = kind;
    DressColumn(column);
}

Grid::ColumnKind Grid::Kind(int column) const
{
    return At(column).kind;
}

void Grid::setList(int column, const QStringList& texts)
{
    At(column).list = texts;
}

void Grid::setCellList(int row, int column, const QStringList& texts)
{
    Cell(row, column)->setData(kListRole, texts);
}

QStringList Grid::List(int row, int column) const
{
    const QVariant own = Cell(row, column)->data(kListRole);
    return own.isValid() ? own.toStringList() : At(column).list;
}

void Grid::setColumnTip(int column, const QString& tip)
{
    At(column).tip = tip;
    DressColumn(column);
}

void Grid::setColumnWidths(const QList<int>& twips)
{
    for (int column = 0; column < twips.size(); ++column)
        setColumnWidth(column, TwipsToPixels(twips[column]));
}

void Grid::setColumnAlignment(int column, Qt::Alignment alignment)
{
    At(column).alignment = alignment;
    DressColumn(column);
}

int Grid::AddRow(const QStringList& texts)
{
    return InsertRowBefore(rowCount(), texts);
}

int Grid::InsertRowBefore(int row, const QStringList& texts)
{
    const int at = qBound(0, row, rowCount());
    insertRow(at);
    for (int column = 0; column < qMin<int>(columnCount(), static_cast<int>(texts.size()));
         ++column)
        setText(at, column, texts[column]);
    return at;
}

QTableWidgetItem* Grid::Cell(int row, int column) const
{
    QTableWidgetItem* cell = item(row, column);
    if (!cell) {
        cell = new QTableWidgetItem;
        Dress(cell, column);
        const_cast<Grid*>(this)->setItem(row, column, cell);
    }
    return cell;
}

void Grid::Dress(QTableWidgetItem* cell, int column) const
{
    const Column& told = At(column);
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    switch (told.kind) {
    case ColumnKind::ReadOnly:
        break;
    case ColumnKind::Fixed:
        flags = Qt::ItemIsEnabled;
        break;
    case ColumnKind::Whole:
    case ColumnKind::Decimal:
        flags |= Qt::ItemIsEditable;
        alignment = Qt::AlignRight | Qt::AlignVCenter;
        break;
    case ColumnKind::Text:
    case ColumnKind::List:
        flags |= Qt::ItemIsEditable;
        break;
    case ColumnKind::Check:
        flags |= Qt::ItemIsUserCheckable;
        break;
    }
    if (told.kind != ColumnKind::Check)
        cell->setData(Qt::CheckStateRole, QVariant());
    else if (!cell->data(Qt::CheckStateRole).isValid())
        cell->setCheckState(Qt::Unchecked);
    if (cell->data(kReadOnlyRole).toBool())
        flags &= ~(Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
    cell->setFlags(flags);
    cell->setTextAlignment(told.alignment.value_or(alignment));
    cell->setToolTip(told.tip);
}

void Grid::DressColumn(int column)
{
    for (int row = 0; row < rowCount(); ++row)
        Dress(Cell(row, column), column);
}

QString Grid::Text(int row, int column) const
{
    return Cell(row, column)->text();
}

void Grid::setText(int row, int column, const QString& text)
{
    Cell(row, column)->setText(text);
}

bool Grid::IsChecked(int row, int column) const
{
    return Cell(row, column)->checkState() == Qt::Checked;
}

void Grid::setChecked(int row, int column, bool on)
{
    Cell(row, column)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
}

void Grid::setAllChecked(int column, bool on, bool respectGuard)
{
    for (int row = 0; row < rowCount(); ++row) {
        if (!respectGuard || MayEdit(row, column))
            setChecked(row, column, on);
    }
}

int Grid::CheckedCount(int column) const
{
    int count = 0;
    for (int row = 0; row < rowCount(); ++row)
        count += IsChecked(row, column) ? 1 : 0;
    return count;
}

void Grid::setCellReadOnly(int row, int column, bool readOnly)
{
    QTableWidgetItem* cell = Cell(row, column);
    cell->setData(kReadOnlyRole, readOnly);
    Dress(cell, column);
}

void Grid::setCellColour(int row, int column, const QColor& colour)
{
    QTableWidgetItem* cell = Cell(row, column);
    const QVariant ownInk = cell->data(kTextColourRole);
    if (!colour.isValid()) {
        cell->setData(Qt::BackgroundRole, QVariant());
        cell->setData(Qt::ForegroundRole, ownInk);
        return;
    }
    cell->setBackground(colour);
    if (!ownInk.isValid())
        cell->setForeground(InkOn(colour));
}

QColor Grid::CellColour(int row, int column) const
{
    const QVariant colour = Cell(row, column)->data(Qt::BackgroundRole);
    return colour.isValid() ? colour.value<QBrush>().color() : QColor();
}

void Grid::setRowTextColour(int row, const QColor& colour)
{
    for (int column = 0; column < columnCount(); ++column) {
        QTableWidgetItem* cell = Cell(row, column);
        const QVariant ink = colour.isValid() ? QVariant(QBrush(colour)) : QVariant();
        cell->setData(kTextColourRole, ink);
        cell->setData(Qt::ForegroundRole, ink);
    }
}

QColor Grid::RowTextColour(int row) const
{
    const QVariant ink = columnCount() > 0 ? Cell(row, 0)->data(kTextColourRole) : QVariant();
    return ink.isValid() ? ink.value<QBrush>().color() : QColor();
}

bool Grid::MayEdit(int row, int column) const
{
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount())
        return false;
    const Qt::ItemFlags flags = Cell(row, column)->flags();
    if (!(flags & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable)))
        return false;
    return !m_editGuard || m_editGuard(row, column);
}

void Grid::ShowRow(int row)
{
    setCurrentCell(row, qMax(0, currentColumn()));
    scrollToItem(Cell(row, qMax(0, currentColumn())));
}

bool Grid::EndEdit()
{
    return m_delegate->EndEdit();
}

bool Grid::IsEditing() const
{
    return m_delegate->Editor() != nullptr;
}

Grid::EditVerdict Grid::Check(int row, int column, QString& text)
{
    const ColumnKind kind = At(column).kind;
    if ((kind == ColumnKind::Whole || kind == ColumnKind::Decimal) && !text.trimmed().isEmpty()) {
        if (!IsNumberFor(kind, text)) {
            QApplication::beep();
            return EditVerdict::StaysOpen;
        }
        text = text.trimmed();
        text.replace('.', gConvert().DecimalSign()).replace(',', gConvert().DecimalSign());
    }
    return m_editCheck ? m_editCheck(row, column, text) : EditVerdict::Accepted;
}

bool Grid::Enter(int row, int column, QString text)
{
    if (Check(row, column, text) != EditVerdict::Accepted)
        return false;
    setText(row, column, text);
    emit CellEdited(row, column);
    return true;
}

QString Grid::CellForCopy(int row, int column) const
{
    if (At(column).kind == ColumnKind::Check)
        return IsChecked(row, column) ? "1" : "0";
    return Text(row, column);
}

QString Grid::BlockText(int top, int left, int bottom, int right) const
{
    QStringList lines;
    for (int row = top; row <= bottom; ++row) {
        QStringList cells;
        for (int column = left; column <= right; ++column) {
            if (!isColumnHidden(column))
                cells.append(CellForCopy(row, column));
        }
        lines.append(cells.join('\t'));
    }
    return lines.join("\r\n");
}

QString Grid::SelectedText() const
{
    const QList<QTableWidgetSelectionRange> ranges = selectedRanges();
    if (!ranges.isEmpty()) {
        // One block, also when cells that cannot be selected cut it into pieces.
        int top = rowCount();
        int left = columnCount();
        int bottom = -1;
        int right = -1;
        for (const QTableWidgetSelectionRange& range : ranges) {
            top = qMin(top, range.topRow());
            left = qMin(left, range.leftColumn());
            bottom = qMax(bottom, range.bottomRow());
            right = qMax(right, range.rightColumn());
        }
        return BlockText(top, left, bottom, right);
    }
    if (currentRow() < 0)
        return QString();
    return BlockText(currentRow(), currentColumn(), currentRow(), currentColumn());
}

QString Grid::AllText() const
{
    return BlockText(0, 0, rowCount() - 1, columnCount() - 1);
}

void Grid::Copy() const
{
    QApplication::clipboard()->setText(SelectedText());
}

QList<QStringList> Grid::SplitCells(const QString& text)
{
    QString lines = text;
    lines.replace("\r\n", "\n").replace('\r', '\n');
    if (lines.endsWith('\n'))
        lines.chop(1);
    QList<QStringList> cells;
    if (lines.isEmpty())
        return cells;
    for (const QString& line : lines.split('\n'))
        cells.append(line.split('\t'));
    return cells;
}

bool Grid::Paste(const QString& text, int row, int column)
{
    const QList<QStringList> lines = SplitCells(text);
    for (const QStringList& line : lines) {
        if (line.join(QString()).trimmed().isEmpty())
            return false;
        if (row >= rowCount()) {
            if (!m_pasteAddsRows)
                return false;
            AddRow();
        }
        int target = column;
        for (const QString& value : line) {
            while (target < columnCount() && isColumnHidden(target))
                ++target;
            if (target >= columnCount())
                break;
            if (MayEdit(row, target)) {
                if (At(target).kind == ColumnKind::Check) {
                    const QString mark = value.trimmed();
                    setChecked(row, target, mark == "1" || mark == "-1");
                    emit CellEdited(row, target);
                } else if (At(target).kind == ColumnKind::List &&
                           !List(row, target).contains(value)) {
                    QApplication::beep();
                    return false;
                } else if (!Enter(row, target, value)) {
                    return false;
                }
            }
            ++target;
        }
        ++row;
    }
    return true;
}

void Grid::ToggleSelectedChecks(int column)
{
    QList<int> rows;
    for (const QModelIndex& index : selectedIndexes()) {
        if (index.column() == column)
            rows.append(index.row());
    }
    if (!rows.contains(currentRow()))
        rows = {currentRow()};
    const bool on = !IsChecked(currentRow(), column);
    for (const int row : rows) {
        if (!MayEdit(row, column) || IsChecked(row, column) == on)
            continue;
        setChecked(row, column, on);
        emit CellEdited(row, column);
    }
}

void Grid::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy)) {
        Copy();
        return;
    }
    if (event->matches(QKeySequence::Paste)) {
        if (currentRow() >= 0)
            Paste(QApplication::clipboard()->text(), currentRow(), currentColumn());
        return;
    }
    if (event->key() == Qt::Key_Space && currentRow() >= 0 &&
        At(currentColumn()).kind == ColumnKind::Check) {
        ToggleSelectedChecks(currentColumn());
        return;
    }
    QTableWidget::keyPressEvent(event);
}

QItemSelectionModel::SelectionFlags Grid::selectionCommand(const QModelIndex& index,
                                                           const QEvent* event) const
{
    if (index.isValid() && At(index.column()).kind == ColumnKind::Fixed)
        return QItemSelectionModel::NoUpdate;
    return QTableWidget::selectionCommand(index, event);
}
