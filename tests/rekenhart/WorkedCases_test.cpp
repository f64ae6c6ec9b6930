// The worked cases of tests/data/rekenhart/cases.json: made by an independent
// implementation of docs/rekenhart.md, six significant digits.

#include "rekenhart/ExampleData.h"
#include "rekenhart/calculation/DeterministischeBerekening.h"
#include "rekenhart/calculation/DijkringBerekening.h"
#include "rekenhart/calculation/LocatieBerekening.h"
#include "rekenhart/physics/WaveObstacles.h"

#include <gtest/gtest.h>

#include <cmath>

using nlohmann::json;
using namespace rekenhart;

namespace {

constexpr double kFormulaTolerance = 1e-5; // relative; values have six digits

const json& Cases()
{
    static const json cases = ReadTestJson("cases.json");
    return cases;
}

/// Calls `check(invoer, uitvoer, whole case)` for all cases of a kind, and makes
/// sure that there were as many as there should be.
template <typename Check>
void ForAllCases(const std::string& kind, int expectedCount, Check check)
{
    int count = 0;
    for (const json& one : Cases().at("gevallen"))
        if (one.at("soort") == kind) {
            SCOPED_TRACE(one.at("id").get<std::string>());
            check(one.at("invoer"), one.at("uitvoer"), one);
            ++count;
        }
    EXPECT_EQ(count, expectedCount);
}

void ExpectFormula(double actual, const json& expected, const char* name)
{
    const double value = expected;
    EXPECT_NEAR(actual, value, kFormulaTolerance * std::max(std::abs(value), 1e-4)) << name;
}

Golfgroeimodule Model(const std::string& name)
{
    for (const auto model : {Golfgroeimodule::Bretschneider, Golfgroeimodule::YoungVerhagen,
                             Golfgroeimodule::BreugemHolthuijsen})
        if (Keyword(model) == name)
            return model;
    throw std::invalid_argument(name);
}

Belastinginstellingen Settings(const json& j)
{
    Belastinginstellingen settings;
    for (const auto mechanism : {Faalmechanisme::Golfoverslag, Faalmechanisme::Golfoploop})
        if (j.at("mechanisme") == Keyword(mechanism))
            settings.faalmechanisme = mechanism;
    settings.overslagdebiet = j.value("q", 1.0);
    settings.golfgroeimodule = Model(j.value("model", "BRETSCHNEIDER"));
    settings.golfCorrFactor = j.value("fcorr", 1.0);
    settings.windreductie = j.value("windreductie", false);
    settings.toeslagWs = j.value("toeslagws", 0.0);
    settings.toeslagHbn = j.value("toeslaghbn", 0.0);
    settings.toenameWind = j.value("toenamewind", 0.0);
    return settings;
}

Locatie LocatieOf(const json& naam)
{
    return naam == "Nieuw" ? ExampleData::ReadLocatie(Cases().at("locatie_nieuw"))
                           : ExampleData::Get().Locatie(naam);
}

/// The profile of a case, which may be none.
struct OptionalProfiel {
    explicit OptionalProfiel(const json& naam)
    {
        if (!naam.is_null())
            profiel = ExampleData::Get().Profiel(naam);
    }
    const Profiel* Pointer() const { return profiel ? &*profiel : nullptr; }
    std::optional<Profiel> profiel;
};

Profiel ObstacleOf(const json& in)
{
    Profiel p;
    p.damtype = in.value("Damtype", 0);
    p.damHoogte = in.value("DamHoogte", 0.0);
    p.kruinBreedte = in.value("KruinBreedte", 0.0);
    p.taludhelling = in.value("Taludhelling", 0.0);
    p.constructietype = in.value("Constructietype", 0);
    p.paaldiameter = in.value("Paaldiameter", 0.0);
    p.hartafstandPalen = in.value("HartafstandPalen", 0.0);
    p.vegetatieBreedte = in.value("VegetatieBreedte", 0.0);
    p.aantalLevendeStengels = in.value("AantalLevendeStengels", 0.0);
    p.seizoensinvloedFactor = in.value("SeizoensinvloedFactor", 0.0);
    return p;
}

/// Every intermediate value that the case tells.
void ExpectDetails(const LoadDetails& details, const json& expected)
{
    const auto check = [&](const char* name, double actual, double tolerance) {
        if (expected.contains(name)) {
            EXPECT_NEAR(actual, expected.at(name).get<double>(), tolerance) << name;
        }
    };
    const double wide = 1e-4;
    check("S", details.scheefstand, wide);
    check("u_water", details.waterWind, 2e-4);
    check("d", details.depth, wide);
    check("opwaaiing", details.opwaaiing, wide);
    check("h", details.level, wide);
    check("H_groei", details.grownHeight, wide);
    check("Tp", details.peakPeriod, wide);
    check("K_dam", details.damFactor, wide);
    check("K_palen", details.pileFactor, wide);
    check("K_riet", details.reedFactor, wide);
    check("d_teen", details.toeDepth, wide);
    check("Hm0_teen", details.waveHeight, wide);
    check("beta", details.angle, wide);
    check("tan_alpha", details.slope.tanAlpha, wide);
    check("xi", details.slope.breaker, wide);
    check("z2_glad", details.slope.smoothRunUp, wide);
    check("gamma_f", details.slope.roughness, wide);
    check("Rc_breker", details.freeboard.breaking, wide);
    check("Rc_max", details.freeboard.nonBreaking, wide);
    check("gamma_beta", details.freeboard.angleFactor, wide);
    check("gamma_n", details.freeboard.factor / details.freeboard.angleFactor, wide);
    check("Rc", details.freeboard.freeboard, wide);
    check("L", details.load, wide);
    check("belasting", details.load, wide);
}

} // namespace

TEST(WorkedCases, WindOverTheWater)
{
    ForAllCases("wind", 3, [](const json& in, const json& out, const json&) {
        const double factor = ExampleData::Get().Wind().transformation(in.at("u"));
        const double reduction = WindReduction(in.at("ruwheidslengte"));
        ExpectFormula(factor, out.at("factor"), "factor");
        ExpectFormula(reduction, out.at("R"), "R");
        ExpectFormula(in.at("u").get<double>() * factor * reduction, out.at("u_water"), "u_water");
    });
}

TEST(WorkedCases, BasinLevels)
{
    ForAllCases("peil", 6, [](const json& in, const json& out, const json& one) {
        const Locatie locatie = LocatieOf(one.at("locatie"));
        const BasinLevel levels(locatie.streefpeil, locatie.peilen, 0);
        ExpectFormula(levels.AtPeriod(1 / in.at("F").get<double>()), out.at("m"), "m");
    });
}

TEST(WorkedCases, BasinSetUp)
{
    ForAllCases("scheefstand", 3, [](const json& in, const json& out, const json& one) {
        const Locatie locatie = LocatieOf(one.at("locatie"));
        std::vector<double> speeds, values;
        for (const auto& row : locatie.sectoren[in.at("Richting_ID").get<int>() - 1].scheefstand) {
            speeds.push_back(row.windsnelheid);
            values.push_back(row.scheefstand);
        }
        const ScheefstandLine line(LinearTable(speeds, values));
        ExpectFormula(line(in.at("u")), out.at("S"), "S");
    });
}

TEST(WorkedCases, LocalSetUp)
{
    ForAllCases("opwaaiing", 3, [](const json& in, const json& out, const json&) {
        ExpectFormula(Opwaaiing(in.at("u"), in.at("F"), in.at("d")), out.at("opwaaiing"),
                      "opwaaiing");
    });
}

TEST(WorkedCases, WaveGrowth)
{
    ForAllCases("golfgroei", 12, [](const json& in, const json& out, const json&) {
        const Waves waves = GrowWaves(Model(in.at("model")), in.at("u"), in.at("F"), in.at("d"));
        ExpectFormula(waves.height, out.at("Hm0"), "Hm0");
        ExpectFormula(waves.peakPeriod, out.at("Tp"), "Tp");
    });
}

TEST(WorkedCases, Dams)
{
    ForAllCases("dam", 5, [](const json& in, const json& out, const json&) {
        ExpectFormula(DamTransmission(ObstacleOf(in), in.at("h"), {in.at("Hm0"), in.at("Tp")}),
                      out.at("K"), "K");
    });
}

TEST(WorkedCases, PileRows)
{
    ForAllCases("palen", 2, [](const json& in, const json& out, const json&) {
        ExpectFormula(PileTransmission(ObstacleOf(in), in.at("d"), {in.at("Hm0"), 0}), out.at("K"),
                      "K");
    });
}

TEST(WorkedCases, Reed)
{
    ForAllCases("riet", 2, [](const json& in, const json& out, const json&) {
        ExpectFormula(WaveNumber(in.at("Tp"), in.at("d")), out.at("k"), "k");
        ExpectFormula(ReedTransmission(ObstacleOf(in), in.at("d"), {in.at("Hm0"), in.at("Tp")}),
                      out.at("K"), "K");
    });
}

TEST(WorkedCases, Slopes)
{
    ForAllCases("talud", 3, [](const json& in, const json& out, const json& one) {
        const DikeSlope slope(ExampleData::Get().Profiel(one.at("profiel")));
        const SlopeLoad load =
            slope.Schematise(in.at("h"), {in.at("Hm0"), in.at("Tp").get<double>() / 1.1});
        ExpectFormula(load.tanAlpha, out.at("tan_alpha"), "tan_alpha");
        ExpectFormula(load.breaker, out.at("xi"), "xi");
        ExpectFormula(load.smoothRunUp, out.at("z2_glad"), "z2_glad");
        ExpectFormula(load.roughness, out.at("gamma_f"), "gamma_f");
    });
}

TEST(WorkedCases, WindProbabilities)
{
    ForAllCases("windkans", 3, [](const json& in, const json& out, const json&) {
        const WindStatistics& wind = ExampleData::Get().Wind();
        const SeasonWind& season = in.at("seizoen") == "winter" ? wind.winter : wind.zomer;
        ExpectFormula(season.Exceedance(in.at("Richting_ID").get<int>() - 1, in.at("u")),
                      out.at("P"), "P");
    });
}

TEST(WorkedCases, LoadsWithAllIntermediateValues)
{
    ForAllCases("belasting", 8, [](const json& in, const json& out, const json& one) {
        const OptionalProfiel profiel(one.at("profiel"));
        const LoadModel model(LocatieOf(one.at("locatie")), profiel.Pointer(),
                              Settings(one.at("instellingen")),
                              ExampleData::Get().Wind().transformation);
        const int sector = in.at("Richting_ID").get<int>() - 1;
        const LoadDetails details =
            model.Evaluate(in.at("m"), sector, in.at("windsnelheid"), LoadKind::Full);
        ExpectDetails(details, out);
        EXPECT_EQ(model.Fetch(sector), out.at("F").get<double>());
    });
}

TEST(WorkedCases, Locations)
{
    ForAllCases("locatie", 9, [](const json&, const json& out, const json& one) {
        const OptionalProfiel profiel(one.at("profiel"));
        const double tolerance = one.at("profiel") == "Berm 1op3" ? 1e-3 : 2e-4;
        LocatieBerekening calculation(LocatieOf(one.at("locatie")), profiel.Pointer(),
                                      Settings(one.at("instellingen")), ExampleData::Get().Wind(),
                                      true);
        for (const json& expected : out.at("resultaten")) {
            const PeriodResult result = calculation.Calculate(expected.at("T"));
            const ResultaatRij& row = result.rij;
            SCOPED_TRACE(expected.at("T").dump());
            EXPECT_NEAR(row.hbn, expected.at("HBN_MS_MO").get<double>(), tolerance);
            EXPECT_NEAR(row.overloopMo, expected.at("OVERLOOP_MS_MO").get<double>(), tolerance);
            EXPECT_NEAR(row.overloopZo, expected.at("OVERLOOP_MS_ZO").get<double>(), tolerance);
            EXPECT_NEAR(row.boezempeil, expected.at("BOEZEMPEIL").get<double>(), tolerance);
            EXPECT_EQ(row.streefpeil, expected.at("STREEFPEIL").get<double>());

            const json& point = expected.at("ontwerppunt");
            EXPECT_EQ(row.dominanteWindrichting, point.at("richting").get<double>());
            EXPECT_NEAR(result.governing.share, point.at("aandeel").get<double>(), 0.001);
            EXPECT_NEAR(result.governing.basinLevel, point.at("boezempeil").get<double>(), 1e-3);
            EXPECT_NEAR(result.governing.wind, point.at("windsnelheid").get<double>(), 0.05);
            EXPECT_NEAR(row.waterstand, point.at("waterstand").get<double>(), 1e-3);
            EXPECT_NEAR(row.golfhoogte, point.at("Hm0").get<double>(), 0.005);
            EXPECT_NEAR(row.piekperiode, point.at("Tp").get<double>(), 0.005);
        }
        for (const json& expected : out.at("kruinen")) {
            const double frequency = expected.at("frequentie");
            if (frequency >= kSmallestFrequency) {
                EXPECT_NEAR(calculation.FrequencyOf(expected.at("kruin")), frequency,
                            0.01 * frequency);
            }
        }
    });
}

TEST(WorkedCases, DeterministicCalculations)
{
    ForAllCases("determ", 2, [](const json& in, const json& out, const json& one) {
        const OptionalProfiel profiel(one.at("profiel"));
        const Locatie locatie = LocatieOf(one.at("locatie"));
        const WindStatistics& wind = ExampleData::Get().Wind();
        Instellingen settings;
        settings.belasting = Settings(one.at("instellingen"));
        settings.boezempeil = in.at("BOEZEMPEIL");
        settings.windsnelheid = in.at("WINDSNELHEID");
        settings.situatie =
            in.at("SITUATIE") == "HANDMATIG" ? Situatie::Handmatig : Situatie::BextrUextr;
        const LoadModel model(locatie, profiel.Pointer(), settings.belasting, wind.transformation);
        const BasinLevel levels(locatie.streefpeil, locatie.peilen, 0);
        const DetermResultaat result = CalculateDeterministic(
            model, levels, wind, settings, NormHerhalingstijd(locatie.veiligheidsklasse));

        EXPECT_EQ(result.maatgevend + 1, out.at("maatgevend").get<int>());
        EXPECT_NEAR(result.richtingen[result.maatgevend].details.load,
                    out.at("belasting").get<double>(), 1e-4);
        for (int sector = 0; sector < kSectors; ++sector) {
            SCOPED_TRACE(sector + 1);
            const json& expected = out.at("richtingen")[sector];
            EXPECT_NEAR(result.richtingen[sector].basinLevel,
                        expected.at("boezempeil").get<double>(), 1e-5);
            EXPECT_NEAR(result.richtingen[sector].wind, expected.at("windsnelheid").get<double>(),
                        1e-4);
            ExpectDetails(result.richtingen[sector].details, expected);
        }
    });
}

TEST(WorkedCases, DikeRings)
{
    ForAllCases("dijkring", 1, [](const json& in, const json& out, const json& one) {
        std::vector<RingLid> leden;
        for (const json& lid : in.at("leden")) {
            RingLid member{LocatieOf(lid[0]), true, ExampleData::Get().Profiel(lid[1]),
                           Settings(one.at("instellingen"))};
            member.instellingen.overslagdebiet = lid[2];
            leden.push_back(member);
        }
        const DijkringBerekening calculation(leden, ExampleData::Get().Wind());
        const RingResultaat& result = calculation.Result();
        ASSERT_EQ(result.leden.size(), out.at("leden").size());
        for (std::size_t i = 0; i < result.leden.size(); ++i) {
            const json& expected = out.at("leden")[i];
            SCOPED_TRACE(result.leden[i].locatie);
            const double tolerance = expected.at("profiel") == "Berm 1op3" ? 1e-3 : 2e-4;
            const double frequency = expected.at("frequentie_kruin");
            EXPECT_NEAR(result.leden[i].crestFrequency, frequency, 0.01 * frequency);
            for (const json& hbn : expected.at("HBN")) {
                const auto& periods = RingPeriods();
                const auto at = std::find(periods.begin(), periods.end(), hbn.at("T"));
                EXPECT_NEAR(result.leden[i].hbn[at - periods.begin()], hbn.at("HBN").get<double>(),
                            tolerance);
            }
        }
        EXPECT_EQ(result.leden[result.zwakste].locatie, out.at("zwakste"));
        const double frequency = out.at("frequentie_ring");
        EXPECT_NEAR(result.frequency, frequency, 0.01 * frequency);
        for (const json& expected : out.at("lijn"))
            for (const FreqlijnPunt& punt : result.lijn)
                if (punt.herhalingstijd == expected.at("T")) {
                    EXPECT_NEAR(punt.niveau, expected.at("niveau").get<double>(), 2e-4);
                }
    });
}
