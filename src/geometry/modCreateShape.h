#pragma once

#include <QString>

#include <vector>

/// One location as it goes onto the map.
struct LocatiePunt {
    double x = 0; ///< metres
    double y = 0;
    QString omschrijving;
    qint16 kwaliteitskenmerk = 0;
};

/// The locations of a database in the order of their `omschrijving`, as the
/// database sorts it.
struct LocatiePunten {
    int omschrijvingSize = 50; ///< the field size of `omschrijving`
    std::vector<LocatiePunt> locaties;
};

/// Writes the locations as a point file: `shpPath`, its index beside it, and a
/// dBASE table with the fields `x`, `y`, `OMSCHR` and `KWAL`. Files that stand
/// there are replaced.
///
/// In the table y is a whole number (halves to even); the geometry keeps its
/// decimals. The table has the name 12345678.dbf until it is complete.
///
/// False, with nothing more done, if the table cannot be made. Any later
/// failure is raised as a `Fout` and leaves none of the files behind.
bool modCreateShape(const QString& shpPath, const LocatiePunten& punten);

/// The location file of a database: `base` in its work folder. The main window
/// calls this after every open.
bool RebuildLocationShape(const QString& werkmap, const QString& base, const LocatiePunten& punten);
