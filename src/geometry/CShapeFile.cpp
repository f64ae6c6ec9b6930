#include "geometry/CShapeFile.h"

#include "frame/Numbers.h"
#include "frame/Paths.h"
#include "geometry/ShapeFileBytes.h"

#include <algorithm>

using namespace geometry;

namespace {

enum Number : quint32 {
    RecordMismatch = 0x80040205,
    OffsetTooLarge = 0x80040206,
    InvalidFileCode = 0x80040207,
    FileMissing = 0x8004020C,
    TypeMissing = 0x8004020D,
    TypeMismatch = 0x8004020E,
    WrongFileType = 0x80040210,
    InvalidShape = 0x80040211,
};

[[noreturn]] void Raise(Number number, const QString& source, const QString& text)
{
    throw Fout(static_cast<int>(number), text, source);
}

// Whatever fails inside `body` names `source`, as the private routines do.
template <typename Body>
auto AsSource(const QString& source, Body&& body)
{
    try {
        return body();
    } catch (const Fout& fout) {
        throw Fout(fout.Number(), fout.Description(), source);
    }
}

std::shared_ptr<CPoint> PointAt(const QByteArray& points, qint64 index)
{
    return std::make_shared<CPoint>(DoubleAt(points, 16 * index), DoubleAt(points, 16 * index + 8));
}

// A count from a file that no file could hold must not become an allocation.
// A file cut off may still announce more than it has: that reads as zeros.
void CheckCount(qint64 count, qint64 elementSize, const QFile& file)
{
    constexpr int kOutOfMemory = 7;
    constexpr qint64 kAlwaysAllowed = 1024 * 1024;
    if (count < 0)
        RaiseDamaged(file, RuntimeFout::OutOfRange);
    if (count * elementSize > std::max(file.size(), kAlwaysAllowed))
        RaiseDamaged(file, kOutOfMemory);
}

// Takes away what was appended to a pair, unless told that the record is
// complete: a disk that is full must not leave an index without its record.
// The headers are overwritten in place and need no room.
class RecordInTheMaking {
public:
    RecordInTheMaking(QFile& shp, QFile& shx)
        : m_shp(shp), m_shx(shx), m_shpSize(shp.size()), m_shxSize(shx.size())
    {}
    ~RecordInTheMaking()
    {
        if (m_complete)
            return;
        m_shp.resize(m_shpSize);
        m_shx.resize(m_shxSize);
    }
    RecordInTheMaking(const RecordInTheMaking&) = delete;
    RecordInTheMaking& operator=(const RecordInTheMaking&) = delete;
    void Complete() { m_complete = true; }

private:
    QFile& m_shp;
    QFile& m_shx;
    qint64 m_shpSize;
    qint64 m_shxSize;
    bool m_complete = false;
};

} // namespace

struct CShapeFile::Sources {
    QString recordMismatch;
    QString offset;
    QString typeMismatch;
};

void CShapeFile::SetFileSpec(const CFileName& file, qint32 status, std::optional<qint32> shapeType)
{
    const QString source = QStringLiteral("C_ShapeFile::SetFileSpec");
    m_shp.close();
    m_shx.close();
    m_fileName = file;
    const auto path = [&](const QString& extension) {
        m_fileName.SetExtension(extension);
        if (FileExists(m_fileName.GetFileSpec())) {
            if (status == CREATEIT && !QFile::remove(ResolvePath(m_fileName.GetFileSpec())))
                RaiseRuntimeFout(RuntimeFout::FileAccess,
                                 "Het bestand kan niet worden vervangen.|" +
                                     m_fileName.GetFileSpec());
        } else if (status == OPENIT) {
            Raise(FileMissing, source,
                  "The specified file " + m_fileName.GetFileSpec() + " does not exist.");
        }
        return ResolvePath(m_fileName.GetFileSpec());
    };
    const QString shp = path(QStringLiteral("shp"));
    const QString shx = path(QStringLiteral("shx"));
    m_fileName = file;
    OpenFiles(shp, shx, status == OPENIT);

    if (status != OPENIT) {
        if (!shapeType)
            Raise(TypeMissing, source,
                  QStringLiteral("The ShapeType argument is not optional when argument status is "
                                 "CREATEIT"));
        m_shapeType = *shapeType;
        m_count = 0;
        m_bounds.MakeEmpty();
        PutMainHeaders();
        return;
    }
    m_shxHeader = ReadMainHeader(m_shx, nullptr);
    if (m_shxHeader.fileCode != kShapeFileCode) {
        m_shx.close();
        Raise(InvalidFileCode, source,
              QStringLiteral("The shx file has an invalid shape code in the main header."));
    }
    m_shpHeader = ReadMainHeader(m_shp, &m_bounds);
    if (m_shpHeader.fileCode != kShapeFileCode) {
        m_shp.close();
        Raise(InvalidFileCode, source,
              QStringLiteral("The shp file has an invalid shape code in the main header."));
    }
    m_count = static_cast<qint32>(RoundToEven((double(m_shxHeader.length) - 50) / 4));
    m_shapeType = m_shpHeader.shapeType;
}

// An existing pair that may not be written is opened for reading. Without a
// buffer, in which a write that failed would wait for another chance.
void CShapeFile::OpenFiles(const QString& shp, const QString& shx, bool existing)
{
    m_shx.setFileName(shx);
    m_shp.setFileName(shp);
    for (QFile* file : {&m_shx, &m_shp}) {
        QIODevice::OpenMode mode = QIODevice::ReadWrite | QIODevice::Unbuffered;
        if (existing)
            mode |= QIODevice::ExistingOnly;
        if (file->open(mode) ||
            (existing && file->open(QIODevice::ReadOnly | QIODevice::Unbuffered)))
            continue;
        RaiseRuntimeFout(RuntimeFout::FileAccess,
                         "Het bestand kan niet worden geopend.|" + file->fileName());
    }
}

CShapeFile::MainHeader CShapeFile::ReadMainHeader(QFile& file, CRect* bounds)
{
    const QByteArray bytes = ReadAt(file, 0, kShapeHeaderSize);
    if (bounds)
        bounds->MakeXY(DoubleAt(bytes, 36), DoubleAt(bytes, 60), DoubleAt(bytes, 52),
                       DoubleAt(bytes, 44));
    return {BigAt(bytes, 0), BigAt(bytes, kLengthPlace), LittleAt(bytes, kTypePlace)};
}

std::shared_ptr<IShape> CShapeFile::Item(qint32 index)
{
    switch (m_shapeType) {
    case Point:
        return ReadPoint(index);
    case PolyLine:
        return ReadPolyLine(index);
    case Polygon:
        return ReadPolygon(index);
    case MultiPoint:
        return ReadMultiPoint(index);
    default:
        return nullptr;
    }
}

CShapeFile::RecordPlace CShapeFile::FindOffset(qint32 index)
{
    return AsSource(QStringLiteral("C_ShapeFile::FindOffset"), [&]() -> RecordPlace {
        const qint64 position = kShapeHeaderSize + (qint64(index) - 1) * kIndexRecordSize;
        if (position + 1 > m_shx.size() - 7)
            return {};
        const QByteArray bytes = ReadAt(m_shx, position, kIndexRecordSize);
        return {true, BigAt(bytes, 0), BigAt(bytes, 4)};
    });
}

void CShapeFile::GetRecordHeader(qint32 offset)
{
    AsSource(QStringLiteral("C_ShapeFile::GetRecordHeader"), [&] {
        const QByteArray bytes = ReadAt(m_shp, qint64(offset) * 2, kRecordHeaderSize);
        m_recordNumber = BigAt(bytes, 0);
        m_contentLength = BigAt(bytes, 4);
    });
}

// The position behind the record's shape type, or -1 when the index does not
// reach that far and `sources` has no name for that failure.
qint64 CShapeFile::OpenRecord(qint32 index, const Sources& sources)
{
    const RecordPlace place = FindOffset(index);
    if (!place.found) {
        if (sources.offset.isEmpty())
            return -1;
        Raise(OffsetTooLarge, sources.offset,
              QStringLiteral("The offset read from index file is larger then the mainfile size"));
    }
    GetRecordHeader(place.offset);
    if (m_recordNumber != index)
        Raise(RecordMismatch, sources.recordMismatch,
              QStringLiteral("Index Record does not match main file Record"));
    const qint64 content = qint64(place.offset) * 2 + kRecordHeaderSize;
    const qint32 type = LittleAt(ReadAt(m_shp, content, 4), 0);
    if (type != m_shapeType || type == Null)
        Raise(TypeMismatch, sources.typeMismatch,
              QStringLiteral("A shape type does not match main header type."));
    return content + 4;
}

std::shared_ptr<CPoint> CShapeFile::ReadPoint(qint32 index)
{
    const QString source = QStringLiteral("CShapeFile::ReadPoint");
    const qint64 position = OpenRecord(index, {source, {}, source});
    return position < 0 ? nullptr : PointAt(ReadAt(m_shp, position, 16), 0);
}

std::shared_ptr<CPolyLine> CShapeFile::ReadPolyLine(qint32 index)
{
    const QString source = QStringLiteral("CShapeFile::ReadPolyLine");
    // The polyline reader's type check calls itself by the polygon reader's name.
    return ReadParts<CPolyLine>(index, {source, source, QStringLiteral("CShapeFile::ReadPolygon")});
}

std::shared_ptr<CPolygon> CShapeFile::ReadPolygon(qint32 index)
{
    const QString source = QStringLiteral("CShapeFile::ReadPolygon");
    return ReadParts<CPolygon>(index, {source, source, source});
}

std::shared_ptr<CMultiPoint> CShapeFile::ReadMultiPoint(qint32 index)
{
    const qint64 position = OpenRecord(index, {QStringLiteral("CShape_IO::ReadMultiPoint"),
                                               QStringLiteral("C_ShapeFile::ReadMultiPoint"),
                                               QStringLiteral("C_ShapeFile::ReadPolys")});
    auto shape = std::make_shared<CMultiPoint>();
    const qint32 count = LittleAt(ReadAt(m_shp, position + 32, 4), 0);
    CheckCount(count, 16, m_shp);
    const QByteArray points = ReadAt(m_shp, position + 36, 16 * qint64(count));
    for (qint32 i = 0; i < count; ++i)
        shape->Add(PointAt(points, i));
    ReadBox(*shape, position); // after the points, which set bounds too
    return shape;
}

template <typename Shape>
void CShapeFile::ReadBox(Shape& shape, qint64 position)
{
    const QByteArray box = ReadAt(m_shp, position, 32);
    shape.m_bounds.MakeXY(DoubleAt(box, 0), DoubleAt(box, 24), DoubleAt(box, 16), DoubleAt(box, 8));
}

template <typename Shape>
std::shared_ptr<Shape> CShapeFile::ReadParts(qint32 index, const Sources& sources)
{
    const qint64 position = OpenRecord(index, sources);
    auto shape = std::make_shared<Shape>();
    const QByteArray counts = ReadAt(m_shp, position + 32, 8);
    const qint64 partCount = LittleAt(counts, 0);
    const qint64 pointCount = LittleAt(counts, 4);
    CheckCount(partCount, 4, m_shp);
    CheckCount(pointCount, 16, m_shp);
    const QByteArray starts = ReadAt(m_shp, position + 40, 4 * partCount);
    const QByteArray points = ReadAt(m_shp, position + 40 + 4 * partCount, 16 * pointCount);
    for (qint64 k = 0; k < partCount; ++k) {
        const qint64 first = LittleAt(starts, 4 * k);
        const qint64 end = k + 1 < partCount ? LittleAt(starts, 4 * (k + 1)) : pointCount;
        // Parts that fall back would take points twice, and a small file that is
        // damaged all the memory there is.
        if (first < 0 || first > end || end > pointCount)
            RaiseDamaged(m_shp, RuntimeFout::OutOfRange);
        auto part = std::make_shared<CPart>();
        for (qint64 i = first; i < end; ++i)
            part->Add(PointAt(points, i));
        shape->Add(part);
    }
    ReadBox(*shape, position);
    return shape;
}

void CShapeFile::Add(const ShapeObject& shape)
{
    if (const auto* point = dynamic_cast<const CPoint*>(&shape)) {
        CheckFileType(Point, QStringLiteral("CPoint"));
        point->IsNull() ? PutNull() : PutPoints(*point);
    } else if (const auto* line = dynamic_cast<const CPolyLine*>(&shape)) {
        CheckFileType(PolyLine, QStringLiteral("CPolyline"));
        line->IsNull() ? PutNull() : PutPolyLine(*line);
    } else if (const auto* polygon = dynamic_cast<const CPolygon*>(&shape)) {
        CheckFileType(Polygon, QStringLiteral("CPolygon"));
        polygon->IsNull() ? PutNull() : PutPolygon(*polygon);
    } else if (const auto* points = dynamic_cast<const CMultiPoint*>(&shape)) {
        // Only into a point file, and with the words of the point: see above.
        CheckFileType(Point, QStringLiteral("CPoint"));
        points->IsNull() ? PutNull() : PutMultiPoints(*points);
    } else {
        Raise(InvalidShape, QStringLiteral("CShapeFile::Add"),
              QStringLiteral("Invalid shape type"));
    }
}

void CShapeFile::CheckFileType(qint32 required, const QString& typeName) const
{
    if (m_shapeType != required)
        Raise(WrongFileType, QStringLiteral("CShapeFile::Add"),
              "Cannot add type " + typeName + " to a ShapeFile initialized as other type");
}

void CShapeFile::PutMainHeaders()
{
    AsSource(QStringLiteral("CShapeFile::PutMainHeaders"), [&] {
        QByteArray header;
        PutBig(header, kShapeFileCode);
        for (int unused = 0; unused < 5; ++unused)
            PutBig(header, 0);
        PutBig(header, 0); // the length: written with the first record
        PutLittle(header, kShapeFileVersion);
        PutLittle(header, m_shapeType);
        for (const double bound :
             {m_bounds.Left(), m_bounds.Bottom(), m_bounds.Right(), m_bounds.Top()})
            PutDouble(header, bound);
        for (int zAndM = 0; zAndM < 4; ++zAndM)
            PutDouble(header, 0);
        WriteAt(m_shp, 0, header);
        WriteAt(m_shx, 0, header);
    });
}

void CShapeFile::PutNull()
{
    AsSource(QStringLiteral("CShapeFile::PutNull"), [&] {
        constexpr qint64 kWords = 2;
        QByteArray index;
        PutBig(index, m_shp.size() / 2);
        PutBig(index, kWords);
        QByteArray record;
        PutBig(record, qint64(m_count) + 1);
        PutBig(record, kWords);
        record.append(2, '\0'); // two bytes, not four: see the class
        RecordInTheMaking making(m_shp, m_shx);
        Append(m_shx, index);
        Append(m_shp, record);
        making.Complete();
        ++m_count;
    });
}

void CShapeFile::PutPoints(const CPoint& point)
{
    AsSource(QStringLiteral("C_ShapeFile::PutPoints"), [&] {
        QByteArray body;
        PutDouble(body, point.X());
        PutDouble(body, point.Y());
        PutRecord(body, point);
    });
}

void CShapeFile::PutPolyLine(const CPolyLine& line)
{
    AsSource(QStringLiteral("CShapeFile::PutPolyLine"), [&] { PutRecord(PartsBody(line), line); });
}

void CShapeFile::PutPolygon(const CPolygon& polygon)
{
    AsSource(QStringLiteral("CShapeFile::PutPolygon"),
             [&] { PutRecord(PartsBody(polygon), polygon); });
}

void CShapeFile::PutMultiPoints(const CMultiPoint& points)
{
    AsSource(QStringLiteral("CShapeFile::PutMultiPoints"), [&] {
        QByteArray body = Box(points);
        PutLittle(body, points.Count());
        for (const auto& point : points) {
            PutDouble(body, point->X());
            PutDouble(body, point->Y());
        }
        PutRecord(body, points);
    });
}

QByteArray CShapeFile::Box(const IShape& shape) const
{
    QByteArray box;
    for (const double bound : {shape.Left(), shape.Bottom(), shape.Right(), shape.Top()})
        PutDouble(box, bound);
    return box;
}

template <typename Shape>
QByteArray CShapeFile::PartsBody(const Shape& shape) const
{
    QByteArray starts;
    QByteArray points;
    qint64 count = 0;
    for (const auto& part : shape) {
        PutLittle(starts, count);
        count += part->Count();
        for (const auto& point : *part) {
            PutDouble(points, point->X());
            PutDouble(points, point->Y());
        }
    }
    QByteArray body = Box(shape);
    PutLittle(body, shape.Count());
    PutLittle(body, count);
    return body + starts + points;
}

// The index first, then the record, then both lengths, then the bounds. The
// shape type stands in front of every body.
void CShapeFile::PutRecord(const QByteArray& body, const IShape& shape)
{
    const qint64 words = (4 + qint64(body.size())) / 2;
    QByteArray index;
    PutBig(index, m_shp.size() / 2);
    PutBig(index, words);
    RecordInTheMaking making(m_shp, m_shx);
    Append(m_shx, index);

    QByteArray record;
    PutBig(record, qint64(m_count) + 1);
    PutBig(record, words);
    PutLittle(record, m_shapeType);
    Append(m_shp, record + body);
    making.Complete();

    for (QFile* file : {&m_shx, &m_shp}) {
        QByteArray length;
        PutBig(length, file->size() / 2);
        WriteAt(*file, kLengthPlace, length);
    }
    ++m_count;
    PutExtent(shape);
}

void CShapeFile::PutExtent(const IShape& shape)
{
    AsSource(QStringLiteral("CShapeFile::PutExtent"), [&] {
        bool changed = true;
        if (m_count == 1)
            m_bounds.MakeBoundsOf(shape);
        else
            changed = m_bounds.Widen(shape);
        if (!changed)
            return;
        const QByteArray bounds = Box(m_bounds);
        WriteAt(m_shp, kBoundsPlace, bounds);
        WriteAt(m_shx, kBoundsPlace, bounds);
    });
}
