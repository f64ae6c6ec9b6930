#include "windwave/ui/WindWaveWindow.h"

#include "frame/ui/Chart.h"
#include "frame/ui/Grid.h"

#include <QClipboard>
#include <QDoubleSpinBox>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

template <typename Control>
Control* Find(QWidget& window, const char* name)
{
    return window.findChild<Control*>(QLatin1String(name));
}

double CellNumber(QWidget& window, int row, int column)
{
    return QLocale().toDouble(Find<Grid>(window, "grid")->Text(row, column));
}

} // namespace

TEST(WindWaveWindowTest, ShowsTheModelsOfItsLetters)
{
    WindWaveWindow window("NL", " BYH");
    EXPECT_EQ(window.windowTitle(), "Windgolven");
    EXPECT_EQ(Find<Grid>(window, "grid")->columnCount(), 7);
    EXPECT_EQ(Find<Chart>(window, "chart")->SeriesTitles(),
              (QStringList{"Bretschneider", "Young en Verhagen", "Breugem en Holthuijsen"}));

    WindWaveWindow english("EN", "Y");
    EXPECT_EQ(english.windowTitle(), "Wind waves");
    EXPECT_EQ(Find<Chart>(english, "chart")->SeriesTitles(), QStringList{"Young and Verhagen"});
    EXPECT_EQ(Find<Grid>(english, "grid")->columnCount(), 3);
}

TEST(WindWaveWindowTest, CalculatesAtEveryChange)
{
    WindWaveWindow window("NL", "B");
    window.show();
    EXPECT_NEAR(CellNumber(window, 9, 1), 0.78, 0.001); // 20 m/s, 5 km, 3 m

    auto* depth = Find<QDoubleSpinBox>(window, "spinDepth");
    depth->setFocus();
    depth->selectAll();
    QTest::keyClicks(depth, "1");
    QTest::keyClick(depth, Qt::Key_Return);
    EXPECT_LT(CellNumber(window, 9, 1), 0.6);

    Find<QDoubleSpinBox>(window, "spinWind")->setValue(17.5);
    EXPECT_EQ(Find<Grid>(window, "grid")->rowCount(), 21);
    EXPECT_EQ(CellNumber(window, 8, 0), 17.5);
    EXPECT_TRUE(Find<Grid>(window, "grid")->CellColour(8, 1).isValid());
}

TEST(WindWaveWindowTest, TheChartShowsHeightOrPeriod)
{
    WindWaveWindow window("NL", "B");
    window.show();
    auto* chart = Find<Chart>(window, "chart");
    EXPECT_EQ(chart->AxisTitle(Chart::Axis::Left), "Hm0 [m]");
    EXPECT_NEAR(chart->Points("Bretschneider")[10].y(), 0.780, 0.001);
    QTest::mouseClick(Find<QRadioButton>(window, "optPeriod"), Qt::LeftButton);
    EXPECT_EQ(chart->AxisTitle(Chart::Axis::Left), "Tp [s]");
    EXPECT_NEAR(chart->Points("Bretschneider")[10].y(), 3.03, 0.005);
}

TEST(WindWaveWindowTest, CopiesTheTableAsTextAndTheChartAsAPicture)
{
    WindWaveWindow window("NL", "BY");
    window.show();
    QTest::mouseClick(Find<QPushButton>(window, "cmdCopyTable"), Qt::LeftButton);
    const QStringList lines = QGuiApplication::clipboard()->text().split("\n");
    ASSERT_EQ(lines.size(), 21);
    EXPECT_EQ(lines[0].split('\t').size(), 5);
    EXPECT_TRUE(lines[0].startsWith("Windsnelheid [m/s]\tBretschneider Hm0 [m]\t"));
    EXPECT_EQ(lines[10].split('\t')[0], QLocale().toString(20.0, 'f', 1));

    QTest::mouseClick(Find<QPushButton>(window, "cmdCopyChart"), Qt::LeftButton);
    EXPECT_FALSE(QGuiApplication::clipboard()->image().isNull());
}

TEST(WindWaveWindowTest, CloseCloses)
{
    WindWaveWindow window("NL", "");
    window.show();
    QTest::mouseClick(Find<QPushButton>(window, "cmdClose"), Qt::LeftButton);
    EXPECT_FALSE(window.isVisible());
}
