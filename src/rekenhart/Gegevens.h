#pragma once

#include "rekenhart/Constants.h"
#include "rekenhart/Profiel.h"

#include <array>
#include <string>
#include <vector>

namespace rekenhart {

// The rows of the boundary-condition database as plain values. -999 stands for
// "not known"; nothing is checked here.

struct PeilRij {
    double herhalingstijd = 0; ///< years
    double boezempeil = kNietBekend;
};

struct ScheefstandRij {
    double windsnelheid = 0; ///< m/s
    double scheefstand = kNietBekend;
};

struct SectorGegevens {
    double bodemhoogte = kNietBekend;  ///< `B`, m
    double strijklengte = kNietBekend; ///< `FE`, m
    std::vector<ScheefstandRij> scheefstand;
};

struct Locatie {
    int id = 0;
    std::string naam; ///< `omschrijving`
    double x = 0, y = 0;
    int kwaliteitskenmerk = 0;
    double kruinhoogte = kNietBekend;
    double streefpeil = kNietBekend;
    double dijknormaal = kNietBekend; ///< bearing from the shore to the water
    double ruwheidslengte = kNietBekend;
    int veiligheidsklasse = 0;
    std::vector<PeilRij> peilen;
    std::array<SectorGegevens, kSectors> sectoren;
};

struct KansRij {
    int richting = 0; ///< Richting_ID
    double momentaneKans = 0;
};

struct WindRij {
    int richting = 0;
    double windsnelheid = 0;
    double overschrijdingskans = 0;
};

struct SeizoenTabellen {
    std::vector<KansRij> kanswindrichting;
    std::vector<WindRij> windstatistiek;
};

struct TransformatieRij {
    double windsnelheid = 0;
    double factor = 1;
};

/// The five statistic tables.
struct StatistiekTabellen {
    SeizoenTabellen winter, zomer;
    std::vector<TransformatieRij> transformatie;
};

/// One member of a dike ring, by name as the database holds it.
struct DijkringLid {
    std::string locatie;
    std::string profiel;
    double overslagdebiet = 0; ///< l/s per m
};

/// The value columns of one row of `Resultaat`.
struct ResultaatRij {
    double herhalingstijd = 0; ///< as in the calculation; the row is found within 1e-6
    double hbn = kNietBekend;
    double overloopMo = kNietBekend;
    double overloopZo = kNietBekend;
    double boezempeil = kNietBekend;
    double streefpeil = kNietBekend;
    double dominanteWindrichting = kNietBekend;
    double waterstand = kNietBekend;
    double golfhoogte = kNietBekend;
    double piekperiode = kNietBekend;
    double golfrichting = kNietBekend;
};

} // namespace rekenhart
