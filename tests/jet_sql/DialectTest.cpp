#include "jet_sql/ScratchDatabase.h"

#include <fstream>

namespace jet {
namespace {

using testing::ScratchDatabase;

/// One line of tests/data/jet_sql/expressions.txt.
struct Case {
    int line = 0;
    std::string expression, type, value;
};

std::vector<Case> ReadCases()
{
    std::ifstream file(std::string(TEST_DATA_FOLDER) + "/jet_sql/expressions.txt");
    std::vector<Case> cases;
    std::string text;
    for (int line = 1; std::getline(file, text); ++line) {
        const std::size_t arrow = text.rfind(" => ");
        // A date literal begins with the sign of a comment; a comment has no outcome.
        const bool comment = text.starts_with("# ") || text.starts_with("#   ");
        if (comment || arrow == text.npos)
            continue;
        const std::string outcome = text.substr(arrow + 4);
        const std::size_t blank = outcome.find(' ');
        cases.push_back(
            {line, text.substr(0, arrow), outcome.substr(0, blank), outcome.substr(blank + 1)});
    }
    return cases;
}

std::string Outcome(Database& db, const std::string& expression)
{
    try {
        const auto rows =
            db.OpenRecordset("SELECT " + expression + " FROM T", RecordsetType::Snapshot);
        const Value value = rows->Get(0);
        const ColumnType type = rows->Fields().front().type;
        std::string text = value.IsNull() ? "Null" : value.AsText();
        const bool quoted = value.IsText();
        return testing::TypeName(type) + " " + (quoted ? "\"" + text + "\"" : text);
    } catch (const Error& error) {
        return "error " + testing::KindName(error.Kind());
    }
}

void MakeTable(ScratchDatabase& scratch)
{
    scratch.Run({
        "CREATE TABLE T (b YESNO, [by] BYTE, i SHORT, l LONG, c CURRENCY, s SINGLE, d DOUBLE, "
        "dt DATETIME, t TEXT(50), m MEMO, n DECIMAL(10,2), leeg TEXT(10), nul LONG, u TEXT(50), "
        "nulpunt DOUBLE)",
        "INSERT INTO T (b,[by],i,l,c,s,d,dt,t,m,n,u,nulpunt) VALUES (True,200,-7,100000,12.3456,"
        "0.5,2.5,#2001-02-03 04:05:06#,'Zuiderdijk','een lang verhaal',12.34,'Één dijk',0)",
    });
}

TEST(DialectTest, EveryExpressionOfTheTableGivesItsTypeAndValue)
{
    ScratchDatabase scratch;
    MakeTable(scratch);
    const std::vector<Case> cases = ReadCases();
    EXPECT_GE(cases.size(), 300U);
    for (const Case& one : cases) {
        EXPECT_EQ(Outcome(*scratch.db, one.expression), one.type + " " + one.value)
            << "line " << one.line << ": " << one.expression;
    }
}

TEST(DialectTest, LettersOfKeywordsAndNamesHaveNoCase)
{
    ScratchDatabase scratch;
    MakeTable(scratch);
    EXPECT_EQ(scratch.Rows("select D from t where L=100000 order by I desc"),
              std::vector<std::string>{"2.5"});
    EXPECT_EQ(scratch.Rows("SeLeCt [T].D As X fRoM [t]"), std::vector<std::string>{"2.5"});
}

TEST(DialectTest, LiteralsAndKeywordsMayMeetWithoutABlank)
{
    ScratchDatabase scratch;
    MakeTable(scratch);
    EXPECT_EQ(scratch.Rows("SELECT min(d)as min, max(d)as max FROM T WHERE i=-7AND d=2.5AND "
                           "t='Zuiderdijk'AND 1=1"),
              std::vector<std::string>{"2.5|2.5"});
}

TEST(DialectTest, ATextInDoubleQuotesIsNeverAColumn)
{
    ScratchDatabase scratch;
    MakeTable(scratch);
    EXPECT_EQ(scratch.Rows("SELECT \"d\", \"t\" FROM T"), std::vector<std::string>{"d|t"});
    EXPECT_TRUE(scratch.Rows("SELECT d FROM T WHERE t=\"t\"").empty());
}

TEST(DialectTest, ASemicolonAtTheEndMayBeThereOrNot)
{
    ScratchDatabase scratch;
    EXPECT_EQ(scratch.Rows("SELECT 1"), std::vector<std::string>{"1"});
    EXPECT_EQ(scratch.Rows("SELECT 1;"), std::vector<std::string>{"1"});
    EXPECT_EQ(scratch.Rows("SELECT 1 ; "), std::vector<std::string>{"1"});
    scratch.Refusal("SELECT 1; SELECT 2", ErrorKind::Syntax);
}

} // namespace
} // namespace jet
