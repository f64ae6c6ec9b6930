#include "jet_sql/ScratchDatabase.h"

#include <functional>
#include <optional>

namespace jet {
namespace {

using testing::RowText;
using testing::ScratchDatabase;
using Texts = std::vector<std::string>;

/// Five locations, an auto-number and a default.
struct Locaties : ScratchDatabase {
    Locaties()
    {
        Run({"CREATE TABLE Locatie (Locatie_ID COUNTER CONSTRAINT pk PRIMARY KEY, omschrijving "
             "TEXT(20), "
             "x DOUBLE DEFAULT -999, geld CURRENCY, precies DECIMAL(20,8))",
             "INSERT INTO Locatie (omschrijving,x) VALUES ('eerste',5)",
             "INSERT INTO Locatie (omschrijving,x) VALUES ('Tweede',4)",
             "INSERT INTO Locatie (omschrijving,x) VALUES ('derde',3)",
             "INSERT INTO Locatie (omschrijving,x) VALUES ('Vierde',2)",
             "INSERT INTO Locatie (omschrijving) VALUES ('vijfde')"});
    }
    std::unique_ptr<Recordset> Dynaset(std::string_view source = "SELECT * FROM Locatie")
    {
        return db->OpenRecordset(source, RecordsetType::Dynaset);
    }
    std::unique_ptr<Recordset> Snapshot(std::string_view source = "SELECT * FROM Locatie")
    {
        return db->OpenRecordset(source, RecordsetType::Snapshot);
    }
    static Texts Names(Recordset& rows)
    {
        Texts names;
        for (rows.MoveFirst(); !rows.EndOfFile(); rows.MoveNext())
            names.push_back(rows.Get("omschrijving").AsText());
        return names;
    }
};

std::optional<ErrorKind> KindOf(const std::function<void()>& body)
{
    try {
        body();
    } catch (const Error& error) {
        return error.Kind();
    }
    return std::nullopt;
}

class BothKinds : public ::testing::TestWithParam<RecordsetType> {};
INSTANTIATE_TEST_SUITE_P(DynasetAndSnapshot, BothKinds,
                         ::testing::Values(RecordsetType::Dynaset, RecordsetType::Snapshot));

TEST_P(BothKinds, OpensOnItsFirstRow)
{
    Locaties data;
    const auto rows = data.db->OpenRecordset("SELECT * FROM Locatie", GetParam());
    EXPECT_EQ(rows->Type(), GetParam());
    EXPECT_FALSE(rows->BOF());
    EXPECT_FALSE(rows->EndOfFile());
    EXPECT_EQ(rows->AbsolutePosition(), 0);
    EXPECT_EQ(rows->Get("OMSCHRIJVING").AsText(), "eerste");
}

TEST_P(BothKinds, AnEmptyOneStandsOnBothEndsAtPositionMinusOne)
{
    Locaties data;
    const auto rows = data.db->OpenRecordset("SELECT * FROM Locatie WHERE x=77", GetParam());
    EXPECT_TRUE(rows->BOF());
    EXPECT_TRUE(rows->EndOfFile());
    EXPECT_EQ(rows->AbsolutePosition(), -1);
    EXPECT_EQ(rows->RecordCount(), 0);
    EXPECT_EQ(KindOf([&] { rows->MoveFirst(); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { rows->MoveLast(); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { rows->MoveNext(); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::NoCurrentRow);
}

TEST_P(BothKinds, CountsTheRowsVisitedAndAllAfterTheLast)
{
    Locaties data;
    const auto rows = data.db->OpenRecordset("SELECT * FROM Locatie", GetParam());
    EXPECT_EQ(rows->RecordCount(), 1);
    rows->MoveNext();
    rows->MoveNext();
    EXPECT_EQ(rows->RecordCount(), 3);
    rows->MoveFirst();
    EXPECT_EQ(rows->RecordCount(), 3);
    rows->MoveLast();
    EXPECT_EQ(rows->RecordCount(), 5);
}

TEST_P(BothKinds, WalksForwardsAndBackwards)
{
    Locaties data;
    const auto rows = data.db->OpenRecordset("SELECT * FROM Locatie", GetParam());
    rows->MoveLast();
    EXPECT_EQ(rows->Get("omschrijving").AsText(), "vijfde");
    EXPECT_EQ(rows->AbsolutePosition(), 4);
    rows->MoveNext();
    EXPECT_TRUE(rows->EndOfFile());
    EXPECT_EQ(rows->AbsolutePosition(), -1);
    EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::NoCurrentRow);
    rows->MovePrevious();
    EXPECT_EQ(rows->AbsolutePosition(), 4);
    rows->Move(-3);
    EXPECT_EQ(rows->Get("omschrijving").AsText(), "Tweede");
    rows->Move(-9);
    EXPECT_TRUE(rows->BOF());
    EXPECT_EQ(KindOf([&] { rows->MovePrevious(); }), ErrorKind::NoCurrentRow);
    rows->MoveNext();
    EXPECT_EQ(rows->AbsolutePosition(), 0);
    rows->SetAbsolutePosition(3);
    EXPECT_EQ(rows->Get("omschrijving").AsText(), "Vierde");
    EXPECT_EQ(KindOf([&] { rows->SetAbsolutePosition(5); }), ErrorKind::NoCurrentRow);
}

TEST_P(BothKinds, FindsTheFirstAndTheNextRowByACriterion)
{
    Locaties data;
    const auto rows = data.db->OpenRecordset("SELECT * FROM Locatie", GetParam());
    rows->FindFirst("omschrijving=\"VIERDE\"");
    EXPECT_FALSE(rows->NoMatch());
    EXPECT_EQ(rows->AbsolutePosition(), 3);
    rows->FindFirst("x>3 AND omschrijving Like \"t*\"");
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    rows->FindFirst("[Locatie].[x]>=3");
    EXPECT_EQ(rows->AbsolutePosition(), 0);
    rows->FindNext("x>=3");
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    rows->FindFirst("omschrijving=\"onbekend\"");
    EXPECT_TRUE(rows->NoMatch());
    EXPECT_EQ(rows->AbsolutePosition(), 1) << "stays where it was";
    EXPECT_EQ(KindOf([&] { rows->FindFirst("onbekend=1"); }), ErrorKind::UnknownField);
    EXPECT_EQ(KindOf([&] { rows->FindFirst("omschrijving="); }), ErrorKind::Syntax);
}

TEST_P(BothKinds, FindsByACalculatedField)
{
    Locaties data;
    const auto rows =
        data.db->OpenRecordset("SELECT omschrijving, x*2 AS dubbel FROM Locatie", GetParam());
    rows->FindFirst("dubbel=6");
    EXPECT_EQ(rows->Get(0).AsText(), "derde");
    EXPECT_EQ(rows->Get("dubbel").AsDouble(), 6);
}

TEST_P(BothKinds, SortsWhenReopened)
{
    Locaties data;
    const auto rows = data.db->OpenRecordset("SELECT * FROM Locatie WHERE x>0", GetParam());
    rows->SetSort("omschrijving DESC");
    const auto sorted = rows->Reopen();
    EXPECT_EQ(Locaties::Names(*sorted), (Texts{"Vierde", "Tweede", "eerste", "derde"}));
    EXPECT_EQ(Locaties::Names(*rows), (Texts{"eerste", "Tweede", "derde", "Vierde"}));
    EXPECT_EQ(sorted->Type(), GetParam());
    rows->SetSort("[x]");
    EXPECT_EQ(rows->Reopen()->Get("x").AsDouble(), 2);
}

TEST_P(BothKinds, ATablesNameIsASourceToo)
{
    Locaties data;
    EXPECT_EQ(Locaties::Names(*data.db->OpenRecordset("locatie", GetParam())).size(), 5U);
}

TEST_P(BothKinds, EveryUseAfterTheDatabaseClosedIsRefused)
{
    Locaties data;
    const auto rows = data.db->OpenRecordset("SELECT * FROM Locatie", GetParam());
    data.db->Close();
    EXPECT_FALSE(rows->IsOpen());
    EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { rows->MoveNext(); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { rows->FindFirst("x=1"); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { rows->Requery(); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { rows->Edit(); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { (void)rows->Name(); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { data.db->Execute("DELETE * FROM Locatie"); }), ErrorKind::Closed);
}

TEST_P(BothKinds, EveryUseAfterItsOwnCloseIsRefused)
{
    Locaties data;
    const auto rows = data.db->OpenRecordset("SELECT * FROM Locatie", GetParam());
    rows->Close();
    rows->Close();
    EXPECT_EQ(KindOf([&] { rows->MoveFirst(); }), ErrorKind::Closed);
}

TEST(DynasetTest, ReadsRowsAsTheyAreNow)
{
    Locaties data;
    const auto rows = data.Dynaset();
    EXPECT_EQ(rows->Get("x").AsDouble(), 5);
    data.Run({"UPDATE Locatie SET x=55, omschrijving='een langere tekst' WHERE Locatie_ID=1"});
    EXPECT_EQ(rows->Get("x").AsDouble(), 55);
    EXPECT_EQ(rows->Get("omschrijving").AsText(), "een langere tekst");
}

TEST(DynasetTest, ARowDeletedBesideItIsMissedNotReadAsGarbage)
{
    Locaties data;
    const auto rows = data.Dynaset();
    rows->MoveNext();
    data.Run({"DELETE FROM Locatie WHERE Locatie_ID<=2",
              "INSERT INTO Locatie (omschrijving) VALUES ('nieuw')"});
    // The freed place may hold another row now; it is not the one that was read.
    const auto kind = KindOf([&] { EXPECT_NE(rows->Get("omschrijving").AsText(), "Tweede"); });
    EXPECT_TRUE(!kind || kind == ErrorKind::NoCurrentRow);
    rows->MoveNext();
    EXPECT_EQ(rows->Get("omschrijving").AsText(), "derde");
}

TEST(DynasetTest, SurvivesARollBack)
{
    Locaties data;
    data.workspace.BeginTrans();
    data.Run({"INSERT INTO Locatie (omschrijving) VALUES ('tijdelijk')"});
    const auto rows = data.Dynaset();
    rows->MoveLast();
    EXPECT_EQ(rows->Get("omschrijving").AsText(), "tijdelijk");
    data.workspace.Rollback();
    EXPECT_EQ(KindOf([&] { rows->Get("omschrijving"); }), ErrorKind::NoCurrentRow);
    rows->MovePrevious();
    EXPECT_EQ(rows->Get("omschrijving").AsText(), "vijfde");
}

TEST(DynasetTest, EditsItsRows)
{
    Locaties data;
    const auto rows = data.Dynaset("SELECT x, omschrijving FROM Locatie WHERE x<0");
    rows->Edit();
    rows->Set("x", 7);
    EXPECT_EQ(rows->Get("x").AsDouble(), 7);
    rows->CancelUpdate();
    EXPECT_EQ(rows->Get("x").AsDouble(), -999);
    rows->Edit();
    rows->Set("x", "8.5");
    rows->Update();
    EXPECT_EQ(rows->Get("x").AsDouble(), 8.5);
    EXPECT_EQ(data.Rows("SELECT x FROM Locatie WHERE Locatie_ID=5"), Texts{"8.5"});
    EXPECT_EQ(KindOf([&] { rows->Set("x", 1); }), ErrorKind::NoEdit);
    EXPECT_EQ(KindOf([&] { rows->Update(); }), ErrorKind::NoEdit);
}

TEST(DynasetTest, EditsEveryRowOfAWalk)
{
    Locaties data;
    const auto rows = data.Dynaset("SELECT * FROM Locatie WHERE x>0");
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        rows->Edit();
        rows->Set("omschrijving", "nieuwe naam");
        rows->Update();
    }
    EXPECT_EQ(data.One("SELECT Count(*) FROM Locatie WHERE omschrijving='nieuwe naam'").AsInt(), 4);
}

TEST(DynasetTest, AddsRowsFromTheDefaults)
{
    Locaties data;
    const auto rows = data.Dynaset("Locatie");
    rows->AddNew();
    EXPECT_EQ(rows->Get("x").AsDouble(), -999);
    EXPECT_TRUE(rows->Get("omschrijving").IsNull());
    rows->Set("omschrijving", "zesde");
    rows->Update();
    EXPECT_EQ(rows->Get("omschrijving").AsText(), "eerste") << "the current row stays";
    rows->MoveToLastModified();
    EXPECT_EQ(rows->Get("Locatie_ID").AsInt(), 6);
    EXPECT_EQ(rows->Get("x").AsDouble(), -999);
    rows->MoveLast();
    EXPECT_EQ(rows->RecordCount(), 6);
}

TEST(DynasetTest, AddsToAnEmptyTable)
{
    Locaties data;
    data.Run({"DELETE FROM Locatie"});
    const auto rows = data.Dynaset("Locatie");
    rows->AddNew();
    rows->Set("omschrijving", "enige");
    rows->Update();
    rows->MoveFirst();
    EXPECT_EQ(rows->Get("omschrijving").AsText(), "enige");
}

TEST(DynasetTest, DeletesRowAfterRow)
{
    Locaties data;
    const auto rows = data.Dynaset("SELECT * FROM Locatie WHERE x>2");
    int deleted = 0;
    while (!rows->EndOfFile()) {
        rows->Delete();
        EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::NoCurrentRow);
        rows->MoveNext();
        ++deleted;
    }
    EXPECT_EQ(deleted, 3);
    EXPECT_EQ(data.Rows("SELECT omschrijving FROM Locatie"), (Texts{"Vierde", "vijfde"}));
}

TEST(DynasetTest, CalculatedFieldsFollowTheRowAndCannotBeSet)
{
    Locaties data;
    const auto rows = data.Dynaset("SELECT x, x*10 AS tien FROM Locatie");
    EXPECT_TRUE(rows->Updatable());
    rows->Edit();
    EXPECT_EQ(KindOf([&] { rows->Set("tien", 1); }), ErrorKind::ReadOnly);
    rows->Set("x", 6);
    rows->Update();
    EXPECT_EQ(rows->Get("tien").AsDouble(), 60);
}

TEST(DynasetTest, JoinsTotalsAndDistinctOnesAreNotEdited)
{
    Locaties data;
    for (const char* source :
         {"SELECT a.x FROM Locatie AS a INNER JOIN Locatie AS b ON a.Locatie_ID=b.Locatie_ID",
          "SELECT Count(*) FROM Locatie", "SELECT DISTINCT x FROM Locatie",
          "SELECT x FROM Locatie UNION SELECT 1 FROM Locatie"}) {
        const auto rows = data.Dynaset(source);
        EXPECT_FALSE(rows->Updatable()) << source;
        EXPECT_EQ(KindOf([&] { rows->Edit(); }), ErrorKind::NotSupported) << source;
    }
}

TEST(DynasetTest, ReadOnlyIsNotEdited)
{
    Locaties data;
    const auto rows = data.db->OpenRecordset("Locatie", RecordsetType::Dynaset, {.readOnly = true});
    EXPECT_FALSE(rows->Updatable());
    EXPECT_EQ(KindOf([&] { rows->Edit(); }), ErrorKind::ReadOnly);
    EXPECT_EQ(KindOf([&] { rows->AddNew(); }), ErrorKind::ReadOnly);
    EXPECT_EQ(KindOf([&] { rows->Delete(); }), ErrorKind::ReadOnly);
}

TEST(DynasetTest, ItsTableCannotBeDroppedMeanwhile)
{
    Locaties data;
    auto rows = data.Dynaset();
    EXPECT_EQ(KindOf([&] { data.db->Execute("DROP TABLE Locatie"); }), ErrorKind::InUse);
    rows.reset();
    data.db->Execute("DROP TABLE Locatie");
    EXPECT_FALSE(data.db->HasTable("Locatie"));
}

TEST(SnapshotTest, KeepsItsRowsAsTheyWere)
{
    Locaties data;
    const auto rows = data.Snapshot();
    data.Run(
        {"UPDATE Locatie SET omschrijving='anders'", "DELETE FROM Locatie WHERE Locatie_ID>2"});
    EXPECT_EQ(Locaties::Names(*rows), (Texts{"eerste", "Tweede", "derde", "Vierde", "vijfde"}));
    rows->Requery();
    EXPECT_EQ(Locaties::Names(*rows), (Texts{"anders", "anders"}));
    EXPECT_EQ(KindOf([&] { rows->Edit(); }), ErrorKind::NotSupported);
}

TEST(SnapshotTest, ItsTableMayBeDroppedMeanwhile)
{
    Locaties data;
    const auto rows = data.Snapshot();
    data.Run({"DROP TABLE Locatie"});
    EXPECT_EQ(Locaties::Names(*rows).size(), 5U);
    EXPECT_EQ(KindOf([&] { rows->Requery(); }), ErrorKind::UnknownTable);
}

TEST(ForwardOnlyTest, GoesOnceFromTheFirstRowToTheLast)
{
    Locaties data;
    const auto rows =
        data.db->OpenRecordset("SELECT omschrijving FROM Locatie", RecordsetType::Snapshot,
                               {.readOnly = true, .forwardOnly = true});
    Texts names;
    for (; !rows->EndOfFile(); rows->MoveNext())
        names.push_back(RowText(*rows));
    EXPECT_EQ(names, (Texts{"eerste", "Tweede", "derde", "Vierde", "vijfde"}));
    EXPECT_EQ(rows->RecordCount(), 5);
    EXPECT_EQ(KindOf([&] { rows->MovePrevious(); }), ErrorKind::NotSupported);
    EXPECT_EQ(KindOf([&] { rows->FindFirst("omschrijving='derde'"); }), ErrorKind::NotSupported);
    EXPECT_EQ(KindOf([&] { rows->MoveNext(); }), ErrorKind::NoCurrentRow);
}

TEST(ForwardOnlyTest, BearsChangesBesideIt)
{
    Locaties data;
    const auto rows =
        data.db->OpenRecordset("SELECT omschrijving FROM Locatie", RecordsetType::Dynaset,
                               {.readOnly = true, .forwardOnly = true});
    rows->MoveNext();
    data.Run({"DELETE FROM Locatie WHERE Locatie_ID>3"});
    Texts names;
    for (; !rows->EndOfFile(); rows->MoveNext())
        names.push_back(RowText(*rows));
    EXPECT_EQ(names, (Texts{"Tweede", "derde"}));
}

TEST(ForwardOnlyTest, EndsWithTheDatabase)
{
    Locaties data;
    const auto rows =
        data.db->OpenRecordset("SELECT omschrijving FROM Locatie", RecordsetType::Snapshot,
                               {.readOnly = true, .forwardOnly = true});
    data.db->Close();
    EXPECT_EQ(KindOf([&] { rows->MoveNext(); }), ErrorKind::Closed);
}

TEST(FieldsTest, ResultsTellTheirTypesAndSizes)
{
    Locaties data;
    const auto rows =
        data.Snapshot("SELECT omschrijving, x AS breedte, Count(*) AS aantal, Max(geld) AS meest "
                      "FROM Locatie GROUP BY omschrijving, x");
    const std::vector<FieldDef>& fields = rows->Fields();
    EXPECT_EQ(fields[0].type, ColumnType::Text);
    EXPECT_EQ(fields[0].size, 20);
    EXPECT_EQ(fields[1].name, "breedte");
    EXPECT_EQ(fields[1].type, ColumnType::Double);
    EXPECT_EQ(fields[2].type, ColumnType::Long);
    EXPECT_EQ(fields[3].type, ColumnType::Currency);
    EXPECT_EQ(rows->FieldIndex("AANTAL"), 2);
    EXPECT_EQ(rows->FieldIndex("Locatie.omschrijving"), 0);
    EXPECT_EQ(KindOf([&] { (void)rows->FieldIndex("weg"); }), ErrorKind::UnknownField);
    EXPECT_EQ(KindOf([&] { rows->Get(9); }), ErrorKind::UnknownField);
}

TEST(FieldsTest, MoneyAndDecimalsComeOutInFull)
{
    Locaties data;
    data.Run({"UPDATE Locatie SET precies='123456789012.12345678' WHERE Locatie_ID=1"});
    const auto edit = data.Dynaset();
    edit->Edit();
    edit->Set("geld", Currency{9'007'199'254'740'993});
    edit->Update();
    for (const RecordsetType type : {RecordsetType::Snapshot, RecordsetType::Dynaset}) {
        const auto rows = data.db->OpenRecordset("SELECT geld, precies FROM Locatie", type);
        EXPECT_EQ(RowText(*rows), "900719925474.0993|123456789012.12345678");
    }
}

TEST(FieldsTest, FieldsOfOneNameBearTheirTable)
{
    Locaties data;
    const auto rows =
        data.Snapshot("SELECT a.*, b.Locatie_ID FROM Locatie AS a INNER JOIN Locatie AS b ON "
                      "a.Locatie_ID=b.Locatie_ID");
    EXPECT_EQ(rows->Fields()[0].name, "a.Locatie_ID");
    EXPECT_EQ(rows->Fields()[1].name, "omschrijving");
    EXPECT_EQ(rows->Fields().back().name, "b.Locatie_ID");
    EXPECT_EQ(data.ScratchDatabase::Names("SELECT 1, x+1, Count(*) AS n FROM Locatie GROUP BY x"),
              "Expr1000|Expr1001|n");
}

} // namespace
} // namespace jet
