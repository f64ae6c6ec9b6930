#pragma once

#include "maps/Colormap.h"

#include <QString>

#include <optional>
#include <vector>

class QPainter;

/// How a value is drawn: a filled circle.
struct Symbool {
    int grootte = 8; ///< diameter, points
    int kleur = 0;   ///< R + 256 G + 65536 B
};

/// One class of a legend; both boundaries belong to it.
struct Klasse {
    double Ondergrens = 0;
    double Bovengrens = 0;
    Symbool symbool;
};

/// The values of a result map, one per location, and the classes in which they
/// are drawn. Classes are numbered from 1; a value on a boundary belongs to
/// the lower of its two classes.
///
/// The data begin with an element (0, 0) of value 0, which a walk meets first
/// and the extremes leave out: kept, as maps expect it there.
class MapValues {
public:
    MapValues() { ClearData(); }

    // --- data ---
    void ClearData();
    void AddData(double x, double y, double value);
    double Minimum() const { return m_minimum; }
    double Maximum() const { return m_maximum; }
    void MoveFirst() { m_position = 0; }
    void MoveNext() { ++m_position; }
    bool Eof() const { return m_position >= m_points.size(); }
    /// Of the element on which the walk stands; 0 at its end.
    double X() const { return Current().x; }
    double Y() const { return Current().y; }
    double value() const { return Current().value; }
    /// Whether another element than `index` has exactly the place (x, y). With
    /// x = -1 (a location that lies there, too): whether any two share theirs.
    bool HeeftMeerdereWaardeOpZelfdeLocatie(int index, double x, double y) const;

    // --- classes ---
    void ClearKlassegrenzen() { m_klassen.clear(); }
    void AddKlassegrens(double onder, double boven, int kleur);
    int AantalKlassen() const { return static_cast<int>(m_klassen.size()); }
    double getKlasseOnderGrens(int i) const;
    double getKlasseBovenGrens(int i) const;
    int getKlasseKleur(int i) const;
    /// The symbol of the first class that holds `value`, in the palette's
    /// present colour; nothing when no class does.
    std::optional<Symbool> GetSymbol(double value);
    /// Makes classes with round boundaries around the range, in the palette
    /// "summer", and returns their number format ("6.2f").
    QString MaakKlassegrenzen(double minimum, double maximum);
    /// Makes `aantal` classes of equal width in the present palette.
    void MaakFixedKlassegrenzen(double onder, double boven, int aantal);
    ::Colormap& Colormap() { return m_colormap; }

    // --- legend ---
    void ClearTitles();
    QString Titel, SubTitel1, SubTitel2, SubTitel3;
    QString Eenheid; ///< unit
    QString Format = QStringLiteral("6.2f");
    void setAantalDecimalen(int aantal) { m_aantalDecimalen = aantal; } ///< -1: worked out
    /// Draws titles, classes and unit, at the places that the legend form has for them.
    void DrawLegend(QPainter& painter) const;

    // --- legend file (LegendFile.cpp) ---
    /// Reads classes and palette. False, and the classes as they were, when the
    /// file holds none. Message 8010 for a file of another version.
    bool OpenFile(const QString& pad, QString& palet);
    /// False when the file may not be written. A disk that is full raises a `Fout` and
    /// leaves no file.
    bool SaveFile(const QString& pad) const;

private:
    /// Where the extremes start: the largest number of 15 digits.
    static constexpr double kGrootste = 1.79769313486231E+308;

    struct Punt {
        double x = 0, y = 0, value = 0;
    };
    struct Grenzen {
        double lo, hi, step;
        QString format;
    };

    Punt Current() const { return Eof() ? Punt{} : m_points[m_position]; }
    const Klasse* KlasseVan(int i) const;
    Grenzen BepaalGrenzen(double a, double b, int n, double f1, double f2) const;

    std::vector<Punt> m_points;
    std::size_t m_position = 0;
    double m_minimum = kGrootste;
    double m_maximum = -kGrootste;
    std::vector<Klasse> m_klassen;
    mutable ::Colormap m_colormap;
    int m_aantalDecimalen = -1;
};
