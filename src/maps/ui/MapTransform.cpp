#include "maps/ui/MapTransform.h"

#include <algorithm>
#include <cmath>

void MapTransform::SetSize(QSizeF pixels)
{
    m_size = {std::max(1.0, pixels.width()), std::max(1.0, pixels.height())};
    Fit();
}

void MapTransform::SetExtent(const MapRectangle& extent)
{
    m_asked = {std::min(extent.left, extent.right), std::max(extent.top, extent.bottom),
               std::max(extent.left, extent.right), std::min(extent.top, extent.bottom)};
    Fit();
}

void MapTransform::Fit()
{
    const double width = m_asked.right - m_asked.left;
    const double height = m_asked.top - m_asked.bottom;
    if (!std::isfinite(width) || !std::isfinite(height))
        return;
    m_centre = {m_asked.left + width / 2, m_asked.bottom + height / 2};
    const double scale = std::max(width / m_size.width(), height / m_size.height());
    if (scale > 0)
        m_scale = std::clamp(scale, kFinest, kCoarsest);
}

void MapTransform::Remember()
{
    m_asked = Extent();
}

MapRectangle MapTransform::Extent() const
{
    const double aside = m_size.width() / 2 * m_scale;
    const double above = m_size.height() / 2 * m_scale;
    return {m_centre.x() - aside, m_centre.y() + above, m_centre.x() + aside, m_centre.y() - above};
}

QPointF MapTransform::ToPixel(double x, double y) const
{
    return {m_size.width() / 2 + (x - m_centre.x()) / m_scale,
            m_size.height() / 2 - (y - m_centre.y()) / m_scale};
}

QPointF MapTransform::ToMap(QPointF pixel) const
{
    return {m_centre.x() + (pixel.x() - m_size.width() / 2) * m_scale,
            m_centre.y() - (pixel.y() - m_size.height() / 2) * m_scale};
}

void MapTransform::Zoom(double factor, QPointF fixed)
{
    if (!(factor > 0) || !std::isfinite(factor))
        return;
    const QPointF before = ToMap(fixed);
    m_scale = std::clamp(m_scale / factor, kFinest, kCoarsest);
    m_centre += before - ToMap(fixed);
    Remember();
}

void MapTransform::Zoom(double factor)
{
    Zoom(factor, {m_size.width() / 2, m_size.height() / 2});
}

void MapTransform::Pan(QPointF pixels)
{
    m_centre += QPointF(-pixels.x() * m_scale, pixels.y() * m_scale);
    Remember();
}
