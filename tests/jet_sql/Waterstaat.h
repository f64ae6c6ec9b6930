#pragma once

#include "jet_sql/ScratchDatabase.h"

namespace jet::testing {

/// A small database with the tables of the system, and the same rows as plain
/// values, so that what a statement must give can be worked out by hand.
struct Waterstaat : ScratchDatabase {
    struct Locatie {
        int id;
        double x, y;
        std::string omschrijving;
        int kwaliteitskenmerk;
        double streefpeil, dijknormaal;
        int veiligheidsklasse;
    };
    struct Boezempeil {
        int locatie;
        double herhalingstijd, boezempeil;
    };
    struct Scheefstand {
        int locatie, richting;
        double windsnelheid, scheefstand;
    };
    struct Geometrie {
        int locatie, richting;
        double b, fe;
    };
    struct Windsector {
        int richting;
        std::string naam;
        double graden;
    };
    struct Profiel {
        int id;
        std::string naam;
        int damtype;
        double damwandmodule;
        std::string memo;
    };
    struct Segment {
        int profiel;
        double x, y, r;
        bool gras;
    };
    struct Koppeling {
        int locatie, profiel;
    };
    struct Berekening {
        int id;
        std::string naam;
        int profiel;
        std::string faalmechanisme;
        double qOverslag;
    };
    struct Resultaat {
        int berekening, locatie;
        double herhalingstijd, hbn, overloopMo, overloopZo, boezempeil, streefpeil, waterstand;
    };
    struct Dijkring {
        std::string naam, locatie, profielNaam;
        double qOverslag;
    };

    std::vector<Locatie> locaties;
    std::vector<Boezempeil> boezempeilen;
    std::vector<Scheefstand> scheefstanden;
    std::vector<Geometrie> geometrie;
    std::vector<Windsector> sectoren;
    std::vector<Profiel> profielen;
    std::vector<Segment> segmenten;
    std::vector<Koppeling> koppelingen;
    std::vector<std::pair<int, double>> klassen;
    std::vector<Berekening> berekeningen;
    std::vector<Resultaat> resultaten;
    std::vector<Dijkring> dijkringen;

    Waterstaat();

private:
    void MakeTables();
    void MakeRows();
    void StoreRows();
};

} // namespace jet::testing
