#include "MainPartsFixture.h"

#include "calculation/ui/frmUitvoer.h"

#include <QPlainTextEdit>

namespace {

/// A calculation with its input and output, current in the tree.
class UitvoerOpdrachtenTest : public MainPartsTest {
protected:
    UitvoerOpdrachtenTest()
    {
        db.reOpenDB(false);
        MaakBerekening("som", "Plas-01", "Gras 1op3");
        Open();
        Schrijf(Bestand("invoer.txt"), "de invoer");
        Schrijf(Bestand("uitvoer.txt"), "de uitvoer");
        Click("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3");
    }
    QString Bestand(const QString& naam) const
    {
        return QDir::toNativeSeparators(InWerkmap("Plas-01/berekeningen/som_Gras 1op3/" + naam));
    }
    /// What the viewer shows after a command; nothing when none opened.
    QString Getoond(const QString& menu)
    {
        QString tekst;
        DialogDriver venster([&](QDialog& dialog) {
            EXPECT_TRUE(qobject_cast<frmUitvoer*>(&dialog));
            tekst = dialog.findChild<QPlainTextEdit*>("rtfUitvoer")->toPlainText();
            EXPECT_FALSE(dialog.findChild<QWidget*>("cmdExtra")->isVisible());
            dialog.reject();
        });
        window->MenuAction(menu)->trigger();
        EXPECT_EQ(venster.Met(), !tekst.isEmpty());
        return tekst;
    }
};

TEST_F(UitvoerOpdrachtenTest, InputAndOutputAreShownInAWindow)
{
    EXPECT_EQ(Getoond("mnuBerekeningInvoer"), "de invoer");
    EXPECT_EQ(Getoond("mnuBerekeningUitvoer"), "de uitvoer");
    EXPECT_TRUE(messages.Texts().isEmpty());
}

TEST_F(UitvoerOpdrachtenTest, AMissingFileGivesMessage203AndNoWindow)
{
    for (const auto& [menu, naam] : {std::pair("mnuBerekeningInvoer", "invoer.txt"),
                                     std::pair("mnuBerekeningUitvoer", "uitvoer.txt")}) {
        QFile::remove(Bestand(naam)); // behind our back
        window->MenuAction(menu)->trigger();
        ASSERT_FALSE(messages.Texts().isEmpty()) << menu;
        EXPECT_EQ(messages.Texts().last(), "Het bestand bestaat niet.\r\n" + Bestand(naam));
    }
    EXPECT_EQ(messages.Texts().size(), 2);
}

TEST_F(UitvoerOpdrachtenTest, BehindACalculationEverythingCanBeDoneAgain)
{
    db.CloseDB(); // the core had the file
    Click("ROOTLOCATIES\\Plas-01");
    Click("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3");
    for (const char* menu : {"mnuBerekeningUitvoer", "mnuBerekeningFolder", "mnuBerekeningRename"})
        EXPECT_TRUE(Enabled(menu)) << menu;
    EXPECT_TRUE(window->ToolbarAction(9)->isEnabled());
}

TEST_F(UitvoerOpdrachtenTest, GivingUpTheOpenDialogBehindACalculationKeepsTheCommandsOn)
{
    db.CloseDB();
    SetFileChooser([](QWidget*, const FileRequest&) { return QString(); });
    window->MenuAction("mnuFileOpen")->trigger();
    EXPECT_TRUE(MenuEnabled("mnuBerekening"));
    EXPECT_TRUE(Enabled("mnuBerekeningFolder"));
}

} // namespace
