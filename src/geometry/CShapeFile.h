#pragma once

#include "frame/QLMFile.h"
#include "geometry/CollectedShapes.h"

#include <QFile>

#include <optional>

/// Reader and writer of an ESRI shape-file pair: the main file (.shp) and its
/// index (.shx), record by record and directly on the disc. Only the two main
/// headers are kept in memory.
///
/// Failures are raised as `Fout` with the numbers 0x80040205 to 0x80040211 and
/// the source texts that callers have always seen, odd ones included. What a
/// file lacks at its end reads as zeros.
///
/// Three habits look like mistakes and are kept, because files out there are
/// made that way:
/// - a null record has two bytes of content, though its length says four, and
///   does not touch the headers: `Count` is too low when the pair is reopened,
///   while `Item` still finds the record;
/// - a multipoint goes into a point file, in front of its body type 1;
/// - `Count` of an opened pair without records is below 1, not 0.
class CShapeFile {
public:
    enum Status : qint32 { OPENIT = 0, CREATEIT = 1 };
    enum ShapeType : qint32 { Null = 0, Point = 1, PolyLine = 3, Polygon = 5, MultiPoint = 8 };

    CShapeFile() = default;
    CShapeFile(const CShapeFile&) = delete;
    CShapeFile& operator=(const CShapeFile&) = delete;

    /// Binds the object to a pair, until its end of life: opens an existing one
    /// (OPENIT), or deletes it and starts a new one of `shapeType` (CREATEIT).
    void SetFileSpec(const CFileName& file, qint32 status,
                     std::optional<qint32> shapeType = std::nullopt);

    double Left() const { return m_bounds.Left(); }
    double Right() const { return m_bounds.Right(); }
    double Top() const { return m_bounds.Top(); }
    double Bottom() const { return m_bounds.Bottom(); }
    qint32 Count() const { return m_count; }
    qint32 FileType() const { return m_shapeType; }

    /// Record `index`, from 1. A point that is not there gives nothing, any
    /// other shape raises 0x80040206; so does the file type decide what a null
    /// record or a foreign one raises. Nothing for a file of another type.
    std::shared_ptr<IShape> Item(qint32 index);

    /// Appends a shape: a CPoint or CMultiPoint to a point file, a CPolyLine or
    /// CPolygon to one of its own kind. A record for which the disk has no room
    /// is taken away again.
    void Add(const ShapeObject& shape);

private:
    struct RecordPlace {
        bool found = false;
        qint32 offset = 0; // of the record's header, in words
        qint32 length = 0; // of its content, in words
    };
    struct MainHeader {
        qint32 fileCode = 0;
        qint32 length = 0; // in words
        qint32 shapeType = 0;
    };
    struct Sources; // how the readers name themselves in failures

    std::shared_ptr<CPoint> ReadPoint(qint32 index);
    std::shared_ptr<CPolyLine> ReadPolyLine(qint32 index);
    std::shared_ptr<CPolygon> ReadPolygon(qint32 index);
    std::shared_ptr<CMultiPoint> ReadMultiPoint(qint32 index);
    RecordPlace FindOffset(qint32 index);
    void PutMainHeaders();
    void PutNull();
    void PutPoints(const CPoint& point);
    void PutPolyLine(const CPolyLine& line);
    void PutPolygon(const CPolygon& polygon);
    void PutMultiPoints(const CMultiPoint& points);
    void PutExtent(const IShape& shape);
    void GetRecordHeader(qint32 offset);

    void OpenFiles(const QString& shp, const QString& shx, bool existing);
    MainHeader ReadMainHeader(QFile& file, CRect* bounds);
    void CheckFileType(qint32 required, const QString& typeName) const;
    qint64 OpenRecord(qint32 index, const Sources& sources);
    template <typename Shape>
    void ReadBox(Shape& shape, qint64 position);
    template <typename Shape>
    std::shared_ptr<Shape> ReadParts(qint32 index, const Sources& sources);
    template <typename Shape>
    QByteArray PartsBody(const Shape& shape) const;
    QByteArray Box(const IShape& shape) const;
    void PutRecord(const QByteArray& body, const IShape& shape);

    QFile m_shp;
    QFile m_shx;
    CFileName m_fileName;
    MainHeader m_shpHeader; // both as read
    MainHeader m_shxHeader;
    CRect m_bounds;
    qint32 m_shapeType = Null;
    qint32 m_count = 0;
    qint32 m_recordNumber = 0;  // of the record header read last
    qint32 m_contentLength = 0; // in words
};
