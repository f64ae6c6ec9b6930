#include "frame/QLMIniFile.h"

#include "frame/Fouten.h"
#include "frame/Paths.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

#include <algorithm>
#include <cstring>

namespace {

const QByteArray kLineEnd = QByteArrayLiteral("\r\n");
const QByteArray kSectionStart = QByteArrayLiteral("\r\n[");

QByteArray Lower(QByteArray bytes)
{
    for (char& byte : bytes)
        byte = char(LowerWindows1252((unsigned char)byte));
    return bytes;
}

/// Blanks only: a tab belongs to a value.
QByteArrayView WithoutTrailingBlanks(QByteArrayView bytes)
{
    while (bytes.endsWith(' '))
        bytes.chop(1);
    return bytes;
}

QByteArray Trimmed(QByteArray bytes)
{
    bytes = WithoutTrailingBlanks(bytes).toByteArray();
    qsizetype blanks = 0;
    while (blanks < bytes.size() && bytes[blanks] == ' ')
        ++blanks;
    return bytes.mid(blanks);
}

/// What editors put in front of the text when they save it as Unicode would hide
/// the first section, and accents would turn into two characters each.
QByteArray FromUnicode(const QByteArray& content)
{
    const auto encoding = QStringConverter::encodingForData(content);
    if (!encoding)
        return content;
    return ToWindows1252(QString(QStringDecoder(*encoding).decode(content)));
}

} // namespace

// Not the application's title: an instance that runs beside another one has
// another title, and still the same texts.
QLMIniFile::QLMIniFile() : QLMIniFile(AddBackslash(ProgramFolder()) + "Zandvoet.ini") {}

QLMIniFile::QLMIniFile(const QString& file) : m_file(file) {}

QLMIniFile::~QLMIniFile()
{
    Save();
}

QString QLMIniFile::GetString(const QString& section, const QString& key,
                              const QString& defaultValue)
{
    EnsureLoaded();
    const auto range = FindSection(ToWindows1252(section));
    if (!range)
        return defaultValue;
    const auto line = FindLine(*range, ToWindows1252(key) + '=');
    if (!line)
        return defaultValue;
    const qsizetype value = m_text.indexOf('=', line->start) + 1;
    return FromWindows1252(WithoutTrailingBlanks(
        QByteArrayView(m_text).sliced(value, line->start + line->length - value)));
}

void QLMIniFile::SaveString(const QString& section, const QString& key, const QString& value)
{
    EnsureLoaded();
    const QByteArray keyBytes = ToWindows1252(key);
    const QByteArray newLine = Trimmed(keyBytes) + '=' + ToWindows1252(value);
    const auto range = FindSection(ToWindows1252(section));
    if (!range) {
        m_text += kSectionStart + ToWindows1252(section) + "]\r\n" + newLine + kLineEnd;
    } else if (const auto line = FindLine(*range, keyBytes)) {
        // The "=" is left out of this search on purpose; see the header.
        m_text.replace(line->start, line->length, newLine);
    } else {
        // Under the last line that is not empty: empty ones stay behind it.
        qsizetype end = range->start + range->length;
        while (m_text[end - 1] == '\r' || m_text[end - 1] == '\n')
            --end;
        m_text.insert(end, kLineEnd + newLine);
    }
    m_dirty = true;
}

void QLMIniFile::RemoveKey(const QString& section, const QString& key)
{
    EnsureLoaded();
    if (const auto range = FindSection(ToWindows1252(section))) {
        if (const auto line = FindLine(*range, ToWindows1252(key) + '='))
            m_text.remove(line->start, line->length + kLineEnd.size());
    }
    m_dirty = true;
}

void QLMIniFile::RemoveSection(const QString& section)
{
    EnsureLoaded();
    if (const auto range = FindSection(ToWindows1252(section))) {
        const qsizetype behind = m_text.size() - range->start - range->length - kLineEnd.size();
        if (behind < 1) {
            // Goes with the CR LF in front of it, on purpose; see the header.
            m_text.truncate(range->start - kLineEnd.size());
        } else {
            m_text.remove(range->start, m_text.size() - behind - range->start);
        }
    }
    m_dirty = true;
}

bool QLMIniFile::Save()
{
    return m_loaded && m_dirty ? WriteFile(m_file) : true;
}

bool QLMIniFile::Sluit()
{
    bool written = true;
    if (m_loaded && m_dirty) {
        written = WriteFile(m_file);
        m_dirty = false;
    }
    m_text.clear();
    m_loaded = false;
    return written;
}

void QLMIniFile::EnsureLoaded()
{
    if (!m_loaded)
        LoadFile();
}

void QLMIniFile::LoadFile()
{
    QFile file(ResolvePath(m_file));
    if (FileExists(m_file) && file.size() > 0) {
        if (!file.open(QIODevice::ReadOnly))
            RaiseRuntimeFout(RuntimeFout::FileAccess, m_file + "|" + file.errorString());
        QByteArray content = file.readAll();
        if (file.error() != QFileDevice::NoError)
            RaiseRuntimeFout(RuntimeFout::FileAccess, m_file + "|" + file.errorString());
        m_text = kLineEnd + FromUnicode(content) + kLineEnd;
    }
    m_loaded = true;
}

bool QLMIniFile::WriteFile(const QString& path) const
{
    const QString target = ResolvePath(path);
    if (IsReadOnly(target))
        return false;
    // Written beside the file, flushed and put in its place in one step: a full
    // disc or a killed process leaves the old file.
    QSaveFile file(target);
    file.setDirectWriteFallback(true); // where a folder takes no new files
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const qsizetype added = 2 * kLineEnd.size();
    if (m_text.size() < added) {
        // What was removed from an absent or empty file: there is nothing to
        // cut the line ends from. The file is made, the write counts as failed.
        file.commit();
        return false;
    }
    const qint64 size = m_text.size() - added;
    return file.write(m_text.constData() + kLineEnd.size(), size) == size && file.commit();
}

std::optional<QLMIniFile::Range> QLMIniFile::FindSection(const QByteArray& section) const
{
    const qsizetype match = FindFolded(kSectionStart + section + ']', 0, m_text.size());
    if (match < 0)
        return std::nullopt;
    const qsizetype start = match + kLineEnd.size();
    const qsizetype next = m_text.indexOf(kSectionStart, start);
    return Range{start, (next < 0 ? m_text.size() : next) - start};
}

/// The first line of the section that begins so, without its line end.
std::optional<QLMIniFile::Range> QLMIniFile::FindLine(Range section,
                                                      const QByteArray& beginning) const
{
    const qsizetype match =
        FindFolded(kLineEnd + beginning, section.start, section.start + section.length);
    if (match < 0)
        return std::nullopt;
    const qsizetype start = match + kLineEnd.size();
    const qsizetype end = m_text.indexOf(kLineEnd, start);
    return Range{start, (end < 0 ? m_text.size() : end) - start};
}

/// The first place of `pattern`, which begins with a CR, that lies wholly
/// within the given part of the text.
qsizetype QLMIniFile::FindFolded(const QByteArray& pattern, qsizetype from, qsizetype end) const
{
    const bool exact = m_compareMethod == Comparison::Exact;
    const QByteArray wanted = exact ? pattern : Lower(pattern);
    const auto same = [exact](char wantedByte, char byte) {
        return wantedByte == (exact ? byte : char(LowerWindows1252((unsigned char)byte)));
    };
    const char* const text = m_text.constData();
    const qsizetype last = end - wanted.size();
    while (from <= last) {
        const void* hit = std::memchr(text + from, '\r', std::size_t(last - from + 1));
        if (!hit)
            return -1;
        const char* const place = static_cast<const char*>(hit);
        if (std::equal(wanted.cbegin(), wanted.cend(), place, same))
            return place - text;
        from = place - text + 1;
    }
    return -1;
}
