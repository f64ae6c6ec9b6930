#pragma once

#include "Voorbeeldboezem.h"

#include <filesystem>

namespace voorbeeld {

/// What the database should hold.
struct DatabaseKeuze {
    std::vector<Locatie> locaties;
    /// As files were before the program upgraded them: no calculations, results,
    /// safety classes or rings, no grass, the ten later fields of profiles absent, winter's wind
    /// equal to summer's.
    bool ouderwets = false;
    /// Result rows of one calculation for every location, with made-up levels; 0 = none.
    int herhalingstijden = 0;
};

/// Makes a boundary-condition database. Refuses an existing file (jet::Error).
void MaakRandvoorwaarden(const std::filesystem::path& bestand, const DatabaseKeuze& keuze);

/// Makes the file with the five statistic tables alone.
void MaakStatistieken(const std::filesystem::path& bestand);

} // namespace voorbeeld
