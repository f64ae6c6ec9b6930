#pragma once

#include <QString>
#include <QStringList>

class QLMIniFile;

/// The calculation settings as the settings dialog holds them. Numbers stay the
/// texts of their boxes, with the system's decimal sign: what the user typed is
/// what the file gets.
struct BerekeningInstellingen {
    struct Toeslag {
        bool aan = false;
        QString waarde;
        QString toelichting; ///< the wind increase has none
        friend bool operator==(const Toeslag&, const Toeslag&) = default;
    };

    bool normFrequentie = true;
    bool extraFrequenties = true;
    QStringList frequenties; ///< return periods, years
    bool kruinhoogteProfiel = true;
    bool extraKruinhoogtes = true;
    QStringList kruinhoogtes; ///< levels, m
    int indexFaalmechanisme = 0;
    QString overslagdebiet;
    int indexGolfgroeimodule = 0;
    bool golfCorrFactorAan = false;
    QString golfCorrFactor;
    bool uitEnIll = true;
    bool windreductie = true;
    bool uitsplitsenNaarAandelen = true;
    Toeslag toeslagWS;
    Toeslag toeslagHBN;
    Toeslag toenameWind;

    /// Reads the file; absent keys take the dialog's defaults. What no dialog
    /// could have made is repaired silently: return periods into 0.5 to 20000,
    /// the two indexes into 0 to 2, counts into 0 to 100, the discharge to a number.
    static BerekeningInstellingen Lees(QLMIniFile& ini);
    /// Writes all keys, and the file. Numbered keys above the counts stay behind,
    /// so that a count that goes up again finds them. False when the file could
    /// not be written.
    bool Bewaar(QLMIniFile& ini) const;

    friend bool operator==(const BerekeningInstellingen&, const BerekeningInstellingen&) = default;
};

/// Bounds of what the dialog lets in.
namespace instellinggrens {
inline constexpr double FrequentieMin = 0.5;
inline constexpr double FrequentieMax = 20000;
inline constexpr double KruinhoogteMin = -20;
inline constexpr double KruinhoogteMax = 20;
inline constexpr int MaxAantal = 100;
/// Not allowed themselves.
inline constexpr double GolfCorrFactorMin = 0;
inline constexpr double GolfCorrFactorMax = 10;
} // namespace instellinggrens

/// What a row shows when the dialog makes it anew: the stored value of FREQ.i or
/// KRUIN.i (`nummer` from 1), or a default of its own, 1000 years and 10 m.
QString OpgeslagenFrequentie(QLMIniFile& ini, int nummer);
QString OpgeslagenKruinhoogte(QLMIniFile& ini, int nummer);

/// Whether a text is a number from `minimum` to `maximum`.
bool IsTussen(const QString& tekst, double minimum, double maximum);
/// Strictly between 0 and 10.
bool IsGolfCorrFactor(const QString& tekst);
