#include "mainwindow/Instellingen.h"

#include "Installation.h"
#include "mainwindow/Commands.h"

#include <QSet>
#include <gtest/gtest.h>

namespace {

class InstellingenTest : public testing::Test {
protected:
    void Ini(const QByteArray& text)
    {
        m_installation.Write("Proef.ini", text);
        m_ini = std::make_unique<QLMIniFile>(m_installation.Path("Proef.ini"));
    }

    Installation m_installation;
    std::unique_ptr<QLMIniFile> m_ini;
};

TEST_F(InstellingenTest, QualityCodesEndAtTheFirstThatIsAbsent)
{
    Ini("[Kwaliteteitscodes]\r\ncode1=0|&HFF\r\ncode2=1|&H8000\r\ncode4=9|&H0");
    EXPECT_EQ(LoadKwaliteitscodes(*m_ini),
              (QList<Kwaliteitscode>{{"0", QColor(255, 0, 0)}, {"1", QColor(0, 128, 0)}}));
}

TEST_F(InstellingenTest, QualityCodesAreWrittenAsTheyAreRead)
{
    Ini("[Kwaliteteitscodes]\r\ncode1=0|&HFF\r\ncode2=1|&H8000");
    const auto codes = LoadKwaliteitscodes(*m_ini);
    SaveKwaliteitscodes(*m_ini, codes);
    EXPECT_EQ(m_ini->GetString("Kwaliteteitscodes", "code1"), "0|&HFF");
    EXPECT_EQ(m_ini->GetString("Kwaliteteitscodes", "code2"), "1|&H8000");
}

TEST_F(InstellingenTest, AColourHasItsRedInTheLowestByte)
{
    EXPECT_EQ(ColourFromIni("&HFF0000"), QColor(0, 0, 255));
    EXPECT_EQ(ColourFromIni("&hc0e0ff"), QColor(0xFF, 0xE0, 0xC0));
    EXPECT_EQ(ColourFromIni("onzin"), QColor(0, 0, 0));
    EXPECT_EQ(ColourToIni(QColor(0xFF, 0xE0, 0xC0)), "&HC0E0FF");
}

TEST_F(InstellingenTest, LabelsAreOnInTimesTwelveAtFirst)
{
    Ini("");
    const LabelSettings labels = LoadLabelSettings(*m_ini);
    EXPECT_TRUE(labels.shown);
    EXPECT_EQ(labels.fontName, "Times");
    EXPECT_EQ(labels.fontSize, 12);
    EXPECT_FALSE(labels.bold || labels.italic || labels.underline || labels.strikeThrough);
    EXPECT_EQ(labels.colour, QColor(Qt::black));
}

TEST_F(InstellingenTest, LabelSettingsAreRead)
{
    Ini("[LABELS]\r\nSTATUS=UIT\r\nFONTNAME=Arial\r\nFONTSIZE=9,5\r\nFONTBOLD=-1\r\n"
        "FONTCOLOR=255");
    const LabelSettings labels = LoadLabelSettings(*m_ini);
    EXPECT_FALSE(labels.shown);
    EXPECT_EQ(labels.fontName, "Arial");
    EXPECT_EQ(labels.fontSize, 9.5);
    EXPECT_TRUE(labels.bold);
    EXPECT_EQ(labels.colour, QColor(255, 0, 0));
}

TEST_F(InstellingenTest, DataSourcesAreTheSecondFieldsAndTheTwoNamedKeys)
{
    Ini("[ODBC]\r\nodbc1=a,Bron een,x\r\nodbc2=b, Bron twee ,y\r\nodbc4=c,Bron vier\r\n"
        "odbcSUdsnsluitfunctie=Sluit");
    EXPECT_EQ(OdbcSources(*m_ini).join('|'), "Bron een|Bron twee|Sluit");
}

TEST(CommandsTest, TheToolbarHasItsTwelveButtonsInOrder)
{
    QList<int> commands;
    for (const ToolbarButton& button : ToolbarButtons())
        commands.append(button.command);
    EXPECT_EQ(commands, (QList<int>{1, 2, 4, 5, 6, 3, 7, 8, 9, 11, 10, 13}));
    EXPECT_EQ(ButtonIndexOfCommand(3), 5);
    EXPECT_EQ(ButtonIndexOfCommand(12), -1);
    EXPECT_EQ(ButtonIndexOfMenu("mnuBewerkenLabels"), 11);
    EXPECT_EQ(ButtonIndexOfMenu("mnuFileOpen"), -1);
}

TEST(CommandsTest, EveryButtonHasAPictureOfItsOwn)
{
    QSet<QByteArray> pictures;
    for (const ToolbarButton& button : ToolbarButtons()) {
        const QImage image = CommandIcon(button.command, QPalette()).pixmap(24, 24).toImage();
        ASSERT_FALSE(image.isNull()) << button.command;
        pictures.insert(
            QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes()));
    }
    EXPECT_EQ(pictures.size(), 12);
    EXPECT_FALSE(ProgramIcon().pixmap(64, 64).isNull());
}

TEST(CommandsTest, PicturesAreDrawnInTheColourOfText)
{
    QPalette dark;
    dark.setColor(QPalette::WindowText, Qt::white);
    const QImage image = CommandIcon(13, dark).pixmap(24, 24).toImage();
    int light = 0;
    for (int y = 0; y < 24; ++y) {
        for (int x = 0; x < 24; ++x) {
            const QColor colour = image.pixelColor(x, y);
            light += colour.alpha() > 200 && colour.lightness() > 240 ? 1 : 0;
        }
    }
    EXPECT_GT(light, 5);
}

TEST(CommandsTest, MapToolsHaveTheirPointers)
{
    EXPECT_EQ(CursorOfMapPointer(0).shape(), Qt::ArrowCursor);
    EXPECT_EQ(CursorOfMapPointer(2).shape(), Qt::CrossCursor);
    EXPECT_EQ(CursorOfMapPointer(53).shape(), Qt::OpenHandCursor);
    const QCursor glass = CursorOfMapPointer(52);
    EXPECT_EQ(glass.shape(), Qt::BitmapCursor);
    const QImage picture = glass.pixmap().toImage();
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
    const QPoint onTheRing(16, 10);
    EXPECT_GT(picture.pixelColor(onTheRing * picture.devicePixelRatio()).alpha(), 200);
}

} // namespace
