#include "jet_sql/Waterstaat.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

// The statements of the system, character for character, against rows worked
// out by plain loops over the same data.
namespace jet {
namespace {

using testing::Waterstaat;
using Texts = std::vector<std::string>;

std::string T(double number)
{
    return Value(number).AsText();
}

std::string T(int number)
{
    return std::to_string(number);
}

std::string T(const std::string& text)
{
    return text;
}

std::string T(const char* text)
{
    return text;
}

template <typename... Fields>
std::string R(const Fields&... fields)
{
    std::string row;
    ((row += (row.empty() ? "" : "|") + T(fields)), ...);
    return row;
}

Texts Sorted(Texts rows)
{
    std::sort(rows.begin(), rows.end());
    return rows;
}

class SystemStatementsTest : public ::testing::Test {
protected:
    // One database serves all tests that only read.
    static Waterstaat& Data()
    {
        static Waterstaat data;
        return data;
    }
    static Texts Rows(const std::string& sql) { return Data().Rows(sql); }
    static Texts Any(const std::string& sql) { return Sorted(Data().Rows(sql)); }

    static const Waterstaat::Locatie* Locatie(int id)
    {
        for (const auto& l : Data().locaties)
            if (l.id == id)
                return &l;
        return nullptr;
    }
    static const Waterstaat::Profiel* Profiel(int id)
    {
        for (const auto& p : Data().profielen)
            if (p.id == id)
                return &p;
        return nullptr;
    }
};

// --- locations -------------------------------------------------------------------

TEST_F(SystemStatementsTest, ALocationIsFoundByItsNameWhateverTheCase)
{
    EXPECT_EQ(Rows("SELECT [Locatie_ID] From Locatie WHERE [omschrijving]=\"ZUIDERDIJK 1\";"),
              Texts{"1"});
    EXPECT_EQ(Rows("SELECT [Locatie_ID] From Locatie WHERE [omschrijving]=\"één\";"), Texts{"4"});
    EXPECT_TRUE(Rows("SELECT [Locatie_ID] From Locatie WHERE [omschrijving]=\"Een\";").empty());
    EXPECT_EQ(Rows("SELECT * From Locatie WHERE omschrijving=\"kade 10\";").size(), 1U);
    EXPECT_EQ(Data().Names("SELECT * From Locatie WHERE omschrijving=\"x\";"),
              "Locatie_ID|x|y|omschrijving|kwaliteitskenmerk|kruinhoogte|streefpeil|dijknormaal|"
              "ruwheidslengte|veiligheidsklasse");
    EXPECT_EQ(Rows("SELECT * FROM Locatie").size(), 10U);
    EXPECT_EQ(Rows("SELECT kwaliteitskenmerk FROM locatie WHERE Locatie_ID=5"), Texts{"2"});
    EXPECT_EQ(Rows("SELECT * from Locatie WHERE omschrijving = 'Westkade'").size(), 1U);
    EXPECT_EQ(Rows("SELECT VeiligheidsklasseHerhalingstijd.Herhalingstijd FROM Locatie INNER JOIN "
                   "VeiligheidsklasseHerhalingstijd ON Locatie.veiligheidsklasse = "
                   "VeiligheidsklasseHerhalingstijd.Veiligheidsklasse WHERE "
                   "Locatie.omschrijving='Oever''s eind';"),
              Texts{"10"});
    EXPECT_EQ(Rows("SELECT * From VeiligheidsklasseHerhalingstijd WHERE Veiligheidsklasse=3;"),
              Texts{"3|100"});
}

TEST_F(SystemStatementsTest, LevelsAndSectorsOfALocation)
{
    Texts levels;
    for (const auto& b : Data().boezempeilen)
        if (b.locatie == 2)
            levels.push_back(R(b.herhalingstijd, b.boezempeil));
    EXPECT_EQ(
        Rows("SELECT Herhalingstijd,Boezempeil FROM Locatie INNER JOIN Boezempeilstatistiek ON "
             "Locatie.Locatie_ID = Boezempeilstatistiek.Locatie_ID WHERE "
             "omschrijving=\"Zuiderdijk 2\" ORDER BY Herhalingstijd;"),
        levels);
    EXPECT_EQ(
        Rows("SELECT DISTINCT Herhalingstijd From Boezempeilstatistiek ORDER BY Herhalingstijd;"),
        (Texts{"10", "30", "50", "100", "300", "1000"}));
    EXPECT_EQ(Rows("SELECT Richting_ID, Naam FROM Windsectoren").size(), 16U);
    EXPECT_EQ(Rows("SELECT [Richting_ID] From Windsectoren WHERE Graden=22.5;"), Texts{"2"});
    EXPECT_EQ(Rows("SELECT [Richting_ID] From Windsectoren WHERE Graden=45;"), Texts{"3"});

    Texts now, delivered;
    for (const auto& g : Data().geometrie) {
        if (g.locatie != 8)
            continue;
        now.push_back(R((g.richting - 1) * 22.5, g.fe, g.b));
        delivered.push_back(R((g.richting - 1) * 22.5, g.fe + 1, g.b - 1));
    }
    EXPECT_EQ(
        Rows("SELECT Windsectoren.Graden AS richting, Geometrie.FE as FE,Geometrie.B as B FROM "
             "Geometrie INNER JOIN Windsectoren ON Geometrie.Richting_ID = "
             "Windsectoren.Richting_ID WHERE Locatie_ID=8 ORDER BY Windsectoren.Graden;"),
        now);
    EXPECT_EQ(
        Rows("SELECT Windsectoren.Graden AS richting, Geometrie.FE_org as FE,Geometrie.B_org as B "
             "FROM Geometrie INNER JOIN Windsectoren ON Geometrie.Richting_ID = "
             "Windsectoren.Richting_ID WHERE Locatie_ID=8 ORDER BY Windsectoren.Graden;"),
        delivered);
}

TEST_F(SystemStatementsTest, TheSixQuestionsOfTheQualityMark)
{
    for (const auto& l : Data().locaties) {
        const std::string id = T(l.id);
        const auto unknownFe =
            std::count_if(Data().geometrie.begin(), Data().geometrie.end(),
                          [&](const auto& g) { return g.locatie == l.id && g.fe == -999; });
        EXPECT_EQ(
            Rows("SELECT FE FROM Geometrie WHERE FE=-999  AND Locatie_ID =" + id + ";").size(),
            static_cast<std::size_t>(unknownFe));
        EXPECT_EQ(Rows("SELECT streefpeil FROM Locatie WHERE streefpeil=-999  AND Locatie_ID =" +
                       id + ";")
                      .size(),
                  l.streefpeil == -999 ? 1U : 0U);
        EXPECT_EQ(Rows("SELECT dijknormaal FROM Locatie WHERE dijknormaal=-999  AND Locatie_ID =" +
                       id + ";")
                      .size(),
                  l.dijknormaal == -999 ? 1U : 0U);
        EXPECT_EQ(Rows("SELECT Boezempeil FROM Boezempeilstatistiek WHERE Boezempeil <> -999 AND "
                       "Herhalingstijd In (10,30,100,300,1000) AND Locatie_ID =" +
                       id + ";")
                      .size(),
                  l.id == 6 ? 4U : 5U);
        EXPECT_EQ(
            Rows("SELECT * FROM Scheefstand WHERE Scheefstand=-999AND Locatie_ID =" + id + ";")
                .size(),
            l.id == 7 ? 1U : 0U);
        const auto linked = std::count_if(Data().koppelingen.begin(), Data().koppelingen.end(),
                                          [&](const auto& k) { return k.locatie == l.id; });
        EXPECT_EQ(
            Rows("SELECT Profiel_ID FROM Locatie_Profiel WHERE Locatie_ID=" + id + ";").size(),
            static_cast<std::size_t>(linked));
    }
}

TEST_F(SystemStatementsTest, TheCheckOfTheSetUpTable)
{
    Texts sectors;
    for (int r = 1; r <= 16; ++r)
        sectors.push_back(T(r));
    EXPECT_EQ(Rows("SELECT DISTINCT Richting_ID FROM Windsectoren ORDER BY Richting_ID;"), sectors);
    EXPECT_EQ(
        Rows("SELECT DISTINCT Locatie_ID FROM scheefstand where Locatie_ID IN ( SELECT DISTINCT "
             "Locatie_ID FROM Locatie);")
            .size(),
        10U);
    Texts expected;
    for (const auto& s : Data().scheefstanden)
        if (s.locatie == 7 && s.richting == 3)
            expected.push_back(R(s.windsnelheid, s.scheefstand));
    EXPECT_EQ(Rows("SELECT Windsnelheid, Scheefstand FROM Scheefstand WHERE Richting_ID=3 AND "
                   "Locatie_ID=7 ORDER BY Windsnelheid;"),
              expected);
}

// --- profiles -----------------------------------------------------------------------

TEST_F(SystemStatementsTest, ProfilesAndTheirPoints)
{
    Texts ofLocation;
    for (const auto& k : Data().koppelingen)
        if (k.locatie == 1)
            ofLocation.push_back(Profiel(k.profiel)->naam);
    EXPECT_EQ(Any("SELECT Profielen.Naam FROM (Locatie INNER JOIN Locatie_Profiel ON "
                  "Locatie.Locatie_ID = Locatie_Profiel.Locatie_ID) INNER JOIN Profielen ON "
                  "Locatie_Profiel.Profiel_ID = Profielen.Profiel_ID WHERE "
                  "Locatie.omschrijving=\"Zuiderdijk 1\";"),
              Sorted(ofLocation));
    EXPECT_EQ(Rows("SELECT Profiel_ID, Naam FROM Profielen").size(), 4U);
    const std::string properties =
        "SELECT "
        "[Profiel_ID],[Naam],[Damtype],[DamHoogte],[Damwandmodule],[Voorland],[Kruinbreedte],"
        "[Taludhelling],[Constructietype],[Palenrij],[Paaldiameter],[HartafstandPalen],[Rietkraag],"
        "[Vegetatiebreedte],[AantalLevendeStengels],[SeizoensinvloedFactor],[Memo] From Profielen "
        "WHERE Naam=\"profiel b\";";
    EXPECT_EQ(Rows(properties),
              Texts{"2|Profiel B|0|null|1.5|null|null|null|null|null|null|null|null|null|"
                    "null|null|opmerking 2"});
    EXPECT_EQ(Data().Open(properties)->FieldIndex("memo"), 16);
    Texts points;
    for (const auto& s : Data().segmenten)
        if (s.profiel == 2)
            points.insert(points.begin(), R(s.x, s.y, s.r, s.gras ? "-1" : "0"));
    EXPECT_EQ(Rows("SELECT X, Y, R, Gras FROM ProfielSegmenten WHERE Profiel_ID=2 ORDER BY X;"),
              points);
    EXPECT_EQ(Rows("SELECT X, Y, R, Gras FROM Profielsegmenten WHERE Profiel_ID=2 ORDER BY X;"),
              points);
    EXPECT_EQ(Rows("SELECT [Profiel_ID] From Profielen WHERE Naam=\"Profiel C\";"), Texts{"3"});
    EXPECT_EQ(Rows("SELECT Max(Profiel_ID) AS MaxProfielId FROM Profielen;"), Texts{"4"});
    EXPECT_EQ(Rows("SELECT [Damwandmodule] From Profielen WHERE Naam=\"Profiel B\";"),
              Texts{"1.5"});
    const auto used = std::count_if(Data().koppelingen.begin(), Data().koppelingen.end(),
                                    [](const auto& k) { return k.profiel == 2; });
    const std::string count = "SELECT COUNT(*) AS COUNT FROM Locatie_Profiel WHERE Profiel_ID=2;";
    EXPECT_EQ(Rows(count), Texts{T(static_cast<int>(used))});
    EXPECT_EQ(Data().Open(count)->Get("COUNT").AsInt(), used);
}

// --- calculations -------------------------------------------------------------------

TEST_F(SystemStatementsTest, CalculationsByNameAndWithTheirProfile)
{
    EXPECT_EQ(Rows("SELECT [Id] From Berekening WHERE Naam=\"BASIS\";"), (Texts{"1", "2"}));
    EXPECT_EQ(Rows("SELECT [Id] From Berekening WHERE Naam=\"basis\" AND ProfielId=2;"),
              Texts{"2"});
    EXPECT_EQ(Rows("SELECT Id FROM Berekening WHERE [Naam]='Variant''s' AND [ProfielId]=99 AND "
                   "[Faalmechanisme]='GOLFOPLOOP' AND [QOverslag]=1;"),
              Texts{"3"});
    EXPECT_EQ(
        Rows("SELECT Berekening.Naam as naam, Profielen.Naam as profielnaam, "
             "Berekening.Faalmechanisme as faalmechanisme, Berekening.QOverslag as overslagdebiet "
             "FROM Berekening LEFT JOIN Profielen ON Berekening.ProfielId = Profielen.Profiel_ID "
             "WHERE  Berekening.Id=2;"),
        Texts{"basis|Profiel B|GOLFOVERSLAG|0.1"});
    EXPECT_EQ(
        Rows("SELECT Berekening.Naam as naam, Profielen.Naam as profielnaam, "
             "Berekening.Faalmechanisme as faalmechanisme, Berekening.QOverslag as overslagdebiet "
             "FROM Berekening LEFT JOIN Profielen ON Berekening.ProfielId = Profielen.Profiel_ID "
             "WHERE  Berekening.Id=3;"),
        Texts{"Variant's|null|GOLFOPLOOP|1"});

    Texts all;
    for (const auto& r : Data().resultaten) {
        const auto& b = Data().berekeningen[static_cast<std::size_t>(r.berekening - 1)];
        const auto* p = Profiel(b.profiel);
        all.push_back(
            R(Locatie(r.locatie)->omschrijving, b.naam, p ? p->naam : "null", b.id, r.locatie));
    }
    const std::string getBerekeningen =
        "SELECT Locatie.omschrijving AS locatieomschrijving, Berekening.Naam AS berekeningnaam, "
        "Profielen.Naam AS profielnaam, Berekening.id AS berekeningid, Locatie.Locatie_ID AS "
        "locatieid "
        "FROM Profielen RIGHT JOIN (Berekening INNER JOIN (Locatie INNER JOIN Resultaat ON "
        "Locatie.Locatie_ID = Resultaat.Locatie_ID) ON Berekening.Id = Resultaat.Berekening_ID) ON "
        "Profielen.Profiel_ID = Berekening.ProfielId;";
    EXPECT_EQ(Any(getBerekeningen), Sorted(all));
    EXPECT_EQ(Data().Names(getBerekeningen),
              "locatieomschrijving|berekeningnaam|profielnaam|berekeningid|locatieid");

    EXPECT_EQ(
        Any("SELECT Berekening.Id as berekeningID, Berekening.Naam as naam, "
            "Berekening.Faalmechanisme as faalmechanisme, Berekening.QOverslag as overslagdebiet, "
            "Profielen.Naam as profielnaam FROM Berekening LEFT JOIN Profielen ON "
            "Berekening.ProfielId = Profielen.Profiel_ID WHERE  Berekening.Id IN (SELECT DISTINCT "
            " Resultaat.Berekening_ID FROM Resultaat);"),
        (Texts{"1|basis|OVERLOOP|-999|Profiel A", "2|basis|GOLFOVERSLAG|0.1|Profiel B",
               "3|Variant's|GOLFOPLOOP|1|null"}));
    EXPECT_EQ(Any("SELECT DISTINCT Berekening.Naam AS naam, Berekening.Faalmechanisme AS "
                  "faalmechanisme, Berekening.QOverslag AS overslagdebiet FROM Berekening WHERE "
                  "Berekening.Id IN (SELECT DISTINCT  Resultaat.Berekening_ID FROM Resultaat);"),
              (Texts{"Variant's|GOLFOPLOOP|1", "basis|GOLFOVERSLAG|0.1", "basis|OVERLOOP|-999"}));
}

TEST_F(SystemStatementsTest, LevelsOfOneCalculation)
{
    const std::string select =
        "SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, Locatie.x as X, Locatie.y as Y, "
        "Resultaat.Herhalingstijd as Herhalingstijd, Resultaat.HBN_MS_MO as waarde, "
        "Resultaat.[DOMINANTE WINDRICHTING], Resultaat.[WATERSTAND], Resultaat.[GOLFHOOGTE], "
        "Resultaat.[PIEKPERIODE], Resultaat.[GOLFRICHTING] FROM Resultaat INNER JOIN Locatie ON "
        "Resultaat.Locatie_ID = Locatie.Locatie_ID WHERE Resultaat.Berekening_ID=1 ";
    const std::string end = "AND Resultaat.HBN_MS_MO<>-999 ORDER BY Locatie.Locatie_ID, "
                            "Resultaat.Herhalingstijd;";
    Texts all, one;
    for (const auto& r : Data().resultaten) {
        if (r.berekening != 1 || r.hbn == -999)
            continue;
        const auto* l = Locatie(r.locatie);
        const std::string row = R(l->id, l->omschrijving, l->x, l->y, r.herhalingstijd, r.hbn, -999,
                                  r.waterstand, -999, -999, -999);
        all.push_back(row);
        if (r.herhalingstijd == 100)
            one.push_back(row);
    }
    EXPECT_EQ(Rows(select + end), all);
    EXPECT_EQ(Rows(select + "AND Resultaat.Herhalingstijd=100 " + end), one);
    EXPECT_EQ(
        Data().Names(select + end),
        "Locatie_ID|naam|X|Y|Herhalingstijd|waarde|DOMINANTE WINDRICHTING|WATERSTAND|GOLFHOOGTE|"
        "PIEKPERIODE|GOLFRICHTING");
}

TEST_F(SystemStatementsTest, ContributionsLeaveTheMissingValueOut)
{
    struct Member {
        std::string value, condition;
        double (*worked)(const Waterstaat::Resultaat&);
        bool (*guard)(const Waterstaat::Resultaat&);
    };
    using Row = Waterstaat::Resultaat;
    const Member members[] = {
        {"OVERLOOP_MS_ZO-BOEZEMPEIL",
         " AND Resultaat.HBN_MS_MO<>-999 AND Resultaat.BOEZEMPEIL<>-999;",
         [](const Row& r) { return r.overloopZo - r.boezempeil; },
         [](const Row& r) { return r.hbn != -999 && r.boezempeil != -999; }},
        {"OVERLOOP_MS_MO-OVERLOOP_MS_ZO",
         " AND Resultaat.OVERLOOP_MS_MO<>-999 AND Resultaat.OVERLOOP_MS_ZO<>-999;",
         [](const Row& r) { return r.overloopMo - r.overloopZo; },
         [](const Row& r) { return r.overloopMo != -999 && r.overloopZo != -999; }},
        {"HBN_MS_MO-OVERLOOP_MS_MO",
         " AND Resultaat.HBN_MS_MO<>-999 AND Resultaat.OVERLOOP_MS_MO<>-999;",
         [](const Row& r) { return r.hbn - r.overloopMo; },
         [](const Row& r) { return r.hbn != -999 && r.overloopMo != -999; }},
        {"Resultaat.BOEZEMPEIL-Resultaat.STREEFPEIL",
         " AND Resultaat.BOEZEMPEIL<>-999 AND Resultaat.STREEFPEIL<>-999;",
         [](const Row& r) { return r.boezempeil - r.streefpeil; },
         [](const Row& r) { return r.boezempeil != -999 && r.streefpeil != -999; }},
    };
    for (const Member& member : members) {
        Texts expected;
        for (const Row& r : Data().resultaten)
            if ((r.berekening == 1 || r.berekening == 3) && r.herhalingstijd == 30 &&
                member.guard(r))
                expected.push_back(
                    R(Locatie(r.locatie)->x, Locatie(r.locatie)->y, member.worked(r)));
        EXPECT_EQ(Any("SELECT Locatie.x, Locatie.y, " + member.value +
                      " AS waarde FROM Resultaat INNER "
                      "JOIN Locatie ON Resultaat.Locatie_ID = Locatie.Locatie_ID WHERE "
                      "(Resultaat.Berekening_ID IN (1,3)) AND Resultaat.Herhalingstijd=30" +
                      member.condition),
                  Sorted(expected))
            << member.value;
        EXPECT_FALSE(expected.empty());
    }
    Texts levels;
    for (const Row& r : Data().resultaten)
        if (r.berekening == 2 && r.herhalingstijd == 300 && r.hbn != -999)
            levels.push_back(R(Locatie(r.locatie)->x, Locatie(r.locatie)->y, r.hbn));
    EXPECT_EQ(
        Any("SELECT Locatie.x, Locatie.y, Resultaat.HBN_MS_MO as waarde FROM Resultaat INNER JOIN "
            "Locatie ON Resultaat.Locatie_ID = Locatie.Locatie_ID WHERE "
            "Resultaat.Herhalingstijd=300 AND (Resultaat.Berekening_ID IN (2)) AND "
            "Resultaat.HBN_MS_MO<>-999;"),
        Sorted(levels));
}

TEST_F(SystemStatementsTest, AllContributionsOfACalculationComeWithTheMissingOnes)
{
    Texts expected;
    for (const auto& r : Data().resultaten)
        if (r.berekening == 3)
            expected.push_back(R(r.locatie, Locatie(r.locatie)->omschrijving, Locatie(r.locatie)->x,
                                 Locatie(r.locatie)->y, r.herhalingstijd, r.hbn, r.overloopMo,
                                 r.overloopZo, r.boezempeil, r.streefpeil));
    EXPECT_EQ(
        Rows("SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, Locatie.x as X, Locatie.y "
             "as Y, Resultaat.Herhalingstijd as herhalingstijd, Resultaat.HBN_MS_MO, "
             "Resultaat.OVERLOOP_MS_MO, Resultaat.OVERLOOP_MS_ZO, Resultaat.BOEZEMPEIL, "
             "Resultaat.STREEFPEIL FROM Resultaat INNER JOIN Locatie ON Resultaat.Locatie_ID = "
             "Locatie.Locatie_ID WHERE Berekening_ID=3 ORDER BY  Locatie.Locatie_ID, "
             "Resultaat.Herhalingstijd;"),
        expected);
}

TEST_F(SystemStatementsTest, TheExportHoldsLocationsWithoutResultsAndNotThoseOfOtherCalculations)
{
    Texts expected;
    for (const auto& l : Data().locaties) {
        bool any = false;
        for (const auto& r : Data().resultaten) {
            any = any || r.locatie == l.id;
            if (r.locatie != l.id || r.berekening != 2)
                continue;
            expected.push_back(R(l.x, l.y, "basis", "Profiel B", "GOLFOVERSLAG", 0.1,
                                 r.herhalingstijd, r.hbn, r.overloopMo, r.overloopZo, r.boezempeil,
                                 r.streefpeil));
        }
        if (!any)
            expected.push_back(R(l.x, l.y, "null", "null", "null", "null", "null", "null", "null",
                                 "null", "null", "null"));
    }
    EXPECT_EQ(
        Rows("SELECT Locatie.x as X, Locatie.y as Y, Berekening.Naam as Berekeningnaam, "
             "Profielen.Naam as Profielnaam, Berekening.Faalmechanisme as Faalmechanisme, "
             "Berekening.QOverslag as QOverslag, Resultaat.Herhalingstijd as Herhalingstijd, "
             "Resultaat.HBN_MS_MO, Resultaat.OVERLOOP_MS_MO, Resultaat.OVERLOOP_MS_ZO, "
             "Resultaat.BOEZEMPEIL, Resultaat.STREEFPEIL FROM ((Locatie LEFT JOIN Resultaat ON "
             "Locatie.Locatie_ID = Resultaat.Locatie_ID) LEFT JOIN Berekening ON "
             "Resultaat.Berekening_ID = Berekening.Id) LEFT JOIN Profielen ON "
             "Berekening.ProfielId = Profielen.Profiel_ID Where (((Resultaat.Berekening_ID) = 2  "
             "Or (Resultaat.Berekening_ID) Is Null)) ORDER BY Locatie.Locatie_ID, "
             "Resultaat.Herhalingstijd;"),
        expected);
}

TEST_F(SystemStatementsTest, TwoSetsOfCalculationsAreCompared)
{
    const std::string from =
        "FROM (Resultaat LEFT JOIN Resultaat AS Resultaat_1 ON (Resultaat.Herhalingstijd = "
        "Resultaat_1.Herhalingstijd) AND (Resultaat.Locatie_ID = Resultaat_1.Locatie_ID)) INNER "
        "JOIN "
        "Locatie ON Resultaat.Locatie_ID = Locatie.Locatie_ID ";
    Texts full, shorter, crossed;
    for (const auto& l : Data().locaties) {
        for (const auto& a : Data().resultaten) {
            if (a.locatie != l.id || (a.berekening != 1 && a.berekening != 2) || a.hbn == -999)
                continue;
            for (const auto& b : Data().resultaten) {
                if (b.berekening != 3 || b.locatie != l.id ||
                    b.herhalingstijd != a.herhalingstijd || b.hbn == -999)
                    continue;
                const double difference = a.hbn - b.hbn;
                full.push_back(
                    R(l.id, l.omschrijving, a.herhalingstijd, l.x, l.y, a.hbn, b.hbn, difference));
                if (a.herhalingstijd == 100)
                    shorter.push_back(R(l.x, l.y, difference));
                crossed.push_back(
                    R(a.berekening, l.id, a.herhalingstijd, 3, l.id, a.herhalingstijd, difference));
            }
        }
    }
    ASSERT_FALSE(full.empty());
    EXPECT_EQ(
        Any("SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, Resultaat.Herhalingstijd as "
            "Herhalingstijd, Locatie.x AS x, Locatie.y AS y, Resultaat.HBN_MS_MO as waarde1, "
            "Resultaat_1.HBN_MS_MO AS waarde2, Resultaat.HBN_MS_MO-Resultaat_1.HBN_MS_MO AS "
            "waarde " +
            from +
            "WHERE ((Resultaat.Berekening_ID IN (1,2)) AND (Resultaat_1.Berekening_ID IN (3)) AND "
            "((Resultaat.HBN_MS_MO)<>-999) AND ((Resultaat_1.HBN_MS_MO)<>-999)) ORDER BY "
            "Locatie.Locatie_ID, Resultaat.Herhalingstijd;"),
        Sorted(full));
    EXPECT_EQ(
        Any("SELECT Locatie.x AS x, Locatie.y AS y, Resultaat.HBN_MS_MO-Resultaat_1.HBN_MS_MO AS "
            "waarde " +
            from +
            "WHERE (((Resultaat.Herhalingstijd)=100) AND (Resultaat.Berekening_ID IN (1,2)) AND "
            "(Resultaat_1.Berekening_ID IN (3)) AND ((Resultaat.HBN_MS_MO)<>-999) AND "
            "((Resultaat_1.HBN_MS_MO)<>-999));"),
        Sorted(shorter));
    const std::string cross =
        "SELECT Resultaat.Berekening_ID, Resultaat.Locatie_ID, Resultaat.Herhalingstijd, "
        "Resultaat_1.Berekening_ID, Resultaat_1.Locatie_ID, Resultaat_1.Herhalingstijd, "
        "(Resultaat.HBN_MS_MO-Resultaat_1.HBN_MS_MO) as waarde FROM Resultaat, Resultaat AS "
        "Resultaat_1 WHERE ((Resultaat.Berekening_ID IN (1,2)) AND (Resultaat_1.Berekening_ID IN "
        "(3)) "
        "AND (Resultaat.HBN_MS_MO<>-999) AND (Resultaat_1.HBN_MS_MO<>-999) AND "
        "((Resultaat.Locatie_ID)=[Resultaat_1].[Locatie_ID]) AND "
        "((Resultaat.Herhalingstijd)=[Resultaat_1].[Herhalingstijd]));";
    EXPECT_EQ(Any(cross), Sorted(crossed));
    EXPECT_EQ(Data().Names(cross),
              "Resultaat.Berekening_ID|Resultaat.Locatie_ID|Resultaat.Herhalingstijd|"
              "Resultaat_1.Berekening_ID|Resultaat_1.Locatie_ID|Resultaat_1.Herhalingstijd|waarde");
}

TEST_F(SystemStatementsTest, BasinLevelsAndGreatestSetUps)
{
    Texts all, hundred;
    for (const auto& l : Data().locaties) {
        std::map<double, std::string> rows;
        for (const auto& b : Data().boezempeilen) {
            if (b.locatie != l.id)
                continue;
            rows[b.herhalingstijd] =
                R(l.id, l.omschrijving, l.x, l.y, b.herhalingstijd, b.boezempeil);
            if (b.herhalingstijd == 100)
                hundred.push_back(R(l.x, l.y, b.boezempeil));
        }
        for (const auto& [period, row] : rows)
            all.push_back(row);
    }
    EXPECT_EQ(
        Rows("SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, Locatie.x as X, Locatie.y  "
             "as Y, Boezempeilstatistiek.Herhalingstijd as herhalingstijd, "
             "Boezempeilstatistiek.Boezempeil AS boezempeil FROM Locatie INNER JOIN "
             "Boezempeilstatistiek ON Locatie.Locatie_ID = Boezempeilstatistiek.Locatie_ID ORDER "
             "BY Locatie.Locatie_ID, Boezempeilstatistiek.Herhalingstijd;"),
        all);
    EXPECT_EQ(
        Any("SELECT Locatie.x, Locatie.y, Boezempeilstatistiek.Boezempeil as waarde FROM Locatie "
            "INNER JOIN Boezempeilstatistiek ON Locatie.Locatie_ID = "
            "Boezempeilstatistiek.Locatie_ID WHERE Boezempeilstatistiek.Herhalingstijd=100;"),
        Sorted(hundred));

    const auto greatest = [](int locatie, int richting) {
        double most = -1e9;
        for (const auto& s : Data().scheefstanden)
            if (s.locatie == locatie && s.richting == richting)
                most = std::max(most, s.scheefstand);
        return most;
    };
    Texts maxima, ofSector;
    for (const auto& w : Data().sectoren)
        for (const auto& l : Data().locaties)
            maxima.push_back(
                R(l.id, l.omschrijving, l.x, l.y, w.naam, w.graden, greatest(l.id, w.richting)));
    const std::string select =
        "SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, Locatie.x AS X, Locatie.y AS Y, "
        "Windsectoren.Naam AS windrichting, Windsectoren.Graden, Max(Scheefstand.Scheefstand) AS "
        "waarde "
        "FROM (Scheefstand INNER JOIN Locatie ON Scheefstand.Locatie_ID = Locatie.Locatie_ID) "
        "INNER "
        "JOIN Windsectoren ON Scheefstand.Richting_ID = Windsectoren.Richting_ID GROUP BY "
        "Locatie.omschrijving, Locatie.Locatie_ID, Locatie.x, Locatie.y, Windsectoren.Naam, "
        "Windsectoren.Graden, Scheefstand.Richting_ID, Scheefstand.Locatie_ID ";
    const std::string order = "ORDER BY Windsectoren.Graden, Locatie.Locatie_ID;";
    EXPECT_EQ(Rows(select + order), maxima);
    EXPECT_EQ(Rows(select + " HAVING (((Scheefstand.Richting_ID)=3)) " + order),
              Texts(maxima.begin() + 20, maxima.begin() + 30));
    for (const auto& l : Data().locaties)
        ofSector.push_back(R(l.x, l.y, greatest(l.id, 4)));
    EXPECT_EQ(
        Any("SELECT Locatie.x as X, Locatie.y as Y, Max(Scheefstand.Scheefstand) as waarde FROM "
            "Scheefstand INNER JOIN Locatie ON Scheefstand.Locatie_ID = Locatie.Locatie_ID GROUP "
            "BY "
            "Locatie.x, Locatie.y, Scheefstand.Richting_ID, Scheefstand.Locatie_ID HAVING "
            "(((Scheefstand.Richting_ID)=4));"),
        Sorted(ofSector));

    double least = 1e9, most = -1e9;
    for (const auto& l : Data().locaties) {
        for (int r = 1; r <= 16; ++r) {
            least = std::min(least, greatest(l.id, r));
            most = std::max(most, greatest(l.id, r));
        }
    }
    const std::string both =
        "SELECT min(MaxScheefstand)as min, max(MaxScheefstand)as max FROM (SELECT "
        "Max([Scheefstand]) AS MaxScheefstand, [Scheefstand].[Richting_ID], "
        "[Scheefstand].[Locatie_ID] From Scheefstand GROUP BY [Richting_ID], "
        "[Locatie_ID]);";
    EXPECT_EQ(Rows(both), Texts{R(least, most)});
    EXPECT_EQ(Data().Names(both), "min|max");
}

TEST_F(SystemStatementsTest, ListsOfReturnPeriods)
{
    const Texts all = {"10", "30", "100", "300", "1000"};
    const std::string select = "SELECT DISTINCT Herhalingstijd FROM Resultaat ";
    const std::string order = " ORDER BY Herhalingstijd;";
    for (const std::string where :
         {"WHERE Resultaat.Berekening_ID IN (1,2)",
          "WHERE OVERLOOP_MS_ZO<>-999 AND BOEZEMPEIL<>-999 AND (Resultaat.Berekening_ID IN (1,2)) ",
          "WHERE OVERLOOP_MS_MO<>-999 AND OVERLOOP_MS_ZO<>-999 AND (Resultaat.Berekening_ID "
          "IN(1,2)) ",
          "WHERE HBN_MS_MO<>-999 AND OVERLOOP_MS_MO<>-999 AND (Resultaat.Berekening_ID IN (1,2)) ",
          "WHERE BOEZEMPEIL<>-999 AND STREEFPEIL<>-999 AND (Resultaat.Berekening_ID IN (1,2)) "})
        EXPECT_EQ(Rows(select + where + order), all) << where;
    EXPECT_TRUE(Rows(select + "WHERE Resultaat.Berekening_ID IN (4)" + order).empty());
}

TEST_F(SystemStatementsTest, MinimaAndMaxima)
{
    double low[5] = {1e9, 1e9, 1e9, 1e9, 1e9}, high[5] = {-1e9, -1e9, -1e9, -1e9, -1e9};
    const auto count = [&](int i, bool use, double value) {
        if (use) {
            low[i] = std::min(low[i], value);
            high[i] = std::max(high[i], value);
        }
    };
    for (const auto& r : Data().resultaten) {
        const bool two = r.berekening == 2;
        count(0, two && r.overloopZo != -999 && r.boezempeil != -999, r.overloopZo - r.boezempeil);
        count(1, two && r.overloopMo != -999 && r.overloopZo != -999, r.overloopMo - r.overloopZo);
        count(2, two && r.boezempeil != -999 && r.streefpeil != -999, r.boezempeil - r.streefpeil);
        count(3, two && r.hbn != -999 && r.overloopMo != -999, r.hbn - r.overloopMo);
        count(4, r.hbn != -999, r.hbn);
    }
    EXPECT_EQ(
        Rows("SELECT MIN(OVERLOOP_MS_ZO-BOEZEMPEIL) as minimum, MAX(OVERLOOP_MS_ZO-BOEZEMPEIL) as "
             "maximum From Resultaat WHERE Berekening_ID=2 AND OVERLOOP_MS_ZO<>-999 AND "
             "BOEZEMPEIL<>-999;"),
        Texts{R(low[0], high[0])});
    EXPECT_EQ(
        Rows("SELECT MIN(OVERLOOP_MS_MO-OVERLOOP_MS_ZO) as minimum,  "
             "MAX(OVERLOOP_MS_MO-OVERLOOP_MS_ZO) as maximum From Resultaat WHERE Berekening_ID=2 "
             "AND OVERLOOP_MS_MO<>-999 AND OVERLOOP_MS_ZO<>-999;"),
        Texts{R(low[1], high[1])});
    EXPECT_EQ(
        Rows("SELECT Min(BOEZEMPEIL-STREEFPEIL) AS minimum, Max(BOEZEMPEIL-STREEFPEIL) AS maximum "
             "From Resultaat WHERE (((Resultaat.Berekening_ID)=2) AND "
             "((Resultaat.BOEZEMPEIL)<>-999) AND ((Resultaat.STREEFPEIL)<>-999));"),
        Texts{R(low[2], high[2])});
    EXPECT_EQ(
        Rows("SELECT MIN(HBN_MS_MO-OVERLOOP_MS_MO) as minimum,  MAX(HBN_MS_MO-OVERLOOP_MS_MO) as "
             "maximum From Resultaat WHERE Berekening_ID=2 AND HBN_MS_MO<>-999 AND "
             "OVERLOOP_MS_MO<>-999;"),
        Texts{R(low[3], high[3])});
    EXPECT_EQ(Rows("SELECT MIN(HBN_MS_MO) as min,  MAX(HBN_MS_MO) as max FROM Resultaat WHERE "
                   "HBN_MS_MO<>-999;"),
              Texts{R(low[4], high[4])});
    EXPECT_EQ(
        Rows("SELECT  MIN(Boezempeil) as min, MAX(Boezempeil) as max FROM Boezempeilstatistiek;"),
        Texts{R(-999, 0.5 + 0.1 * 4 + 10)});
    EXPECT_EQ(
        Rows("SELECT MIN(OVERLOOP_MS_ZO-BOEZEMPEIL) as minimum, MAX(OVERLOOP_MS_ZO-BOEZEMPEIL) as "
             "maximum From Resultaat WHERE Berekening_ID=77 AND OVERLOOP_MS_ZO<>-999 AND "
             "BOEZEMPEIL<>-999;"),
        Texts{"null|null"});
}

TEST_F(SystemStatementsTest, ALocationInTwoCalculationsOfASelectionIsFound)
{
    const auto shared = [](const std::string& ids) {
        return Rows(
            "SELECT Resultaat.Locatie_ID, Resultaat.Herhalingstijd FROM Resultaat WHERE "
            "Resultaat.Berekening_ID IN (" +
            ids +
            ") GROUP BY Resultaat.Locatie_ID, "
            "Resultaat.Herhalingstijd HAVING (((Count(Resultaat.Berekening_ID))>1)) ORDER BY "
            "Resultaat.Locatie_ID, Resultaat.Herhalingstijd;");
    };
    EXPECT_TRUE(shared("2").empty());
    EXPECT_EQ(shared("1,3").size(), 6U * 5U);
    EXPECT_EQ(shared("1,3").front(), "1|10");
}

TEST_F(SystemStatementsTest, DikeRingsByName)
{
    EXPECT_EQ(Any("SELECT DISTINCT Naam FROM Dijkring").size(), 2U);
    EXPECT_EQ(Rows("SELECT * FROM Dijkring WHERE Naam=\"RING 1\"").size(), 2U);
    EXPECT_EQ(Rows("SELECT * From Dijkring WHERE naam=\"ring 2\";").size(), 1U);
    EXPECT_EQ(Rows("SELECT * FROM Dijkring WHERE Locatie=\"noordkade\"").size(), 1U);
    EXPECT_EQ(Rows("SELECT * FROM Dijkring WHERE ProfielNaam=\"Profiel A\"").size(), 2U);
    EXPECT_EQ(Data().Names("Dijkring"), "Naam|Locatie|Profiel|ProfielNaam|QOverslag");
}

TEST_F(SystemStatementsTest, TheGuardsQuestions)
{
    EXPECT_EQ(
        Rows("SELECT [Kanswindrichting winter].[Momentane kans], [Kanswindrichting "
             "zomer].[Momentane kans] FROM [Kanswindrichting winter] INNER JOIN [Kanswindrichting "
             "zomer] ON [Kanswindrichting winter].Richting_ID = [Kanswindrichting "
             "zomer].Richting_ID WHERE [Kanswindrichting winter].[Momentane "
             "kans]=[Kanswindrichting zomer].[Momentane kans];"),
        Texts{"0.05|0.05"});
    EXPECT_EQ(Rows("SELECT DISTINCT omschrijving FROM Locatie").size(), 10U);
    EXPECT_EQ(Rows("SELECT omschrijving FROM Locatie").size(), 10U);
    EXPECT_EQ(Rows("SELECT omschrijving FROM locatie WHERE kwaliteitskenmerk=2"),
              (Texts{"zuiderdijk 2", "Oever's eind", "kade 10"}));
}

} // namespace
} // namespace jet
