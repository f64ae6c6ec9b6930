#pragma once

#include <QString>

class HRdb;

/// Writes the input file of the calculation core, `invoer.txt`. All that the
/// core knows about a calculation it reads from this file: Windows-1252, CR LF;
/// the dashes of the headers and the "=" in column 30 are part of the format.
///
/// Failures are reported in a box and give false; what was written by then
/// stays, and so do the database rows made.

/// What one location calculation is about.
struct LocatieBerekening {
    QString berekening; ///< name, without the profile's
    QString locatie;
    QString profiel;   ///< blank without one
    QString map;       ///< the calculation folder
    QString overzicht; ///< overview file, empty when none is wanted
    QString memo;      ///< the first 200 characters are used
};

struct DijkringBerekening {
    QString dijkring;
    QString map;
    int indexFaalmechanisme = 0;
    bool windreductie = false;
    int indexGolfgroeimodule = 0;
    bool golfCorrFactorAan = false;
    double golfCorrFactor = 1;
    QString memo;
};

/// Writes the file for variant DIJKVAK from the settings in `instellingen`,
/// registers the calculation in the database and inserts one empty result row
/// for the norm return period and one for each extra one. The core fills those rows.
bool SchrijfInvoerBestand(HRdb& database, const QString& instellingen,
                          const LocatieBerekening& berekening);

/// Writes the file for variant DIJKRING; what is per section lies in the
/// database. Makes no rows there.
bool SchrijfDijkringInvoerBestand(HRdb& database, const DijkringBerekening& berekening);

/// One key line: key, "=" in column 30, value from column 32. A quoted value
/// stands between apostrophes, unescaped. Nothing when `schrijf` is false.
void SchrijfRegel(int bestand, const QString& sleutel, const QString& waarde, bool aanhaling,
                  bool schrijf = true);

/// The section `algemeen` up to UITVOERMAP, which all input files begin with.
void SchrijfAlgemeen(int bestand, HRdb& database, const QString& map);

/// A number as the core reads it: plain decimals, a point, at most 15
/// significant digits, never an exponent (1/20000 is 0.00005).
QString InvoerGetal(double waarde);
