#pragma once

#include <QColor>
#include <QStringList>
#include <QTableWidget>

#include <functional>
#include <optional>

class GridDelegate;

/// The grid of all forms: a table whose columns say what their cells are.
///
/// Rows and columns count from 0; the headers stand outside that count. Nothing
/// can be edited until a column is given a kind:
///
///     grid->setHeaders({"Locatie", "Profiel", "Berekenen"});
///     grid->setColumnKind(2, Grid::ColumnKind::Check);
///     const int row = grid->AddRow({"Noordzijde", "Groene dijk"});
///     grid->setChecked(row, 2, true);
///
/// What a user enters passes the edit check before it stands in the cell; values
/// set by the program do not. Typing, F2 or a double click opens a cell, Enter and
/// Tab close it, Escape gives the old value back, Space flips a check cell.
/// Control-C copies the selected cells as lines of tab-separated text and
/// Control-V writes such text from the current cell on, through the same checks.
/// Tab leaves the grid, as it leaves any control.
///
/// Usable in .ui files by promotion of a QTableWidget.
class Grid : public QTableWidget {
    Q_OBJECT

public:
    enum class ColumnKind {
        ReadOnly, ///< shown and copied
        Fixed,    ///< a heading for its row: not edited, not selected, not pasted into
        Text,
        Whole,   ///< whole numbers: other keys and texts are refused
        Decimal, ///< numbers with the system's decimal sign
        Check,
        List ///< one of the texts given with setList
    };

    enum class EditVerdict {
        Accepted,
        StaysOpen, ///< refused, the user corrects it
        Restored   ///< refused, the cell takes its old value
    };
    /// May change `text` into what the cell will show. Messages to the user are
    /// the check's own business.
    using EditCheck = std::function<EditVerdict(int row, int column, QString& text)>;
    /// Whether the user may change this cell now; asked on top of the cell's own
    /// state, for check cells too.
    using EditGuard = std::function<bool(int row, int column)>;

    explicit Grid(QWidget* parent = nullptr);

    /// Sets the number of columns and their headers; a "|" breaks a header's line.
    void setHeaders(const QStringList& headers);
    void setColumnKind(int column, ColumnKind kind);
    ColumnKind Kind(int column) const;
    /// The choices of a List column.
    void setList(int column, const QStringList& texts);
    /// The choices of one cell; they go before those of its column.
    void setCellList(int row, int column, const QStringList& texts);
    QStringList List(int row, int column) const;
    /// Shown as tool tip on every cell of the column.
    void setColumnTip(int column, const QString& tip);
    /// Widths from the first column on, in twips (see FormUnits.h).
    void setColumnWidths(const QList<int>& twips);
    void setColumnAlignment(int column, Qt::Alignment alignment);
    void setEditCheck(EditCheck check) { m_editCheck = std::move(check); }
    void setEditGuard(EditGuard guard) { m_editGuard = std::move(guard); }
    /// Text pasted below the last row makes new rows. Off at first.
    void setPasteAddsRows(bool on) { m_pasteAddsRows = on; }

    /// Returns the new row.
    int AddRow(const QStringList& texts = {});
    int InsertRowBefore(int row, const QStringList& texts = {});
    /// Removes all rows; headers and kinds stay.
    void ClearRows() { setRowCount(0); }

    QString Text(int row, int column) const;
    void setText(int row, int column, const QString& text);
    bool IsChecked(int row, int column) const;
    void setChecked(int row, int column, bool on);
    /// All rows of a check column; `respectGuard` passes over cells that the user could not change.
    void setAllChecked(int column, bool on, bool respectGuard);
    int CheckedCount(int column) const;

    void setCellReadOnly(int row, int column, bool readOnly);
    /// Background; an invalid colour takes it off. The text is kept readable on it.
    void setCellColour(int row, int column, const QColor& colour);
    QColor CellColour(int row, int column) const;
    void setRowTextColour(int row, const QColor& colour);
    QColor RowTextColour(int row) const;
    /// Whether the user may change the cell, everything considered.
    bool MayEdit(int row, int column) const;

    /// Makes the row current and brings it into view; the column stays.
    void ShowRow(int row);
    /// Closes an open edit as Enter does. False when its value was refused: a
    /// form that is about to use the cells stops then.
    bool EndEdit();
    bool IsEditing() const;

    /// The selected block (the current cell when nothing is selected): tabs
    /// between cells, CR LF behind each row but the last. Checks are 1 or 0.
    QString SelectedText() const;
    /// All rows in the same form.
    QString AllText() const;
    void Copy() const;
    /// Writes tab-separated text from the given cell on; true when every line
    /// was taken. Stops at an empty line, at the last row (see
    /// setPasteAddsRows) and at the first value that the check refuses. Cells
    /// that cannot be edited are passed over.
    bool Paste(const QString& text, int row, int column);
    /// Clipboard or file text as cells: lines end in CR LF, LF or CR.
    static QList<QStringList> SplitCells(const QString& text);

signals:
    /// The user changed this cell and the check accepted it.
    void CellEdited(int row, int column);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

private:
    friend class GridDelegate;

    struct Column {
        ColumnKind kind = ColumnKind::ReadOnly;
        QStringList list;
        QString tip;
        std::optional<Qt::Alignment> alignment;
    };

    const Column& At(int column) const;
    Column& At(int column);
    QTableWidgetItem* Cell(int row, int column) const;
    void Dress(QTableWidgetItem* cell, int column) const;
    void DressColumn(int column);
    /// What the kind of the column says, then the form's check.
    EditVerdict Check(int row, int column, QString& text);
    /// True when the user's text now stands in the cell.
    bool Enter(int row, int column, QString text);
    void ToggleSelectedChecks(int column);
    QString CellForCopy(int row, int column) const;
    QString BlockText(int top, int left, int bottom, int right) const;

    GridDelegate* m_delegate;
    QList<Column> m_columns;
    EditCheck m_editCheck;
    EditGuard m_editGuard;
    bool m_pasteAddsRows = false;
};
