#include "jet_sql/Waterstaat.h"

namespace jet::testing {

namespace {

std::string N(double number)
{
    return Value(number).AsText();
}

std::string Q(const std::string& text)
{
    return "\"" + text + "\"";
}

} // namespace

Waterstaat::Waterstaat()
{
    MakeTables();
    MakeRows();
    workspace.BeginTrans();
    StoreRows();
    workspace.CommitTrans();
}

void Waterstaat::MakeTables()
{
    Run({
        "CREATE TABLE Locatie (Locatie_ID COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, x DOUBLE, "
        "y DOUBLE, omschrijving TEXT(100), kwaliteitskenmerk SHORT, kruinhoogte DOUBLE, "
        "streefpeil DOUBLE, dijknormaal DOUBLE, ruwheidslengte DOUBLE, veiligheidsklasse SHORT)",
        "CREATE TABLE Boezempeilstatistiek (Locatie_ID LONG, Herhalingstijd DOUBLE, Boezempeil "
        "DOUBLE)",
        "CREATE TABLE Scheefstand (Locatie_ID LONG, Richting_ID LONG, Windsnelheid DOUBLE, "
        "Scheefstand DOUBLE)",
        "CREATE TABLE Geometrie (Locatie_ID LONG, Richting_ID LONG, B DOUBLE, FE DOUBLE, B_org "
        "DOUBLE, FE_org DOUBLE)",
        "CREATE TABLE Windsectoren (Richting_ID LONG, Naam TEXT(10), Graden DOUBLE)",
        "CREATE TABLE Profielen (Profiel_ID COUNTER, Naam TEXT(50), Damtype SHORT, DamHoogte "
        "DOUBLE, Damwandmodule DOUBLE, Voorland SHORT, Kruinbreedte SINGLE, Taludhelling SINGLE, "
        "Constructietype INTEGER, Palenrij INTEGER, Paaldiameter SINGLE, HartafstandPalen SINGLE, "
        "Rietkraag INTEGER, Vegetatiebreedte SINGLE, AantalLevendeStengels SINGLE, "
        "SeizoensinvloedFactor SINGLE, [Memo] MEMO)",
        "CREATE TABLE ProfielSegmenten (Profiel_ID LONG, X DOUBLE, Y DOUBLE, R DOUBLE, Gras YESNO)",
        "CREATE TABLE Locatie_Profiel (Locatie_ID LONG, Profiel_ID LONG)",
        "CREATE TABLE VeiligheidsklasseHerhalingstijd (Veiligheidsklasse LONG, Herhalingstijd "
        "DOUBLE)",
        "CREATE TABLE Berekening (Id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, Naam TEXT(255), "
        "ProfielId LONG, Faalmechanisme TEXT(50), QOverslag DOUBLE, CONSTRAINT SecondaryKey UNIQUE "
        "(Naam, ProfielId, Faalmechanisme, QOverslag))",
        "CREATE TABLE Resultaat (Berekening_ID LONG NOT NULL DEFAULT 0, Locatie_ID LONG NOT NULL "
        "DEFAULT 0, Herhalingstijd DOUBLE NOT NULL DEFAULT 0, HBN_MS_MO DOUBLE DEFAULT -999, "
        "OVERLOOP_MS_MO DOUBLE DEFAULT -999, OVERLOOP_MS_ZO DOUBLE DEFAULT -999, BOEZEMPEIL DOUBLE "
        "DEFAULT -999, STREEFPEIL DOUBLE DEFAULT -999, [DOMINANTE WINDRICHTING] DOUBLE DEFAULT "
        "-999, WATERSTAND DOUBLE DEFAULT -999, GOLFHOOGTE DOUBLE DEFAULT -999, PIEKPERIODE DOUBLE "
        "DEFAULT -999, GOLFRICHTING DOUBLE DEFAULT -999, CONSTRAINT PrimaryKey PRIMARY KEY "
        "(Berekening_ID, Locatie_ID, Herhalingstijd))",
        "CREATE TABLE Dijkring (Naam MEMO, Locatie MEMO, Profiel MEMO, ProfielNaam MEMO, QOverslag "
        "SINGLE)",
        "CREATE TABLE [Kanswindrichting winter] (Richting_ID LONG, [Momentane kans] DOUBLE)",
        "CREATE TABLE [Kanswindrichting zomer] (Richting_ID LONG, [Momentane kans] DOUBLE)",
        "CREATE TABLE [Windstatistiek winter] (Richting_ID LONG, Snelheid SINGLE, Kans DOUBLE)",
    });
}

void Waterstaat::MakeRows()
{
    const double periods[] = {10, 30, 100, 300, 1000};
    const char* names[] = {"Zuiderdijk 1", "zuiderdijk 2", "Noordkade", "Één",  "Oever's eind",
                           "Westkade",     "Kade A-B",     "kade 10",   "Plas", "Zijl"};
    for (int i = 1; i <= 10; ++i) {
        locaties.push_back({i, 1000.5 * i, 2000.25 - i, names[i - 1], i % 3,
                            i == 4 ? -999 : 0.1 * i, i == 5 ? -999 : 15.0 * i, i % 5 + 1});
        for (int p = 0; p < 5; ++p)
            boezempeilen.push_back({i, periods[p], i == 6 && p == 2 ? -999 : 0.5 + 0.1 * p + i});
        for (int r = 1; r <= 16; ++r) {
            for (int v = 0; v < 5; ++v)
                scheefstanden.push_back(
                    {i, r, 10.0 * v, i == 7 && r == 3 && v == 4 ? -999 : 0.01 * v * r * i});
            geometrie.push_back({i, r, -2.0 - 0.1 * r, i == 8 && r == 9 ? -999 : 100.0 * r + i});
        }
        for (int k = 1; k <= 3; ++k) {
            if ((i + k) % 4 != 0)
                koppelingen.push_back({i, k});
        }
    }
    boezempeilen.push_back({3, 50, 2.5});
    for (int r = 1; r <= 16; ++r)
        sectoren.push_back({r, "sector " + std::to_string(r), (r - 1) * 22.5});
    for (int k = 1; k <= 4; ++k) {
        profielen.push_back({k, "Profiel " + std::string(1, static_cast<char>('A' + k - 1)), k % 2,
                             k == 2 ? 1.5 : 0, "opmerking " + std::to_string(k)});
        for (int s = 3; s > 0; --s)
            segmenten.push_back({k, 5.0 * s, 0.5 * s * k, 1.0 / s, s % 2 == 0});
    }
    for (int c = 1; c <= 5; ++c)
        klassen.push_back({c, periods[c - 1]});
    berekeningen = {{1, "basis", 1, "OVERLOOP", -999},
                    {2, "basis", 2, "GOLFOVERSLAG", 0.1},
                    {3, "Variant's", 99, "GOLFOPLOOP", 1},
                    {4, "leeg", 0, "OVERLOOP", -999}};
    for (int b = 1; b <= 3; ++b) {
        for (int l = 1; l <= 9 - b; ++l) {
            for (int p = 0; p < 5; ++p) {
                const double base = b + 0.1 * l + 0.01 * p;
                Resultaat r{b,          l,           periods[p], base + 1, base + 0.75,
                            base + 0.5, base + 0.25, base,       base + 2};
                if (l == 2)
                    r.hbn = r.overloopMo = r.overloopZo = r.boezempeil = r.streefpeil =
                        r.waterstand = -999;
                if (l == 3 && p == 1)
                    r.overloopZo = -999;
                resultaten.push_back(r);
            }
        }
    }
    dijkringen = {{"ring 1", "Zuiderdijk 1", "Profiel A", 0.5},
                  {"Ring 1", "Noordkade", "Profiel B", 1.5},
                  {"ring 2", "zuiderdijk 2", "Profiel A", 2}};
}

void Waterstaat::StoreRows()
{
    for (const Locatie& l : locaties)
        db->Execute("INSERT INTO Locatie VALUES (" + std::to_string(l.id) + "," + N(l.x) + "," +
                    N(l.y) + "," + Q(l.omschrijving) + "," + std::to_string(l.kwaliteitskenmerk) +
                    ",1," + N(l.streefpeil) + "," + N(l.dijknormaal) + ",0.03," +
                    std::to_string(l.veiligheidsklasse) + ")");
    for (const Boezempeil& b : boezempeilen)
        db->Execute("INSERT INTO Boezempeilstatistiek VALUES (" + std::to_string(b.locatie) + "," +
                    N(b.herhalingstijd) + "," + N(b.boezempeil) + ")");
    for (const Scheefstand& s : scheefstanden)
        db->Execute("INSERT INTO Scheefstand VALUES (" + std::to_string(s.locatie) + "," +
                    std::to_string(s.richting) + "," + N(s.windsnelheid) + "," + N(s.scheefstand) +
                    ")");
    for (const Geometrie& g : geometrie)
        db->Execute("INSERT INTO Geometrie VALUES (" + std::to_string(g.locatie) + "," +
                    std::to_string(g.richting) + "," + N(g.b) + "," + N(g.fe) + "," + N(g.b - 1) +
                    "," + N(g.fe + 1) + ")");
    for (const Windsector& w : sectoren)
        db->Execute("INSERT INTO Windsectoren VALUES (" + std::to_string(w.richting) + "," +
                    Q(w.naam) + "," + N(w.graden) + ")");
    for (const Profiel& p : profielen)
        db->Execute("INSERT INTO Profielen ([Profiel_ID],[Naam],[Damtype],[Damwandmodule],[Memo]) "
                    "VALUES (" +
                    std::to_string(p.id) + "," + Q(p.naam) + "," + std::to_string(p.damtype) + "," +
                    N(p.damwandmodule) + "," + Q(p.memo) + ")");
    for (const Segment& s : segmenten)
        db->Execute("INSERT INTO ProfielSegmenten VALUES (" + std::to_string(s.profiel) + "," +
                    N(s.x) + "," + N(s.y) + "," + N(s.r) + "," + (s.gras ? "True" : "False") + ")");
    for (const Koppeling& k : koppelingen)
        db->Execute("INSERT INTO Locatie_Profiel (Locatie_ID, Profiel_ID) VALUES (" +
                    std::to_string(k.locatie) + "," + std::to_string(k.profiel) + ")");
    for (const auto& [klasse, periode] : klassen)
        db->Execute("INSERT INTO VeiligheidsklasseHerhalingstijd VALUES (" +
                    std::to_string(klasse) + "," + N(periode) + ");");
    for (const Berekening& b : berekeningen)
        db->Execute("INSERT INTO Berekening VALUES (" + std::to_string(b.id) + "," + Q(b.naam) +
                    "," + std::to_string(b.profiel) + "," + Q(b.faalmechanisme) + "," +
                    N(b.qOverslag) + ")");
    for (const Resultaat& r : resultaten)
        db->Execute("INSERT INTO Resultaat (Berekening_ID,Locatie_ID,Herhalingstijd,HBN_MS_MO,"
                    "OVERLOOP_MS_MO,OVERLOOP_MS_ZO,BOEZEMPEIL,STREEFPEIL,WATERSTAND) VALUES (" +
                    std::to_string(r.berekening) + "," + std::to_string(r.locatie) + "," +
                    N(r.herhalingstijd) + "," + N(r.hbn) + "," + N(r.overloopMo) + "," +
                    N(r.overloopZo) + "," + N(r.boezempeil) + "," + N(r.streefpeil) + "," +
                    N(r.waterstand) + ")");
    for (const Dijkring& d : dijkringen)
        db->Execute("INSERT INTO Dijkring (Naam,Locatie,Profiel,ProfielNaam,QOverslag) VALUES (" +
                    Q(d.naam) + "," + Q(d.locatie) + ",\"Profiel\"," + Q(d.profielNaam) + "," +
                    N(d.qOverslag) + ")");
    for (int r = 1; r <= 16; ++r) {
        db->Execute("INSERT INTO [Kanswindrichting winter] VALUES (" + std::to_string(r) + "," +
                    N(r / 100.0) + ")");
        db->Execute("INSERT INTO [Kanswindrichting zomer] VALUES (" + std::to_string(r) + "," +
                    N(r == 5 ? 0.05 : r / 50.0) + ")");
        db->Execute("INSERT INTO [Windstatistiek winter] VALUES (" + std::to_string(r) + ",0.5," +
                    N(r / 7.0) + ")");
    }
}

} // namespace jet::testing
