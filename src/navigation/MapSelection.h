#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

class NavTree;
class QTreeWidgetItem;

/// The locations that the user has selected, by name, in the order in which they
/// were added. Map and tree show the same selection; the dialogs that start
/// a batch begin with it.
///
/// Names compare without regard to case, as in the database, and occur once.
class MapSelection {
public:
    /// Nothing is selected any more. The tree keeps its colours until
    /// ColorSelectionInTreeView.
    void ResetSelectie();
    /// Gives the nodes of the selected locations the background colour that
    /// says "selected", and the other locations their normal one. `spoken` is what
    /// a screen reader adds to a selected name.
    void ColorSelectionInTreeView(const NavTree& tree, const QString& spoken = {}) const;
    /// What the dialogs go by: the node has that background colour (65535, yellow).
    [[nodiscard]] static bool IsPreselected(const QTreeWidgetItem* locatie);

    void AddALocation2Selection(const QString& naam);
    void RemoveALocationFromSelection(const QString& naam);
    /// Of records with the field OMSCHR: those of the database and those of
    /// the map's location layer.
    template <typename Records>
    void AddLocationsFromRecordset2Selection(Records& records)
    {
        for (; !records.EndOfFile(); records.MoveNext())
            AddALocation2Selection(QString::fromStdString(records.Get("OMSCHR").AsTextOr("")));
    }

    [[nodiscard]] bool HasSelectedNodes() const { return !m_namen.isEmpty(); }
    [[nodiscard]] int AantalLocaties() const { return static_cast<int>(m_namen.size()); }
    /// `i` counts from 1; empty outside 1 to AantalLocaties.
    [[nodiscard]] QString GetLocatieNaam(int i) const { return m_namen.value(i - 1); }
    [[nodiscard]] const QStringList& Namen() const { return m_namen; }
    [[nodiscard]] bool IsSelectedLocation(const QString& naam) const;

    /// The expression that finds the selected locations in the layer of
    /// locations, and those of them with a quality mark. Empty without a
    /// selection: nothing is to be searched then. Apostrophes in
    /// names are not doubled; a name that has one spoils the expression.
    [[nodiscard]] QString SearchExpression() const;
    [[nodiscard]] QString SearchExpressionWithKwal(int kwal) const;

private:
    QStringList m_namen;
    QSet<QString> m_index; // lower-cased
};
