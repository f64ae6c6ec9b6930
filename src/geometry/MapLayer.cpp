#include "geometry/MapLayer.h"

#include "frame/Paths.h"
#include "geometry/modStrijklengte.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>

using geometry::Punt;
using geometry::RingIndex;
using geometry::ShapeLayerData;

namespace {

// Offsets in a shape file count 16-bit words and have 31 bits. A file beyond
// that is none, and its size no reason to ask for so much memory.
constexpr qint64 kLargestFile = 2 * qint64(std::numeric_limits<qint32>::max());

// Nothing when the file cannot be read whole.
std::optional<std::vector<std::byte>> ReadFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::nullopt;
    std::vector<std::byte> bytes(static_cast<std::size_t>(file.size()));
    const qint64 size = static_cast<qint64>(bytes.size());
    for (qint64 done = 0; done < size;) {
        const qint64 count = file.read(reinterpret_cast<char*>(bytes.data()) + done, size - done);
        if (count <= 0)
            return std::nullopt;
        done += count;
    }
    return bytes;
}

} // namespace

MapLayer::MapLayer(const QString& file) : m_file(file)
{
    Read();
}

MapLayer::Files MapLayer::Paths() const
{
    QString stem = m_file;
    if (stem.endsWith(QLatin1String(".shp"), Qt::CaseInsensitive))
        stem.chop(4);
    return {ResolvePath(stem + ".shp"), ResolvePath(stem + ".shx")};
}

MapLayer::Stamp MapLayer::StampOf(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() ? Stamp{info.size(), info.lastModified()} : Stamp{};
}

void MapLayer::Read()
{
    m_rings.clear();
    m_data.reset();
    m_error.clear();
    const Files files = Paths();
    // Before the reading: a file that changes meanwhile is read again.
    m_shpStamp = StampOf(files.shp);
    m_shxStamp = StampOf(files.shx);
    if (std::max(m_shpStamp.size, m_shxStamp.size) > kLargestFile) {
        m_error = QStringLiteral("het bestand is te groot");
        return;
    }
    try {
        {
            const auto shp = ReadFile(files.shp);
            const auto shx = m_shxStamp.size >= 0 ? ReadFile(files.shx) : std::vector<std::byte>();
            if (!shp || !shx) {
                m_error = QStringLiteral("het bestand kan niet worden gelezen");
                return;
            }
            m_data = geometry::ReadShapeLayer(*shp, *shx, m_error);
        } // the bytes go before the indexes come
        if (m_data && m_data->kind == ShapeLayerData::Kind::Polygon) {
            m_rings.reserve(m_data->PartCount());
            for (std::size_t k = 0; k < m_data->PartCount(); ++k)
                m_rings.emplace_back(m_data->Part(k));
        }
    } catch (const std::bad_alloc&) {
        m_rings.clear();
        m_data.reset();
        m_error = QStringLiteral("het bestand is te groot");
    }
}

bool MapLayer::IsCurrent() const
{
    const Files files = Paths();
    const Stamp shp = StampOf(files.shp);
    return shp.size >= 0 && shp == m_shpStamp && StampOf(files.shx) == m_shxStamp;
}

bool MapLayer::Refresh()
{
    if (!IsCurrent())
        Read();
    return Valid();
}

int MapLayer::shapeType() const
{
    if (!m_data)
        return None;
    switch (m_data->kind) {
    case ShapeLayerData::Kind::Point:
    case ShapeLayerData::Kind::MultiPoint:
        return Point;
    case ShapeLayerData::Kind::Line:
        return Line;
    case ShapeLayerData::Kind::Polygon:
        return Polygon;
    }
    return None;
}

std::span<const RingIndex> MapLayer::Rings(std::size_t shape) const
{
    if (m_rings.empty())
        return {};
    const std::size_t first = m_data->shapeStarts[shape];
    return std::span(m_rings).subspan(first, m_data->shapeStarts[shape + 1] - first);
}

std::vector<std::size_t> MapLayer::SearchPointInPolygon(Punt p) const
{
    std::vector<std::size_t> found;
    for (std::size_t shape = 0; shape < ShapeCount(); ++shape) {
        bool inside = false;
        for (const RingIndex& ring : Rings(shape))
            inside = inside != PuntInRing(ring, p);
        if (inside)
            found.push_back(shape);
    }
    return found;
}

std::size_t MapLayer::MemoryUse() const
{
    std::size_t bytes = m_rings.capacity() * sizeof(RingIndex);
    for (const RingIndex& ring : m_rings)
        bytes += ring.MemoryUse();
    if (m_data)
        bytes += m_data->points.capacity() * sizeof(Punt) +
                 (m_data->partStarts.capacity() + m_data->shapeStarts.capacity()) *
                     sizeof(std::uint32_t);
    return bytes;
}
