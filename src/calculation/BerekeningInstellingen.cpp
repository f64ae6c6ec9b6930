#include "calculation/BerekeningInstellingen.h"

#include "calculation/Rekeninstellingen.h"
#include "frame/Convert.h"
#include "frame/Globals.h"
#include "frame/QLMIniFile.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kHoogsteIndex = 2;

/// Never raises: a number beyond all types counts as its bound would.
double Getal(const QString& tekst)
{
    const double waarde = ParseNumber(tekst).value_or(0);
    return std::isnan(waarde) ? 0 : waarde;
}

/// A number with the system's sign, digits as they were stored; other text as it stands.
QString Schermtekst(const QString& tekst)
{
    if (!IsNumeric(tekst))
        return tekst;
    const QChar teken = gConvert().DecimalSign();
    return tekst.trimmed().replace('.', teken).replace(',', teken);
}

QString Binnen(const QString& tekst, double minimum, double maximum)
{
    return IsTussen(tekst, minimum, maximum)
               ? Schermtekst(tekst)
               : ScreenText(std::clamp(Getal(tekst), minimum, maximum));
}

QString FrequentieTekst(const QString& tekst)
{
    return Binnen(tekst, instellinggrens::FrequentieMin, instellinggrens::FrequentieMax);
}

QString Debiet(const QString& tekst)
{
    const double waarde = Getal(tekst);
    return ScreenText(std::isfinite(waarde) ? waarde : 0);
}

/// Reads with the dialog's defaults.
class Lezer {
public:
    explicit Lezer(QLMIniFile& ini) : m_ini(ini) {}

    QString Tekst(const Instelling& instelling, int nummer = 0) const
    {
        return LeesInstelling(m_ini, instelling, Standaard::Dialoog, nummer);
    }
    bool Vlag(const Instelling& instelling) const { return Tekst(instelling) == "1"; }
    QString Waarde(const Instelling& instelling) const { return Schermtekst(Tekst(instelling)); }
    int Geheel(const Instelling& instelling, double maximum) const
    {
        return static_cast<int>(std::lrint(std::clamp(Getal(Tekst(instelling)), 0.0, maximum)));
    }

private:
    QLMIniFile& m_ini;
};

QString Vlag(bool aan)
{
    return aan ? QStringLiteral("1") : QStringLiteral("0");
}

void BewaarLijst(QLMIniFile& ini, const Instelling& aantal, const Instelling& waarde,
                 const QStringList& lijst)
{
    BewaarInstelling(ini, aantal, QString::number(lijst.size()));
    for (int i = 0; i < lijst.size(); ++i)
        BewaarInstelling(ini, waarde, lijst[i].trimmed(), i + 1);
}

} // namespace

BerekeningInstellingen BerekeningInstellingen::Lees(QLMIniFile& ini)
{
    using namespace instelling;
    const Lezer lezer(ini);
    BerekeningInstellingen gelezen;
    gelezen.normFrequentie = lezer.Vlag(NormFreq);
    gelezen.extraFrequenties = lezer.Vlag(ExtraFreq);
    const int frequenties = lezer.Geheel(NFreq, instellinggrens::MaxAantal);
    for (int i = 1; i <= frequenties; ++i)
        gelezen.frequenties << FrequentieTekst(lezer.Tekst(Freq, i));
    gelezen.kruinhoogteProfiel = lezer.Vlag(KruinhProfiel);
    gelezen.extraKruinhoogtes = lezer.Vlag(ExtraKruinh);
    const int kruinhoogtes = lezer.Geheel(NKruin, instellinggrens::MaxAantal);
    for (int i = 1; i <= kruinhoogtes; ++i)
        gelezen.kruinhoogtes << Schermtekst(lezer.Tekst(Kruin, i));
    gelezen.indexFaalmechanisme = lezer.Geheel(IndexFaalmechanisme, kHoogsteIndex);
    gelezen.overslagdebiet = Debiet(lezer.Tekst(Overslagdebiet));
    gelezen.indexGolfgroeimodule = lezer.Geheel(IndexGolfgroeimodule, kHoogsteIndex);
    gelezen.golfCorrFactorAan = lezer.Vlag(GolfCorrFactorAan);
    gelezen.golfCorrFactor = lezer.Waarde(GolfCorrFactor);
    gelezen.uitEnIll = lezer.Vlag(UitEnIll);
    gelezen.windreductie = lezer.Vlag(Windreductie);
    gelezen.uitsplitsenNaarAandelen = lezer.Vlag(UitsplitsenNaarAandelen);
    gelezen.toeslagWS = {lezer.Vlag(ToeslagWSAan), lezer.Waarde(ToeslagWSVal),
                         lezer.Tekst(ToeslagWSMemo)};
    gelezen.toeslagHBN = {lezer.Vlag(ToeslagHBNAan), lezer.Waarde(ToeslagHBNVal),
                          lezer.Tekst(ToeslagHBNMemo)};
    gelezen.toenameWind = {lezer.Vlag(ToenameWindAan), lezer.Waarde(ToenameWindVal), {}};
    return gelezen;
}

bool BerekeningInstellingen::Bewaar(QLMIniFile& ini) const
{
    using namespace instelling;
    const auto bewaar = [&ini](const Instelling& wat, const QString& waarde) {
        BewaarInstelling(ini, wat, waarde.trimmed());
    };
    bewaar(NormFreq, Vlag(normFrequentie));
    bewaar(ExtraFreq, Vlag(extraFrequenties));
    BewaarLijst(ini, NFreq, Freq, frequenties);
    bewaar(KruinhProfiel, Vlag(kruinhoogteProfiel));
    bewaar(ExtraKruinh, Vlag(extraKruinhoogtes));
    BewaarLijst(ini, NKruin, Kruin, kruinhoogtes);
    bewaar(IndexFaalmechanisme, QString::number(indexFaalmechanisme));
    bewaar(Overslagdebiet, overslagdebiet);
    bewaar(IndexGolfgroeimodule, QString::number(indexGolfgroeimodule));
    // The factor first: saved behind its flag it would replace the line of the
    // flag (see QLMIniFile::SaveString). Guarded by FlagAndFactorOfWavesBothArrive.
    bewaar(GolfCorrFactor, golfCorrFactor);
    bewaar(GolfCorrFactorAan, Vlag(golfCorrFactorAan));
    bewaar(UitEnIll, Vlag(uitEnIll));
    bewaar(Windreductie, Vlag(windreductie));
    bewaar(UitsplitsenNaarAandelen, Vlag(uitsplitsenNaarAandelen));
    bewaar(ToeslagWSAan, Vlag(toeslagWS.aan));
    bewaar(ToeslagWSVal, toeslagWS.waarde);
    bewaar(ToeslagWSMemo, toeslagWS.toelichting);
    bewaar(ToeslagHBNAan, Vlag(toeslagHBN.aan));
    bewaar(ToeslagHBNVal, toeslagHBN.waarde);
    bewaar(ToeslagHBNMemo, toeslagHBN.toelichting);
    bewaar(ToenameWindAan, Vlag(toenameWind.aan));
    bewaar(ToenameWindVal, toenameWind.waarde);
    return ini.Save();
}

QString OpgeslagenFrequentie(QLMIniFile& ini, int nummer)
{
    return FrequentieTekst(LeesInstelling(ini, instelling::Freq, Standaard::Dialoog, nummer));
}

QString OpgeslagenKruinhoogte(QLMIniFile& ini, int nummer)
{
    return Schermtekst(ini.GetString(
        instelling::Kruin.sectie,
        QLatin1String(instelling::Kruin.sleutel) + "." + QString::number(nummer), "10"));
}

bool IsTussen(const QString& tekst, double minimum, double maximum)
{
    const auto waarde = ParseNumber(tekst);
    return waarde && *waarde >= minimum && *waarde <= maximum;
}

bool IsGolfCorrFactor(const QString& tekst)
{
    const auto waarde = ParseNumber(tekst);
    return waarde && *waarde > instellinggrens::GolfCorrFactorMin &&
           *waarde < instellinggrens::GolfCorrFactorMax;
}
