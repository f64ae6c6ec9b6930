#pragma once

namespace geometry {

/// Sine, cosine and arc tangent with the same bits on every platform.
///
/// The functions of the C library differ in the last bit from one system to
/// the next, and through the intersections a fetch differs with them. These
/// work in double-double arithmetic (about 31 digits) and round once, so that
/// the result is the double nearest to the true value.
///
/// Angles are in radians. Beyond a thousand turns, where no bearing gets, and
/// for values that are not finite, the C library's answer is returned.
struct SinCos {
    double sin;
    double cos;
};
SinCos PortableSinCos(double angle);
double PortableAtan(double ratio);

} // namespace geometry
