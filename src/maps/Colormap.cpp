#include "maps/Colormap.h"

#include "frame/Numbers.h"

#include <algorithm>
#include <cmath>

namespace {

/// 0 below, 1 above, a slope around the middle: the hump of one colour.
double Bult(double midden, double x)
{
    return std::max(0.0, std::min(1.0, 1.55 - std::abs(midden - x)));
}

int Byte(double aandeel)
{
    return static_cast<int>(RoundToEven(aandeel * 255));
}

} // namespace

QString Colormap::Kleurenpalet() const
{
    return m_palet.isEmpty() ? QStringLiteral("default") : m_palet;
}

void Colormap::NumberOfValues(int& m, const QString& palet)
{
    if (!palet.isEmpty())
        m_palet = palet;
    if (m < 1)
        return;
    const int gevraagd = m;
    ++m;
    m_tinten.assign(std::size_t(m), {});
    const QString naam = Kleurenpalet().toLower();
    const int k = 3 * m / 8; // a third of the way of "hot"
    for (int i = 1; i <= m; ++i) {
        Tint& tint = m_tinten[std::size_t(i) - 1];
        const double x = double(i - 1) / std::max(1, gevraagd);
        if (naam == "spring") {
            tint = {1, x, 1 - x};
        } else if (naam == "summer") {
            tint = {x, 0.5 + x / 2, 0.4};
        } else if (naam == "autumn") {
            tint = {1, x, 0};
        } else if (naam == "winter") {
            tint = {0, x, 0.5 + (1 - x) / 2};
        } else if (naam == "gray") {
            tint = {x, x, x};
        } else if (naam == "copper") {
            tint = {std::min(1.0, x * 1.25), std::min(1.0, x * 0.7812), std::min(1.0, x * 0.4975)};
        } else if (naam == "cool") {
            tint = {x, 1 - x, 1};
        } else if (naam == "default" && i <= gevraagd) {
            const double y = 4.1 * i / (gevraagd + 1);
            tint = {Bult(3.05, y), Bult(2.05, y), Bult(1.05, y)};
        } else if (naam == "hot") {
            tint.r = i <= k ? double(i) / k : 1;
            tint.g = i <= k ? 0 : i <= 2 * k ? double(i - k) / k : 1;
            tint.b = i <= 2 * k ? 0 : double(i - 2 * k) / (m - 2 * k);
        }
    }
}

int Colormap::kleur(int i) const
{
    if (i <= 0 || i >= static_cast<int>(m_tinten.size()))
        return 0;
    const Tint& tint = m_tinten[std::size_t(i) - 1];
    return Byte(tint.r) + 256 * Byte(tint.g) + 65536 * Byte(tint.b);
}

QColor KleurVanGetal(int kleur)
{
    return QColor(kleur & 0xFF, (kleur >> 8) & 0xFF, (kleur >> 16) & 0xFF);
}
