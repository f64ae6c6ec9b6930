#include "rekenhart/data/JetGegevensbron.h"

#include "rekenhart/Fout.h"
#include "rekenhart/data/JetTable.h"
#include "rekenhart/files/TextEncoding.h"

#include <algorithm>

namespace rekenhart {

namespace {

/// The engine's sentence without its full stop, to stand inside one of ours.
std::string Reason(const jet::Error& error)
{
    std::string text = error.what();
    while (!text.empty() && text.back() == '.')
        text.pop_back();
    return text;
}

/// What the user can do about a database that cannot be opened or read.
std::string_view Advice(jet::ErrorKind kind)
{
    switch (kind) {
    case jet::ErrorKind::Locked:
        return "Sluit andere programma's die de database gebruiken en reken opnieuw.";
    case jet::ErrorKind::FileNotFound:
        return "Controleer het pad van de database.";
    case jet::ErrorKind::AccessDenied:
    case jet::ErrorKind::ReadOnly:
        return "Controleer de rechten op het bestand en op zijn map.";
    case jet::ErrorKind::UnknownTable:
    case jet::ErrorKind::UnknownField:
        return "Open de database in het programma, dat haar nakijkt en aanvult.";
    case jet::ErrorKind::Damaged:
        return "Zet een reservekopie van de database terug.";
    default:
        return "Controleer het bestand en de schijf waar het op staat.";
    }
}

Fout Onbereikbaar(const std::string& path, const jet::Error& error)
{
    return OnbereikbareDatabase(path, Reason(error), Advice(error.Kind()));
}

/// Names are equal without regard to case, as in the database.
bool SameName(const std::string& one, const std::string& two)
{
    const auto fold = [](const std::string& name) {
        std::string folded = ToWindows1252(name);
        for (char& c : folded) {
            const auto code = static_cast<unsigned char>(c);
            const bool capital =
                (code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
            if (capital)
                c = static_cast<char>(code + 0x20);
        }
        return folded;
    };
    return fold(one) == fold(two);
}

class JetGegevensbron : public Gegevensbron {
public:
    JetGegevensbron(const std::string& path, Toegang access);

    std::optional<Locatie> ReadLocatie(int id, const std::string& naam) override;
    std::optional<Profiel> ReadProfiel(int id, const std::string& naam) override;
    StatistiekTabellen ReadStatistiek() override;
    std::optional<double> ReadNormHerhalingstijd(int veiligheidsklasse) override;
    std::vector<DijkringLid> ReadDijkring(const std::string& naam) override;
    std::vector<double> ReadHerhalingstijden(int berekening, int locatie) override;
    void WriteResultaten(int berekening, int locatie,
                         const std::vector<ResultaatRij>& rijen) override;

private:
    /// What the engine cannot read it tells with its own reason.
    template <typename Read>
    auto Reading(Read&& read)
    {
        try {
            return read();
        } catch (const jet::Error& error) {
            throw Onbereikbaar(m_path, error);
        }
    }
    JetTable Open(const std::string& table) { return {*m_database, table}; }
    JetTable OpenStatistic(const std::string& table);
    SeizoenTabellen ReadSeizoen(const std::string& season);
    void ReadLocatieTables(Locatie& locatie);

    std::string m_path;
    jet::Workspace m_workspace;
    std::unique_ptr<jet::Database> m_database;
};

JetGegevensbron::JetGegevensbron(const std::string& path, Toegang access) : m_path(path)
{
    jet::OpenOptions options;
    options.readOnly = access == Toegang::Lezen;
    options.exclusive = access == Toegang::Schrijven;
    try {
        m_database = m_workspace.OpenDatabase(ToPath(path), options);
    } catch (const jet::Error& error) {
        throw Onbereikbaar(path, error);
    }
}

std::optional<Locatie> JetGegevensbron::ReadLocatie(int id, const std::string& naam)
{
    return Reading([&] {
        std::optional<Locatie> found;
        JetTable table = Open("Locatie");
        const auto take = [&] {
            if (found)
                return;
            Locatie locatie;
            locatie.id = table.Whole("Locatie_ID");
            locatie.naam = table.Text("omschrijving");
            locatie.x = table.Number("x");
            locatie.y = table.Number("y");
            locatie.kwaliteitskenmerk = table.Whole("kwaliteitskenmerk");
            locatie.kruinhoogte = table.Number("kruinhoogte");
            locatie.streefpeil = table.Number("streefpeil");
            locatie.dijknormaal = table.Number("dijknormaal");
            locatie.ruwheidslengte = table.Number("ruwheidslengte");
            locatie.veiligheidsklasse = table.Whole("veiligheidsklasse");
            found = std::move(locatie);
        };
        if (id > 0)
            table.ForEach("Locatie_ID", id, take);
        else
            table.ForEach([&] {
                if (!found && SameName(table.Text("omschrijving"), naam))
                    take();
            });
        if (found)
            ReadLocatieTables(*found);
        return found;
    });
}

void JetGegevensbron::ReadLocatieTables(Locatie& locatie)
{
    JetTable peilen = Open("Boezempeilstatistiek");
    peilen.ForEach("Locatie_ID", locatie.id, [&] {
        locatie.peilen.push_back({peilen.Number("Herhalingstijd"), peilen.Number("Boezempeil")});
    });
    std::stable_sort(
        locatie.peilen.begin(), locatie.peilen.end(),
        [](const auto& a, const auto& b) { return a.herhalingstijd < b.herhalingstijd; });

    const auto sector = [&](const JetTable& table) -> SectorGegevens* {
        const int richting = table.Whole("Richting_ID");
        return richting >= 1 && richting <= kSectors ? &locatie.sectoren[richting - 1] : nullptr;
    };
    JetTable geometrie = Open("Geometrie");
    geometrie.ForEach("Locatie_ID", locatie.id, [&] {
        if (SectorGegevens* data = sector(geometrie)) {
            data->bodemhoogte = geometrie.Number("B");
            data->strijklengte = geometrie.Number("FE");
        }
    });
    JetTable scheefstand = Open("Scheefstand");
    scheefstand.ForEach("Locatie_ID", locatie.id, [&] {
        if (SectorGegevens* data = sector(scheefstand))
            data->scheefstand.push_back(
                {scheefstand.Number("Windsnelheid"), scheefstand.Number("Scheefstand")});
    });
    for (SectorGegevens& data : locatie.sectoren)
        std::stable_sort(
            data.scheefstand.begin(), data.scheefstand.end(),
            [](const auto& a, const auto& b) { return a.windsnelheid < b.windsnelheid; });
}

std::optional<Profiel> JetGegevensbron::ReadProfiel(int id, const std::string& naam)
{
    return Reading([&] {
        std::optional<Profiel> found;
        JetTable table = Open("Profielen");
        const auto take = [&] {
            if (found)
                return;
            Profiel profiel;
            profiel.id = table.Whole("Profiel_ID");
            profiel.naam = table.Text("Naam");
            profiel.damwandmodule = table.Whole("Damwandmodule");
            profiel.damtype = table.Whole("Damtype");
            profiel.damHoogte = table.Number("DamHoogte");
            profiel.voorland = table.Whole("Voorland");
            profiel.kruinBreedte = table.NumberOr("Kruinbreedte", 0);
            profiel.taludhelling = table.NumberOr("Taludhelling", 0);
            profiel.constructietype = static_cast<int>(table.NumberOr("Constructietype", 0));
            profiel.palenrij = table.Flag("Palenrij");
            profiel.paaldiameter = table.NumberOr("Paaldiameter", 0);
            profiel.hartafstandPalen = table.NumberOr("HartafstandPalen", 0);
            profiel.rietkraag = table.Flag("Rietkraag");
            profiel.vegetatieBreedte = table.NumberOr("Vegetatiebreedte", 0);
            profiel.aantalLevendeStengels = table.NumberOr("AantalLevendeStengels", 0);
            profiel.seizoensinvloedFactor = table.NumberOr("SeizoensinvloedFactor", 0);
            found = std::move(profiel);
        };
        if (id > 0)
            table.ForEach("Profiel_ID", id, take);
        else
            table.ForEach([&] {
                if (!found && SameName(table.Text("Naam"), naam))
                    take();
            });
        if (!found)
            return found;

        JetTable punten = Open("ProfielSegmenten");
        punten.ForEach("Profiel_ID", found->id, [&] {
            found->punten.push_back({punten.Number("X"), punten.Number("Y"),
                                     punten.NumberOr("R", 1), punten.Flag("Gras")});
        });
        std::stable_sort(found->punten.begin(), found->punten.end(),
                         [](const auto& a, const auto& b) { return a.x < b.x; });
        return found;
    });
}

JetTable JetGegevensbron::OpenStatistic(const std::string& table)
{
    if (!m_database->HasTable(table))
        throw OngeldigeTabel("[" + table + "]", "zij staat niet in de database");
    return Open(table);
}

SeizoenTabellen JetGegevensbron::ReadSeizoen(const std::string& season)
{
    SeizoenTabellen tables;
    JetTable directions = OpenStatistic("Kanswindrichting " + season);
    directions.ForEach([&] {
        tables.kanswindrichting.push_back(
            {directions.Whole("Richting_ID"), directions.Number("Momentane kans")});
    });
    JetTable wind = OpenStatistic("Windstatistiek " + season);
    wind.ForEach([&] {
        tables.windstatistiek.push_back({wind.Whole("Richting_ID"), wind.Number("Windsnelheid"),
                                         wind.Number("Overschrijdingskans")});
    });
    return tables;
}

StatistiekTabellen JetGegevensbron::ReadStatistiek()
{
    try {
        StatistiekTabellen tables;
        tables.winter = ReadSeizoen("winter");
        tables.zomer = ReadSeizoen("zomer");
        JetTable transformation = OpenStatistic("Transformatietabel");
        transformation.ForEach([&] {
            tables.transformatie.push_back(
                {transformation.Number("Windsnelheid"), transformation.Number("Factor")});
        });
        return tables;
    } catch (const jet::Error& error) {
        if (error.Kind() == jet::ErrorKind::UnknownField)
            throw OngeldigeTabel("met statistiek", Reason(error));
        throw Onbereikbaar(m_path, error);
    }
}

std::optional<double> JetGegevensbron::ReadNormHerhalingstijd(int veiligheidsklasse)
{
    return Reading([&] {
        std::optional<double> years;
        JetTable table = Open("VeiligheidsklasseHerhalingstijd");
        table.ForEach("Veiligheidsklasse", veiligheidsklasse, [&] {
            if (!years)
                years = table.Number("Herhalingstijd");
        });
        return years;
    });
}

std::vector<DijkringLid> JetGegevensbron::ReadDijkring(const std::string& naam)
{
    return Reading([&] {
        std::vector<DijkringLid> leden;
        if (!m_database->HasTable("Dijkring")) // made with the first ring
            return leden;
        JetTable table = Open("Dijkring");
        table.ForEach([&] {
            if (SameName(table.Text("Naam"), naam))
                leden.push_back(
                    {table.Text("Locatie"), table.Text("ProfielNaam"), table.Number("QOverslag")});
        });
        return leden;
    });
}

std::vector<double> JetGegevensbron::ReadHerhalingstijden(int berekening, int locatie)
{
    return Reading([&] {
        std::vector<double> periods;
        JetTable table = Open("Resultaat");
        table.ForEach("Berekening_ID", berekening, [&] {
            if (table.Whole("Locatie_ID") == locatie)
                periods.push_back(table.Number("Herhalingstijd"));
        });
        return periods;
    });
}

void JetGegevensbron::WriteResultaten(int berekening, int locatie,
                                      const std::vector<ResultaatRij>& rijen)
{
    try {
        std::size_t filled = 0;
        m_workspace.BeginTrans();
        JetTable table = Open("Resultaat");
        table.ForEach("Berekening_ID", berekening, [&] {
            if (table.Whole("Locatie_ID") != locatie)
                return;
            const double years = table.Number("Herhalingstijd");
            const auto row = std::find_if(rijen.begin(), rijen.end(), [&](const auto& one) {
                return IsZelfdeHerhalingstijd(one.herhalingstijd, years);
            });
            if (row == rijen.end())
                return;
            table.Edit();
            table.SetNumber("HBN_MS_MO", row->hbn);
            table.SetNumber("OVERLOOP_MS_MO", row->overloopMo);
            table.SetNumber("OVERLOOP_MS_ZO", row->overloopZo);
            table.SetNumber("BOEZEMPEIL", row->boezempeil);
            table.SetNumber("STREEFPEIL", row->streefpeil);
            table.SetNumber("DOMINANTE WINDRICHTING", row->dominanteWindrichting);
            table.SetNumber("WATERSTAND", row->waterstand);
            table.SetNumber("GOLFHOOGTE", row->golfhoogte);
            table.SetNumber("PIEKPERIODE", row->piekperiode);
            table.SetNumber("GOLFRICHTING", row->golfrichting);
            table.Update();
            ++filled;
        });
        if (filled < rijen.size())
            throw OnschrijfbareResultaten("rijen van Resultaat zijn tijdens het rekenen verdwenen");
        m_workspace.CommitTrans(jet::Flush::Yes);
    } catch (const jet::Error& error) {
        throw OnschrijfbareResultaten(Reason(error)); // closing the database rolls back
    }
}

} // namespace

std::unique_ptr<Gegevensbron> OpenJetGegevensbron(const std::string& path, Toegang access)
{
    return std::make_unique<JetGegevensbron>(path, access);
}

} // namespace rekenhart
