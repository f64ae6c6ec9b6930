#include "DatabaseFixture.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>

namespace {

/// One row of Resultaat as the core fills it; -999 where it did not.
struct Uitkomst {
    int berekening, locatie;
    double herhalingstijd;
    double hbn, overloopMo, overloopZo, boezempeil, streefpeil;
};

std::string Getal(double waarde)
{
    return jet::Value(waarde).AsText();
}

constexpr double kOnbekend = -999;
constexpr double kAlle = -999;

} // namespace

/// The example with results of three calculations, some of them missing: the
/// expected rows are worked out from the same list by plain code.
class ResultatenTest : public DatabaseTest {
protected:
    ResultatenTest()
    {
        std::mt19937 random(20261121);
        const auto niveau = [&random](double basis) {
            // Quarters are exact: differences need no tolerance.
            return random() % 5 == 0 ? kOnbekend : basis + 0.25 * double(random() % 16);
        };
        for (const int berekening : {1, 2, 3})
            for (int locatie = 1; locatie <= 12; ++locatie)
                for (const double t : {10.0, 100.0, 1000.0})
                    if (random() % 6 != 0)
                        uitkomsten.push_back({berekening, locatie, t, niveau(4), niveau(3),
                                              niveau(2), niveau(1), niveau(-1)});
        // An untouched row: all at their defaults.
        uitkomsten.push_back({1, 13, 10, kOnbekend, kOnbekend, kOnbekend, kOnbekend, kOnbekend});

        // Not in the order in which they are asked for.
        std::shuffle(uitkomsten.begin(), uitkomsten.end(), random);

        const QString bestand = VoorbeeldDatabase();
        std::vector<std::string> statements;
        for (const char* naam : {"een", "twee", "drie"})
            statements.push_back(
                std::string("INSERT INTO Berekening "
                            "(Naam,ProfielId,Faalmechanisme,QOverslag) VALUES ('") +
                naam + "',1,'GOLFOVERSLAG',0.5)");
        for (const Uitkomst& u : uitkomsten)
            statements.push_back(
                "INSERT INTO Resultaat (Berekening_ID,Locatie_ID,Herhalingstijd,HBN_MS_MO,"
                "OVERLOOP_MS_MO,OVERLOOP_MS_ZO,BOEZEMPEIL,STREEFPEIL) VALUES (" +
                Getal(u.berekening) + "," + Getal(u.locatie) + "," + Getal(u.herhalingstijd) + "," +
                Getal(u.hbn) + "," + Getal(u.overloopMo) + "," + Getal(u.overloopZo) + "," +
                Getal(u.boezempeil) + "," + Getal(u.streefpeil) + ")");
        Voeruit(bestand, statements);
        EXPECT_EQ(db.OpenDB(bestand, false), OpenResult::Accepted);
    }

    /// Texts of one number per row for which `voorwaarde` holds, in any order.
    template <typename Voorwaarde, typename Waarde>
    std::vector<std::string> Verwacht(Voorwaarde voorwaarde, Waarde waarde) const
    {
        std::vector<std::string> alle;
        for (const Uitkomst& u : uitkomsten)
            if (voorwaarde(u))
                alle.push_back(Getal(waarde(u)));
        std::sort(alle.begin(), alle.end());
        return alle;
    }

    static std::vector<std::string> Waarden(const RecordsetPtr& rijen)
    {
        std::vector<std::string> alle;
        for (const auto& rij : Alle(rijen, {"waarde"}))
            alle.push_back(rij[0]);
        std::sort(alle.begin(), alle.end());
        return alle;
    }

    /// The fields by which callers walk the rows.
    static std::vector<std::string> Velden(const RecordsetPtr& rijen)
    {
        std::vector<std::string> namen;
        for (const auto& veld : rijen->Fields())
            namen.push_back(veld.name);
        return namen;
    }

    /// Whether the rows come in rising order of these fields of numbers.
    static bool InVolgorde(const RecordsetPtr& rijen, const std::vector<std::string>& velden)
    {
        std::vector<std::vector<double>> sleutels;
        for (const auto& rij : Alle(rijen, velden)) {
            auto& sleutel = sleutels.emplace_back();
            for (const std::string& tekst : rij)
                sleutel.push_back(tekst == "null" ? -1e9 : std::stod(tekst));
        }
        EXPECT_GT(sleutels.size(), 10U);
        return std::is_sorted(sleutels.begin(), sleutels.end());
    }

    std::vector<Uitkomst> uitkomsten;
};

TEST_F(ResultatenTest, CallersFindTheFieldsTheyWalkBy)
{
    using Namen = std::vector<std::string>;
    const QList<int> een{1}, twee{2};
    EXPECT_EQ(Velden(db.GetHBN(1, kAlle)), (Namen{"Locatie_ID", "naam", "X", "Y", "Herhalingstijd",
                                                  "waarde", "DOMINANTE WINDRICHTING", "WATERSTAND",
                                                  "GOLFHOOGTE", "PIEKPERIODE", "GOLFRICHTING"}));
    EXPECT_EQ(Velden(db.GetAandelen(1, kAlle)),
              (Namen{"Locatie_ID", "naam", "X", "Y", "herhalingstijd", "HBN_MS_MO",
                     "OVERLOOP_MS_MO", "OVERLOOP_MS_ZO", "BOEZEMPEIL", "STREEFPEIL"}));
    EXPECT_EQ(Velden(db.GetDataVoorCsv(1)),
              (Namen{"X", "Y", "Berekeningnaam", "Profielnaam", "Faalmechanisme", "QOverslag",
                     "Herhalingstijd", "HBN_MS_MO", "OVERLOOP_MS_MO", "OVERLOOP_MS_ZO",
                     "BOEZEMPEIL", "STREEFPEIL"}));
    EXPECT_EQ(
        Velden(db.GetVerschilHBN(een, twee, kAlle)),
        (Namen{"Locatie_ID", "naam", "Herhalingstijd", "x", "y", "waarde1", "waarde2", "waarde"}));
    EXPECT_EQ(Velden(db.GetBoezempeilen(kAlle)),
              (Namen{"Locatie_ID", "naam", "X", "Y", "herhalingstijd", "boezempeil"}));
    EXPECT_EQ(Velden(db.GetMaxScheefstanden(1)),
              (Namen{"Locatie_ID", "naam", "X", "Y", "windrichting", "Graden", "waarde"}));
    EXPECT_EQ(Velden(db.GetMaxScheefstandVanWindrichtingId(1)), (Namen{"X", "Y", "waarde"}));
    const Namen punt{"x", "y", "waarde"};
    EXPECT_EQ(Velden(db.GetHBNVanHerhalingstijd(een, 10)), punt);
    EXPECT_EQ(Velden(db.GetAandeelScheefstand(een, 10)), punt);
    EXPECT_EQ(Velden(db.GetAandeelOpwaaiing(een, 10)), punt);
    EXPECT_EQ(Velden(db.GetAandeelWindbelasting(een, 10)), punt);
    EXPECT_EQ(Velden(db.GetAandeelWaterstand(een, 10)), punt);
    EXPECT_EQ(Velden(db.GetVerschilHBNTussen2Berekeningen(een, twee, 10)), punt);
    EXPECT_EQ(Velden(db.GetBoezempeilenVanHerhalingstijd(10)), punt);
}

TEST_F(ResultatenTest, RowsComeInOrderOfLocationAndPeriod)
{
    const std::vector<std::string> locatieEnPeriode{"Locatie_ID", "Herhalingstijd"};
    EXPECT_TRUE(InVolgorde(db.GetHBN(1, kAlle), locatieEnPeriode));
    EXPECT_TRUE(InVolgorde(db.GetAandelen(1, kAlle), locatieEnPeriode));
    EXPECT_TRUE(InVolgorde(db.GetVerschilHBN({1}, {2, 3}, kAlle), locatieEnPeriode));
    EXPECT_TRUE(InVolgorde(db.GetBoezempeilen(kAlle), locatieEnPeriode));
    EXPECT_TRUE(
        InVolgorde(db.GetMaxScheefstanden(static_cast<int>(kAlle)), {"Graden", "Locatie_ID"}));
}

TEST_F(ResultatenTest, AnExportComesInOrderOfLocationAndPeriod)
{
    // A row names its location by place only; no two of them share an x and y.
    std::map<std::vector<std::string>, double> idVan;
    for (const auto& rij : Lees("SELECT x, y, Locatie_ID FROM Locatie"))
        idVan[{rij[0], rij[1]}] = std::stod(rij[2]);
    ASSERT_EQ(idVan.size(), 24U);
    std::vector<std::pair<double, double>> sleutels;
    for (const auto& rij : Alle(db.GetDataVoorCsv(1), {"X", "Y", "Herhalingstijd"}))
        sleutels.emplace_back(idVan.at({rij[0], rij[1]}), rij[2] == "null" ? 0 : std::stod(rij[2]));
    EXPECT_TRUE(std::is_sorted(sleutels.begin(), sleutels.end()));
}

TEST_F(ResultatenTest, ADifferenceIsTheFirstChoiceLessTheSecond)
{
    const auto rijen = Alle(db.GetVerschilHBN({1}, {2}, kAlle),
                            {"Locatie_ID", "Herhalingstijd", "waarde1", "waarde2"});
    ASSERT_GT(rijen.size(), 5U);
    for (const auto& rij : rijen) {
        for (const Uitkomst& u : uitkomsten) {
            if (Getal(u.locatie) != rij[0] || Getal(u.herhalingstijd) != rij[1])
                continue;
            if (u.berekening == 1) {
                EXPECT_EQ(rij[2], Getal(u.hbn));
            } else if (u.berekening == 2) {
                EXPECT_EQ(rij[3], Getal(u.hbn));
            }
        }
    }
}

TEST_F(ResultatenTest, GetHBNGivesAllPeriodsInOrderOfLocationAndPeriod)
{
    std::vector<Uitkomst> gevraagd;
    for (const Uitkomst& u : uitkomsten)
        if (u.berekening == 1 && u.hbn != kOnbekend)
            gevraagd.push_back(u);
    std::sort(gevraagd.begin(), gevraagd.end(), [](const Uitkomst& a, const Uitkomst& b) {
        return std::pair(a.locatie, a.herhalingstijd) < std::pair(b.locatie, b.herhalingstijd);
    });
    Rijen verwacht;
    for (const Uitkomst& u : gevraagd)
        verwacht.push_back({Getal(u.locatie), Getal(u.herhalingstijd), Getal(u.hbn)});
    ASSERT_GT(verwacht.size(), 20U);
    EXPECT_EQ(Alle(db.GetHBN(1, kAlle), {"Locatie_ID", "Herhalingstijd", "waarde"}), verwacht);
}

TEST_F(ResultatenTest, GetHBNOfOnePeriodCarriesNameAndPlace)
{
    const auto rijen = Alle(db.GetHBN(2, 100), {"naam", "X", "Y", "Herhalingstijd"});
    EXPECT_EQ(rijen.size(), Verwacht(
                                [](const Uitkomst& u) {
                                    return u.berekening == 2 && u.herhalingstijd == 100 &&
                                           u.hbn != kOnbekend;
                                },
                                [](const Uitkomst&) { return 0.0; })
                                .size());
    for (const auto& rij : rijen)
        EXPECT_EQ(rij[3], "100");
    EXPECT_TRUE(rijen.at(0)[0].starts_with("Plas-"));
}

TEST_F(ResultatenTest, GetHBNVanHerhalingstijdTakesSeveralCalculations)
{
    EXPECT_EQ(Waarden(db.GetHBNVanHerhalingstijd({1, 3}, 100)),
              Verwacht(
                  [](const Uitkomst& u) {
                      return u.berekening != 2 && u.herhalingstijd == 100 && u.hbn != kOnbekend;
                  },
                  [](const Uitkomst& u) { return u.hbn; }));
}

TEST_F(ResultatenTest, GetAandelenPassesNothingOver)
{
    EXPECT_EQ(Alle(db.GetAandelen(1, kAlle)).size(),
              std::size_t(std::count_if(uitkomsten.begin(), uitkomsten.end(),
                                        [](const Uitkomst& u) { return u.berekening == 1; })));
    EXPECT_EQ(Alle(db.GetAandelen(1, 10), {"Locatie_ID", "HBN_MS_MO"}).back(),
              (std::vector<std::string>{"13", "-999"}));
}

TEST_F(ResultatenTest, TheShareOfTheSetUpGuardsTheLoadLevelInsteadOfItsOwnField)
{
    EXPECT_EQ(Waarden(db.GetAandeelScheefstand({1, 2}, 10)),
              Verwacht(
                  [](const Uitkomst& u) {
                      return u.berekening < 3 && u.herhalingstijd == 10 && u.hbn != kOnbekend &&
                             u.boezempeil != kOnbekend;
                  },
                  [](const Uitkomst& u) { return u.overloopZo - u.boezempeil; }));
}

TEST_F(ResultatenTest, TheOtherSharesGuardBothTheirFields)
{
    const auto bij10 = [](const Uitkomst& u) { return u.herhalingstijd == 10; };
    EXPECT_EQ(Waarden(db.GetAandeelOpwaaiing({1, 2, 3}, 10)),
              Verwacht(
                  [&](const Uitkomst& u) {
                      return bij10(u) && u.overloopMo != kOnbekend && u.overloopZo != kOnbekend;
                  },
                  [](const Uitkomst& u) { return u.overloopMo - u.overloopZo; }));
    EXPECT_EQ(Waarden(db.GetAandeelWindbelasting({1, 2, 3}, 10)),
              Verwacht(
                  [&](const Uitkomst& u) {
                      return bij10(u) && u.hbn != kOnbekend && u.overloopMo != kOnbekend;
                  },
                  [](const Uitkomst& u) { return u.hbn - u.overloopMo; }));
    EXPECT_EQ(Waarden(db.GetAandeelWaterstand({1, 2, 3}, 10)),
              Verwacht(
                  [&](const Uitkomst& u) {
                      return bij10(u) && u.boezempeil != kOnbekend && u.streefpeil != kOnbekend;
                  },
                  [](const Uitkomst& u) { return u.boezempeil - u.streefpeil; }));
}

TEST_F(ResultatenTest, CsvDataHasLocationsWithoutAnyResultButNotThoseOfOthersOnly)
{
    std::set<int> inEen, inEnige;
    for (const Uitkomst& u : uitkomsten) {
        inEnige.insert(u.locatie);
        if (u.berekening == 1)
            inEen.insert(u.locatie);
    }
    const auto rijen = Alle(db.GetDataVoorCsv(1), {"X", "Berekeningnaam", "HBN_MS_MO"});
    const auto zonder =
        std::count_if(rijen.begin(), rijen.end(), [](const auto& rij) { return rij[1] == "null"; });
    EXPECT_EQ(std::size_t(zonder), 24 - inEnige.size());
    EXPECT_EQ(rijen.size() - std::size_t(zonder),
              std::size_t(std::count_if(uitkomsten.begin(), uitkomsten.end(),
                                        [](const Uitkomst& u) { return u.berekening == 1; })));
}

TEST_F(ResultatenTest, DifferencesCompareTheSameLocationAndPeriod)
{
    std::vector<std::string> verwacht, bij100;
    double laagste = 1e9, hoogste = -1e9;
    for (const Uitkomst& a : uitkomsten)
        for (const Uitkomst& b : uitkomsten)
            if (a.berekening == 1 && b.berekening != 1 && a.locatie == b.locatie &&
                a.herhalingstijd == b.herhalingstijd && a.hbn != kOnbekend && b.hbn != kOnbekend) {
                verwacht.push_back(Getal(a.hbn - b.hbn));
                if (a.herhalingstijd == 100)
                    bij100.push_back(Getal(a.hbn - b.hbn));
                laagste = std::min(laagste, a.hbn - b.hbn);
                hoogste = std::max(hoogste, a.hbn - b.hbn);
            }
    std::sort(verwacht.begin(), verwacht.end());
    std::sort(bij100.begin(), bij100.end());
    ASSERT_GT(verwacht.size(), 20U);
    EXPECT_EQ(Waarden(db.GetVerschilHBN({1}, {2, 3}, kAlle)), verwacht);
    EXPECT_EQ(Waarden(db.GetVerschilHBN({1}, {2, 3}, 100)), bij100);
    EXPECT_EQ(Waarden(db.GetVerschilHBNTussen2Berekeningen({1}, {2, 3}, 100)), bij100);

    double min = 1000, max = -1000;
    db.GetMinMaxVerschil({1}, {2, 3}, min, max);
    EXPECT_EQ(min, laagste);
    EXPECT_EQ(max, hoogste);
    min = -50;
    db.GetMinMaxVerschil({1}, {2, 3}, min, max);
    EXPECT_EQ(min, -50) << "the caller's values are only widened";
}

TEST_F(ResultatenTest, ListsThePeriodsThatHaveWhatAShareNeeds)
{
    const auto perioden = [this](auto voorwaarde) {
        std::set<double> tijden;
        for (const Uitkomst& u : uitkomsten)
            if (u.berekening != 3 && voorwaarde(u))
                tijden.insert(u.herhalingstijd);
        Rijen rijen;
        for (const double t : tijden)
            rijen.push_back({Getal(t)});
        return rijen;
    };
    const QList<int> ids{1, 2};
    EXPECT_EQ(Alle(db.GetHerhalingstijdenBerekening(ids)),
              perioden([](const Uitkomst&) { return true; }));
    EXPECT_EQ(Alle(db.GetHerhalingstijdenAandeelscheefstand(ids)), perioden([](const Uitkomst& u) {
                  return u.overloopZo != kOnbekend && u.boezempeil != kOnbekend;
              }));
    EXPECT_EQ(Alle(db.GetHerhalingstijdenAandeelopwaaiing(ids)), perioden([](const Uitkomst& u) {
                  return u.overloopMo != kOnbekend && u.overloopZo != kOnbekend;
              }));
    EXPECT_EQ(Alle(db.GetHerhalingstijdenAandeelwindbelasting(ids)),
              perioden([](const Uitkomst& u) {
                  return u.hbn != kOnbekend && u.overloopMo != kOnbekend;
              }));
    EXPECT_EQ(Alle(db.GetHerhalingstijdenAandeelwaterstand(ids)), perioden([](const Uitkomst& u) {
                  return u.boezempeil != kOnbekend && u.streefpeil != kOnbekend;
              }));
    EXPECT_EQ(Alle(db.GetHerhalingstijdenBerekening({99})), Rijen{});
}

TEST_F(ResultatenTest, APeriodWithoutAFieldOfTheShareIsNotListed)
{
    // At each of these periods one field is missing.
    db.CloseDB();
    std::vector<std::string> statements;
    int periode = 0;
    for (const char* veld :
         {"HBN_MS_MO", "OVERLOOP_MS_MO", "OVERLOOP_MS_ZO", "BOEZEMPEIL", "STREEFPEIL"}) {
        const std::string p = std::to_string(++periode);
        statements.push_back("INSERT INTO Resultaat (Berekening_ID,Locatie_ID,Herhalingstijd,"
                             "HBN_MS_MO,OVERLOOP_MS_MO,OVERLOOP_MS_ZO,BOEZEMPEIL,STREEFPEIL) "
                             "VALUES (9,1," +
                             p + ",5,4,3,2,1)");
        statements.push_back(std::string("UPDATE Resultaat SET ") + veld +
                             "=-999 WHERE Berekening_ID=9 AND Herhalingstijd=" + p);
    }
    Voeruit(db.fileName(), statements);
    EXPECT_EQ(Alle(db.GetHerhalingstijdenBerekening({9})),
              (Rijen{{"1"}, {"2"}, {"3"}, {"4"}, {"5"}}));
    EXPECT_EQ(Alle(db.GetHerhalingstijdenAandeelscheefstand({9})), (Rijen{{"1"}, {"2"}, {"5"}}));
    EXPECT_EQ(Alle(db.GetHerhalingstijdenAandeelopwaaiing({9})), (Rijen{{"1"}, {"4"}, {"5"}}));
    EXPECT_EQ(Alle(db.GetHerhalingstijdenAandeelwindbelasting({9})), (Rijen{{"3"}, {"4"}, {"5"}}));
    EXPECT_EQ(Alle(db.GetHerhalingstijdenAandeelwaterstand({9})), (Rijen{{"1"}, {"2"}, {"3"}}));
}

TEST_F(ResultatenTest, ADifferenceOfExactlyTheMissingValueIsPassedOver)
{
    db.CloseDB();
    Voeruit(db.fileName(),
            {"INSERT INTO Resultaat (Berekening_ID,Locatie_ID,Herhalingstijd,HBN_MS_MO) VALUES "
             "(8,1,10,1)",
             "INSERT INTO Resultaat (Berekening_ID,Locatie_ID,Herhalingstijd,HBN_MS_MO) VALUES "
             "(9,1,10,1000)"});
    double min = 5, max = 6;
    db.GetMinMaxVerschil({8}, {9}, min, max);
    EXPECT_EQ(min, 5);
    EXPECT_EQ(max, 6);
}

TEST_F(ResultatenTest, LevelsCanBeAskedForOneOrAllPeriods)
{
    EXPECT_EQ(Alle(db.GetBoezempeilen(kAlle)).size(), 120U);
    const auto bij10 = Alle(db.GetBoezempeilen(10), {"naam", "herhalingstijd", "boezempeil"});
    ASSERT_EQ(bij10.size(), 24U);
    EXPECT_EQ(bij10[0], (std::vector<std::string>{"Plas-01", "10", "-0.2"}));
    const auto punten = Alle(db.GetBoezempeilenVanHerhalingstijd(10));
    ASSERT_EQ(punten.size(), 24U);
    const auto eerste = Lees("SELECT x, y FROM Locatie WHERE Locatie_ID=1").at(0);
    EXPECT_THAT(punten, testing::Contains(std::vector<std::string>{eerste[0], eerste[1], "-0.2"}));
    EXPECT_EQ(Alle(db.GetBoezempeilenVanHerhalingstijd(11)), Rijen{});
}

TEST_F(ResultatenTest, GivesTheHighestSetUpPerSectorAndLocation)
{
    EXPECT_EQ(Alle(db.GetMaxScheefstanden(static_cast<int>(kAlle))).size(), 384U);
    const auto sector = Alle(db.GetMaxScheefstanden(12), {"naam", "windrichting", "Graden"});
    ASSERT_EQ(sector.size(), 24U);
    EXPECT_EQ(sector[0], (std::vector<std::string>{"Plas-01", "WZW", "247.5"}));
    // A location at the lee end: the set-up at 40 m/s is the highest.
    const auto hoogste = Lees("SELECT Scheefstand FROM Scheefstand WHERE Locatie_ID=1 AND "
                              "Richting_ID=4 AND Windsnelheid=40");
    const auto maxima = Alle(db.GetMaxScheefstanden(4), {"Locatie_ID", "waarde"});
    EXPECT_EQ(maxima.at(0), (std::vector<std::string>{"1", hoogste.at(0).at(0)}));
    const auto eerste = Lees("SELECT x, y FROM Locatie WHERE Locatie_ID=1").at(0);
    const auto punten = Alle(db.GetMaxScheefstandVanWindrichtingId(4));
    EXPECT_EQ(punten.size(), 24U);
    EXPECT_THAT(punten, testing::Contains(
                            std::vector<std::string>{eerste[0], eerste[1], hoogste.at(0).at(0)}));
}

TEST_F(ResultatenTest, ExtremesSpanTheWholeTable)
{
    double laagste = 1e9, hoogste = -1e9;
    for (const Uitkomst& u : uitkomsten)
        if (u.hbn != kOnbekend) {
            laagste = std::min(laagste, u.hbn);
            hoogste = std::max(hoogste, u.hbn);
        }
    EXPECT_EQ(Alle(db.GetMinMaxHBNMSMO(), {"min", "max"}),
              (Rijen{{Getal(laagste), Getal(hoogste)}}));
    EXPECT_EQ(Alle(db.GetMinMaxBoezempeilen(), {"min", "max"}),
              Lees("SELECT MIN(Boezempeil), MAX(Boezempeil) FROM Boezempeilstatistiek"));
    const auto scheefstand = Alle(db.GetMinMaxScheefstanden(), {"min", "max"});
    EXPECT_EQ(scheefstand.at(0).at(0), "0");
    EXPECT_EQ(scheefstand.at(0).at(1),
              Lees("SELECT MAX(Scheefstand) FROM Scheefstand").at(0).at(0));
}

TEST_F(ResultatenTest, ExtremesOfSharesAreAskedByPositionNotById)
{
    // Three elements, lower bound 1: calculations 1, 2 and 3, whatever the ids are.
    double min = 1e9, max = -1e9;
    db.GetMinMaxAandelen({77, 78, 79}, min, max);
    double laagste = 1e9, hoogste = -1e9;
    for (const Uitkomst& u : uitkomsten) {
        const auto neem = [&](double a, double b) {
            if (a == kOnbekend || b == kOnbekend)
                return;
            laagste = std::min(laagste, a - b);
            hoogste = std::max(hoogste, a - b);
        };
        neem(u.overloopZo, u.boezempeil);
        neem(u.overloopMo, u.overloopZo);
        neem(u.hbn, u.overloopMo);
        neem(u.boezempeil, u.streefpeil);
    }
    EXPECT_EQ(min, laagste);
    EXPECT_EQ(max, hoogste);

    min = 5;
    max = 5;
    db.GetMinMaxAandelen({1}, min, max, 50);
    EXPECT_EQ(min, 5) << "a calculation without results has null extremes, which change nothing";
    EXPECT_EQ(max, 5);
}
