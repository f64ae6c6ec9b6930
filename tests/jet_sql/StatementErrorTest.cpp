#include "jet_sql/ScratchDatabase.h"

#include <chrono>

namespace jet {
namespace {

using ::testing::HasSubstr;
using testing::ScratchDatabase;

struct Tabellen : ScratchDatabase {
    Tabellen()
    {
        Run({"CREATE TABLE Locatie (id LONG CONSTRAINT pk PRIMARY KEY, naam TEXT(10) NOT NULL, x "
             "DOUBLE, n SHORT)",
             "CREATE TABLE Peil (id LONG, x DOUBLE)", "INSERT INTO Locatie VALUES (1,'een',1,1)",
             "INSERT INTO Locatie VALUES (2,'twee',2,2)", "INSERT INTO Peil VALUES (1,5)",
             "INSERT INTO Peil VALUES (2,6)"});
    }
    /// The refusal, with the file as it was, in a transaction and without one.
    std::string Refused(std::string_view statement, ErrorKind kind)
    {
        const auto before = Rows("Locatie");
        const std::string text = Refusal(statement, kind);
        EXPECT_EQ(Rows("Locatie"), before) << statement;
        workspace.BeginTrans();
        Run({"INSERT INTO Peil VALUES (77,77)"});
        Refusal(statement, kind);
        EXPECT_EQ(Rows("Locatie"), before) << statement;
        EXPECT_EQ(One("SELECT Count(*) FROM Peil WHERE id=77").AsInt(), 1) << statement;
        workspace.Rollback();
        EXPECT_TRUE(db->Check().IsSound());
        return text;
    }
};

TEST(StatementErrorTest, TellsTheStatementThePlaceAndWhatIsWrong)
{
    Tabellen data;
    EXPECT_EQ(data.Refusal("SELECT naam, breedte FROM Locatie", ErrorKind::UnknownField),
              "Onbekend veld 'breedte' (bij teken 14 van de opdracht: SELECT naam, breedte FROM "
              "Locatie).");
    EXPECT_THAT(data.Refusal("SELECT Één FROM Locatie WHERE x==1", ErrorKind::Syntax),
                HasSubstr("bij teken 33"));
    EXPECT_THAT(data.Refusal("SELECT * FROM Locaties", ErrorKind::UnknownTable),
                HasSubstr("Onbekende tabel 'Locaties' (bij teken 15"));
    EXPECT_THAT(data.Refusal("SELECT Vierkant(x) FROM Locatie", ErrorKind::UnknownFunction),
                HasSubstr("Onbekende functie 'Vierkant'"));
    EXPECT_THAT(data.Refusal("SELECT x FROM Locatie, Peil", ErrorKind::AmbiguousField),
                HasSubstr("meer dan een tabel"));
    EXPECT_THAT(data.Refusal("INSERT INTO Locatie VALUES (1,'drie',1,1)", ErrorKind::Duplicate),
                HasSubstr("INSERT INTO Locatie VALUES"));
}

TEST(StatementErrorTest, ALongStatementIsShownAroundThePlace)
{
    Tabellen data;
    std::string statement = "SELECT ";
    for (int i = 0; i < 3000; ++i)
        statement += "x+";
    const std::string text = data.Refusal("SELECT x FROM Locatie WHERE " + std::string(2000, ' ') +
                                              "onbekend=1 AND " + std::string(2000, ' ') + "x=1",
                                          ErrorKind::UnknownField);
    EXPECT_LT(text.size(), 400U);
    EXPECT_THAT(text, HasSubstr("bij teken 2029"));
    EXPECT_THAT(text, HasSubstr("..."));
}

TEST(StatementErrorTest, EveryRefusalLeavesTheFileAndTheTransactionAsTheyWere)
{
    Tabellen data;
    data.Refused("UPDATE Locatie SET x=", ErrorKind::Syntax);
    data.Refused("UPDATE Locatie SET breedte=1", ErrorKind::UnknownField);
    data.Refused("UPDATE Locatie SET id=1", ErrorKind::Duplicate);
    data.Refused("UPDATE Locatie SET naam=Null WHERE id=2", ErrorKind::NullNotAllowed);
    data.Refused("UPDATE Locatie SET n=40000*id", ErrorKind::Overflow);
    data.Refused("UPDATE Locatie SET x='tekst'", ErrorKind::BadValue);
    data.Refused("INSERT INTO Locatie (id,naam) VALUES (3)", ErrorKind::Query);
    data.Refused("INSERT INTO Locatie (id,id) VALUES (3,4)", ErrorKind::Query);
    data.Refused("INSERT INTO Locatie (id,weg) VALUES (3,4)", ErrorKind::UnknownField);
    data.Refused("INSERT INTO Locatie (id) VALUES (3)", ErrorKind::NullNotAllowed);
    data.Refused("INSERT INTO Locatie SELECT id+1, 'x', x, 1 FROM Peil", ErrorKind::Duplicate);
    data.Refused("INSERT INTO Locatie SELECT id+5, IIf(id=2,Null,'x'), x, 1 FROM Peil ORDER BY id",
                 ErrorKind::NullNotAllowed);
    data.Refused("DELETE FROM Locaties", ErrorKind::UnknownTable);
    data.Refused("DELETE FROM Locatie WHERE naam=1", ErrorKind::TypeMismatch);
    data.Refused("DELETE FROM Locatie WHERE 1/x='a'", ErrorKind::TypeMismatch);
    data.Refused("DELETE FROM Locatie WHERE CLng(naam)=1", ErrorKind::TypeMismatch);
    data.Refused("SELECT id INTO Locatie FROM Peil", ErrorKind::NameInUse);
    data.Refused("CREATE TABLE Locatie (id LONG)", ErrorKind::NameInUse);
    data.Refused("DROP TABLE Weg", ErrorKind::UnknownTable);
    data.Refused("CREATE UNIQUE INDEX u ON Locatie (weg)", ErrorKind::UnknownField);
    data.Refused("ALTER TABLE Locatie ADD COLUMN x DOUBLE", ErrorKind::NameInUse);
    data.Refused("ALTER TABLE Locatie ADD COLUMN y VIERKANT", ErrorKind::Syntax);
    data.Refused("", ErrorKind::Syntax);
    data.Refused("TRANSFORM Max(x) SELECT id FROM Peil GROUP BY id PIVOT id",
                 ErrorKind::NotSupported);
}

TEST(StatementErrorTest, WhatTheOriginalRefusesIsRefused)
{
    Tabellen data;
    EXPECT_THAT(data.Refusal("SELECT naam, Count(*) FROM Locatie", ErrorKind::Query),
                HasSubstr("naam"));
    data.Refusal("SELECT *, Count(*) FROM Locatie", ErrorKind::Query);
    data.Refusal("SELECT naam FROM Locatie GROUP BY x", ErrorKind::Query);
    data.Refusal("SELECT x FROM Locatie GROUP BY x HAVING naam='een'", ErrorKind::Query);
    data.Refusal("SELECT DISTINCT naam FROM Locatie ORDER BY x", ErrorKind::Query);
    data.Refusal("SELECT x FROM Locatie WHERE Count(*)>1", ErrorKind::Query);
    data.Refusal("SELECT 1 FROM Locatie HAVING 2>1", ErrorKind::Query);
    data.Refusal("SELECT x FROM Locatie, Locatie", ErrorKind::Query);
    data.Refusal("SELECT x FROM Locatie UNION SELECT x, id FROM Peil", ErrorKind::Query);
    data.Refusal("SELECT x FROM Locatie WHERE id IN (SELECT id, x FROM Peil)", ErrorKind::Query);
    data.Refusal("SELECT a AS b, b AS a FROM Peil", ErrorKind::Query);
    data.Refusal("SELECT FROM Locatie", ErrorKind::Syntax);
    data.Refusal("SELECT x FROM", ErrorKind::Syntax);
    data.Refusal("SELECT x FROM Locatie WHERE", ErrorKind::Syntax);
    data.Refusal("SELECT x FROM Locatie ORDER x", ErrorKind::Syntax);
    data.Refusal("SELECT x FROM Locatie INNER JOIN Peil", ErrorKind::Syntax);
    data.Refusal("SELECT x FROM (Locatie INNER JOIN Peil ON Locatie.id=Peil.id", ErrorKind::Syntax);
}

TEST(StatementErrorTest, ADivisionByZeroIsNull)
{
    Tabellen data;
    EXPECT_TRUE(data.One("SELECT x/0 FROM Locatie").IsNull());
    EXPECT_TRUE(data.Rows("SELECT x FROM Locatie WHERE x/0=1").empty());
}

TEST(StatementErrorTest, FiveThousandTermsJoinedByOr)
{
    Tabellen data;
    std::string statement = "SELECT id FROM Locatie WHERE ";
    for (int i = 0; i < 5000; ++i)
        statement += (i > 0 ? " OR (id=" : "(id=") + std::to_string(i + 2) + ")";
    EXPECT_EQ(data.Rows(statement), std::vector<std::string>{"2"});
}

TEST(StatementErrorTest, AListOfTwelveThousandItems)
{
    Tabellen data;
    std::string statement =
        "SELECT Locatie.id FROM Locatie INNER JOIN Peil ON Locatie.id=Peil.id WHERE "
        "Locatie.id IN (";
    for (int i = 0; i < 12000; ++i)
        statement += (i > 0 ? "," : "") + std::to_string(i + 2);
    EXPECT_EQ(data.Rows(statement + ")"), std::vector<std::string>{"2"});
}

TEST(StatementErrorTest, AStatementOfAMegabyteRunsOrIsRefused)
{
    Tabellen data;
    const std::string text(1 << 20, 'a');
    EXPECT_TRUE(data.Rows("SELECT id FROM Locatie WHERE naam='" + text + "'").empty());
    std::string sum = "SELECT 1", deep = "SELECT ", nots = "SELECT ", minuses = "SELECT ";
    for (int i = 0; i < 300000; ++i)
        sum += "+1";
    for (int i = 0; i < 500000; ++i)
        deep += "(";
    for (int i = 0; i < 200000; ++i)
        nots += "Not ";
    for (int i = 0; i < 500000; ++i)
        minuses += "- ";
    data.Refusal(sum, ErrorKind::Syntax);
    data.Refusal(deep + "1", ErrorKind::Syntax);
    data.Refusal(nots + "True", ErrorKind::Syntax);
    data.Refusal(minuses + "1", ErrorKind::Syntax);
    std::string joins = "SELECT 1 FROM Peil AS p0";
    for (int i = 1; i < 5000; ++i)
        joins += " INNER JOIN Peil AS p" + std::to_string(i) + " ON 1=1";
    data.Refusal(joins, ErrorKind::Syntax);
    std::string nested = "SELECT 1";
    for (int i = 0; i < 3000; ++i)
        nested = "SELECT * FROM (" + nested + ")";
    data.Refusal(nested, ErrorKind::Syntax);
}

TEST(StatementErrorTest, AliasesThatDoubleAreRefusedInTime)
{
    Tabellen data;
    std::string statement = "SELECT x AS a0";
    for (int i = 1; i < 60; ++i)
        statement += ", a" + std::to_string(i - 1) + "+a" + std::to_string(i - 1) + " AS a" +
                     std::to_string(i);
    const auto start = std::chrono::steady_clock::now();
    data.Refusal(statement + " FROM Locatie", ErrorKind::Query);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(StatementErrorTest, ADatabaseThatIsOnlyReadRefusesChanges)
{
    Tabellen data;
    const auto path = data.folder / "proef.mdb";
    data.db->Close();
    data.db = data.workspace.OpenDatabase(path, {.readOnly = true});
    EXPECT_EQ(data.Rows("Locatie").size(), 2U);
    data.Refusal("DELETE FROM Locatie", ErrorKind::ReadOnly);
    data.Refusal("DROP TABLE Locatie", ErrorKind::ReadOnly);
    EXPECT_EQ(data.Rows("Locatie").size(), 2U);
}

} // namespace
} // namespace jet
