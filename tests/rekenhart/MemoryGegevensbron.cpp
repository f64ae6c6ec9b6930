#include "rekenhart/MemoryGegevensbron.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace rekenhart;

namespace {

class Connection : public Gegevensbron {
public:
    explicit Connection(MemoryDatabase& database) : m_database(database)
    {
        ++m_database.openings;
        EXPECT_EQ(++m_database.connections, 1) << "opened twice at the same time";
    }
    ~Connection() override { --m_database.connections; }

    std::optional<Locatie> ReadLocatie(int id, const std::string& naam) override
    {
        for (const Locatie& locatie : m_database.locaties)
            if (id > 0 ? locatie.id == id : locatie.naam == naam)
                return locatie;
        return std::nullopt;
    }
    std::optional<Profiel> ReadProfiel(int id, const std::string& naam) override
    {
        for (const auto& [key, profiel] : m_database.profielen)
            if (id > 0 ? profiel.id == id : key == naam)
                return profiel;
        return std::nullopt;
    }
    StatistiekTabellen ReadStatistiek() override { return m_database.tabellen; }
    std::optional<double> ReadNormHerhalingstijd(int klasse) override
    {
        const auto found = m_database.klassen.find(klasse);
        return found == m_database.klassen.end() ? std::nullopt : std::optional(found->second);
    }
    std::vector<DijkringLid> ReadDijkring(const std::string& naam) override
    {
        const auto found = m_database.dijkringen.find(naam);
        return found == m_database.dijkringen.end() ? std::vector<DijkringLid>() : found->second;
    }
    std::vector<double> ReadHerhalingstijden(int berekening, int locatie) override
    {
        std::vector<double> periods;
        for (const auto& row : m_database.resultaten)
            if (row.berekening == berekening && row.locatie == locatie)
                periods.push_back(row.waarden.herhalingstijd);
        return periods;
    }
    void WriteResultaten(int berekening, int locatie,
                         const std::vector<ResultaatRij>& rijen) override
    {
        if (m_database.writeFails)
            throw OnschrijfbareResultaten("de schijf is vol");
        for (auto& row : m_database.resultaten)
            for (const ResultaatRij& one : rijen)
                if (row.berekening == berekening && row.locatie == locatie &&
                    IsZelfdeHerhalingstijd(one.herhalingstijd, row.waarden.herhalingstijd))
                    row.waarden = one;
    }

private:
    MemoryDatabase& m_database;
};

} // namespace

MemoryDatabase::MemoryDatabase()
    : locaties(ExampleData::Get().Locaties()),
      profielen(ExampleData::Get().Profielen()),
      dijkringen(ExampleData::Get().Dijkringen()),
      tabellen(ExampleData::Get().Tabellen()),
      klassen{{1, 10}, {2, 30}, {3, 100}, {4, 300}, {5, 1000}}
{}

void MemoryDatabase::AddRow(int berekening, int locatie, double herhalingstijd)
{
    Rij row{berekening, locatie, {}};
    row.waarden.herhalingstijd = herhalingstijd;
    resultaten.push_back(row);
}

Locatie& MemoryDatabase::At(const std::string& naam)
{
    for (Locatie& locatie : locaties)
        if (locatie.naam == naam)
            return locatie;
    throw std::out_of_range(naam);
}

OpenGegevensbron MemoryDatabase::Opener()
{
    return [this](const std::string& path, Toegang) -> std::unique_ptr<Gegevensbron> {
        if (locked)
            throw OnbereikbareDatabase(path, "Zij is in gebruik", "Sluit andere programma's.");
        return std::make_unique<Connection>(*this);
    };
}
