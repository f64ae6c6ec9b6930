#include "DatabaseFixture.h"

#include "frame/Globals.h"
#include "frame/QLMIniFile.h"

#include <QSet>

/// What the guard makes, field by field, and what it asks of a file.
class SchemaTest : public DatabaseTest {
protected:
    /// The definition of a table in a file that had to be upgraded.
    jet::TableDef Gemaakt(const char* tabel)
    {
        const QString bestand = VoorbeeldDatabase();
        Voeruit(bestand, {"DROP TABLE VeiligheidsklasseHerhalingstijd", "DROP TABLE Berekening",
                          "DROP TABLE Resultaat"});
        EXPECT_EQ(db.OpenDB(bestand, false, true), OpenResult::Accepted)
            << db.OpenErrDescription().toStdString();
        db.CloseDB();
        jet::Workspace workspace;
        return workspace.OpenDatabase(bestand.toStdString())->GetTableDef(tabel);
    }

    static std::vector<std::string> Velden(const jet::IndexDef& index)
    {
        std::vector<std::string> namen;
        for (const auto& deel : index.fields)
            namen.push_back(deel.field);
        return namen;
    }
};

TEST_F(SchemaTest, SafetyClassesHaveTwoFieldsAndNoIndex)
{
    const auto tabel = Gemaakt("VeiligheidsklasseHerhalingstijd");
    ASSERT_EQ(tabel.fields.size(), 2U);
    EXPECT_EQ(tabel.fields[0].name, "Veiligheidsklasse");
    EXPECT_EQ(tabel.fields[0].type, jet::ColumnType::Long);
    EXPECT_EQ(tabel.fields[1].name, "Herhalingstijd");
    EXPECT_EQ(tabel.fields[1].type, jet::ColumnType::Double);
    EXPECT_TRUE(tabel.indexes.empty());
    EXPECT_EQ(tabel.recordCount, 5);
}

TEST_F(SchemaTest, CalculationsAreFoundBackByFourFields)
{
    using jet::ColumnType;
    const auto tabel = Gemaakt("Berekening");
    ASSERT_EQ(tabel.fields.size(), 5U);
    const std::pair<const char*, ColumnType> verwacht[] = {{"Id", ColumnType::Long},
                                                           {"Naam", ColumnType::Text},
                                                           {"ProfielId", ColumnType::Long},
                                                           {"Faalmechanisme", ColumnType::Text},
                                                           {"QOverslag", ColumnType::Double}};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(tabel.fields[i].name, verwacht[i].first);
        EXPECT_EQ(tabel.fields[i].type, verwacht[i].second) << verwacht[i].first;
        EXPECT_EQ(tabel.fields[i].autoNumber, i == 0) << verwacht[i].first;
    }
    EXPECT_EQ(tabel.fields[1].size, 255);
    EXPECT_EQ(tabel.fields[3].size, 50);

    ASSERT_EQ(tabel.indexes.size(), 2U);
    ASSERT_NE(tabel.PrimaryKey(), nullptr);
    EXPECT_EQ(tabel.PrimaryKey()->name, "PrimaryKey");
    EXPECT_EQ(Velden(*tabel.PrimaryKey()), std::vector<std::string>{"Id"});
    const auto* tweede = tabel.FindIndex("SecondaryKey");
    ASSERT_NE(tweede, nullptr);
    EXPECT_TRUE(tweede->unique && tweede->required && !tweede->primary);
    EXPECT_EQ(Velden(*tweede),
              (std::vector<std::string>{"Naam", "ProfielId", "Faalmechanisme", "QOverslag"}));
}

TEST_F(SchemaTest, ResultsHaveThreeKeysAndTenValuesThatStartUnknown)
{
    const auto tabel = Gemaakt("Resultaat");
    const std::vector<std::string> verwacht{
        "Berekening_ID", "Locatie_ID",     "Herhalingstijd",
        "HBN_MS_MO",     "OVERLOOP_MS_MO", "OVERLOOP_MS_ZO",
        "BOEZEMPEIL",    "STREEFPEIL",     "DOMINANTE WINDRICHTING",
        "WATERSTAND",    "GOLFHOOGTE",     "PIEKPERIODE",
        "GOLFRICHTING"};
    ASSERT_EQ(tabel.fields.size(), verwacht.size());
    for (std::size_t i = 0; i < verwacht.size(); ++i) {
        const auto& veld = tabel.fields[i];
        const bool sleutel = i < 3;
        EXPECT_EQ(veld.name, verwacht[i]);
        EXPECT_EQ(veld.type, i < 2 ? jet::ColumnType::Long : jet::ColumnType::Double) << veld.name;
        EXPECT_EQ(veld.required, sleutel) << veld.name;
        EXPECT_EQ(veld.defaultValue, sleutel ? "0" : "-999") << veld.name;
    }
    ASSERT_EQ(tabel.indexes.size(), 1U);
    ASSERT_NE(tabel.PrimaryKey(), nullptr);
    EXPECT_EQ(tabel.PrimaryKey()->name, "PrimaryKey");
    EXPECT_EQ(Velden(*tabel.PrimaryKey()),
              (std::vector<std::string>{"Berekening_ID", "Locatie_ID", "Herhalingstijd"}));
}

TEST_F(SchemaTest, AnUpgradeAddsGrassAndTheTenFieldsOfProfiles)
{
    using jet::ColumnType;
    VoorbeeldDatabase("Statistieken.mdb");
    gIniFile().SaveString("ALGEMEEN", "Statistieken.mdb", ".\\Statistieken.mdb");
    const QString bestand = OudeDatabase();
    ASSERT_EQ(db.OpenDB(bestand, false, true), OpenResult::Accepted)
        << db.OpenErrDescription().toStdString();
    db.CloseDB();
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(bestand.toStdString());

    const auto segmenten = database->GetTableDef("ProfielSegmenten");
    const auto* gras = segmenten.FindField("Gras");
    ASSERT_NE(gras, nullptr);
    EXPECT_EQ(gras->type, ColumnType::Boolean);
    EXPECT_EQ(gras->defaultValue, "False");

    const auto profielen = database->GetTableDef("Profielen");
    for (const char* naam : {"Kruinbreedte", "Taludhelling", "Paaldiameter", "HartafstandPalen",
                             "Vegetatiebreedte", "AantalLevendeStengels", "SeizoensinvloedFactor",
                             "Constructietype", "Palenrij", "Rietkraag"}) {
        const auto* veld = profielen.FindField(naam);
        ASSERT_NE(veld, nullptr) << naam;
        EXPECT_TRUE(veld->required) << naam;
    }
    EXPECT_EQ(profielen.FindField("Kruinbreedte")->type, ColumnType::Single);
}

TEST_F(SchemaTest, TheListOfTablesNamesEveryTableAndFieldOfACompleteFile)
{
    // But not what is made after or outside the walk over the list: listed, it would
    // refuse the old files that the guard is there to upgrade.
    QLMIniFile lijst(Pad("data/DbTables.ini"));
    const auto waarden = [&lijst](const QString& sectie, const QString& voor) {
        QSet<QString> gevonden;
        for (int i = 1;; ++i) {
            const QString waarde = lijst.GetString(sectie, voor + QString::number(i), "EINDE");
            if (waarde == "EINDE")
                return gevonden;
            gevonden << waarde.section(';', 0, 0).toLower();
        }
    };
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(VoorbeeldDatabase().toStdString());
    QSet<QString> tabellen;
    for (const std::string& tabel : database->TableNames()) {
        const QString naam = QString::fromStdString(tabel);
        if (naam.compare("Dijkring", Qt::CaseInsensitive) == 0)
            continue;
        tabellen << naam.toLower();
        QSet<QString> velden;
        for (const auto& veld : database->GetTableDef(tabel).fields)
            if (veld.name != "Gras")
                velden << QString::fromStdString(veld.name).toLower();
        EXPECT_EQ(waarden(naam, "f."), velden) << tabel;
    }
    EXPECT_EQ(waarden("TABLES", "t."), tabellen);
}
