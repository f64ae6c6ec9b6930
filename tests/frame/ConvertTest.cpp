#include "frame/Convert.h"

#include "FrameTestTools.h"

namespace {

class ConvertTest : public FrameTest {
protected:
    Convert m_convert;
};

} // namespace

TEST_F(ConvertTest, ConvDblTakesEitherSignOnEverySystem)
{
    const FakeInternational point(".");
    for (const International* system :
         {&CurrentInternational(), static_cast<const International*>(&point)}) {
        UseSystem(*system);
        const Convert convert;
        EXPECT_EQ(convert.ConvDbl("1,5"), 1.5);
        EXPECT_EQ(convert.ConvDbl("1.5"), 1.5);
    }
}

TEST_F(ConvertTest, ConversionsGiveZeroForBadText)
{
    EXPECT_EQ(m_convert.ConvDbl("abc"), 0);
    EXPECT_EQ(m_convert.ConvDbl(""), 0);
    EXPECT_EQ(m_convert.ConvSng("1.2.3"), 0);
    EXPECT_EQ(m_convert.ConvLng("12a"), 0);
    EXPECT_EQ(m_convert.ConvInt("--3"), 0);
    EXPECT_FALSE(m_convert.ConvBln("waar"));
}

TEST_F(ConvertTest, ConversionsTrimAndReadWhatTheProgramWrites)
{
    EXPECT_EQ(m_convert.ConvDbl("  1e+3 "), 1000);
    EXPECT_EQ(m_convert.ConvDbl("1E+20"), 1e20);
    EXPECT_EQ(m_convert.ConvDbl("+5"), 5);
    EXPECT_EQ(m_convert.ConvSng(" 0,25"), 0.25F);
    EXPECT_EQ(m_convert.ConvLng("-70000"), -70000);
    EXPECT_EQ(m_convert.ConvInt(" 12 "), 12);
}

TEST_F(ConvertTest, WholeNumbersRoundHalvesToEven)
{
    EXPECT_EQ(m_convert.ConvLng("2.5"), 2);
    EXPECT_EQ(m_convert.ConvLng("3,5"), 4);
    EXPECT_EQ(m_convert.ConvInt("-0.5"), 0);
    EXPECT_EQ(m_convert.ConvInt("32767.4"), 32767);
}

TEST_F(ConvertTest, ANumberTooLargeForItsTypeOverflows)
{
    const auto overflows = [](auto statement) {
        return RaisedNumber(statement) == RuntimeFout::Overflow;
    };
    EXPECT_TRUE(overflows([&] { static_cast<void>(m_convert.ConvInt("32768")); }));
    EXPECT_TRUE(overflows([&] { static_cast<void>(m_convert.ConvInt("-32769")); }));
    EXPECT_TRUE(overflows([&] { static_cast<void>(m_convert.ConvLng("2147483648")); }));
    EXPECT_TRUE(overflows([&] { static_cast<void>(m_convert.ConvSng("1e39")); }));
    EXPECT_TRUE(overflows([&] { static_cast<void>(m_convert.ConvDbl("1e309")); }));
    EXPECT_EQ(m_convert.ConvInt("-32768"), -32768);
    EXPECT_EQ(m_convert.ConvLng("2147483647"), 2147483647);
}

TEST_F(ConvertTest, ConvBlnIsTrueForEveryNumberButZero)
{
    EXPECT_FALSE(m_convert.ConvBln("0"));
    EXPECT_FALSE(m_convert.ConvBln("0,0"));
    EXPECT_TRUE(m_convert.ConvBln("2"));
    EXPECT_TRUE(m_convert.ConvBln("-1"));
    EXPECT_FALSE(m_convert.ConvBln("x"));
    EXPECT_FALSE(m_convert.ConvBln(""));
}

// Meant: whatever the first strange character is, it becomes the sign.
TEST_F(ConvertTest, NumPointAndNumSysTouchTheFirstStrangeCharacterOnly)
{
    EXPECT_EQ(m_convert.NumPoint("1,5"), "1.5");
    EXPECT_EQ(m_convert.NumPoint("-1.5E-3"), "-1.5E-3");
    EXPECT_EQ(m_convert.NumPoint("1.000,5"), "1.000,5");
    EXPECT_EQ(m_convert.NumPoint("1e+3"), "1e.3");
    EXPECT_EQ(m_convert.NumPoint("+5"), ".5");
    EXPECT_EQ(m_convert.NumPoint(" 12"), ".12");
    EXPECT_EQ(m_convert.NumPoint("12"), "12");
    EXPECT_EQ(m_convert.NumSys("1.5"), "1,5");
    EXPECT_EQ(m_convert.NumSys("-999"), "-999");
}

TEST_F(ConvertTest, AsksForTheSystemsSignOnce)
{
    EXPECT_EQ(m_convert.NumSys("1.5"), "1,5");
    const FakeInternational point(".", "ENU");
    SetInternational(&point);
    EXPECT_EQ(m_convert.NumSys("1.5"), "1,5");
    EXPECT_EQ(Convert().NumSys("1,5"), "1.5");
    EXPECT_EQ(m_convert.getInternational("sLanguage"), "ENU");
}

TEST_F(ConvertTest, MaxAndMin)
{
    EXPECT_EQ(Convert::Max(1.5, 2.5), 2.5);
    EXPECT_EQ(Convert::min(1.5, 2.5), 1.5);
    EXPECT_EQ(Convert::Max(3, -3), 3);
}

TEST_F(ConvertTest, CentresWithTheOddBlankOnTheRight)
{
    EXPECT_EQ(m_convert.QLMAlignCenter(6, "abc"), " abc  ");
    EXPECT_EQ(m_convert.QLMAlignCenter(5, 12), " 12  ");
    EXPECT_EQ(m_convert.QLMAlignCenter(5, 1.5), " 1,5 ");
    EXPECT_EQ(m_convert.QLMAlignCenter(2, "abc"), "abc");
    EXPECT_EQ(m_convert.QLMAlignCenter(3, QVariant()), "   ");
    EXPECT_EQ(m_convert.QLMAlignCenter(3, true), "   ");
}

TEST_F(ConvertTest, TranslatesTheFormatLanguage)
{
    EXPECT_EQ(m_convert.ConvertFormat("10.2F"), "0.00");
    EXPECT_EQ(m_convert.ConvertFormat("10.0F"), "0");
    EXPECT_EQ(m_convert.ConvertFormat("10"), "0");
    EXPECT_EQ(m_convert.ConvertFormat("-10.3"), "0.000");
    EXPECT_EQ(m_convert.ConvertFormat("+8.1"), "+0.0");
    EXPECT_EQ(m_convert.ConvertFormat("-+8.2e"), "+0.00E+00");
    EXPECT_EQ(m_convert.ConvertFormat("8E"), "0E+00");
    EXPECT_EQ(m_convert.ConvertFormat(""), "0");
}

TEST_F(ConvertTest, FormatsAValueInItsField)
{
    EXPECT_EQ(m_convert.QLMFormat("10.2F", 3.14159), "      3,14");
    EXPECT_EQ(m_convert.QLMFormat("-10.2F", 3.14159), "3,14      ");
    EXPECT_EQ(m_convert.QLMFormat("10.0F", 2.5), "         3");
    EXPECT_EQ(m_convert.QLMFormat("+6.1", 2), "  +2,0");
    EXPECT_EQ(m_convert.QLMFormat("+6.1", -2), "  -2,0");
    EXPECT_EQ(m_convert.QLMFormat("+6.1", 0), "  +0,0");
    EXPECT_EQ(m_convert.QLMFormat("-+8.2E", 12345), "+1,23E+04");
    EXPECT_EQ(m_convert.QLMFormat("3.2", 12345.678), "12345,68") << "not cut";
    EXPECT_EQ(m_convert.QLMFormat("6.2", -0.001), "  0,00");
    EXPECT_EQ(m_convert.QLMFormat("+-6.1", 2), "  +2,0") << "the width by its absolute value";
}

TEST_F(ConvertTest, IsEqualHasARelativeTolerance)
{
    EXPECT_TRUE(m_convert.IsEqual(1000, 1000.0009));
    EXPECT_FALSE(m_convert.IsEqual(1000, 1000.002));
    EXPECT_FALSE(m_convert.IsEqual(0, 0.0000001));
    EXPECT_TRUE(m_convert.IsEqual(0, 0));
    EXPECT_TRUE(m_convert.IsEqual("1,5", 1.5));
    EXPECT_FALSE(m_convert.IsEqual("x", "x"));
    EXPECT_FALSE(m_convert.IsEqual(QVariant(), 0));
    EXPECT_FALSE(m_convert.IsEqual(-5, 5));
}

TEST_F(ConvertTest, ArcFunctions)
{
    EXPECT_DOUBLE_EQ(m_convert.Arcsin(0.5), 0.52359877559829887); // a sixth of pi
    EXPECT_DOUBLE_EQ(m_convert.Arcsin(-0.5), -0.52359877559829887);
    EXPECT_EQ(RaisedNumber([&] { static_cast<void>(m_convert.Arcsin(1)); }),
              RuntimeFout::DivisionByZero);
    EXPECT_EQ(RaisedNumber([&] { static_cast<void>(m_convert.Arcsin(-1)); }),
              RuntimeFout::DivisionByZero);
    EXPECT_EQ(RaisedNumber([&] { static_cast<void>(m_convert.Arcsin(2)); }),
              RuntimeFout::InvalidArgument);
    EXPECT_DOUBLE_EQ(m_convert.Atnd(1), 45);
    EXPECT_DOUBLE_EQ(m_convert.Atnd(-1), -45);
}

TEST_F(ConvertTest, NdecCountsWhatStandsBehindTheSign)
{
    EXPECT_EQ(m_convert.Ndec("1,250"), 3);
    EXPECT_EQ(m_convert.Ndec("1.5"), 1);
    EXPECT_EQ(m_convert.Ndec("15"), 0);
    EXPECT_EQ(m_convert.Ndec("15."), 0);
}

TEST_F(ConvertTest, WindDirectionNames)
{
    EXPECT_EQ(WindDirectionName(0), "N  ");
    EXPECT_EQ(WindDirectionName(360), "N  ");
    EXPECT_EQ(WindDirectionName(22.5), "NNO");
    EXPECT_EQ(WindDirectionName(90), "O  ");
    EXPECT_EQ(WindDirectionName(202.5), "ZZW");
    EXPECT_EQ(WindDirectionName(337.5), "NNW");
    EXPECT_EQ(WindDirectionName(355), "N  ");
    // Between two names: the even index.
    EXPECT_EQ(WindDirectionName(11.25), "N  ");
    EXPECT_EQ(WindDirectionName(33.75), "NO ");
    EXPECT_EQ(WindDirectionName(348.75), "N  ");
    EXPECT_EQ(WindDirectionName(-90), "W  ");
    EXPECT_EQ(WindDirectionName(-22.5), "NNW");
}

TEST_F(ConvertTest, WindDirectionNamesFollowTheLanguage)
{
    SetLanguage(" NL ");
    EXPECT_EQ(WindDirectionName(90), "O  ");
    SetLanguage("UK");
    EXPECT_EQ(WindDirectionName(90), "E  ");
    EXPECT_EQ(WindDirectionName(157.5), "SSE");
}

TEST_F(ConvertTest, AngleToMathTurnsABearingIntoAnAngle)
{
    EXPECT_EQ(AngleToMath(0), 90);
    EXPECT_EQ(AngleToMath(90), 0);
    EXPECT_EQ(AngleToMath(180), 270);
    EXPECT_EQ(AngleToMath(360), 90);
    EXPECT_EQ(AngleToMath(-270), 0);
    EXPECT_EQ(AngleToMath(810), 0);
    EXPECT_LT(AngleToMath(90.00000000000001), 360);
    EXPECT_GE(AngleToMath(90.00000000000001), 0);
}

TEST_F(ConvertTest, InterpolatesOnALine)
{
    EXPECT_EQ(Interpolate(15, 10, 1, 20, 3), 2);
    EXPECT_EQ(Interpolate(25, 10, 1, 20, 3), 4);
    EXPECT_EQ(Interpolate(10, 10, 1, 20, 3), 1);
    EXPECT_EQ(RaisedNumber([] { static_cast<void>(Interpolate(1, 5, 1, 5, 2)); }),
              RuntimeFout::DivisionByZero);
}
