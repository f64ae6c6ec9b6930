#include "MemoryFileSystem.h"
#include "jet/base/Error.h"
#include "jet/dao/Workspace.h"

#include <gtest/gtest.h>

namespace {

using jet::ColumnType;
using jet::ErrorKind;
using jet::RecordsetType;
using jet::Value;

template <typename Action>
ErrorKind KindOf(Action&& action)
{
    try {
        action();
    } catch (const jet::Error& error) {
        return error.Kind();
    }
    ADD_FAILURE() << "no error was thrown";
    return ErrorKind::Query;
}

class TableRecordsetTest : public testing::Test {
protected:
    TableRecordsetTest() : database(workspace.CreateDatabase("boezem.mdb"))
    {
        database->CreateTable(
            {.name = "Locatie",
             .fields = {{.name = "Locatie_ID", .type = ColumnType::Long, .autoNumber = true},
                        {.name = "omschrijving", .type = ColumnType::Text, .size = 20},
                        {.name = "x", .type = ColumnType::Double, .defaultValue = "-999"},
                        {.name = "klasse",
                         .type = ColumnType::Integer,
                         .required = true,
                         .defaultValue = "3"},
                        {.name = "opmerking", .type = ColumnType::Memo, .allowZeroLength = false}},
             .indexes = {{.name = "PrimaryKey", .fields = {{"Locatie_ID"}}, .primary = true},
                         {.name = "Klasse", .fields = {{"klasse", true}, {"omschrijving"}}},
                         {.name = "X", .fields = {{"x"}}},
                         {.name = "Naam", .fields = {{"omschrijving"}}, .unique = true}}});
    }

    void Add(const char* name, double x, int klasse = 3)
    {
        const auto rows = database->OpenRecordset("Locatie");
        rows->AddNew();
        rows->Set("omschrijving", name);
        rows->Set("x", x);
        rows->Set("klasse", klasse);
        rows->Update();
    }

    void AddSome()
    {
        Add("delta", 4, 2);
        Add("alfa", 1, 1);
        Add("echo", 5, 1);
        Add("bravo", 2, 2);
        Add("Charlie", 3, 1);
    }

    std::string Walk(jet::Recordset& rows, bool backwards = false)
    {
        std::string names;
        if (backwards)
            rows.MoveLast();
        else
            rows.MoveFirst();
        while (backwards ? !rows.BOF() : !rows.EndOfFile()) {
            names += rows.Get("omschrijving").AsTextOr("-").substr(0, 1);
            if (backwards)
                rows.MovePrevious();
            else
                rows.MoveNext();
        }
        return names;
    }

    jet_testing::MemoryFileSystem files;
    jet::Workspace workspace{files};
    std::unique_ptr<jet::Database> database;
};

TEST_F(TableRecordsetTest, StandsOnBothEndsWhenEmpty)
{
    const auto rows = database->OpenRecordset("Locatie");
    EXPECT_EQ(rows->Type(), RecordsetType::Table);
    EXPECT_TRUE(rows->BOF());
    EXPECT_TRUE(rows->EndOfFile());
    EXPECT_EQ(rows->RecordCount(), 0);
    EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { rows->MoveFirst(); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { rows->MoveLast(); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { rows->MoveNext(); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { rows->MovePrevious(); }), ErrorKind::NoCurrentRow);
    EXPECT_TRUE(rows->EndOfFile());
    Add("alfa", 1);
    rows->MoveFirst();
    EXPECT_EQ(rows->Get("x"), Value(1.0));
}

TEST_F(TableRecordsetTest, WalksInTheOrderOfThePagesBothWays)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    EXPECT_FALSE(rows->BOF());
    EXPECT_FALSE(rows->EndOfFile());
    EXPECT_EQ(rows->RecordCount(), 5);
    EXPECT_EQ(Walk(*rows), "daebC");
    EXPECT_EQ(Walk(*rows, true), "Cbead");
    EXPECT_TRUE(rows->BOF());
    EXPECT_FALSE(rows->EndOfFile());
}

TEST_F(TableRecordsetTest, WalksInTheOrderOfAnIndexBothWays)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->SetIndex("naam");
    EXPECT_EQ(Walk(*rows), "abCde");
    EXPECT_EQ(Walk(*rows, true), "edCba");
    rows->SetIndex("Klasse");
    EXPECT_EQ(Walk(*rows), "bdaCe");
    EXPECT_EQ(Walk(*rows, true), "eCadb");
    rows->SetIndex("");
    EXPECT_EQ(Walk(*rows), "daebC");
    EXPECT_EQ(KindOf([&] { rows->SetIndex("geen"); }), ErrorKind::UnknownIndex);
}

TEST_F(TableRecordsetTest, TurnsAroundInTheMiddle)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    for (const char* index : {"", "Naam"}) {
        rows->SetIndex(index);
        const std::string order = Walk(*rows);
        rows->MoveFirst();
        std::string seen;
        const auto note = [&] { seen += rows->Get("omschrijving").AsText().substr(0, 1); };
        rows->MoveNext();
        rows->MoveNext();
        note();
        rows->MovePrevious();
        note();
        rows->MoveNext();
        note();
        rows->MoveNext();
        note();
        EXPECT_EQ(seen, (std::string{order[2], order[1], order[2], order[3]})) << index;
    }
}

TEST_F(TableRecordsetTest, GoesOffBothEndsAndBack)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->MovePrevious();
    EXPECT_TRUE(rows->BOF());
    EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { rows->MovePrevious(); }), ErrorKind::NoCurrentRow);
    rows->MoveNext();
    EXPECT_EQ(rows->Get("omschrijving"), Value("delta"));
    rows->MoveLast();
    rows->MoveNext();
    EXPECT_TRUE(rows->EndOfFile());
    EXPECT_EQ(KindOf([&] { rows->MoveNext(); }), ErrorKind::NoCurrentRow);
    rows->MovePrevious();
    EXPECT_EQ(rows->Get("omschrijving"), Value("Charlie"));
}

TEST_F(TableRecordsetTest, MovesSeveralRowsAtOnce)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->Move(3);
    EXPECT_EQ(rows->Get("omschrijving"), Value("bravo"));
    rows->Move(-2);
    EXPECT_EQ(rows->Get("omschrijving"), Value("alfa"));
    rows->Move(0);
    rows->Move(99);
    EXPECT_TRUE(rows->EndOfFile());
    rows->Move(-99);
    EXPECT_TRUE(rows->BOF());
}

TEST_F(TableRecordsetTest, GivesAWholeRowAsFieldByField)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    const auto expectWhole = [&] {
        std::vector<Value> row;
        rows->GetRow(row);
        ASSERT_EQ(row.size(), 5u);
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(row[static_cast<std::size_t>(i)], rows->Get(i));
    };
    expectWhole();
    rows->SetIndex("Naam");
    rows->MoveNext();
    expectWhole();
    rows->Edit();
    rows->Set("x", 12);
    expectWhole();
    rows->CancelUpdate();
    rows->Delete();
    std::vector<Value> row;
    EXPECT_EQ(KindOf([&] { rows->GetRow(row); }), ErrorKind::NoCurrentRow);
}

TEST_F(TableRecordsetTest, FindsFieldsWithoutRegardToCase)
{
    AddSome();
    const auto rows = database->OpenRecordset("LOCATIE");
    EXPECT_EQ(rows->Name(), "Locatie");
    EXPECT_EQ(rows->FieldIndex("LOCATIE_id"), 0);
    EXPECT_EQ(rows->Get("OMSCHRIJVING"), rows->Get(1));
    EXPECT_EQ(KindOf([&] { rows->FieldIndex("y"); }), ErrorKind::UnknownField);
    EXPECT_EQ(KindOf([&] { rows->Get(-1); }), ErrorKind::UnknownField);
    EXPECT_EQ(KindOf([&] { rows->Get(5); }), ErrorKind::UnknownField);
    ASSERT_EQ(rows->Fields().size(), 5u);
    EXPECT_EQ(rows->Fields()[1].size, 20);
    EXPECT_TRUE(rows->Fields()[0].autoNumber);
    EXPECT_TRUE(rows->Fields()[3].required);
    EXPECT_FALSE(rows->Fields()[4].allowZeroLength);
}

TEST_F(TableRecordsetTest, ANewRowBeginsWithDefaultsAndItsNumber)
{
    const auto rows = database->OpenRecordset("Locatie");
    rows->AddNew();
    EXPECT_EQ(rows->Get("Locatie_ID"), Value(1));
    EXPECT_EQ(rows->Get("x"), Value(-999.0));
    EXPECT_EQ(rows->Get("klasse"), Value(std::int16_t{3}));
    EXPECT_TRUE(rows->Get("omschrijving").IsNull());
    rows->Update();
    EXPECT_EQ(rows->RecordCount(), 1);
    EXPECT_TRUE(rows->EndOfFile()) << "the current row stays what it was";
    rows->MoveToLastModified();
    EXPECT_EQ(rows->Get("Locatie_ID"), Value(1));
    EXPECT_EQ(rows->Get("x"), Value(-999.0));
}

TEST_F(TableRecordsetTest, GivesNoNumberTwiceToTwoRecordsets)
{
    const auto a = database->OpenRecordset("Locatie");
    const auto b = database->OpenRecordset("Locatie");
    a->AddNew();
    b->AddNew();
    a->Set("omschrijving", "a");
    b->Set("omschrijving", "b");
    a->Update();
    b->Update();
    a->MoveToLastModified();
    b->MoveToLastModified();
    EXPECT_EQ(a->Get(0), Value(1));
    EXPECT_EQ(b->Get(0), Value(2));
}

TEST_F(TableRecordsetTest, TakesAGivenNumber)
{
    const auto rows = database->OpenRecordset("Locatie");
    rows->AddNew();
    rows->Set(0, 40);
    rows->Update();
    rows->AddNew();
    rows->Update();
    rows->MoveToLastModified();
    EXPECT_EQ(rows->Get(0), Value(41));
}

TEST_F(TableRecordsetTest, AddingLeavesTheCurrentRow)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->MoveNext();
    rows->AddNew();
    rows->Set("omschrijving", "zulu");
    rows->Update();
    EXPECT_EQ(rows->Get("omschrijving"), Value("alfa"));
    rows->MoveNext();
    EXPECT_EQ(rows->Get("omschrijving"), Value("echo"));
}

TEST_F(TableRecordsetTest, EditsTheCurrentRow)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->SetIndex("PrimaryKey");
    rows->Seek("=", {Value(3)});
    rows->Edit();
    rows->Set("x", 77);
    EXPECT_EQ(rows->Get("x"), Value(77.0)) << "the row being made";
    EXPECT_EQ(database->OpenRecordset("Locatie")->Get("x"), Value(4.0));
    rows->Update();
    EXPECT_EQ(rows->Get("x"), Value(77.0));
    rows->MoveFirst();
    rows->MoveToLastModified();
    EXPECT_EQ(rows->Get("omschrijving"), Value("echo"));
}

TEST_F(TableRecordsetTest, CancelsAnEdit)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->Edit();
    rows->Set("x", 77);
    rows->CancelUpdate();
    EXPECT_EQ(rows->Get("x"), Value(4.0));
    EXPECT_EQ(KindOf([&] { rows->Update(); }), ErrorKind::NoEdit);
    EXPECT_EQ(KindOf([&] { rows->Set("x", 1); }), ErrorKind::NoEdit);
    rows->Edit();
    rows->Set("x", 78);
    rows->MoveNext(); // a move gives the edit up
    rows->MoveFirst();
    EXPECT_EQ(rows->Get("x"), Value(4.0));
}

TEST_F(TableRecordsetTest, AMoveAlongTheIndexSurvivesAChangeOfItsKey)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->SetIndex("X");
    int steps = 0;
    for (rows->MoveFirst(); !rows->EndOfFile() && steps < 50; rows->MoveNext(), ++steps) {
        rows->Edit();
        rows->Set("x", rows->Get("x").AsDouble() - 100);
        rows->Update();
    }
    EXPECT_EQ(steps, 5) << "the walk goes on from where the row stood";
    EXPECT_EQ(Walk(*rows), "abCde");
}

TEST_F(TableRecordsetTest, RefusesRowsThatBreakARuleAndGoesOn)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->AddNew();
    rows->Set("omschrijving", "ALFA");
    EXPECT_EQ(KindOf([&] { rows->Update(); }), ErrorKind::Duplicate);
    rows->Set("omschrijving", std::string(21, 'x'));
    EXPECT_EQ(KindOf([&] { rows->Update(); }), ErrorKind::TooLong);
    rows->Set("omschrijving", "foxtrot");
    rows->Set("klasse", Value());
    EXPECT_EQ(KindOf([&] { rows->Update(); }), ErrorKind::NullNotAllowed);
    rows->Set("klasse", 1);
    rows->Set("opmerking", "");
    EXPECT_EQ(KindOf([&] { rows->Update(); }), ErrorKind::EmptyNotAllowed);
    rows->Set("opmerking", "goed");
    EXPECT_EQ(KindOf([&] { rows->Set("klasse", "veel"); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([&] { rows->Set("klasse", 40000); }), ErrorKind::Overflow);
    rows->Update();
    EXPECT_EQ(rows->RecordCount(), 6);
    EXPECT_TRUE(database->Check().IsSound());
}

TEST_F(TableRecordsetTest, NamesTheTableAndTheFieldInItsErrors)
{
    const auto rows = database->OpenRecordset("Locatie");
    rows->AddNew();
    try {
        rows->Set("klasse", "veel");
        ADD_FAILURE();
    } catch (const jet::Error& error) {
        EXPECT_NE(std::string(error.what()).find("\"klasse\""), std::string::npos);
        EXPECT_NE(std::string(error.what()).find("\"Locatie\""), std::string::npos);
    }
}

TEST_F(TableRecordsetTest, DeletesAndMovesOn)
{
    AddSome();
    for (const char* index : {"Naam", ""}) {
        const auto rows = database->OpenRecordset("Locatie");
        rows->SetIndex(index);
        rows->MoveNext();
        const std::string third = [&] {
            const auto other = database->OpenRecordset("Locatie");
            other->SetIndex(index);
            other->Move(2);
            return other->Get("omschrijving").AsText();
        }();
        rows->Delete();
        EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::NoCurrentRow);
        EXPECT_EQ(KindOf([&] { rows->Edit(); }), ErrorKind::NoCurrentRow);
        EXPECT_EQ(KindOf([&] { rows->Delete(); }), ErrorKind::NoCurrentRow);
        rows->MoveNext();
        EXPECT_EQ(rows->Get("omschrijving"), Value(third));
    }
    EXPECT_EQ(database->GetTableDef("Locatie").recordCount, 3);
    EXPECT_TRUE(database->Check().IsSound());
}

TEST_F(TableRecordsetTest, DeletesAllRowsInOneWalk)
{
    AddSome();
    for (const char* index : {"Naam", "", "PrimaryKey"}) {
        const auto rows = database->OpenRecordset("Locatie");
        rows->SetIndex(index);
        int count = 0;
        for (; !rows->EndOfFile(); rows->MoveNext(), ++count)
            rows->Delete();
        EXPECT_EQ(count, 5) << index;
        EXPECT_EQ(rows->RecordCount(), 0);
        AddSome();
    }
}

TEST_F(TableRecordsetTest, DeletesTheRowThatSeekFound)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->SetIndex("Naam");
    rows->Seek("=", {Value("bravo")});
    rows->Delete();
    rows->MoveNext();
    EXPECT_EQ(rows->Get("omschrijving"), Value("Charlie"));
    rows->Seek("=", {Value("delta")});
    rows->Delete();
    rows->MovePrevious();
    EXPECT_EQ(rows->Get("omschrijving"), Value("Charlie"));
}

TEST_F(TableRecordsetTest, NoticesARowDeletedBesideIt)
{
    AddSome();
    const auto a = database->OpenRecordset("Locatie");
    const auto b = database->OpenRecordset("Locatie");
    a->MoveNext();
    b->MoveNext();
    b->Delete();
    EXPECT_EQ(KindOf([&] { a->Get("x"); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { a->Edit(); }), ErrorKind::NoCurrentRow);
    a->MoveNext();
    EXPECT_EQ(a->Get("omschrijving"), Value("echo"));
}

TEST_F(TableRecordsetTest, SeeksInEveryDirection)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->SetIndex("X");
    const auto found = [&](const char* comparison, double x) -> std::string {
        rows->Seek(comparison, {Value(x)});
        return rows->NoMatch() ? "-" : rows->Get("omschrijving").AsText().substr(0, 1);
    };
    EXPECT_EQ(found("=", 3), "C");
    EXPECT_EQ(found("=", 3.5), "-");
    EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(KindOf([&] { rows->MoveNext(); }), ErrorKind::NoCurrentRow);
    EXPECT_EQ(found(">=", 3), "C");
    EXPECT_EQ(found(">", 3), "d");
    EXPECT_EQ(found(">", 5), "-");
    EXPECT_EQ(found("<=", 3), "C");
    EXPECT_EQ(found("<", 3), "b");
    EXPECT_EQ(found("<", 1), "-");
    EXPECT_EQ(found(">", 2.5), "C");
    rows->MoveNext();
    EXPECT_EQ(rows->Get("x"), Value(4.0));
    rows->MovePrevious();
    rows->MovePrevious();
    EXPECT_EQ(rows->Get("x"), Value(2.0));
    EXPECT_EQ(found("<", 3.5), "C");
    rows->MovePrevious();
    EXPECT_EQ(rows->Get("x"), Value(2.0));
    rows->MoveNext();
    EXPECT_EQ(rows->Get("x"), Value(3.0));
    EXPECT_EQ(KindOf([&] { rows->Seek("<>", {Value(1)}); }), ErrorKind::BadValue);
    rows->SetIndex("");
    EXPECT_EQ(KindOf([&] { rows->Seek("=", {Value(1)}); }), ErrorKind::NotSupported);
}

TEST_F(TableRecordsetTest, SeeksByTextWithoutRegardToCaseAndByAPartOfTheKey)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->SetIndex("Naam");
    rows->Seek("=", {Value("CHARLIE")});
    EXPECT_EQ(rows->Get("x"), Value(3.0));
    rows->SetIndex("Klasse");
    rows->Seek("=", {Value(1)});
    EXPECT_EQ(rows->Get("omschrijving"), Value("alfa"));
    rows->Seek("=", {Value(1), Value("echo")});
    EXPECT_EQ(rows->Get("x"), Value(5.0));
    EXPECT_EQ(KindOf([&] { rows->Seek("=", {}); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([&] {
                  rows->Seek("=", {Value(1), Value("a"), Value(2)});
              }),
              ErrorKind::BadValue);
}

TEST_F(TableRecordsetTest, WalksThroughManyEqualKeys)
{
    for (int i = 0; i < 1000; ++i)
        Add(("n" + std::to_string(i)).c_str(), i < 990 ? 7 : 8, 1);
    const auto rows = database->OpenRecordset("Locatie");
    rows->SetIndex("X");
    rows->Seek("=", {Value(7)});
    int count = 0;
    for (; !rows->EndOfFile() && rows->Get("x") == Value(7.0); rows->MoveNext())
        ++count;
    EXPECT_EQ(count, 990);
    rows->MovePrevious();
    EXPECT_EQ(rows->Get("omschrijving"), Value("n989"));
}

TEST_F(TableRecordsetTest, RefusesWhatThisKindCannotDo)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    EXPECT_EQ(KindOf([&] { rows->AbsolutePosition(); }), ErrorKind::NotSupported);
    EXPECT_EQ(KindOf([&] { rows->SetAbsolutePosition(1); }), ErrorKind::NotSupported);
    EXPECT_EQ(KindOf([&] { rows->FindFirst("x=1"); }), ErrorKind::NotSupported);
    EXPECT_EQ(KindOf([&] { rows->FindNext("x=1"); }), ErrorKind::NotSupported);
    EXPECT_EQ(KindOf([&] { rows->SetSort("x"); }), ErrorKind::NotSupported);
    EXPECT_EQ(KindOf([&] { database->OpenRecordset("Geen", RecordsetType::Table); }),
              ErrorKind::UnknownTable);
}

TEST_F(TableRecordsetTest, IsReadOnlyWhenAsked)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie", RecordsetType::Table, {.readOnly = true});
    EXPECT_FALSE(rows->Updatable());
    EXPECT_EQ(KindOf([&] { rows->Edit(); }), ErrorKind::ReadOnly);
    EXPECT_EQ(KindOf([&] { rows->AddNew(); }), ErrorKind::ReadOnly);
    EXPECT_EQ(KindOf([&] { rows->Delete(); }), ErrorKind::ReadOnly);
}

TEST_F(TableRecordsetTest, ReadsTheEnginesOwnTablesAndNoMore)
{
    const auto rows = database->OpenRecordset("MSysObjects");
    EXPECT_EQ(rows->RecordCount(), 9);
    EXPECT_FALSE(rows->Updatable());
    EXPECT_EQ(KindOf([&] { rows->Delete(); }), ErrorKind::ReadOnly);
}

TEST_F(TableRecordsetTest, EndsWithItself)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    EXPECT_TRUE(rows->IsOpen());
    rows->Close();
    EXPECT_FALSE(rows->IsOpen());
    EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { rows->Name(); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { rows->MoveNext(); }), ErrorKind::Closed);
    rows->Close();
}

TEST_F(TableRecordsetTest, EndsWithItsDatabase)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    const auto indexed = database->OpenRecordset("Locatie");
    indexed->SetIndex("Naam");
    indexed->MoveNext();
    rows->Edit();
    database->Close();
    EXPECT_FALSE(rows->IsOpen());
    EXPECT_EQ(KindOf([&] { rows->Update(); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { rows->Get(0); }), ErrorKind::Closed);
    EXPECT_EQ(KindOf([&] { indexed->MoveNext(); }), ErrorKind::Closed);
    database.reset();
    EXPECT_EQ(KindOf([&] { rows->EndOfFile(); }), ErrorKind::Closed);
}

TEST_F(TableRecordsetTest, KeepsItsTableFromBeingDropped)
{
    AddSome();
    {
        const auto rows = database->OpenRecordset("Locatie");
        EXPECT_EQ(KindOf([&] { database->DropTable("locatie"); }), ErrorKind::InUse);
        EXPECT_EQ(KindOf([&] { database->DropField("Locatie", "x"); }), ErrorKind::InUse);
        EXPECT_EQ(KindOf([&] { database->RenameTable("Locatie", "Plek"); }), ErrorKind::InUse);
    }
    database->DropTable("Locatie");
    EXPECT_FALSE(database->HasTable("Locatie"));
}

TEST_F(TableRecordsetTest, LivesThroughARollback)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    workspace.BeginTrans();
    rows->Edit();
    rows->Set("x", 1000);
    rows->Update();
    rows->AddNew();
    rows->Set("omschrijving", "zulu");
    rows->Update();
    rows->MoveToLastModified();
    workspace.Rollback();
    EXPECT_EQ(KindOf([&] { rows->Get("x"); }), ErrorKind::NoCurrentRow);
    rows->MoveFirst();
    EXPECT_EQ(rows->Get("x"), Value(4.0));
    EXPECT_EQ(rows->RecordCount(), 5);
    rows->AddNew();
    EXPECT_EQ(rows->Get("Locatie_ID"), Value(6)) << "the number is free again";
}

TEST_F(TableRecordsetTest, ClosesWhenItsTableIsRolledBack)
{
    workspace.BeginTrans();
    database->CreateTable({.name = "Tijdelijk", .fields = {{.name = "A"}}});
    const auto rows = database->OpenRecordset("Tijdelijk");
    rows->AddNew();
    rows->Update();
    workspace.Rollback();
    EXPECT_EQ(KindOf([&] { rows->MoveFirst(); }), ErrorKind::Closed);
}

TEST_F(TableRecordsetTest, BearsAFieldAddedBesideIt)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->MoveNext();
    database->AddField("Locatie", {.name = "extra", .type = ColumnType::Long, .required = true});
    EXPECT_EQ(rows->Get("omschrijving"), Value("alfa"));
    rows->MoveNext();
    rows->Edit();
    rows->Set("x", 8);
    rows->Update();
    EXPECT_EQ(rows->Get("x"), Value(8.0));
    rows->AddNew();
    rows->Set("omschrijving", "na");
    EXPECT_EQ(KindOf([&] { rows->Update(); }), ErrorKind::NullNotAllowed);
    rows->CancelUpdate();
    const auto again = rows->Reopen();
    EXPECT_EQ(again->Get("extra"), Value(0));
    EXPECT_TRUE(database->Check().IsSound());
}

TEST_F(TableRecordsetTest, StartsAgainOnRequeryAndReopen)
{
    AddSome();
    const auto rows = database->OpenRecordset("Locatie");
    rows->SetIndex("Naam");
    rows->MoveLast();
    const auto again = rows->Reopen();
    EXPECT_EQ(again->Get("omschrijving"), Value("alfa"));
    rows->Requery();
    EXPECT_EQ(rows->Get("omschrijving"), Value("alfa"));
}

} // namespace
