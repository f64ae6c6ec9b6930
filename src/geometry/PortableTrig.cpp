#include "geometry/PortableTrig.h"

#include <cmath>
#include <numbers>

// Double-double arithmetic after Dekker (1971) and Knuth: a value is the
// unevaluated sum hi + lo with |lo| at most half a unit in the last place of
// hi. It needs plain IEEE doubles: no fused multiply-add, no fast-math.

namespace geometry {
namespace {

struct DoubleDouble {
    double hi = 0;
    double lo = 0;
};

DoubleDouble TwoSum(double a, double b)
{
    const double sum = a + b;
    const double bPart = sum - a;
    return {sum, (a - (sum - bPart)) + (b - bPart)};
}

// Halves of 26 bits, whose products are exact.
DoubleDouble Split(double a)
{
    const double scaled = 134217729.0 * a; // 2^27 + 1
    const double hi = scaled - (scaled - a);
    return {hi, a - hi};
}

DoubleDouble TwoProduct(double a, double b)
{
    const double product = a * b;
    const DoubleDouble x = Split(a);
    const DoubleDouble y = Split(b);
    return {product, ((x.hi * y.hi - product) + x.hi * y.lo + x.lo * y.hi) + x.lo * y.lo};
}

DoubleDouble operator+(DoubleDouble a, DoubleDouble b)
{
    const DoubleDouble high = TwoSum(a.hi, b.hi);
    const DoubleDouble low = TwoSum(a.lo, b.lo);
    const DoubleDouble sum = TwoSum(high.hi, high.lo + low.hi);
    return TwoSum(sum.hi, sum.lo + low.lo);
}

DoubleDouble operator-(DoubleDouble a)
{
    return {-a.hi, -a.lo};
}

DoubleDouble operator*(DoubleDouble a, DoubleDouble b)
{
    const DoubleDouble product = TwoProduct(a.hi, b.hi);
    return TwoSum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

DoubleDouble operator/(DoubleDouble a, double divisor)
{
    const double quotient = a.hi / divisor;
    const DoubleDouble back = TwoProduct(quotient, divisor);
    const DoubleDouble rest = a + -back;
    return TwoSum(quotient, rest.hi / divisor);
}

struct SinCosPair {
    DoubleDouble sin;
    DoubleDouble cos;
};

// The power series; |x| is at most about pi / 4, where the terms left out are
// below 1E-33.
SinCosPair SmallSinCos(DoubleDouble x)
{
    const DoubleDouble minusSquare = -(x * x);
    SinCosPair result{x, {1, 0}};
    DoubleDouble sinTerm = x;
    DoubleDouble cosTerm{1, 0};
    for (int n = 1; n <= 14; ++n) {
        cosTerm = cosTerm * minusSquare / ((2.0 * n - 1) * (2.0 * n));
        sinTerm = sinTerm * minusSquare / ((2.0 * n) * (2.0 * n + 1));
        result.cos = result.cos + cosTerm;
        result.sin = result.sin + sinTerm;
    }
    return result;
}

SinCosPair ExactSinCos(double angle)
{
    // pi / 2 as three doubles: beside a multiple of it the first two cancel.
    constexpr double kPart1 = 0x1.921fb54442d18p+0;
    constexpr double kPart2 = 0x1.1a62633145c07p-54;
    constexpr double kPart3 = -0x1.f1976b7ed8fbcp-110;
    const double quarters = std::nearbyint(angle / kPart1);
    const DoubleDouble rest = DoubleDouble{angle, 0} + -TwoProduct(quarters, kPart1) +
                              -TwoProduct(quarters, kPart2) + -TwoProduct(quarters, kPart3);
    const SinCosPair small = SmallSinCos(rest);
    switch (static_cast<long>(quarters) & 3) {
    case 0:
        return small;
    case 1:
        return {small.cos, -small.sin};
    case 2:
        return {-small.sin, -small.cos};
    default:
        return {-small.cos, small.sin};
    }
}

} // namespace

SinCos PortableSinCos(double angle)
{
    constexpr double kThousandTurns = 2000 * std::numbers::pi;
    if (!(std::abs(angle) < kThousandTurns))
        return {std::sin(angle), std::cos(angle)};
    if (angle == 0)
        return {angle, 1};
    const SinCosPair pair = ExactSinCos(angle);
    return {pair.sin.hi, pair.cos.hi};
}

double PortableAtan(double ratio)
{
    constexpr double kHalfPi = 0x1.921fb54442d18p+0;
    const double size = std::abs(ratio);
    if (size < 1e-9) // the next term, ratio^3 / 3, is below half a unit of the last place
        return ratio;
    if (size > 1e18)
        return std::copysign(kHalfPi, ratio);
    if (std::isnan(ratio))
        return ratio;
    // One Newton step from the library's value, in double-double:
    // atan r = a + atan((r cos a - sin a) / (cos a + r sin a)).
    const double guess = std::atan(ratio);
    const SinCosPair at = ExactSinCos(guess);
    const DoubleDouble r{ratio, 0};
    const DoubleDouble over = r * at.cos + -at.sin;
    const DoubleDouble under = at.cos + r * at.sin;
    return guess + over.hi / under.hi;
}

} // namespace geometry
