#include "maps/MapValues.h"

#include "frame/Convert.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Numbers.h"
#include "frame/Paths.h"
#include "frame/Ports.h"
#include "frame/QLMFile.h"

// The legend file (.zlb): header lines with "#", then the boundaries, one a
// line: the lower one of each class and at last the upper one of the last.
// Colours are not stored; they come back from the palette.

namespace {

constexpr char kVersie[] = "1.0";
constexpr int kMeldingVersie = 8010;

QString Achter(const QString& regel)
{
    const qsizetype dubbelepunt = regel.indexOf(':');
    return dubbelepunt < 0 ? QString() : regel.mid(dubbelepunt + 1).trimmed();
}

/// What a legend file says, up to where it stops being understood.
struct Legenda {
    QString palet = QStringLiteral("default");
    std::vector<double> grenzen;
};

Legenda Lees(int bestand)
{
    Legenda legenda;
    bool versieGelezen = false;
    while (!gFile().Eof(bestand)) {
        const QString regel = gFile().LineInput(bestand);
        if (versieGelezen && !regel.contains('#')) {
            legenda.grenzen.push_back(gConvert().ConvDbl(regel.section(',', 0, 0)));
        } else if (regel.contains("Versie")) {
            versieGelezen = true;
            if (const QString versie = Achter(regel); versie != kVersie) {
                if (gBoxes.Exists())
                    gBoxes().ShowMessage(kMeldingVersie, {versie, kVersie});
                break;
            }
        } else if (regel.contains("Kleurenpalet")) {
            legenda.palet = Achter(regel);
        }
    }
    return legenda;
}

/// An open file of QLMFile, closed on every way out; `nummer` below 1 when it could not
/// be opened.
struct Bestand {
    Bestand(const QString& pad, QLMFile::Mode mode) : nummer(gFile().FOpen(pad, mode)) {}
    ~Bestand() { gFile().FClose(nummer); }
    Bestand(const Bestand&) = delete;
    Bestand& operator=(const Bestand&) = delete;

    const int nummer;
};

void Schrijf(const Bestand& bestand, const QString& palet, const std::vector<Klasse>& klassen)
{
    const auto regel = [&bestand](const QString& tekst) {
        gFile().PrintLine(bestand.nummer, tekst);
    };
    const auto grens = [&regel](double waarde) {
        regel(gConvert().NumPoint(NumberText(waarde == 0 ? 0 : waarde)));
    };
    regel("# " + ApplicationTitle());
    regel("# Zandvoet Legenda Bestand");
    regel(QStringLiteral("# Versie: ") + kVersie);
    regel("# Kleurenpalet: " + palet);
    for (const Klasse& klasse : klassen)
        grens(klasse.Ondergrens);
    if (!klassen.empty())
        grens(klassen.back().Bovengrens);
}

} // namespace

bool MapValues::OpenFile(const QString& pad, QString& palet)
{
    palet = "default";
    const Bestand bestand(pad, QLMFile::Input);
    if (bestand.nummer < 1)
        return false;
    const Legenda legenda = Lees(bestand.nummer);
    palet = legenda.palet;
    if (legenda.grenzen.empty())
        return false;

    ClearKlassegrenzen();
    // One colour more than there are classes: the palette spreads over the boundaries.
    int kleuren = static_cast<int>(legenda.grenzen.size());
    m_colormap.NumberOfValues(kleuren, palet);
    for (std::size_t i = 1; i < legenda.grenzen.size(); ++i)
        AddKlassegrens(legenda.grenzen[i - 1], legenda.grenzen[i],
                       m_colormap.kleur(static_cast<int>(i)));
    return true;
}

bool MapValues::SaveFile(const QString& pad) const
{
    try {
        const Bestand bestand(pad, QLMFile::Output);
        if (bestand.nummer < 1)
            return false;
        Schrijf(bestand, m_colormap.Kleurenpalet(), m_klassen);
    } catch (const Fout&) {
        // Half a legend would be read as one of fewer classes.
        gFile().KillFile(pad);
        throw;
    }
    return true;
}
