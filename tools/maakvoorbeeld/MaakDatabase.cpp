#include "MaakDatabase.h"

#include "jet/dao/Workspace.h"

#include <map>

namespace voorbeeld {

namespace {

using jet::ColumnType;
using jet::FieldDef;
using jet::Value;

/// Fills one table, its rows given field by field.
class Vuller {
public:
    Vuller(jet::Database& database, const std::string& tabel)
        : m_rijen(database.OpenRecordset(tabel, jet::RecordsetType::Table))
    {}

    template <typename... Waarden>
    void Rij(const Waarden&... waarden)
    {
        m_rijen->AddNew();
        int veld = 0;
        (m_rijen->Set(veld++, Value(waarden)), ...);
        m_rijen->Update();
    }

private:
    std::unique_ptr<jet::Recordset> m_rijen;
};

FieldDef Getal(const char* naam)
{
    return {.name = naam, .type = ColumnType::Double};
}

FieldDef Geheel(const char* naam)
{
    return {.name = naam, .type = ColumnType::Long};
}

FieldDef KortGeheel(const char* naam)
{
    return {.name = naam, .type = ColumnType::Integer};
}

FieldDef Tekst(const char* naam, int lengte)
{
    return {.name = naam, .type = ColumnType::Text, .size = lengte};
}

FieldDef Sleutel(const char* naam)
{
    return {.name = naam, .type = ColumnType::Long, .autoNumber = true};
}

jet::IndexDef Primair(std::vector<jet::IndexDef::Part> velden)
{
    return {.name = "PrimaryKey", .fields = std::move(velden), .primary = true, .unique = true};
}

jet::IndexDef Index(const char* naam, std::vector<jet::IndexDef::Part> velden)
{
    return {.name = naam, .fields = std::move(velden)};
}

void MaakLocatietabellen(jet::Database& database)
{
    database.CreateTable(
        {.name = "Locatie",
         .fields = {Sleutel("Locatie_ID"), Getal("x"), Getal("y"), Tekst("omschrijving", 100),
                    KortGeheel("kwaliteitskenmerk"), Getal("kruinhoogte"), Getal("streefpeil"),
                    Getal("dijknormaal"), Getal("ruwheidslengte"), KortGeheel("veiligheidsklasse")},
         .indexes = {Primair({{"Locatie_ID"}}), Index("omschrijving", {{"omschrijving"}})}});
    database.CreateTable(
        {.name = "Boezempeilstatistiek",
         .fields = {Geheel("Locatie_ID"), Getal("Herhalingstijd"), Getal("Boezempeil")},
         .indexes = {Index("Locatie_ID", {{"Locatie_ID"}})}});
    database.CreateTable({.name = "Windsectoren",
                          .fields = {Geheel("Richting_ID"), Tekst("Naam", 10), Getal("Graden")},
                          .indexes = {Primair({{"Richting_ID"}})}});
    database.CreateTable({.name = "Scheefstand",
                          .fields = {Geheel("Locatie_ID"), Geheel("Richting_ID"),
                                     Getal("Windsnelheid"), Getal("Scheefstand")},
                          .indexes = {Index("Locatie_ID", {{"Locatie_ID"}, {"Richting_ID"}})}});
    database.CreateTable({.name = "Geometrie",
                          .fields = {Geheel("Locatie_ID"), Geheel("Richting_ID"), Getal("B"),
                                     Getal("FE"), Getal("B_org"), Getal("FE_org")},
                          .indexes = {Index("Locatie_ID", {{"Locatie_ID"}, {"Richting_ID"}})}});
}

void MaakProfieltabellen(jet::Database& database, bool ouderwets)
{
    jet::TableDef profielen{.name = "Profielen",
                            .fields = {Sleutel("Profiel_ID"),
                                       Tekst("Naam", 100),
                                       KortGeheel("Damtype"),
                                       {.name = "DamHoogte", .type = ColumnType::Single},
                                       KortGeheel("Damwandmodule"),
                                       KortGeheel("Voorland")},
                            .indexes = {Primair({{"Profiel_ID"}}), Index("Naam", {{"Naam"}})}};
    if (!ouderwets) {
        const auto later = [&profielen](const char* naam, ColumnType type) {
            profielen.fields.push_back({.name = naam, .type = type, .required = true});
        };
        later("Kruinbreedte", ColumnType::Single);
        later("Taludhelling", ColumnType::Single);
        later("Constructietype", ColumnType::Integer);
        later("Palenrij", ColumnType::Integer);
        later("Paaldiameter", ColumnType::Single);
        later("HartafstandPalen", ColumnType::Single);
        later("Rietkraag", ColumnType::Integer);
        later("Vegetatiebreedte", ColumnType::Single);
        later("AantalLevendeStengels", ColumnType::Single);
        later("SeizoensinvloedFactor", ColumnType::Single);
    }
    profielen.fields.push_back({.name = "Memo", .type = ColumnType::Memo});
    database.CreateTable(profielen);

    jet::TableDef segmenten{.name = "Profielsegmenten",
                            .fields = {Geheel("Profiel_ID"),
                                       {.name = "X", .type = ColumnType::Single},
                                       {.name = "Y", .type = ColumnType::Single},
                                       {.name = "R", .type = ColumnType::Single}},
                            .indexes = {Index("Profiel_ID", {{"Profiel_ID"}})}};
    if (!ouderwets)
        segmenten.fields.push_back(
            {.name = "Gras", .type = ColumnType::Boolean, .defaultValue = "False"});
    database.CreateTable(segmenten);

    database.CreateTable({.name = "Locatie_Profiel",
                          .fields = {Geheel("Locatie_ID"), Geheel("Profiel_ID")},
                          .indexes = {Primair({{"Locatie_ID"}, {"Profiel_ID"}})}});
}

/// The tables that the program itself makes in an older file.
void MaakBerekeningtabellen(jet::Database& database)
{
    database.CreateTable({.name = "VeiligheidsklasseHerhalingstijd",
                          .fields = {Geheel("Veiligheidsklasse"), Getal("Herhalingstijd")}});
    database.CreateTable(
        {.name = "Berekening",
         .fields = {Sleutel("Id"), Tekst("Naam", 255), Geheel("ProfielId"),
                    Tekst("Faalmechanisme", 50), Getal("QOverslag")},
         .indexes = {Primair({{"Id"}}),
                     {.name = "SecondaryKey",
                      .fields = {{"Naam"}, {"ProfielId"}, {"Faalmechanisme"}, {"QOverslag"}},
                      .unique = true,
                      .required = true}}});
    jet::TableDef resultaat{
        .name = "Resultaat",
        .indexes = {Primair({{"Berekening_ID"}, {"Locatie_ID"}, {"Herhalingstijd"}})}};
    for (const auto& [naam, type] :
         {std::pair{"Berekening_ID", ColumnType::Long}, std::pair{"Locatie_ID", ColumnType::Long},
          std::pair{"Herhalingstijd", ColumnType::Double}})
        resultaat.fields.push_back(
            {.name = naam, .type = type, .required = true, .defaultValue = "0"});
    for (const char* naam :
         {"HBN_MS_MO", "OVERLOOP_MS_MO", "OVERLOOP_MS_ZO", "BOEZEMPEIL", "STREEFPEIL",
          "DOMINANTE WINDRICHTING", "WATERSTAND", "GOLFHOOGTE", "PIEKPERIODE", "GOLFRICHTING"})
        resultaat.fields.push_back(
            {.name = naam, .type = ColumnType::Double, .defaultValue = "-999"});
    database.CreateTable(resultaat);
    database.CreateTable({.name = "Dijkring",
                          .fields = {{.name = "Naam", .type = ColumnType::Memo},
                                     {.name = "Locatie", .type = ColumnType::Memo},
                                     {.name = "Profiel", .type = ColumnType::Memo},
                                     {.name = "ProfielNaam", .type = ColumnType::Memo},
                                     {.name = "QOverslag", .type = ColumnType::Single}}});
}

void VulWindsectoren(jet::Database& database)
{
    constexpr const char* namen[kSectoren] = {"N", "NNO", "NO", "ONO", "O", "OZO", "ZO", "ZZO",
                                              "Z", "ZZW", "ZW", "WZW", "W", "WNW", "NW", "NNW"};
    Vuller sectoren(database, "Windsectoren");
    for (int r = 0; r < kSectoren; ++r)
        sectoren.Rij(r + 1, namen[r], r * kSectorbreedte);
}

void VulLocaties(jet::Database& database, const std::vector<Locatie>& locaties)
{
    Vuller tabel(database, "Locatie");
    Vuller peilen(database, "Boezempeilstatistiek");
    Vuller scheefstand(database, "Scheefstand");
    Vuller geometrie(database, "Geometrie");
    constexpr std::int16_t kVolledigMetProfiel = 2;
    for (const Locatie& locatie : locaties) {
        tabel.Rij(locatie.id, double(locatie.x), double(locatie.y), locatie.naam,
                  kVolledigMetProfiel, locatie.kruinhoogte, locatie.streefpeil, locatie.dijknormaal,
                  locatie.ruwheidslengte, static_cast<std::int16_t>(locatie.veiligheidsklasse));
        for (std::size_t i = 0; i < kHerhalingstijden.size(); ++i)
            peilen.Rij(locatie.id, double(kHerhalingstijden[i]), locatie.peilen[i]);
        for (std::size_t r = 0; r < kSectoren; ++r) {
            const int sector = static_cast<int>(r) + 1;
            for (std::size_t i = 0; i < kWindsnelheden.size(); ++i)
                scheefstand.Rij(locatie.id, sector, double(kWindsnelheden[i]),
                                locatie.scheefstand[r][i]);
            geometrie.Rij(locatie.id, sector, locatie.bodemhoogte[r], locatie.strijklengte[r],
                          locatie.bodemhoogte[r], locatie.strijklengte[r]);
        }
    }
}

void VulProfielen(jet::Database& database, const std::vector<Locatie>& locaties, bool ouderwets)
{
    std::map<std::string, int> ids;
    Vuller tabel(database, "Profielen");
    Vuller segmenten(database, "Profielsegmenten");
    const auto kort = [](int waarde) { return static_cast<std::int16_t>(waarde); };
    for (const Profiel& profiel : Profielen()) {
        const int id = static_cast<int>(ids.size()) + 1;
        ids[profiel.naam] = id;
        const auto enkel = [](double waarde) { return static_cast<float>(waarde); };
        if (ouderwets)
            tabel.Rij(id, profiel.naam, kort(profiel.damtype), 0.0F, kort(profiel.damwandmodule),
                      kort(profiel.voorland), Value());
        else
            tabel.Rij(id, profiel.naam, kort(profiel.damtype), 0.0F, kort(profiel.damwandmodule),
                      kort(profiel.voorland), enkel(profiel.kruinbreedte),
                      enkel(profiel.taludhelling), kort(profiel.constructietype),
                      kort(profiel.palenrij), enkel(profiel.paaldiameter),
                      enkel(profiel.hartafstand), kort(profiel.rietkraag),
                      enkel(profiel.vegetatiebreedte), enkel(profiel.stengels),
                      enkel(profiel.seizoensfactor), Value());
        for (const Profielpunt& punt : profiel.punten)
            if (ouderwets)
                segmenten.Rij(id, enkel(punt.x), enkel(punt.y), enkel(punt.ruwheid));
            else
                segmenten.Rij(id, enkel(punt.x), enkel(punt.y), enkel(punt.ruwheid), punt.gras);
    }
    Vuller koppeling(database, "Locatie_Profiel");
    for (const Locatie& locatie : locaties)
        for (const std::string& profiel : locatie.profielen)
            koppeling.Rij(locatie.id, ids.at(profiel));
}

void VulVeiligheidsklassen(jet::Database& database)
{
    Vuller klassen(database, "VeiligheidsklasseHerhalingstijd");
    for (std::size_t i = 0; i < kHerhalingstijden.size(); ++i)
        klassen.Rij(static_cast<int>(i) + 1, double(kHerhalingstijden[i]));
}

void VulDijkringen(jet::Database& database)
{
    Vuller ringen(database, "Dijkring");
    for (const Ringlid& lid : Dijkringen())
        ringen.Rij(lid.ring, lid.locatie,
                   // the place of the member's profile in the navigation tree
                   "ROOTLOCATIES\\" + lid.locatie + "\\profielen\\" + lid.profiel, lid.profiel,
                   static_cast<float>(lid.overslagdebiet));
}

void VulResultaten(jet::Database& database, const std::vector<Locatie>& locaties, int aantal)
{
    Vuller(database, "Berekening").Rij(1, "voorbeeld", 1, "GOLFOVERSLAG", 1.0);
    Vuller resultaat(database, "Resultaat");
    for (const Locatie& locatie : locaties)
        for (int i = 0; i < aantal; ++i) {
            const double niveau = locatie.peilen[0] + 0.05 * i;
            resultaat.Rij(1, locatie.id, double(10 * (i + 1)), niveau + 0.8, niveau + 0.1,
                          niveau + 0.05, niveau, locatie.streefpeil, 270.0, niveau + 0.1, 0.65, 2.9,
                          270.0);
        }
}

void MaakStatistiektabellen(jet::Database& database, bool ouderwets)
{
    const auto maak = [&database](const std::string& seizoen, const Windseizoen& wind) {
        database.CreateTable({.name = "Kanswindrichting " + seizoen,
                              .fields = {Geheel("Richting_ID"), Getal("Momentane kans")},
                              .indexes = {Primair({{"Richting_ID"}})}});
        database.CreateTable(
            {.name = "Windstatistiek " + seizoen,
             .fields = {Geheel("Richting_ID"), Getal("Windsnelheid"), Getal("Overschrijdingskans")},
             .indexes = {Index("Richting_ID", {{"Richting_ID"}})}});
        Vuller richtingen(database, "Kanswindrichting " + seizoen);
        Vuller snelheden(database, "Windstatistiek " + seizoen);
        for (int r = 0; r < kSectoren; ++r) {
            richtingen.Rij(r + 1, wind.kans[std::size_t(r)]);
            for (int u = 0; u <= 42; u += 2)
                snelheden.Rij(r + 1, double(u), wind.Overschrijdingskans(r, u));
        }
    };
    maak("winter", Winter());
    maak("zomer", ouderwets ? Winter() : Zomer());
    database.CreateTable(
        {.name = "Transformatietabel", .fields = {Getal("Windsnelheid"), Getal("Factor")}});
    Vuller transformatie(database, "Transformatietabel");
    for (const auto& [windsnelheid, factor] : Transformatietabel())
        transformatie.Rij(windsnelheid, factor);
}

} // namespace

void MaakRandvoorwaarden(const std::filesystem::path& bestand, const DatabaseKeuze& keuze)
{
    jet::Workspace workspace;
    const auto database = workspace.CreateDatabase(bestand);
    workspace.BeginTrans();
    MaakLocatietabellen(*database);
    MaakProfieltabellen(*database, keuze.ouderwets);
    MaakStatistiektabellen(*database, keuze.ouderwets);
    VulWindsectoren(*database);
    VulLocaties(*database, keuze.locaties);
    VulProfielen(*database, keuze.locaties, keuze.ouderwets);
    if (!keuze.ouderwets) {
        MaakBerekeningtabellen(*database);
        VulVeiligheidsklassen(*database);
        VulDijkringen(*database);
        if (keuze.herhalingstijden > 0)
            VulResultaten(*database, keuze.locaties, keuze.herhalingstijden);
    }
    workspace.CommitTrans(jet::Flush::Yes);
    database->Close();
}

void MaakStatistieken(const std::filesystem::path& bestand)
{
    jet::Workspace workspace;
    const auto database = workspace.CreateDatabase(bestand);
    workspace.BeginTrans();
    MaakStatistiektabellen(*database, false);
    workspace.CommitTrans(jet::Flush::Yes);
    database->Close();
}

} // namespace voorbeeld
