#include "frame/ui/Colours.h"

#include <cmath>

double Luminance(const QColor& colour)
{
    return 0.299 * colour.redF() + 0.587 * colour.greenF() + 0.114 * colour.blueF();
}

QColor VisibleOn(const QColor& background, const QColor& colour)
{
    constexpr double kEnough = 0.25;
    if (std::abs(Luminance(colour) - Luminance(background)) >= kEnough)
        return colour;
    const double lightness = Luminance(background) < 0.5 ? 0.75 : 0.3;
    return QColor::fromHslF(qMax(0.0F, colour.hslHueF()), colour.hslSaturationF(),
                            static_cast<float>(lightness));
}
