#include "rekenhart/ExampleData.h"

#include <fstream>
#include <stdexcept>

using nlohmann::json;
using namespace rekenhart;

namespace {

Profiel ReadProfiel(const json& j)
{
    Profiel p;
    p.naam = j.at("Naam");
    p.damwandmodule = j.at("Damwandmodule");
    p.damtype = j.at("Damtype");
    p.damHoogte = j.at("DamHoogte");
    p.kruinBreedte = j.at("KruinBreedte");
    p.taludhelling = j.at("Taludhelling");
    p.constructietype = j.at("Constructietype");
    p.palenrij = j.at("Palenrij") != 0;
    p.paaldiameter = j.at("Paaldiameter");
    p.hartafstandPalen = j.at("HartafstandPalen");
    p.rietkraag = j.at("Rietkraag") != 0;
    p.vegetatieBreedte = j.at("VegetatieBreedte");
    p.aantalLevendeStengels = j.at("AantalLevendeStengels");
    p.seizoensinvloedFactor = j.at("SeizoensinvloedFactor");
    p.voorland = j.at("Voorland");
    for (const json& point : j.at("punten"))
        p.punten.push_back({point[0], point[1], point[2], point[3] != 0});
    return p;
}

SeizoenTabellen ReadSeizoen(const json& statistiek, const std::string& season)
{
    SeizoenTabellen tables;
    const json& directions = statistiek.at("Kanswindrichting " + season);
    const json& wind = statistiek.at("Windstatistiek " + season);
    for (int r = 0; r < kSectors; ++r) {
        tables.kanswindrichting.push_back({r + 1, directions[r]});
        for (std::size_t i = 0; i < wind.at("Windsnelheid").size(); ++i)
            tables.windstatistiek.push_back(
                {r + 1, wind.at("Windsnelheid")[i], wind.at("Overschrijdingskans")[r][i]});
    }
    return tables;
}

} // namespace

json ReadTestJson(const std::string& name)
{
    std::ifstream file(std::string(TEST_DATA_FOLDER) + "/rekenhart/" + name);
    return json::parse(file);
}

double NormHerhalingstijd(int veiligheidsklasse)
{
    static const double periods[] = {10, 30, 100, 300, 1000};
    return periods[veiligheidsklasse - 1];
}

Locatie ExampleData::ReadLocatie(const json& j)
{
    rekenhart::Locatie locatie;
    locatie.id = j.at("Locatie_ID");
    locatie.naam = j.at("omschrijving");
    locatie.x = j.at("x");
    locatie.y = j.at("y");
    locatie.kwaliteitskenmerk = 2;
    locatie.streefpeil = j.at("streefpeil");
    locatie.dijknormaal = j.at("dijknormaal");
    locatie.ruwheidslengte = j.at("ruwheidslengte");
    locatie.kruinhoogte = j.at("kruinhoogte");
    locatie.veiligheidsklasse = j.at("veiligheidsklasse");
    for (const json& row : j.at("peilen"))
        locatie.peilen.push_back({row[0], row[1]});
    for (int r = 0; r < kSectors; ++r) {
        SectorGegevens& sector = locatie.sectoren[r];
        sector.bodemhoogte = j.at("geometrie")[r][0];
        sector.strijklengte = j.at("geometrie")[r][1];
        const json& speeds = j.at("scheefstand").at("u");
        for (std::size_t i = 0; i < speeds.size(); ++i)
            sector.scheefstand.push_back({speeds[i], j.at("scheefstand").at("s")[r][i]});
    }
    return locatie;
}

ExampleData::ExampleData()
{
    const json demo = ReadTestJson("demo.json");
    for (const json& j : demo.at("locaties")) {
        m_locaties.push_back(ReadLocatie(j));
        for (const json& naam : j.at("profielen"))
            m_links.emplace_back(m_locaties.back().naam, naam);
    }
    int id = 0;
    for (const auto& [naam, j] : demo.at("profielen").items()) {
        m_profielen[naam] = ReadProfiel(j);
        m_profielen[naam].id = ++id;
    }
    for (const auto& [naam, leden] : demo.at("dijkringen").items())
        for (const json& lid : leden)
            m_dijkringen[naam].push_back({lid[0], lid[1], lid[2]});
    const json& statistiek = demo.at("statistiek");
    m_tabellen.winter = ReadSeizoen(statistiek, "winter");
    m_tabellen.zomer = ReadSeizoen(statistiek, "zomer");
    const json& transformation = statistiek.at("Transformatietabel");
    for (std::size_t i = 0; i < transformation.at("Factor").size(); ++i)
        m_tabellen.transformatie.push_back(
            {transformation.at("Windsnelheid")[i], transformation.at("Factor")[i]});
    m_wind = std::make_unique<WindStatistics>(m_tabellen);
}

const ExampleData& ExampleData::Get()
{
    static const ExampleData data;
    return data;
}

Locatie ExampleData::Locatie(const std::string& naam) const
{
    for (const auto& locatie : m_locaties)
        if (locatie.naam == naam)
            return locatie;
    throw std::out_of_range(naam);
}

Profiel ExampleData::Profiel(const std::string& naam) const
{
    return m_profielen.at(naam);
}
