#include "frame/startup/EnvironmentChecks.h"

#include "Installation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

class FakeDisplay : public DisplayInfo {
public:
    FakeDisplay(int width, int height, int bits) : m_size(width, height), m_bits(bits) {}
    QSize GetScreenRect() const override { return m_size; }
    double GetColourCount() const override { return std::pow(2.0, m_bits); }

private:
    QSize m_size;
    int m_bits;
};

TEST(CheckScreenTest, TheSmallestScreenStartsAndOneDotLessDoesNot)
{
    const Installation installation;
    EXPECT_FALSE(CheckScreen(FakeDisplay(1024, 768, 24)));
    EXPECT_TRUE(CheckScreen(FakeDisplay(1024, 767, 24)));
    EXPECT_TRUE(CheckScreen(FakeDisplay(1023, 768, 24)));
}

TEST(CheckScreenTest, TwoHundredAndFiftySixColoursAreEnough)
{
    const Installation installation;
    EXPECT_FALSE(CheckScreen(FakeDisplay(1024, 768, 8)));
    EXPECT_EQ(CheckScreen(FakeDisplay(1024, 768, 7)).value_or(""),
              "Aantal schermkleuren moet minimaal 256 zijn.\r\n\r\nZie "
              "gebruikershandleiding.\r\n\r\nApplicatie wordt niet gestart!");
}

TEST(CheckScreenTest, ResolutionComesBeforeColours)
{
    const Installation installation;
    EXPECT_TRUE(CheckScreen(FakeDisplay(800, 600, 4)).value_or("").startsWith("Schermresolutie"));
}

TEST(CheckScreenTest, TheSystemsLanguageChoosesTheTexts)
{
    for (const char* dutch : {"NLD", "DUT", "nld"}) {
        const Installation installation(",", dutch);
        EXPECT_EQ(CheckScreen(FakeDisplay(800, 600, 24)).value_or(""),
                  "Schermresolutie moet minimaal 1024x768 zijn.\r\n\r\nZie "
                  "gebruikershandleiding.\r\n\r\nApplicatie wordt niet gestart!");
    }
    const Installation installation(".", "ENU");
    EXPECT_EQ(CheckScreen(FakeDisplay(800, 600, 24)).value_or(""),
              "Screen area must be at least  1024 by 768 pixels.\r\n\r\nSee user "
              "manual.\r\n\r\nApplication aborted!");
    EXPECT_EQ(CheckScreen(FakeDisplay(1024, 768, 4)).value_or(""),
              "Number of display colours must be al least 256.\r\n\r\nSee user "
              "manual.\r\n\r\nApplication aborted!");
}

TEST(RequireFileTest, AFileThatIsThereIsNamedNowhere)
{
    const Installation installation;
    EXPECT_FALSE(RequireFile(".\\data\\Main.ini"));
    EXPECT_FALSE(RequireFile(".\\DATA\\main.INI")); // case does not matter
    EXPECT_TRUE(RequireFile(".\\data"));            // a folder is no file
}

TEST(RequireFileTest, APathWithADotCountsFromTheProgramsFolder)
{
    const Installation installation;
    const QString current = QDir::currentPath();
    QDir::setCurrent("/");
    EXPECT_FALSE(RequireFile(".\\data\\Main.ini"));
    EXPECT_TRUE(RequireFile("data\\Main.ini"));
    QDir::setCurrent(installation.Path());
    EXPECT_FALSE(RequireFile("data\\Main.ini"));
    QDir::setCurrent(current);
}

TEST(RequireFileTest, AProgramIsFoundUnderThisPlatformsName)
{
    const Installation installation;
    EXPECT_TRUE(RequireFile(".\\Rekenprogramma.exe"));
    installation.Write("Rekenprogramma", "x");
    EXPECT_FALSE(RequireFile(".\\Rekenprogramma.exe"));
}

TEST(RequiredFilesTest, TheyComeInTheirOrderAndEndAtTheFirstGap)
{
    const Installation installation;
    installation.Write("Zandvoet.ini", "[Algemeen]\r\nRekenprogramma.exe=r\r\nHandleiding=h\r\n"
                                       "[IniBestanden]\r\nFile1=i1\r\nFile2=i2\r\nFile4=i4\r\n"
                                       "[RekeninstellingenBestanden]\r\nFile1=s1\r\n"
                                       "[AlgemeneBestanden]\r\nFile1=a1");
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    EXPECT_EQ(RequiredFiles().join(' '),
              (QStringList{installation.Path(program + ".ini"), "a1", "i1", "i2", "s1", "r",
                           "<WindWaveCalculator.exe>", "h"})
                  .join(' '));
}

} // namespace
