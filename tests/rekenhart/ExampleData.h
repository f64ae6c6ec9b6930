#pragma once

#include "rekenhart/Gegevens.h"
#include "rekenhart/Gegevensbron.h"
#include "rekenhart/Instellingen.h"
#include "rekenhart/statistics/WindStatistics.h"

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

/// The example water system of tests/data/rekenhart/demo.json as plain values:
/// invented lakes, 24 locations, 8 profiles, 2 dike rings, the statistic tables.
class ExampleData {
public:
    ExampleData();
    static const ExampleData& Get();

    rekenhart::Locatie Locatie(const std::string& naam) const;
    rekenhart::Profiel Profiel(const std::string& naam) const;
    const std::vector<rekenhart::Locatie>& Locaties() const { return m_locaties; }
    const std::map<std::string, rekenhart::Profiel>& Profielen() const { return m_profielen; }
    const std::map<std::string, std::vector<rekenhart::DijkringLid>>& Dijkringen() const
    {
        return m_dijkringen;
    }
    /// Pairs of location and profile names that are linked.
    const std::vector<std::pair<std::string, std::string>>& Links() const { return m_links; }
    const rekenhart::StatistiekTabellen& Tabellen() const { return m_tabellen; }
    const rekenhart::WindStatistics& Wind() const { return *m_wind; }

    static rekenhart::Locatie ReadLocatie(const nlohmann::json& json);

private:
    std::vector<rekenhart::Locatie> m_locaties;
    std::map<std::string, rekenhart::Profiel> m_profielen;
    std::map<std::string, std::vector<rekenhart::DijkringLid>> m_dijkringen;
    std::vector<std::pair<std::string, std::string>> m_links;
    rekenhart::StatistiekTabellen m_tabellen;
    std::unique_ptr<rekenhart::WindStatistics> m_wind;
};

/// The norm return periods of safety classes 1 to 5.
double NormHerhalingstijd(int veiligheidsklasse);

nlohmann::json ReadTestJson(const std::string& name);
