#pragma once

#include "rekenhart/integration/ExceedanceLine.h"

#include <functional>
#include <string>
#include <vector>

namespace rekenhart {

/// A member of a dike ring with its data, checked.
struct RingLid {
    Locatie locatie;
    bool heeftProfiel = false;
    Profiel profiel;
    Belastinginstellingen instellingen; ///< with the member's own discharge
};

struct RingLidResultaat {
    std::string locatie, profiel;
    double overslagdebiet = 0;
    double kruinhoogte = 0;
    double crestFrequency = 0;
    std::vector<double> hbn; ///< at RingPeriods()
};

/// One value of a frequency line.
struct FreqlijnPunt {
    double herhalingstijd = 0;
    double niveau = 0;
};

struct RingResultaat {
    std::vector<RingLidResultaat> leden;
    std::size_t zwakste = 0;        ///< the member with the largest crest frequency
    double frequency = 0;           ///< that any member is exceeded
    double sumOfMembers = 0;        ///< an upper bound of it
    std::vector<FreqlijnPunt> lijn; ///< on the scale of the weakest member
};

/// The periods at which members are reported, years.
const std::vector<double>& RingPeriods();

/// The ring as a chain: it fails when any member is exceeded. Basin levels of
/// all members are fully correlated and the wind is the same for all.
/// `onStep` is called `members * Steps()` times. Throws GeenEindigeWaarde.
class DijkringBerekening {
public:
    DijkringBerekening(const std::vector<RingLid>& leden, const WindStatistics& wind,
                       const std::function<void()>& onStep = {}, const IntegrationGrid& grid = {});
    static int Steps(const IntegrationGrid& grid = {}) { return grid.levelIntervals + 1; }

    const RingResultaat& Result() const { return m_result; }

private:
    RingResultaat m_result;
};

} // namespace rekenhart
