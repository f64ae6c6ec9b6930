#pragma once

#include <string>
#include <vector>

namespace rekenhart {

/// One point of a cross-section; roughness and grass belong to the segment that
/// begins here.
struct ProfielPunt {
    double x = 0;
    double y = 0; ///< level, m
    double r = 1;
    bool gras = false;
};

/// A dike cross-section as the database holds it.
struct Profiel {
    int id = 0;
    std::string naam;
    int damwandmodule = 0; ///< 0 slope, 1 vertical wall with nose, 2 without
    int damtype = 0;       ///< 0 no dam
    double damHoogte = 0;
    double kruinBreedte = 0;
    double taludhelling = 0; ///< run per unit of rise
    int constructietype = 0; ///< 0 impermeable
    bool palenrij = false;
    double paaldiameter = 0;
    double hartafstandPalen = 0;
    bool rietkraag = false;
    double vegetatieBreedte = 0;
    double aantalLevendeStengels = 0; ///< per m2
    double seizoensinvloedFactor = 0;
    int voorland = 0;                ///< number, from 1, of the point where the dike begins
    std::vector<ProfielPunt> punten; ///< by rising x

    bool IsWand() const { return damwandmodule != 0; }
    /// Position in `punten` where the slope begins; may lie behind the last one.
    int ToeIndex() const { return voorland < 1 ? 0 : voorland - 1; }
    /// Points in front of the toe, whose shape the method does not model.
    bool HeeftVoorland() const { return IsWand() ? punten.size() > 1 : ToeIndex() > 0; }
    bool PalenBruikbaar() const { return paaldiameter > 0 && hartafstandPalen > paaldiameter; }
    /// Stalks per m2 that count.
    double Stengels() const { return aantalLevendeStengels * seizoensinvloedFactor; }
};

} // namespace rekenhart
