#include "ProgramRun.h"

#include <QElapsedTimer>
#include <QTest>
#include <gtest/gtest.h>

namespace {

/// The real program in whole and broken installations.
class ProgramTest : public testing::Test {
protected:
    ProgramRun m_run;
    QByteArray m_shipped = m_run.Read("Zandvoet.ini");
};

TEST_F(ProgramTest, AWholeInstallationStartsAndClosesWithoutABox)
{
    EXPECT_EQ(m_run.Run(), 0);
    EXPECT_TRUE(m_run.Shown());
    EXPECT_TRUE(m_run.Boxes().isEmpty());
}

TEST_F(ProgramTest, TheWindowSpeaksDutch)
{
    m_run.Run();
    EXPECT_TRUE(m_run.Log().join('\n').contains(
        "shown\tZandvoet - Toetsen en ontwerpen van regionale waterkeringen"));
}

TEST_F(ProgramTest, TheSettingsAreInTheIniBehindTheClose)
{
    m_run.Run();
    const QByteArray ini = m_run.Read("Zandvoet.ini");
    EXPECT_TRUE(ini.contains("frmMainLeft="));
    EXPECT_TRUE(ini.contains("frmMainToolbarState=1"));
    EXPECT_TRUE(ini.contains("PANE_TOP0_WidthFactor=0.65"));
    EXPECT_TRUE(ini.contains("code1=0|&HFF"));
}

TEST_F(ProgramTest, TheSecondOfThreeListedFilesIsMissing)
{
    QFile::remove(m_run.Path("data/Splash.ini"));
    EXPECT_NE(m_run.Run(), 0);
    ASSERT_EQ(m_run.Boxes().size(), 1);
    EXPECT_EQ(m_run.Boxes()[0].toStdString(),
              (m_run.Path("data/Splash.ini") + "|niet gevonden. Applicatie wordt niet gestart!")
                  .toStdString());
    EXPECT_FALSE(m_run.Shown());
}

TEST_F(ProgramTest, AfterAGapInTheListNothingIsLookedAt)
{
    m_run.Replace("Zandvoet.ini", "[AlgemeneBestanden]",
                  "[AlgemeneBestanden]\r\nFile1=.\\Zandvoet.ini\r\nFile2=.\\Zandvoet.ini\r\n"
                  "File4=.\\bestaat niet.txt");
    EXPECT_EQ(m_run.Run(), 0);
    EXPECT_TRUE(m_run.Boxes().isEmpty());
}

TEST_F(ProgramTest, OnASystemInAnotherLanguageTheChecksSpeakEnglishWhateverTaalSays)
{
    m_run.Language("en_US.UTF-8");
    m_run.Replace("Zandvoet.ini", "Taal=", "Taal=NL");
    QFile::remove(m_run.Path("data/Main.ini"));
    m_run.Run();
    ASSERT_EQ(m_run.Boxes().size(), 1);
    EXPECT_EQ(m_run.Boxes()[0], m_run.Path("data/Main.ini") + "|not found. Application aborted!");
}

TEST_F(ProgramTest, TheBoxHasTheTitleOfTheApplication)
{
    QFile::remove(m_run.Path("data/Main.ini"));
    m_run.Run();
    EXPECT_TRUE(m_run.Log().value(0).startsWith("box\tZandvoet\t"));
}

TEST_F(ProgramTest, WithoutItsOwnIniNothingStarts)
{
    QFile::remove(m_run.Path("Zandvoet.ini"));
    EXPECT_NE(m_run.Run(), 0);
    ASSERT_EQ(m_run.Boxes().size(), 1);
    EXPECT_TRUE(m_run.Boxes()[0].startsWith(m_run.Path("Zandvoet.ini")));
}

TEST_F(ProgramTest, AWrongFolderIsNamedThroughItsFirstFile)
{
    m_run.Replace("Zandvoet.ini", ".\\data\\Main.ini", ".\\teksten\\Main.ini");
    EXPECT_NE(m_run.Run(), 0);
    ASSERT_EQ(m_run.Boxes().size(), 1);
    EXPECT_TRUE(m_run.Boxes()[0].startsWith(m_run.Path("teksten/Main.ini")));
}

TEST_F(ProgramTest, TheCalculationCoreAndTheManualAreRequired)
{
    QFile::remove(m_run.Path("Rekenprogramma"));
    EXPECT_NE(m_run.Run("kern"), 0);
    EXPECT_TRUE(m_run.Boxes("kern").value(0).contains("Rekenprogramma.exe"));
    m_run.Program("Rekenprogramma", "#!/bin/sh\n");
    QFile::remove(m_run.Path("data/Handleiding.html"));
    EXPECT_NE(m_run.Run("handleiding"), 0);
    EXPECT_TRUE(
        m_run.Boxes("handleiding").value(0).startsWith(m_run.Path("data/Handleiding.html")));
}

TEST_F(ProgramTest, AKeyThatIsMissingIsNamedInBrackets)
{
    m_run.Replace("Zandvoet.ini", "WindWaveCalculator.exe=", "Anders=");
    EXPECT_NE(m_run.Run(), 0);
    EXPECT_TRUE(m_run.Boxes().value(0).contains("<WindWaveCalculator.exe>"));
}

TEST_F(ProgramTest, AScreenOneDotTooLowRefusesAndThatOfTheSmallestSizeStarts)
{
    m_run.Screen(1024, 767);
    EXPECT_NE(m_run.Run("laag"), 0);
    EXPECT_EQ(m_run.Boxes("laag"),
              QStringList{"Schermresolutie moet minimaal 1024x768 zijn.||Zie "
                          "gebruikershandleiding.||Applicatie wordt niet gestart!"});
    m_run.Screen(1024, 768);
    EXPECT_EQ(m_run.Run("juist"), 0);
    EXPECT_TRUE(m_run.Boxes("juist").isEmpty());
}

TEST_F(ProgramTest, AReadOnlyInstallationStartsAndIsLeftAsItWas)
{
    const QByteArray before = m_run.Read("Zandvoet.ini");
    QFile::setPermissions(m_run.Path("Zandvoet.ini"), QFile::ReadOwner);
    QFile::setPermissions(m_run.Path(), QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(m_run.Run(), 0);
    EXPECT_TRUE(m_run.Boxes().isEmpty());
    QFile::setPermissions(m_run.Path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(m_run.Read("Zandvoet.ini"), before);
}

TEST_F(ProgramTest, DamagedNumbersInTheIniDoNotKeepTheWindowAway)
{
    for (const char* damage : {"99999999999999e999", "-99999999999", "x", ""}) {
        QByteArray ini = m_run.Read("Zandvoet.ini");
        QByteArray settings = "[SETTINGS]";
        for (const char* key :
             {"frmMainLeft", "frmMainTop", "frmMainWidth", "frmMainHeight", "frmMainToolbarState",
              "PANE_TOP0_HeightFactor", "PANE_TOP0_WidthFactor", "PANE_ROOTLOCATIES_HeightFactor"})
            settings += QByteArray("\r\n") + key + '=' + damage;
        ini.replace("[SETTINGS]", settings);
        for (const char* line : {"FONTSIZE=12", "FONTBOLD=0", "FONTCOLOR=0", "aantal=0",
                                 "extent=-7000|629000|300000|289000", "code1=0|&HFF"})
            ini.replace(line, QByteArray(line).left(QByteArray(line).indexOf('=') + 1) + damage);
        m_run.Write("Zandvoet.ini", ini);
        EXPECT_EQ(m_run.Run(damage), 0) << damage;
        EXPECT_TRUE(m_run.Shown(damage)) << damage;
        EXPECT_TRUE(m_run.Boxes(damage).isEmpty()) << damage;
        m_run.Write("Zandvoet.ini", m_shipped);
    }
}

TEST_F(ProgramTest, ALastDatabaseThatIsGoneIsNoError)
{
    m_run.Replace("Zandvoet.ini", "lastRvwFile=", "lastRvwFile=.\\data\\weg.mdb");
    EXPECT_EQ(m_run.Run(), 0);
    EXPECT_TRUE(m_run.Boxes().isEmpty());
}

TEST_F(ProgramTest, ACoreThatDoesNotAnswerDoesNotKeepTheProgramFromStarting)
{
    m_run.Program("Rekenprogramma", "#!/bin/sh\nexec sleep 60\n");
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(m_run.Run(), 0);
    EXPECT_LT(timer.elapsed(), 15000);
}

TEST_F(ProgramTest, ACoreThatCannotRunDoesNotKeepTheProgramFromStarting)
{
    m_run.Write("Rekenprogramma", "geen programma");
    EXPECT_EQ(m_run.Run(), 0);
    EXPECT_TRUE(m_run.Boxes().isEmpty());
}

TEST_F(ProgramTest, AFailureThatNoHandlerCatchesIsShownAndTheProgramGoesOn)
{
    m_run.Throw("er ging iets mis");
    EXPECT_EQ(m_run.Run(), 0);
    EXPECT_EQ(m_run.Boxes(), QStringList{"er ging iets mis"});
    EXPECT_TRUE(m_run.Read("Zandvoet.ini").contains("frmMainLeft=")) << "closed in order";
}

TEST_F(ProgramTest, ASecondStartBringsTheFirstWindowForwardAndEnds)
{
    const auto first = m_run.Start("eerste", -1, true);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return m_run.Log("eerste").contains("state\tminimised"); }, 15000));
    EXPECT_EQ(m_run.Run("tweede"), 0);
    EXPECT_FALSE(m_run.Shown("tweede"));
    EXPECT_TRUE(m_run.Boxes("tweede").isEmpty());
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return m_run.Log("eerste").contains("state\tnormal"); }, 5000));
    EXPECT_EQ(first->state(), QProcess::Running);
    first->kill();
    first->waitForFinished();
}

TEST_F(ProgramTest, AfterACrashTheProgramStartsAgain)
{
    const auto first = m_run.Start("eerste", -1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_run.Shown("eerste"); }, 15000));
    first->kill();
    first->waitForFinished();
    EXPECT_EQ(m_run.Run("tweede"), 0);
    EXPECT_TRUE(m_run.Shown("tweede"));
}

} // namespace
