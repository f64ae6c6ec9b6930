// Makes the example data of an installation from its recipe.

#include "MaakDatabase.h"
#include "MaakKaarten.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

namespace {

constexpr char kGebruik[] =
    "Gebruik: maakvoorbeeld MAP               de voorbeeldgegevens van een installatie\n"
    "         maakvoorbeeld --groot N BESTAND  een database met N locaties en 12 resultaten elk\n"
    "         maakvoorbeeld --oud BESTAND      een database zoals ze vroeger waren\n"
    "\n"
    "In MAP komen databases/Voorbeeldboezem.mdb, Statistieken.mdb en kaarten/.\n"
    "Bestaande databases worden vervangen.\n";

void MaakInstallatie(const std::filesystem::path& map)
{
    const auto database = map / "databases" / "Voorbeeldboezem.mdb";
    const auto statistieken = map / "Statistieken.mdb";
    std::filesystem::create_directories(database.parent_path());
    std::filesystem::remove(database);
    std::filesystem::remove(statistieken);
    voorbeeld::MaakRandvoorwaarden(database, {.locaties = voorbeeld::Locaties()});
    voorbeeld::MaakStatistieken(statistieken);
    voorbeeld::MaakKaarten(map / "kaarten");
}

} // namespace

int main(int argc, char** argv)
try {
    const std::string eerste = argc > 1 ? argv[1] : "";
    if (argc == 4 && eerste == "--groot") {
        std::filesystem::remove(argv[3]);
        voorbeeld::MaakRandvoorwaarden(
            argv[3],
            {.locaties = voorbeeld::VeelLocaties(std::stoi(argv[2])), .herhalingstijden = 12});
    } else if (argc == 3 && eerste == "--oud") {
        std::filesystem::remove(argv[2]);
        voorbeeld::MaakRandvoorwaarden(argv[2],
                                       {.locaties = voorbeeld::Locaties(), .ouderwets = true});
    } else if (argc == 2 && !eerste.starts_with("-")) {
        MaakInstallatie(eerste);
    } else {
        std::fputs(kGebruik, eerste == "--help" ? stdout : stderr);
        return eerste == "--help" ? 0 : 2;
    }
    return 0;
} catch (const std::exception& fout) {
    std::fprintf(stderr, "maakvoorbeeld: %s\n", fout.what());
    return 1;
}
