#include "frame/Paths.h"

#include "frame/Platform.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

QString& TheTitle()
{
    static QString title = "Zandvoet";
    return title;
}

QString& TheProgramFolder()
{
    static QString folder;
    return folder;
}

QString WithOwnSeparators(QString path)
{
    return path.replace('\\', QDir::separator()).replace('/', QDir::separator());
}

QString WithBackslashes(QString path)
{
    return path.replace('/', '\\');
}

bool EndsInSeparator(const QString& path)
{
    return path.endsWith('\\') || path.endsWith(QDir::separator());
}

/// The entry of a folder with this name in another case; of several the first.
QString FindIgnoringCase(const QString& folder, const QString& name)
{
    const QStringList entries =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System, QDir::Name);
    const auto entry =
        std::find_if(entries.cbegin(), entries.cend(), [&name](const QString& candidate) {
            return candidate.compare(name, Qt::CaseInsensitive) == 0;
        });
    return entry == entries.cend() ? QString() : *entry;
}

QString Absolute(const QString& path)
{
    return QDir::toNativeSeparators(
        QDir::cleanPath(QDir::current().absoluteFilePath(WithOwnSeparators(path))));
}

QString RelativeText(const QString& path, const QString& folder)
{
    if (path.trimmed().isEmpty())
        return {};
    QString base = UncToDrive(WithOwnSeparators(folder));
    const QString absolute = ResolvePath(Absolute(UncToDrive(path)));
    if (base.isEmpty())
        return absolute;
    while (EndsInSeparator(base)) // what is left of a root is empty: everything lies below it
        base.chop(1);
    if (!absolute.startsWith(base, Qt::CaseInsensitive))
        return absolute;
    return ".\\" + WithBackslashes(absolute.mid(base.size() + 1));
}

/// None of the characters, no "." in front, not empty.
bool IsNameWithout(const QString& name, const QString& forbidden)
{
    if (name.isEmpty() || name.startsWith('.'))
        return false;
    return std::none_of(name.cbegin(), name.cend(),
                        [&forbidden](QChar character) { return forbidden.contains(character); });
}

QString WithoutEnding(const QString& path, const QString& ending)
{
    return path.endsWith(ending, Qt::CaseInsensitive) ? path.chopped(ending.size()) : path;
}

} // namespace

QString ApplicationTitle()
{
    return TheTitle();
}
void SetApplicationTitle(const QString& title)
{
    TheTitle() = title;
}

QString ProgramFolder()
{
    if (TheProgramFolder().isEmpty())
        TheProgramFolder() = QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
    return TheProgramFolder();
}

void SetProgramFolder(const QString& folder)
{
    TheProgramFolder() = folder;
}

QString ResolvePath(const QString& path)
{
    const QString own = WithOwnSeparators(path);
    if (!platform::HasCaseSensitiveFiles() || own.isEmpty() || QFileInfo::exists(own))
        return own;

    QString resolved = own.startsWith('/') ? "/" : "";
    bool found = true;
    const QStringList components = own.split('/', Qt::SkipEmptyParts);
    for (const QString& component : components) {
        QString name = component;
        if (found && !QFileInfo::exists(resolved + component)) {
            name = FindIgnoringCase(resolved.isEmpty() ? "." : resolved, component);
            if (name.isEmpty()) {
                found = false;
                name = component;
            }
        }
        resolved += name + '/';
    }
    if (!own.endsWith('/'))
        resolved.chop(1);
    return resolved;
}

bool FileExists(const QString& path)
{
    return QFileInfo(ResolvePath(path)).isFile();
}

bool FolderExists(const QString& path)
{
    return !path.isEmpty() && QFileInfo(ResolvePath(path)).isDir();
}

QString AbsolutePath(const QString& path)
{
    if (path.trimmed().isEmpty())
        return {};
    const QString absolute =
        path.startsWith('.') ? Absolute(AddBackslash(ProgramFolder()) + path) : Absolute(path);
    return ResolvePath(UncToDrive(absolute));
}

QString RelativePath(const QString& path)
{
    return RelativeText(path, ProgramFolder());
}

QString RelativeToFolder(const QString& path, const QString& folder)
{
    return RelativeText(path, folder);
}

QString UncToDrive(const QString& path)
{
    return platform::UncToDrive(path);
}

qsizetype LastSeparator(const QString& path)
{
    return qMax(path.lastIndexOf('\\'), path.lastIndexOf(QDir::separator()));
}

QString AddBackslash(const QString& path)
{
    return path.isEmpty() || EndsInSeparator(path) ? path : path + QDir::separator();
}

#ifdef Q_OS_WIN
QString ProgramFile(const QString& path)
{
    const QString withEnding = WithoutEnding(path, ".exe") + ".exe";
    return FileExists(withEnding) ? withEnding : path;
}

QString LibraryFile(const QString& path)
{
    return path;
}
#else
QString ProgramFile(const QString& path)
{
    const QString bare = WithoutEnding(path, ".exe");
    return FileExists(bare) ? ResolvePath(bare) : path;
}

QString LibraryFile(const QString& path)
{
    const QFileInfo library(WithOwnSeparators(WithoutEnding(path, ".dll")) + ".so");
    for (const QString& name : {library.fileName(), "lib" + library.fileName()}) {
        const QString candidate = library.dir().filePath(name);
        if (FileExists(candidate))
            return ResolvePath(candidate);
    }
    return path;
}
#endif

bool IsReadOnly(const QString& path)
{
    // The file's own mark, not what this user may do: the rules must hold for
    // an administrator, too.
    const QFileInfo info(ResolvePath(path));
    return info.exists() && !info.permissions().testFlag(QFile::WriteOwner);
}

bool SetReadOnly(const QString& path, bool readOnly)
{
    QFile file(ResolvePath(path));
    QFile::Permissions permissions = file.permissions();
    const QFile::Permissions writing =
        QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup | QFile::WriteOther;
    if (readOnly)
        permissions &= ~writing;
    else
        permissions |= QFile::WriteOwner | QFile::WriteUser;
    return file.setPermissions(permissions);
}

QString GetTempFolder()
{
    return AddBackslash(QDir::toNativeSeparators(QDir::tempPath()));
}

QString GetUserName()
{
    const QString name = platform::UserName();
    return name.isEmpty() ? "onbekend" : name;
}

bool IsValidName(const QString& name)
{
    return IsNameWithout(name, "_\\/:*?<>|\"");
}

bool IsValidDbName(const QString& name)
{
    return IsNameWithout(name, "!.[]`'\\/:*?<>|\"");
}
