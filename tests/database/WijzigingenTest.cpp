// Several operations as one change.
#include "DatabaseFixture.h"
#include "database/Transactie.h"

#include <stdexcept>

namespace {

class WijzigingenTest : public DatabaseTest {
protected:
    WijzigingenTest() { OpenVoorbeeld(); }
    std::string Kenmerk(const QString& locatie)
    {
        return std::to_string(db.GetKwaliteitskenmerk(locatie));
    }
};

TEST_F(WijzigingenTest, WhatIsNotCommittedIsUndone)
{
    {
        const Transactie transactie = db.BeginTransactie();
        EXPECT_TRUE(db.DeleteLocatie("Plas-01"));
        db.RenameDijkring("Ring Oost", "Ring Zuid");
        EXPECT_EQ(db.GetLocatie_ID("Plas-01"), kNietBekend);
    }
    EXPECT_EQ(db.GetLocatie_ID("Plas-01"), 1);
    EXPECT_TRUE(db.DijkringExists("Ring Oost"));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Scheefstand WHERE Locatie_ID=1")[0][0], "80");
    db.CloseDB();
    ExpectSound(db.fileName());
}

TEST_F(WijzigingenTest, WhatIsCommittedStays)
{
    {
        Transactie transactie = db.BeginTransactie();
        db.DeleteLocatie("Plas-01");
        db.DeleteLocatie("Plas-02");
        transactie.Commit();
    }
    db.CloseDB();
    EXPECT_EQ(Lees(db.fileName(), "SELECT COUNT(*) FROM Locatie")[0][0], "22");
    ExpectSound(db.fileName());
}

TEST_F(WijzigingenTest, AFailedOperationCanBeUndoneWithThoseBeforeIt)
{
    db.CloseDB();
    Voeruit(db.fileName(), {"DROP TABLE ProfielSegmenten"});
    try {
        const Transactie transactie = db.BeginTransactie();
        db.DeleteLocatie("Plas-01");
        db.DeleteProfiel("Strekdam");
        FAIL() << "a table is missing";
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Number() - FoutCode(0), 1503);
    }
    EXPECT_EQ(db.GetLocatie_ID("Plas-01"), 1);
    EXPECT_NE(db.GetProfiel_ID("Strekdam"), kNietBekend);
}

TEST_F(WijzigingenTest, AClosedFileIsOpenedForATransaction)
{
    db.CloseDB();
    {
        Transactie transactie = db.BeginTransactie();
        db.DeleteLocatie("Plas-01");
        transactie.Commit();
    }
    EXPECT_EQ(db.GetLocatie_ID("Plas-01"), kNietBekend);
}

TEST_F(WijzigingenTest, MarksAreComputedOnceBehindTheLastChange)
{
    db.UpdateKwaliteitskenmerkOnce([&] {
        db.UpdateDijknormaal("Plas-01", kNietBekend);
        db.UpdateKwaliteitskenmerkOnce([&] { db.UpdateDijknormaal("Plas-02", kNietBekend); });
        EXPECT_EQ(Kenmerk("Plas-01"), "2") << "not yet";
        EXPECT_EQ(Kenmerk("Plas-02"), "2") << "the outermost decides";
    });
    EXPECT_EQ(Kenmerk("Plas-01"), "0");
    EXPECT_EQ(Kenmerk("Plas-02"), "0");
}

TEST_F(WijzigingenTest, AfterAFailureMarksFollowEachChangeAgain)
{
    EXPECT_THROW(db.UpdateKwaliteitskenmerkOnce([] { throw std::runtime_error("stop"); }),
                 std::runtime_error);
    db.UpdateDijknormaal("Plas-01", kNietBekend);
    EXPECT_EQ(Kenmerk("Plas-01"), "0");
}

} // namespace
