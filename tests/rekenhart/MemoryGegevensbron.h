#pragma once

#include "rekenhart/ExampleData.h"
#include "rekenhart/Fout.h"
#include "rekenhart/Gegevensbron.h"

#include <map>
#include <vector>

/// A database in memory, with the example's data, that can be damaged, locked
/// and looked into. `Opener` hands out one connection at a time and fails the
/// test when a second is asked for.
struct MemoryDatabase {
    MemoryDatabase();

    std::vector<rekenhart::Locatie> locaties;
    std::map<std::string, rekenhart::Profiel> profielen;
    std::map<std::string, std::vector<rekenhart::DijkringLid>> dijkringen;
    rekenhart::StatistiekTabellen tabellen;
    std::map<int, double> klassen;

    struct Rij {
        int berekening, locatie;
        rekenhart::ResultaatRij waarden;
    };
    std::vector<Rij> resultaten;
    void AddRow(int berekening, int locatie, double herhalingstijd);

    bool locked = false;     ///< cannot be opened
    bool writeFails = false; ///< opens for writing, then fails
    int openings = 0;
    int connections = 0; ///< open now

    rekenhart::Locatie& At(const std::string& naam);
    rekenhart::OpenGegevensbron Opener();
};
