#include "maps/MapValues.h"

#include "frame/Convert.h"
#include "frame/Globals.h"
#include "frame/Numbers.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kVerzadigd = 1000; // more classes than any map needs

/// General format, 15 significant digits, no "-0".
QString Tekst(double getal)
{
    return NumberText(getal == 0 ? 0 : getal);
}

} // namespace

void MapValues::ClearData()
{
    m_points.assign(1, {});
    m_position = 0;
    m_minimum = kGrootste;
    m_maximum = -kGrootste;
}

void MapValues::AddData(double x, double y, double value)
{
    m_points.push_back({x, y, value});
    m_minimum = std::min(m_minimum, value);
    m_maximum = std::max(m_maximum, value);
}

bool MapValues::HeeftMeerdereWaardeOpZelfdeLocatie(int index, double x, double y) const
{
    if (x == -1) {
        std::vector<std::pair<double, double>> plaatsen;
        for (const Punt& punt : m_points)
            plaatsen.emplace_back(punt.x, punt.y);
        std::sort(plaatsen.begin(), plaatsen.end());
        return std::adjacent_find(plaatsen.begin(), plaatsen.end()) != plaatsen.end();
    }
    for (std::size_t i = 0; i < m_points.size(); ++i)
        if (static_cast<int>(i) != index && m_points[i].x == x && m_points[i].y == y)
            return true;
    return false;
}

void MapValues::AddKlassegrens(double onder, double boven, int kleur)
{
    m_klassen.push_back({onder, boven, {.kleur = kleur}});
}

const Klasse* MapValues::KlasseVan(int i) const
{
    return i >= 1 && i <= AantalKlassen() ? &m_klassen[std::size_t(i) - 1] : nullptr;
}

double MapValues::getKlasseOnderGrens(int i) const
{
    const Klasse* klasse = KlasseVan(i);
    return klasse ? klasse->Ondergrens : 0;
}

double MapValues::getKlasseBovenGrens(int i) const
{
    const Klasse* klasse = KlasseVan(i);
    return klasse ? klasse->Bovengrens : 0;
}

int MapValues::getKlasseKleur(int i) const
{
    const Klasse* klasse = KlasseVan(i);
    return klasse ? klasse->symbool.kleur : 0;
}

std::optional<Symbool> MapValues::GetSymbol(double value)
{
    for (std::size_t i = 0; i < m_klassen.size(); ++i)
        if (m_klassen[i].Ondergrens <= value && value <= m_klassen[i].Bovengrens) {
            m_klassen[i].symbool.kleur = m_colormap.kleur(static_cast<int>(i) + 1);
            return m_klassen[i].symbool;
        }
    return std::nullopt;
}

MapValues::Grenzen MapValues::BepaalGrenzen(double a, double b, int n, double f1, double f2) const
{
    double d = b - a;
    double teken = 1;
    if (d == 0)
        d = 1e-10;
    else
        teken = d / std::abs(d);
    Grenzen grenzen{.lo = b - d * f1, .hi = d * f2 + a, .step = 0, .format = {}};
    grenzen.step = (grenzen.hi - grenzen.lo) / n;
    if (grenzen.step != 0 && std::isfinite(grenzen.step)) {
        const double macht = std::pow(10, std::floor(std::log10(std::abs(grenzen.step))) + 1);
        double m = grenzen.step / macht;
        if (m >= 1) {
            m = teken;
        } else {
            const double x = teken * m;
            double tiende = 0.1;
            for (const double trede : {0.9, 0.8, 0.7, 0.6, 0.5, 0.4, 0.3, 0.2})
                if (x >= trede) {
                    tiende = trede;
                    break;
                }
            m = teken * tiende;
        }
        grenzen.step = macht * m;
        grenzen.lo = std::floor(grenzen.lo / grenzen.step) * grenzen.step;
        grenzen.hi = std::floor(grenzen.hi / grenzen.step + 0.999) * grenzen.step;
    }

    qsizetype breedte = 0;
    int decimalen = 0;
    for (const double getal : {grenzen.lo, grenzen.hi, grenzen.step}) {
        const QString tekst = Tekst(getal);
        breedte = std::max(breedte, tekst.size());
        decimalen = std::max<int>(decimalen, gConvert().Ndec(tekst));
    }
    if (m_aantalDecimalen != -1)
        decimalen = m_aantalDecimalen;
    grenzen.format = QString::number(breedte) + "." + QString::number(decimalen) + "f";
    return grenzen;
}

QString MapValues::MaakKlassegrenzen(double minimum, double maximum)
{
    constexpr int kGewenst = 5;
    const Grenzen grenzen = BepaalGrenzen(minimum, maximum, kGewenst, 1, 1);
    ClearKlassegrenzen();
    // A range so small beside its values that the step vanishes has no classes.
    const double aantal = (grenzen.hi - grenzen.lo) / grenzen.step + 1.5;
    if (!std::isfinite(aantal) || aantal > kVerzadigd)
        return grenzen.format;
    const int m = static_cast<int>(aantal);
    int kleuren = m;
    m_colormap.NumberOfValues(kleuren, "summer");
    // The top class begins at the highest boundary and reaches beyond it.
    for (int i = 1; i <= m; ++i) {
        const double onder = grenzen.lo + (i - 1) * grenzen.step;
        AddKlassegrens(onder, onder + grenzen.step, m_colormap.kleur(i));
    }
    return grenzen.format;
}

void MapValues::MaakFixedKlassegrenzen(double onder, double boven, int aantal)
{
    ClearKlassegrenzen();
    if (aantal < 1)
        return;
    const double step = (boven - onder) / aantal;
    int kleuren = aantal;
    m_colormap.NumberOfValues(kleuren, {});
    for (int i = 1; i <= aantal; ++i)
        AddKlassegrens((i - 1) * step + onder, i * step + onder, m_colormap.kleur(i));
}

void MapValues::ClearTitles()
{
    Titel.clear();
    SubTitel1.clear();
    SubTitel2.clear();
    SubTitel3.clear();
}

void MapValues::DrawLegend(QPainter& painter) const
{
    constexpr int kRegel = 25; // pixels from class to class
    constexpr int kStraal = 4;
    const auto print = [&painter](int x, int y, const QString& tekst) {
        painter.drawText(x, y + painter.fontMetrics().ascent(), tekst);
    };

    painter.save();
    QFont letter("Courier New", 9);
    letter.setStyleHint(QFont::TypeWriter);
    letter.setBold(true);
    painter.setFont(letter);
    print(0, 0, Titel);
    const int regelhoogte = painter.fontMetrics().height();
    letter.setBold(false);
    painter.setFont(letter);
    print(0, regelhoogte, SubTitel1);

    const int aantal = AantalKlassen();
    for (int i = aantal; i >= 1; --i) {
        painter.setBrush(KleurVanGetal(m_colormap.kleur(i)));
        painter.drawEllipse(QPoint(30, kRegel * i + 50), kStraal, kStraal);
        print(50, kRegel * i + 42,
              gConvert().QLMFormat(Format, getKlasseOnderGrens(i)) + " - " +
                  gConvert().QLMFormat(Format, getKlasseBovenGrens(i)) + " " + Eenheid);
    }
    if (!SubTitel2.isEmpty())
        print(0, kRegel * aantal + 67, SubTitel2);
    if (!SubTitel3.isEmpty())
        print(0, kRegel * aantal + 117, SubTitel3);
    painter.restore();
}
