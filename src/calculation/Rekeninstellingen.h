#pragma once

#include <QString>

class QLMIniFile;

/// The calculation settings, `Instellingen.ini`: one file per installation,
/// with the settings as last confirmed. Flags are "1" or "0", numbers stand as
/// they were typed, with either decimal sign.

/// Which of a key's two defaults holds when it is absent. They differ on
/// purpose: an input file made without settings asks for less than the dialog offers.
enum class Standaard { Invoerbestand, Dialoog };

/// One setting.
struct Instelling {
    const char* sectie;
    const char* sleutel;
    const char* standaardInvoer;
    const char* standaardDialoog;
};

namespace instelling {

inline constexpr Instelling NormFreq{"Frequenties", "NORMFREQ", "0", "1"};
inline constexpr Instelling ExtraFreq{"Frequenties", "EXTRAFREQ", "0", "1"};
inline constexpr Instelling NFreq{"Frequenties", "NFREQ", "0", "0"};
/// Numbered: FREQ.1, FREQ.2, ... return periods in years.
inline constexpr Instelling Freq{"Frequenties", "FREQ", "1000", "1000"};
inline constexpr Instelling KruinhProfiel{"Kruinhoogtes", "KRUINHPROFIEL", "0", "1"};
inline constexpr Instelling ExtraKruinh{"Kruinhoogtes", "EXTRAKRUINH", "0", "1"};
inline constexpr Instelling NKruin{"Kruinhoogtes", "NKRUIN", "0", "0"};
/// Numbered: KRUIN.1, KRUIN.2, ... levels in m.
inline constexpr Instelling Kruin{"Kruinhoogtes", "KRUIN", "1", "1000"};
inline constexpr Instelling IndexFaalmechanisme{"Faalmechanisme", "INDEXFAALMECHANISME", "2", "0"};
inline constexpr Instelling Overslagdebiet{"Faalmechanisme", "OVERSLAGDEBIET", "1", "1"};
inline constexpr Instelling IndexGolfgroeimodule{"Golfgroeimodule", "INDEXGOLFGROEIMODULE", "0",
                                                 "0"};
// In front of GOLFCORRFACTORAAN: the ini store would otherwise overwrite that
// line when it saves this key.
inline constexpr Instelling GolfCorrFactor{"Golfgroeimodule", "GOLFCORRFACTOR", "1", "1"};
inline constexpr Instelling GolfCorrFactorAan{"Golfgroeimodule", "GOLFCORRFACTORAAN", "0", "0"};
inline constexpr Instelling UitEnIll{"Extra", "UITENILL", "0", "1"};
inline constexpr Instelling Windreductie{"Extra", "WINDREDUCTIE", "0", "1"};
inline constexpr Instelling UitsplitsenNaarAandelen{"Extra", "UITSPLITSENNAARAANDELEN", "0", "1"};
inline constexpr Instelling ToeslagWSAan{"Toeslagen", "TOESLAGWSAAN", "0", "0"};
inline constexpr Instelling ToeslagWSVal{"Toeslagen", "TOESLAGWSVAL", "0", "1"};
inline constexpr Instelling ToeslagWSMemo{"Toeslagen", "TOESLAGWSMEMO", "", ""};
inline constexpr Instelling ToeslagHBNAan{"Toeslagen", "TOESLAGHBNAAN", "0", "0"};
inline constexpr Instelling ToeslagHBNVal{"Toeslagen", "TOESLAGHBNVAL", "0", "1"};
inline constexpr Instelling ToeslagHBNMemo{"Toeslagen", "TOESLAGHBNMEMO", "", ""};
inline constexpr Instelling ToenameWindAan{"Toeslagen", "TOENAMEWINDAAN", "0", "0"};
inline constexpr Instelling ToenameWindVal{"Toeslagen", "TOENAMEWINDVAL", "0", "1"};

} // namespace instelling

/// The failure mechanism, as its index in the settings.
namespace faalmechanisme {
inline constexpr int Overloop = 0;
inline constexpr int Golfoverslag = 1;
inline constexpr int Golfoploop = 2;
} // namespace faalmechanisme

/// The text of a setting; `nummer` for the numbered ones (from 1).
QString LeesInstelling(QLMIniFile& ini, const Instelling& instelling, Standaard standaard,
                       int nummer = 0);
void BewaarInstelling(QLMIniFile& ini, const Instelling& instelling, const QString& waarde,
                      int nummer = 0);

/// `Instellingen.ini` in the folder of the calculation settings.
QString InstellingenBestand();

// The few settings that others need, with the input file's defaults.
int LeesIndexFaalmechanisme(const QString& bestand);
double LeesOverslagdebiet(const QString& bestand);
int LeesIndexGolfgroeimodule(const QString& bestand);
double LeesGolfCorrFactor(const QString& bestand); ///< -999 when it is not used

/// Keyword for the core ("OVERLOOP", ...); empty for any other index.
QString FaalmechanismeSleutelwoord(int index);
QString GolfgroeimoduleSleutelwoord(int index);
