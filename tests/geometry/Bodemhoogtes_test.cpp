#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "geometry/GridHeader.h"
#include "geometry/Strijklengte.h"

#include "../qlmgis/GridFiles.h"
#include "NotedBoxes.h"
#include "ShapeBytes.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using geometry::GisObject;

namespace {

// A library that notes the lines and fails when it is told to.
struct Notes {
    QString library;
    QString raster;
    std::vector<std::array<double, 4>> lines;
    std::vector<int> counts;
    int failAt = -1;
    QString failure;
    int alive = 0;
};

class NotedGisObject : public GisObject {
public:
    explicit NotedGisObject(Notes& notes) : m_notes(notes) { ++m_notes.alive; }
    ~NotedGisObject() override { --m_notes.alive; }
    void LoadRaster(const QString& file) override
    {
        m_notes.raster = file;
        if (m_notes.failAt == 0)
            throw Fout(440, m_notes.failure);
    }
    double CalculateMean(double x1, double y1, double x2, double y2, qint16 count) override
    {
        m_notes.lines.push_back({x1, y1, x2, y2});
        m_notes.counts.push_back(count);
        if (m_notes.failAt == static_cast<int>(m_notes.lines.size()))
            throw Fout(440, m_notes.failure);
        return -double(m_notes.lines.size());
    }

private:
    Notes& m_notes;
};

class BodemhoogtesTest : public testing::Test {
protected:
    BodemhoogtesTest()
    {
        SetProgramFolder(INSTALLED_FOLDER);
        UseIni("");
        gBoxes.Refer(m_boxes);
    }
    ~BodemhoogtesTest() override
    {
        gBoxes.Release();
        gIniFile.Release();
    }
    void UseIni(const QByteArray& text)
    {
        const QString path = ToQString(m_folder / "proef.ini");
        gIniFile.Release();
        WriteBytes(path, text);
        gIniFile.Set(std::make_shared<QLMIniFile>(path));
    }
    Strijklengte WithNotes()
    {
        return Strijklengte(
            [](const MapLayer&, geometry::Punt) { return std::vector<std::size_t>(); },
            [this](const QString& library) {
                m_notes.library = library;
                return std::make_unique<NotedGisObject>(m_notes);
            });
    }
    QString Grid(const std::string& text) const
    {
        return QString::fromStdString(WriteGrid(m_folder / "bodem grid é.asc", text));
    }
    QString Mark() { return gIniFile().GetString("Algemeen", "GISDLLINIT", "ontbreekt"); }

    TemporaryFolder m_folder;
    NotedBoxes m_boxes;
    Notes m_notes;
    Strijklengte m_strijklengte;
};

const double kDirections[] = {0, 90, 180, 270};

} // namespace

// --- the library

TEST_F(BodemhoogtesTest, TheLibraryInTheProgramsFolderIsFoundAndMarked)
{
    EXPECT_TRUE(m_strijklengte.INITGISDLL());
    EXPECT_EQ(Mark(), "TRUE");
    EXPECT_TRUE(m_boxes.messages.empty());
}

TEST_F(BodemhoogtesTest, AMissingLibraryIsShownAndNotMarked)
{
    UseIni("[ALGEMEEN]\r\nQLMGis.dll=.\\nergens\\QLMGis.dll\r\n");
    EXPECT_FALSE(m_strijklengte.INITGISDLL());
    ASSERT_EQ(m_boxes.messages.size(), 1u);
    EXPECT_EQ(m_boxes.messages[0].first, 201);
    EXPECT_TRUE(m_boxes.messages[0].second.at(0).contains("nergens"));
    EXPECT_EQ(Mark(), "ontbreekt");
    EXPECT_FALSE(m_strijklengte.INITGISDLL());
    EXPECT_EQ(m_boxes.messages.size(), 2u) << "the next use tries again";
}

TEST_F(BodemhoogtesTest, AMarkedLibraryIsNotLookedFor)
{
    UseIni("[ALGEMEEN]\r\nQLMGis.dll=.\\nergens\\QLMGis.dll\r\nGISDLLINIT=TRUE\r\n");
    EXPECT_TRUE(m_strijklengte.INITGISDLL());
    EXPECT_TRUE(m_boxes.messages.empty());
    // Using it still fails, with a status.
    const double lengths[] = {1, 1, 1, 1};
    const auto result = m_strijklengte.berekenBodemhoogtes("x.asc", 0, 0, kDirections, lengths);
    EXPECT_EQ(result.status, BodemhoogteStatus::Unspecified);
}

TEST_F(BodemhoogtesTest, WithoutTheLibraryTheStatusSaysSo)
{
    UseIni("[ALGEMEEN]\r\nQLMGis.dll=.\\nergens\\QLMGis.dll\r\n");
    const double lengths[] = {1, 1, 1, 1};
    const auto result = m_strijklengte.berekenBodemhoogtes("x.asc", 0, 0, kDirections, lengths);
    EXPECT_EQ(result.status, BodemhoogteStatus::DllError);
    EXPECT_EQ(m_boxes.messages.size(), 1u);
    EXPECT_EQ(result.levels.size(), 4u);
}

// --- the calls

TEST_F(BodemhoogtesTest, AsksForTheMeanOverEachFetch)
{
    auto strijklengte = WithNotes();
    const double lengths[] = {100, 200, 0, 1e38};
    const auto result =
        strijklengte.berekenBodemhoogtes("/g/bodem.asc", 1000, 2000, kDirections, lengths);
    EXPECT_EQ(result.status, BodemhoogteStatus::NoError);
    EXPECT_THAT(result.levels, testing::ElementsAre(-1, -2, -3, -4));
    EXPECT_EQ(m_notes.raster, "/g/bodem.asc");
    EXPECT_EQ(m_notes.alive, 0) << "the object is released";
    ASSERT_EQ(m_notes.lines.size(), 4u);
    EXPECT_THAT(m_notes.counts, testing::Each(10000));
    EXPECT_NEAR(m_notes.lines[0][2], 1000, 1e-9);
    EXPECT_EQ(m_notes.lines[0][3], 2100);
    EXPECT_EQ(m_notes.lines[1][2], 1200);
    EXPECT_EQ(m_notes.lines[1][3], 2000);
    EXPECT_THAT(m_notes.lines[2], testing::ElementsAre(1000, 2000, 1000, 2000));
    EXPECT_EQ(m_notes.lines[3][2], -1e38);
}

TEST_F(BodemhoogtesTest, APointOutsideEndsWithThatStatusAndKeepsWhatWasComputed)
{
    auto strijklengte = WithNotes();
    m_notes.failAt = 3;
    m_notes.failure = "Index was outside the bounds of the array.";
    const double lengths[] = {1, 1, 1, 1};
    const auto result = strijklengte.berekenBodemhoogtes("g", 0, 0, kDirections, lengths);
    EXPECT_EQ(result.status, BodemhoogteStatus::PointOutsideGrid);
    EXPECT_THAT(result.levels, testing::ElementsAre(-1, -2, 0, 0));
    EXPECT_EQ(m_notes.alive, 0);
}

TEST_F(BodemhoogtesTest, AnyOtherFailureIsUnspecified)
{
    const double lengths[] = {1, 1, 1, 1};
    for (const char* failure : {"", "Iets anders", "index was outside the bounds of the array.",
                                "Index was outside the bounds of the array"}) {
        for (const int at : {0, 1}) {
            m_notes = {};
            m_notes.failAt = at;
            m_notes.failure = failure;
            auto strijklengte = WithNotes();
            EXPECT_EQ(strijklengte.berekenBodemhoogtes("g", 0, 0, kDirections, lengths).status,
                      BodemhoogteStatus::Unspecified);
        }
    }
}

TEST_F(BodemhoogtesTest, TooFewLengthsAreUnspecified)
{
    auto strijklengte = WithNotes();
    const double lengths[] = {1, 1};
    const auto result = strijklengte.berekenBodemhoogtes("g", 0, 0, kDirections, lengths);
    EXPECT_EQ(result.status, BodemhoogteStatus::Unspecified);
    EXPECT_THAT(result.levels, testing::ElementsAre(-1, -2, 0, 0));
}

// --- with the real library

TEST_F(BodemhoogtesTest, TheLibraryAveragesARealGrid)
{
    const GridText grid{100, 100, 0, 0, 10};
    const QString file = Grid(grid.With([](double x, double) { return x < 500 ? "-2" : "-4"; }));
    const double lengths[] = {100, 100, 400, 300};
    const auto result = m_strijklengte.berekenBodemhoogtes(file, 450, 500, kDirections, lengths);
    EXPECT_EQ(result.status, BodemhoogteStatus::NoError);
    EXPECT_EQ(result.levels[0], -2);
    EXPECT_EQ(result.levels[1], -3); // half of it on either side
    EXPECT_EQ(result.levels[2], -2);
    EXPECT_EQ(result.levels[3], -2);
}

TEST_F(BodemhoogtesTest, AFetchPastTheEdgeIsAPointOutside)
{
    const GridText grid{10, 10, 0, 0, 10};
    const QString file = Grid(grid.With([](double, double) { return "-2"; }));
    const double lengths[] = {10, 60, 10, 10};
    const auto result = m_strijklengte.berekenBodemhoogtes(file, 50, 50, kDirections, lengths);
    EXPECT_EQ(result.status, BodemhoogteStatus::PointOutsideGrid);
    EXPECT_THAT(result.levels, testing::ElementsAre(-2, 0, 0, 0));
}

TEST_F(BodemhoogtesTest, ALineWithoutDataIsUnspecified)
{
    const GridText grid{10, 10, 0, 0, 10};
    const QString file = Grid(grid.With([](double, double) { return "-9999"; }));
    const double lengths[] = {10, 10, 10, 10};
    EXPECT_EQ(m_strijklengte.berekenBodemhoogtes(file, 50, 50, kDirections, lengths).status,
              BodemhoogteStatus::Unspecified);
}

TEST_F(BodemhoogtesTest, AGridThatIsGoneOrNoneIsUnspecified)
{
    const double lengths[] = {10, 10, 10, 10};
    EXPECT_EQ(
        m_strijklengte.berekenBodemhoogtes("/nergens/x.asc", 5, 5, kDirections, lengths).status,
        BodemhoogteStatus::Unspecified);
    EXPECT_EQ(m_strijklengte.berekenBodemhoogtes(Grid("geen"), 5, 5, kDirections, lengths).status,
              BodemhoogteStatus::Unspecified);
    // It comes and goes between two locations.
    const GridText grid{10, 10, 0, 0, 10};
    const QString file = Grid(grid.With([](double, double) { return "-2"; }));
    EXPECT_EQ(m_strijklengte.berekenBodemhoogtes(file, 50, 50, kDirections, lengths).status,
              BodemhoogteStatus::NoError);
    QFile::remove(file);
    EXPECT_EQ(m_strijklengte.berekenBodemhoogtes(file, 50, 50, kDirections, lengths).status,
              BodemhoogteStatus::Unspecified);
}

// --- the header

TEST(GridHeaderTest, ReadsTheFiveKeys)
{
    const GridHeader header = ParseGridHeader("NCOLS 12\nnrows\t9\r\n  XllCorner   1000.5\n"
                                              "yllcorner -2000\ncellsize 2.5\nNODATA_value -9999\n"
                                              "1 2 3 4\n");
    EXPECT_EQ(header.ncols, 12);
    EXPECT_EQ(header.nrows, 9);
    EXPECT_EQ(header.xllcorner, 1000.5);
    EXPECT_EQ(header.yllcorner, -2000);
    EXPECT_EQ(header.cellsize, 2.5);
}

TEST(GridHeaderTest, AMissingKeyOrValueIsZeroAndTheLaterKeyCounts)
{
    const GridHeader header = ParseGridHeader("ncols 5\nnrows\nxllcorner abc\ncellsize 1\n"
                                              "ncols 7\nncolsx 99\ncellsize\n");
    EXPECT_EQ(header.ncols, 7);
    EXPECT_EQ(header.nrows, 0);
    EXPECT_EQ(header.xllcorner, 0);
    EXPECT_EQ(header.yllcorner, 0);
    EXPECT_EQ(header.cellsize, 0);
}

TEST(GridHeaderTest, ReadsTenLinesAtMost)
{
    EXPECT_EQ(ParseGridHeader(QByteArray(9, '\n') + "ncols 5\n").ncols, 5);
    EXPECT_EQ(ParseGridHeader(QByteArray(10, '\n') + "ncols 5\n").ncols, 0);
}

TEST(GridHeaderTest, HasAClosedOutline)
{
    const auto outline = GridHeader{4, 3, 100, 200, 10}.Outline();
    const double wanted[5][2] = {{100, 200}, {140, 200}, {140, 230}, {100, 230}, {100, 200}};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(outline[i].x, wanted[i][0]);
        EXPECT_EQ(outline[i].y, wanted[i][1]);
    }
}

TEST(GridHeaderTest, AFileThatCannotBeOpenedHasNone)
{
    EXPECT_FALSE(ReadGridHeader("/nergens/x.asc").has_value());
    const TemporaryFolder folder;
    WriteBytes(ToQString(folder / "Bodem.ASC"), "cellsize 25\n");
    const auto header = ReadGridHeader(ToQString(folder / "bodem.asc"));
    ASSERT_TRUE(header.has_value());
    EXPECT_EQ(header->cellsize, 25);
}
