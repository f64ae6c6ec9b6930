// Files damaged at random, the same every time: no crash, and whatever a damaged
// shore line gives is what the plain search gives on the same points.
#include "GeometryInputs.h"
#include "PlainFetch.h"
#include "RandomRings.h"
#include "ShapeBytes.h"
#include "geometry/Strijklengte.h"
#include "geometry/modCreateShape.h"

#include "../qlmgis/GridFiles.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

void Damage(QByteArray& bytes, RandomRings& random)
{
    for (int n = random.Whole(1, 4); n > 0 && !bytes.isEmpty(); --n) {
        const auto at = random.Whole(0, static_cast<int>(bytes.size()) - 1);
        switch (random.Whole(0, 5)) {
        case 0:
            bytes[at] = static_cast<char>(random.Whole(0, 255));
            break;
        case 1:
            bytes[at] = static_cast<char>(bytes[at] ^ (1 << random.Whole(0, 7)));
            break;
        case 2:
            bytes.remove(at, random.Whole(1, 40));
            break;
        case 3:
            bytes.insert(at, QByteArray(random.Whole(1, 40), static_cast<char>(0xFF)));
            break;
        case 4: {
            QByteArray number;
            const quint32 values[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
            random.Whole(0, 1) ? AppendBig(number, values[random.Whole(0, 4)])
                               : AppendLittle(number, values[random.Whole(0, 4)]);
            bytes.replace(at / 4 * 4, 4, number);
            break;
        }
        default:
            if (random.Whole(0, 3) == 0)
                bytes.truncate(at);
        }
    }
}

std::span<const std::byte> Span(const QByteArray& bytes)
{
    return std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

ShapeFilePair SomePolygons(RandomRings& random)
{
    return MakePolygonFile({{random.Shore(0, 0, 100, 30, 0.3), Rectangle(-10, -10, 10, 10)},
                            {Rectangle(200, 0, 300, 100)}});
}

} // namespace

TEST(DamageTest, DamagedShapeFilesNeverCrashAReader)
{
    RandomRings random(1);
    const auto pair = SomePolygons(random);
    for (int i = 0; i < 1500; ++i) {
        auto damaged = pair;
        Damage(random.Whole(0, 3) ? damaged.shp : damaged.shx, random);
        QByteArray input;
        input.append(static_cast<char>(damaged.shp.size() / 4 & 0xFF));
        input.append(static_cast<char>(damaged.shp.size() / 4 >> 8));
        input += damaged.shp.left(damaged.shp.size() / 4 * 4) + damaged.shx;
        fuzz::ReadShapeFile(Span(input));
    }
}

TEST(DamageTest, ADamagedShoreLineThatIsAcceptedIsComputedLikeThePlainWay)
{
    const TemporaryFolder folder;
    const QString stem = ToQString(folder / "oevers");
    RandomRings random(2);
    const auto pair = SomePolygons(random);
    int accepted = 0;
    int refused = 0;
    int computed = 0;
    for (int i = 0; i < 1500; ++i) {
        auto damaged = pair;
        Damage(damaged.shp, random);
        WritePair(stem, damaged);
        Strijklengte strijklengte;
        if (!strijklengte.setShapefile(stem + ".shp")) {
            ++refused;
            continue;
        }
        ++accepted;
        std::vector<TestPolygon> polygons;
        const MapLayer& layer = *strijklengte.layerFile();
        for (std::size_t shape = 0; shape < layer.ShapeCount(); ++shape) {
            auto& rings = polygons.emplace_back();
            for (const auto& ring : layer.Rings(shape))
                rings.emplace_back(ring.Points().begin(), ring.Points().end());
        }
        const double x = random.Between(-60, 60);
        const double y = random.Between(-60, 60);
        const auto fetch = strijklengte.CalcFetch(x, y);
        const auto plainFetch = plain::CalcFetch(polygons, x, y);
        ASSERT_EQ(static_cast<int>(fetch.status), plainFetch.status) << i;
        ASSERT_EQ(fetch.fetches, plainFetch.fetches) << i;
        const auto normal = strijklengte.CalcDijknormaal(x, y);
        const auto plainNormal = plain::CalcNormal(polygons, x, y);
        ASSERT_EQ(static_cast<int>(normal.status), plainNormal.status) << i;
        ASSERT_EQ(normal.dijknormaal, plainNormal.normal) << i;
        computed += plainFetch.status == 0;
    }
    EXPECT_GT(accepted, 100);
    EXPECT_GT(refused, 100);
    EXPECT_GT(computed, 50);
}

TEST(DamageTest, DamagedTablesNeverCrashAReader)
{
    const TemporaryFolder folder;
    const QString stem = ToQString(folder / "locaties");
    ASSERT_TRUE(modCreateShape(stem + ".shp", {40, {{1, 2, "een", 0}, {3, 4, "twee", 1}}}));
    const QByteArray table = ReadBytes(stem + ".dbf");
    fuzz::ReadDbaseTable(Span(table));
    RandomRings random(3);
    for (int i = 0; i < 600; ++i) {
        QByteArray damaged = table;
        Damage(damaged, random);
        fuzz::ReadDbaseTable(Span(damaged));
    }
}

TEST(DamageTest, DamagedGridsNeverCrashAReader)
{
    const GridText grid{6, 5, 0, 0, 10};
    const QByteArray text =
        QByteArray::fromStdString(grid.With([](double x, double) { return std::to_string(x); }));
    fuzz::ReadAsciiGrid(Span(text));
    RandomRings random(4);
    for (int i = 0; i < 600; ++i) {
        QByteArray damaged = text;
        Damage(damaged, random);
        fuzz::ReadAsciiGrid(Span(damaged));
    }
}
