#pragma once

#include <QFile>
#include <QList>
#include <QLockFile>
#include <QString>
#include <QStringList>

#include <utility>

/// Renames and removals of folders in the work folder that all happen, or none:
/// what was not committed is undone at the end.
///
///     FolderChanges folders(werkmap);
///     folders.Remove(map);              // out of sight, not gone yet
///     database.DeleteBerekening(naam);  // may raise: the folder comes back
///     rows.Commit();
///     folders.Keep();                   // from here there is no way back
///     folders.Commit();                 // gone
///
/// A folder that is to be removed is first moved, within the work folder, to a name
/// that begins with a dot and that therefore no location can have. This
/// fails, with nothing changed, where a deletion would stop half-way.
///
/// Each move is noted in a small file of the work folder before it is made, so that
/// the next opener can undo what a killed program left half-way. Only a program
/// killed in the instant between the commit of the rows and Keep leaves folders
/// behind that do not match the rows.
class FolderChanges {
public:
    /// Puts back what a killed program moved and did not keep, and deletes what one
    /// did not get round to deleting. Leaves alone what a living program is at. Never raises:
    /// what cannot be put back stays where it is.
    static void UndoInterrupted(const QString& werkmap);

    explicit FolderChanges(const QString& werkmap);
    ~FolderChanges();
    FolderChanges(const FolderChanges&) = delete;
    FolderChanges& operator=(const FolderChanges&) = delete;

    /// Both paths below the work folder. A folder that is missing is passed over. An
    /// existing target is an error, and so is another program that is changing folders here.
    void Rename(const QString& from, const QString& to);
    /// With all that is in it, read-only files too. A folder that is missing is
    /// passed over. Error 13 with the path.
    void Remove(const QString& path);
    /// What was renamed and removed stands, whatever happens from here.
    void Keep();
    /// Error 13 when the content of a removed folder cannot be deleted: it is out
    /// of the way, and what is left of it stands under the path that is told.
    void Commit();

private:
    void Begin();
    void Move(const QString& from, const QString& to);
    QString AsideName();

    QString m_werkmap;
    QLockFile m_lock; // held from the first move to the end
    QFile m_note;
    QList<std::pair<QString, QString>> m_moves; // from, to
    QStringList m_aside;
    int m_lastAside = 0; // number in the name of the last one
};
