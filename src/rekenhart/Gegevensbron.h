#pragma once

#include "rekenhart/Gegevens.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace rekenhart {

/// Where the core takes its data from and leaves its results: the database for
/// the program, plain values for a test. Open as long as the object lives.
///
/// "Not there" is an empty optional; whatever else goes wrong is thrown as Fout.
class Gegevensbron {
public:
    virtual ~Gegevensbron() = default;

    /// By id when that is above 0, else by name.
    virtual std::optional<Locatie> ReadLocatie(int id, const std::string& naam) = 0;
    virtual std::optional<Profiel> ReadProfiel(int id, const std::string& naam) = 0;
    virtual StatistiekTabellen ReadStatistiek() = 0;
    virtual std::optional<double> ReadNormHerhalingstijd(int veiligheidsklasse) = 0;
    virtual std::vector<DijkringLid> ReadDijkring(const std::string& naam) = 0;
    /// The return periods of the rows that wait in `Resultaat`.
    virtual std::vector<double> ReadHerhalingstijden(int berekening, int locatie) = 0;

    /// Writes the ten value columns of all rows in one transaction: after a
    /// failure, or a kill at any moment, none or all of them are changed.
    virtual void WriteResultaten(int berekening, int locatie,
                                 const std::vector<ResultaatRij>& rijen) = 0;
};

enum class Toegang { Lezen, Schrijven };

/// Opens the database of the input file (UTF-8 path); throws Fout.
using OpenGegevensbron =
    std::function<std::unique_ptr<Gegevensbron>(const std::string& path, Toegang access)>;

/// Two return periods that mean the same row.
bool IsZelfdeHerhalingstijd(double one, double two);

} // namespace rekenhart
