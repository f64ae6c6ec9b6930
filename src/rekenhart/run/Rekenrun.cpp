#include "rekenhart/run/Rekenrun.h"

#include "rekenhart/calculation/Controle.h"
#include "rekenhart/calculation/Waarschuwingen.h"
#include "rekenhart/files/InvoerLezer.h"
#include "rekenhart/files/OutputFiles.h"
#include "rekenhart/files/TextEncoding.h"
#include "rekenhart/report/Reports.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace rekenhart {

namespace {

constexpr double kInputRead = 0.05;
constexpr double kTablesMade = 0.65;
constexpr double kLevelsFound = 0.95;

/// Progress in equal steps between two marks.
class Steps {
public:
    Steps(Console& console, double from, double to, int count)
        : m_console(console), m_from(from), m_to(to), m_count(count)
    {}
    void operator()() { m_console.Progress(m_from + (m_to - m_from) * ++m_done / m_count); }

private:
    Console& m_console;
    double m_from, m_to;
    int m_count, m_done = 0;
};

/// A location with its profile, checked for the settings.
struct Doorsnede {
    Locatie locatie;
    std::optional<Profiel> profiel;
    const Profiel* GetProfiel() const { return profiel ? &*profiel : nullptr; }
};

/// `lid` names the member of a ring that it is for.
Doorsnede ReadDoorsnede(Gegevensbron& source, const Instellingen& settings,
                        const std::string& lid = {})
{
    auto locatie = source.ReadLocatie(settings.locatieId, settings.locatie);
    if (!locatie)
        throw OnbekendeLocatie(settings.locatie);
    CheckLocatie(*locatie, settings.belasting, false);
    Doorsnede found{std::move(*locatie), std::nullopt};
    if (settings.belasting.HasWaves()) {
        try {
            found.profiel = source.ReadProfiel(settings.profielId, settings.profiel);
            if (!found.profiel)
                throw OnbekendProfiel(settings.profiel);
            CheckProfiel(*found.profiel, settings.belasting.faalmechanisme);
        } catch (const Fout& fout) {
            if (lid.empty())
                throw;
            throw fout.Of(lid);
        }
    }
    return found;
}

/// A member of a ring. What is wrong with its profile is told with its name.
RingLid ReadLid(Gegevensbron& source, const Instellingen& settings, const DijkringLid& row)
{
    Instellingen member = settings;
    member.locatie = row.locatie;
    member.profiel = row.profiel;
    member.belasting.overslagdebiet = row.overslagdebiet;
    Doorsnede section = ReadDoorsnede(source, member, row.locatie);
    CheckLocatie(section.locatie, member.belasting, true);
    if (settings.belasting.faalmechanisme == Faalmechanisme::Golfoverslag &&
        !(row.overslagdebiet > 0))
        throw OnvolledigeLocatie(row.locatie, "overslagdebiet van het ringlid onbekend");
    return {std::move(section.locatie), section.profiel.has_value(),
            std::move(section.profiel).value_or(Profiel()), member.belasting};
}

double ReadNorm(Gegevensbron& source, const Locatie& locatie)
{
    const auto years = source.ReadNormHerhalingstijd(locatie.veiligheidsklasse);
    if (!years || !(*years * kSlowBlocksPerYear > 1))
        throw OnbekendeKlasse(locatie.veiligheidsklasse, locatie.naam);
    return *years;
}

/// The periods asked for, each once, the norm first.
std::vector<double> WantedPeriods(const Instellingen& settings, std::optional<double> norm)
{
    std::vector<double> periods;
    const auto add = [&](double years) {
        if (std::none_of(periods.begin(), periods.end(),
                         [&](double one) { return IsZelfdeHerhalingstijd(one, years); }))
            periods.push_back(years);
    };
    if (norm)
        add(*norm);
    for (const double years : settings.herhalingstijden)
        add(years);
    return periods;
}

std::vector<FreqlijnPunt> FindLine(LocatieBerekening& calculation,
                                   const std::vector<PeriodResult>& results, Steps& step)
{
    std::vector<FreqlijnPunt> line;
    for (const double years : FrequencyLinePeriods()) {
        const auto known = std::find_if(results.begin(), results.end(), [&](const auto& one) {
            return IsZelfdeHerhalingstijd(one.rij.herhalingstijd, years);
        });
        line.push_back(
            {years, known == results.end() ? calculation.LevelAt(years) : known->rij.hbn});
        step();
    }
    return line;
}

std::vector<KruinResultaat> FindCrests(LocatieBerekening& calculation, const Doorsnede& section,
                                       const Instellingen& settings)
{
    std::vector<double> crests;
    if (settings.kruinhoogteProfiel) {
        const Profiel* profiel = section.GetProfiel();
        const double crest =
            profiel && !profiel->IsWand() ? profiel->punten.back().y : section.locatie.kruinhoogte;
        if (IsBekend(crest))
            crests.push_back(crest);
    }
    crests.insert(crests.end(), settings.kruinhoogten.begin(), settings.kruinhoogten.end());
    std::vector<KruinResultaat> results;
    for (const double crest : crests)
        results.push_back({crest, calculation.FrequencyOf(crest)});
    return results;
}

void WarnAll(Console& console, const std::vector<std::string>& warnings,
             const std::string& prefix = {})
{
    for (const std::string& warning : warnings)
        console.Warning(prefix + warning);
}

std::string NameOrNone(const Profiel* profiel)
{
    return profiel ? "profiel " + profiel->naam : "geen profiel";
}

} // namespace

bool IsZelfdeHerhalingstijd(double one, double two)
{
    return std::abs(one - two) <= 1e-6 * std::abs(two);
}

Rekenrun::Rekenrun(OpenGegevensbron open, Console& console)
    : m_open(std::move(open)), m_console(console)
{}

ExitCode Rekenrun::Run(const std::filesystem::path& inputFile) noexcept
{
    try {
        RunOrThrow(inputFile);
        return ExitCode::Ok;
    } catch (const Fout& fout) {
        return Report(fout);
    } catch (const std::bad_alloc&) {
        return Report({ExitCode::Unexpected, "Onverwachte fout: onvoldoende geheugen.",
                       "Sluit andere programma's en reken opnieuw."});
    } catch (const std::exception& error) {
        return Report({ExitCode::Unexpected, FillIn("Onverwachte fout: %1.", error.what()),
                       "Meld deze fout met het invoerbestand aan de beheerder."});
    }
}

ExitCode Rekenrun::Report(const Fout& fout) noexcept
{
    try {
        m_console.Line("FOUT: " + fout.Text());
        if (!fout.Advice().empty())
            m_console.Line(fout.Advice());
        if (!m_outputFolder.empty()) {
            if (m_settings && m_settings->variant != Variant::Determ)
                RemoveFrequencyLine();
            WriteTextFile(
                InOutputFolder("uitvoer.txt"),
                WriteErrorReport(m_settings ? &*m_settings : nullptr, fout.Text(), fout.Advice()));
        }
    } catch (const std::exception&) {
        // The first failure counts; it stands on standard output already.
    }
    return fout.Code();
}

void Rekenrun::RemoveFrequencyLine() const
{
    std::error_code ignored;
    if (!m_outputFolder.empty())
        std::filesystem::remove(InOutputFolder("freqlijn.txt"), ignored);
}

std::filesystem::path Rekenrun::InOutputFolder(const char* name) const
{
    return m_outputFolder / name;
}

void Rekenrun::RunOrThrow(const std::filesystem::path& inputFile)
{
    const auto bytes = ReadBytes(inputFile);
    if (!bytes)
        throw OnleesbaarInvoerbestand(ToUtf8(inputFile));
    const InputFile input(*bytes);

    // First of all, so that what is wrong further on can be reported there.
    const std::string folder = input.Value("UITVOERMAP").value_or("");
    std::error_code ignored;
    if (!folder.empty() && std::filesystem::is_directory(ToPath(folder), ignored))
        m_outputFolder = ToPath(folder);
    // The line of an earlier run must not pass for this one's. A deterministic
    // run has no line, and its folder is not ours alone.
    if (UpperCase(input.Value("VARIANT").value_or("")) != Keyword(Variant::Determ))
        RemoveFrequencyLine();
    m_settings = ReadInstellingen(input);
    if (m_outputFolder.empty())
        throw OnschrijfbaarBestand(ToUtf8(ToPath(folder) / "uitvoer.txt"));
    WarnAll(m_console, [&] {
        std::vector<std::string> warnings;
        for (const std::string& key : m_settings->onbekendeSleutels)
            warnings.push_back(UnknownKeyWarning(key));
        return warnings;
    }());

    switch (m_settings->variant) {
    case Variant::Dijkvak:
        RunDijkvak(*m_settings);
        break;
    case Variant::Dijkring:
        RunDijkring(*m_settings);
        break;
    case Variant::Determ:
        RunDeterm(*m_settings);
        break;
    }
    m_console.Progress(1);
    m_console.Line("Berekening gereed.");
}

void Rekenrun::RunDijkvak(const Instellingen& settings)
{
    auto source = m_open(settings.database, Toegang::Lezen);
    const Doorsnede section = ReadDoorsnede(*source, settings);
    const auto norm =
        settings.normfrequentie ? std::optional(ReadNorm(*source, section.locatie)) : std::nullopt;
    const std::vector<double> wanted = WantedPeriods(settings, norm);
    const std::vector<double> waiting =
        source->ReadHerhalingstijden(settings.berekeningId, section.locatie.id);
    const WindStatistics wind(source->ReadStatistiek());
    source.reset(); // closed while we calculate

    if (waiting.empty() && !wanted.empty())
        throw GeenResultaatRijen(settings.berekeningId, section.locatie.naam);
    m_console.Line("Invoer gelezen: locatie " + section.locatie.naam + ", " +
                   NameOrNone(section.GetProfiel()));
    m_console.Progress(kInputRead);

    Steps onTable(m_console, kInputRead, kTablesMade,
                  LocatieBerekening::Steps(settings.uitsplitsen));
    LocatieBerekening calculation(section.locatie, section.GetProfiel(), settings.belasting, wind,
                                  settings.uitsplitsen, std::ref(onTable));
    WarnAll(m_console, InputWarnings(calculation.Model(), calculation.Levels()));

    LocatieRapport rapport{
        settings, section.locatie, section.GetProfiel(), calculation.Model(), {}, {}, {}, {}};
    Steps onLevel(m_console, kTablesMade, kLevelsFound,
                  static_cast<int>(wanted.size() + FrequencyLinePeriods().size()));
    for (const double years : wanted) {
        rapport.results.push_back(calculation.Calculate(years));
        WarnAll(m_console,
                ResultWarnings(rapport.results.back(), calculation.Model(), calculation.Levels()));
        onLevel();
    }
    rapport.lijn = FindLine(calculation, rapport.results, onLevel);
    rapport.kruinen = FindCrests(calculation, section, settings);

    std::vector<ResultaatRij> rows;
    for (const PeriodResult& result : rapport.results) {
        const double years = result.rij.herhalingstijd;
        if (std::any_of(waiting.begin(), waiting.end(),
                        [&](double one) { return IsZelfdeHerhalingstijd(one, years); }))
            rows.push_back(result.rij);
        else
            m_console.Warning(NoRowWarning(years));
    }

    WriteTextFile(InOutputFolder("freqlijn.txt"), WriteFreqlijn(rapport.lijn));
    std::optional<Appended> overview;
    if (!settings.overzicht.empty()) {
        try {
            overview.emplace(ToPath(settings.overzicht), OverviewHeading(), OverviewLines(rapport));
        } catch (const Fout&) {
            m_console.Warning(OverviewWarning(settings.overzicht));
        }
    }
    try {
        rapport.warnings = m_console.Warnings();
        WriteTextFile(InOutputFolder("uitvoer.txt"), WriteReport(rapport));
        // Last of all: a kill up to here leaves the rows as they were.
        if (!rows.empty())
            m_open(settings.database, Toegang::Schrijven)
                ->WriteResultaten(settings.berekeningId, section.locatie.id, rows);
    } catch (...) {
        if (overview)
            overview->TakeBack();
        throw;
    }
}

void Rekenrun::RunDeterm(const Instellingen& settings)
{
    auto source = m_open(settings.database, Toegang::Lezen);
    const Doorsnede section = ReadDoorsnede(*source, settings);
    const bool isExtreme = settings.situatie != Situatie::Handmatig;
    const double norm = isExtreme ? ReadNorm(*source, section.locatie) : kNietBekend;
    const WindStatistics wind(source->ReadStatistiek());
    source.reset();
    m_console.Line("Invoer gelezen: locatie " + section.locatie.naam + ", " +
                   NameOrNone(section.GetProfiel()));
    m_console.Progress(kInputRead);

    const LoadModel model(section.locatie, section.GetProfiel(), settings.belasting,
                          wind.transformation);
    const BasinLevel levels(section.locatie.streefpeil, section.locatie.peilen,
                            settings.belasting.toeslagWs);
    WarnAll(m_console, InputWarnings(model, levels));
    DetermRapport rapport{settings,
                          section.locatie,
                          section.GetProfiel(),
                          model,
                          {},
                          CalculateDeterministic(model, levels, wind, settings, norm)};
    if (HasExtremeLevel(settings.situatie))
        WarnAll(m_console, PeriodWarnings(norm, levels));
    WarnAll(m_console, ResultWarnings(rapport.result, model));
    rapport.warnings = m_console.Warnings();
    WriteTextFile(InOutputFolder("uitvoer.txt"), WriteReport(rapport));
}

void Rekenrun::RunDijkring(const Instellingen& settings)
{
    auto source = m_open(settings.database, Toegang::Lezen);
    std::vector<RingLid> leden;
    for (const DijkringLid& row : source->ReadDijkring(settings.dijkring))
        leden.push_back(ReadLid(*source, settings, row));
    if (leden.empty())
        throw LegeDijkring(settings.dijkring);
    const WindStatistics wind(source->ReadStatistiek());
    source.reset();
    m_console.Line("Invoer gelezen: dijkring " + settings.dijkring + ", " +
                   std::to_string(leden.size()) + " leden");
    m_console.Progress(kInputRead);

    for (const RingLid& lid : leden) {
        const LoadModel model(lid.locatie, lid.heeftProfiel ? &lid.profiel : nullptr,
                              lid.instellingen, wind.transformation);
        const BasinLevel levels(lid.locatie.streefpeil, lid.locatie.peilen, 0);
        WarnAll(m_console, InputWarnings(model, levels), lid.locatie.naam + ": ");
    }
    Steps onTable(m_console, kInputRead, kLevelsFound,
                  static_cast<int>(leden.size()) * DijkringBerekening::Steps());
    const DijkringBerekening calculation(leden, wind, std::ref(onTable));

    WriteTextFile(InOutputFolder("freqlijn.txt"), WriteFreqlijn(calculation.Result().lijn));
    WriteTextFile(InOutputFolder("uitvoer.txt"),
                  WriteReport({settings, m_console.Warnings(), calculation.Result()}));
}

} // namespace rekenhart
