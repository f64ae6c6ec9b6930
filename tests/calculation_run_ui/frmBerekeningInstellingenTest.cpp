#include "calculation/ui/run/frmBerekeningInstellingen.h"

#include "RunFixture.h"
#include "frame/ui/Grid.h"
#include "frame/ui/LbnBox.h"

#include <QCheckBox>
#include <QClipboard>
#include <QFrame>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QWindow>

namespace {

/// The form on the shipped settings: norm and five extra return periods, the
/// crest height of the profile, wave overtopping.
class frmBerekeningInstellingenTest : public RunTest {
protected:
    frmBerekeningInstellingenTest() { Open(); }

    void Open()
    {
        form.Initialiseer(bestand);
        form.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
    }
    QCheckBox* Check(const char* name) { return Find<QCheckBox>(form, name); }
    /// On the box itself: a wide one has nothing in its middle.
    void ClickBox(const char* name)
    {
        QTest::mouseClick(Check(name), Qt::LeftButton, {}, QPoint(8, Check(name)->height() / 2));
    }
    QRadioButton* Option(const char* name) { return Find<QRadioButton>(form, name); }
    LbnBox* Number(const char* name) { return Find<LbnBox>(form, name); }
    Grid* Cells(const char* name) { return Find<Grid>(form, name); }
    QPushButton* OkButton() { return Find<QPushButton>(form, "cmdOK"); }
    QPushButton* CancelButton() { return Find<QPushButton>(form, "cmdCancel"); }
    /// Over what stands there, as a user would.
    void Type(const char* name, const QString& text)
    {
        NumBox* box = Number(name)->Box();
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, text);
    }
    /// The open editor; one that was closed may still be waiting to be deleted.
    QLineEdit* Editor(const char* grid)
    {
        for (auto* edit : Cells(grid)->viewport()->findChildren<QLineEdit*>())
            if (edit->isVisible())
                return edit;
        return nullptr;
    }
    void EditCell(const char* grid, int row, int column, const QString& text)
    {
        Grid* cells = Cells(grid);
        cells->setFocus();
        cells->setCurrentCell(row, column);
        QTest::keyClick(cells, Qt::Key_F2);
        QLineEdit* editor = Editor(grid);
        ASSERT_TRUE(editor);
        editor->selectAll();
        QTest::keyClicks(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
    }
    QStringList Frequencies()
    {
        QStringList texts;
        for (int row = 0; row < Cells("vsfOntwerpFreq")->rowCount(); ++row)
            texts << Cells("vsfOntwerpFreq")->Text(row, 2);
        return texts;
    }
    /// The focus is on its way back while the window becomes active again.
    bool KeepsFocus(const char* name)
    {
        NumBox* box = Number(name)->Box();
        return QTest::qWaitFor([box] { return box->hasFocus(); }, 1000);
    }
    QString Stored(const char* sleutel)
    {
        for (const char* sectie : {"Frequenties", "Kruinhoogtes", "Faalmechanisme",
                                   "Golfgroeimodule", "Extra", "Toeslagen"})
            if (const QString waarde = Instelling(sectie, sleutel); waarde != "(afwezig)")
                return waarde;
        return "(afwezig)";
    }

    QString bestand = Pad("data/Instellingen.ini");
    frmBerekeningInstellingen form;
};

} // namespace

TEST_F(frmBerekeningInstellingenTest, ShowsTheFile)
{
    EXPECT_TRUE(Check("chkNormfrequentie")->isChecked());
    EXPECT_EQ(Number("lbnAantalFrequenties")->text(), "5");
    EXPECT_EQ(Cells("vsfOntwerpFreq")->AllText(),
              "1\t1/\t10\r\n2\t1/\t30\r\n3\t1/\t100\r\n4\t1/\t300\r\n5\t1/\t1000");
    EXPECT_TRUE(Option("optFaalmechanisme_1")->isChecked());
    EXPECT_EQ(Number("lbnOverslagdebiet")->text(), "1");
    EXPECT_TRUE(Option("optGolfgroeimodule_0")->isChecked());
    EXPECT_FALSE(Check("chkExtraKruinhoogtes")->isChecked());
}

TEST_F(frmBerekeningInstellingenTest, ACleanFormCanOnlyBeLeft)
{
    EXPECT_FALSE(OkButton()->isEnabled());
    EXPECT_FALSE(OkButton()->isDefault());
    EXPECT_TRUE(CancelButton()->isDefault());
    ClickBox("chkWindreductie");
    EXPECT_TRUE(OkButton()->isEnabled());
    EXPECT_TRUE(OkButton()->isDefault());
    EXPECT_FALSE(CancelButton()->isDefault());
    form.Initialiseer(bestand);
    EXPECT_FALSE(OkButton()->isEnabled());
    EXPECT_TRUE(CancelButton()->isDefault());
}

TEST_F(frmBerekeningInstellingenTest, AChangeInAnyInputCounts)
{
    const std::vector<std::function<void()>> changes{
        [this] { Check("chkNormfrequentie")->click(); },
        [this] { Check("chkExtrafrequenties")->click(); },
        [this] { Type("lbnAantalFrequenties", "4"); },
        [this] { EditCell("vsfOntwerpFreq", 0, 2, "20"); },
        [this] { Check("chkKruinhoogteprofiel")->click(); },
        [this] { Check("chkExtraKruinhoogtes")->click(); },
        [this] { Option("optFaalmechanisme_0")->click(); },
        [this] { Type("lbnOverslagdebiet", "5"); },
        [this] { Option("optGolfgroeimodule_2")->click(); },
        [this] { Check("chkGolfCorrFactor")->click(); },
        [this] { Check("chkUitspIll")->click(); },
        [this] { Check("chkWindreductie")->click(); },
        [this] { Check("chkUitsplitsenNaarAandelen")->click(); },
        [this] { Check("chkToeslagWS")->click(); },
        [this] { Check("chkToeslagHBN")->click(); },
        [this] { Check("chkToenameWind")->click(); }};
    for (std::size_t i = 0; i < changes.size(); ++i) {
        form.Initialiseer(bestand);
        ASSERT_FALSE(OkButton()->isEnabled()) << i;
        changes[i]();
        EXPECT_TRUE(OkButton()->isEnabled()) << i;
    }
    form.Initialiseer(bestand);
    Check("chkToeslagWS")->click();
    Check("chkToeslagHBN")->click();
    Click(form, "cmdOK");
    for (const char* name : {"txtToelichtingWS", "txtToelichtingHBN"}) {
        Open();
        ASSERT_FALSE(OkButton()->isEnabled());
        QTest::keyClicks(Find<QLineEdit>(form, name), "x");
        EXPECT_TRUE(OkButton()->isEnabled()) << name;
    }
}

TEST_F(frmBerekeningInstellingenTest, TheLastOfTheFourBoxesBringsItsPartnerBack)
{
    struct Geval {
        const char *box, *partner;
    };
    for (const Geval geval : {Geval{"chkNormfrequentie", "chkExtrafrequenties"},
                              {"chkExtrafrequenties", "chkNormfrequentie"},
                              {"chkKruinhoogteprofiel", "chkExtraKruinhoogtes"},
                              {"chkExtraKruinhoogtes", "chkKruinhoogteprofiel"}}) {
        for (const char* name : {"chkNormfrequentie", "chkExtrafrequenties",
                                 "chkKruinhoogteprofiel", "chkExtraKruinhoogtes"})
            Check(name)->setChecked(qstrcmp(name, geval.box) == 0);
        ClickBox(geval.box);
        EXPECT_FALSE(Check(geval.box)->isChecked()) << geval.box;
        EXPECT_TRUE(Check(geval.partner)->isChecked()) << geval.box;
    }
}

TEST_F(frmBerekeningInstellingenTest, ABoxMayGoOffWhileAnotherIsOn)
{
    ClickBox("chkNormfrequentie");
    ClickBox("chkExtrafrequenties");
    EXPECT_FALSE(Check("chkNormfrequentie")->isChecked());
    EXPECT_FALSE(Check("chkExtrafrequenties")->isChecked());
    EXPECT_TRUE(Check("chkKruinhoogteprofiel")->isChecked());
}

TEST_F(frmBerekeningInstellingenTest, ExtraFramesShowWithTheirBoxes)
{
    auto* freq = Find<QFrame>(form, "fraExtraFrequenties");
    auto* kruin = Find<QFrame>(form, "fraExtraKruinhoogtes");
    EXPECT_TRUE(freq->isVisible());
    EXPECT_FALSE(kruin->isVisible());
    ClickBox("chkExtrafrequenties");
    ClickBox("chkExtraKruinhoogtes");
    EXPECT_FALSE(freq->isVisible());
    EXPECT_TRUE(kruin->isVisible());
}

TEST_F(frmBerekeningInstellingenTest, TheMechanismDecidesWhatIsEnabled)
{
    const auto enabled = [this](const char* name) {
        return Find<QWidget>(form, name)->isEnabled();
    };
    ClickBox("chkGolfCorrFactor");
    for (const int index : {0, 1, 2, 0, 2, 1}) {
        Option(qPrintable("optFaalmechanisme_" + QString::number(index)))->click();
        EXPECT_EQ(enabled("lbnOverslagdebiet"), index == 1) << index;
        for (const char* name :
             {"fraGolfgroeimodule", "optGolfgroeimodule_0", "optGolfgroeimodule_1",
              "optGolfgroeimodule_2", "chkGolfCorrFactor", "lbnGolfCorrFactor"})
            EXPECT_EQ(enabled(name), index != 0) << name << index;
    }
    ClickBox("chkGolfCorrFactor");
    EXPECT_FALSE(enabled("lbnGolfCorrFactor"));
}

TEST_F(frmBerekeningInstellingenTest, SurchargesAreEnabledByTheirBoxes)
{
    const auto enabled = [this](std::initializer_list<const char*> names, bool expected) {
        for (const char* name : names)
            EXPECT_EQ(Find<QWidget>(form, name)->isEnabled(), expected) << name;
    };
    const auto ws = {"lbnToeslagWS", "lblToelichtingWS", "txtToelichtingWS"};
    const auto hbn = {"lbnToeslagHBN", "lblToelichtingHBN", "txtToelichtingHBN"};
    enabled(ws, false);
    enabled(hbn, false);
    enabled({"lbnToenameWind"}, false);
    Check("chkToeslagWS")->click();
    enabled(ws, true);
    enabled(hbn, false);
    Check("chkToeslagHBN")->click();
    enabled(hbn, true);
    Check("chkToenameWind")->click();
    enabled({"lbnToenameWind"}, true);
}

TEST_F(frmBerekeningInstellingenTest, OverflowSavesTheWaveSettingsAsTheyStand)
{
    Type("lbnOverslagdebiet", "7,5");
    Option("optGolfgroeimodule_2")->click();
    Check("chkGolfCorrFactor")->click();
    Type("lbnGolfCorrFactor", "1,5");
    Option("optFaalmechanisme_0")->click();
    EXPECT_EQ(Number("lbnOverslagdebiet")->text(), "7,5");
    Click(form, "cmdOK");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(Stored("INDEXFAALMECHANISME"), "0");
    EXPECT_EQ(Stored("OVERSLAGDEBIET"), "7,5");
    EXPECT_EQ(Stored("INDEXGOLFGROEIMODULE"), "2");
    EXPECT_EQ(Stored("GOLFCORRFACTORAAN"), "1");
    EXPECT_EQ(Stored("GOLFCORRFACTOR"), "1,5");
}

TEST_F(frmBerekeningInstellingenTest, AReturnPeriodBeyondTheBoundsIsShownAndSavedClamped)
{
    ZetInstelling("Frequenties", "FREQ.3", "50000");
    Open();
    EXPECT_EQ(Frequencies(), (QStringList{"10", "30", "20000", "300", "1000"}));
    Check("chkWindreductie")->click();
    Click(form, "cmdOK");
    EXPECT_EQ(Stored("FREQ.3"), "20000");
    EXPECT_EQ(Stored("WINDREDUCTIE"), "0");
}

TEST_F(frmBerekeningInstellingenTest, RowsThatComeBackHoldWhatWasStored)
{
    EditCell("vsfOntwerpFreq", 3, 2, "444");
    EditCell("vsfOntwerpFreq", 4, 2, "555");
    ASSERT_EQ(Frequencies(), (QStringList{"10", "30", "100", "444", "555"}));
    Type("lbnAantalFrequenties", "3");
    EXPECT_EQ(Frequencies(), (QStringList{"10", "30", "100"}));
    Type("lbnAantalFrequenties", "5");
    EXPECT_EQ(Frequencies(), (QStringList{"10", "30", "100", "300", "1000"}));
}

TEST_F(frmBerekeningInstellingenTest, NewRowsHaveDefaultsOfTheirOwn)
{
    Type("lbnAantalFrequenties", "11");
    EXPECT_EQ(Frequencies().last(), "1000");
    EXPECT_EQ(Cells("vsfOntwerpFreq")->Text(10, 0), "11");
    EXPECT_EQ(Cells("vsfOntwerpFreq")->Text(10, 1), "1/");
    Check("chkExtraKruinhoogtes")->click();
    Type("lbnAantalKruinhoogtes", "3");
    EXPECT_EQ(Cells("vsfKruinhoogtes")->AllText(), "1\t1\r\n2\t10\r\n3\t10");
}

TEST_F(frmBerekeningInstellingenTest, ReturnPeriodsOutsideTheBoundsAreRefused)
{
    for (const char* text : {"0,49", "20001"}) {
        BoxReader boxes;
        EditCell("vsfOntwerpFreq", 0, 2, text);
        EXPECT_EQ(boxes.Texts(), (QStringList{MessageText(700, {"0,5", "20000"})})) << text;
        EXPECT_TRUE(Cells("vsfOntwerpFreq")->IsEditing()) << "the user corrects it";
        QTest::keyClick(Editor("vsfOntwerpFreq"), Qt::Key_Escape);
        EXPECT_EQ(Frequencies().first(), "10");
    }
    EXPECT_FALSE(OkButton()->isEnabled());
    BoxReader boxes;
    EditCell("vsfOntwerpFreq", 0, 2, "0,5");
    EditCell("vsfOntwerpFreq", 1, 2, "20000");
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_EQ(Frequencies().mid(0, 2), (QStringList{"0,5", "20000"}));
}

TEST_F(frmBerekeningInstellingenTest, CrestHeightsOutsideTheBoundsAreRefused)
{
    Check("chkExtraKruinhoogtes")->click();
    for (const char* text : {"-20,1", "21"}) {
        BoxReader boxes;
        EditCell("vsfKruinhoogtes", 0, 1, text);
        EXPECT_EQ(boxes.Texts(), (QStringList{MessageText(700, {"-20", "20"})})) << text;
        QTest::keyClick(Editor("vsfKruinhoogtes"), Qt::Key_Escape);
    }
    BoxReader boxes;
    EditCell("vsfKruinhoogtes", 0, 1, "-20");
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_EQ(Cells("vsfKruinhoogtes")->Text(0, 1), "-20");
}

TEST_F(frmBerekeningInstellingenTest, KeysOfACellAreFilteredByItsBounds)
{
    // A sign behind the first place stays only where values may be negative.
    const auto typed = [this](const char* grid, int column) {
        Cells(grid)->setFocus();
        Cells(grid)->setCurrentCell(0, column);
        QTest::keyClick(Cells(grid), Qt::Key_F2);
        QLineEdit* editor = Editor(grid);
        editor->selectAll();
        QTest::keyClicks(editor, "1x-2");
        const QString text = editor->text();
        QTest::keyClick(editor, Qt::Key_Escape);
        return text;
    };
    Check("chkExtraKruinhoogtes")->click();
    EXPECT_EQ(typed("vsfOntwerpFreq", 2), "12");
    EXPECT_EQ(typed("vsfKruinhoogtes", 1), "1-2");
}

TEST_F(frmBerekeningInstellingenTest, OnlyValuesCanBeEdited)
{
    Check("chkExtraKruinhoogtes")->click();
    EXPECT_FALSE(Cells("vsfOntwerpFreq")->MayEdit(0, 0));
    EXPECT_FALSE(Cells("vsfOntwerpFreq")->MayEdit(0, 1));
    EXPECT_TRUE(Cells("vsfOntwerpFreq")->MayEdit(0, 2));
    EXPECT_FALSE(Cells("vsfKruinhoogtes")->MayEdit(0, 0));
    EXPECT_TRUE(Cells("vsfKruinhoogtes")->MayEdit(0, 1));
    EXPECT_EQ(Cells("vsfOntwerpFreq")->columnWidth(0), 50);
    EXPECT_EQ(Cells("vsfOntwerpFreq")->columnWidth(1), 50);
    EXPECT_TRUE(Cells("vsfOntwerpFreq")->item(0, 2)->textAlignment() & Qt::AlignRight);
}

TEST_F(frmBerekeningInstellingenTest, AFactorOfTenOrZeroIsRefusedAndKeepsTheFocus)
{
    Check("chkGolfCorrFactor")->click();
    NumBox* factor = Number("lbnGolfCorrFactor")->Box();
    for (const char* text : {"10", "0"}) {
        BoxReader boxes;
        Type("lbnGolfCorrFactor", text);
        QTest::keyClick(factor, Qt::Key_Tab);
        EXPECT_EQ(boxes.Texts(), (QStringList{MessageText(700, {"0", "10"})})) << text;
        EXPECT_TRUE(KeepsFocus("lbnGolfCorrFactor"));
        EXPECT_EQ(factor->selectedText(), text);
    }
    BoxReader boxes;
    Type("lbnGolfCorrFactor", "9,99");
    QTest::keyClick(factor, Qt::Key_Tab);
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_FALSE(factor->hasFocus());
}

TEST_F(frmBerekeningInstellingenTest, AClickElsewhereOnARefusedFactorDoesNothingElse)
{
    Check("chkGolfCorrFactor")->click();
    BoxReader boxes;
    Type("lbnGolfCorrFactor", "10");
    Click(form, "cmdOK");
    EXPECT_EQ(boxes.Texts().size(), 1);
    EXPECT_TRUE(form.isVisible());
    EXPECT_TRUE(KeepsFocus("lbnGolfCorrFactor"));
    EXPECT_EQ(Stored("GOLFCORRFACTOR"), "1");
}

TEST_F(frmBerekeningInstellingenTest, EnterInARefusedBoxDoesNotConfirm)
{
    Check("chkGolfCorrFactor")->click();
    BoxReader boxes;
    Type("lbnGolfCorrFactor", "10");
    QTest::keyClick(Number("lbnGolfCorrFactor")->Box(), Qt::Key_Return);
    EXPECT_TRUE(KeepsFocus("lbnGolfCorrFactor"));
    Type("lbnGolfCorrFactor", "2");
    Type("lbnOverslagdebiet", "500");
    QTest::keyClick(Number("lbnOverslagdebiet")->Box(), Qt::Key_Return);
    EXPECT_TRUE(KeepsFocus("lbnOverslagdebiet"));
    EXPECT_EQ(boxes.Texts(), (QStringList{MessageText(700, {"0", "10"}), "0,1<=waarde<=100"}));
    EXPECT_TRUE(form.isVisible());
    Type("lbnOverslagdebiet", "5");
    QTest::keyClick(Number("lbnOverslagdebiet")->Box(), Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(form.OK());
}

TEST_F(frmBerekeningInstellingenTest, ABadValueCanAlwaysBeCancelled)
{
    Check("chkGolfCorrFactor")->click();
    BoxReader boxes;
    Type("lbnGolfCorrFactor", "10");
    Click(form, "cmdCancel");
    EXPECT_TRUE(boxes.Texts().isEmpty());
    EXPECT_FALSE(form.isVisible());
    EXPECT_FALSE(form.OK());
}

TEST_F(frmBerekeningInstellingenTest, TipsTellTheRanges)
{
    EXPECT_EQ(Number("lbnAantalFrequenties")->TTipText(), "1<= waarde <=100");
    EXPECT_EQ(Number("lbnAantalKruinhoogtes")->TTipText(), "1<= waarde <=100");
    EXPECT_EQ(Number("lbnOverslagdebiet")->TTipText(), "0,1<= waarde <=100");
    EXPECT_EQ(Number("lbnToeslagWS")->TTipText(), "0<= waarde <=10");
    EXPECT_EQ(Number("lbnToeslagHBN")->TTipText(), "0<= waarde <=10");
    EXPECT_EQ(Number("lbnToenameWind")->TTipText(), "0<= waarde <=100");
    EXPECT_EQ(Number("lbnGolfCorrFactor")->TTipText(), "0 < factor < 10");
    EXPECT_EQ(Cells("vsfOntwerpFreq")->item(0, 2)->toolTip(), "0,5 <= waarde <= 20000");
    EXPECT_EQ(Cells("vsfKruinhoogtes")->item(0, 1)->toolTip(), "-20 <= waarde <= 20");
}

TEST_F(frmBerekeningInstellingenTest, CancelEscapeAndTheCloseButtonStoreNothing)
{
    const QByteArray before = Lees(bestand);
    const std::vector<std::function<void()>> ways{
        [this] { Click(form, "cmdCancel"); }, [this] { QTest::keyClick(&form, Qt::Key_Escape); },
        [this] { form.close(); }};
    for (const auto& leave : ways) {
        Open();
        Check("chkWindreductie")->click();
        leave();
        EXPECT_FALSE(form.isVisible());
        EXPECT_FALSE(form.OK());
        EXPECT_EQ(Lees(bestand), before);
    }
    Open();
    EXPECT_TRUE(Check("chkWindreductie")->isChecked()) << "read again at every opening";
}

TEST_F(frmBerekeningInstellingenTest, OkOfAnEarlierOpeningIsForgotten)
{
    Check("chkWindreductie")->click();
    Click(form, "cmdOK");
    EXPECT_TRUE(form.OK());
    Open();
    EXPECT_FALSE(form.OK());
    Click(form, "cmdCancel");
    EXPECT_FALSE(form.OK());
}

TEST_F(frmBerekeningInstellingenTest, AnotherMechanismIsTold)
{
    Option("optFaalmechanisme_2")->click();
    Click(form, "cmdOK");
    EXPECT_TRUE(form.SomChange());
    EXPECT_TRUE(form.AnderFaalmechanisme());
    Open();
    Option("optFaalmechanisme_0")->click();
    Option("optFaalmechanisme_2")->click();
    Click(form, "cmdOK");
    EXPECT_FALSE(form.SomChange());
    EXPECT_FALSE(form.AnderFaalmechanisme());
}

TEST_F(frmBerekeningInstellingenTest, TheMemoOutlivesAnOpeningAndNoFileHoldsIt)
{
    const QByteArray before = Lees(bestand);
    FormDriver forms;
    forms.On("frmMemo", [](QDialog& memo) {
        Find<QPlainTextEdit>(memo, "txtMemo")->setPlainText("Proef van\nmaandag");
        Click(memo, "cmdOK");
    });
    Click(form, "cmdMemo");
    EXPECT_EQ(form.Memo(), "Proef van\r\nmaandag");
    Click(form, "cmdCancel");
    Open();
    EXPECT_EQ(form.Memo(), "Proef van\r\nmaandag");
    forms.On("frmMemo", [](QDialog& memo) {
        EXPECT_EQ(Find<QPlainTextEdit>(memo, "txtMemo")->toPlainText(), "Proef van\nmaandag");
        Find<QPlainTextEdit>(memo, "txtMemo")->setPlainText("Vergeten");
        Click(memo, "cmdCancel");
    });
    Click(form, "cmdMemo");
    EXPECT_EQ(forms.Met("frmMemo"), 2);
    EXPECT_EQ(form.Memo(), "Proef van\r\nmaandag");
    EXPECT_EQ(Lees(bestand), before);
}

TEST_F(frmBerekeningInstellingenTest, AnAbsentFileIsMadeFromTheDefaults)
{
    QFile::remove(bestand);
    Open();
    EXPECT_EQ(Number("lbnAantalFrequenties")->text(), "0");
    EXPECT_EQ(Cells("vsfOntwerpFreq")->rowCount(), 0);
    EXPECT_TRUE(Option("optFaalmechanisme_0")->isChecked());
    Check("chkUitspIll")->click();
    Click(form, "cmdOK");
    EXPECT_EQ(Stored("UITENILL"), "0");
    EXPECT_EQ(Stored("NORMFREQ"), "1");
    EXPECT_EQ(Stored("NFREQ"), "0");
    EXPECT_EQ(Stored("GOLFCORRFACTOR"), "1");
    EXPECT_EQ(Stored("GOLFCORRFACTORAAN"), "0");
}

TEST_F(frmBerekeningInstellingenTest, AFileThatCannotBeWrittenIsReportedAndTheFormStays)
{
    form.Initialiseer(Pad("weg/Instellingen.ini"));
    Check("chkUitspIll")->click();
    BoxReader boxes;
    Click(form, "cmdOK");
    EXPECT_EQ(boxes.Texts(), (QStringList{FoutText(7, {Pad("weg/Instellingen.ini")})}));
    EXPECT_TRUE(form.isVisible());
    EXPECT_FALSE(form.OK());
}

TEST_F(frmBerekeningInstellingenTest, AnExplanationTakesWhatTheFileCanHold)
{
    Check("chkToeslagWS")->click();
    auto* text = Find<QLineEdit>(form, "txtToelichtingWS");
    QApplication::clipboard()->setText(QString::fromUtf8(" geïnd Ω20 "));
    QTest::keyClick(text, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(text->text(), QString::fromUtf8(" geïnd 20 "));
    Click(form, "cmdOK");
    EXPECT_EQ(Stored("TOESLAGWSMEMO"), QString::fromUtf8("geïnd 20"));
    EXPECT_EQ(Stored("TOESLAGWSAAN"), "1");
}

TEST_F(frmBerekeningInstellingenTest, ShownModallyItKeepsTheWindowBelow)
{
    QWidget owner;
    owner.show();
    FormDriver forms;
    forms.On("frmBerekeningInstellingen", [&](QDialog& shown) {
        EXPECT_EQ(shown.windowHandle()->transientParent(), owner.windowHandle());
        Click(shown, "cmdCancel");
    });
    form.hide();
    form.Toon(&owner);
    EXPECT_EQ(forms.Met("frmBerekeningInstellingen"), 1);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.parent(), nullptr) << "the owner may go before the form";
}
