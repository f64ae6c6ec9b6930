#include "SqlInput.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

// Statements damaged at random, and statements put together from random words:
// each is run or refused, none may crash, hang or come out as broken SQL. The
// fuzz target fuzz_sql does the same without end.
namespace {

const std::vector<std::string>& Words()
{
    static const std::vector<std::string> words = {"SELECT",
                                                   "DISTINCT",
                                                   "TOP 3",
                                                   "*",
                                                   "FROM",
                                                   "Locatie",
                                                   "Resultaat",
                                                   "AS a",
                                                   "INNER JOIN",
                                                   "LEFT JOIN",
                                                   "RIGHT JOIN",
                                                   "ON",
                                                   "WHERE",
                                                   "GROUP BY",
                                                   "HAVING",
                                                   "ORDER BY",
                                                   "DESC",
                                                   "UNION",
                                                   "ALL",
                                                   "(",
                                                   ")",
                                                   ",",
                                                   ".",
                                                   "=",
                                                   "<>",
                                                   "<",
                                                   "+",
                                                   "-",
                                                   "*",
                                                   "/",
                                                   "\\",
                                                   "^",
                                                   "&",
                                                   "Mod",
                                                   "And",
                                                   "Or",
                                                   "Not",
                                                   "Xor",
                                                   "Imp",
                                                   "Eqv",
                                                   "Like",
                                                   "In",
                                                   "Between",
                                                   "Is Null",
                                                   "Is Not Null",
                                                   "Exists",
                                                   "Locatie_ID",
                                                   "omschrijving",
                                                   "x",
                                                   "Gras",
                                                   "[DOMINANTE WINDRICHTING]",
                                                   "datum",
                                                   "geld",
                                                   "sleutel",
                                                   "foto",
                                                   "Locatie.x",
                                                   "a.x",
                                                   "Resultaat.Locatie_ID",
                                                   "1",
                                                   "2.5",
                                                   "-999",
                                                   "'dijk'",
                                                   "\"Kade\"",
                                                   "''",
                                                   "#2001-02-03#",
                                                   "True",
                                                   "False",
                                                   "Null",
                                                   "Count(*)",
                                                   "Count(",
                                                   "Sum(",
                                                   "Max(",
                                                   "Min(",
                                                   "Avg(",
                                                   "First(",
                                                   "Last(",
                                                   "StDev(",
                                                   "IIf(",
                                                   "Nz(",
                                                   "Left(",
                                                   "Mid(",
                                                   "InStr(",
                                                   "Len(",
                                                   "CLng(",
                                                   "CStr(",
                                                   "Val(",
                                                   "Round(",
                                                   "Abs(",
                                                   "Switch(",
                                                   "Choose(",
                                                   "DateAdd(",
                                                   "DateDiff(",
                                                   "Replace(",
                                                   "String(",
                                                   "Now()",
                                                   "Date()",
                                                   "IsNull(",
                                                   "UCase(",
                                                   "Space(",
                                                   "INSERT INTO",
                                                   "VALUES",
                                                   "UPDATE",
                                                   "SET",
                                                   "DELETE",
                                                   "DELETE *",
                                                   "CREATE TABLE",
                                                   "ALTER TABLE",
                                                   "ADD COLUMN",
                                                   "DROP TABLE",
                                                   "INDEX",
                                                   "LONG",
                                                   "TEXT(20)",
                                                   "NOT NULL",
                                                   "INTO",
                                                   ";",
                                                   "AS x",
                                                   "[",
                                                   "]",
                                                   "'",
                                                   "\"",
                                                   "#",
                                                   "!",
                                                   "é",
                                                   "1E308",
                                                   "99999999999999999999"};
    return words;
}

std::vector<std::string> Seeds()
{
    std::vector<std::string> seeds = {
        "SELECT Locatie.x, Max(geld) AS m FROM Locatie LEFT JOIN Resultaat ON Locatie.Locatie_ID = "
        "Resultaat.Locatie_ID WHERE omschrijving Like \"d*\" GROUP BY Locatie.x HAVING Count(*)>0 "
        "ORDER BY 1 DESC;",
        "SELECT TOP 2 x, IIf(Gras,'ja','nee') AS g FROM Locatie WHERE x IN (SELECT geld FROM "
        "Resultaat) ORDER BY x",
        "SELECT * FROM (SELECT DISTINCT omschrijving, x FROM Locatie) AS a, Resultaat AS b WHERE "
        "a.x=b.Locatie_ID",
        "UPDATE Locatie INNER JOIN Resultaat ON Locatie.x=Resultaat.geld SET Locatie.x=1, "
        "omschrijving='a' & x "
        "WHERE Not Gras",
        "DELETE * FROM Resultaat WHERE datum>#2001-02-03# AND [DOMINANTE WINDRICHTING]=-999AND "
        "geld<>5",
        "INSERT INTO Locatie (x,omschrijving) SELECT geld, sleutel FROM Resultaat WHERE foto Is "
        "Null",
        "SELECT x FROM Locatie UNION SELECT geld FROM Resultaat ORDER BY x",
        "CREATE TABLE T (id COUNTER CONSTRAINT pk PRIMARY KEY, naam TEXT(20) NOT NULL DEFAULT 'x', "
        "d DECIMAL(10,2))",
        "ALTER TABLE Locatie ADD COLUMN [a] SINGLE NOT NULL,[b] INTEGER NOT NULL;",
        "SELECT (SELECT Max(x) FROM Locatie AS i WHERE i.x<=o.x) FROM Locatie AS o WHERE Exists "
        "(SELECT * FROM "
        "Resultaat WHERE Resultaat.Locatie_ID=o.Locatie_ID)"};
    std::ifstream file(std::string(TEST_DATA_FOLDER) + "/jet_sql/expressions.txt");
    for (std::string line; std::getline(file, line);)
        if (const std::size_t arrow = line.find(" => "); arrow != line.npos)
            seeds.push_back("SELECT " + line.substr(0, arrow) + " FROM Locatie");
    return seeds;
}

class Damage {
public:
    explicit Damage(unsigned seed) : m_random(seed) {}

    std::size_t Below(std::size_t bound) { return m_random() % bound; }

    std::string FromWords()
    {
        std::string text = Below(3) > 0 ? "SELECT " : "";
        for (std::size_t i = 1 + Below(25); i > 0; --i)
            text += Words()[Below(Words().size())] + (Below(4) > 0 ? " " : "");
        return text;
    }

    std::string Damaged(std::string text, const std::vector<std::string>& seeds)
    {
        for (std::size_t i = 1 + Below(5); i > 0; --i) {
            const std::size_t at = Below(text.size() + 1);
            switch (Below(6)) {
            case 0:
                text.insert(at, 1, static_cast<char>(Below(256)));
                break;
            case 1:
                text.erase(at, 1 + Below(8));
                break;
            case 2:
                text.insert(at, " " + Words()[Below(Words().size())] + " ");
                break;
            case 3:
                text.insert(at, text.substr(Below(text.size() + 1), Below(30)));
                break;
            case 4:
                text.resize(at);
                break;
            default: {
                const std::string& other = seeds[Below(seeds.size())];
                text.insert(at, other.substr(Below(other.size()), Below(40)));
            }
            }
        }
        return text;
    }

private:
    std::mt19937 m_random;
};

TEST(RandomTextTest, DamagedStatementsAreRunOrRefused)
{
    const std::vector<std::string> seeds = Seeds();
    for (const std::string& seed : seeds)
        TakeSqlInput(seed);
    const char* first = std::getenv("JET_SQL_SEED");
    const char* rounds = std::getenv("JET_SQL_ROUNDS"); // more, for a long run
    Damage damage(first ? static_cast<unsigned>(std::atoi(first)) : 1U);
    for (int i = rounds ? std::atoi(rounds) : 60000; i > 0; --i) {
        const std::string text = damage.Below(3) == 0
                                     ? damage.FromWords()
                                     : damage.Damaged(seeds[damage.Below(seeds.size())], seeds);
        SCOPED_TRACE(text);
        TakeSqlInput(text);
    }
}

} // namespace
