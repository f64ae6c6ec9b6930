#include "rekenhart/report/ReportParts.h"

#include "rekenhart/calculation/Waarschuwingen.h"
#include "rekenhart/files/Numbers.h"
#include "rekenhart/physics/RunUpOvertopping.h"

namespace rekenhart {

namespace {

std::string YesNo(bool value)
{
    return value ? "ja" : "nee";
}

std::string Metres(double value, int decimals = 3)
{
    const std::string text = Fixed(value, decimals);
    return text == "-" ? text : text + " m";
}

std::string VariantText(const Instellingen& settings)
{
    switch (settings.variant) {
    case Variant::Dijkvak:
        return "dijkvak";
    case Variant::Dijkring:
        return "dijkring";
    case Variant::Determ:
        break;
    }
    return "deterministisch";
}

std::string WallText(const Profiel& profiel)
{
    if (!profiel.IsWand())
        return "talud";
    return profiel.damwandmodule == 1 ? "verticale wand met neus" : "verticale wand zonder neus";
}

} // namespace

std::string ProgramLine()
{
    return "Rekenhart (open referentie) versie " REKENHART_VERSION;
}

void AddHeading(Report& report, const Instellingen& settings)
{
    report.Title(ProgramLine());
    report.Item("Datum", settings.datum);
    report.Item("Gebruiker", settings.gebruiker);
    report.Item("Memo", settings.memo);
}

void AddLimits(Report& report)
{
    report.Section("Grenzen van deze berekening");
    report.Line("1. Dit is een open referentiemethode, geen voorgeschreven model van een overheid. "
                "Gebruik de");
    report.Line("   uitkomsten niet voor een wettelijke toetsing of een ontwerp zonder controle "
                "met andere middelen.");
    report.Line("2. Boezempeil en wind zijn binnen het seizoen onafhankelijk verondersteld.");
    report.Line("3. De statistiek van de voorbeelddatabase is verzonnen.");
    report.Line("De overige grenzen staan in de handleiding, in het hoofdstuk over het rekenhart.");
}

void AddLocatie(Report& report, const Locatie& locatie)
{
    report.Section("Locatie");
    report.Item("Naam", locatie.naam);
    report.Item("Locatie_ID", std::to_string(locatie.id));
    report.Item("x, y", Fixed(locatie.x, 0) + ", " + Fixed(locatie.y, 0));
    report.Item("Streefpeil", Metres(locatie.streefpeil));
    report.Item("Dijknormaal", Fixed(locatie.dijknormaal, 1) + " graden");
    report.Item("Kruinhoogte", Metres(locatie.kruinhoogte));
    report.Item("Ruwheidslengte", Metres(locatie.ruwheidslengte, 4));
    report.Item("Veiligheidsklasse", std::to_string(locatie.veiligheidsklasse));
    for (const PeilRij& row : locatie.peilen)
        report.Item("Boezempeil eens per " + Period(row.herhalingstijd) + " jaar",
                    Metres(row.boezempeil));
}

void AddSectors(Report& report, const Locatie& locatie)
{
    report.Section("Gegevens per windrichting");
    std::vector<std::string> headings{"richting", "strijklengte m", "bodem m", "hoek graden"};
    for (const ScheefstandRij& row : locatie.sectoren[0].scheefstand)
        headings.push_back("S bij " + General(row.windsnelheid) + " m/s");
    std::vector<std::vector<std::string>> rows;
    for (int i = 0; i < kSectors; ++i) {
        const SectorGegevens& sector = locatie.sectoren[i];
        std::vector<std::string> cells{
            SectorText(i), Fixed(sector.strijklengte, 0), Fixed(sector.bodemhoogte, 2),
            Fixed(AngleBetween(SectorBearing(i), locatie.dijknormaal), 1)};
        for (const ScheefstandRij& row : sector.scheefstand)
            cells.push_back(Fixed(row.scheefstand, 3));
        rows.push_back(std::move(cells));
    }
    report.Table(headings, rows);
}

void AddProfiel(Report& report, const Profiel& profiel)
{
    report.Section("Profiel");
    report.Item("Naam", profiel.naam);
    report.Item("Profiel_ID", std::to_string(profiel.id));
    report.Item("Soort", WallText(profiel));
    report.Item("Dijk begint bij punt", std::to_string(profiel.ToeIndex() + 1));
    if (profiel.damtype >= 1) {
        report.Item("Damtype", std::to_string(profiel.damtype));
        report.Item("Hoogte dam", Metres(profiel.damHoogte));
        report.Item("Kruinbreedte dam", Metres(profiel.kruinBreedte));
        report.Item("Taludhelling dam", "1:" + General(profiel.taludhelling));
        report.Item("Dam doorlatend", YesNo(profiel.constructietype != 0));
    }
    if (profiel.palenrij)
        report.Item("Palenrij", "diameter " + Metres(profiel.paaldiameter) + ", hart op hart " +
                                    Metres(profiel.hartafstandPalen));
    if (profiel.rietkraag)
        report.Item("Rietkraag", "breedte " + Metres(profiel.vegetatieBreedte, 1) + ", " +
                                     General(profiel.Stengels()) + " stengels per m2");
    std::vector<std::vector<std::string>> rows;
    int number = 0;
    for (const ProfielPunt& punt : profiel.punten)
        rows.push_back({std::to_string(++number), Fixed(punt.x, 2), Fixed(punt.y, 2),
                        punt.gras ? "gras" : Fixed(punt.r, 2)});
    if (!rows.empty())
        report.Table({"punt", "x m", "hoogte m", "ruwheid"}, rows);
}

void AddSettings(Report& report, const Instellingen& settings)
{
    const Belastinginstellingen& load = settings.belasting;
    report.Section("Instellingen");
    report.Item("Soort berekening", VariantText(settings));
    report.Item("Database", settings.database);
    if (settings.variant == Variant::Dijkvak)
        report.Item("Berekening_ID", std::to_string(settings.berekeningId));
    report.Item("Faalmechanisme", Keyword(load.faalmechanisme));
    if (load.faalmechanisme == Faalmechanisme::Golfoverslag &&
        settings.variant != Variant::Dijkring)
        report.Item("Overslagdebiet", General(load.overslagdebiet) + " l/s per m");
    if (load.HasWaves()) {
        report.Item("Golfgroei", DisplayName(load.golfgroeimodule));
        report.Item("Correctiefactor golfhoogte", General(load.golfCorrFactor));
    }
    report.Item("Windreductie", YesNo(load.windreductie));
    if (settings.variant == Variant::Dijkvak) {
        report.Item("Herhalingstijd van de norm", YesNo(settings.normfrequentie));
        report.Item("Uitsplitsen naar aandelen", YesNo(settings.uitsplitsen));
        report.Item("Illustratiepunten", YesNo(settings.uitEnIll));
    }
    if (load.toeslagWs != 0 || !settings.memoToeslagWs.empty()) {
        report.Item("Toeslag op de waterstand", Metres(load.toeslagWs));
        report.Item("  toelichting", settings.memoToeslagWs);
    }
    if (load.toeslagHbn != 0 || !settings.memoToeslagHbn.empty()) {
        report.Item("Toeslag op het HBN", Metres(load.toeslagHbn));
        report.Item("  toelichting", settings.memoToeslagHbn);
    }
    if (load.toenameWind != 0)
        report.Item("Toename van de wind", General(load.toenameWind) + " %");
}

void AddWarnings(Report& report, const std::vector<std::string>& warnings)
{
    report.Section("Waarschuwingen");
    if (warnings.empty())
        report.Line("Geen.");
    for (const std::string& warning : warnings)
        report.Line("WAARSCHUWING: " + warning);
}

void AddReferences(Report& report, const Instellingen& settings)
{
    const Belastinginstellingen& load = settings.belasting;
    report.Section("Gebruikte formules");
    report.Line("Wind over water: Wieringa (1986); windschuifspanning: Wu (1982).");
    report.Line("Opwaaiing: evenwicht van windschuifspanning en verhang, knooplijn op de halve "
                "strijklengte.");
    if (load.HasWaves()) {
        switch (load.golfgroeimodule) {
        case Golfgroeimodule::Bretschneider:
            report.Line("Golfgroei: Bretschneider volgens de Shore Protection Manual (CERC 1984).");
            break;
        case Golfgroeimodule::YoungVerhagen:
            report.Line("Golfgroei: Young en Verhagen (1996).");
            break;
        case Golfgroeimodule::BreugemHolthuijsen:
            report.Line("Golfgroei: Breugem en Holthuijsen (2007).");
            break;
        }
        report.Line("Dam: d'Angremond e.a. (1996), Van der Meer (1990); palen: Hayashi e.a. "
                    "(1966); riet: Mendez en Losada (2004).");
        report.Line("Golfoploop en golfoverslag: TAW (2002), EurOtop (2007, 2018), gemiddelde "
                    "waarden.");
    }
    if (settings.variant != Variant::Determ)
        report.Line(
            "Kansberekening: Ferry Borges en Castanheta (1971), blokken van 48 uur (peil) en "
            "12 uur (wind).");
}

std::vector<std::string> DetailHeadings(const LoadModel& model)
{
    std::vector<std::string> headings{"peil m", "wind m/s", "u_w m/s", "S m", "opw m", "h m"};
    if (model.HasProfiel())
        for (const char* heading : {"H m", "Tp s", "hoek", "ksi", "gamma", "Rc m"})
            headings.emplace_back(heading);
    headings.emplace_back("belasting m");
    return headings;
}

std::vector<std::string> DetailCells(double basinLevel, double wind, const LoadDetails& details,
                                     const LoadModel& model)
{
    std::vector<std::string> cells{Fixed(basinLevel, 3),        Fixed(wind, 1),
                                   Fixed(details.waterWind, 1), Fixed(details.scheefstand, 3),
                                   Fixed(details.opwaaiing, 3), Fixed(details.level, 3)};
    if (model.HasProfiel()) {
        const bool slope = details.wavesArrive && model.HasSlope();
        cells.push_back(Fixed(details.waveHeight, 2));
        cells.push_back(Fixed(details.waveHeight > 0 ? details.peakPeriod : 0, 2));
        cells.push_back(Fixed(details.angle, 1));
        cells.push_back(slope ? Fixed(details.slope.breaker, 2) : "-");
        cells.push_back(details.wavesArrive ? Fixed(details.freeboard.factor, 2) : "-");
        cells.push_back(Fixed(details.freeboard.freeboard, 3));
    }
    cells.push_back(Fixed(details.load, 3));
    return cells;
}

std::string SectorText(int sector)
{
    return General(SectorBearing(sector)) + " " + std::string(SectorName(sector));
}

std::string FrequencyText(double perYear)
{
    if (perYear < kSmallestFrequency)
        return "meer dan 10 miljoen jaar";
    return Period(ParseNumber(General(1 / perYear, 4)).value_or(1 / perYear));
}

} // namespace rekenhart
