#pragma once

#include "rekenhart/physics/WaveGrowth.h"

#include <string_view>
#include <vector>

/// What the calculator is asked.
struct WindWaveInput {
    double wind = 20;    ///< m/s, over the water at 10 m
    double fetch = 5000; ///< m
    double depth = 3;    ///< m
};

/// The waves of one wind speed, one for each model asked for.
struct WindWaveRow {
    double wind = 0; ///< m/s
    std::vector<rekenhart::Waves> waves;
    bool isAsked = false; ///< the wind speed that the user gave
};

/// The models that letters stand for: B Bretschneider, Y Young and Verhagen,
/// H Breugem and Holthuijsen; each once, in the order given. Other characters
/// are passed over; without any letter all three.
std::vector<rekenhart::Golfgroeimodule> ModelsOfLetters(std::string_view letters);

/// Waves over the wind speeds 2, 4, ... 40 m/s, and over the speed that is asked,
/// which takes its place among them.
std::vector<WindWaveRow> MakeWindWaveTable(const WindWaveInput& input,
                                           const std::vector<rekenhart::Golfgroeimodule>& models);
