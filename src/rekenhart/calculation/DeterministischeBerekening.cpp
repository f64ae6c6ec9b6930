#include "rekenhart/calculation/DeterministischeBerekening.h"

#include "rekenhart/Fout.h"

#include <cmath>

namespace rekenhart {

DetermResultaat CalculateDeterministic(const LoadModel& model, const BasinLevel& levels,
                                       const WindStatistics& wind, const Instellingen& settings,
                                       double normPeriod)
{
    const Situatie situatie = settings.situatie;

    DetermResultaat result;
    const auto rounded = [&](int sector) {
        return std::round(result.richtingen[sector].details.load * 1e9);
    };
    for (int sector = 0; sector < kSectors; ++sector) {
        DetermRichting& richting = result.richtingen[sector];
        if (situatie == Situatie::Handmatig) {
            richting.basinLevel = settings.boezempeil + settings.belasting.toeslagWs;
            richting.wind = settings.windsnelheid;
        } else {
            // levels(0) is the target level.
            richting.basinLevel =
                HasExtremeLevel(situatie) ? levels.AtPeriod(normPeriod) : levels(0);
            richting.wind = HasExtremeWind(situatie) ? wind.WindAtPeriod(sector, normPeriod)
                                                     : wind.MeanWind(sector);
        }
        richting.details =
            model.Evaluate(richting.basinLevel, sector, richting.wind, LoadKind::Full);
        if (!std::isfinite(richting.details.load))
            throw GeenEindigeWaarde("n.v.t.");
        if (rounded(sector) > rounded(result.maatgevend))
            result.maatgevend = sector;
    }
    return result;
}

} // namespace rekenhart
