#include "LocatieCsv.h"

#include "frame/Numbers.h"
#include "frame/Windows1252.h"

#include <QStringDecoder>

#include <cmath>

namespace geometrytools {

LocatieCsv::LocatieCsv(QIODevice& in, int valueCount) : m_in(in), m_valueCount(valueCount) {}

bool LocatieCsv::ReadLine(QString& line)
{
    constexpr qint64 kLongest = 1024 * 1024;
    QByteArray bytes = m_in.readLine(kLongest);
    if (bytes.isEmpty())
        return false;
    ++m_line;
    while (bytes.endsWith('\n') || bytes.endsWith('\r'))
        bytes.chop(1);
    if (m_line == 1 && bytes.startsWith("\xEF\xBB\xBF"))
        bytes.remove(0, 3);
    QStringDecoder utf8(QStringDecoder::Utf8);
    line = utf8(bytes);
    if (utf8.hasError())
        line = FromWindows1252(bytes);
    return true;
}

QStringList LocatieCsv::Split(const QString& line) const
{
    QStringList fields(QString{});
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
            fields.last() += c;
            ++i;
        } else if (c == '"') {
            quoted = !quoted;
        } else if (c == m_separator && !quoted) {
            fields.append(QString{});
        } else {
            fields.last() += c;
        }
    }
    if (quoted)
        Fail(QStringLiteral("aanhalingsteken niet gesloten"));
    return fields;
}

double LocatieCsv::Number(const QString& text) const
{
    const auto value = ParseNumber(text);
    if (!value || !std::isfinite(*value))
        Fail("\"" + text.trimmed() + "\" is geen getal");
    return *value;
}

bool LocatieCsv::Next(LocatieRij& rij)
{
    QString line;
    do {
        if (!ReadLine(line))
            return false;
        if (m_line == 1) {
            for (const QChar separator : {QChar(';'), QChar('\t'), QChar(',')}) {
                if (line.contains(separator)) {
                    m_separator = separator;
                    break;
                }
            }
            const QStringList heading = Split(line);
            if (heading.size() > 1 && !IsNumeric(heading[1])) {
                for (qsizetype i = 3; i < heading.size(); ++i) {
                    if (heading[i].trimmed().compare("status", Qt::CaseInsensitive) == 0 &&
                        m_statusColumn < 0)
                        m_statusColumn = i;
                }
                line.clear();
            }
        }
    } while (line.trimmed().isEmpty());

    QStringList fields = Split(line);
    rij = {};
    if (m_statusColumn >= 0 && m_statusColumn < fields.size())
        rij.status = fields.takeAt(m_statusColumn).trimmed();
    if (fields.size() < 3)
        Fail(QStringLiteral("naam, x en y verwacht"));
    rij.naam = fields[0];
    rij.x = Number(fields[1]);
    rij.y = Number(fields[2]);
    if (!rij.status.isEmpty() && rij.status != "NOERROR")
        return true;
    if (fields.size() < 3 + m_valueCount)
        Fail(QStringLiteral("%1 waarden achter x en y verwacht").arg(m_valueCount));
    for (int i = 0; i < m_valueCount; ++i)
        rij.waarden.push_back(Number(fields[3 + i]));
    return true;
}

void LocatieCsv::Fail(const QString& what) const
{
    throw InvoerFout(QStringLiteral("regel %1: %2").arg(m_line).arg(what).toStdString());
}

QString CsvField(const QString& text, QChar separator)
{
    if (!text.contains(separator) && !text.contains('"') && text.trimmed() == text)
        return text;
    return '"' + QString(text).replace("\"", "\"\"") + '"';
}

} // namespace geometrytools
