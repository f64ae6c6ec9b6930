#pragma once

namespace rekenhart {

enum class Golfgroeimodule { Bretschneider, YoungVerhagen, BreugemHolthuijsen };

struct Waves {
    double height = 0;     ///< significant wave height Hm0, m
    double peakPeriod = 0; ///< Tp, s
};

/// The waves that a stationary wind raises over a fetch of constant depth.
/// `wind` over the water at 10 m in m/s, `fetch` and `depth` in m. No waves
/// below 0.1 m/s or without fetch.
///
/// Bretschneider: Shore Protection Manual (CERC 1984), equations 3-39 and 3-40,
/// with the adjusted wind 0.71 U^1.23 and Ts = 0.95 Tp.
/// Young and Verhagen: Coastal Engineering 28 (1996).
/// Breugem and Holthuijsen: Journal of Waterway, Port, Coastal and Ocean
/// Engineering 133 (2007). Some copies print 4.14e-4 and 0.18 for 4.41e-4 and
/// 0.187; only the latter give the deep-water curves of Kahma and Calkoen (1992).
Waves GrowWaves(Golfgroeimodule model, double wind, double fetch, double depth);

} // namespace rekenhart
