#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QStringList>

class QLMIniFile;

/// What the main window keeps in the program's ini besides places and panes.

/// One mark of quality of a location and the colour of its point on the map.
struct Kwaliteitscode {
    QString code;
    QColor colour;

    bool operator==(const Kwaliteitscode&) const = default;
};

/// `code1`, `code2`, ... of section `Kwaliteteitscodes`: code, "|", colour.
QList<Kwaliteitscode> LoadKwaliteitscodes(QLMIniFile& ini);
void SaveKwaliteitscodes(QLMIniFile& ini, const QList<Kwaliteitscode>& codes);

/// Colours in ini files: hexadecimal behind "&H", red in the lowest byte.
/// Text that is no such number is black.
QColor ColourFromIni(const QString& text);
QString ColourToIni(const QColor& colour);

/// Names of the locations on the map: shown or not, and in what font.
struct LabelSettings {
    bool shown = true; ///< `STATUS` is "AAN"
    QString fontName = "Times";
    double fontSize = 12;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeThrough = false;
    QColor colour = Qt::black;
};
LabelSettings LoadLabelSettings(QLMIniFile& ini);
/// `STATUS` alone: the font belongs to the form that changes it.
void SaveLabelStatus(QLMIniFile& ini, bool shown);

/// The data sources that section `ODBC` names, to be removed at start-up.
QStringList OdbcSources(QLMIniFile& ini);
