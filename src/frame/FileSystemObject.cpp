#include "frame/FileSystemObject.h"

#include "frame/Fouten.h"
#include "frame/Paths.h"
#include "frame/QLMFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

namespace {

[[noreturn]] void Refuse(const QString& what, const QString& path)
{
    RaiseRuntimeFout(RuntimeFout::FileAccess, what + "|" + path);
}

QStringList Names(const QString& folder, QDir::Filters filters)
{
    if (!FolderExists(folder))
        return {};
    return QDir(ResolvePath(folder))
        .entryList(filters | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::Name | QDir::IgnoreCase);
}

} // namespace

QString FileSystemObject::BuildPath(const QString& folder, const QString& name) const
{
    return AddBackslash(folder) + name;
}

bool FileSystemObject::FileExists(const QString& path) const
{
    return ::FileExists(path);
}

bool FileSystemObject::FolderExists(const QString& path) const
{
    return ::FolderExists(path);
}

void FileSystemObject::CreateFolder(const QString& path) const
{
    if (!QDir().mkpath(ResolvePath(path)))
        Refuse("De map kan niet worden gemaakt.", path);
}

void FileSystemObject::DeleteFile(const QString& path, bool force) const
{
    if (force)
        SetReadOnly(path, false);
    else if (IsReadOnly(path))
        Refuse("Het bestand is alleen-lezen.", path);
    QFile file(ResolvePath(path));
    if (!file.remove())
        Refuse("Het bestand kan niet worden verwijderd.", path);
}

void FileSystemObject::DeleteFolder(const QString& path, bool force) const
{
    const QString folder = ResolvePath(path);
    if (!::FolderExists(folder))
        Refuse("De map bestaat niet.", path);
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::System,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        if (force)
            SetReadOnly(file, false);
        else if (IsReadOnly(file))
            Refuse("Het bestand is alleen-lezen.", file);
    }
    if (!QDir(folder).removeRecursively())
        Refuse("De map kan niet worden verwijderd.", path);
}

void FileSystemObject::CopyFile(const QString& source, const QString& target) const
{
    const QString from = ResolvePath(source);
    const QString to = ResolvePath(target);
    if (from == to)
        Refuse("Het bestand kan niet naar zichzelf worden gekopieerd.", target);
    if (::FileExists(to) && (IsReadOnly(to) || !QFile::remove(to)))
        Refuse("Het bestand kan niet worden vervangen.", target);
    if (!QFile::copy(from, to))
        Refuse("Het bestand kan niet worden gekopieerd.", source);
}

void FileSystemObject::Move(const QString& source, const QString& target) const
{
    const QString from = ResolvePath(source);
    QString to = ResolvePath(target);
    if (to == from) // another case of the same name: a new name, no existing target
        to = QFileInfo(from).dir().filePath(QLMFile().GetFile(target));
    if (QFileInfo::exists(to) || !QDir().rename(from, to))
        Refuse("De naam kan niet worden gewijzigd.", source);
}

QStringList FileSystemObject::Files(const QString& folder) const
{
    return Names(folder, QDir::Files);
}

QStringList FileSystemObject::SubFolders(const QString& folder) const
{
    return Names(folder, QDir::Dirs);
}
