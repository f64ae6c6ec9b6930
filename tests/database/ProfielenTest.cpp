#include "DatabaseFixture.h"

#include "profiles/HRProfiel.h"

using ProfielenTest = DatabaseTest;

namespace {

HRProfiel Dijk(const QString& naam)
{
    HRProfiel profiel;
    profiel.setNaam(naam);
    profiel.setDamtype(4);
    profiel.setDamHoogte(0.25F);
    profiel.setDamwandmodule(0);
    profiel.setVoorland(2);
    profiel.setKruinBreedte(1.5F);
    profiel.setTaludhelling(2.5F);
    profiel.setConstructietype(1);
    profiel.setPalenrij(true);
    profiel.setPaaldiameter(0.2F);
    profiel.setHartafstandPalen(0.3F);
    profiel.setRietkraag(true);
    profiel.setVegetatieBreedte(6);
    profiel.setAantalLevendeStengels(120);
    profiel.setSeizoensinvloedFactor(0.5F);
    profiel.setMemo("opmerking");
    profiel.AddXYR(0, -1.6F, 0.7F, false);
    profiel.AddXYR(30, -1.2F, 0.5F, true);
    profiel.AddXYR(38, 0.8F, 1, true);
    return profiel;
}

} // namespace

TEST_F(ProfielenTest, WhatIsStoredReadsBack)
{
    OpenVoorbeeld();
    const int id = db.UpdateProfiel(Dijk("Nieuw"));
    EXPECT_EQ(id, 9);

    HRProfiel terug;
    terug.ReadFromHrDb(db, "nieuw");
    EXPECT_EQ(terug.Naam(), "Nieuw");
    EXPECT_EQ(terug.Damtype(), 4);
    EXPECT_EQ(terug.Damwandmodule(), 0);
    EXPECT_EQ(terug.DamHoogte(), 0.25F);
    EXPECT_EQ(terug.Voorland(), 2);
    EXPECT_EQ(terug.KruinBreedte(), 1.5F);
    EXPECT_EQ(terug.Taludhelling(), 2.5F);
    EXPECT_EQ(terug.Constructietype(), 1);
    EXPECT_TRUE(terug.Palenrij());
    EXPECT_EQ(terug.Paaldiameter(), 0.2F);
    EXPECT_EQ(terug.HartafstandPalen(), 0.3F);
    EXPECT_TRUE(terug.Rietkraag());
    EXPECT_EQ(terug.VegetatieBreedte(), 6);
    EXPECT_EQ(terug.AantalLevendeStengels(), 120);
    EXPECT_EQ(terug.SeizoensinvloedFactor(), 0.5F);
    EXPECT_EQ(terug.Memo(), "opmerking");
    ASSERT_EQ(terug.AantalProfielpunten(), 3);
    EXPECT_EQ(terug.Xcoord(2), 30);
    EXPECT_EQ(terug.Ycoord(2), -1.2F);
    EXPECT_EQ(terug.Ruwheid(1), 0.7F);
    EXPECT_FALSE(terug.Gras(1));
    EXPECT_TRUE(terug.Gras(2));
    EXPECT_EQ(terug.Ruwheid(2), 1) << "grass";
}

TEST_F(ProfielenTest, PointsComeInOrderOfX)
{
    OpenVoorbeeld();
    HRProfiel profiel = Dijk("Nieuw");
    profiel.AddXYR(15, -1.4F, 1, false);
    db.UpdateProfiel(profiel);
    HRProfiel terug;
    terug.ReadFromHrDb(db, "Nieuw");
    EXPECT_EQ(terug.Xcoord(2), 15);
}

TEST_F(ProfielenTest, ASingleReadsBackToItsLastBit)
{
    OpenVoorbeeld();
    HRProfiel profiel = Dijk("Nieuw");
    profiel.setDamHoogte(1.0F / 3);
    profiel.ClearXYR();
    profiel.AddXYR(12345.678F, -0.123456789F, 0.7F, false); // needs more than seven digits
    db.UpdateProfiel(profiel);
    HRProfiel terug;
    terug.ReadFromHrDb(db, "Nieuw");
    EXPECT_EQ(terug.DamHoogte(), 1.0F / 3);
    EXPECT_EQ(terug.Xcoord(1), 12345.678F);
    EXPECT_EQ(terug.Ycoord(1), -0.123456789F);
}

TEST_F(ProfielenTest, AMemoOfSeveralLinesReadsBackAsItWas)
{
    OpenVoorbeeld();
    HRProfiel profiel = Dijk("Nieuw");
    const QString memo = QStringLiteral("regel 1\r\nregel 2: 'één' % _ [x]; \t∞");
    profiel.setMemo(memo + QString(5000, 'm'));
    db.UpdateProfiel(profiel);
    HRProfiel terug;
    terug.ReadFromHrDb(db, "Nieuw");
    EXPECT_EQ(terug.Memo(), memo + QString(5000, 'm'));
}

TEST_F(ProfielenTest, ReadingAnUnknownProfileLeavesTheObject)
{
    OpenVoorbeeld();
    HRProfiel profiel;
    profiel.ReadFromHrDb(db, "bestaat niet");
    EXPECT_TRUE(profiel.Naam().isEmpty());
    EXPECT_EQ(profiel.AantalProfielpunten(), 0);
}

TEST_F(ProfielenTest, ANullSlopeIsReadAsOneOtherNullsAsZero)
{
    const QString bestand = OudeDatabase();
    Voeruit(bestand, {"ALTER TABLE Profielen ADD COLUMN Kruinbreedte SINGLE, Taludhelling SINGLE, "
                      "Constructietype INTEGER, Palenrij INTEGER, Paaldiameter SINGLE, "
                      "HartafstandPalen SINGLE, Rietkraag INTEGER, Vegetatiebreedte SINGLE, "
                      "AantalLevendeStengels SINGLE, SeizoensinvloedFactor SINGLE",
                      "ALTER TABLE Profielsegmenten ADD COLUMN Gras YESNO"});
    db.OpenDB(bestand, false);
    HRProfiel profiel;
    profiel.ReadFromHrDb(db, "Gras 1op3");
    EXPECT_EQ(profiel.Naam(), "Gras 1op3");
    EXPECT_EQ(profiel.Taludhelling(), 1);
    EXPECT_EQ(profiel.KruinBreedte(), 0);
    EXPECT_EQ(profiel.Constructietype(), 0);
    EXPECT_FALSE(profiel.Palenrij());
    EXPECT_EQ(profiel.Paaldiameter(), 0);
    EXPECT_EQ(profiel.HartafstandPalen(), 0);
    EXPECT_FALSE(profiel.Rietkraag());
    EXPECT_EQ(profiel.VegetatieBreedte(), 0);
    EXPECT_EQ(profiel.AantalLevendeStengels(), 0);
    EXPECT_EQ(profiel.SeizoensinvloedFactor(), 0);
    EXPECT_TRUE(profiel.Memo().isEmpty());
}

TEST_F(ProfielenTest, UpdatingAKnownNameReplacesItInAnyCase)
{
    OpenVoorbeeld();
    const int id = db.UpdateProfiel(Dijk("GRAS 1OP3"));
    EXPECT_NE(id, 1) << "the id does not survive";
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Profielen WHERE Naam='Gras 1op3'"), (Rijen{{"1"}}));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM ProfielSegmenten WHERE Profiel_ID=1"), (Rijen{{"0"}}));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Locatie_Profiel WHERE Profiel_ID=1"), (Rijen{{"0"}}))
        << "the links to locations are lost";
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-01"), 1) << "its only profile is gone";
}

TEST_F(ProfielenTest, AProfileWithoutPointsHasNoSegments)
{
    OpenVoorbeeld();
    HRProfiel wand;
    wand.setNaam("Wand");
    wand.setDamwandmodule(2);
    const int id = db.UpdateProfiel(wand);
    EXPECT_EQ(Alle(db.GetProfielSegementen(id)), Rijen{});
    EXPECT_TRUE(db.ProfielHeeftVertikaleWand("wand"));
}

TEST_F(ProfielenTest, AnEmptyMemoDamTypeOrDamHeightIsReadAsTheirZero)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Profielen SET [Memo]=NULL, Damtype=NULL, DamHoogte=NULL WHERE "
                      "Naam='Strekdam'"});
    db.OpenDB(bestand, false);
    HRProfiel profiel;
    profiel.ReadFromHrDb(db, "Strekdam");
    EXPECT_EQ(profiel.Naam(), "Strekdam");
    EXPECT_EQ(profiel.Damtype(), 0);
    EXPECT_EQ(profiel.DamHoogte(), 0);
    EXPECT_TRUE(profiel.Memo().isEmpty());
    EXPECT_GT(profiel.AantalProfielpunten(), 0);
}

class PlainKeyTest : public DatabaseTest {
protected:
    /// The example with a Profielen whose key is a plain number.
    QString ZonderAutonummer()
    {
        const QString bestand = VoorbeeldDatabase("plat.mdb");
        jet::Workspace workspace;
        const auto database = workspace.OpenDatabase(bestand.toStdString());
        auto tabel = database->GetTableDef("Profielen");
        database->DropTable("Profielen");
        tabel.fields[0].autoNumber = false;
        database->CreateTable(tabel);
        return bestand;
    }
};

TEST_F(PlainKeyTest, AnEmptyTableGetsIdOneAndTheNextTheHighestPlusOne)
{
    db.OpenDB(ZonderAutonummer(), false);
    EXPECT_EQ(db.GetMaxProfiel_ID(), kNietBekend);
    EXPECT_EQ(db.UpdateProfiel(Dijk("een")), 1);
    EXPECT_EQ(db.UpdateProfiel(Dijk("twee")), 2);
    EXPECT_EQ(db.UpdateProfiel(Dijk("een")), 3) << "stored anew behind the highest";
}

TEST_F(PlainKeyTest, IdsAbove32767Work)
{
    const QString bestand = ZonderAutonummer();
    db.OpenDB(bestand, false);
    db.UpdateProfiel(Dijk("een"));
    db.CloseDB();
    Voeruit(bestand, {"UPDATE Profielen SET Profiel_ID=40000"});
    EXPECT_EQ(db.UpdateProfiel(Dijk("twee")), 40001);
}

TEST_F(ProfielenTest, AFailedStoreRaises1502AndKeepsTheOldProfile)
{
    OpenVoorbeeld();
    HRProfiel profiel = Dijk("Gras 1op3");
    profiel.setMemo("een \"quote\"");
    EXPECT_EQ(FoutVan([&] { db.UpdateProfiel(profiel); }), 1502);
    EXPECT_EQ(db.GetProfiel_ID("Gras 1op3"), 1);
    EXPECT_EQ(Alle(db.GetProfielSegementen(1)).size(), 3U);
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-01"), 2);
}

TEST_F(ProfielenTest, DeletesAProfileWithItsSegmentsAndLinks)
{
    OpenVoorbeeld();
    db.DeleteProfiel("Gras 1op3");
    EXPECT_EQ(db.GetProfiel_ID("Gras 1op3"), kNietBekend);
    EXPECT_EQ(Alle(db.GetProfielSegementen(1)), Rijen{});
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-01"), 1);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Dijkring WHERE ProfielNaam='Gras 1op3'"), (Rijen{{"4"}}))
        << "rings name a profile by text and are left";
}

TEST_F(ProfielenTest, DeletingAnUnknownProfileOnlyRefreshesTheMarks)
{
    OpenVoorbeeld();
    db.DeleteProfiel("bestaat niet");
    EXPECT_EQ(Alle(db.GetProfielNamen()).size(), 8U);
}

TEST_F(ProfielenTest, AFailedDeleteRaises1503)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DROP TABLE Profielsegmenten"});
    db.OpenDB(bestand, false);
    EXPECT_EQ(FoutVan([&] { db.DeleteProfiel("Gras 1op3"); }), 1503);
    EXPECT_EQ(db.GetProfiel_ID("Gras 1op3"), 1);
    EXPECT_TRUE(db.ProfielUsed("Gras 1op3"));
}

TEST_F(ProfielenTest, KnowsWhichProfilesAreUsedAndWhere)
{
    OpenVoorbeeld();
    EXPECT_TRUE(db.ProfielUsed("Gras 1op3"));
    EXPECT_FALSE(db.ProfielUsed("bestaat niet"));
    db.UpdateProfiel(Dijk("Nieuw"));
    EXPECT_FALSE(db.ProfielUsed("Nieuw"));
    EXPECT_EQ(Alle(db.GetProfielNamenVanLocatie("Plas-02")),
              (Rijen{{"Gras 1op3"}, {"Voorland 1op4"}}));
    EXPECT_EQ(db.GetMaxProfiel_ID(), 9);
    EXPECT_FALSE(db.ProfielHeeftVertikaleWand("Gras 1op3"));
    EXPECT_TRUE(db.ProfielHeeftVertikaleWand("Damwand neus"));
    EXPECT_FALSE(db.ProfielHeeftVertikaleWand("bestaat niet"));
}

TEST_F(ProfielenTest, AssigningAProfileTwiceIsRefusedByTheEngine)
{
    OpenVoorbeeld();
    EXPECT_THROW(db.AddProfiel2Location(1, 1), jet::Error);
}
