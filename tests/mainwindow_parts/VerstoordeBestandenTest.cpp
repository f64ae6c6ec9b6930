#include "MainPartsFixture.h"
#include "calculation/ui/frmLog.h"
#include "geometry/MapLayer.h"

#include <QPlainTextEdit>

namespace {

/// Files that somebody damaged, removed or replaced behind the program's back.
class VerstoordeBestandenTest : public MainPartsTest {
protected:
    QString Shape(const QString& extensie) const { return InWerkmap("boezem." + extensie); }
    void ExpectGoodShape()
    {
        const MapLayer layer(Shape("shp"));
        ASSERT_TRUE(layer.Valid()) << layer.Error().toStdString();
        EXPECT_EQ(layer.ShapeCount(), 24U);
        EXPECT_TRUE(messages.Texts().isEmpty()) << messages.Texts().join('\n').toStdString();
    }
    void ClickAllLocations()
    {
        for (const QString& naam : TreeNames())
            Click("ROOTLOCATIES\\" + naam);
    }
};

TEST_F(VerstoordeBestandenTest, ADamagedShapeFileIsWrittenAnewAtTheOpen)
{
    Open();
    window->CloseRandvoorwaarden();
    for (const char* extensie : {"shp", "shx", "dbf"})
        Schrijf(Shape(extensie), QByteArray(300, '\xFF'));
    Open();
    ExpectGoodShape();
}

TEST_F(VerstoordeBestandenTest, AMissingIndexOfTheShapeFileIsWrittenAnewAtTheOpen)
{
    Open();
    window->CloseRandvoorwaarden();
    ASSERT_TRUE(QFile::remove(Shape("shx")));
    Open();
    ExpectGoodShape();
}

TEST_F(VerstoordeBestandenTest, TheMapDoesNotNeedTheShapeFileToBeDrawn)
{
    Open();
    const QImage before = panes->Map().grab().toImage();
    Schrijf(Shape("shp"), "geen shape");
    ASSERT_TRUE(QFile::remove(Shape("shx")));
    panes->RefreshLocatiesAndLabelsOpMap();
    EXPECT_EQ(panes->Map().grab().toImage(), before);
    EXPECT_TRUE(messages.Texts().isEmpty());
}

TEST_F(VerstoordeBestandenTest, ADatabaseReplacedWhileOpenIsWorkedInUntilItIsOpenedAgain)
{
    const QString other = Second(); // has one location
    Open();
    ASSERT_TRUE(QFile::rename(First(), Pad("oud.mdb")));
    ASSERT_TRUE(QFile::rename(other, First()));

    ClickAllLocations();
    EXPECT_EQ(TreeNames().size(), 24);
    EXPECT_TRUE(messages.Texts().isEmpty()) << messages.Texts().join('\n').toStdString();

    window->OpenDatabase(First());
    EXPECT_EQ(TreeNames(), QStringList{"Plas-01"});
}

TEST_F(VerstoordeBestandenTest, ADatabaseReplacedDuringACalculationDoesNotHurt)
{
    const QString other = Second();
    Open();
    db.CloseDB(); // as before the core starts
    ASSERT_TRUE(QFile::remove(First()));
    ASSERT_TRUE(QFile::rename(other, First()));
    ClickAllLocations(); // 23 of them are not in the file any more
    panes->RefreshLocatiesAndLabelsOpMap();
    EXPECT_EQ(TreeNames().size(), 24);
}

TEST_F(VerstoordeBestandenTest, ADatabaseThatIsGoneIsToldAndTheProgramGoesOn)
{
    const QString other = Second();
    Open();
    db.CloseDB();
    ASSERT_TRUE(QFile::remove(First()));
    ClickAllLocations();
    window->OpenDatabase(First());
    EXPECT_EQ(boxes.fouten.size(), 1);
    window->OpenDatabase(other);
    EXPECT_EQ(TreeNames(), QStringList{"Plas-01"});
}

TEST_F(VerstoordeBestandenTest, ALogWithBinaryContentIsShownHarmlessly)
{
    db.reOpenDB(false);
    MaakBerekening("som", "Plas-01", "Gras 1op3");
    QByteArray rommel;
    for (int i = 0; i < 100'000; ++i)
        rommel += static_cast<char>((i * 7919) >> 3);
    Schrijf(InWerkmap("Plas-01/berekeningen/som_Gras 1op3/uitvoer.log"), rommel + "\r\nKlaar");
    Open();
    Click("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3");
    const QString text = panes->Log().findChild<QPlainTextEdit*>("rtfLog")->toPlainText();
    EXPECT_TRUE(text.endsWith("Klaar"));
    EXPECT_FALSE(text.contains(QChar(0)));
}

} // namespace
