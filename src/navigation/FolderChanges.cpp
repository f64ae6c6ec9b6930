#include "navigation/FolderChanges.h"

#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

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

} // namespace

FolderChanges::~FolderChanges()
{
    for (auto move = m_moves.crbegin(); move != m_moves.crend(); ++move) {
        try {
            gFso().Move(move->second, move->first);
        } catch (const std::exception&) {
            // The failure that brought us here is the one to tell.
        }
    }
}

void FolderChanges::Rename(const QString& from, const QString& to)
{
    if (!gFso().FolderExists(from))
        return;
    gFso().Move(from, to);
    m_moves.append({from, to});
}

QString FolderChanges::AsideName()
{
    for (;;) {
        const QString path =
            gFso().BuildPath(m_werkmap, ".verwijderd-" + QString::number(++m_lastAside));
        if (!QFileInfo::exists(path))
            return path;
    }
}

void FolderChanges::Remove(const QString& path)
{
    if (!gFso().FolderExists(path))
        return;
    const QString aside = AsideName();
    try {
        Rename(path, aside);
    } catch (const std::exception&) {
        RaiseFout(13, {path});
    }
    m_aside << aside;
}

void FolderChanges::Commit()
{
    m_moves.clear();
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
