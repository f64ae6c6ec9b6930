#pragma once

#include <QString>
#include <QStringList>

class NavTree;
class QLMIniFile;

/// Which branches of the tree stood open, per database, in section `BOOMTAKKEN` of the
/// program's ini. The twenty databases used last are remembered, and at
/// most a few hundred branches of each.
class OpenBranches {
public:
    explicit OpenBranches(QLMIniFile& ini) : m_ini(ini) {}

    /// Nothing for a database that is not remembered.
    QStringList Read(const QString& database);
    void Write(const QString& database, const QStringList& keys);

    /// The keys of the open branches, those above others first.
    static QStringList OfTree(const NavTree& tree);
    /// Opens these branches; keys that are not in the tree are passed over.
    static void Apply(const NavTree& tree, const QStringList& keys);

private:
    QLMIniFile& m_ini;
};
