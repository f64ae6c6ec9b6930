#include "frame/IniNumbers.h"

#include "FrameTestTools.h"
#include "frame/QLMIniFile.h"

namespace {

class IniNumbersTest : public FrameTest {
protected:
    double Number(const QByteArray& value)
    {
        WriteBytes(Path("test.ini"), "[s]\r\na=" + value);
        QLMIniFile ini(Path("test.ini"));
        return ReadNumber(ini, "s", "a", 7, -10, 10);
    }
    int Whole(const QByteArray& value)
    {
        WriteBytes(Path("test.ini"), "[s]\r\na=" + value);
        QLMIniFile ini(Path("test.ini"));
        return ReadWhole(ini, "s", "a", 7, -10, 10);
    }
};

} // namespace

TEST_F(IniNumbersTest, EitherDecimalSignIsRead)
{
    EXPECT_EQ(Number("1.5"), 1.5);
    EXPECT_EQ(Number("-1,5"), -1.5);
    EXPECT_EQ(Number("1e-1 "), 0.1);
    EXPECT_EQ(Whole("2.5"), 2);
    EXPECT_EQ(Whole("3,5"), 4);
}

TEST_F(IniNumbersTest, BoundsBelongToTheRange)
{
    EXPECT_EQ(Number("10"), 10);
    EXPECT_EQ(Number("-10"), -10);
    EXPECT_EQ(Whole("-10"), -10);
}

TEST_F(IniNumbersTest, WhatIsDamagedLeavesThePresentValue)
{
    for (const char* damage : {"", "x", "1-2", "10.1", "-11", "1e999", "99999999999999999999"}) {
        EXPECT_EQ(Number(damage), 7) << damage;
        EXPECT_EQ(Whole(damage), 7) << damage;
    }
    QLMIniFile absent(Path("weg.ini"));
    EXPECT_EQ(ReadNumber(absent, "s", "a", 7, -10, 10), 7);
}
