#include "DatabaseFixture.h"

#include "database/ui/modHRdbOpenSaveFuncs.h"
#include "frame/ui/FileDialogs.h"

#include <QFile>

/// The user's way to a database: choose, check, hand over closed.
class OpenenTest : public DatabaseTest {
protected:
    ~OpenenTest() override { SetFileChooser(nullptr); }

    std::unique_ptr<HRdb> Kies(const QString& pad)
    {
        SetFileChooser([this, pad](QWidget*, const FileRequest& request) {
            gevraagd = request;
            return pad;
        });
        return OpenDatabaseDialog(nullptr, status, Pad("data"), "Kies een database");
    }

    /// The number of the box that refused the file.
    int Geweigerd(const QString& pad)
    {
        boxes.fouten.clear();
        EXPECT_EQ(OpenHRdbChecked(&status, pad), nullptr);
        return boxes.fouten.size() == 1 ? boxes.fouten.first().number : 0;
    }

    FileRequest gevraagd;
};

TEST_F(OpenenTest, HandsTheDatabaseOverClosedWithItsName)
{
    const QString bestand = VoorbeeldDatabase();
    const auto database = Kies(bestand);
    ASSERT_NE(database, nullptr);
    EXPECT_FALSE(database->IsOpen());
    EXPECT_EQ(database->fileName(), bestand);
    HRdb ander;
    EXPECT_EQ(ander.OpenDB(bestand, false), OpenResult::Accepted) << "the file is free";
}

TEST_F(OpenenTest, AsksForMdbFilesInTheGivenFolder)
{
    EXPECT_EQ(Kies({}), nullptr);
    EXPECT_EQ(gevraagd.title, "Kies een database");
    EXPECT_EQ(gevraagd.filters, "Gegevensbestand (*.mdb)|*.mdb");
    EXPECT_EQ(gevraagd.initialFolder, Pad("data"));
    EXPECT_TRUE(boxes.fouten.isEmpty()) << "giving up tells nothing";
}

TEST_F(OpenenTest, TheStatusBarGetsItsTextBack)
{
    status.text = "Gereed";
    Kies(VoorbeeldDatabase());
    EXPECT_EQ(status.text, "Gereed");
    EXPECT_GT(status.history.size(), 2);
}

TEST_F(OpenenTest, ACopyThatWasKeptStaysToBeReadInTheStatusBar)
{
    status.text = "Gereed";
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DROP TABLE Resultaat"});
    EXPECT_NE(Kies(bestand), nullptr);
    EXPECT_TRUE(status.text.startsWith("Kopie van de database bewaard als boezem.voor-opw"))
        << status.text.toStdString();

    status.text = "Gereed";
    HRdb zelfde;
    zelfde.setStatusbarForm(&status);
    const QString tweede = VoorbeeldDatabase("tweede.mdb");
    Voeruit(tweede, {"DROP TABLE Resultaat"});
    zelfde.OpenDB(tweede, false, true);
    EXPECT_NE(status.text, "Gereed");
    status.text = "Gereed";
    zelfde.OpenDB(bestand, false, true);
    EXPECT_EQ(status.text, "Gereed") << "nothing was copied this time";
}

TEST_F(OpenenTest, ARefusedFileLeavesTheStatusTextToo)
{
    status.text = "Gereed";
    EXPECT_EQ(Kies(Pad("bestaat niet.mdb")), nullptr);
    EXPECT_EQ(status.text, "Gereed");
}

TEST_F(OpenenTest, EachRefusalHasABoxOfItsOwnWithPathAndReason)
{
    EXPECT_EQ(Geweigerd(Pad("bestaat niet.mdb")), 4);
    EXPECT_EQ(boxes.fouten.first().arguments.first(), Pad("bestaat niet.mdb"));
    EXPECT_FALSE(boxes.fouten.first().arguments.at(1).isEmpty());

    const QString zonder = VoorbeeldDatabase("zonder.mdb");
    Voeruit(zonder, {"DROP TABLE Geometrie"});
    EXPECT_EQ(Geweigerd(zonder), 5);
    EXPECT_TRUE(boxes.fouten.first().arguments.at(1).contains("Geometrie"));

    const QString resultaten = VoorbeeldDatabase("resultaten.mdb");
    Voeruit(resultaten, {"INSERT INTO Berekening (Naam,ProfielId,Faalmechanisme,QOverslag) VALUES "
                         "('ontwerp',0,'OVERLOOP',-999)",
                         "INSERT INTO Resultaat (Berekening_ID,Locatie_ID,Herhalingstijd) VALUES "
                         "(1,1,10)"});
    EXPECT_EQ(Geweigerd(resultaten), 27) << "question 200 was answered with no";

    const QString groot = VoorbeeldDatabase("groot.mdb");
    std::vector<std::string> statements;
    for (int i = 0; i < 977; ++i)
        statements.push_back("INSERT INTO Locatie (omschrijving) VALUES ('L" + std::to_string(i) +
                             "')");
    Voeruit(groot, statements);
    EXPECT_EQ(Geweigerd(groot), 28);
    EXPECT_TRUE(QFile::remove(groot)) << "a refused file is not held open";
}
