#pragma once

#include "rekenhart/Constants.h"
#include "rekenhart/physics/WaveGrowth.h"

#include <string>
#include <string_view>
#include <vector>

namespace rekenhart {

enum class Variant { Dijkvak, Dijkring, Determ };
enum class Faalmechanisme { Overloop, Golfoverslag, Golfoploop };
/// What a deterministic calculation combines: basin level (B) and wind (U),
/// average or extreme.
enum class Situatie { Handmatig, BgemUextr, BextrUgem, BextrUextr };

/// The settings that bear on a load.
struct Belastinginstellingen {
    Faalmechanisme faalmechanisme = Faalmechanisme::Overloop;
    double overslagdebiet = 0; ///< l/s per m; only for overtopping
    Golfgroeimodule golfgroeimodule = Golfgroeimodule::Bretschneider;
    double golfCorrFactor = 1;
    bool windreductie = false;
    double toeslagWs = 0;   ///< m, on all basin levels
    double toeslagHbn = 0;  ///< m, on the load
    double toenameWind = 0; ///< per cent

    bool HasWaves() const { return faalmechanisme != Faalmechanisme::Overloop; }
};

/// An input file, checked.
struct Instellingen {
    std::string gebruiker, datum, memo;
    std::string database; ///< DBRVW
    std::string uitvoermap;
    std::string overzicht; ///< empty: none wanted

    Variant variant = Variant::Dijkvak;
    std::string locatie, profiel, dijkring;
    int locatieId = 0, profielId = 0; ///< 0 or below: by name
    Belastinginstellingen belasting;
    std::string memoToeslagWs, memoToeslagHbn;

    bool normfrequentie = true;
    std::vector<double> herhalingstijden; ///< the extra ones, years
    bool kruinhoogteProfiel = false;
    std::vector<double> kruinhoogten; ///< m
    int berekeningId = 0;
    bool uitEnIll = false;
    bool uitsplitsen = false;

    Situatie situatie = Situatie::Handmatig;
    double boezempeil = 0;   ///< HANDMATIG, m
    double windsnelheid = 0; ///< HANDMATIG, potential wind in m/s

    std::vector<std::string> onbekendeSleutels;
};

std::string_view Keyword(Variant variant);
std::string_view Keyword(Faalmechanisme mechanism);
std::string_view Keyword(Golfgroeimodule model);
std::string_view Keyword(Situatie situatie);
bool HasExtremeLevel(Situatie situatie);
bool HasExtremeWind(Situatie situatie);
/// As a reader of the report knows it: "Young en Verhagen".
std::string_view DisplayName(Golfgroeimodule model);

} // namespace rekenhart
