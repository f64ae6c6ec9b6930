// Pairs that are damaged, and disks that are full.
#include "FullDisk.h"
#include "ShapeFileFixture.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <tuple>

namespace {

using ShapeFileDamageTest = ShapeFileFixture;

// What `body` says when it fails; empty when it does not.
template <typename Body>
QString FailureText(Body&& body)
{
    try {
        body();
    } catch (const Fout& fout) {
        return fout.Description();
    }
    return {};
}

// The routine that `body` fails in; empty when it does not fail.
template <typename Body>
QString FailureSource(Body&& body)
{
    try {
        body();
    } catch (const Fout& fout) {
        return fout.Source();
    }
    return {};
}

// Whether this process holds the file open, where the system tells.
bool IsOpen(const QString& path)
{
    const QFileInfoList open = QDir("/proc/self/fd").entryInfoList(QDir::Files | QDir::System);
    return std::any_of(open.begin(), open.end(),
                       [&](const QFileInfo& one) { return one.symLinkTarget() == path; });
}

// A polygon of three squares whose parts start at point 0, `second` and `third`.
QByteArray ThreeSquares(quint32 second, quint32 third)
{
    QByteArray content =
        PolygonContent({Rectangle(0, 0, 1, 1), Rectangle(2, 2, 3, 3), Rectangle(4, 4, 5, 5)});
    QByteArray starts;
    AppendLittle(starts, second);
    AppendLittle(starts, third);
    return content.replace(48, 8, starts);
}

} // namespace

TEST_F(ShapeFileDamageTest, ANegativePlaceFailsUnderTheNameOfTheRoutine)
{
    auto pair = MakeShapeFile(5, {PolygonContent({})});
    pair.shx[100] = char(0xFF);
    WritePair(Stem(), pair);
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    try {
        (void)file.Item(1);
        ADD_FAILURE();
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Source(), "C_ShapeFile::GetRecordHeader");
    }
    try {
        (void)file.Item(std::numeric_limits<qint32>::min());
        ADD_FAILURE();
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Source(), "C_ShapeFile::FindOffset");
    }
}

TEST_F(ShapeFileDamageTest, CountsThatCannotBeAreFailures)
{
    for (const quint32 count : {0xFFFFFFFFu, 0x80000000u, 0x7FFFFFFFu}) {
        for (const qsizetype place : {36, 40}) {
            QByteArray content = PolygonContent({Rectangle(0, 0, 1, 1)});
            QByteArray bytes;
            AppendLittle(bytes, count);
            content.replace(place, 4, bytes);
            WritePair(Stem(), MakeShapeFile(5, {content}));
            CShapeFile file;
            file.SetFileSpec(Name(), CShapeFile::OPENIT);
            EXPECT_THROW((void)file.Item(1), Fout) << count;
        }
    }
}

TEST_F(ShapeFileDamageTest, PartsThatStartOutsideTheirPointsAreFailures)
{
    for (const quint32 start : {0xFFFFFFF0u, 100u}) {
        QByteArray content = PolygonContent({Rectangle(0, 0, 1, 1), Rectangle(2, 2, 3, 3)});
        QByteArray bytes;
        AppendLittle(bytes, start);
        content.replace(48, 4, bytes);
        WritePair(Stem(), MakeShapeFile(5, {content}));
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::OPENIT);
        EXPECT_THROW((void)file.Item(1), Fout) << start;
    }
}

TEST_F(ShapeFileDamageTest, WhatAFileLacksAtItsEndReadsAsZeros)
{
    auto pair = MakeShapeFile(5, {PolygonContent({{{1, 2}, {3, 4}}})});
    pair.shp.chop(16);
    WritePair(Stem(), pair);
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    const auto polygon = std::dynamic_pointer_cast<CPolygon>(file.Item(1));
    ASSERT_EQ(polygon->Item(1)->Count(), 2);
    EXPECT_EQ(polygon->Item(1)->Item(1)->Y(), 2);
    EXPECT_EQ(polygon->Item(1)->Item(2)->X(), 0);
}

TEST_F(ShapeFileDamageTest, PartsThatDoNotRiseAreAFailure)
{
    WritePair(Stem(), MakeShapeFile(5, {ThreeSquares(5, 10), ThreeSquares(10, 5)}));
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    EXPECT_NO_THROW((void)file.Item(1));
    // Each part from its start to the last point would take points twice, and
    // a damaged file of a megabyte all the memory there is.
    EXPECT_THROW((void)file.Item(2), Fout);
}

TEST_F(ShapeFileDamageTest, WhatIsDamagedIsToldInDutchWithTheFile)
{
    QByteArray content = PolygonContent({Rectangle(0, 0, 1, 1)});
    QByteArray count;
    for (const quint32 wrong : {0xFFFFFFFFu, 0x7FFFFFFFu}) {
        count.clear();
        AppendLittle(count, wrong);
        WritePair(Stem(), MakeShapeFile(5, {content.replace(40, 4, count), ThreeSquares(100, 10)}));
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::OPENIT);
        for (const int record : {1, 2})
            EXPECT_EQ(FailureText([&] { (void)file.Item(record); }),
                      "Het shapebestand is beschadigd.|" + Stem() + ".shp");
        EXPECT_EQ(FailureText([&] { (void)file.Item(std::numeric_limits<qint32>::min()); }),
                  "Het shapebestand is beschadigd.|" + Stem() + ".shx");
    }
}

TEST_F(ShapeFileDamageTest, AFileThatCannotBeMadeIsNamedInDutch)
{
    CShapeFile file;
    EXPECT_EQ(FailureText([&] {
                  file.SetFileSpec(Name("nergens/proef"), CShapeFile::CREATEIT, CShapeFile::Point);
              }),
              "Het bestand kan niet worden geopend.|" + Stem("nergens/proef") + ".shx");
}

TEST_F(ShapeFileDamageTest, AFullDiskLeavesThePairAsItWas)
{
    if (!FullDisk::Works())
        GTEST_SKIP();
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
    file.Add(CPoint(1, 2));
    CPoint null;
    null.MakeNull(true);
    const QByteArray shp = Shp();
    const QByteArray shx = Shx();
    for (const long room : {100, 108, 112, 116, 128, 130, 140, 155}) {
        const FullDisk full(room);
        QString text;
        if (room < 138)
            text = FailureText([&] { file.Add(null); });
        else
            text = FailureText([&] { file.Add(CPoint(3, 4)); });
        EXPECT_EQ(text.section('|', 0, 0), "Het bestand kan niet worden geschreven.") << room;
        EXPECT_EQ(file.Count(), 1);
        EXPECT_EQ(Shp(), shp) << room;
        EXPECT_EQ(Shx(), shx) << room;
    }
    // With room again it goes on as if nothing had been.
    file.Add(CPoint(3, 4));
    EXPECT_EQ(file.Count(), 2);
    EXPECT_EQ(Shp().size(), 156);
    EXPECT_EQ(Shx().size(), 116);
    EXPECT_EQ(file.Item(2)->Left(), 3);
}

TEST_F(ShapeFileDamageTest, AFullDiskIsToldByTheRoutineThatMetIt)
{
    if (!FullDisk::Works())
        GTEST_SKIP();
    using Type = CShapeFile::ShapeType;
    CPoint null;
    null.MakeNull(true);
    const CPoint point(1, 2);
    CMultiPoint points;
    points.Add(std::make_shared<CPoint>(1, 2));
    const auto part = std::make_shared<CPart>();
    part->Add(std::make_shared<CPoint>(1, 2));
    CPolyLine line;
    line.Add(part);
    CPolygon polygon;
    polygon.Add(part);
    const std::tuple<Type, const ShapeObject*, QString> cases[] = {
        {Type::Point, &null, "CShapeFile::PutNull"},
        {Type::Point, &point, "C_ShapeFile::PutPoints"},
        {Type::Point, &points, "CShapeFile::PutMultiPoints"},
        {Type::PolyLine, &line, "CShapeFile::PutPolyLine"},
        {Type::Polygon, &polygon, "CShapeFile::PutPolygon"}};
    for (const auto& [type, shape, source] : cases) {
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::CREATEIT, type);
        const FullDisk full(104);
        EXPECT_EQ(FailureSource([&] { file.Add(*shape); }), source);
    }
    const FullDisk full(50);
    CShapeFile file;
    EXPECT_EQ(FailureSource([&] { file.SetFileSpec(Name(), CShapeFile::CREATEIT, Type::Point); }),
              "CShapeFile::PutMainHeaders");
}

TEST_F(ShapeFileDamageTest, AnIndexRecordThatIsCutOffIsNotThere)
{
    auto pair = MakeShapeFile(5, {ThreeSquares(5, 10), ThreeSquares(5, 10)});
    pair.shx.chop(1);
    WritePair(Stem(), pair);
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::OPENIT);
    EXPECT_NO_THROW((void)file.Item(1));
    EXPECT_EQ(FailureText([&] { (void)file.Item(2); }),
              "The offset read from index file is larger then the mainfile size");
}

TEST_F(ShapeFileDamageTest, HalvesInTheNumberOfRecordsGoToTheEvenNumber)
{
    for (const auto& [words, count] : {std::pair(56u, 2), {60u, 2}, {64u, 4}, {61u, 3}}) {
        auto pair = MakeShapeFile(5, {});
        QByteArray length;
        AppendBig(length, words);
        pair.shx.replace(24, 4, length);
        WritePair(Stem(), pair);
        CShapeFile file;
        file.SetFileSpec(Name(), CShapeFile::OPENIT);
        EXPECT_EQ(file.Count(), count) << words;
    }
}

TEST_F(ShapeFileDamageTest, AFileWithoutItsCodeIsClosedBeforeTheFailure)
{
    if (!QFile::exists("/proc/self/fd"))
        GTEST_SKIP() << "the system does not tell which files are open";
    for (const QString extension : {".shx", ".shp"}) {
        auto pair = MakeShapeFile(5, {});
        (extension == ".shx" ? pair.shx : pair.shp)[0] = 1;
        WritePair(Stem(), pair);
        CShapeFile file;
        EXPECT_THROW(file.SetFileSpec(Name(), CShapeFile::OPENIT), Fout);
        EXPECT_FALSE(IsOpen(Stem() + extension)) << extension.toStdString();
    }
    CShapeFile file;
    file.SetFileSpec(Name(), CShapeFile::CREATEIT, CShapeFile::Point);
    EXPECT_TRUE(IsOpen(Stem() + ".shp")) << "the test sees open files";
}

TEST_F(ShapeFileDamageTest, PathsMayHoldBlanksAndOtherLetters)
{
    const QString stem = Stem(QString::fromUtf8("Súdwest Fryslân 10% – łąka"));
    {
        CShapeFile file;
        file.SetFileSpec(CFileName(stem + ".shp"), CShapeFile::CREATEIT, CShapeFile::Point);
        file.Add(CPoint(1, 2));
    }
    CShapeFile file;
    file.SetFileSpec(CFileName(stem + ".shp"), CShapeFile::OPENIT);
    EXPECT_EQ(file.Count(), 1);
}
