#include "Taakrun.h"

#include <QDir>
#include <QImage>
#include <gtest/gtest.h>

namespace {

class VoorbeeldtaakTest : public testing::Test {
protected:
    Taakrun taak;
};

} // namespace

TEST_F(VoorbeeldtaakTest, LeavesPicturesFilesAndATable)
{
    ASSERT_EQ(taak.Voer(), 0) << taak.Tekst().toStdString();
    for (const char* beeld :
         {"hoofdscherm.png", "instellingen.png", "start.png", "rekenen.png", "resultaat.png"}) {
        const QImage gelezen(taak.Uit(beeld));
        EXPECT_GT(gelezen.width(), 400) << beeld;
        EXPECT_GT(gelezen.height(), 300) << beeld;
    }
    EXPECT_FALSE(QFile::exists(taak.Uit("melding.png")));
    for (const char* bestand : {"invoer.txt", "uitvoer.txt", "freqlijn.txt"})
        EXPECT_FALSE(Taakrun::Lees(taak.Uit("Plas-04-") + bestand).isEmpty()) << bestand;
    const auto regels = Taakrun::Lees(taak.Uit("hbn.csv")).trimmed().split('\n');
    EXPECT_EQ(regels[0].trimmed(), "locatie,profiel,herhalingstijd,hbn");
    EXPECT_EQ(regels.size(), 1 + 34 * 5) << "34 pairs, five periods";
    // The worked value of the example data: 1.1617 m.
    EXPECT_TRUE(regels.contains("Plas-04,Gras 1op3,1000,1.162\r"));
    EXPECT_TRUE(taak.Tekst().contains("34 van 34 berekeningen uitgevoerd."));
    EXPECT_TRUE(taak.Tekst().contains("170 hydraulische belastingniveaus berekend."));
}

TEST_F(VoorbeeldtaakTest, CanBeDoneAgainAndLeavesNoSettings)
{
    const QByteArray ini = Taakrun::Lees(taak.Programma("Zandvoet.ini"));
    const QByteArray instellingen = Taakrun::Lees(taak.Programma("data/Instellingen.ini"));
    taak.Rekenhart("case \"$PWD\" in *Plas-04*) exec \"$rekenhart\" \"$@\";; esac\n");
    EXPECT_EQ(taak.Voer(), 0) << taak.Tekst().toStdString();
    EXPECT_EQ(taak.Voer(), 0) << taak.Tekst().toStdString();
    EXPECT_EQ(Taakrun::Lees(taak.Programma("Zandvoet.ini")), ini);
    EXPECT_EQ(Taakrun::Lees(taak.Programma("data/Instellingen.ini")), instellingen);
}

TEST_F(VoorbeeldtaakTest, OneRunThatFailsIsAFailure)
{
    taak.Rekenhart("case \"$PWD\" in *Plas-03*) exit 3;; *Plas-04*) exec \"$rekenhart\" "
                   "\"$@\";; esac\n");
    EXPECT_EQ(taak.Voer(), 1);
    EXPECT_TRUE(taak.Tekst().contains("Plas-03: voorbeeld_berm 1op3 FOUT: EXITCODE=3"))
        << taak.Tekst().toStdString();
}

TEST_F(VoorbeeldtaakTest, ACoreThatComputesNothingIsAFailure)
{
    taak.Rekenhart("exit 0\n");
    EXPECT_EQ(taak.Voer(), 1);
    EXPECT_TRUE(taak.Tekst().contains("0 hydraulische belastingniveaus berekend."));
}

TEST_F(VoorbeeldtaakTest, ACoreThatIsMissingOrNoProgramIsAFailure)
{
    QFile::remove(taak.Programma("Rekenprogramma"));
    EXPECT_EQ(taak.Voer(), 1);
    EXPECT_TRUE(taak.Tekst().contains("Het programma kan niet worden gestart."))
        << taak.Tekst().toStdString();
    taak.Schrijf("Rekenprogramma", "geen programma");
    EXPECT_EQ(taak.Voer(), 1);
}

TEST_F(VoorbeeldtaakTest, ABrokenDatabaseIsAFailure)
{
    const QByteArray heel = Taakrun::Lees(taak.Programma("data/databases/Voorbeeldboezem.mdb"));
    for (const QByteArray& inhoud :
         {QByteArray(), QByteArray("geen database"), heel.left(4096), heel.left(heel.size() / 2)}) {
        taak.Schrijf("data/databases/Voorbeeldboezem.mdb", inhoud);
        EXPECT_EQ(taak.Voer(), 1) << inhoud.size();
    }
    QFile::remove(taak.Programma("data/databases/Voorbeeldboezem.mdb"));
    EXPECT_EQ(taak.Voer(), 1) << "no database";
}

TEST_F(VoorbeeldtaakTest, AFolderThatCannotBeWrittenIsAFailure)
{
    QFile uit(taak.Uit().chopped(1));
    ASSERT_TRUE(uit.open(QIODevice::WriteOnly)) << "a file where the folder should come";
    EXPECT_EQ(taak.Voer(), 1);
}
