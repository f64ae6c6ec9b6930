#include "geometry/CRect.h"
#include "geometry/CShape.h"
#include "geometry/CShapeFile.h"

#include "NotedBoxes.h"
#include "ShapeFileFixture.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

namespace {

// What a hand would write: bytes in hexadecimal, blanks between.
QByteArray Hex(const char* text)
{
    return QByteArray::fromHex(text);
}

std::shared_ptr<CPart> Part(const TestRing& points)
{
    auto part = std::make_shared<CPart>();
    for (const auto& p : points)
        part->Add(std::make_shared<CPoint>(p.x, p.y));
    return part;
}

class CShapeFileTest : public ShapeFileFixture {
protected:
    // What ogrinfo says of the file; empty when it is not installed.
    static QString OgrInfo(const QString& path)
    {
        const QString program = QStandardPaths::findExecutable("ogrinfo");
        if (program.isEmpty())
            return {};
        QProcess process;
        process.start(program, {"-ro", "-al", path});
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0);
        return QString::fromUtf8(process.readAllStandardOutput());
    }
};

const char* const kEmptyPointHeader =
    "0000270a 00000000 00000000 00000000 00000000 00000000"
    "00000000"          // length
    "e8030000 01000000" // version 1000, type 1
    "0000000000000000 0000000000000000 0000000000000000 0000000000000000"
    "0000000000000000 0000000000000000 0000000000000000 0000000000000000";

} // namespace

// --- writing

TEST_F(CShapeFileTest, AnEmptyNewFileIsTwoHeaders)
{
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
    EXPECT_EQ(file.Count(), 0);
    EXPECT_EQ(file.FileType(), 1);
    EXPECT_EQ(file.Left(), 0);
    EXPECT_EQ(file.Top(), 0);
    EXPECT_EQ(Shp(), Hex(kEmptyPointHeader));
    EXPECT_EQ(Shx(), Hex(kEmptyPointHeader));
}

TEST_F(CShapeFileTest, PointsAreWrittenByteForByte)
{
    {
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
        file.Add(CPoint(1.5, -2));
        file.Add(CPoint(-1, 4));
        EXPECT_EQ(file.Count(), 2);
        EXPECT_EQ(file.Left(), -1);
        EXPECT_EQ(file.Bottom(), -2);
        EXPECT_EQ(file.Right(), 1.5);
        EXPECT_EQ(file.Top(), 4);
    }
    const char* const bounds = "000000000000f0bf 00000000000000c0" // Xmin -1, Ymin -2
                               "000000000000f83f 0000000000001040" // Xmax 1.5, Ymax 4
                               "0000000000000000 0000000000000000 0000000000000000"
                               "0000000000000000";
    EXPECT_EQ(Shp(), Hex("0000270a 00000000 00000000 00000000 00000000 00000000"
                         "0000004e e8030000 01000000") // 156 bytes are 78 words
                         + Hex(bounds) +
                         Hex("00000001 0000000a 01000000 000000000000f83f 00000000000000c0"
                             "00000002 0000000a 01000000 000000000000f0bf 0000000000001040"));
    EXPECT_EQ(Shx(), Hex("0000270a 00000000 00000000 00000000 00000000 00000000"
                         "0000003a e8030000 01000000") +
                         Hex(bounds) + Hex("00000032 0000000a 00000040 0000000a"));
}

TEST_F(CShapeFileTest, APolygonWithAHoleIsWrittenByteForByte)
{
    {
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Polygon);
        CPolygon polygon;
        polygon.Add(Part({{0, 0}, {0, 4}, {4, 4}, {0, 0}}));
        polygon.Add(Part({{1, 2}, {2, 2}, {1, 2}}));
        file.Add(polygon);
    }
    const char* const box = "0000000000000000 0000000000000000 0000000000001040 0000000000001040";
    const QByteArray shp = Shp();
    EXPECT_EQ(shp.size(), 100 + 8 + 44 + 2 * 4 + 7 * 16);
    EXPECT_EQ(shp.mid(24, 12), Hex("00000088 e8030000 05000000"));
    EXPECT_EQ(shp.mid(36, 32), Hex(box));
    EXPECT_EQ(shp.mid(100), Hex("00000001 00000052 05000000") + Hex(box) +
                                Hex("02000000 07000000 00000000 04000000"
                                    "0000000000000000 0000000000000000"
                                    "0000000000000000 0000000000001040"
                                    "0000000000001040 0000000000001040"
                                    "0000000000000000 0000000000000000"
                                    "000000000000f03f 0000000000000040"
                                    "0000000000000040 0000000000000040"
                                    "000000000000f03f 0000000000000040"));
    EXPECT_EQ(Shx().mid(100), Hex("00000032 00000052"));
}

TEST_F(CShapeFileTest, APolylineCarriesItsOwnType)
{
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::PolyLine);
    CPolyLine line;
    line.Add(Part({{1, 2}, {4, 2}}));
    file.Add(line);
    EXPECT_EQ(Shp().mid(100), Hex("00000001 00000028 03000000"
                                  "000000000000f03f 0000000000000040"
                                  "0000000000001040 0000000000000040"
                                  "01000000 02000000 00000000"
                                  "000000000000f03f 0000000000000040"
                                  "0000000000001040 0000000000000040"));
}

TEST_F(CShapeFileTest, AMultipointGoesIntoAPointFileInFrontOfItsTypeOne)
{
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
    CMultiPoint points;
    points.Add(std::make_shared<CPoint>(1, 2));
    points.Add(std::make_shared<CPoint>(4, 2));
    file.Add(points);
    EXPECT_EQ(Shp().mid(100), Hex("00000001 00000024 01000000"
                                  "000000000000f03f 0000000000000040"
                                  "0000000000001040 0000000000000040"
                                  "02000000"
                                  "000000000000f03f 0000000000000040"
                                  "0000000000001040 0000000000000040"));
}

TEST_F(CShapeFileTest, ANullShapeHasTwoBytesAndLeavesTheHeaders)
{
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
    CPoint null(9, 9);
    null.MakeNull(true);
    file.Add(null);
    EXPECT_EQ(file.Count(), 1);
    EXPECT_EQ(Shp(), Hex(kEmptyPointHeader) + Hex("00000001 00000002 0000"));
    EXPECT_EQ(Shx(), Hex(kEmptyPointHeader) + Hex("00000032 00000002"));
    // The record behind it starts after those two bytes.
    file.Add(CPoint(1, 2));
    EXPECT_EQ(Shx().mid(108), Hex("00000037 0000000a"));
}

TEST_F(CShapeFileTest, AReopenedFileWithOnlyANullRecordCountsTooLowButFindsIt)
{
    {
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Polygon);
        CPolygon null;
        null.MakeNull(true);
        file.Add(null);
    }
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    EXPECT_LT(file.Count(), 1);
    ExpectFout(0x8004020E, "CShapeFile::ReadPolygon",
               "A shape type does not match main header type.", [&] { (void)file.Item(1); });
}

TEST_F(CShapeFileTest, TheFirstShapeSetsTheBoundsAndOthersOnlyWiden)
{
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
    file.Add(CPoint(1000, 2000));
    EXPECT_EQ(file.Left(), 1000);
    EXPECT_EQ(file.Bottom(), 2000);
    file.Add(CPoint(900, 2100));
    const QByteArray shp = Shp().mid(36, 32);
    EXPECT_EQ(shp, Shx().mid(36, 32));
    // Bounds on the disc are left alone by a shape inside them.
    QFile raw(Stem() + ".shp");
    ASSERT_TRUE(raw.open(QIODevice::ReadWrite));
    ASSERT_TRUE(raw.seek(36));
    raw.write(QByteArray(32, 'x'));
    raw.close();
    file.Add(CPoint(950, 2050));
    EXPECT_EQ(Shp().mid(36, 32), QByteArray(32, 'x'));
    file.Add(CPoint(950, 2200));
    EXPECT_EQ(Shp().mid(36, 32), Shx().mid(36, 32));
    EXPECT_EQ(file.Top(), 2200);
}

TEST_F(CShapeFileTest, RefusesShapesOfAnotherTypeAndWritesNothing)
{
    CShapeFile file;
    const QString source = "CShapeFile::Add";
    const auto text = [](const QString& type) {
        return "Cannot add type " + type + " to a ShapeFile initialized as other type";
    };
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
    ExpectFout(0x80040210, source, text("CPolygon"), [&] { file.Add(CPolygon()); });
    ExpectFout(0x80040210, source, text("CPolyline"), [&] { file.Add(CPolyLine()); });
    EXPECT_EQ(Shp(), Hex(kEmptyPointHeader));
    EXPECT_EQ(Shx(), Hex(kEmptyPointHeader));
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::MultiPoint);
    ExpectFout(0x80040210, source, text("CPoint"), [&] { file.Add(CPoint()); });
    ExpectFout(0x80040210, source, text("CPoint"), [&] { file.Add(CMultiPoint()); });
    ExpectFout(0x80040211, source, "Invalid shape type", [&] { file.Add(CRect()); });
    ExpectFout(0x80040211, source, "Invalid shape type", [&] { file.Add(CNullShape()); });
    ExpectFout(0x80040211, source, "Invalid shape type", [&] { file.Add(CPart()); });
}

// --- opening

TEST_F(CShapeFileTest, AMissingFileIsNamed)
{
    const QString source = "C_ShapeFile::SetFileSpec";
    CShapeFile file;
    ExpectFout(0x8004020C, source, "The specified file " + Stem() + ".shp does not exist.",
               [&] { file.SetFileSpec(Name(), CShapeFile::OPENIT); });
    WriteBytes(Stem() + ".shp", Hex(kEmptyPointHeader));
    ExpectFout(0x8004020C, source, "The specified file " + Stem() + ".shx does not exist.",
               [&] { file.SetFileSpec(Name(), CShapeFile::OPENIT); });
    EXPECT_FALSE(QFile::exists(Stem() + ".shx"));
}

TEST_F(CShapeFileTest, FindsFilesWhateverTheirCase)
{
    const auto pair = MakeShapeFile(1, {});
    WriteBytes(Stem("PROEF") + ".SHP", pair.shp);
    WriteBytes(Stem("PROEF") + ".SHX", pair.shx);
    CShapeFile file;
    EXPECT_NO_THROW(file.SetFileSpec(Name(), CShapeFile::OPENIT));
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
    EXPECT_EQ(QDir(ToQString(m_folder.Path())).entryList(QDir::Files).size(), 2);
}

TEST_F(CShapeFileTest, AFileWithoutTheFileCodeIsRefused)
{
    const QString source = "C_ShapeFile::SetFileSpec";
    auto pair = MakeShapeFile(1, {});
    pair.shp[3] = 0;
    WritePair(Stem(), pair);
    CShapeFile file;
    ExpectFout(0x80040207, source, "The shp file has an invalid shape code in the main header.",
               [&] { file.SetFileSpec(Name(), CShapeFile::OPENIT); });
    pair.shx[3] = 0;
    WritePair(Stem(), pair);
    ExpectFout(0x80040207, source, "The shx file has an invalid shape code in the main header.",
               [&] { file.SetFileSpec(Name(), CShapeFile::OPENIT); });
    WritePair(Stem(), {"", ""});
    ExpectFout(0x80040207, source, "The shx file has an invalid shape code in the main header.",
               [&] { file.SetFileSpec(Name(), CShapeFile::OPENIT); });
}

TEST_F(CShapeFileTest, ANewFileNeedsAType)
{
    WritePair(Stem(), MakeShapeFile(1, {}));
    CShapeFile file;
    ExpectFout(0x8004020D, "C_ShapeFile::SetFileSpec",
               "The ShapeType argument is not optional when argument status is CREATEIT",
               [&] { file.SetFileSpec(Name(), CShapeFile::CREATEIT); });
    EXPECT_EQ(Shp(), QByteArray()) << "the old file is gone by then";
}

TEST_F(CShapeFileTest, CountsByTheIndexHeader)
{
    WritePair(Stem(), MakeShapeFile(1, {PolygonContent({}), PolygonContent({})}));
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    EXPECT_EQ(file.Count(), 2);
    // A new pair has length 0: (0 - 50) / 4 is -12.5, halves to even.
    file.SetFileSpec(Name("nieuw"), CShapeFile::CREATEIT, CShapeFile::Point);
    CShapeFile again;
    again.SetFileSpec(Name("nieuw"), CShapeFile::OPENIT);
    EXPECT_EQ(again.Count(), -12);
}

TEST_F(CShapeFileTest, AppendsToAnExistingPair)
{
    {
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
        file.Add(CPoint(10, 20));
    }
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    EXPECT_EQ(file.Left(), 10);
    file.Add(CPoint(5, 25));
    EXPECT_EQ(file.Count(), 2);
    EXPECT_EQ(file.Left(), 5);
    EXPECT_EQ(file.Right(), 10);
    EXPECT_EQ(Shp().mid(128, 4), Hex("00000002"));
    ASSERT_NE(file.Item(2), nullptr);
    EXPECT_EQ(file.Item(2)->Left(), 5);
}

TEST_F(CShapeFileTest, AFileThatMayNotBeWrittenIsRead)
{
    {
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
        file.Add(CPoint(10, 20));
    }
    for (const char* extension : {".shp", ".shx"})
        QFile::setPermissions(Stem() + extension, QFile::ReadOwner);
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    EXPECT_EQ(file.Item(1)->Left(), 10);
}

// --- reading

TEST_F(CShapeFileTest, ReadsWhatItWrote)
{
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Polygon);
    for (int i = 1; i <= 20; ++i) {
        CPolygon polygon;
        polygon.Add(Part({{i * 1.1, 0}, {0, i * 2.2}, {7, 7}}));
        polygon.Add(Part({{1, 1}}));
        file.Add(polygon);
    }
    for (int i = 20; i >= 1; --i) {
        const auto polygon = std::dynamic_pointer_cast<CPolygon>(file.Item(i));
        ASSERT_NE(polygon, nullptr);
        ASSERT_EQ(polygon->Count(), 2);
        EXPECT_EQ(polygon->Item(1)->Count(), 3);
        EXPECT_EQ(polygon->Item(1)->Item(1)->X(), i * 1.1);
        EXPECT_EQ(polygon->Item(2)->Count(), 1);
        EXPECT_EQ(polygon->Top(), std::max(i * 2.2, 7.0));
    }
}

TEST_F(CShapeFileTest, TakesTheBoundsFromTheRecord)
{
    QByteArray content = PolygonContent({{{1, 1}, {2, 2}}});
    QByteArray box;
    for (const double bound : {-5.0, -6.0, 7.0, 8.0})
        AppendDouble(box, bound);
    content.replace(4, 32, box);
    WritePair(Stem(), MakeShapeFile(5, {content}));
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    const auto shape = file.Item(1);
    EXPECT_EQ(shape->Left(), -5);
    EXPECT_EQ(shape->Bottom(), -6);
    EXPECT_EQ(shape->Right(), 7);
    EXPECT_EQ(shape->Top(), 8);
}

TEST_F(CShapeFileTest, ReadsMultipointFiles)
{
    QByteArray content;
    AppendLittle(content, 8);
    for (const double bound : {1.0, 2.0, 3.0, 4.0})
        AppendDouble(content, bound);
    AppendLittle(content, 2);
    for (const double coordinate : {1.0, 2.0, 3.0, 4.0})
        AppendDouble(content, coordinate);
    WritePair(Stem(), MakeShapeFile(8, {content}));
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    const auto points = std::dynamic_pointer_cast<CMultiPoint>(file.Item(1));
    ASSERT_NE(points, nullptr);
    ASSERT_EQ(points->Count(), 2);
    EXPECT_EQ(points->Item(2)->Y(), 4);
    EXPECT_EQ(points->Right(), 3);
}

TEST_F(CShapeFileTest, ARecordBehindTheLastIsNothingForPointsAndAFailureForTheOthers)
{
    const QString text = "The offset read from index file is larger then the mainfile size";
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
    file.Add(CPoint(1, 1));
    EXPECT_EQ(file.Item(2), nullptr);
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Polygon);
    ExpectFout(0x80040206, "CShapeFile::ReadPolygon", text, [&] { (void)file.Item(1); });
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::PolyLine);
    ExpectFout(0x80040206, "CShapeFile::ReadPolyLine", text, [&] { (void)file.Item(1); });
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::MultiPoint);
    ExpectFout(0x80040206, "C_ShapeFile::ReadMultiPoint", text, [&] { (void)file.Item(1); });
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, 31);
    EXPECT_EQ(file.Item(1), nullptr) << "a type that is not known";
}

TEST_F(CShapeFileTest, ARecordWithAnotherNumberIsAFailure)
{
    const QString text = "Index Record does not match main file Record";
    const std::pair<int, QString> cases[] = {{1, "CShapeFile::ReadPoint"},
                                             {3, "CShapeFile::ReadPolyLine"},
                                             {5, "CShapeFile::ReadPolygon"},
                                             {8, "CShape_IO::ReadMultiPoint"}};
    for (const auto& [type, source] : cases) {
        auto pair = MakeShapeFile(type, {PolygonContent({}, type)});
        pair.shp[103] = 7;
        WritePair(Stem(), pair);
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::OPENIT);
        ExpectFout(0x80040205, source, text, [&] { (void)file.Item(1); });
        // The index points behind the main file: its record reads as zeros.
        pair.shx[101] = 1;
        WritePair(Stem(), pair);
        CShapeFile lying;
        lying.SetFileSpec(Name(), CShapeFile::OPENIT);
        ExpectFout(0x80040205, source, text, [&] { (void)lying.Item(1); });
    }
}

TEST_F(CShapeFileTest, ANullOrForeignRecordIsAFailure)
{
    const QString text = "A shape type does not match main header type.";
    const std::pair<int, QString> cases[] = {{1, "CShapeFile::ReadPoint"},
                                             {3, "CShapeFile::ReadPolygon"},
                                             {5, "CShapeFile::ReadPolygon"},
                                             {8, "C_ShapeFile::ReadPolys"}};
    for (const auto& [type, source] : cases) {
        for (const int inRecord : {0, 15}) {
            WritePair(Stem(), MakeShapeFile(type, {PolygonContent({}, inRecord)}));
            CShapeFile file;
            file.SetFileSpec(Name(), CShapeFile::OPENIT);
            ExpectFout(0x8004020E, source, text, [&] { (void)file.Item(1); });
        }
    }
}

// --- an outside judge

TEST_F(CShapeFileTest, OgrInfoReadsOurFiles)
{
    if (QStandardPaths::findExecutable("ogrinfo").isEmpty())
        GTEST_SKIP() << "ogrinfo is not installed";
    {
        CShapeFile file;
        file.SetFileSpec(Name("punt"), CShapeFile::CREATEIT, CShapeFile::Point);
        file.Add(CPoint(155000.25, 463000.5));
        file.Add(CPoint(-10, 20));
        file.SetFileSpec(Name("lijn"), CShapeFile::CREATEIT, CShapeFile::PolyLine);
        CPolyLine line;
        line.Add(Part({{1, 2}, {3, 4.5}}));
        line.Add(Part({{10, 20}, {30, 40}}));
        file.Add(line);
        file.SetFileSpec(Name("vlak"), CShapeFile::CREATEIT, CShapeFile::Polygon);
        CPolygon polygon;
        polygon.Add(Part(Rectangle(0, 0, 100, 50)));
        polygon.Add(Part({{10, 10}, {20, 10}, {20, 20}, {10, 10}})); // anticlockwise: a hole
        file.Add(polygon);
    }
    const QString points = OgrInfo(Stem("punt") + ".shp");
    EXPECT_TRUE(points.contains("Feature Count: 2"));
    EXPECT_TRUE(
        points.contains("Extent: (-10.000000, 20.000000) - (155000.250000, 463000.500000)"));
    EXPECT_TRUE(points.contains("POINT (155000.25 463000.5)"));
    EXPECT_TRUE(
        OgrInfo(Stem("lijn") + ".shp").contains("MULTILINESTRING ((1 2,3.0 4.5),(10 20,30 40))"));
    EXPECT_TRUE(OgrInfo(Stem("vlak") + ".shp")
                    .contains("POLYGON ((0 0,0 50,100 50,100 0,0 0),(10 10,20 10,20 20,10 10))"));
}
