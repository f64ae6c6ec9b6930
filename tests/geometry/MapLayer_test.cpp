#include "geometry/CShapeFile.h"
#include "geometry/MapLayer.h"

#include "RandomRings.h"
#include "ShapeBytes.h"
#include "TemporaryFolder.h"

#include <QProcess>
#include <QStandardPaths>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using geometry::ShapeLayerData;

namespace {

std::optional<ShapeLayerData> Read(const QByteArray& shp, const QByteArray& shx = {})
{
    QString error;
    const auto span = [](const QByteArray& bytes) {
        return std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    };
    auto data = geometry::ReadShapeLayer(span(shp), span(shx), error);
    EXPECT_EQ(data.has_value(), error.isEmpty());
    return data;
}

class MapLayerTest : public testing::Test {
protected:
    QString Path(const QString& name) const { return ToQString(m_folder.Path()) + '/' + name; }

    // A shape file that GDAL made of GeoJSON; false when ogr2ogr is not there.
    bool MakeWithGdal(const QString& name, const QByteArray& geometries)
    {
        const QString program = QStandardPaths::findExecutable("ogr2ogr");
        if (program.isEmpty())
            return false;
        QByteArray json = "{\"type\":\"FeatureCollection\",\"features\":[";
        bool first = true;
        for (const QByteArray& geometry : geometries.split('\n')) {
            json += (first ? "" : ",");
            json += "{\"type\":\"Feature\",\"properties\":{\"a\":1},\"geometry\":" + geometry + "}";
            first = false;
        }
        WriteBytes(Path(name + ".json"), json + "]}");
        QProcess process;
        process.start(program, {"-f", "ESRI Shapefile", "-a_srs", "EPSG:28992", Path(name + ".shp"),
                                Path(name + ".json")});
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return true;
    }

    TemporaryFolder m_folder;
};

} // namespace

TEST_F(MapLayerTest, ReadsPolygonsWithTheirRings)
{
    WritePair(Path("a"), MakePolygonFile({{Rectangle(0, 0, 10, 10), Rectangle(2, 2, 3, 3)},
                                          {Rectangle(20, 0, 30, 10)}}));
    const MapLayer layer(Path("a.shp"));
    ASSERT_TRUE(layer.Valid());
    EXPECT_EQ(layer.shapeType(), MapLayer::Polygon);
    EXPECT_EQ(layer.file(), Path("a.shp"));
    ASSERT_EQ(layer.ShapeCount(), 2u);
    ASSERT_EQ(layer.Rings(0).size(), 2u);
    ASSERT_EQ(layer.Rings(1).size(), 1u);
    EXPECT_EQ(layer.Rings(0)[1].Points().size(), 5u);
    EXPECT_EQ(layer.Rings(1)[0].Points()[2].x, 30);
}

TEST_F(MapLayerTest, SearchesEvenOddOverAllRings)
{
    WritePair(Path("a"), MakePolygonFile({{Rectangle(0, 0, 10, 10), Rectangle(2, 2, 8, 8),
                                           Rectangle(4, 4, 6, 6)},
                                          {Rectangle(5, -5, 20, 20)}}));
    const MapLayer layer(Path("a.shp"));
    EXPECT_THAT(layer.SearchPointInPolygon({1, 1}), testing::ElementsAre(0u));
    EXPECT_THAT(layer.SearchPointInPolygon({3, 3}), testing::ElementsAre());
    EXPECT_THAT(layer.SearchPointInPolygon({4.5, 5}), testing::ElementsAre(0u));
    EXPECT_THAT(layer.SearchPointInPolygon({5.5, 5}), testing::ElementsAre(0u, 1u));
    EXPECT_THAT(layer.SearchPointInPolygon({15, 15}), testing::ElementsAre(1u));
    EXPECT_THAT(layer.SearchPointInPolygon({-1, 1}), testing::ElementsAre());
}

TEST_F(MapLayerTest, TakesAPathInAnyCaseAndWithoutExtension)
{
    const auto pair = MakePolygonFile({{Rectangle(0, 0, 10, 10)}});
    WriteBytes(Path("OEVERS.SHP"), pair.shp);
    WriteBytes(Path("OEVERS.SHX"), pair.shx);
    EXPECT_TRUE(MapLayer(Path("oevers.shp")).Valid());
    EXPECT_TRUE(MapLayer(Path("oevers")).Valid());
    EXPECT_FALSE(MapLayer(Path("oever.shp")).Valid());
    EXPECT_FALSE(MapLayer("").Valid());
    EXPECT_FALSE(MapLayer(ToQString(m_folder.Path())).Valid());
}

TEST_F(MapLayerTest, KnowsTheFileFromItsStamp)
{
    WritePair(Path("a"), MakePolygonFile({{Rectangle(0, 0, 10, 10)}}));
    MapLayer layer(Path("a.shp"));
    EXPECT_TRUE(layer.IsCurrent());
    WritePair(Path("a"), MakePolygonFile({{Rectangle(0, 0, 10, 10)}, {}}));
    EXPECT_FALSE(layer.IsCurrent());
    EXPECT_TRUE(layer.Refresh());
    EXPECT_TRUE(layer.IsCurrent());
    EXPECT_EQ(layer.ShapeCount(), 2u);
    QFile::remove(Path("a.shp"));
    EXPECT_FALSE(layer.IsCurrent());
    EXPECT_FALSE(layer.Refresh());
    EXPECT_EQ(layer.ShapeCount(), 0u);
}

TEST_F(MapLayerTest, TakesLittleMoreMemoryThanItsPoints)
{
    RandomRings random(1);
    const auto pair = MakePolygonFile({{random.Shore(0, 0, 1000, 50000, 0.2)}});
    WritePair(Path("a"), pair);
    const MapLayer layer(Path("a.shp"));
    EXPECT_LT(layer.MemoryUse(), 1.5 * double(pair.shp.size()));
    EXPECT_GT(layer.MemoryUse(), 50000u * 16);
}

// --- the reader

TEST_F(MapLayerTest, AFileTooLargeForItsFormatIsRefusedUnread)
{
    WritePair(Path("groot"), MakePolygonFile({{Rectangle(0, 0, 10, 10)}}));
    // Offsets count words in 31 bits; on the disc the rest of it is a hole.
    ASSERT_TRUE(QFile::resize(Path("groot.shp"), qint64(5) * 1024 * 1024 * 1024));
    const MapLayer layer(Path("groot.shp"));
    EXPECT_FALSE(layer.Valid());
    EXPECT_EQ(layer.Error(), "het bestand is te groot");
}

TEST_F(MapLayerTest, TellsInDutchWhyAFileCannotBeUsed)
{
    EXPECT_EQ(MapLayer(Path("nergens.shp")).Error(), "het bestand kan niet worden gelezen");
    const auto pair = MakePolygonFile({{Rectangle(0, 0, 10, 10)}});
    WriteBytes(Path("kort.shp"), pair.shp.chopped(1));
    EXPECT_EQ(MapLayer(Path("kort.shp")).Error(), "het bestand is te kort");
    WriteBytes(Path("brief.shp"), QByteArray(200, 'a'));
    EXPECT_EQ(MapLayer(Path("brief.shp")).Error(), "het is geen shapebestand");
}

TEST(ShapeLayerDataTest, ReadsWithoutAnIndexAsWell)
{
    const auto pair = MakePolygonFile({{Rectangle(0, 0, 10, 10)}, {}, {Rectangle(1, 1, 2, 2)}});
    const auto data = Read(pair.shp);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->ShapeCount(), 3u);
    EXPECT_EQ(data->PartCount(), 2u);
}

TEST(ShapeLayerDataTest, TheIndexSaysWhichRecordsCount)
{
    auto pair = MakePolygonFile({{Rectangle(0, 0, 10, 10)}});
    // The record was written anew behind the old one.
    const QByteArray again =
        MakePolygonFile({{Rectangle(5, 5, 6, 6), Rectangle(7, 7, 8, 8)}}).shp.mid(100);
    QByteArray offset;
    AppendBig(offset, static_cast<quint32>(pair.shp.size() / 2));
    pair.shx.replace(100, 4, offset);
    const auto data = Read(pair.shp + again, pair.shx);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->ShapeCount(), 1u);
    EXPECT_EQ(data->PartCount(), 2u);
    EXPECT_EQ(data->points[0].x, 5);
}

TEST(ShapeLayerDataTest, PassesOverHeightsAndMeasures)
{
    QByteArray content = PolygonContent({Rectangle(0, 0, 10, 10)}, 15);
    for (int i = 0; i < 2 + 5; ++i)
        AppendDouble(content, 99);
    const auto pair = MakeShapeFile(15, {content});
    const auto data = Read(pair.shp, pair.shx);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->kind, ShapeLayerData::Kind::Polygon);
    EXPECT_EQ(data->points.size(), 5u);
}

TEST(ShapeLayerDataTest, KeepsNullShapesWithoutParts)
{
    QByteArray null;
    AppendLittle(null, 0);
    const auto pair = MakeShapeFile(5, {null, PolygonContent({Rectangle(0, 0, 1, 1)}), null});
    const auto data = Read(pair.shp, pair.shx);
    ASSERT_TRUE(data);
    ASSERT_EQ(data->ShapeCount(), 3u);
    EXPECT_EQ(data->PartCount(), 1u);
    EXPECT_EQ(data->shapeStarts[1], 0u);
}

TEST(ShapeLayerDataTest, RefusesEveryCutOffFile)
{
    const auto pair = MakePolygonFile(
        {{Rectangle(0, 0, 10, 10), Rectangle(1, 1, 2, 2)}, {Rectangle(3, 3, 4, 4)}});
    ASSERT_TRUE(Read(pair.shp, pair.shx));
    for (qsizetype size = 0; size < pair.shp.size(); ++size)
        EXPECT_FALSE(Read(pair.shp.left(size), pair.shx)) << size;
}

TEST(ShapeLayerDataTest, RefusesCountsThatDoNotFit)
{
    const auto pair = MakePolygonFile({{Rectangle(0, 0, 10, 10), Rectangle(1, 1, 2, 2)}});
    const qsizetype content = 108;
    for (const qsizetype place : {qsizetype(104), content + 36, content + 40}) {
        for (const quint32 count : {0x7FFFFFFFu, 0xFFFFFFFFu, 0x80000000u, 1000u}) {
            QByteArray shp = pair.shp;
            QByteArray bytes;
            place == 104 ? AppendBig(bytes, count) : AppendLittle(bytes, count);
            shp.replace(place, 4, bytes);
            EXPECT_FALSE(Read(shp, pair.shx)) << place << ' ' << count;
        }
    }
}

TEST(ShapeLayerDataTest, RefusesPartsThatDoNotRise)
{
    const auto pair = MakePolygonFile({{Rectangle(0, 0, 10, 10), Rectangle(1, 1, 2, 2)}});
    const qsizetype firstStart = 108 + 44;
    for (const auto& [place, start] :
         {std::pair(firstStart, 1u), {firstStart + 4, 11u}, {firstStart + 4, 0xFFFFFFFFu}}) {
        QByteArray shp = pair.shp;
        QByteArray bytes;
        AppendLittle(bytes, start);
        shp.replace(place, 4, bytes);
        EXPECT_FALSE(Read(shp, pair.shx)) << place << ' ' << start;
    }
}

TEST(ShapeLayerDataTest, RefusesAnIndexThatLies)
{
    const auto pair = MakePolygonFile({{Rectangle(0, 0, 10, 10)}, {Rectangle(1, 1, 2, 2)}});
    for (const quint32 offset : {0u, 50u, 51u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        QByteArray shx = pair.shx;
        QByteArray bytes;
        AppendBig(bytes, offset);
        shx.replace(108, 4, bytes);
        EXPECT_FALSE(Read(pair.shp, shx)) << offset;
    }
    EXPECT_FALSE(Read(pair.shp, "geen index"));
}

TEST(ShapeLayerDataTest, RefusesRecordsThatLieInsideEachOther)
{
    // Each record's points hold all records behind it: what a small file
    // announces together would fill any memory.
    constexpr int kRecords = 20;
    QByteArray behind(1000 * 16, '\0');
    QByteArray index;
    std::vector<qsizetype> sizes;
    for (int number = kRecords; number > 0; --number) {
        const auto points = static_cast<quint32>(behind.size() / 16);
        QByteArray record;
        AppendBig(record, static_cast<quint32>(number));
        AppendBig(record, (48 + 16 * points) / 2);
        record += PolygonContent({{}}).first(40);
        AppendLittle(record, points);
        AppendLittle(record, 0);
        behind = record + behind;
        sizes.push_back(behind.size());
    }
    const qsizetype length = 100 + behind.size();
    for (int number = 1; number <= kRecords; ++number) {
        const auto place = length - sizes[static_cast<std::size_t>(kRecords - number)];
        AppendBig(index, static_cast<quint32>(place / 2));
        AppendBig(index, 0); // not looked at
    }
    const QByteArray shp = ShapeHeader(5, length) + behind;
    const QByteArray one = ShapeHeader(5, 108) + index.first(8);
    EXPECT_TRUE(Read(shp, one)) << "the first record alone is in order";
    EXPECT_FALSE(Read(shp, ShapeHeader(5, 100 + index.size()) + index));
}

TEST(ShapeLayerDataTest, RefusesRecordsOfAnotherType)
{
    const auto pair = MakeShapeFile(5, {PolygonContent({Rectangle(0, 0, 1, 1)}, 3)});
    EXPECT_FALSE(Read(pair.shp, pair.shx));
    for (const int type : {0, 2, 7, 31, -5, 35})
        EXPECT_FALSE(Read(ShapeHeader(type, 100))) << type;
    EXPECT_TRUE(Read(ShapeHeader(25, 100)));
}

// --- files that GDAL made

TEST_F(MapLayerTest, ReadsFilesMadeByGdal)
{
    if (!MakeWithGdal(
            "vlak", "{\"type\":\"Polygon\",\"coordinates\":[[[0,0],[0,50.5],[100,50.5],[100,0],[0,"
                    "0]],[[10,10],[20,10],[20,20],[10,10]]]}\n"
                    "null\n"
                    "{\"type\":\"MultiPolygon\",\"coordinates\":[[[[200,0],[200,9],[209,9],[200,0]"
                    "]],[[[300,0],[300,9],[309,9],[300,0]]]]}"))
        GTEST_SKIP() << "ogr2ogr is not installed";
    const MapLayer polygons(Path("vlak.shp"));
    ASSERT_TRUE(polygons.Valid()) << polygons.Error().toStdString();
    ASSERT_EQ(polygons.ShapeCount(), 3u);
    EXPECT_EQ(polygons.Rings(0).size(), 2u);
    EXPECT_EQ(polygons.Rings(1).size(), 0u);
    EXPECT_EQ(polygons.Rings(2).size(), 2u);
    EXPECT_THAT(polygons.SearchPointInPolygon({5, 5}), testing::ElementsAre(0u));
    EXPECT_THAT(polygons.SearchPointInPolygon({18, 12}), testing::ElementsAre());
    EXPECT_THAT(polygons.SearchPointInPolygon({301, 5}), testing::ElementsAre(2u));

    CShapeFile file;
    file.SetFileSpec(CFileName(Path("vlak.shp")), CShapeFile::OPENIT);
    EXPECT_EQ(file.Count(), 3);
    EXPECT_EQ(file.FileType(), 5);
    const auto first = std::dynamic_pointer_cast<CPolygon>(file.Item(1));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->Count(), 2);
    EXPECT_EQ(first->Top(), 50.5);
    EXPECT_ANY_THROW((void)file.Item(2)) << "a null record";
    EXPECT_EQ(file.Item(3)->Right(), 309);

    ASSERT_TRUE(MakeWithGdal("punt", "{\"type\":\"Point\",\"coordinates\":[155000.125,463000]}\n"
                                     "{\"type\":\"Point\",\"coordinates\":[-1,-2]}"));
    const MapLayer points(Path("punt.shp"));
    EXPECT_EQ(points.shapeType(), MapLayer::Point);
    ASSERT_EQ(points.Data().points.size(), 2u);
    EXPECT_EQ(points.Data().points[0].x, 155000.125);
    file.SetFileSpec(CFileName(Path("punt.shp")), CShapeFile::OPENIT);
    EXPECT_EQ(file.Item(2)->Left(), -1);

    ASSERT_TRUE(MakeWithGdal("lijn", "{\"type\":\"MultiLineString\",\"coordinates\":[[[1,2],[3,4]],"
                                     "[[5,6],[7,8],[9,9]]]}"));
    const MapLayer lines(Path("lijn.shp"));
    EXPECT_EQ(lines.shapeType(), MapLayer::Line);
    EXPECT_EQ(lines.Data().PartCount(), 2u);
    EXPECT_TRUE(lines.SearchPointInPolygon({6, 7}).empty());
    file.SetFileSpec(CFileName(Path("lijn.shp")), CShapeFile::OPENIT);
    EXPECT_EQ(std::dynamic_pointer_cast<CPolyLine>(file.Item(1))->Item(2)->Count(), 3);

    ASSERT_TRUE(MakeWithGdal("punten", "{\"type\":\"MultiPoint\",\"coordinates\":[[1,2],[3,4]]}"));
    const MapLayer multipoints(Path("punten.shp"));
    EXPECT_EQ(multipoints.shapeType(), MapLayer::Point);
    EXPECT_EQ(multipoints.Data().points.size(), 2u);
    file.SetFileSpec(CFileName(Path("punten.shp")), CShapeFile::OPENIT);
    EXPECT_EQ(std::dynamic_pointer_cast<CMultiPoint>(file.Item(1))->Item(2)->Y(), 4);
}
