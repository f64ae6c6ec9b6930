#include "geometry/ShapeLayerData.h"

#include "geometry/ShapeFileBytes.h"

#include <QtEndian>

#include <bit>
#include <cstring>
#include <stdexcept>

namespace geometry {
namespace {

// What is wrong, in words for behind a file name.
class BadFile : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Bytes with checked reads.
class Bytes {
public:
    explicit Bytes(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    std::size_t Size() const { return m_bytes.size(); }
    Bytes Sub(std::size_t place, std::size_t size) const
    {
        if (place > m_bytes.size() || size > m_bytes.size() - place)
            throw BadFile("het bestand is te kort");
        return Bytes(m_bytes.subspan(place, size));
    }
    std::int32_t Big(std::size_t place) const
    {
        return qFromBigEndian<qint32>(Sub(place, 4).m_bytes.data());
    }
    std::int32_t Little(std::size_t place) const
    {
        return qFromLittleEndian<qint32>(Sub(place, 4).m_bytes.data());
    }
    void AppendPoints(std::size_t place, std::size_t count, std::vector<Punt>& points) const
    {
        const Bytes from = Sub(place, count * sizeof(Punt));
        const std::size_t old = points.size();
        points.resize(old + count);
        if (count == 0)
            return;
        if constexpr (std::endian::native == std::endian::little) {
            std::memcpy(points.data() + old, from.m_bytes.data(), from.Size());
        } else {
            qFromLittleEndian<double>(from.m_bytes.data(), static_cast<qsizetype>(2 * count),
                                      points.data() + old);
        }
    }

private:
    std::span<const std::byte> m_bytes;
};

std::size_t Count(std::int32_t value)
{
    if (value < 0)
        throw BadFile("een aantal onder nul");
    return static_cast<std::size_t>(value);
}

class Reader {
public:
    Reader(Bytes shp, Bytes shx) : m_shp(shp), m_shx(shx) {}

    ShapeLayerData Read()
    {
        ReadHeader();
        // The records take most of the file, and points most of the records.
        m_data.points.reserve(m_shp.Size() / sizeof(Punt));
        if (m_shx.Size() > 0)
            ReadByIndex();
        else
            ReadInOrder();
        if (m_data.points.capacity() - m_data.points.size() > m_data.points.size() / 8)
            m_data.points.shrink_to_fit();
        return std::move(m_data);
    }

private:
    void ReadHeader()
    {
        CheckFileCode(m_shp);
        m_type = m_shp.Little(kTypePlace);
        switch (m_type % 10) {
        case 1:
            m_data.kind = ShapeLayerData::Kind::Point;
            break;
        case 3:
            m_data.kind = ShapeLayerData::Kind::Line;
            break;
        case 5:
            m_data.kind = ShapeLayerData::Kind::Polygon;
            break;
        case 8:
            m_data.kind = ShapeLayerData::Kind::MultiPoint;
            break;
        default:
            throw BadFile("een onbekende soort vormen");
        }
        if (m_type < 0 || m_type > 28)
            throw BadFile("een onbekende soort vormen");
    }

    static void CheckFileCode(const Bytes& file)
    {
        file.Sub(0, kShapeHeaderSize);
        if (file.Big(0) != kShapeFileCode)
            throw BadFile("het is geen shapebestand");
    }

    void ReadByIndex()
    {
        CheckFileCode(m_shx);
        const std::size_t count = (m_shx.Size() - kShapeHeaderSize) / kIndexRecordSize;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t offset =
                Count(m_shx.Big(kShapeHeaderSize + kIndexRecordSize * i)) * 2;
            if (m_shp.Big(offset) != static_cast<std::int32_t>(i + 1))
                throw BadFile("de index past niet bij de vormen");
            ReadRecord(offset);
        }
    }

    void ReadInOrder()
    {
        std::size_t offset = kShapeHeaderSize;
        while (offset < m_shp.Size())
            offset += kRecordHeaderSize + ReadRecord(offset);
    }

    // The size of the record's content in bytes.
    std::size_t ReadRecord(std::size_t offset)
    {
        const std::size_t size = Count(m_shp.Big(offset + 4)) * 2;
        const Bytes content = m_shp.Sub(offset + kRecordHeaderSize, size);
        const std::int32_t type = content.Little(0);
        if (type != 0) {
            if (type != m_type)
                throw BadFile("een vorm van een andere soort");
            ReadContent(content);
            // Of records that lie inside each other a small file could announce
            // more points than there is memory.
            if (m_data.points.size() * sizeof(Punt) + m_data.PartCount() * 4 > m_shp.Size())
                throw BadFile("vormen die elkaar overlappen");
        }
        m_data.shapeStarts.push_back(Place(m_data.PartCount()));
        return size;
    }

    void ReadContent(const Bytes& content)
    {
        switch (m_data.kind) {
        case ShapeLayerData::Kind::Point:
            content.AppendPoints(4, 1, m_data.points);
            EndPart();
            break;
        case ShapeLayerData::Kind::MultiPoint:
            content.AppendPoints(40, Count(content.Little(36)), m_data.points);
            EndPart();
            break;
        case ShapeLayerData::Kind::Line:
        case ShapeLayerData::Kind::Polygon:
            ReadParts(content);
            break;
        }
    }

    void ReadParts(const Bytes& content)
    {
        const std::size_t parts = Count(content.Little(36));
        const std::size_t points = Count(content.Little(40));
        const Bytes starts = content.Sub(44, 4 * parts);
        const std::size_t base = m_data.points.size();
        content.AppendPoints(44 + 4 * parts, points, m_data.points);
        std::size_t start = parts > 0 ? Count(starts.Little(0)) : points;
        if (start != 0)
            throw BadFile("punten buiten de delen");
        for (std::size_t k = 0; k < parts; ++k) {
            const std::size_t end = k + 1 < parts ? Count(starts.Little(4 * (k + 1))) : points;
            if (end < start || end > points)
                throw BadFile("delen die niet op elkaar volgen");
            m_data.partStarts.push_back(Place(base + end));
            start = end;
        }
    }

    void EndPart() { m_data.partStarts.push_back(Place(m_data.points.size())); }

    static std::uint32_t Place(std::size_t place) { return static_cast<std::uint32_t>(place); }

    Bytes m_shp;
    Bytes m_shx;
    std::int32_t m_type = 0;
    ShapeLayerData m_data;
};

} // namespace

std::optional<ShapeLayerData> ReadShapeLayer(std::span<const std::byte> shp,
                                             std::span<const std::byte> shx, QString& error)
{
    try {
        return Reader(Bytes(shp), Bytes(shx)).Read();
    } catch (const BadFile& bad) {
        error = QString::fromLatin1(bad.what());
    } catch (const std::bad_alloc&) {
        error = QStringLiteral("het bestand is te groot");
    }
    return std::nullopt;
}

} // namespace geometry
