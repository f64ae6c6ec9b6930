#include "Voorbeeldboezem.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

namespace voorbeeld {

namespace {

using std::numbers::pi;

/// Rounded by the decimal text, so that a binary value just below a half goes down.
double Afgerond(double waarde, int decimalen)
{
    char tekst[64];
    std::snprintf(tekst, sizeof tekst, "%.*f", decimalen, waarde);
    return std::strtod(tekst, nullptr);
}

double Radialen(double graden)
{
    return graden * pi / 180;
}

/// An ellipse with half axes a and b, turned by `hoek`; lakes get a wavy shore.
struct Ellips {
    Punt midden;
    double a, b, hoek; ///< hoek in radians, counter-clockwise
    double bodem;

    Ring Oever(int aantal, bool golvend) const
    {
        Ring ring;
        for (int i = 0; i < aantal; ++i) {
            const double t = 2 * pi * i / aantal;
            const double f = golvend ? 1 + 0.06 * std::sin(3 * t) + 0.04 * std::cos(5 * t) : 1;
            const double langs = a * f * std::cos(t);
            const double dwars = b * f * std::sin(t);
            ring.push_back(
                {Afgerond(midden.x + langs * std::cos(hoek) - dwars * std::sin(hoek), 1),
                 Afgerond(midden.y + langs * std::sin(hoek) + dwars * std::cos(hoek), 1)});
        }
        return ring;
    }

    /// Distance to the middle as a share of the ellipse's own radius there.
    double Rho(Punt p) const
    {
        const double dx = p.x - midden.x;
        const double dy = p.y - midden.y;
        const double langs = dx * std::cos(hoek) + dy * std::sin(hoek);
        const double dwars = -dx * std::sin(hoek) + dy * std::cos(hoek);
        return std::hypot(langs / a, dwars / b);
    }
};

const Ellips kGrotePlas{{176000, 552000}, 3000, 2200, 0, -2.2};
const Ellips kMiddeneiland{{176600, 552300}, 350, 250, 0, 0};
const Ellips kKleinePlas{{184500, 546500}, 1800, 1400, Radialen(30), -1.9};

constexpr double kVaartBodem = -2.6;
constexpr Punt kVaartVan{179100, 550300};
constexpr Punt kVaartNaar{182600, 547700};
constexpr double kVaartBreedte = 60;

constexpr double kStreefpeil = -0.60;
constexpr Punt kMiddenStelsel{180000, 549500}; // where the set-up is nil

/// Even-odd.
bool Binnen(const Ring& ring, Punt p)
{
    bool binnen = false;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++)
        if ((ring[i].y > p.y) != (ring[j].y > p.y) &&
            p.x < (ring[j].x - ring[i].x) * (p.y - ring[i].y) / (ring[j].y - ring[i].y) + ring[i].x)
            binnen = !binnen;
    return binnen;
}

Ring Vaart()
{
    const double lengte = std::hypot(kVaartNaar.x - kVaartVan.x, kVaartNaar.y - kVaartVan.y);
    // Half the width to the left of the direction of travel.
    const double dx = -(kVaartNaar.y - kVaartVan.y) / lengte * kVaartBreedte / 2;
    const double dy = (kVaartNaar.x - kVaartVan.x) / lengte * kVaartBreedte / 2;
    Ring ring{{kVaartVan.x + dx, kVaartVan.y + dy},
              {kVaartNaar.x + dx, kVaartNaar.y + dy},
              {kVaartNaar.x - dx, kVaartNaar.y - dy},
              {kVaartVan.x - dx, kVaartVan.y - dy}};
    for (Punt& punt : ring)
        punt = {Afgerond(punt.x, 1), Afgerond(punt.y, 1)};
    return ring;
}

/// What cannot be computed from a formula: position (15 m from the shore),
/// effective fetches as the program's own computation gives them, profiles.
struct Gegeven {
    const char* naam;
    Water water;
    int x, y;
    double dijknormaal, ruwheidslengte;
    int veiligheidsklasse;
    std::array<double, kSectoren> strijklengte;
    std::vector<std::string> profielen;
};

const Gegeven kGegevens[] = {
    {"Plas-01",
     Water::GrotePlas,
     176000,
     554053,
     180.0,
     0.03,
     4,
     {15, 19, 96, 525, 1352, 2143, 2645, 2980, 3156, 3335, 3120, 2171, 1159, 372, 22, 15},
     {"Gras 1op3"}},
    {"Plas-02",
     Water::GrotePlas,
     177178,
     554041,
     210.0,
     0.03,
     4,
     {16, 15, 18, 70, 446, 1140, 2023, 2590, 2901, 3206, 3336, 2931, 1971, 844, 118, 22},
     {"Gras 1op3", "Voorland 1op4"}},
    {"Plas-03",
     Water::GrotePlas,
     178379,
     553374,
     240.0,
     0.03,
     5,
     {25, 15, 14, 17, 58, 316, 781, 1496, 2423, 3032, 3672, 3750, 3086, 2156, 920, 220},
     {"Berm 1op3"}},
    {"Plas-04",
     Water::GrotePlas,
     179105,
     552000,
     270.0,
     0.03,
     5,
     {661, 214, 51, 18, 14, 14, 16, 38, 330, 1201, 2533, 3510, 3944, 3459, 2451, 1509},
     {"Gras 1op3", "Strekdam"}},
    {"Plas-05",
     Water::GrotePlas,
     178124,
     550774,
     300.0,
     0.03,
     4,
     {2366, 1698, 926, 352, 31, 16, 15, 19, 111, 525, 1341, 2503, 3392, 3634, 3426, 2888},
     {"Gras 1op3"}},
    {"Plas-06",
     Water::GrotePlas,
     177229,
     549872,
     330.0,
     0.03,
     4,
     {3355, 2537, 1677, 741, 126, 21, 15, 15, 20, 48, 275, 982, 2129, 3273, 3775, 3775},
     {"Gras 1op3", "Voorland 1op4"}},
    {"Plas-07",
     Water::GrotePlas,
     176000,
     549683,
     0.0,
     0.03,
     4,
     {3608, 3382, 2841, 2100, 1064, 341, 62, 18, 15, 15, 21, 193, 882, 1956, 3024, 3512},
     {"Berm 1op3"}},
    {"Plas-08",
     Water::GrotePlas,
     174855,
     550017,
     30.0,
     0.03,
     4,
     {3372, 3663, 3612, 3125, 2254, 1120, 365, 37, 17, 15, 17, 52, 369, 1078, 2004, 2905},
     {"Gras 1op3", "Strekdam"}},
    {"Plas-09",
     Water::GrotePlas,
     173694,
     550669,
     60.0,
     0.03,
     4,
     {2404, 3184, 3752, 3890, 3276, 2240, 1008, 246, 27, 15, 14, 17, 31, 175, 694, 1466},
     {"Gras 1op3"}},
    {"Plas-10",
     Water::GrotePlas,
     173135,
     552000,
     90.0,
     0.03,
     4,
     {987, 1812, 2800, 3699, 4140, 3773, 2753, 1502, 578, 128, 19, 15, 15, 22, 140, 463},
     {"Gras 1op3", "Voorland 1op4"}},
    {"Plas-11",
     Water::GrotePlas,
     173439,
     553478,
     120.0,
     0.03,
     4,
     {18, 83, 669, 1727, 2989, 3909, 3945, 3249, 2252, 1252, 557, 195, 50, 20, 14, 14},
     {"Berm 1op3"}},
    {"Plas-12",
     Water::GrotePlas,
     174906,
     553895,
     150.0,
     0.03,
     4,
     {14, 18, 200, 971, 1913, 2793, 3409, 3447, 3310, 2958, 2256, 1446, 733, 235, 24, 15},
     {"Gras 1op3", "Strekdam"}},
    {"Eiland-1",
     Water::GrotePlas,
     176883,
     552463,
     60.0,
     0.03,
     1,
     {1535, 1499, 1575, 1722, 1851, 1774, 1331, 758, 266, 16, 14, 17, 445, 947, 1387, 1640},
     {"Rietoever", "Palenrij"}},
    {"Eiland-2",
     Water::GrotePlas,
     176317,
     552137,
     240.0,
     0.03,
     1,
     {287, 16, 14, 17, 408, 986, 1608, 2094, 2234, 2349, 2507, 2700, 2774, 2469, 1750, 927},
     {"Rietoever", "Palenrij"}},
    {"Kleine-1",
     Water::KleinePlas,
     184767,
     548016,
     190.0,
     0.05,
     3,
     {15, 18, 43, 233, 604, 1119, 1707, 2184, 2499, 2502, 2013, 1281, 575, 133, 29, 16},
     {"Gras 1op3"}},
    {"Kleine-2",
     Water::KleinePlas,
     186122,
     547090,
     250.0,
     0.05,
     3,
     {375, 156, 46, 17, 13, 14, 21, 225, 754, 1535, 2318, 2651, 2457, 1910, 1265, 747},
     {"Rietoever"}},
    {"Kleine-3",
     Water::KleinePlas,
     185668,
     545520,
     310.0,
     0.05,
     3,
     {1747, 1096, 502, 121, 33, 18, 15, 17, 33, 157, 577, 1264, 1964, 2436, 2525, 2284},
     {"Damwand neus", "Gras 1op3"}},
    {"Kleine-4",
     Water::KleinePlas,
     184242,
     545040,
     10.0,
     0.05,
     3,
     {2466, 2463, 2097, 1400, 688, 223, 28, 16, 15, 18, 46, 206, 594, 1131, 1696, 2175},
     {"Gras 1op3"}},
    {"Kleine-5",
     Water::KleinePlas,
     182812,
     545886,
     70.0,
     0.05,
     3,
     {949, 1669, 2329, 2686, 2497, 1791, 1013, 404, 88, 20, 15, 15, 21, 65, 200, 457},
     {"Rietoever"}},
    {"Kleine-6",
     Water::KleinePlas,
     183500,
     547339,
     130.0,
     0.05,
     3,
     {25, 235, 737, 1386, 2010, 2348, 2363, 2188, 1880, 1399, 862, 407, 105, 19, 15, 16},
     {"Damwand neus", "Gras 1op3"}},
    {"Vaart-1",
     Water::Vaart,
     179984,
     549662,
     216.6,
     0.1,
     2,
     {24, 16, 15, 20, 86, 138, 160, 142, 70, 47, 46, 59, 131, 157, 146, 100},
     {"Damwand kaal"}},
    {"Vaart-2",
     Water::Vaart,
     179966,
     549638,
     36.6,
     0.1,
     2,
     {70, 47, 46, 59, 131, 157, 146, 100, 24, 16, 15, 20, 86, 138, 160, 142},
     {"Gras 1op3"}},
    {"Vaart-3",
     Water::Vaart,
     181734,
     548362,
     216.6,
     0.1,
     2,
     {24, 16, 15, 20, 86, 138, 160, 142, 70, 47, 46, 59, 131, 157, 146, 100},
     {"Palenrij"}},
    {"Vaart-4",
     Water::Vaart,
     181716,
     548338,
     36.6,
     0.1,
     2,
     {70, 47, 46, 59, 131, 157, 146, 100, 24, 16, 15, 20, 86, 138, 160, 142},
     {"Damwand neus"}},
};

/// Basin level once in ten years, and the rise per factor ten in return period.
struct Peillijn {
    double h10, stap;
};

Peillijn PeillijnVan(Water water)
{
    switch (water) {
    case Water::GrotePlas:
        return {-0.20, 0.16};
    case Water::KleinePlas:
        return {-0.17, 0.17};
    case Water::Vaart:
        break;
    }
    return {-0.14, 0.18};
}

Locatie MaakLocatie(int id, const Gegeven& gegeven)
{
    Locatie locatie{.id = id,
                    .naam = gegeven.naam,
                    .water = gegeven.water,
                    .x = gegeven.x,
                    .y = gegeven.y,
                    .dijknormaal = gegeven.dijknormaal,
                    .ruwheidslengte = gegeven.ruwheidslengte,
                    .veiligheidsklasse = gegeven.veiligheidsklasse,
                    .streefpeil = kStreefpeil,
                    .kruinhoogte = 0,
                    .peilen = {},
                    .strijklengte = gegeven.strijklengte,
                    .bodemhoogte = {},
                    .scheefstand = {},
                    .profielen = gegeven.profielen};

    const auto [h10, stap] = PeillijnVan(gegeven.water);
    for (std::size_t i = 0; i < kHerhalingstijden.size(); ++i)
        locatie.peilen[i] = Afgerond(
            h10 + 0.01 * ((id - 1) % 4) + stap * std::log10(kHerhalingstijden[i] / 10.0), 2);

    const double bodem = gegeven.water == Water::GrotePlas    ? kGrotePlas.bodem
                         : gegeven.water == Water::KleinePlas ? kKleinePlas.bodem
                                                              : kVaartBodem;
    for (std::size_t r = 0; r < kSectoren; ++r) {
        locatie.bodemhoogte[r] =
            gegeven.water == Water::Vaart
                ? kVaartBodem
                : Afgerond(bodem + 0.4 * std::exp(-locatie.strijklengte[r] / 800), 2);
        // Water is driven to the lee end of the whole system.
        const double hoek = Radialen(double(r) * kSectorbreedte);
        const double lij = -((gegeven.x - kMiddenStelsel.x) * std::sin(hoek) +
                             (gegeven.y - kMiddenStelsel.y) * std::cos(hoek)) /
                           1000;
        for (std::size_t i = 0; i < kWindsnelheden.size(); ++i) {
            const double u = kWindsnelheden[i] / 20.0;
            locatie.scheefstand[r][i] = Afgerond(std::max(0.0, 0.012 * lij * (u * u)), 3);
        }
    }
    locatie.kruinhoogte = Afgerond(0.40 + 0.00018 * *std::max_element(locatie.strijklengte.begin(),
                                                                      locatie.strijklengte.end()),
                                   1);
    return locatie;
}

} // namespace

std::vector<Waterlichaam> Waterlichamen()
{
    return {{"Grote Plas",
             kGrotePlas.bodem,
             {kGrotePlas.Oever(48, true), kMiddeneiland.Oever(24, false)}},
            {"Kleine Plas", kKleinePlas.bodem, {kKleinePlas.Oever(40, true)}},
            {"Voorbeeldvaart", kVaartBodem, {Vaart()}}};
}

bool Bodemhoogte(Punt punt, double& hoogte)
{
    static const auto waters = Waterlichamen();
    const Ellips* meren[] = {&kGrotePlas, &kKleinePlas, nullptr};
    for (std::size_t i = 0; i < waters.size(); ++i) {
        if (!Binnen(waters[i].ringen[0], punt) ||
            (waters[i].ringen.size() > 1 && Binnen(waters[i].ringen[1], punt)))
            continue;
        const double rand = meren[i] ? std::max(0.0, (meren[i]->Rho(punt) - 0.6) / 0.4) : 0.0;
        hoogte = Afgerond(waters[i].bodem + 0.8 * rand * rand, 2);
        return true;
    }
    return false;
}

std::vector<Locatie> Locaties()
{
    std::vector<Locatie> locaties;
    for (const Gegeven& gegeven : kGegevens)
        locaties.push_back(MaakLocatie(static_cast<int>(locaties.size()) + 1, gegeven));
    return locaties;
}

std::vector<Locatie> VeelLocaties(int aantal)
{
    std::vector<Locatie> locaties;
    for (int i = 0; i < aantal; ++i) {
        Gegeven gegeven = kGegevens[std::size_t(i) % std::size(kGegevens)];
        const double peiling = 2 * pi * i / aantal;
        gegeven.x = static_cast<int>(std::round(kGrotePlas.midden.x + 2500 * std::sin(peiling)));
        gegeven.y = static_cast<int>(std::round(kGrotePlas.midden.y + 1800 * std::cos(peiling)));
        Locatie locatie = MaakLocatie(i + 1, gegeven);
        char naam[32];
        std::snprintf(naam, sizeof naam, "Locatie-%04d", i + 1);
        locatie.naam = naam;
        locaties.push_back(std::move(locatie));
    }
    return locaties;
}

std::vector<Profiel> Profielen()
{
    constexpr bool gras = true;
    const std::vector<Profielpunt> talud1op3{
        {0, -2, 0.9, false}, {4.5, -0.5, 1, gras}, {9, 1, 1, gras}};
    return {
        {.naam = "Gras 1op3", .voorland = 1, .punten = talud1op3},
        {.naam = "Voorland 1op4",
         .voorland = 2,
         .punten = {{0, -1.6, 1, false}, {30, -1.2, 1, gras}, {38, 0.8, 1, gras}}},
        {.naam = "Berm 1op3",
         .voorland = 1,
         .punten = {{0, -2, 0.8, false},
                    {4.5, -0.5, 0.9, false},
                    {8.5, -0.3, 1, gras},
                    {12.4, 1, 1, gras}}},
        {.naam = "Damwand neus",
         .voorland = 1,
         .punten = {{0, -1.9, 1, false}, {20, -1.8, 1, false}},
         .damwandmodule = 1},
        {.naam = "Damwand kaal", .voorland = 1, .punten = {}, .damwandmodule = 2},
        {.naam = "Rietoever",
         .voorland = 2,
         .punten = {{0, -1.5, 1, false}, {20, -1.1, 1, gras}, {26, 0.9, 1, gras}},
         .rietkraag = true,
         .vegetatiebreedte = 6,
         .stengels = 120,
         .seizoensfactor = 0.5},
        {.naam = "Palenrij",
         .voorland = 1,
         .punten = {{0, -1.9, 0.9, false}, {5.7, 0, 1, gras}, {8.7, 1, 1, gras}},
         .palenrij = true,
         .paaldiameter = 0.2,
         .hartafstand = 0.3},
        {.naam = "Strekdam",
         .voorland = 1,
         .punten = talud1op3,
         .damtype = 4,
         .constructietype = 1,
         .kruinbreedte = 1.5,
         .taludhelling = 2},
    };
}

std::vector<Ringlid> Dijkringen()
{
    return {{"Ring Oost", "Plas-02", "Gras 1op3", 1.0},  {"Ring Oost", "Plas-03", "Berm 1op3", 1.0},
            {"Ring Oost", "Plas-04", "Gras 1op3", 0.1},  {"Ring Oost", "Plas-05", "Gras 1op3", 1.0},
            {"Ring Vaart", "Vaart-2", "Gras 1op3", 0.1}, {"Ring Vaart", "Vaart-3", "Palenrij", 1.0},
            {"Ring Vaart", "Kleine-5", "Rietoever", 1.0}};
}

double Windseizoen::Overschrijdingskans(int r, double u) const
{
    const auto sector = static_cast<std::size_t>(r);
    char tekst[32];
    std::snprintf(tekst, sizeof tekst, "%.9e",
                  std::exp(-std::pow(u / schaal[sector], vorm[sector])));
    return std::strtod(tekst, nullptr);
}

Windseizoen Winter()
{
    Windseizoen winter{
        .kans = {.040, .035, .050, .055, .060, .045, .045, .060, .085, .120, .125, .095, .070, .045,
                 .038, .032},
        .schaal = {6.6, 6.3, 6.5, 6.7, 6.7, 6.0, 5.9, 6.5, 7.4, 8.4, 8.8, 9.0, 8.8, 8.4, 7.8, 7.2},
        .vorm = {}};
    for (std::size_t r = 0; r < kSectoren; ++r)
        winter.vorm[r] = r < 8 ? 2.2 : 2.0;
    return winter;
}

Windseizoen Zomer()
{
    // Every sector's probability must differ from the winter's: equal ones mark
    // a database with outdated statistics.
    Windseizoen zomer{.kans = {.070, .062, .070, .065, .055, .035, .032, .038, .055, .085, .110,
                               .100, .080, .055, .048, .040},
                      .schaal = {},
                      .vorm = {}};
    const Windseizoen winter = Winter();
    for (std::size_t r = 0; r < kSectoren; ++r) {
        zomer.schaal[r] = Afgerond(0.84 * winter.schaal[r], 2);
        zomer.vorm[r] = winter.vorm[r] + 0.1;
    }
    return zomer;
}

std::vector<Transformatie> Transformatietabel()
{
    return {{0, 1.1374},  {5, 1.1374},  {10, 1.1141}, {15, 1.0969}, {20, 1.0825}, {25, 1.0697},
            {30, 1.0580}, {35, 1.0470}, {40, 1.0365}, {45, 1.0264}, {50, 1.0166}};
}

} // namespace voorbeeld
