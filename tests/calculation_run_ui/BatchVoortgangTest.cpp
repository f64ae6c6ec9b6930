#include "calculation/BatchVoortgang.h"

#include <gtest/gtest.h>

namespace {

class BatchVoortgangTest : public testing::Test {
protected:
    qint64 nu = 5000;
    BatchVoortgang voortgang{[this] { return nu; }};
};

TEST_F(BatchVoortgangTest, KnowsNothingBeforeTheFirstRun)
{
    EXPECT_EQ(voortgang.Aantal(), 0);
    EXPECT_EQ(voortgang.Gedaan(), 0);
    EXPECT_EQ(voortgang.Verstreken(), 0);
    EXPECT_EQ(voortgang.Resterend(), std::nullopt);
}

TEST_F(BatchVoortgangTest, DuringTheFirstRunTheRestIsUnknown)
{
    voortgang.Begin(1, 4);
    nu += 700;
    EXPECT_EQ(voortgang.Aantal(), 4);
    EXPECT_EQ(voortgang.Gedaan(), 0);
    EXPECT_EQ(voortgang.Verstreken(), 700);
    EXPECT_EQ(voortgang.Resterend(), std::nullopt);
}

TEST_F(BatchVoortgangTest, TheRestIsTheMeanTimesWhatIsLeft)
{
    voortgang.Begin(1, 4);
    nu += 1000;
    voortgang.Begin(2, 4);
    nu += 3000;
    voortgang.Begin(3, 4); // mean 2000, this one and one more to come
    EXPECT_EQ(voortgang.Gedaan(), 2);
    EXPECT_EQ(voortgang.Resterend(), 4000);
    nu += 500;
    EXPECT_EQ(voortgang.Resterend(), 3500);
    EXPECT_EQ(voortgang.Verstreken(), 4500);
}

TEST_F(BatchVoortgangTest, ASlowRunDoesNotTakeFromTheOthers)
{
    voortgang.Begin(1, 3);
    nu += 1000;
    voortgang.Begin(2, 3);
    nu += 60000;
    EXPECT_EQ(voortgang.Resterend(), 1000);
}

TEST(DuurTekstTest, ShowsSecondsMinutesAndHours)
{
    EXPECT_EQ(DuurTekst(0), "0:00");
    EXPECT_EQ(DuurTekst(-5), "0:00");
    EXPECT_EQ(DuurTekst(3999), "0:03");
    EXPECT_EQ(DuurTekst(754000), "12:34");
    EXPECT_EQ(DuurTekst(3723000), "1:02:03");
    EXPECT_EQ(DuurTekst(qint64(100) * 3600000), "100:00:00");
}

TEST(ResultaatregelTest, TellsLocationCalculationAndOutcome)
{
    EXPECT_EQ(LeesResultaatregel("Plas-04: ontwerp_gras 1op3 OK"),
              (Resultaatregel{"Plas-04", "ontwerp_gras 1op3", true}));
    EXPECT_EQ(LeesResultaatregel("Plas-04: ontwerp FOUT: EXITCODE=3"),
              (Resultaatregel{"Plas-04", "ontwerp", false}));
    EXPECT_EQ(LeesResultaatregel("Plas-04: ontwerp FOUT: EXITCODE=-99"),
              (Resultaatregel{"Plas-04", "ontwerp", false}));
}

TEST(ResultaatregelTest, NamesMayLookLikeAnOutcome)
{
    EXPECT_EQ(LeesResultaatregel("Plas OK: is OK OK"), (Resultaatregel{"Plas OK", "is OK", true}));
    EXPECT_EQ(LeesResultaatregel("A: FOUT FOUT: EXITCODE=5"), (Resultaatregel{"A", "FOUT", false}));
}

TEST(ResultaatregelTest, OtherLinesAreNoResult)
{
    for (const char* regel : {"", "Plas-04", ": ontwerp OK", "Plas-04: OK", "Plas-04: ontwerp"})
        EXPECT_EQ(LeesResultaatregel(regel), std::nullopt) << regel;
}

TEST(ResultaatregelTest, CountsTheFailuresOfAList)
{
    EXPECT_EQ(AantalMislukt(""), 0);
    EXPECT_EQ(AantalMislukt("A: x OK\r\nB: x FOUT: EXITCODE=3\r\nC: x OK\r\n"), 1);
    EXPECT_EQ(AantalMislukt("A: x FOUT: EXITCODE=3\nB: x FOUT: EXITCODE=999\n"), 2);
}

} // namespace
