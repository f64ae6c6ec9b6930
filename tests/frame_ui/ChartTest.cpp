#include "frame/ui/Chart.h"

#include "TemporaryFolder.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QMimeData>
#include <QPrinter>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using Axis = Chart::Axis;

class ChartTest : public testing::Test {
protected:
    ChartTest() { m_chart.resize(400, 300); }
    void Show()
    {
        m_chart.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_chart));
    }
    static int Count(const QImage& picture, const QColor& colour)
    {
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                count += picture.pixelColor(x, y) == colour ? 1 : 0;
        }
        return count;
    }

    Chart m_chart;
};

TEST_F(ChartTest, SeriesKeepTheirTitlesAndPointsInOrder)
{
    const QList<QPointF> ring{{0, 0}, {10, 0}, {10, 10}, {0, 0}};
    m_chart.AddSeries("POLYGOON0", ring);
    m_chart.AddSeries("lijn", {{1, 1}});
    m_chart.AddPoint("lijn", {2, 3});
    m_chart.AddPoint("geen", {9, 9});
    EXPECT_EQ(m_chart.SeriesTitles(), (QStringList{"POLYGOON0", "lijn"}));
    EXPECT_EQ(m_chart.Points("POLYGOON0"), ring);
    EXPECT_EQ(m_chart.Points("lijn"), (QList<QPointF>{{1, 1}, {2, 3}}));
}

TEST_F(ChartTest, SeriesAreRemovedByTheBeginningOfTheirTitleInAnyCase)
{
    for (const char* title : {"STRIJKLENGTE1", "Strijklengte2", "POLYGOON0", "xSTRIJKLENGTE"})
        m_chart.AddSeries(title, {{0, 0}, {1, 1}});
    m_chart.RemoveAllSeriesWithName("strijklengte");
    EXPECT_EQ(m_chart.SeriesTitles(), (QStringList{"POLYGOON0", "xSTRIJKLENGTE"}));
    m_chart.RemoveAllSeries();
    EXPECT_EQ(m_chart.SeriesCount(), 0);
}

TEST_F(ChartTest, AnAxisShowsAllPointsUntilARangeIsSet)
{
    m_chart.AddSeries("a", {{0, 100}, {10, 200}});
    EXPECT_LE(m_chart.AxisRange(Axis::Bottom).lower, 0);
    EXPECT_GE(m_chart.AxisRange(Axis::Bottom).upper, 10);
    EXPECT_LT(m_chart.AxisRange(Axis::Left).upper, 250);
    ASSERT_TRUE(m_chart.setAxisRange(Axis::Bottom, -5, 5));
    EXPECT_EQ(m_chart.AxisRange(Axis::Bottom).lower, -5);
    EXPECT_EQ(m_chart.AxisRange(Axis::Bottom).upper, 5);
    m_chart.AddPoint("a", {1000, 0});
    EXPECT_EQ(m_chart.AxisRange(Axis::Bottom).upper, 5);
    m_chart.setAxisAutomatic(Axis::Bottom);
    EXPECT_GE(m_chart.AxisRange(Axis::Bottom).upper, 1000);
}

TEST_F(ChartTest, AnEmptyChartAndOnePointHaveARange)
{
    EXPECT_LT(m_chart.AxisRange(Axis::Left).lower, m_chart.AxisRange(Axis::Left).upper);
    m_chart.AddSeries("a", {{5, 5}});
    EXPECT_LT(m_chart.AxisRange(Axis::Left).lower, 5);
    EXPECT_GT(m_chart.AxisRange(Axis::Left).upper, 5);
}

TEST_F(ChartTest, ARangeThatIsNoneIsRefused)
{
    EXPECT_FALSE(m_chart.setAxisRange(Axis::Left, 1, 1));
    EXPECT_FALSE(m_chart.setAxisRange(Axis::Left, 2, 1));
    EXPECT_FALSE(m_chart.setAxisRange(Axis::Left, 0, std::numeric_limits<double>::infinity()));
    m_chart.setLogarithmic(Axis::Left, true);
    EXPECT_FALSE(m_chart.setAxisRange(Axis::Left, 0, 10));
    EXPECT_TRUE(m_chart.setAxisRange(Axis::Left, 10, 10000));
}

TEST_F(ChartTest, ALogarithmicAxisPassesOverWhatItCannotShow)
{
    m_chart.setLogarithmic(Axis::Bottom, true);
    EXPECT_TRUE(m_chart.IsLogarithmic(Axis::Bottom));
    m_chart.AddSeries("a", {{0, 1}, {10, 2}, {1000, 3}});
    EXPECT_GT(m_chart.AxisRange(Axis::Bottom).lower, 5);
    EXPECT_GE(m_chart.AxisRange(Axis::Bottom).upper, 1000);
}

TEST_F(ChartTest, LabelsFollowTheirFormat)
{
    m_chart.setLabelFormat(Axis::Bottom, "0");
    m_chart.setLabelFormat(Axis::Left, "0.00");
    EXPECT_EQ(m_chart.LabelText(Axis::Bottom, 9.7), "10");
    EXPECT_EQ(m_chart.LabelText(Axis::Left, 1).size(), 4);
}

TEST_F(ChartTest, AUnitBecomesAsLongOnBothAxes)
{
    m_chart.resize(500, 300);
    m_chart.AddSeries("a", {{0, 0}, {100, 100}});
    ASSERT_TRUE(m_chart.setAxisRange(Axis::Bottom, 0, 100));
    ASSERT_TRUE(m_chart.setAxisRange(Axis::Left, 0, 100));
    m_chart.KeepAspectRatio(); // hidden: nothing happens
    EXPECT_EQ(m_chart.AxisRange(Axis::Bottom).upper, 100);
    Show();
    m_chart.Repaint();
    m_chart.KeepAspectRatio();
    const auto x = m_chart.AxisRange(Axis::Bottom);
    const auto y = m_chart.AxisRange(Axis::Left);
    EXPECT_EQ(y.upper - y.lower, 100);
    EXPECT_GT(x.upper - x.lower, 100);
    EXPECT_NEAR((x.lower + x.upper) / 2, 50, 1e-9); // half on either side
}

TEST_F(ChartTest, TheClipboardGetsAPictureOnWhite)
{
    QPalette dark = m_chart.palette();
    dark.setColor(QPalette::Base, QColor(30, 60, 90));
    dark.setColor(QPalette::Text, Qt::white);
    m_chart.setPalette(dark);
    m_chart.AddSeries("a", {{0, 0}, {1, 1}}, {Qt::red, 3, false});
    Show();
    m_chart.CopyToClipboard();
    const QImage picture = QApplication::clipboard()->image();
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(picture.pixelColor(1, 1), QColor(Qt::white));
    EXPECT_GT(Count(picture, Qt::red), 100);
    EXPECT_EQ(Count(picture, QColor(30, 60, 90)), 0);
    m_chart.Repaint();
    EXPECT_EQ(m_chart.grab().toImage().pixelColor(2, 2), QColor(30, 60, 90));
}

TEST_F(ChartTest, BlackLinesAreSeenInADarkWindow)
{
    QPalette dark = m_chart.palette();
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    m_chart.setPalette(dark);
    m_chart.AddSeries("a", {{0, 0.5}, {1, 0.5}}, {Qt::black, 5, false});
    Show();
    m_chart.Repaint();
    const QImage window = m_chart.grab().toImage();
    int light = 0;
    for (int y = window.height() / 4; y < window.height() * 3 / 4; ++y)
        light += window.pixelColor(window.width() / 2 + 7, y).lightness() > 100 ? 1 : 0;
    EXPECT_GE(light, 4);
}

TEST_F(ChartTest, PdfAndPrintFillAPage)
{
    const TemporaryFolder folder;
    m_chart.AddSeries("a", {{0, 0}, {1, 1}});
    m_chart.setHeading({"Zandvoet - Frequentielijn", "Locatie: noord"});
    const QString pdf = QString::fromStdString((folder / "grafiek.pdf").string());
    EXPECT_TRUE(m_chart.ExportPdf(pdf));
    QFile file(pdf);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.read(5) == "%PDF-");

    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    const QString printed = QString::fromStdString((folder / "afdruk.pdf").string());
    printer.setOutputFileName(printed);
    m_chart.PrintOn(printer);
    EXPECT_GT(QFile(printed).size(), 1000);
    EXPECT_FALSE(
        m_chart.ExportPdf(QString::fromStdString((folder / "geen map/grafiek.pdf").string())));
}

TEST_F(ChartTest, HeadingAndAxisTitlesComeAndGo)
{
    m_chart.setHeading({"een", "twee"});
    m_chart.setAxisTitle(Axis::Left, "h [m]");
    EXPECT_EQ(m_chart.Heading().size(), 2);
    EXPECT_EQ(m_chart.AxisTitle(Axis::Left), "h [m]");
    Show();
    m_chart.Repaint();
    m_chart.setHeading({});
    m_chart.Repaint();
    m_chart.setHeading({"weer"});
    m_chart.Repaint();
    EXPECT_EQ(m_chart.Heading(), QStringList{"weer"});
}

TEST_F(ChartTest, ALongShoreLineAndManyRaysStandTogether)
{
    QList<QPointF> shore;
    for (int i = 0; i < 100000; ++i)
        shore.append({std::cos(i * 1e-4) * i, std::sin(i * 1e-4) * i});
    m_chart.AddSeries("POLYGOON0", shore);
    for (int i = 0; i < 64; ++i)
        m_chart.AddSeries("STRIJKLENGTE" + QString::number(i), {{0, 0}, {100.0 * i, 50.0}});
    EXPECT_EQ(m_chart.SeriesCount(), 65);
    EXPECT_EQ(m_chart.Points("POLYGOON0").size(), 100000);
}

} // namespace
