#pragma once

#include "database/WerkmapFixture.h"
#include "navigation/NavTree.h"
#include "navigation/TreeChanges.h"

#include <QDirIterator>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

/// Calculations of two locations: "som" with a profile at both, "som" without a
/// profile at one, and "rest" at one.
class TreeChangesTest : public WerkmapTest {
protected:
    TreeChangesTest()
    {
        MaakBerekening("som", "Plas-01", "Gras 1op3");
        MaakBerekening("som", "Plas-02", "Gras 1op3");
        MaakBerekening("som", "Plas-02", "");
        MaakBerekening("rest", "Plas-01", "Gras 1op3");
        MaakMapVanRing("Ring Oost", "Overloop");
        tree.setTreeViewObject(&view);
        Bouw();
    }
    void Bouw()
    {
        for (const char* root :
             {"ROOTLOCATIES", "ROOTDIJKRINGEN", "ROOTPROFIELEN", "ROOTBEREKENINGEN"})
            tree.RemoveRoot(root);
        auto* locaties = tree.AddRoot("ROOTLOCATIES", "Locaties", false);
        tree.addLocatiesFromDb2Root(locaties, Locaties());
        tree.addProfielenFromDb2Locaties(locaties);
        tree.addBerekeningenFromWerkmap2Locaties(locaties, db.WerkMap());
        auto* ringen = tree.AddRoot("ROOTDIJKRINGEN", "Dijkringen", false);
        tree.addDijkringenFromDb2Root(ringen, db.GetDijkringNamen());
        tree.addBerekeningenFromWerkmap2Dijkringen(ringen, db.WerkMap());
        tree.addProfielenFromDb2Root(tree.AddRoot("ROOTPROFIELEN", "Profielen", false),
                                     db.GetProfielNamen());
        tree.addBerekeningen2Root(tree.AddRoot("ROOTBEREKENINGEN", "Berekeningen", true), locaties);
    }
    QTreeWidgetItem* Node(const QString& key)
    {
        auto* node = tree.GetNodeByKey(key);
        EXPECT_NE(node, nullptr) << key.toStdString();
        return node;
    }
    bool Heeft(const QString& key) const { return tree.GetNodeByKey(key) != nullptr; }
    std::vector<std::string> Namen()
    {
        std::vector<std::string> namen;
        for (const auto& rij : Lees("SELECT Naam FROM Berekening ORDER BY Naam"))
            namen.push_back(rij[0]);
        return namen;
    }
    /// The nodes of the tree as "key|text".
    QStringList Knopen() const
    {
        QStringList lines;
        for (QTreeWidgetItemIterator node(const_cast<QTreeWidget*>(&view)); *node; ++node)
            lines << NavTree::Key(*node) + "|" + (*node)->text(0);
        return lines;
    }
    /// Everything that a change could touch, as text.
    QStringList Toestand()
    {
        QStringList lines = Knopen();
        QDirIterator folders(db.WerkMap(),
                             QDir::Dirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        QStringList paths;
        while (folders.hasNext())
            paths << folders.next();
        paths.sort();
        lines += paths;
        for (const char* tabel : {"Berekening", "Resultaat", "Dijkring", "Locatie_Profiel",
                                  "Locatie", "Profielen", "Geometrie", "Boezempeilstatistiek"})
            for (const auto& rij : Lees(std::string("SELECT * FROM ") + tabel))
                for (const auto& veld : rij)
                    lines << tabel + QString(": ") + QString::fromStdString(veld);
        return lines;
    }
    /// The tree holds what it would hold if the database were opened anew, whatever the order
    /// and the case of keys.
    void ExpectTreeIsTheTruth()
    {
        const auto sorted = [this] {
            QStringList lines;
            for (const QString& line : Knopen())
                lines << line.section('|', 0, 0).toLower() + line.section('|', 1);
            lines.sort();
            return lines;
        };
        const QStringList shown = sorted();
        Bouw();
        EXPECT_EQ(shown, sorted());
    }

    QTreeWidget view;
    NavTree tree{db};
    TreeChanges changes{tree, db};
};
