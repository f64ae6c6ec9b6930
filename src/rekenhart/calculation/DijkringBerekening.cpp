#include "rekenhart/calculation/DijkringBerekening.h"

#include "rekenhart/Fout.h"
#include "rekenhart/calculation/LocatieBerekening.h"

#include <cmath>
#include <optional>

namespace rekenhart {

namespace {

/// The level nodes that suit all members: their knots together.
std::vector<double> CommonNodes(const std::vector<RingLid>& leden, const IntegrationGrid& grid)
{
    std::vector<double> knots;
    for (const RingLid& lid : leden) {
        const BasinLevel levels(lid.locatie.streefpeil, lid.locatie.peilen, 0);
        knots.insert(knots.end(), levels.Knots().begin(), levels.Knots().end());
    }
    return grid.LevelNodes(knots);
}

LoadField MemberField(const RingLid& lid, const WindStatistics& wind,
                      const std::vector<double>& nodes, const IntegrationGrid& grid,
                      const std::function<void()>& onStep)
{
    const BasinLevel levels(lid.locatie.streefpeil, lid.locatie.peilen, lid.instellingen.toeslagWs);
    const LoadModel model(lid.locatie, lid.heeftProfiel ? &lid.profiel : nullptr, lid.instellingen,
                          wind.transformation);
    const LoadTable table(model, LoadKind::Full, levels, grid, onStep);
    return {table, levels, nodes, grid};
}

} // namespace

const std::vector<double>& RingPeriods()
{
    static const std::vector<double> periods{10, 30, 100, 300, 1000};
    return periods;
}

DijkringBerekening::DijkringBerekening(const std::vector<RingLid>& leden,
                                       const WindStatistics& wind,
                                       const std::function<void()>& onStep,
                                       const IntegrationGrid& grid)
{
    const std::vector<double> nodes = CommonNodes(leden, grid);
    // The largest of (load - crest) over the members; shifted to the weakest
    // member's crest when that is known. One member's field is in memory at a time.
    LoadField ring(nodes, grid);
    for (const RingLid& lid : leden) {
        LoadField field = MemberField(lid, wind, nodes, grid, onStep);
        if (!field.IsFinite())
            throw GeenEindigeWaarde("alle");
        ring.RaiseTo(field, -lid.locatie.kruinhoogte);

        ExceedanceLine line(std::move(field), wind);
        RingLidResultaat member;
        member.locatie = lid.locatie.naam;
        member.profiel = lid.heeftProfiel ? lid.profiel.naam : std::string();
        member.overslagdebiet = lid.instellingen.overslagdebiet;
        member.kruinhoogte = lid.locatie.kruinhoogte;
        member.crestFrequency = line.Frequency(member.kruinhoogte);
        for (const double years : RingPeriods())
            member.hbn.push_back(line.Quantile(years));
        m_result.sumOfMembers += member.crestFrequency;
        m_result.leden.push_back(std::move(member));
        if (m_result.leden.back().crestFrequency > m_result.leden[m_result.zwakste].crestFrequency)
            m_result.zwakste = m_result.leden.size() - 1;
    }

    const double crest = m_result.leden[m_result.zwakste].kruinhoogte;
    LoadField shifted(nodes, grid);
    shifted.RaiseTo(ring, crest);
    ExceedanceLine line(std::move(shifted), wind);
    m_result.frequency = line.Frequency(crest);
    for (const double years : FrequencyLinePeriods())
        m_result.lijn.push_back({years, line.Quantile(years)});
    for (const FreqlijnPunt& punt : m_result.lijn)
        if (!std::isfinite(punt.niveau))
            throw GeenEindigeWaarde("alle");
}

} // namespace rekenhart
