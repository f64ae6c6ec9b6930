#include "windwave/WindWaveTable.h"

#include <algorithm>

using rekenhart::Golfgroeimodule;

namespace {

constexpr int kWindStep = 2; // m/s
constexpr int kHighestWind = 40;

} // namespace

std::vector<Golfgroeimodule> ModelsOfLetters(std::string_view letters)
{
    std::vector<Golfgroeimodule> models;
    const auto add = [&](Golfgroeimodule model) {
        if (std::find(models.begin(), models.end(), model) == models.end())
            models.push_back(model);
    };
    for (const char letter : letters) {
        if (letter == 'B' || letter == 'b')
            add(Golfgroeimodule::Bretschneider);
        if (letter == 'Y' || letter == 'y')
            add(Golfgroeimodule::YoungVerhagen);
        if (letter == 'H' || letter == 'h')
            add(Golfgroeimodule::BreugemHolthuijsen);
    }
    return models.empty() ? ModelsOfLetters("BYH") : models;
}

std::vector<WindWaveRow> MakeWindWaveTable(const WindWaveInput& input,
                                           const std::vector<Golfgroeimodule>& models)
{
    std::vector<double> speeds{input.wind};
    for (int wind = kWindStep; wind <= kHighestWind; wind += kWindStep)
        if (wind != input.wind)
            speeds.push_back(wind);
    std::sort(speeds.begin(), speeds.end());

    std::vector<WindWaveRow> rows;
    for (const double wind : speeds) {
        WindWaveRow row{wind, {}, wind == input.wind};
        for (const Golfgroeimodule model : models)
            row.waves.push_back(rekenhart::GrowWaves(model, wind, input.fetch, input.depth));
        rows.push_back(std::move(row));
    }
    return rows;
}
