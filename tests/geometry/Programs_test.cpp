#include "LocatieCsv.h"
#include "Program.h"
#include "frame/Paths.h"

#include "../qlmgis/GridFiles.h"
#include "ShapeBytes.h"
#include "TemporaryFolder.h"

#include <QBuffer>
#include <QProcess>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace geometrytools;

namespace {

class ProgramsTest : public testing::Test {
protected:
    ProgramsTest() { SetProgramFolder(INSTALLED_FOLDER); }

    QString Path(const QString& name) const { return ToQString(m_folder.Path()) + '/' + name; }
    int Run(int (*program)(const QStringList&, const Streams&), const QStringList& arguments,
            QByteArray input = {}, bool showProgress = false)
    {
        m_out.clear();
        m_messages.clear();
        QBuffer in(&input);
        QBuffer out(&m_out);
        QBuffer messages(&m_messages);
        in.open(QIODevice::ReadOnly);
        out.open(QIODevice::WriteOnly);
        messages.open(QIODevice::WriteOnly);
        return program(arguments, {in, out, messages, showProgress});
    }
    QList<QByteArrayList> Rows() const
    {
        QList<QByteArrayList> rows;
        for (const QByteArray& line : m_out.trimmed().split('\n'))
            rows.append(line.split(','));
        return rows;
    }
    QString Basin()
    {
        WritePair(Path("oevers"), MakePolygonFile({{Rectangle(0, 0, 1000, 400)}}));
        return Path("oevers.shp");
    }
    QString Grid()
    {
        const GridText grid{110, 50, -50, -50, 10};
        return QString::fromStdString(
            WriteGrid(m_folder / "bodem.asc", grid.With([](double, double) { return "-2.5"; })));
    }

    TemporaryFolder m_folder;
    QByteArray m_out;
    QByteArray m_messages;
};

} // namespace

TEST_F(ProgramsTest, StrijklengteWritesFetchesAndNormals)
{
    EXPECT_EQ(Run(RunStrijklengte, {Basin()}, "A,1,200\nB,999,200\n"), AllComputed);
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 3);
    ASSERT_EQ(rows[0].size(), 22);
    EXPECT_EQ(rows[0].mid(0, 6).join(','), "naam,x,y,status,N,NNO");
    EXPECT_EQ(rows[0].mid(19, 3).join(','), "NNW,dijknormaal,status_dijknormaal");
    EXPECT_EQ(rows[1].mid(0, 4).join(','), "A,1,200,NOERROR");
    EXPECT_EQ(rows[1].mid(20, 2).join(','), "90,NOERROR");
    EXPECT_EQ(rows[2].mid(20, 2).join(','), "270,NOERROR");
    EXPECT_GT(rows[1][8].toDouble(), 400); // east
    EXPECT_LT(rows[1][16].toDouble(), 3);  // west
    EXPECT_TRUE(m_messages.isEmpty());
}

TEST_F(ProgramsTest, StrijklengteTellsWhatCouldNotBeComputed)
{
    EXPECT_EQ(Run(RunStrijklengte, {Basin()}, "A,5000,200\nB,500,1\n"), SomeNotComputed);
    const auto rows = Rows();
    EXPECT_EQ(rows[1].mid(0, 5).join(','), "A,5000,200,POINTINNOPOLY,");
    EXPECT_EQ(rows[1].last(), "POINTINNOPOLY");
    EXPECT_EQ(rows[2][3], "NOERROR");
    EXPECT_EQ(rows[2].last(), "UNSPECIFIED") << "due north of its shore point";
}

TEST_F(ProgramsTest, BodemhoogteAveragesOverTheFetches)
{
    QByteArray lengths;
    for (int i = 0; i < 16; ++i)
        lengths += ",40";
    EXPECT_EQ(Run(RunBodemhoogte, {Grid()}, "A,500,200" + lengths + "\nB,5,200" + lengths),
              AllComputed);
    EXPECT_EQ(Rows()[1].mid(0, 5).join(','), "A,500,200,NOERROR,-2.5");
    EXPECT_EQ(Rows()[2].last(), "-2.5");
    EXPECT_EQ(Run(RunBodemhoogte, {Grid()}, "A,-45,200" + lengths), SomeNotComputed);
    EXPECT_EQ(Rows()[1].mid(0, 5).join(','), "A,-45,200,POINTOUTSIDEGRID,");
}

TEST_F(ProgramsTest, BodemhoogteReadsWhatStrijklengteWrites)
{
    EXPECT_EQ(Run(RunStrijklengte, {Basin()}, "A;300;200\nWeg;9000;200\n"), SomeNotComputed);
    EXPECT_TRUE(m_out.startsWith("naam;x;y;status;N;"));
    const QByteArray fetches = m_out;
    EXPECT_EQ(Run(RunBodemhoogte, {Grid()}, fetches), SomeNotComputed);
    EXPECT_TRUE(m_out.contains("\nA;300;200;NOERROR;-2.5;"));
    EXPECT_TRUE(m_out.contains("\nWeg;9000;200;POINTINNOPOLY;;"));
}

TEST_F(ProgramsTest, LocationsComeFromAFileAsWell)
{
    WriteBytes(Path("Punten.csv"), "naam,x,y\r\n\"Kade, \"\"Noord\"\"\",1,200\r\n\r\n");
    EXPECT_EQ(Run(RunStrijklengte, {Basin(), Path("punten.csv")}), AllComputed);
    EXPECT_TRUE(m_out.contains("\n\"Kade, \"\"Noord\"\"\",1,200,NOERROR,"));
}

TEST_F(ProgramsTest, WrongCallsGetHelp)
{
    for (auto* program : {RunStrijklengte, RunBodemhoogte}) {
        EXPECT_EQ(Run(program, {"--help"}), AllComputed);
        EXPECT_TRUE(m_out.startsWith("Gebruik: "));
        EXPECT_EQ(Run(program, {}), WrongCall);
        EXPECT_TRUE(m_messages.startsWith("Gebruik: "));
        EXPECT_EQ(Run(program, {"a", "b", "c"}), WrongCall);
        EXPECT_EQ(Run(program, {"--iets"}), WrongCall);
    }
}

TEST_F(ProgramsTest, FilesThatCannotBeReadAreNamed)
{
    EXPECT_EQ(Run(RunStrijklengte, {Path("nergens.shp")}), CannotRead);
    EXPECT_TRUE(m_messages.contains("nergens.shp"));
    EXPECT_EQ(Run(RunBodemhoogte, {Path("nergens.asc")}), CannotRead);
    EXPECT_TRUE(m_messages.contains("nergens.asc"));
    EXPECT_EQ(Run(RunStrijklengte, {Basin(), Path("nergens.csv")}), CannotRead);
    EXPECT_TRUE(m_messages.contains("nergens.csv"));
    SetProgramFolder(Path("leeg"));
    EXPECT_EQ(Run(RunBodemhoogte, {Grid()}), CannotRead);
    EXPECT_TRUE(m_messages.contains("QLMGis"));
}

TEST_F(ProgramsTest, AMapThatCannotBeUsedIsNamedWithItsReasonInDutch)
{
    WriteBytes(Path("kapot.shp"), QByteArray(200, 'a'));
    EXPECT_EQ(Run(RunStrijklengte, {Path("kapot.shp")}), CannotRead);
    EXPECT_EQ(m_messages,
              (Path("kapot.shp") + ": geen bruikbaar vlakkenbestand (het is geen shapebestand)\n")
                  .toUtf8());
}

TEST_F(ProgramsTest, AnOutputThatCannotBeWrittenIsTold)
{
#ifdef __linux__
    QFile full("/dev/full");
    ASSERT_TRUE(full.open(QIODevice::WriteOnly));
    QByteArray input = "A,500,200\nB,600,200\n";
    QBuffer in(&input);
    QBuffer messages(&m_messages);
    in.open(QIODevice::ReadOnly);
    messages.open(QIODevice::WriteOnly);
    EXPECT_EQ(RunStrijklengte({Basin()}, {in, full, messages, false}), CannotWrite);
    EXPECT_EQ(m_messages, "de uitvoer kan niet worden geschreven\n");
#else
    GTEST_SKIP();
#endif
}

TEST_F(ProgramsTest, BadLinesAreNamedByTheirNumber)
{
    const QString basin = Basin();
    for (const char* input : {"A,1,200\nB,links,200\n", "A,1,200\nB,1\n", "A,1,200\n\"B,1,200\n",
                              "A,1,200\nB,1e999,200\n"}) {
        EXPECT_EQ(Run(RunStrijklengte, {basin}, input), CannotRead) << input;
        EXPECT_TRUE(m_messages.startsWith("regel 2: ")) << m_messages.toStdString();
    }
    EXPECT_EQ(Run(RunBodemhoogte, {Grid()}, "A,1,200,3,4\n"), CannotRead);
}

TEST_F(ProgramsTest, ProgressIsShownOnATerminalOnly)
{
    const QString basin = Basin();
    QByteArray input;
    for (int i = 1; i <= 25; ++i)
        input += "A,500," + QByteArray::number(i) + "\n";
    Run(RunStrijklengte, {basin}, input);
    EXPECT_TRUE(m_messages.isEmpty());
    Run(RunStrijklengte, {basin}, input, true);
    EXPECT_TRUE(m_messages.contains("\r20 locaties"));
    EXPECT_TRUE(m_messages.endsWith("\r25 locaties\n"));
}

TEST_F(ProgramsTest, RunsAsAProgram)
{
    QProcess process;
    process.start(INSTALLED_FOLDER "/strijklengte", {Basin()});
    process.write("A,1,200\n");
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardOutput().contains("A,1,200,NOERROR"));
    QByteArray lengths;
    for (int i = 0; i < 16; ++i)
        lengths += ",40";
    process.start(INSTALLED_FOLDER "/bodemhoogte", {Grid()});
    process.write("A,500,200" + lengths + "\n");
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    EXPECT_TRUE(process.readAllStandardOutput().contains("A,500,200,NOERROR,-2.5"));
}

TEST(LocatieCsvTest, ReadsOldEncodingsMarksAndCommas)
{
    QByteArray text = "\xEF\xBB\xBFKad\xE9;1,5;-2,25\n";
    QBuffer in(&text);
    in.open(QIODevice::ReadOnly);
    LocatieCsv csv(in, 0);
    LocatieRij rij;
    ASSERT_TRUE(csv.Next(rij));
    EXPECT_EQ(rij.naam, QString::fromUtf8("Kadé"));
    EXPECT_EQ(rij.x, 1.5);
    EXPECT_EQ(rij.y, -2.25);
    EXPECT_FALSE(csv.Next(rij));
}
