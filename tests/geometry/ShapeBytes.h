#pragma once

#include "geometry/Punt.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <vector>

/// Shape files put together byte by byte, without any code under test.

using TestRing = std::vector<geometry::Punt>;
using TestPolygon = std::vector<TestRing>;

inline void AppendBig(QByteArray& bytes, quint32 value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(static_cast<char>(value >> shift & 0xFF));
}

inline void AppendLittle(QByteArray& bytes, quint32 value)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes.append(static_cast<char>(value >> shift & 0xFF));
}

inline void AppendDouble(QByteArray& bytes, double value)
{
    const auto bits = std::bit_cast<quint64>(value);
    for (int shift = 0; shift < 64; shift += 8)
        bytes.append(static_cast<char>(bits >> shift & 0xFF));
}

inline QByteArray ShapeHeader(int type, qint64 lengthInBytes)
{
    QByteArray header;
    AppendBig(header, 9994);
    for (int i = 0; i < 5; ++i)
        AppendBig(header, 0);
    AppendBig(header, static_cast<quint32>(lengthInBytes / 2));
    AppendLittle(header, 1000);
    AppendLittle(header, static_cast<quint32>(type));
    for (int i = 0; i < 8; ++i)
        AppendDouble(header, 0);
    return header;
}

inline QByteArray PolygonContent(const TestPolygon& rings, int type = 5)
{
    QByteArray content;
    AppendLittle(content, static_cast<quint32>(type));
    for (int i = 0; i < 4; ++i)
        AppendDouble(content, 0); // the box: nobody may rely on it
    quint32 count = 0;
    for (const TestRing& ring : rings)
        count += static_cast<quint32>(ring.size());
    AppendLittle(content, static_cast<quint32>(rings.size()));
    AppendLittle(content, count);
    quint32 start = 0;
    for (const TestRing& ring : rings) {
        AppendLittle(content, start);
        start += static_cast<quint32>(ring.size());
    }
    for (const TestRing& ring : rings) {
        for (const geometry::Punt& p : ring) {
            AppendDouble(content, p.x);
            AppendDouble(content, p.y);
        }
    }
    return content;
}

struct ShapeFilePair {
    QByteArray shp;
    QByteArray shx;
};

inline ShapeFilePair MakeShapeFile(int type, const std::vector<QByteArray>& contents)
{
    QByteArray records;
    QByteArray index;
    quint32 number = 0;
    for (const QByteArray& content : contents) {
        AppendBig(index, static_cast<quint32>((100 + records.size()) / 2));
        AppendBig(index, static_cast<quint32>(content.size() / 2));
        AppendBig(records, ++number);
        AppendBig(records, static_cast<quint32>(content.size() / 2));
        records += content;
    }
    return {ShapeHeader(type, 100 + records.size()) + records,
            ShapeHeader(type, 100 + index.size()) + index};
}

inline ShapeFilePair MakePolygonFile(const std::vector<TestPolygon>& polygons)
{
    std::vector<QByteArray> contents;
    for (const TestPolygon& polygon : polygons)
        contents.push_back(PolygonContent(polygon));
    return MakeShapeFile(5, contents);
}

inline void WriteBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

inline QByteArray ReadBytes(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// `stem` without extension.
inline void WritePair(const QString& stem, const ShapeFilePair& pair)
{
    WriteBytes(stem + ".shp", pair.shp);
    WriteBytes(stem + ".shx", pair.shx);
}

inline QString ToQString(const std::filesystem::path& path)
{
    return QString::fromStdString(path.string());
}

/// A closed rectangle: its first point stands at the end again.
inline TestRing Rectangle(double left, double bottom, double right, double top)
{
    return {{left, bottom}, {left, top}, {right, top}, {right, bottom}, {left, bottom}};
}
