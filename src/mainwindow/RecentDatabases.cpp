#include "mainwindow/RecentDatabases.h"

#include "frame/Paths.h"
#include "frame/QLMIniFile.h"

namespace {

constexpr auto kSection = "Randvoorwaarden";

QString Key(int number)
{
    return "recentRvwFile" + QString::number(number);
}

void Remove(QStringList& paths, const QString& path)
{
    paths.removeIf([&](const QString& other) {
        return other.compare(path, Qt::CaseInsensitive) == 0; // file names as Windows compares them
    });
}

void Save(QLMIniFile& ini, const QStringList& paths)
{
    for (int i = 0; i < kRecentDatabases; ++i)
        ini.SaveString(kSection, Key(i + 1), i < paths.size() ? RelativePath(paths[i]) : QString());
}

} // namespace

QStringList LoadRecentDatabases(QLMIniFile& ini)
{
    QStringList paths;
    for (int number = 1; number <= kRecentDatabases; ++number) {
        const QString path = AbsolutePath(ini.GetString(kSection, Key(number)).trimmed());
        if (!path.isEmpty())
            paths.append(path);
    }
    return paths;
}

void AddRecentDatabase(QLMIniFile& ini, const QString& path)
{
    QStringList paths = LoadRecentDatabases(ini);
    const QString absolute = AbsolutePath(path);
    Remove(paths, absolute);
    paths.prepend(absolute);
    Save(ini, paths.mid(0, kRecentDatabases));
}

void ForgetRecentDatabaseWhenGone(QLMIniFile& ini, const QString& path)
{
    if (FileExists(path))
        return;
    QStringList paths = LoadRecentDatabases(ini);
    const auto before = paths.size();
    Remove(paths, AbsolutePath(path));
    if (paths.size() != before)
        Save(ini, paths);
}
