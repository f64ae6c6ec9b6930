#pragma once

#include <cmath>

/// Places, sizes and column widths in ini files and forms are in twips, 1/1440
/// inch; a screen of the reference resolution has 96 dots per inch. Qt's own
/// device-independent pixel is that dot, also on a screen with a higher one.
inline constexpr int kTwipsPerPixel = 15;

inline int TwipsToPixels(double twips)
{
    return static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

inline int PixelsToTwips(int pixels)
{
    return pixels * kTwipsPerPixel;
}
