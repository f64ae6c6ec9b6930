#include "calculation/Frequentielijn.h"

#include "frame/Convert.h"
#include "frame/Globals.h"
#include "frame/Numbers.h"
#include "frame/Paths.h"
#include "frame/QLMFile.h"
#include "frame/StrToken.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kSlot = 3;

double Getal(const QString& tekst)
{
    return gConvert().ConvDbl(gConvert().NumSys(tekst));
}

Frequentiepunt LeesPunt(const QString& regel)
{
    // Split first, so that a decimal comma cannot occur in these lines.
    const double niveau = Getal(StrToken(kSlot, regel.trimmed(), " ,"));
    const double frequentie = Getal(StrToken(kSlot, {}, " ,"));
    return {niveau, frequentie == 0 ? 0 : 1 / frequentie};
}

double NiveauBij(double herhalingstijd, const Frequentiepunt& van, const Frequentiepunt& naar)
{
    return Interpolate(std::log10(herhalingstijd), std::log10(van.herhalingstijd), van.niveau,
                       std::log10(naar.herhalingstijd), naar.niveau);
}

} // namespace

std::optional<std::vector<Frequentiepunt>> LeesFrequentielijn(const QString& bestand)
{
    if (!FileExists(bestand) || QFileInfo(ResolvePath(bestand)).size() == 0)
        return std::nullopt;
    const int nummer = gFile().FOpen(bestand, QLMFile::Input);
    if (nummer < 1)
        return std::nullopt;
    std::vector<Frequentiepunt> lijn;
    const double aantal = Getal(StrToken(kSlot, gFile().LineInput(nummer), " "));
    while (double(lijn.size()) < aantal && !gFile().Eof(nummer))
        lijn.push_back(LeesPunt(gFile().LineInput(nummer)));
    gFile().FClose(nummer);
    return lijn;
}

std::vector<Frequentiepunt> KnipFrequentielijn(const std::vector<Frequentiepunt>& lijn)
{
    std::vector<Frequentiepunt> deel;
    for (std::size_t i = 0; i < lijn.size(); ++i) {
        const Frequentiepunt& punt = lijn[i];
        if (punt.herhalingstijd < kKleinsteHerhalingstijd)
            continue;
        // A predecessor of frequency 0 has no place on a logarithmic axis.
        const Frequentiepunt* vorige =
            i > 0 && lijn[i - 1].herhalingstijd > 0 ? &lijn[i - 1] : nullptr;
        if (deel.empty() && vorige && vorige->herhalingstijd < kKleinsteHerhalingstijd &&
            punt.herhalingstijd > kKleinsteHerhalingstijd)
            deel.push_back(
                {NiveauBij(kKleinsteHerhalingstijd, *vorige, punt), kKleinsteHerhalingstijd});
        if (punt.herhalingstijd > kGrootsteHerhalingstijd) {
            if (vorige && vorige->herhalingstijd < kGrootsteHerhalingstijd)
                deel.push_back(
                    {NiveauBij(kGrootsteHerhalingstijd, *vorige, punt), kGrootsteHerhalingstijd});
            break;
        }
        deel.push_back(punt);
    }
    return deel;
}

Asgrenzen LogaritmischeAs(double kleinste, double grootste)
{
    // A power of ten is its own bound, whatever its logarithm rounds to.
    const auto exponent = [](double waarde, double (*afronden)(double)) {
        const double logaritme = std::log10(waarde);
        const double dichtstbij = std::round(logaritme);
        return std::pow(10, dichtstbij) == waarde ? dichtstbij : afronden(logaritme);
    };
    return {.laag = std::pow(10, exponent(kleinste, std::floor)),
            .hoog = std::pow(10, exponent(grootste, std::ceil)),
            .stap = 0,
            .decimalen = 0};
}

Asgrenzen RondeAs(double a, double b, int n, double f1, double f2)
{
    double d = b - a;
    double teken = 1;
    if (d == 0)
        d = 1e-10;
    else
        teken = d > 0 ? 1 : -1;
    Asgrenzen as{.laag = b - d * f1, .hoog = a + d * f2, .stap = 0, .decimalen = 0};
    const double ruw = (as.hoog - as.laag) / n;
    if (ruw != 0 && std::isfinite(ruw)) {
        const double macht = std::pow(10, RoundToEven(std::log10(std::abs(ruw))));
        const double m = teken * ruw / macht;
        const double rond = m >= 1 ? 1 : m >= 0.5 ? 0.5 : m >= 0.2 ? 0.2 : 0.1;
        as.stap = teken * rond * macht;
        as.laag = std::floor(as.laag / as.stap) * as.stap;
        as.hoog = std::floor(as.hoog / as.stap + 0.999) * as.stap;
    }
    for (const double getal : {as.laag, as.hoog, as.stap})
        as.decimalen = std::max(as.decimalen, static_cast<int>(NumberText(getal).size()));
    return as;
}
