#include "calculation/Keuzelijst.h"

#include "RunFixture.h"
#include "calculation/Rekeninstellingen.h"
#include "navigation/MapSelection.h"

namespace {

class FakeBron : public LocatieBron {
public:
    QList<LocatieInBoom> Locaties() const override { return locaties; }
    QList<LocatieInBoom> locaties;
};

class KeuzelijstTest : public RunTest {
protected:
    QList<KeuzeRij> Rijen(int index)
    {
        return MaakKeuzelijst(bron, db, index, {"te weinig", "geen"});
    }
    FakeBron bron;
};

TEST_F(KeuzelijstTest, OverflowNeedsNoProfile)
{
    bron.locaties = {{"Plas-01", false, {"Gras 1op3"}}, {"Vaart-1", true, {}}};
    EXPECT_EQ(
        Rijen(faalmechanisme::Overloop),
        (QList<KeuzeRij>{{"Plas-01", "N.V.T.", true, false}, {"Vaart-1", "N.V.T.", true, true}}));
}

TEST_F(KeuzelijstTest, OvertoppingTakesEveryProfile)
{
    bron.locaties = {{"Kleine-3", true, {"Damwand neus", "Gras 1op3"}}};
    EXPECT_EQ(Rijen(faalmechanisme::Golfoverslag),
              (QList<KeuzeRij>{{"Kleine-3", "Damwand neus", true, true},
                               {"Kleine-3", "Gras 1op3", true, true}}));
}

TEST_F(KeuzelijstTest, RunUpLeavesOutVerticalWalls)
{
    bron.locaties = {{"Kleine-3", false, {"Damwand neus", "Gras 1op3"}},
                     {"Vaart-1", true, {"Damwand kaal"}},
                     {"Vaart-4", false, {"Damwand neus"}}};
    EXPECT_EQ(Rijen(faalmechanisme::Golfoploop),
              (QList<KeuzeRij>{{"Kleine-3", "Gras 1op3", true, false},
                               {"Vaart-1", "geen", false, false},
                               {"Vaart-4", "geen", false, false}}));
}

TEST_F(KeuzelijstTest, ALocationWithoutAProfileCannotBeCalculatedForWaves)
{
    bron.locaties = {{"Plas-01", true, {}}};
    EXPECT_EQ(Rijen(faalmechanisme::Golfoverslag),
              (QList<KeuzeRij>{{"Plas-01", "geen", false, false}}));
}

TEST_F(KeuzelijstTest, IncompleteLocationsCannotBeCalculated)
{
    Voeruit("UPDATE Locatie SET kwaliteitskenmerk=0 WHERE OMSCHRIJVING='Plas-01'");
    Voeruit("UPDATE Locatie SET kwaliteitskenmerk=1 WHERE OMSCHRIJVING='Plas-02'");
    bron.locaties = {{"Plas-01", true, {"Gras 1op3"}},
                     {"Plas-02", false, {"Gras 1op3"}},
                     {"Onbekend", true, {"Gras 1op3"}}};
    for (const int index : {0, 1, 2}) {
        const auto rijen = Rijen(index);
        ASSERT_EQ(rijen.size(), 3);
        EXPECT_EQ(rijen[0], (KeuzeRij{"Plas-01", "te weinig", false, false}));
        EXPECT_TRUE(rijen[1].bruikbaar);
        EXPECT_EQ(rijen[2], (KeuzeRij{"Onbekend", "te weinig", false, false}));
    }
}

TEST_F(KeuzelijstTest, OnlyTheTwoWaveMechanismsNeedAProfile)
{
    EXPECT_FALSE(ProfielNodig(0));
    EXPECT_TRUE(ProfielNodig(1));
    EXPECT_TRUE(ProfielNodig(2));
    EXPECT_FALSE(ProfielNodig(3));
    EXPECT_FALSE(ProfielNodig(-1));
}

TEST_F(KeuzelijstTest, TheTreeTellsLocationsProfilesAndSelection)
{
    MapSelection selectie;
    selectie.AddALocation2Selection("kleine-3");
    selectie.ColorSelectionInTreeView(boom);
    const auto gevonden = locaties.Locaties();
    ASSERT_EQ(gevonden.size(), 24);
    EXPECT_EQ(gevonden[0].naam, "Plas-01");
    for (const LocatieInBoom& locatie : gevonden) {
        EXPECT_EQ(locatie.geselecteerd, locatie.naam == "Kleine-3");
        if (locatie.naam == "Kleine-3") {
            EXPECT_EQ(locatie.profielen, (QStringList{"Damwand neus", "Gras 1op3"}));
        }
    }
}

TEST_F(KeuzelijstTest, CalculationsOfALocationAreNoProfiles)
{
    QTreeWidgetItem* locatie = boom.GetNodeByKey("ROOTLOCATIES\\Plas-01");
    const QStringList profielen = locaties.Locaties().first().profielen;
    boom.AddBerekening2Locatie(locatie, "ontwerp");
    EXPECT_EQ(locaties.Locaties().first().profielen, profielen);
}

TEST_F(KeuzelijstTest, WithoutATreeThereIsNothing)
{
    boom.RemoveRoot(navkey::RootLocaties);
    EXPECT_TRUE(locaties.Locaties().isEmpty());
}

} // namespace
