#include "geometry/PortableTrig.h"
#include "geometry/modStrijklengte.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

using geometry::PortableAtan;
using geometry::PortableSinCos;

namespace {

// Correctly rounded, worked out with 400 bits.
struct Known {
    double angle;
    double sin;
    double cos;
};
constexpr Known kKnown[] = {
    {0x0.0p+0, 0x0.0p+0, 0x1.0000000000000p+0},
    {0x1.921fb54442d18p-4, 0x1.917a6bc29b42cp-4, 0x1.fd88da3d12526p-1},
    {0x1.921fb54442d18p-3, 0x1.8f8b83c69a60ap-3, 0x1.f6297cff75cb0p-1},
    {0x1.2d97c7f3321d2p-2, 0x1.294062ed59f05p-2, 0x1.e9f4156c62ddap-1},
    {0x1.921fb54442d18p-2, 0x1.87de2a6aea963p-2, 0x1.d906bcf328d46p-1},
    {0x1.f6a7a2955385ep-2, 0x1.e2b5d3806f63bp-2, 0x1.c38b2f180bdb1p-1},
    {0x1.2d97c7f3321d2p-1, 0x1.1c73b39ae68c8p-1, 0x1.a9b66290ea1a3p-1},
    {0x1.5fdbbe9bba775p-1, 0x1.44cf325091dd6p-1, 0x1.8bc806b151741p-1},
    {0x1.921fb54442d18p-1, 0x1.6a09e667f3bccp-1, 0x1.6a09e667f3bcdp-1},
    {0x1.c463abeccb2bap-1, 0x1.8bc806b151740p-1, 0x1.44cf325091dd7p-1},
    {0x1.f6a7a2955385ep-1, 0x1.a9b66290ea1a3p-1, 0x1.1c73b39ae68c9p-1},
    {0x1.1475cc9eedf01p+0, 0x1.c38b2f180bdb1p-1, 0x1.e2b5d3806f63ap-2},
    {0x1.2d97c7f3321d2p+0, 0x1.d906bcf328d46p-1, 0x1.87de2a6aea964p-2},
    {0x1.46b9c347764a4p+0, 0x1.e9f4156c62ddbp-1, 0x1.294062ed59f05p-2},
    {0x1.5fdbbe9bba775p+0, 0x1.f6297cff75cb0p-1, 0x1.8f8b83c69a60dp-3},
    {0x1.78fdb9effea47p+0, 0x1.fd88da3d12526p-1, 0x1.917a6bc29b428p-4},
    {0x1.921fb54442d18p+0, 0x1.0000000000000p+0, 0x1.1a62633145c07p-54},
    {0x1.ab41b09886fe9p+0, 0x1.fd88da3d12526p-1, -0x1.917a6bc29b41fp-4},
    {0x1.c463abeccb2bap+0, 0x1.f6297cff75cb1p-1, -0x1.8f8b83c69a600p-3},
    {0x1.dd85a7410f58dp+0, 0x1.e9f4156c62ddap-1, -0x1.294062ed59f06p-2},
    {0x1.f6a7a2955385ep+0, 0x1.d906bcf328d46p-1, -0x1.87de2a6aea962p-2},
    {0x1.07e4cef4cbd97p+1, 0x1.c38b2f180bdb3p-1, -0x1.e2b5d3806f635p-2},
    {0x1.1475cc9eedf01p+1, 0x1.a9b66290ea1a2p-1, -0x1.1c73b39ae68c9p-1},
    {0x1.2106ca4910069p+1, 0x1.8bc806b151742p-1, -0x1.44cf325091dd5p-1},
    {0x1.2d97c7f3321d2p+1, 0x1.6a09e667f3bcdp-1, -0x1.6a09e667f3bccp-1},
    {0x1.3a28c59d5433bp+1, 0x1.44cf325091dd6p-1, -0x1.8bc806b151741p-1},
    {0x1.46b9c347764a4p+1, 0x1.1c73b39ae68c8p-1, -0x1.a9b66290ea1a4p-1},
    {0x1.534ac0f19860cp+1, 0x1.e2b5d3806f63fp-2, -0x1.c38b2f180bdb0p-1},
    {0x1.5fdbbe9bba775p+1, 0x1.87de2a6aea965p-2, -0x1.d906bcf328d46p-1},
    {0x1.6c6cbc45dc8dep+1, 0x1.294062ed59f06p-2, -0x1.e9f4156c62ddap-1},
    {0x1.78fdb9effea47p+1, 0x1.8f8b83c69a607p-3, -0x1.f6297cff75cb0p-1},
    {0x1.858eb79a20bafp+1, 0x1.917a6bc29b43cp-4, -0x1.fd88da3d12525p-1},
    {0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53, -0x1.0000000000000p+0},
    {0x1.9eb0b2ee64e81p+1, -0x1.917a6bc29b42bp-4, -0x1.fd88da3d12526p-1},
    {0x1.ab41b09886fe9p+1, -0x1.8f8b83c69a5fep-3, -0x1.f6297cff75cb1p-1},
    {0x1.b7d2ae42a9152p+1, -0x1.294062ed59f01p-2, -0x1.e9f4156c62ddbp-1},
    {0x1.c463abeccb2bap+1, -0x1.87de2a6aea959p-2, -0x1.d906bcf328d48p-1},
    {0x1.d0f4a996ed424p+1, -0x1.e2b5d3806f63bp-2, -0x1.c38b2f180bdb1p-1},
    {0x1.dd85a7410f58dp+1, -0x1.1c73b39ae68c9p-1, -0x1.a9b66290ea1a3p-1},
    {0x1.ea16a4eb316f5p+1, -0x1.44cf325091dd4p-1, -0x1.8bc806b151742p-1},
    {0x1.f6a7a2955385ep+1, -0x1.6a09e667f3bccp-1, -0x1.6a09e667f3bcep-1},
    {0x1.019c501fbace4p+2, -0x1.8bc806b151743p-1, -0x1.44cf325091dd3p-1},
    {0x1.07e4cef4cbd97p+2, -0x1.a9b66290ea19fp-1, -0x1.1c73b39ae68cfp-1},
    {0x1.0e2d4dc9dce4cp+2, -0x1.c38b2f180bdb0p-1, -0x1.e2b5d3806f63fp-2},
    {0x1.1475cc9eedf01p+2, -0x1.d906bcf328d47p-1, -0x1.87de2a6aea95ep-2},
    {0x1.1abe4b73fefb5p+2, -0x1.e9f4156c62ddap-1, -0x1.294062ed59f07p-2},
    {0x1.2106ca4910069p+2, -0x1.f6297cff75cafp-1, -0x1.8f8b83c69a619p-3},
    {0x1.274f491e2111ep+2, -0x1.fd88da3d12526p-1, -0x1.917a6bc29b421p-4},
    {0x1.2d97c7f3321d2p+2, -0x1.0000000000000p+0, -0x1.a79394c9e8a0ap-53},
    {0x1.33e046c843286p+2, -0x1.fd88da3d12526p-1, 0x1.917a6bc29b407p-4},
    {0x1.3a28c59d5433bp+2, -0x1.f6297cff75cb0p-1, 0x1.8f8b83c69a60cp-3},
    {0x1.40714472653efp+2, -0x1.e9f4156c62ddbp-1, 0x1.294062ed59f00p-2},
    {0x1.46b9c347764a4p+2, -0x1.d906bcf328d45p-1, 0x1.87de2a6aea967p-2},
    {0x1.4d02421c87558p+2, -0x1.c38b2f180bdb1p-1, 0x1.e2b5d3806f63ap-2},
    {0x1.534ac0f19860cp+2, -0x1.a9b66290ea1a5p-1, 0x1.1c73b39ae68c5p-1},
    {0x1.59933fc6a96c1p+2, -0x1.8bc806b151740p-1, 0x1.44cf325091dd7p-1},
    {0x1.5fdbbe9bba775p+2, -0x1.6a09e667f3bcep-1, 0x1.6a09e667f3bcbp-1},
    {0x1.66243d70cb829p+2, -0x1.44cf325091ddap-1, 0x1.8bc806b15173ep-1},
    {0x1.6c6cbc45dc8dep+2, -0x1.1c73b39ae68c8p-1, 0x1.a9b66290ea1a3p-1},
    {0x1.72b53b1aed992p+2, -0x1.e2b5d3806f640p-2, 0x1.c38b2f180bdafp-1},
    {0x1.78fdb9effea47p+2, -0x1.87de2a6aea95fp-2, 0x1.d906bcf328d47p-1},
    {0x1.7f4638c50fafap+2, -0x1.294062ed59f17p-2, 0x1.e9f4156c62dd8p-1},
    {0x1.858eb79a20bafp+2, -0x1.8f8b83c69a61bp-3, 0x1.f6297cff75cafp-1},
    {0x1.8bd7366f31c64p+2, -0x1.917a6bc29b425p-4, 0x1.fd88da3d12526p-1},
    {-0x1.d591405b3f999p+1, 0x1.0176a91c2e0eap-1, -0x1.ba8e8b9bc656bp-1},
    {0x1.3d08fb74dbdb8p-1, 0x1.29290d4c63282p-1, 0x1.a0f0df5c497dcp-1},
    {-0x1.d214a7a5a81f8p+0, -0x1.f01ac19fbe146p-1, -0x1.fa593f9be34e4p-3},
    {0x1.74730d1460408p+0, 0x1.fc9069bf1b522p-1, 0x1.d9ba8077f5d81p-4},
    {0x1.c294e1c438c38p+0, 0x1.f6dada65cbb00p-1, -0x1.8159d0f428fafp-3},
    {-0x1.8549409c2c402p+2, 0x1.980ec041aea98p-3, 0x1.f5bbeaf967e79p-1},
    {-0x1.b433942a365bep+2, -0x1.03eb95737e360p-1, 0x1.b91e510a4cfe3p-1},
    {0x1.2e5f4ee48dd46p+2, -0x1.fff647d6b9700p-1, 0x1.8f0b5c4965f04p-7},
    {-0x1.af3cd3c49fce6p+1, 0x1.cdd0598e7bb4ap-3, -0x1.f2d0268dc2021p-1},
    {-0x1.dc1433f50ca08p+1, 0x1.17a25a2a4d8c6p-1, -0x1.ace4769d53488p-1},
    {0x1.bc1907a052118p+2, 0x1.383b416119ad8p-1, 0x1.95c714e462fb2p-1},
    {-0x1.aa4d673693280p-2, -0x1.9e183424bed2dp-2, 0x1.d444bf2033d5fp-1},
    {0x1.2d782e8d8f066p+2, -0x1.ffffc197d8c24p-1, -0x1.f99645a6bca2dp-10},
    {-0x1.53001a3855b80p-2, -0x1.4cd78c077dac0p-2, 0x1.e432c7de80550p-1},
    {0x1.f26b9341bce70p+0, 0x1.dc33d652f0064p-1, -0x1.782a761827f05p-2},
    {-0x1.390c350606552p+2, 0x1.f7d234060343fp-1, 0x1.6c996eefc817cp-3},
    {0x1.e3573183ed440p+0, 0x1.e672fb1a6d76fp-1, -0x1.3f71d858157e1p-2},
    {0x1.49c4c2a7b18dep+2, -0x1.cf2de919b573fp-1, 0x1.b463a7cf2cfb2p-2},
    {0x1.4c5369bac4400p-2, 0x1.4685d74653d3bp-2, 0x1.e545d7b8b5a42p-1},
    {0x1.b052c58364930p+1, -0x1.deb89d9b90194p-3, -0x1.f1d0dc1221d94p-1},
    {0x1.5fdbbe9bba775p+5, -0x1.ee2c2d963a10cp-50, 0x1.0000000000000p+0},
    {0x1.4f8b588e368f1p-17, 0x1.4f8b588e1e8a2p-17, 0x1.ffffffff920c8p-1},
    {-0x1.19799812dea11p-40, -0x1.19799812dea11p-40, 0x1.0000000000000p+0},
    {0x1.7708000000000p+11, -0x1.db5419d2a9280p-6, -0x1.ffc8d3f3cb800p-1},
};

struct KnownAtan {
    double ratio;
    double atan;
};
constexpr KnownAtan kKnownAtan[] = {
    {0x1.0000000000000p-1, 0x1.dac670561bb4fp-2},
    {0x1.0000000000000p+0, 0x1.921fb54442d18p-1},
    {-0x1.0000000000000p+0, -0x1.921fb54442d18p-1},
    {0x1.0000000000000p+1, 0x1.1b6e192ebbe44p+0},
    {0x1.5798ee2308c3ap-27, 0x1.5798ee2308c3ap-27},
    {-0x1.9c511dc3a41dfp-29, -0x1.9c511dc3a41dfp-29},
    {0x1.86a0000000000p+16, 0x1.921f0d7e968a8p+0},
    {-0x1.81cd6c8b43958p+13, -0x1.921a664fe1dc4p+0},
    {0x1.c6bf526340000p+49, 0x1.921fb54442d14p+0},
    {-0x1.8fae27693b400p+59, -0x1.921fb54442d18p+0},
    {0x1.999999999999ap-4, 0x1.983e282e2cc4dp-4},
    {0x1.5555555555555p-2, 0x1.4978fa3269ee1p-2},
    {0x1.0749bc153aa38p+0, 0x1.994f23171a3f2p-1},
    {-0x1.4ed2e830b2966p+1, -0x1.34a56ebce1c59p+0},
    {0x1.8ca443b7d6e54p+0, 0x1.fecbc3a750c08p-1},
    {0x1.17dba0906e550p-1, 0x1.001dc6a3a8b87p-1},
    {-0x1.3140bc6a39ae3p+0, -0x1.bef0922e3a2cep-1},
    {-0x1.682ed770efee6p+1, -0x1.3ab61acfb943ep+0},
    {0x1.18b99439dd8d8p+1, 0x1.249b54c352006p+0},
    {-0x1.4edbf46e76fa0p-3, -0x1.4bec1033d1109p-3},
    {0x1.501d1170ab89cp+0, 0x1.d6fad618df5e6p-1},
    {0x1.22eda08535de4p+1, 0x1.28042cc77a308p+0},
    {0x1.48e7239751204p+0, 0x1.d19cd594465d5p-1},
    {0x1.43675de8fc5a0p+1, 0x1.31a508b485d84p+0},
    {-0x1.42ac23e8664e4p-1, -0x1.1feb8ab4005ffp-1},
    {0x1.ce3224aec4438p+0, 0x1.10a295bae2fc0p+0},
    {-0x1.543f8c1b93750p-2, -0x1.487ee3f5e7ad5p-2},
    {0x1.4e87d58ce0d94p+1, 0x1.349245d1b1003p+0},
    {0x1.22f837631702ep+1, 0x1.28079bf956a07p+0},
    {-0x1.3527b3fc8e0cep+1, -0x1.2da1f4c7e1888p+0},
    {-0x1.17936f307dbeep+1, -0x1.2435bb509e4c3p+0},
    {-0x1.b2b5434e77b52p+0, -0x1.09e03ce1d7340p+0},
};

} // namespace

TEST(PortableTrigTest, GivesTheNearestDoubleForAnglesOfRays)
{
    for (const Known& known : kKnown) {
        const auto [sin, cos] = PortableSinCos(known.angle);
        EXPECT_EQ(sin, known.sin) << known.angle;
        EXPECT_EQ(cos, known.cos) << known.angle;
    }
}

TEST(PortableTrigTest, GivesTheNearestDoubleForArcTangents)
{
    for (const KnownAtan& known : kKnownAtan)
        EXPECT_EQ(PortableAtan(known.ratio), known.atan) << known.ratio;
}

// The library of this system is within one unit of the last place.
TEST(PortableTrigTest, StaysWithinAUnitOfTheLibrary)
{
    std::mt19937_64 engine(7);
    for (int i = 0; i < 20000; ++i) {
        const double angle = double(engine() >> 11) * 0x1p-53 * 14 - 7;
        const auto [sin, cos] = PortableSinCos(angle);
        const double step = std::numeric_limits<double>::epsilon();
        EXPECT_NEAR(sin, std::sin(angle), step * std::abs(sin)) << angle;
        EXPECT_NEAR(cos, std::cos(angle), step * std::abs(cos)) << angle;
        const double ratio = std::tan(angle) * (i % 3 ? 1 : 1e6);
        EXPECT_NEAR(PortableAtan(ratio), std::atan(ratio), step * std::abs(std::atan(ratio)));
    }
}

TEST(PortableTrigTest, KeepsTheSpecialValues)
{
    EXPECT_EQ(PortableSinCos(0).sin, 0);
    EXPECT_EQ(PortableSinCos(0).cos, 1);
    EXPECT_TRUE(std::signbit(PortableSinCos(-0.0).sin));
    EXPECT_TRUE(std::isnan(PortableSinCos(std::numeric_limits<double>::infinity()).sin));
    EXPECT_EQ(PortableAtan(1) * 4, std::numbers::pi);
    EXPECT_EQ(PortableAtan(std::numeric_limits<double>::infinity()), std::numbers::pi / 2);
    EXPECT_EQ(PortableAtan(-1e300), -std::numbers::pi / 2);
    EXPECT_EQ(PortableAtan(1e-300), 1e-300);
    EXPECT_TRUE(std::isnan(PortableAtan(std::numeric_limits<double>::quiet_NaN())));
}

TEST(NautischNaarWiskundigTest, TurnsBearingsIntoAngles)
{
    EXPECT_EQ(NautischNaarWiskundig(90), 0);
    EXPECT_EQ(NautischNaarWiskundig(91), 359);
    EXPECT_EQ(NautischNaarWiskundig(0), 90);
    EXPECT_EQ(NautischNaarWiskundig(450), 0);
    EXPECT_EQ(NautischNaarWiskundig(-90), 180);
}

TEST(NautischNaarWiskundigTest, MayReachThreeHundredAndSixty)
{
    EXPECT_EQ(NautischNaarWiskundig(90 + 1e-14), 360);
}

TEST(Deg2RadTest, UsesFourTimesTheArcTangentOfOne)
{
    EXPECT_EQ(Deg2Rad(180), std::numbers::pi);
    EXPECT_EQ(Deg2Rad(5.625), std::numbers::pi * 5.625 / 180);
}
