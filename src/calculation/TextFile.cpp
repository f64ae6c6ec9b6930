#include "calculation/TextFile.h"

#include "frame/Fouten.h"
#include "frame/Paths.h"
#include "frame/Windows1252.h"

#include <QFile>

#include <algorithm>

namespace {

void Open(QFile& file, const QString& path)
{
    file.setFileName(ResolvePath(path));
    if (!FileExists(path) || !file.open(QIODevice::ReadOnly))
        RaiseRuntimeFout(RuntimeFout::FileAccess, "Het bestand kan niet worden gelezen.|" + path);
}

bool IsControl(QChar character)
{
    const char16_t code = character.unicode();
    return (code < 0x20 && code != '\t') || (code >= 0x7F && code < 0xA0);
}

} // namespace

QString textfile::Clean(const QByteArray& bytes)
{
    const QString text = FromWindows1252(bytes);
    QString clean;
    clean.reserve(text.size());
    int column = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        const bool crLf = character == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if (crLf)
            continue;
        if (character == '\n' || character == '\r') {
            clean += '\n';
            column = 0;
            continue;
        }
        if (column == kLongestLine) {
            clean += '\n';
            column = 0;
        }
        clean += IsControl(character) ? QChar(0xB7) : character;
        ++column;
    }
    return clean;
}

QString textfile::ReadAll(const QString& path, qint64 limit, bool& cut)
{
    QFile file;
    Open(file, path);
    cut = file.size() > limit;
    return Clean(file.read(limit));
}

QString TailReader::ReadLast(qint64 bytes)
{
    QFile file;
    Open(file, m_path);
    m_size = file.size();
    m_start = m_size;
    file.close();
    return Read(bytes);
}

QString TailReader::ReadBefore(qint64 bytes)
{
    return AtStart() ? QString() : Read(bytes);
}

QString TailReader::Read(qint64 bytes)
{
    QFile file;
    Open(file, m_path);
    const qint64 start = std::max<qint64>(0, m_start - bytes);
    if (!file.seek(start))
        return {};
    QByteArray chunk = file.read(m_start - start);
    m_start = start;
    if (start > 0) {
        // Begins at the first whole line; without one a line is cut.
        const qsizetype lineEnd = chunk.indexOf('\n');
        if (lineEnd >= 0 && lineEnd + 1 < chunk.size()) {
            chunk.remove(0, lineEnd + 1);
            m_start += lineEnd + 1;
        }
    }
    return textfile::Clean(chunk);
}
