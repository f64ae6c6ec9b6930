#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

/// Renames and removals of folders in the work folder that all happen, or none:
/// what was not committed is undone at the end.
///
///     FolderChanges folders(werkmap);
///     folders.Remove(map);              // out of sight, not gone yet
///     database.DeleteBerekening(naam);  // may raise: the folder comes back
///     folders.Commit();                 // gone
///
/// A folder that is to be removed is first moved, within the work folder, to a name
/// that begins with a dot and that therefore no location can have. This
/// fails, with nothing changed, where a deletion would stop half-way.
class FolderChanges {
public:
    explicit FolderChanges(const QString& werkmap) : m_werkmap(werkmap) {}
    ~FolderChanges();
    FolderChanges(const FolderChanges&) = delete;
    FolderChanges& operator=(const FolderChanges&) = delete;

    /// A folder that is missing is passed over. An existing target is an error.
    void Rename(const QString& from, const QString& to);
    /// With all that is in it, read-only files too. A folder that is missing is
    /// passed over. Error 13 with the path.
    void Remove(const QString& path);
    /// Error 13 when the content of a removed folder cannot be deleted: it is out
    /// of the way, and what is left of it stands under the path that is told.
    void Commit();

private:
    QString AsideName();

    QString m_werkmap;
    QList<std::pair<QString, QString>> m_moves; // from, to
    QStringList m_aside;
    int m_lastAside = 0; // number in the name of the last one
};
