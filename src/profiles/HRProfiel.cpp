#include "profiles/HRProfiel.h"

#include <cmath>

namespace {

// Limits of a valid profile, as singles: a segment or gradient of exactly the
// limit passes.
constexpr float kBreedteVoorland = 10.0F;  // m, smallest foreshore segment
constexpr float kHellingVoorland = 0.1F;   // steepest foreshore gradient
constexpr float kHellingDijkrand = 0.125F; // flattest first and last dike segment
constexpr float kHellingDijk = 1.0F;       // steepest dike gradient

// Texts of these stand in Profiel.ini.
enum Melding {
    kGoed = 0,
    kVoorlandXDaalt = 101,
    kVoorlandYDaalt = 102,
    kVoorlandTeSmal = 103,
    kVoorlandTeSteil = 104,
    kGeenNaam = 106,
    kDamZonderHelling = 107,
    kDijkXDaalt = 111,
    kDijkYDaalt = 112,
    kDijkVerticaal = 113,
    kDijkTeSteil = 114,
    kDijkrandTeFlauw = 119,
};

constexpr int kDamtypeMetHelling = 4;

} // namespace

float HRProfiel::Xcoord(int index) const
{
    return Bestaat(index) ? Punt(index).x : kGeenPunt;
}

void HRProfiel::setXcoord(int index, float value)
{
    if (Bestaat(index))
        Punt(index).x = value;
}

float HRProfiel::Ycoord(int index) const
{
    return Bestaat(index) ? Punt(index).y : kGeenPunt;
}

void HRProfiel::setYcoord(int index, float value)
{
    if (Bestaat(index))
        Punt(index).y = value;
}

float HRProfiel::Ruwheid(int index) const
{
    return Bestaat(index) ? Punt(index).ruwheid : kGeenPunt;
}

bool HRProfiel::Gras(int index) const
{
    return Bestaat(index) && Punt(index).gras;
}

void HRProfiel::AddXYR(float x, float y, float r, bool gras)
{
    m_data.punten.push_back({x, y, gras ? 1.0F : r, gras});
}

float HRProfiel::helling(int index) const
{
    if (!Bestaat(index) || !Bestaat(index + 1))
        return 0;
    const ProfielPunt& van = Punt(index);
    const ProfielPunt& naar = Punt(index + 1);
    if (van.y == naar.y)
        return 0;
    return std::fabs(van.x - naar.x) / std::fabs(van.y - naar.y);
}

void HRProfiel::SetX2ByHelling(int index, float s)
{
    if (!Bestaat(index) || !Bestaat(index + 1))
        return;
    const ProfielPunt& van = Punt(index);
    ProfielPunt& naar = Punt(index + 1);
    if (van.y != naar.y)
        naar.x = van.x + std::fabs(van.y - naar.y) * s;
}

void HRProfiel::SetY2ByHelling(int index, float s)
{
    if (!Bestaat(index) || !Bestaat(index + 1))
        return;
    const ProfielPunt& van = Punt(index);
    ProfielPunt& naar = Punt(index + 1);
    if (van.x == naar.x)
        return;
    naar.y = s == 0 ? van.y : van.y + std::fabs(van.x - naar.x) / s;
}

bool HRProfiel::ControleerProfiel(int& melding, int& index) const
{
    melding = kGoed;
    const int aantal = AantalProfielpunten();
    if (m_data.Damwandmodule != 0) {
        // In front of a vertical wall everything is foreshore.
        if (!m_data.Naam.isEmpty() && aantal >= 2)
            melding = ControleerVoorland(aantal, index);
    } else {
        index = -1;
        if (m_data.Naam.isEmpty()) {
            melding = kGeenNaam;
        } else if (aantal >= 2) {
            melding = ControleerVoorland(m_data.Voorland, index);
            if (melding == kGoed)
                melding = ControleerDijk(m_data.Voorland, index);
        }
    }
    if (melding == kGoed && m_data.Damtype == kDamtypeMetHelling && m_data.Taludhelling <= 0)
        melding = kDamZonderHelling;
    return melding == kGoed;
}

int HRProfiel::ControleerVoorland(int last, int& index) const
{
    const int aantal = std::min<int>(last, AantalProfielpunten());
    if (aantal < 2)
        return kGoed;
    for (index = 1; index < aantal; ++index) {
        const ProfielPunt& van = Punt(index);
        const ProfielPunt& naar = Punt(index + 1);
        const float dx = naar.x - van.x;
        const float dy = naar.y - van.y;
        const float gradient = dx > 0 ? dy / dx : 0;
        if (van.x > naar.x)
            return kVoorlandXDaalt;
        if (van.y > naar.y)
            return kVoorlandYDaalt;
        if (dx < kBreedteVoorland)
            return kVoorlandTeSmal;
        if (gradient > kHellingVoorland)
            return kVoorlandTeSteil;
    }
    return kGoed;
}

int HRProfiel::ControleerDijk(int first, int& index) const
{
    // A toe that was never set counts as the first point.
    const int teen = std::max(first, 1);
    const int segmenten = AantalProfielpunten() - teen;
    for (index = 1; index <= segmenten; ++index) {
        const ProfielPunt& van = Punt(teen + index - 1);
        const ProfielPunt& naar = Punt(teen + index);
        if (van.y > naar.y)
            return kDijkYDaalt;
        if (van.x > naar.x)
            return kDijkXDaalt;
        if (van.x == naar.x)
            return kDijkVerticaal;
        const float gradient = (naar.y - van.y) / (naar.x - van.x);
        const bool rand = index == 1 || index == segmenten;
        if (rand && gradient < kHellingDijkrand)
            return kDijkrandTeFlauw;
        if (gradient > kHellingDijk)
            return kDijkTeSteil;
    }
    return kGoed;
}
