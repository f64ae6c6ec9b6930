#pragma once

#include <QString>

#include <vector>

/// One point of a cross-section with the segment that begins at it.
struct ProfielPunt {
    float x = 0;       ///< m, rising from the foreshore up the dike
    float y = 0;       ///< level, m
    float ruwheid = 0; ///< roughness of the segment; 1 when it is grass
    bool gras = false;
};

/// A dike cross-section as the tables `Profielen` and `ProfielSegmenten` hold
/// it: plain values, without rules (those are HRProfiel's).
struct ProfielGegevens {
    QString Naam;
    qint16 Damwandmodule = 0; ///< 0 slope, 1 vertical wall with nose, 2 without
    qint16 Damtype = 0;       ///< 0 none; 4 is the kind that needs a slope
    qint16 Constructietype = 0;
    float DamHoogte = 0;        ///< level of the dam, m
    float KruinBreedte = 0;     ///< m
    float Taludhelling = 0;     ///< horizontal run per unit of rise
    float Paaldiameter = 0;     ///< m
    float HartafstandPalen = 0; ///< m
    float VegetatieBreedte = 0; ///< m
    float AantalLevendeStengels = 0;
    float SeizoensinvloedFactor = 0;
    bool Palenrij = false;
    bool Rietkraag = false;
    qint16 Voorland = 0; ///< number of the toe point, from 1
    QString Memo;
    std::vector<ProfielPunt> punten;
};
