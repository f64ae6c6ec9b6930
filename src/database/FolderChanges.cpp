#include "database/FolderChanges.h"

#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"

#include <QDir>
#include <QFileInfo>

namespace {

const QString kNote = QStringLiteral(".wijzigingen");
const QString kAside = QStringLiteral(".verwijderd-");
constexpr int kPatience = 2000; // ms, for another program's change to end

QString InFolder(const QString& werkmap, const QString& name)
{
    return QDir(ResolvePath(werkmap)).filePath(name);
}

/// With all that is in it; of a link to a folder elsewhere only the link.
void DeleteForGood(const QString& folder)
{
    const QFileInfo info(folder);
    const bool isLink = info.isSymbolicLink() || info.isJunction();
    if (!isLink)
        gFso().DeleteFolder(folder, true);
    else if (!QFile::remove(folder) && !QDir().rmdir(folder))
        RaiseFout(13, {folder});
}

/// Backwards, since a later move may stand on an earlier one. Whether all are undone.
bool Undo(const QList<std::pair<QString, QString>>& moves)
{
    bool complete = true;
    for (auto move = moves.crbegin(); move != moves.crend(); ++move) {
        try {
            if (gFso().FolderExists(move->second))
                gFso().Move(move->second, move->first);
        } catch (const std::exception&) {
            complete = false; // the failure that brought us here is the one to tell
        }
    }
    return complete;
}

/// The moves of a note. A last line that was cut off stands for a move that was not made.
QList<std::pair<QString, QString>> ReadNote(QFile& note, const QString& werkmap)
{
    QList<std::pair<QString, QString>> moves;
    for (QByteArray line = note.readLine(); line.endsWith('\n'); line = note.readLine()) {
        const QStringList names = QString::fromUtf8(line.chopped(1)).split('\t');
        if (names.size() == 2)
            moves.append({werkmap + names[0], werkmap + names[1]});
    }
    return moves;
}

} // namespace

void FolderChanges::UndoInterrupted(const QString& werkmap)
{
    const QDir folder(ResolvePath(werkmap));
    const QStringList left =
        folder.entryList({kNote, kAside + "*"}, QDir::AllEntries | QDir::Hidden | QDir::System);
    if (left.isEmpty())
        return;
    QLockFile lock(InFolder(werkmap, kNote + ".lock"));
    if (!lock.tryLock())
        return;
    if (QFile note(InFolder(werkmap, kNote)); note.open(QIODevice::ReadOnly)) {
        if (!Undo(ReadNote(note, werkmap)))
            return; // the next opener tries again
        note.close();
        note.remove();
    }
    for (const QString& name :
         folder.entryList({kAside + "*"}, QDir::Dirs | QDir::Hidden | QDir::System)) {
        try {
            DeleteForGood(folder.filePath(name));
        } catch (const std::exception&) {
            // Somebody still has a file of it open; the next opener tries again.
        }
    }
}

FolderChanges::FolderChanges(const QString& werkmap)
    : m_werkmap(werkmap),
      m_lock(InFolder(werkmap, kNote + ".lock")),
      m_note(InFolder(werkmap, kNote))
{}

FolderChanges::~FolderChanges()
{
    if (Undo(m_moves))
        Keep();
}

void FolderChanges::Begin()
{
    if (!m_lock.isLocked() && !m_lock.tryLock(kPatience) &&
        m_lock.error() == QLockFile::LockFailedError)
        RaiseRuntimeFout(RuntimeFout::FileAccess,
                         "Een ander programma verandert op dit moment mappen in " + m_werkmap +
                             ". Probeer het zo dadelijk nog eens.");
}

void FolderChanges::Move(const QString& from, const QString& to)
{
    // A full disk must not keep anybody from deleting: the note is then left out.
    if (m_note.isOpen() || m_note.open(QIODevice::WriteOnly)) {
        m_note.write(
            (from.mid(m_werkmap.size()) + '\t' + to.mid(m_werkmap.size()) + '\n').toUtf8());
        m_note.flush();
    }
    gFso().Move(from, to);
    m_moves.append({from, to});
}

void FolderChanges::Rename(const QString& from, const QString& to)
{
    if (!gFso().FolderExists(from))
        return;
    Begin();
    Move(from, to);
}

QString FolderChanges::AsideName()
{
    for (;;) {
        const QString path = gFso().BuildPath(m_werkmap, kAside + QString::number(++m_lastAside));
        if (!QFileInfo::exists(path))
            return path;
    }
}

void FolderChanges::Remove(const QString& path)
{
    if (!gFso().FolderExists(path))
        return;
    Begin();
    const QString aside = AsideName();
    try {
        Move(path, aside);
    } catch (const std::exception&) {
        RaiseFout(13, {path});
    }
    m_aside << aside;
}

void FolderChanges::Keep()
{
    m_moves.clear();
    if (m_note.isOpen()) {
        m_note.close();
        m_note.remove();
    }
    m_lock.unlock();
}

void FolderChanges::Commit()
{
    Keep();
    QString left;
    for (const QString& aside : std::exchange(m_aside, {})) {
        try {
            DeleteForGood(aside);
        } catch (const std::exception&) {
            left = aside;
        }
    }
    if (!left.isEmpty())
        RaiseFout(13, {left});
}
