#include "mainwindow/Instellingen.h"

#include "frame/Convert.h"
#include "frame/Globals.h"
#include "frame/IniNumbers.h"
#include "frame/QLMIniFile.h"

#include <limits>

namespace {

constexpr auto kCodes = "Kwaliteteitscodes"; // the spelling of every ini out there
constexpr auto kLabels = "LABELS";
constexpr double kLargestFont = 400; // points
constexpr auto kOdbc = "ODBC";

/// Values of key1, key2, ... up to the first that is absent.
QStringList Numbered(QLMIniFile& ini, const QString& section, const QString& key,
                     const QString& noMore)
{
    QStringList values;
    for (int n = 1;; ++n) {
        const QString value = ini.GetString(section, key + QString::number(n), noMore);
        if (value == noMore)
            return values;
        values.append(value);
    }
}

} // namespace

QColor ColourFromIni(const QString& text)
{
    QString digits = text.trimmed();
    if (digits.startsWith("&H", Qt::CaseInsensitive))
        digits.remove(0, 2);
    const uint value = digits.toUInt(nullptr, 16);
    return QColor(value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF);
}

QString ColourToIni(const QColor& colour)
{
    const uint value = static_cast<uint>(colour.red()) | static_cast<uint>(colour.green()) << 8 |
                       static_cast<uint>(colour.blue()) << 16;
    return "&H" + QString::number(value, 16).toUpper();
}

QList<Kwaliteitscode> LoadKwaliteitscodes(QLMIniFile& ini)
{
    QList<Kwaliteitscode> codes;
    for (const QString& value : Numbered(ini, kCodes, "code", "NOMORE"))
        codes.append({value.section('|', 0, 0), ColourFromIni(value.section('|', 1, 1))});
    return codes;
}

void SaveKwaliteitscodes(QLMIniFile& ini, const QList<Kwaliteitscode>& codes)
{
    for (qsizetype i = 0; i < codes.size(); ++i)
        ini.SaveString(kCodes, "code" + QString::number(i + 1),
                       codes[i].code + "|" + ColourToIni(codes[i].colour));
}

LabelSettings LoadLabelSettings(QLMIniFile& ini)
{
    const auto flag = [&](const char* key) {
        return gConvert().ConvBln(ini.GetString(kLabels, key, "0"));
    };
    LabelSettings settings;
    settings.shown = ini.GetString(kLabels, "STATUS", "AAN") == "AAN";
    settings.fontName = ini.GetString(kLabels, "FONTNAME", settings.fontName);
    settings.fontSize = ReadNumber(ini, kLabels, "FONTSIZE", settings.fontSize, 1, kLargestFont);
    settings.bold = flag("FONTBOLD");
    settings.italic = flag("FONTITALIC");
    settings.underline = flag("FONTUNDERLINE");
    settings.strikeThrough = flag("FONTSTRIKETHROUGH");
    // Colours of the desktop are negative numbers.
    const int colour =
        ReadWhole(ini, kLabels, "FONTCOLOR", 0, std::numeric_limits<int>::min(), 0xFFFFFF);
    settings.colour = QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
    return settings;
}

void SaveLabelStatus(QLMIniFile& ini, bool shown)
{
    ini.SaveString(kLabels, "STATUS", shown ? "AAN" : "UIT");
}

QStringList OdbcSources(QLMIniFile& ini)
{
    QStringList names;
    for (const QString& value : Numbered(ini, kOdbc, "odbc", "NO_MORE_ODBCS"))
        names.append(value.section(',', 1, 1).trimmed());
    for (const char* key : {"odbcSUdsnafvoergolven", "odbcSUdsnsluitfunctie"})
        names.append(ini.GetString(kOdbc, key).trimmed());
    names.removeAll(QString());
    return names;
}
