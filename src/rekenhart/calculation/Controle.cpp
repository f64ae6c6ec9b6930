#include "rekenhart/calculation/Controle.h"

#include "rekenhart/Fout.h"
#include "rekenhart/physics/DikeSlope.h"
#include "rekenhart/statistics/BasinLevel.h"

#include <algorithm>
#include <string>

namespace rekenhart {

namespace {

bool HasScheefstand(const SectorGegevens& sector)
{
    return !sector.scheefstand.empty() &&
           std::all_of(sector.scheefstand.begin(), sector.scheefstand.end(),
                       [](const ScheefstandRij& row) {
                           return IsBekend(row.windsnelheid) && IsBekend(row.scheefstand);
                       });
}

bool SameSpeeds(const SectorGegevens& one, const SectorGegevens& two)
{
    return std::equal(one.scheefstand.begin(), one.scheefstand.end(), two.scheefstand.begin(),
                      two.scheefstand.end(), [](const auto& a, const auto& b) {
                          return a.windsnelheid == b.windsnelheid;
                      });
}

/// An unknown roughness would pass for the roughest there is, and lower the load.
bool HasKnownRoughness(const Profiel& profiel)
{
    const auto& points = profiel.punten;
    const auto toe = static_cast<std::size_t>(profiel.ToeIndex());
    for (std::size_t i = toe; i + 1 < points.size(); ++i)
        if (!points[i].gras && !IsBekend(points[i].r))
            return false;
    return true;
}

} // namespace

void CheckLocatie(const Locatie& locatie, const Belastinginstellingen& settings,
                  bool needsKruinhoogte)
{
    const auto require = [&](bool holds, const std::string& otherwise) {
        if (!holds)
            throw OnvolledigeLocatie(locatie.naam, otherwise);
    };
    require(IsBekend(locatie.streefpeil), "streefpeil onbekend");
    require(IsBekend(locatie.dijknormaal), "dijknormaal onbekend");
    require(BasinLevel::KnownRows(locatie.peilen).size() >= 2,
            "minder dan twee boezempeilen bekend");
    for (int i = 0; i < kSectors; ++i) {
        const SectorGegevens& sector = locatie.sectoren[i];
        const std::string which = " onbekend in sector " + std::to_string(i + 1);
        require(HasScheefstand(sector), "scheefstand" + which);
        require(IsBekend(sector.strijklengte), "strijklengte" + which);
        require(IsBekend(sector.bodemhoogte), "bodemhoogte" + which);
        require(SameSpeeds(sector, locatie.sectoren[0]), "windsnelheden verschillen per sector");
    }
    require(!settings.windreductie || locatie.ruwheidslengte > 0, "ruwheidslengte ongeldig");
    require(!needsKruinhoogte || IsBekend(locatie.kruinhoogte), "kruinhoogte onbekend");
    require(locatie.kwaliteitskenmerk >= 1, "kwaliteitskenmerk 0");
}

void CheckProfiel(const Profiel& profiel, Faalmechanisme mechanism)
{
    const bool known =
        std::all_of(profiel.punten.begin(), profiel.punten.end(),
                    [](const ProfielPunt& punt) { return IsBekend(punt.x) && IsBekend(punt.y); });
    const bool shape = profiel.IsWand()
                           ? mechanism != Faalmechanisme::Golfoploop
                           : DikeSlope::IsGeschikt(profiel) && HasKnownRoughness(profiel);
    const bool dam = profiel.damtype < 1 || (IsBekend(profiel.damHoogte) &&
                                             (profiel.damtype != 4 || profiel.taludhelling > 0));
    if (!known || !shape || !dam)
        throw OngeschiktProfiel(profiel.naam, Keyword(mechanism));
}

} // namespace rekenhart
