#include "qlmgis/AsciiGridCheck.h"
#include "qlmgis/RasterCache.h"

#include "GridFiles.h"
#include "TemporaryFolder.h"

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using qlmgis::Raster;
using qlmgis::RasterCache;

namespace {

std::string Number(double value)
{
    std::ostringstream text;
    text.precision(9);
    text << value;
    return text.str();
}

class RasterTest : public testing::Test {
protected:
    std::string Write(const std::string& text, const std::string& name = "bodem.asc") const
    {
        return WriteGrid(m_folder / name, text);
    }
    void ExpectRefused(const std::string& text) const
    {
        EXPECT_THROW(Raster raster(Write(text, "slecht.asc")), std::runtime_error) << text;
    }
    static void ExpectOutside(Raster& raster, double x1, double y1, double x2, double y2)
    {
        try {
            const double mean = raster.Mean(x1, y1, x2, y2, 10000);
            ADD_FAILURE() << mean;
        } catch (const std::exception& error) {
            EXPECT_STREQ(error.what(), "Index was outside the bounds of the array.");
        }
    }

    // Rows from above: 1 2 3 / 4 5 6, in cells of 10, from (100, 200).
    const GridText m_small{3, 2, 100, 200, 10};
    std::string SmallGrid() const { return m_small.Header() + "1 2 3\n4 5 6\n"; }

    TemporaryFolder m_folder;
};

} // namespace

TEST_F(RasterTest, APointHasTheValueOfItsCell)
{
    Raster raster(Write(SmallGrid()));
    const auto at = [&](double x, double y) { return raster.Mean(x, y, x, y, 10000); };
    EXPECT_EQ(at(105, 215), 1);
    EXPECT_EQ(at(125, 215), 3);
    EXPECT_EQ(at(105, 205), 4);
    EXPECT_EQ(at(115, 205), 5);
    // A cell holds its left and lower border.
    EXPECT_EQ(at(110, 205), 5);
    EXPECT_EQ(at(109.999, 205), 4);
    EXPECT_EQ(at(105, 210), 1);
    EXPECT_EQ(at(105, 209.999), 4);
}

TEST_F(RasterTest, TheLeftAndLowerBorderBelongToTheGridTheOthersDoNot)
{
    Raster raster(Write(SmallGrid()));
    EXPECT_EQ(raster.Mean(100, 200, 100, 200, 10000), 4);
    ExpectOutside(raster, 130, 205, 130, 205);
    ExpectOutside(raster, 105, 220, 105, 220);
    ExpectOutside(raster, 105, 205, 130, 205); // only the last of 10000 points
    ExpectOutside(raster, 99.999, 205, 105, 205);
    ExpectOutside(raster, 105, 199.999, 105, 205);
    ExpectOutside(raster, 105, 205, 1e38, 205);
    ExpectOutside(raster, 105, 205, std::nan(""), 205);
    ExpectOutside(raster, 105, 205, 105, -std::numeric_limits<double>::infinity());
}

TEST_F(RasterTest, TheMeanIsPlainOverTheTenThousandPoints)
{
    Raster raster(Write(SmallGrid()));
    // From x = 100 to 129.997 in steps of 0.003: 3334 points below 110, 3333
    // below 120, 3333 above.
    const double step = 0.003;
    EXPECT_NEAR(raster.Mean(100, 205, 100 + 9999 * step, 205, 10000),
                (3334 * 4.0 + 3333 * 5 + 3333 * 6) / 10000, 1e-12);
    // Two points: both ends.
    EXPECT_EQ(raster.Mean(105, 215, 125, 205, 2), 3.5);
    EXPECT_EQ(raster.Mean(105, 215, 125, 205, 1), 1);
    EXPECT_THROW((void)raster.Mean(105, 215, 125, 205, 0), std::runtime_error);
}

TEST_F(RasterTest, TheMeanOverAPlaneIsThePlaneInTheMiddle)
{
    const GridText grid{400, 300, 130000, 460000, 5};
    const auto plane = [](double x, double y) {
        return -2.5 + 0.001 * (x - 130000) - 0.002 * (y - 460000);
    };
    Raster raster(Write(grid.With([&](double x, double y) { return Number(plane(x, y)); })));
    std::mt19937_64 random(1);
    for (int i = 0; i < 50; ++i) {
        const auto x = [&] { return 130000 + double(random() % 2000); };
        const auto y = [&] { return 460000 + double(random() % 1500); };
        const double x1 = x();
        const double x2 = x();
        const double y1 = y();
        const double y2 = y();
        // Cells are 5 wide: the values stand for their middles.
        EXPECT_NEAR(raster.Mean(x1, y1, x2, y2, 10000), plane((x1 + x2) / 2, (y1 + y2) / 2),
                    0.003 * 2.5)
            << x1 << ' ' << y1 << ' ' << x2 << ' ' << y2;
    }
}

TEST_F(RasterTest, ALineOfNoLengthIsItsCell)
{
    Raster raster(Write(SmallGrid()));
    EXPECT_EQ(raster.Mean(116, 216, 116, 216, 10000), 2);
}

TEST_F(RasterTest, CellsWithoutDataTakeNoPart)
{
    Raster raster(Write(m_small.Header() + "-9999 2 3\n-9999 -9999 -9999.0\n"));
    EXPECT_EQ(raster.Mean(105, 215, 115, 215, 10000), 2);
    EXPECT_EQ(raster.Mean(115, 215, 116, 205, 10000), 2);
    try {
        (void)raster.Mean(101, 201, 129, 209, 10000);
        ADD_FAILURE();
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "the line meets no cell with data");
    }
}

TEST_F(RasterTest, AGridWithoutANoDataValueHasDataEverywhere)
{
    GridText grid = m_small;
    grid.noData.clear();
    Raster raster(Write(grid.Header() + "1 2 3\n4 5 0\n"));
    EXPECT_EQ(raster.Mean(125, 205, 125, 205, 10000), 0);
}

TEST_F(RasterTest, KeysInCapitalsTabsAndCentresAreHeaderToo)
{
    Raster raster(Write("NCOLS\t3\r\nNROWS\t2\r\nXLLCENTER\t105\r\nYLLCENTER\t205\r\n"
                        "CELLSIZE\t10\r\nNODATA_VALUE\t-9999\r\n1 2 3\r\n4 5 6\r\n"));
    EXPECT_EQ(raster.Mean(105, 215, 105, 215, 10000), 1);
    EXPECT_EQ(raster.Mean(129, 201, 129, 201, 10000), 6);
}

TEST_F(RasterTest, DecimalsCountAlsoWhereTheyComeLate)
{
    // More than a megabyte of whole numbers before the first decimal.
    const GridText grid{1000, 400, 0, 0, 1};
    Raster raster(Write(grid.With([](double, double y) { return y < 1 ? "-1.75" : "-9999"; })));
    EXPECT_EQ(raster.Mean(10, 0.5, 900, 0.5, 10000), -1.75);
}

TEST_F(RasterTest, OtherFormatsAreReadAsWell)
{
    GDALAllRegister();
    const std::string file = (m_folder / "bodem.tif").string();
    {
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        ASSERT_NE(driver, nullptr);
        std::unique_ptr<GDALDataset> made(
            driver->Create(file.c_str(), 3, 2, 1, GDT_Float64, nullptr));
        double transform[] = {100, 10, 0, 220, 0, -10};
        made->SetGeoTransform(transform);
        double cells[] = {1, 2, 3, 4.25, -7, 6};
        made->GetRasterBand(1)->SetNoDataValue(-7);
        ASSERT_EQ(made->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 3, 2, cells, 3, 2, GDT_Float64,
                                                   0, 0, nullptr),
                  CE_None);
    }
    Raster raster(file);
    EXPECT_EQ(raster.Mean(105, 205, 105, 205, 10000), 4.25);
    EXPECT_EQ(raster.Mean(105, 205, 115, 205, 10000), 4.25);
    EXPECT_EQ(raster.Mean(125, 215, 125, 215, 10000), 3);
}

TEST_F(RasterTest, RowsThatCountFromBelowAreFound)
{
    GDALAllRegister();
    const std::string file = (m_folder / "omgekeerd.tif").string();
    {
        std::unique_ptr<GDALDataset> made(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
            file.c_str(), 1, 2, 1, GDT_Float32, nullptr));
        double transform[] = {100, 10, 0, 200, 0, 10};
        made->SetGeoTransform(transform);
        float cells[] = {1, 2};
        ASSERT_EQ(made->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 1, 2, cells, 1, 2, GDT_Float32,
                                                   0, 0, nullptr),
                  CE_None);
    }
    Raster raster(file);
    EXPECT_EQ(raster.Mean(105, 205, 105, 205, 10000), 1);
    EXPECT_EQ(raster.Mean(105, 210, 105, 210, 10000), 2);
    ExpectOutside(raster, 105, 220, 105, 220);
}

TEST_F(RasterTest, AGridReadByTilesGivesTheSameMeans)
{
    const GridText grid{700, 600, 0, 0, 2};
    std::mt19937_64 random(3);
    const std::string file = Write(grid.With([&](double, double) {
        return random() % 10 == 0 ? "-9999" : Number(double(random() % 4000) / -100);
    }));
    Raster whole(file);
    Raster tiles(file, 600 * 1024); // room for two tiles
    EXPECT_TRUE(whole.IsInMemory());
    EXPECT_FALSE(tiles.IsInMemory());
    for (int i = 0; i < 40; ++i) {
        const double x1 = double(random() % 1400);
        const double y1 = double(random() % 1200);
        const double x2 = double(random() % 1400);
        const double y2 = double(random() % 1200);
        EXPECT_EQ(tiles.Mean(x1, y1, x2, y2, 10000), whole.Mean(x1, y1, x2, y2, 10000));
    }
    EXPECT_LE(tiles.MemoryUse(), 600u * 1024);
    EXPECT_EQ(whole.MemoryUse(), 700u * 600 * 4);
}

// --- grids that are not in order

TEST_F(RasterTest, RefusesAWrongHeader)
{
    ExpectRefused("");
    ExpectRefused("geen grid\n1 2 3\n");
    ExpectRefused("ncols 3\nnrows 2\n1 2 3\n4 5 6\n");
    ExpectRefused("ncols drie\nnrows 2\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2 3\n4 5 6\n");
    ExpectRefused("ncols -3\nnrows 2\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2 3\n4 5 6\n");
    ExpectRefused("ncols 0\nnrows 0\nxllcorner 0\nyllcorner 0\ncellsize 1\n");
    ExpectRefused("ncols 3\nnrows 2\nxllcorner 0\nyllcorner 0\ncellsize 0\n1 2 3\n4 5 6\n");
    ExpectRefused("ncols 3\nnrows 2\nxllcorner 0\nyllcorner 0\ncellsize nan\n1 2 3\n4 5 6\n");
}

TEST_F(RasterTest, RefusesRowsThatAreMissingOrTooMany)
{
    ExpectRefused(m_small.Header() + "1 2 3\n");
    ExpectRefused(m_small.Header() + "1 2 3\n4 5\n");
    ExpectRefused(m_small.Header() + "1 2 3\n4 5 6\n7 8 9\n");
    ExpectRefused(m_small.Header());
}

TEST_F(RasterTest, RefusesTextWhereANumberBelongs)
{
    ExpectRefused(m_small.Header() + "1 2 3\n4 vijf 6\n");
    ExpectRefused(m_small.Header() + "1 2 3\n4 5m 6\n");
    ExpectRefused(m_small.Header() + "1 2 3\n4 - 6\n");
    ExpectRefused(m_small.Header() + "1 2 3\n4 1.2.3 6\n");
    ExpectRefused(m_small.Header() + "1 2 3\n4 " + std::string(5000, '5') + "x 6\n");
}

TEST_F(RasterTest, RefusesCommaDecimals)
{
    ExpectRefused(m_small.Header() + "1,5 2,5 3,5\n4 5 6\n");
    ExpectRefused("ncols 3\nnrows 2\nxllcorner 0,5\nyllcorner 0\ncellsize 1\n1 2 3\n4 5 6\n");
}

TEST_F(RasterTest, RefusesTenGigabytesThatAreOnlyAnnounced)
{
    ExpectRefused("ncols 50000\nnrows 50000\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2 3\n");
    ExpectRefused("ncols 2147483647\nnrows 2147483647\nxllcorner 0\nyllcorner 0\ncellsize 1\n1\n");
    ExpectRefused("ncols 99999999999\nnrows 1\nxllcorner 0\nyllcorner 0\ncellsize 1\n1\n");
}

TEST_F(RasterTest, ValuesThatAreNoNumbersAreNoData)
{
    Raster raster(Write(m_small.Header() + "1 nan inf\n4 5 6\n"));
    EXPECT_EQ(raster.Mean(105, 215, 129, 215, 10000), 1);
}

// --- the cache

TEST_F(RasterTest, AGridIsReadOncePerRun)
{
    RasterCache cache;
    const std::string file = Write(SmallGrid());
    const std::string other = Write(SmallGrid(), "ander.asc");
    const auto first = cache.Find(file);
    EXPECT_EQ(cache.Find(file), first);
    EXPECT_NE(cache.Find(other), first);
    EXPECT_EQ(cache.Find(file), first);
    EXPECT_EQ(cache.Parses(), 2u);
}

TEST_F(RasterTest, AChangedGridIsReadAgain)
{
    RasterCache cache;
    const std::string file = Write(SmallGrid());
    const auto first = cache.Find(file);
    Write(m_small.Header() + "1 2 3\n4 5 600\n");
    const auto second = cache.Find(file);
    EXPECT_EQ(second->Mean(125, 205, 125, 205, 10000), 600);
    EXPECT_EQ(first->Mean(125, 205, 125, 205, 10000), 6);
    // The same size: the time tells.
    std::filesystem::last_write_time(file, std::filesystem::last_write_time(file) +
                                               std::chrono::seconds(1));
    EXPECT_NE(cache.Find(file), second);
    std::filesystem::remove(file);
    EXPECT_ANY_THROW((void)cache.Find(file));
}

TEST_F(RasterTest, ARefusedGridIsNotRemembered)
{
    RasterCache cache;
    const std::string file = Write("geen grid");
    EXPECT_ANY_THROW((void)cache.Find(file));
    Write(SmallGrid());
    EXPECT_NO_THROW((void)cache.Find(file));
}

// --- damage, at random but the same every time

TEST_F(RasterTest, DamagedGridsAreReadOrRefused)
{
    const GridText grid{12, 9, 1000, 2000, 2.5};
    const std::string good = grid.With([](double x, double y) { return Number(x - y); });
    std::mt19937_64 random(99);
    int refused = 0;
    for (int i = 0; i < 400; ++i) {
        std::string bad = good;
        for (std::size_t n = 1 + random() % 4; n > 0; --n) {
            const std::size_t at = random() % (i % 2 ? 100 : bad.size());
            switch (random() % 4) {
            case 0:
                bad[at] = static_cast<char>(random());
                break;
            case 1:
                bad.erase(at, 1 + random() % 20);
                break;
            case 2:
                bad.insert(at, std::string(1 + random() % 3, "0123456789-. \ne"[random() % 15]));
                break;
            default:
                bad.resize(std::max<std::size_t>(at, 120));
            }
        }
        try {
            Raster raster(Write(bad, "kapot.asc"));
            (void)raster.Mean(1001, 2001, 1020, 2020, 100);
        } catch (const std::exception&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 200);
}
