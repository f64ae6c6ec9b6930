#include "frame/Fouten.h"
#include "geometry/CShapeFile.h"
#include "geometry/modCreateShape.h"

#include "FullDisk.h"
#include "ShapeBytes.h"
#include "TemporaryFolder.h"

#include <QDir>
#include <gtest/gtest.h>

#include <cmath>

namespace {

// A dBASE table read by hand: header of 32 bytes, 32 per field, then rows.
struct Table {
    struct Field {
        QByteArray name;
        char type;
        int width;
        int decimals;
    };
    int version = 0;
    int languageDriver = 0;
    std::vector<Field> fields;
    std::vector<std::vector<QByteArray>> rows;
};

Table ReadTable(const QString& path)
{
    const QByteArray bytes = ReadBytes(path);
    const auto byte = [&](qsizetype i) { return int(static_cast<unsigned char>(bytes.at(i))); };
    Table table;
    table.version = byte(0);
    table.languageDriver = byte(29);
    const int count = byte(4) | byte(5) << 8;
    const int headerSize = byte(8) | byte(9) << 8;
    const int rowSize = byte(10) | byte(11) << 8;
    for (qsizetype at = 32; byte(at) != 0x0D; at += 32)
        table.fields.push_back(
            {bytes.mid(at, 11).constData(), bytes.at(at + 11), byte(at + 16), byte(at + 17)});
    for (int i = 0; i < count; ++i) {
        qsizetype at = headerSize + qsizetype(i) * rowSize + 1;
        auto& row = table.rows.emplace_back();
        for (const auto& field : table.fields) {
            row.push_back(bytes.mid(at, field.width).trimmed());
            at += field.width;
        }
    }
    return table;
}

class modCreateShapeTest : public testing::Test {
protected:
    QString Path(const QString& name) const { return ToQString(m_folder.Path()) + '/' + name; }
    QStringList Files() const
    {
        return QDir(ToQString(m_folder.Path())).entryList(QDir::Files, QDir::Name);
    }

    TemporaryFolder m_folder;
};

} // namespace

TEST_F(modCreateShapeTest, WritesPointsAndATableWithTheSameRows)
{
    const LocatiePunten punten{
        60, {{154999.75, 463000.5, "Dijk aan zee", 2}, {-12.25, 7.5, "Kadé € 'Noord'", 0}}};
    ASSERT_TRUE(modCreateShape(Path("boezem.shp"), punten));
    EXPECT_EQ(Files(), QStringList({"boezem.dbf", "boezem.shp", "boezem.shx"}));

    CShapeFile file;
    file.SetFileSpec(CFileName(Path("boezem.shp")), CShapeFile::OPENIT);
    EXPECT_EQ(file.Count(), 2);
    EXPECT_EQ(file.FileType(), 1);
    EXPECT_EQ(file.Item(1)->Left(), 154999.75);
    EXPECT_EQ(file.Item(1)->Top(), 463000.5) << "the geometry keeps its decimals";

    const Table table = ReadTable(Path("boezem.dbf"));
    EXPECT_EQ(table.version, 3);
    EXPECT_EQ(table.languageDriver, 3) << "Windows-1252";
    ASSERT_EQ(table.fields.size(), 4u);
    EXPECT_EQ(table.fields[0].name, "x");
    EXPECT_EQ(table.fields[0].type, 'N');
    EXPECT_GT(table.fields[0].decimals, 0);
    EXPECT_EQ(table.fields[1].name, "y");
    EXPECT_EQ(table.fields[1].decimals, 0);
    EXPECT_EQ(table.fields[2].name, "OMSCHR");
    EXPECT_EQ(table.fields[2].type, 'C');
    EXPECT_EQ(table.fields[2].width, 60);
    EXPECT_EQ(table.fields[3].name, "KWAL");
    EXPECT_EQ(table.fields[3].decimals, 0);
    ASSERT_EQ(table.rows.size(), 2u);
    EXPECT_EQ(table.rows[0][0].toDouble(), 154999.75);
    EXPECT_EQ(table.rows[0][1], "463000") << "halves go to the even number";
    EXPECT_EQ(table.rows[0][2], "Dijk aan zee");
    EXPECT_EQ(table.rows[0][3], "2");
    EXPECT_EQ(table.rows[1][1], "8");
    EXPECT_EQ(table.rows[1][2], QByteArray("Kad\xE9 \x80 'Noord'"));
}

TEST_F(modCreateShapeTest, WithoutLocationsThereIsAnEmptyPairAndTable)
{
    ASSERT_TRUE(modCreateShape(Path("leeg.shp"), {}));
    EXPECT_EQ(ReadBytes(Path("leeg.shp")).size(), 100);
    EXPECT_EQ(ReadBytes(Path("leeg.shx")).size(), 100);
    const Table table = ReadTable(Path("leeg.dbf"));
    EXPECT_EQ(table.fields.size(), 4u);
    EXPECT_TRUE(table.rows.empty());
}

TEST_F(modCreateShapeTest, ReplacesWhatStandsThere)
{
    const LocatiePunten three{50, {{1, 1, "a", 0}, {2, 2, "b", 1}, {3, 3, "c", 2}}};
    ASSERT_TRUE(modCreateShape(Path("a.shp"), three));
    WriteBytes(Path("12345678.dbf"), "van vroeger");
    ASSERT_TRUE(modCreateShape(Path("a.shp"), {50, {{9, 9, "z", 1}}}));
    EXPECT_EQ(Files(), QStringList({"a.dbf", "a.shp", "a.shx"}));
    EXPECT_EQ(ReadTable(Path("a.dbf")).rows.size(), 1u);
    EXPECT_EQ(ReadBytes(Path("a.shp")).size(), 128);
}

TEST_F(modCreateShapeTest, LargeAndNegativeNumbersFitTheTable)
{
    ASSERT_TRUE(modCreateShape(Path("a.shp"), {50,
                                               {{-123456789.125, -2147483648.0, "laagste", -32768},
                                                {1e9, 2147483647.0, "hoogste", 32767}}}));
    const Table table = ReadTable(Path("a.dbf"));
    EXPECT_EQ(table.rows[0][0].toDouble(), -123456789.125);
    EXPECT_EQ(table.rows[0][1], "-2147483648");
    EXPECT_EQ(table.rows[0][3], "-32768");
    EXPECT_EQ(table.rows[1][1], "2147483647");
}

TEST_F(modCreateShapeTest, AYThatIsNoWholeNumberOfTheTableLeavesNothingBehind)
{
    for (const double y : {3e9, -3e9, std::nan("")}) {
        try {
            modCreateShape(Path("a.shp"), {50, {{1, 1, "a", 0}, {1, y, "Lutjebroek", 0}}});
            ADD_FAILURE() << "no failure";
        } catch (const Fout& fout) {
            EXPECT_TRUE(fout.Description().startsWith("De y-coördinaat van Lutjebroek "));
        }
        EXPECT_EQ(Files(), QStringList());
    }
}

TEST_F(modCreateShapeTest, AFullDiskLeavesNothingHalf)
{
    if (!FullDisk::Works())
        GTEST_SKIP();
    LocatiePunten punten;
    for (int i = 0; i < 200; ++i)
        punten.locaties.push_back({1000.0 + i, 2000.0 + i, "locatie", 1});
    int made = 0;
    int failed = 0;
    for (long room = 0; room < 32000; room += 500) {
        QString text;
        {
            const FullDisk full(room);
            try {
                made += modCreateShape(Path("vol.shp"), punten);
            } catch (const Fout& fout) {
                text = fout.Description();
                ++failed;
            }
        }
        if (!text.isEmpty()) {
            EXPECT_EQ(text.section('|', 0, 0), "Het bestand kan niet worden geschreven.") << room;
        }
        if (Files().isEmpty())
            continue;
        EXPECT_EQ(Files(), QStringList({"vol.dbf", "vol.shp", "vol.shx"})) << room;
        EXPECT_EQ(ReadTable(Path("vol.dbf")).rows.size(), 200u) << room;
        for (const QString& file : Files())
            QFile::remove(Path(file));
    }
    EXPECT_GT(made, 0);
    EXPECT_GT(failed, 0);
}

TEST_F(modCreateShapeTest, PathsMayHoldBlanksAndOtherLetters)
{
    const QString folder = Path(QString::fromUtf8("Súdwest Fryslân 10%"));
    QDir().mkdir(folder);
    ASSERT_TRUE(RebuildLocationShape(folder, QString::fromUtf8("Noord & Zuid – łąka"),
                                     {50, {{1, 2, "a", 0}}}));
    EXPECT_EQ(QDir(folder).entryList(QDir::Files).size(), 3);
}

TEST_F(modCreateShapeTest, CoordinatesThatTheTableCannotHoldStayEmpty)
{
    for (const double x : {1e300, -1e22, std::nan("")}) {
        ASSERT_TRUE(modCreateShape(Path("a.shp"), {50, {{x, 1, "a", 0}, {7, 8, "b", 0}}}));
        const Table table = ReadTable(Path("a.dbf"));
        ASSERT_EQ(table.rows.size(), 2u);
        const QByteArray text = table.rows[0][0];
        EXPECT_EQ(text, QByteArray(text.size(), '*')) << "not an empty number";
        EXPECT_EQ(table.rows[1][0].toDouble(), 7);
    }
}

TEST_F(modCreateShapeTest, WithoutAFolderNothingIsMade)
{
    EXPECT_FALSE(modCreateShape(Path("nergens/a.shp"), {50, {{1, 1, "a", 0}}}));
    EXPECT_EQ(Files(), QStringList());
}

TEST_F(modCreateShapeTest, RebuildLocationShapeUsesTheWorkFolderAndTheBaseName)
{
    QDir(ToQString(m_folder.Path())).mkdir("Rijn.v2");
    ASSERT_TRUE(RebuildLocationShape(Path("Rijn.v2"), "Rijn.v2", {50, {{1, 2, "a", 0}}}));
    EXPECT_EQ(QDir(Path("Rijn.v2")).entryList(QDir::Files, QDir::Name),
              QStringList({"Rijn.v2.dbf", "Rijn.v2.shp", "Rijn.v2.shx"}));
}
