#include "frame/ui/DesktopTheme.h"

#include "frame/ui/Colours.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>
#include <gtest/gtest.h>

namespace {

class DesktopThemeTest : public testing::Test {
protected:
    ~DesktopThemeTest() override
    {
        QApplication::setStyle(QStyleFactory::create(m_style));
        QApplication::setPalette(m_palette);
    }

    QString m_style = QApplication::style()->objectName();
    QPalette m_palette = QApplication::palette();
};

TEST_F(DesktopThemeTest, ADarkDesktopGivesDarkWindowsWithReadableText)
{
    ASSERT_FALSE(IsDark(QApplication::palette()));
    FollowDesktopTheme(true);
    const QPalette dark = QApplication::palette();
    EXPECT_TRUE(IsDark(dark));
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> readable[] = {
        {QPalette::Text, QPalette::Base},
        {QPalette::Text, QPalette::AlternateBase},
        {QPalette::ButtonText, QPalette::Button},
        {QPalette::ToolTipText, QPalette::ToolTipBase},
        {QPalette::HighlightedText, QPalette::Highlight},
        {QPalette::Link, QPalette::Base},
        {QPalette::PlaceholderText, QPalette::Base}};
    for (const auto& [text, background] : readable)
        EXPECT_GT(Luminance(dark.color(text)) - Luminance(dark.color(background)), 0.4)
            << text << " on " << background;
}

TEST_F(DesktopThemeTest, ADesktopThatDoesNotAskKeepsItsColours)
{
    FollowDesktopTheme(false);
    EXPECT_EQ(QApplication::palette(), m_palette);
    EXPECT_EQ(QApplication::style()->objectName(), m_style);
}

TEST_F(DesktopThemeTest, ColoursThatAreDarkAlreadyAreThoseOfTheDesktop)
{
    QPalette own(QColor(240, 230, 220), QColor(20, 20, 40), QColor(60, 60, 80), QColor(0, 0, 10),
                 QColor(40, 40, 60), QColor(240, 230, 220), QColor(10, 10, 30));
    QApplication::setPalette(own);
    FollowDesktopTheme(true);
    EXPECT_EQ(QApplication::palette().color(QPalette::Base), QColor(10, 10, 30));
}

TEST_F(DesktopThemeTest, ABlackHintOnADarkBoxIsMadeReadable)
{
    QPalette theme(Qt::white, Qt::black, Qt::gray, Qt::black, Qt::darkGray, Qt::white, Qt::black);
    theme.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
    EXPECT_EQ(WithReadableHints(theme).color(QPalette::PlaceholderText),
              QColor(255, 255, 255, 128));
    EXPECT_EQ(WithReadableHints(m_palette), m_palette);
}

TEST(ColoursTest, AColourThatCannotBeSeenChangesInLightnessOnly)
{
    EXPECT_EQ(VisibleOn(Qt::white, Qt::blue), QColor(Qt::blue));
    EXPECT_EQ(VisibleOn(Qt::black, Qt::white), QColor(Qt::white));
    EXPECT_GT(Luminance(VisibleOn(Qt::black, Qt::black)), 0.5);
    const QColor blue = VisibleOn(QColor(20, 20, 20), Qt::blue);
    EXPECT_GT(Luminance(blue), 0.5);
    EXPECT_EQ(blue.hslHue(), QColor(Qt::blue).hslHue());
    EXPECT_LT(Luminance(VisibleOn(Qt::white, Qt::yellow)), 0.7);
}

} // namespace
