#include "rekenhart/report/Reports.h"

#include "rekenhart/files/Numbers.h"
#include "rekenhart/report/ReportParts.h"

namespace rekenhart {

namespace {

using Cells = std::vector<std::string>;

std::vector<std::string> Joined(std::vector<std::string> first,
                                const std::vector<std::string>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::string Difference(double one, double two)
{
    return IsBekend(one) && IsBekend(two) ? Fixed(one - two, 3) : "-";
}

std::string Share(double part)
{
    return Fixed(100 * part, 1);
}

void AddResults(Report& report, const std::vector<PeriodResult>& results)
{
    std::vector<Cells> levels, shares;
    for (const PeriodResult& result : results) {
        const ResultaatRij& row = result.rij;
        const std::string period = Period(row.herhalingstijd);
        levels.push_back({period, Fixed(row.hbn, 3), Fixed(row.overloopMo, 3),
                          Fixed(row.overloopZo, 3), Fixed(row.boezempeil, 3),
                          Fixed(row.streefpeil, 3)});
        shares.push_back({period, Difference(row.boezempeil, row.streefpeil),
                          Difference(row.overloopZo, row.boezempeil),
                          Difference(row.overloopMo, row.overloopZo),
                          Difference(row.hbn, row.overloopMo)});
    }
    report.Section("Resultaten");
    report.Table({"T jaar", "HBN m", "overloop met opwaaiing m", "overloop zonder opwaaiing m",
                  "boezempeil m", "streefpeil m"},
                 levels);
    report.Section("Aandelen");
    report.Table({"T jaar", "waterstand m", "scheefstand m", "opwaaiing m", "golfbelasting m"},
                 shares);
}

void AddDesignPoints(Report& report, const LocatieRapport& rapport)
{
    std::vector<Cells> rows;
    for (const PeriodResult& result : rapport.results) {
        const DesignPoint& point = result.governing;
        rows.push_back(Joined(
            {Period(result.rij.herhalingstijd), SectorText(point.sector), Share(point.share)},
            DetailCells(point.basinLevel, point.wind, point.details, rapport.model)));
    }
    report.Section("Ontwerppunten");
    report.Table(Joined({"T jaar", "richting", "aandeel %"}, DetailHeadings(rapport.model)), rows);
}

/// All sectors at the basin level and wind of one design point, so that a reader
/// can follow the chain and see why the governing direction governs.
void AddIntermediate(Report& report, const LocatieRapport& rapport)
{
    if (rapport.results.empty())
        return;
    const PeriodResult& result = rapport.results.front();
    const DesignPoint& governing = result.governing;
    std::vector<Cells> rows;
    for (int sector = 0; sector < kSectors; ++sector)
        rows.push_back(Joined({SectorText(sector)},
                              DetailCells(governing.basinLevel, governing.wind,
                                          rapport.model.Evaluate(governing.basinLevel, sector,
                                                                 governing.wind, LoadKind::Full),
                                          rapport.model)));
    report.Section(
        "Tussenresultaten per windrichting bij peil en wind van het ontwerppunt van T = " +
        Period(result.rij.herhalingstijd));
    report.Table(Joined({"richting"}, DetailHeadings(rapport.model)), rows);
}

void AddSectorShares(Report& report, const std::vector<PeriodResult>& results)
{
    Cells headings{"T jaar"};
    for (int sector = 0; sector < kSectors; ++sector)
        headings.push_back(General(SectorBearing(sector)));
    std::vector<Cells> rows;
    for (const PeriodResult& result : results) {
        Cells cells{Period(result.rij.herhalingstijd)};
        for (const double share : result.shares)
            cells.push_back(Share(share));
        rows.push_back(std::move(cells));
    }
    report.Section("Aandeel per windrichting in procenten");
    report.Table(headings, rows);
}

void AddIllustrationPoints(Report& report, const LocatieRapport& rapport)
{
    for (const PeriodResult& result : rapport.results) {
        std::vector<Cells> rows;
        for (const DesignPoint& point : result.perSector)
            rows.push_back(
                Joined({SectorText(point.sector), Share(point.share)},
                       DetailCells(point.basinLevel, point.wind, point.details, rapport.model)));
        report.Section("Illustratiepunten per windrichting, T = " +
                       Period(result.rij.herhalingstijd));
        report.Table(Joined({"richting", "aandeel %"}, DetailHeadings(rapport.model)), rows);
    }
}

void AddCrests(Report& report, const std::vector<KruinResultaat>& kruinen)
{
    if (kruinen.empty())
        return;
    std::vector<Cells> rows;
    for (const KruinResultaat& kruin : kruinen)
        rows.push_back({Fixed(kruin.kruinhoogte, 3), General(kruin.frequency, 4),
                        FrequencyText(kruin.frequency)});
    report.Section("Kruinhoogten");
    report.Table({"kruin m", "frequentie per jaar", "herhalingstijd jaar"}, rows);
}

void AddLine(Report& report, const std::vector<FreqlijnPunt>& lijn)
{
    std::vector<Cells> rows;
    for (const FreqlijnPunt& punt : lijn)
        rows.push_back({Period(punt.herhalingstijd), Fixed(punt.niveau, 3)});
    report.Section("Frequentielijn");
    report.Table({"T jaar", "niveau m"}, rows);
}

} // namespace

std::string WriteReport(const LocatieRapport& rapport)
{
    Report report;
    AddHeading(report, rapport.settings);
    AddLimits(report);
    AddLocatie(report, rapport.locatie);
    AddSectors(report, rapport.locatie);
    if (rapport.profiel)
        AddProfiel(report, *rapport.profiel);
    AddSettings(report, rapport.settings);
    AddWarnings(report, rapport.warnings);
    AddResults(report, rapport.results);
    AddDesignPoints(report, rapport);
    AddSectorShares(report, rapport.results);
    if (rapport.settings.uitEnIll)
        AddIllustrationPoints(report, rapport);
    AddIntermediate(report, rapport);
    AddCrests(report, rapport.kruinen);
    AddLine(report, rapport.lijn);
    AddReferences(report, rapport.settings);
    return report.Text();
}

std::string WriteReport(const DetermRapport& rapport)
{
    Report report;
    AddHeading(report, rapport.settings);
    AddLimits(report);
    AddLocatie(report, rapport.locatie);
    AddSectors(report, rapport.locatie);
    if (rapport.profiel)
        AddProfiel(report, *rapport.profiel);
    AddSettings(report, rapport.settings);
    report.Item("Situatie", Keyword(rapport.settings.situatie));
    AddWarnings(report, rapport.warnings);
    if (rapport.settings.situatie == Situatie::BextrUextr) {
        report.Line();
        report.Line("Let op: een extreem peil samen met een extreme wind is veel zeldzamer dan de "
                    "herhalingstijd");
        report.Line("van de norm.");
    }

    const DetermResultaat& result = rapport.result;
    std::vector<Cells> rows;
    for (int sector = 0; sector < kSectors; ++sector) {
        const DetermRichting& richting = result.richtingen[sector];
        rows.push_back(
            Joined(Joined({SectorText(sector)}, DetailCells(richting.basinLevel, richting.wind,
                                                            richting.details, rapport.model)),
                   {sector == result.maatgevend ? "<-- maatgevend" : ""}));
    }
    report.Section("Belasting per windrichting");
    report.Table(Joined(Joined({"richting"}, DetailHeadings(rapport.model)), {""}), rows);
    report.Line();
    report.Item("Maatgevende windrichting", SectorText(result.maatgevend));
    report.Item("Maatgevende belasting",
                Fixed(result.richtingen[result.maatgevend].details.load, 3) + " m");
    AddReferences(report, rapport.settings);
    return report.Text();
}

std::string WriteReport(const RingRapport& rapport)
{
    const RingResultaat& result = rapport.result;
    Report report;
    AddHeading(report, rapport.settings);
    AddLimits(report);
    report.Section("Dijkring");
    report.Item("Naam", rapport.settings.dijkring);
    report.Item("Aantal leden", std::to_string(result.leden.size()));
    AddSettings(report, rapport.settings);
    AddWarnings(report, rapport.warnings);

    Cells headings{"locatie", "profiel", "q l/s/m", "kruin m", "frequentie kruin per jaar"};
    for (const double years : RingPeriods())
        headings.push_back("HBN T=" + Period(years));
    std::vector<Cells> rows;
    for (const RingLidResultaat& lid : result.leden) {
        Cells cells{lid.locatie, lid.profiel.empty() ? "-" : lid.profiel,
                    lid.overslagdebiet > 0 ? General(lid.overslagdebiet) : "-",
                    Fixed(lid.kruinhoogte, 3), General(lid.crestFrequency, 4)};
        for (const double hbn : lid.hbn)
            cells.push_back(Fixed(hbn, 3));
        rows.push_back(std::move(cells));
    }
    report.Section("Leden");
    report.Table(headings, rows);

    const RingLidResultaat& weakest = result.leden[result.zwakste];
    report.Section("Ring");
    report.Item("Zwakste lid", weakest.locatie);
    report.Item("Frequentie van het zwakste lid", General(weakest.crestFrequency, 4) + " per jaar");
    report.Item("Frequentie van de ring", General(result.frequency, 4) + " per jaar");
    report.Item("Som over de leden", General(result.sumOfMembers, 4) + " per jaar");
    report.Line("De frequentie van de ring is die waarmee ten minste één lid wordt overschreden.");
    report.Line("De frequentielijn is getekend op de schaal van het zwakste lid: waar zij diens "
                "kruinhoogte");
    report.Line("passeert, staat de frequentie van de ring.");
    AddLine(report, result.lijn);
    AddReferences(report, rapport.settings);
    return report.Text();
}

std::string WriteErrorReport(const Instellingen* settings, std::string_view error,
                             std::string_view advice)
{
    Report report;
    if (settings)
        AddHeading(report, *settings);
    else
        report.Title(ProgramLine());
    report.Line();
    report.Line("FOUT: " + std::string(error));
    if (!advice.empty())
        report.Line(advice);
    return report.Text();
}

std::string WriteFreqlijn(const std::vector<FreqlijnPunt>& lijn)
{
    // The reader splits the first line at a double blank.
    std::string text = std::to_string(lijn.size()) +
                       "  punten: niveau [m] en overschrijdingsfrequentie [1/jaar]\n";
    for (const FreqlijnPunt& punt : lijn)
        text += Fixed(punt.niveau, 4) + " " + Fixed(1 / punt.herhalingstijd, 10) + "\n";
    return text;
}

std::string OverviewHeading()
{
    return "Berekening_ID\tLocatie\tX\tY\tProfiel\tFaalmechanisme\tOverslagdebiet\t"
           "Golfgroeimodule\tHerhalingstijd\tHBN\tOverloop met opwaaiing\t"
           "Overloop zonder opwaaiing\tBoezempeil\tStreefpeil\tWindrichting\tWaterstand\t"
           "Golfhoogte\tPiekperiode\n";
}

std::string OverviewLines(const LocatieRapport& rapport)
{
    const Belastinginstellingen& load = rapport.settings.belasting;
    std::string lines;
    for (const PeriodResult& result : rapport.results) {
        const ResultaatRij& row = result.rij;
        const bool overtopping = load.faalmechanisme == Faalmechanisme::Golfoverslag;
        const Cells cells{std::to_string(rapport.settings.berekeningId),
                          rapport.locatie.naam,
                          Fixed(rapport.locatie.x, 0),
                          Fixed(rapport.locatie.y, 0),
                          rapport.profiel ? rapport.profiel->naam : "-",
                          std::string(Keyword(load.faalmechanisme)),
                          overtopping ? General(load.overslagdebiet) : "-",
                          load.HasWaves() ? std::string(Keyword(load.golfgroeimodule)) : "-",
                          Period(row.herhalingstijd),
                          Fixed(row.hbn, 3),
                          Fixed(row.overloopMo, 3),
                          Fixed(row.overloopZo, 3),
                          Fixed(row.boezempeil, 3),
                          Fixed(row.streefpeil, 3),
                          Fixed(row.dominanteWindrichting, 1),
                          Fixed(row.waterstand, 3),
                          Fixed(row.golfhoogte, 2),
                          Fixed(row.piekperiode, 2)};
        for (std::size_t i = 0; i < cells.size(); ++i)
            lines += (i == 0 ? "" : "\t") + cells[i];
        lines += "\n";
    }
    return lines;
}

} // namespace rekenhart
