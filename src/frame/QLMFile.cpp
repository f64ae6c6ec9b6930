#include "frame/QLMFile.h"

#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/Platform.h"
#include "frame/Ports.h"
#include "frame/Windows1252.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int kReplaceQuestion = 5000;

bool HasForbiddenCharacter(const QString& name)
{
    static const QString forbidden = ";<=>?[]*";
    return std::any_of(name.cbegin(), name.cend(),
                       [](QChar character) { return forbidden.contains(character); });
}

QIODevice::OpenMode OpenModeOf(int mode)
{
    switch (mode) {
    case QLMFile::Output:
        return QIODevice::WriteOnly | QIODevice::Truncate;
    case QLMFile::Input:
        return QIODevice::ReadOnly;
    case QLMFile::Append:
        return QIODevice::WriteOnly | QIODevice::Append;
    default:
        return QIODevice::ReadWrite;
    }
}

/// Entries of the pattern's folder, sorted without regard to case.
QFileInfoList Matches(const QString& pattern)
{
    const qsizetype separator = LastSeparator(pattern);
    const QString folder = separator < 0 ? "." : pattern.left(separator + 1);
    QString name = pattern.mid(separator + 1);
    if (name == "*.*")
        name = "*"; // meets names without a dot, too
    const QRegularExpression expression(
        QRegularExpression::anchoredPattern(
            QRegularExpression::escape(name).replace("\\*", ".*").replace("\\?", ".")),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    QFileInfoList entries = QDir(ResolvePath(folder))
                                .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System,
                                               QDir::Name | QDir::IgnoreCase);
    entries.removeIf([&expression](const QFileInfo& entry) {
        return !expression.match(entry.fileName()).hasMatch();
    });
    return entries;
}

bool IsFolder(const QFileInfo& entry)
{
    return entry.isDir() && entry.fileName() != "." && entry.fileName() != "..";
}

} // namespace

int QLMFile::FOpen(const QString& name, int mode, int recordLength, bool ask)
{
    if (GetFile(name).startsWith('.') || HasForbiddenCharacter(name))
        return NameNotAllowed;
    if (mode < Output || mode > Binary)
        return OpenFailed;
    const bool exists = Exists(name);
    if (ask && exists && mode == Output) {
        Boxes* const boxes = gBoxes.Get();
        if (!boxes || boxes->AskQuestion(kReplaceQuestion, {name}) == Answer::No)
            return NotOverwritten;
    }
    const QString path = ResolvePath(name);
    if (exists && mode != Input && (::IsReadOnly(path) || platform::IsSystemFile(path)))
        return ReadOnly;
    auto file = std::make_unique<QFile>(path);
    if (!file->open(OpenModeOf(mode)))
        return OpenFailed;
    int number = 1;
    while (m_files.contains(number))
        ++number;
    m_files[number] = {std::move(file), recordLength};
    return number;
}

void QLMFile::FClose(int number)
{
    m_files.erase(number);
}

QFile& QLMFile::Stream(int number)
{
    const auto entry = m_files.find(number);
    if (entry == m_files.end())
        RaiseRuntimeFout(RuntimeFout::OutOfRange,
                         "Bestand " + QString::number(number) + " is niet geopend.");
    return *entry->second.file;
}

int QLMFile::RecordLength(int number) const
{
    const auto entry = m_files.find(number);
    return entry == m_files.end() ? 0 : entry->second.recordLength;
}

void QLMFile::PrintLine(int number, const QString& line)
{
    Print(number, line + "\r\n");
}

void QLMFile::Print(int number, const QString& text)
{
    QFile& file = Stream(number);
    const QByteArray bytes = ToWindows1252(text);
    // Flushed at once: a full disc shows here, where the caller can still be told.
    if (file.write(bytes) != bytes.size() || !file.flush())
        RaiseRuntimeFout(RuntimeFout::FileAccess, file.fileName() + "|" + file.errorString());
}

QString QLMFile::LineInput(int number)
{
    QByteArray line = Stream(number).readLine();
    if (line.endsWith('\n'))
        line.chop(1);
    if (line.endsWith('\r'))
        line.chop(1);
    return FromWindows1252(line);
}

bool QLMFile::Eof(int number)
{
    return Stream(number).atEnd();
}

QString QLMFile::GetFile(const QString& path) const
{
    return path.mid(LastSeparator(path) + 1);
}

QString QLMFile::GetBaseFile(const QString& name) const
{
    return name.left(qMax<qsizetype>(0, name.lastIndexOf('.')));
}

QString QLMFile::GetPath(const QString& path) const
{
    const qsizetype separator = LastSeparator(path);
    return separator < 0 ? ".\\" : path.left(separator + 1);
}

QString QLMFile::GetShortPathName(const QString& path) const
{
    return platform::ShortPath(path);
}

bool QLMFile::Exists(const QString& name) const
{
    return FileExists(name);
}

bool QLMFile::KillFile(const QString& name)
{
    if (!Exists(name))
        return true;
    return !::IsReadOnly(name) && QFile::remove(ResolvePath(name));
}

bool QLMFile::GetLastWriteTime(const QString& name, QDateTime& time) const
{
    const QFileInfo info(ResolvePath(name));
    if (!info.exists()) {
        time = QDateTime(QDate(1900, 1, 1), QTime(0, 0));
        return false;
    }
    time = info.lastModified().toLocalTime();
    return true;
}

bool QLMFile::FirstFile(int slot, const QString& pattern)
{
    return Start(slot, pattern, Wanted::Everything);
}

bool QLMFile::NextFile(int slot)
{
    return Advance(slot, Wanted::Everything);
}

bool QLMFile::FirstDir(int slot, const QString& pattern)
{
    return Start(slot, pattern, Wanted::Folders);
}

bool QLMFile::NextDir(int slot)
{
    return Advance(slot, Wanted::Folders);
}

QString QLMFile::FoundFileName(int slot) const
{
    const Search& search = m_searches[SlotIndex(slot)];
    return search.current >= 0 ? search.entries[search.current].fileName() : QString();
}

bool QLMFile::FileWithPatternExists(const QString& pattern) const
{
    return !Matches(pattern).isEmpty();
}

std::size_t QLMFile::SlotIndex(int slot)
{
    if (slot < 1 || slot > kSlots)
        RaiseRuntimeFout(RuntimeFout::OutOfRange,
                         "Zoekslot " + QString::number(slot) + " bestaat niet.");
    return std::size_t(slot - 1);
}

bool QLMFile::Start(int slot, const QString& pattern, Wanted wanted)
{
    m_searches[SlotIndex(slot)] = {Matches(pattern), -1};
    return Advance(slot, wanted);
}

bool QLMFile::Advance(int slot, Wanted wanted)
{
    Search& search = m_searches[SlotIndex(slot)];
    for (qsizetype next = search.current + 1; next < search.entries.size(); ++next) {
        if (wanted == Wanted::Everything || IsFolder(search.entries[next])) {
            search.current = next;
            return true;
        }
    }
    return false; // the entry found last stays
}
