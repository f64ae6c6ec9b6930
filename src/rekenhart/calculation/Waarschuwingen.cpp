#include "rekenhart/calculation/Waarschuwingen.h"

#include "rekenhart/Fout.h"
#include "rekenhart/files/Numbers.h"

#include <array>

namespace rekenhart {

namespace {

constexpr int kUsualLevels = 5; // 10, 30, 100, 300 and 1000 years

void AddProfileWarnings(const Profiel& p, std::vector<std::string>& warnings)
{
    if (p.HeeftVoorland())
        warnings.emplace_back("De golven in het voorland worden alleen begrensd door de diepte bij "
                              "de teen; de vorm van het voorland is niet gemodelleerd.");
    if (p.IsWand()) {
        warnings.emplace_back(
            "Stootbelasting op de verticale wand (impulsieve golven) is niet gemodelleerd.");
    } else {
        const DikeSlope slope(p);
        if (slope.HasBerm())
            warnings.emplace_back("Het profiel heeft een berm (segment flauwer dan 1:8); die is "
                                  "alleen in de gemiddelde helling verwerkt.");
        if (slope.IsSteep())
            warnings.emplace_back("De steilste helling is steiler dan 1:2; de overslagformule is "
                                  "daar niet geijkt.");
    }
    if (p.palenrij && !p.PalenBruikbaar())
        warnings.emplace_back(
            "De palenrij is genegeerd: hartafstand en diameter zijn niet bruikbaar.");
    if (p.rietkraag)
        warnings.emplace_back(
            "De demping door riet is een ruwe schatting met een stengeldikte van 8 mm.");
    if (p.damtype >= 1 && p.damtype != 4)
        warnings.push_back(FillIn("Damtype %1 is behandeld als een eenvoudige dam; breedte en "
                                  "helling zijn niet gebruikt.",
                                  std::to_string(p.damtype)));
}

std::string SectorsWithoutFetch(const LoadModel& model)
{
    std::string names;
    for (int sector = 0; sector < kSectors; ++sector)
        if (model.Fetch(sector) <= 0)
            names.append(names.empty() ? "" : ", ").append(SectorName(sector));
    return names;
}

void AddPointWarnings(int sector, const LoadDetails& details, const LoadModel& model,
                      std::vector<std::string>& warnings)
{
    const double highestWind = model.HighestScheefstandWind(sector);
    if (details.potentialWind > highestWind)
        warnings.push_back(
            FillIn("De scheefstand is geëxtrapoleerd boven %1 m/s.", General(highestWind)));
    if (model.HasSlope() && details.slope.breaker > 5)
        warnings.emplace_back("In het ontwerppunt is de brekerparameter groter dan 5; de uitkomst "
                              "is onzeker.");
    if (model.HasProfiel() && details.toeDepth < 0)
        warnings.emplace_back("De teen van het profiel ligt boven de waterstand in het "
                              "ontwerppunt: geen golfbelasting.");
}

} // namespace

std::string_view SectorName(int sector)
{
    static constexpr std::array<std::string_view, kSectors> names = {
        "N", "NNO", "NO", "ONO", "O", "OZO", "ZO", "ZZO",
        "Z", "ZZW", "ZW", "WZW", "W", "WNW", "NW", "NNW"};
    return names[sector];
}

std::vector<std::string> InputWarnings(const LoadModel& model, const BasinLevel& levels)
{
    std::vector<std::string> warnings;
    if (model.HasProfiel()) {
        AddProfileWarnings(model.GetProfiel(), warnings);
        const std::string sectors = SectorsWithoutFetch(model);
        if (!sectors.empty())
            warnings.push_back(
                FillIn("Windrichtingen zonder strijklengte geven geen golven: %1.", sectors));
    }
    if (levels.KnownPoints() < kUsualLevels)
        warnings.push_back(
            FillIn("Minder dan vijf bekende boezempeilen; er is met %1 punten gerekend.",
                   std::to_string(levels.KnownPoints())));
    if (levels.WasRaised())
        warnings.emplace_back("De boezempeilen stijgen niet met de herhalingstijd; lagere waarden "
                              "zijn opgehoogd.");
    return warnings;
}

std::vector<std::string> PeriodWarnings(double years, const BasinLevel& levels)
{
    if (levels.Covers(years))
        return {};
    return {FillIn("De herhalingstijd %1 ligt buiten het bereik van de peilstatistiek; het peil is "
                   "geëxtrapoleerd.",
                   Period(years))};
}

std::vector<std::string> ResultWarnings(const PeriodResult& result, const LoadModel& model,
                                        const BasinLevel& levels)
{
    std::vector<std::string> warnings = PeriodWarnings(result.rij.herhalingstijd, levels);
    AddPointWarnings(result.governing.sector, result.governing.details, model, warnings);
    return warnings;
}

std::vector<std::string> ResultWarnings(const DetermResultaat& result, const LoadModel& model)
{
    std::vector<std::string> warnings;
    AddPointWarnings(result.maatgevend, result.richtingen[result.maatgevend].details, model,
                     warnings);
    return warnings;
}

std::string NoRowWarning(double years)
{
    return FillIn("Voor herhalingstijd %1 is geen rij in Resultaat gevonden.", Period(years));
}

std::string UnknownKeyWarning(const std::string& key)
{
    return FillIn("De sleutel %1 in het invoerbestand is onbekend en is genegeerd.", key);
}

std::string OverviewWarning(const std::string& path)
{
    return FillIn("Het overzichtsbestand '%1' kan niet worden geschreven.", path);
}

} // namespace rekenhart
