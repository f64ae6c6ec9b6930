#include "MaakKaarten.h"

#include "Voorbeeldboezem.h"

#include <ogrsf_frmts.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace voorbeeld {

namespace {

/// One shape file with a text field NAAM.
class Kaartlaag {
public:
    Kaartlaag(const std::filesystem::path& map, const std::string& naam, OGRwkbGeometryType soort)
    {
        const auto pad = (map / (naam + ".shp")).string();
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
        m_bestand.reset(driver->Create(pad.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        if (!m_bestand)
            throw std::runtime_error("De kaartlaag kan niet worden gemaakt: " + pad);
        char** opties = CSLSetNameValue(nullptr, "ENCODING", "CP1252");
        // A fixed date: the files are the same each time they are made.
        opties = CSLSetNameValue(opties, "DBF_DATE_LAST_UPDATE", "2000-01-01");
        m_laag = m_bestand->CreateLayer(naam.c_str(), nullptr, soort, opties);
        CSLDestroy(opties);
        OGRFieldDefn veld("NAAM", OFTString);
        veld.SetWidth(50);
        m_laag->CreateField(&veld);
    }

    void Voegtoe(const std::string& naam, const OGRGeometry& vorm)
    {
        std::unique_ptr<OGRFeature> object(OGRFeature::CreateFeature(m_laag->GetLayerDefn()));
        object->SetField("NAAM", naam.c_str());
        object->SetGeometry(&vorm);
        if (m_laag->CreateFeature(object.get()) != OGRERR_NONE)
            throw std::runtime_error("De kaartlaag kan niet worden geschreven.");
    }

private:
    std::unique_ptr<GDALDataset> m_bestand;
    OGRLayer* m_laag = nullptr; // the data set's
};

OGRLinearRing Gesloten(const Ring& ring)
{
    OGRLinearRing vorm;
    for (const Punt& punt : ring)
        vorm.addPoint(punt.x, punt.y);
    vorm.closeRings();
    return vorm;
}

void MaakOevers(const std::filesystem::path& map)
{
    Kaartlaag laag(map, "voorbeeldboezem", wkbPolygon);
    for (const Waterlichaam& water : Waterlichamen()) {
        OGRPolygon vlak; // written with outer rings clockwise, islands the other way round
        for (const Ring& ring : water.ringen) {
            OGRLinearRing vorm = Gesloten(ring);
            vlak.addRing(&vorm);
        }
        laag.Voegtoe(water.naam, vlak);
    }
}

void MaakBodem(const std::filesystem::path& map)
{
    constexpr int kCellen = 200;
    constexpr double kCelgrootte = 100; // m
    constexpr Punt kHoek{170000, 540000};
    std::ofstream rooster(map / "bodem.asc", std::ios::binary);
    rooster << "ncols " << kCellen << "\nnrows " << kCellen << "\nxllcorner " << int(kHoek.x)
            << "\nyllcorner " << int(kHoek.y) << "\ncellsize " << int(kCelgrootte)
            << "\nNODATA_value -9999\n";
    for (int rij = kCellen - 1; rij >= 0; --rij) {
        for (int kolom = 0; kolom < kCellen; ++kolom) {
            const Punt midden{kHoek.x + (kolom + 0.5) * kCelgrootte,
                              kHoek.y + (rij + 0.5) * kCelgrootte};
            double hoogte = 0;
            char tekst[16] = "-9999";
            if (Bodemhoogte(midden, hoogte))
                std::snprintf(tekst, sizeof tekst, "%.2f", hoogte);
            rooster << (kolom ? " " : "") << tekst;
        }
        rooster << "\n";
    }
    if (!rooster)
        throw std::runtime_error("Het bodemrooster kan niet worden geschreven.");
}

/// Invented roads and places around the water, as background.
void MaakAchtergrond(const std::filesystem::path& map)
{
    const auto lijn = [](std::initializer_list<Punt> punten) {
        OGRLineString vorm;
        for (const Punt& punt : punten)
            vorm.addPoint(punt.x, punt.y);
        return vorm;
    };
    {
        Kaartlaag wegen(map, "wegen", wkbLineString);
        wegen.Voegtoe("Plasweg", lijn({{172200, 549200},
                                       {172100, 552300},
                                       {173100, 554400},
                                       {176200, 554900},
                                       {178900, 554400},
                                       {180100, 552300}}));
        wegen.Voegtoe(
            "Vaartdijk",
            lijn({{178300, 549700}, {180000, 549200}, {181900, 547800}, {182300, 545600}}));
        wegen.Voegtoe(
            "Oostweg",
            lijn({{180100, 552300}, {183200, 549700}, {186900, 548700}, {187000, 545300}}));
    }
    Kaartlaag plaatsen(map, "plaatsen", wkbPoint);
    plaatsen.Voegtoe("Noordwaard", OGRPoint(176100, 555300));
    plaatsen.Voegtoe("Vaartsluis", OGRPoint(180300, 551000));
    plaatsen.Voegtoe("Kleinveld", OGRPoint(187300, 547200));
    plaatsen.Voegtoe("Zuidhoek", OGRPoint(177400, 548700));
}

} // namespace

void MaakKaarten(const std::filesystem::path& map)
{
    GDALAllRegister();
    std::filesystem::create_directories(map);
    MaakOevers(map);
    MaakBodem(map);
    MaakAchtergrond(map);
}

} // namespace voorbeeld
