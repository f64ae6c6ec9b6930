#include "jet_sql/ScratchDatabase.h"

#include <algorithm>
#include <chrono>
#include <functional>

// Which rows a statement reads: indexes, hashes, and what must not go wrong
// with them.
namespace jet {
namespace {

using testing::ScratchDatabase;
using Texts = std::vector<std::string>;

double Seconds(const std::function<void()>& body)
{
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Fill(ScratchDatabase& data, const std::string& table, int rows)
{
    data.workspace.BeginTrans();
    const auto records = data.db->OpenRecordset(table, RecordsetType::Table);
    for (int i = 0; i < rows; ++i) {
        records->AddNew();
        records->Set("k", i);
        records->Set("t", "Tekst " + std::to_string(i));
        records->Update();
    }
    records->Close();
    data.workspace.CommitTrans();
}

// A nested loop over these would take minutes.
TEST(AccessTest, JoinsOnUnindexedFieldsAreNotQuadratic)
{
    ScratchDatabase data;
    data.Run({"CREATE TABLE A (k LONG, t TEXT(30))", "CREATE TABLE B (k LONG, t TEXT(30))"});
    Fill(data, "A", 30000);
    Fill(data, "B", 30000);
    const double limit = 10;
    EXPECT_LT(Seconds([&] {
                  EXPECT_EQ(data.One("SELECT Count(*) FROM A INNER JOIN B ON A.k=B.k").AsInt(),
                            30000);
              }),
              limit);
    EXPECT_LT(Seconds([&] {
                  EXPECT_EQ(data.One("SELECT Count(*) FROM A INNER JOIN B ON A.t=B.t").AsInt(),
                            30000);
              }),
              limit);
    EXPECT_LT(
        Seconds([&] {
            EXPECT_EQ(
                data.One("SELECT Count(*) FROM A LEFT JOIN B ON A.k=B.k+0 WHERE A.k<0").AsInt(), 0);
        }),
        limit);
    EXPECT_LT(Seconds([&] {
                  EXPECT_EQ(data.One("SELECT Count(*) FROM A RIGHT JOIN B ON A.k=B.k").AsInt(),
                            30000);
              }),
              limit);
    EXPECT_LT(
        Seconds([&] {
            EXPECT_EQ(
                data.One("SELECT Count(*) FROM A WHERE (SELECT Max(B.k) FROM B WHERE B.k=A.k)=A.k")
                    .AsInt(),
                30000);
        }),
        limit);
    EXPECT_LT(
        Seconds([&] {
            EXPECT_EQ(
                data.One("SELECT Count(*) FROM A WHERE Exists (SELECT * FROM B WHERE B.t=A.t)")
                    .AsInt(),
                30000);
        }),
        limit);
    EXPECT_LT(Seconds([&] {
                  EXPECT_EQ(
                      data.One("SELECT Count(*) FROM A WHERE A.k IN (SELECT B.k FROM B)").AsInt(),
                      30000);
              }),
              limit);
}

TEST(AccessTest, AnIndexAnswersWithTheSameRowsAsAScan)
{
    ScratchDatabase data;
    data.Run({"CREATE TABLE Met (k LONG, t TEXT(30), d DOUBLE)",
              "CREATE TABLE Zonder (k LONG, t TEXT(30), d DOUBLE)", "CREATE INDEX ik ON Met (k)",
              "CREATE INDEX itd ON Met (t, d DESC)", "CREATE INDEX id ON Met (d)"});
    for (const std::string table : {"Met", "Zonder"}) {
        for (int i = 0; i < 300; ++i)
            data.db->Execute("INSERT INTO " + table + " VALUES (" + std::to_string(i % 40 - 5) +
                             ",'" + (i % 3 == 0 ? "Kade " : "kade ") + std::to_string(i % 7) +
                             "'," + std::to_string(i % 11 - 5) + (i % 2 == 0 ? ".5" : "") + ")");
        data.db->Execute("INSERT INTO " + table + " (k) VALUES (3)");
        data.db->Execute("INSERT INTO " + table + " (t) VALUES ('kade 1')");
    }
    for (const std::string where : {"k=3",
                                    "k=3.5",
                                    "k=99999999999",
                                    "k>30",
                                    "k>=30.5",
                                    "k<-3",
                                    "k<=-3.5",
                                    "k>3 AND k<6",
                                    "k Between 2 And 4",
                                    "k=Null",
                                    "k Is Null",
                                    "k>Null",
                                    "t='KADE 1'",
                                    "t='kade 1' AND d>0",
                                    "t='kade 1' AND d<=0.5",
                                    "t>'kade 5'",
                                    "t<'kade 1'",
                                    "d=0",
                                    "d=-0.5",
                                    "d>=0",
                                    "d<0",
                                    "d>0",
                                    "d<=0",
                                    "k IN (1,2,3)",
                                    "t IN ('Kade 1','KADE 2')",
                                    "k=3 AND t='kade 1'",
                                    "k=3 OR k=4",
                                    "t='漢字'",
                                    "t>'漢字'",
                                    "k=True"}) {
        Texts with = data.Rows("SELECT * FROM Met WHERE " + where);
        Texts without = data.Rows("SELECT * FROM Zonder WHERE " + where);
        std::sort(with.begin(), with.end());
        std::sort(without.begin(), without.end());
        EXPECT_EQ(with, without) << where;
    }
}

TEST(AccessTest, AHashIsNotUsedForRowsThatChangedSince)
{
    ScratchDatabase data;
    data.Run({"CREATE TABLE A (k LONG, t TEXT(30))"});
    Fill(data, "A", 100);
    for (int i = 0; i < 20; ++i) { // the second look-up makes a hash
        EXPECT_EQ(data.Rows("SELECT t FROM A WHERE k=50").size(), 1U);
        data.Run({"UPDATE A SET k=50 WHERE k=" + std::to_string(i)});
        EXPECT_EQ(data.Rows("SELECT t FROM A WHERE k=50").size(), 2U);
        EXPECT_EQ(data.Rows("SELECT t FROM A WHERE k=50").size(), 2U);
        data.Run(
            {"UPDATE A SET k=" + std::to_string(i) + " WHERE t='tekst " + std::to_string(i) + "'"});
    }
}

TEST(AccessTest, ARollBackIsSeenByHashesAndIndexes)
{
    ScratchDatabase data;
    data.Run({"CREATE TABLE A (k LONG, t TEXT(30))", "CREATE INDEX i ON A (t)"});
    Fill(data, "A", 50);
    for (int i = 0; i < 5; ++i) {
        data.workspace.BeginTrans();
        data.Run({"DELETE FROM A WHERE k<40"});
        EXPECT_EQ(data.Rows("SELECT * FROM A WHERE k=3").size(), 0U);
        EXPECT_EQ(data.Rows("SELECT * FROM A WHERE k=3").size(), 0U);
        EXPECT_EQ(data.Rows("SELECT * FROM A WHERE t='tekst 3'").size(), 0U);
        data.workspace.Rollback();
        EXPECT_EQ(data.Rows("SELECT * FROM A WHERE k=3").size(), 1U);
        EXPECT_EQ(data.Rows("SELECT * FROM A WHERE k=3").size(), 1U);
        EXPECT_EQ(data.Rows("SELECT * FROM A WHERE t='tekst 3'").size(), 1U);
    }
}

TEST(AccessTest, ATableThatIsDroppedAndMadeAgainIsANewOne)
{
    ScratchDatabase data;
    for (int i = 0; i < 10; ++i) {
        const std::string fields =
            i % 2 == 0 ? "(k LONG, t TEXT(30))" : "(t TEXT(30), k LONG, extra DOUBLE)";
        data.Run({"CREATE TABLE A " + fields, "INSERT INTO A (k,t) VALUES (1,'een')"});
        EXPECT_EQ(data.Rows("SELECT k, t FROM A WHERE k=1"), Texts{"1|een"});
        data.Run({"ALTER TABLE A ADD COLUMN nieuw LONG"});
        EXPECT_EQ(data.Rows("SELECT nieuw FROM A WHERE k=1"), Texts{"null"});
        data.Run({"DROP TABLE A"});
        data.Refusal("SELECT k FROM A", ErrorKind::UnknownTable);
    }
}

TEST(AccessTest, ASchemaChangeThatIsRolledBackIsForgotten)
{
    ScratchDatabase data;
    data.Run({"CREATE TABLE A (k LONG)", "INSERT INTO A VALUES (1)"});
    data.workspace.BeginTrans();
    data.Run(
        {"ALTER TABLE A ADD COLUMN t TEXT(10)", "UPDATE A SET t='een'", "CREATE TABLE B (x LONG)"});
    EXPECT_EQ(data.Rows("SELECT * FROM A"), Texts{"1|een"});
    data.workspace.Rollback();
    EXPECT_EQ(data.Rows("SELECT * FROM A"), Texts{"1"});
    data.Refusal("SELECT t FROM A", ErrorKind::UnknownField);
    data.Refusal("SELECT x FROM B", ErrorKind::UnknownTable);
}

TEST(AccessTest, TopGivesTheRowsThatTieWithTheLast)
{
    ScratchDatabase data;
    data.Run({"CREATE TABLE A (k LONG, t TEXT(10))", "INSERT INTO A VALUES (1,'a')",
              "INSERT INTO A VALUES (2,'B')", "INSERT INTO A VALUES (3,'b')",
              "INSERT INTO A VALUES (4,'c')"});
    EXPECT_EQ(data.Rows("SELECT TOP 2 k FROM A ORDER BY t").size(), 3U);
    EXPECT_EQ(data.Rows("SELECT TOP 2 k FROM A ORDER BY t DESC").size(), 3U);
    EXPECT_EQ(data.Rows("SELECT TOP 2 k FROM A ORDER BY k"), (Texts{"1", "2"}));
    EXPECT_EQ(data.Rows("SELECT TOP 2 k FROM A").size(), 2U);
    EXPECT_EQ(data.Rows("SELECT TOP 50 PERCENT k FROM A ORDER BY k DESC"), (Texts{"4", "3"}));
    EXPECT_EQ(data.Rows("SELECT DISTINCT TOP 2 t FROM A ORDER BY t").size(), 2U);
    EXPECT_EQ(data.Rows("SELECT TOP 1 t, Count(*) FROM A GROUP BY t ORDER BY Count(*) DESC").size(),
              1U);
    EXPECT_EQ(data.Rows("SELECT k FROM A WHERE k IN (SELECT TOP 1 k FROM A ORDER BY k DESC)"),
              Texts{"4"});
}

TEST(AccessTest, TextsCompareInOneOrderEverywhere)
{
    ScratchDatabase data;
    data.Run({"CREATE TABLE A (t TEXT(10))", "INSERT INTO A VALUES ('b')",
              "INSERT INTO A VALUES ('A')", "INSERT INTO A VALUES ('a')",
              "INSERT INTO A VALUES ('é')", "INSERT INTO A VALUES ('E')",
              "INSERT INTO A VALUES ('f')"});
    EXPECT_EQ(data.Rows("SELECT DISTINCT t & '' FROM A").size(), 5U);
    EXPECT_EQ(
        data.Rows("SELECT IIf(True,t,'') AS u, Count(*) FROM A GROUP BY IIf(True,t,'')").size(),
        5U);
    EXPECT_EQ(data.Rows("SELECT t FROM A WHERE t & ''='A'").size(), 2U);
    EXPECT_EQ(data.One("SELECT Max(t & '') FROM A").AsText(), "f");
    EXPECT_EQ(data.Rows("SELECT t FROM A WHERE t>='e' AND t<'f' ORDER BY t"), (Texts{"E", "é"}));
    EXPECT_EQ(data.Rows("SELECT Count(*) FROM A AS x INNER JOIN A AS y ON x.t=y.t"), Texts{"8"});
    EXPECT_EQ(data.Rows("SELECT t FROM A WHERE 'a' IN (SELECT t FROM A)").size(), 6U);
    EXPECT_EQ(data.Rows("SELECT t FROM A UNION SELECT 'B' FROM A").size(), 5U);
}

TEST(AccessTest, AnUpdateThroughAJoin)
{
    ScratchDatabase data;
    data.Run({"CREATE TABLE A (k LONG, t TEXT(10))", "CREATE TABLE B (k LONG, t TEXT(10))",
              "INSERT INTO A VALUES (1,'a')", "INSERT INTO A VALUES (2,'b')",
              "INSERT INTO B VALUES (1,'x')"});
    EXPECT_EQ(data.db->Execute("UPDATE A INNER JOIN B ON A.k=B.k SET A.t=B.t, B.t='gezien'"), 1);
    EXPECT_EQ(data.Rows("SELECT * FROM A"), (Texts{"1|x", "2|b"}));
    EXPECT_EQ(data.Rows("SELECT * FROM B"), Texts{"1|gezien"});
    EXPECT_EQ(data.db->Execute("UPDATE A LEFT JOIN B ON A.k=B.k SET B.t='links' WHERE B.k Is Null"),
              0);
    EXPECT_EQ(data.db->Execute("DELETE A.* FROM A INNER JOIN B ON A.k=B.k"), 1);
    EXPECT_EQ(data.Rows("SELECT k FROM A"), Texts{"2"});
}

TEST(AccessTest, MoneyAndChangesInsideJoinsInParentheses)
{
    ScratchDatabase data;
    data.Run({"CREATE TABLE A (k LONG)", "CREATE TABLE B (k LONG, g CURRENCY)",
              "CREATE TABLE C (k LONG, g DECIMAL(10,3))", "INSERT INTO A VALUES (1)",
              "INSERT INTO A VALUES (2)", "INSERT INTO B VALUES (1,1.25)",
              "INSERT INTO C VALUES (1,2.125)"});
    const std::string from = "A LEFT JOIN (B INNER JOIN C ON B.k=C.k) ON A.k=B.k";
    EXPECT_EQ(data.Rows("SELECT A.k, B.g, C.g FROM " + from),
              (Texts{"1|1.25|2.125", "2|null|null"}));
    EXPECT_EQ(data.db->Execute("UPDATE " + from + " SET B.g=5, C.g=6"), 1);
    EXPECT_EQ(data.Rows("SELECT B.g, C.g FROM B, C"), Texts{"5|6"});
    EXPECT_EQ(data.db->Execute("DELETE C.* FROM " + from), 1);
    EXPECT_EQ(data.Rows("SELECT * FROM C"), Texts{});
}

} // namespace
} // namespace jet
