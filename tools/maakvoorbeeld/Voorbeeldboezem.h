#pragma once

#include <array>
#include <string>
#include <vector>

/// The recipe of the example data: invented water bodies in the range of the
/// national grid, matching no real water. Everything here is computed from a
/// few numbers, so that the example files are the same to the byte each time
/// they are made. Coordinates in metres, bearings in degrees.
namespace voorbeeld {

constexpr int kSectoren = 16;
constexpr double kSectorbreedte = 22.5;

struct Punt {
    double x, y;
};
using Ring = std::vector<Punt>; ///< not closed: the last point is not the first

enum class Water { GrotePlas, KleinePlas, Vaart };

struct Waterlichaam {
    std::string naam;
    double bodem;             ///< bed level in the middle, m
    std::vector<Ring> ringen; ///< outer ring counter-clockwise, then islands
};

/// Grote Plas (with an island), Kleine Plas, Voorbeeldvaart, in this order.
std::vector<Waterlichaam> Waterlichamen();
/// Bed level at a point, m; false outside the water bodies (the canal is 60 m wide).
bool Bodemhoogte(Punt punt, double& hoogte);

struct Locatie {
    int id;
    std::string naam;
    Water water;
    int x, y;
    double dijknormaal;    ///< bearing from the shore to the water
    double ruwheidslengte; ///< m
    int veiligheidsklasse;
    double streefpeil;
    double kruinhoogte;
    std::array<double, 5> peilen;               ///< basin levels of kHerhalingstijden, m
    std::array<double, kSectoren> strijklengte; ///< m
    std::array<double, kSectoren> bodemhoogte;  ///< m
    std::array<std::array<double, 5>, kSectoren> scheefstand; ///< m, at kWindsnelheden
    std::vector<std::string> profielen;
};

constexpr std::array<int, 5> kHerhalingstijden{10, 30, 100, 300, 1000};
constexpr std::array<int, 5> kWindsnelheden{0, 10, 20, 30, 40}; // m/s

/// The 24 locations of the example.
std::vector<Locatie> Locaties();
/// `aantal` locations along the shore of the Grote Plas, with the data of the
/// example's in turn: for measurements. Named Locatie-0001 and so on.
std::vector<Locatie> VeelLocaties(int aantal);

struct Profielpunt {
    double x, y, ruwheid;
    bool gras;
};

struct Profiel {
    std::string naam;
    int voorland;
    std::vector<Profielpunt> punten;
    int damwandmodule = 0, damtype = 0, constructietype = 0;
    double kruinbreedte = 0, taludhelling = 1;
    bool palenrij = false, rietkraag = false;
    double paaldiameter = 0, hartafstand = 0;
    double vegetatiebreedte = 0, stengels = 0, seizoensfactor = 0;
};
std::vector<Profiel> Profielen();

struct Ringlid {
    std::string ring, locatie, profiel;
    double overslagdebiet; ///< l/s/m
};
std::vector<Ringlid> Dijkringen();

/// The synthetic wind statistics of one season.
struct Windseizoen {
    std::array<double, kSectoren> kans; ///< of each sector; sum 1
    /// Weibull scale (m/s) and shape of the wind speed, given the sector.
    std::array<double, kSectoren> schaal, vorm;
    /// P(U > u) in sector r (from 0), to ten significant digits.
    double Overschrijdingskans(int r, double u) const;
};
Windseizoen Winter();
Windseizoen Zomer();

/// Potential wind (m/s) to wind over open water.
struct Transformatie {
    double windsnelheid, factor;
};
std::vector<Transformatie> Transformatietabel();

} // namespace voorbeeld
