#include "frame/ui/MessageBoxes.h"

#include "BoxReader.h"
#include "Installation.h"
#include "frame/Fouten.h"
#include "frame/Texts.h"

#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

class MessageBoxesTest : public testing::Test {
protected:
    void Text(const QString& section, const QString& key, const QString& value)
    {
        m_installation.Set(section, key, value);
    }

    Installation m_installation;
    BoxReader m_boxes;
};

TEST_F(MessageBoxesTest, AMessageShowsItsTextInLinesWithItsArguments)
{
    Text("Messages", "msg.0900", "Eerste %1|tweede %2");
    ShowMessageForm(nullptr, 900, {"a", "b"});
    EXPECT_EQ(m_boxes.Texts(), QStringList{"Eerste a\r\ntweede b"});
    EXPECT_EQ(m_boxes.Titles(), QStringList{"Zandvoet"});
    EXPECT_EQ(m_boxes.Icons(), QList{QMessageBox::Information});
}

TEST_F(MessageBoxesTest, OnlyTheFirstOfTwoEqualPlaceholdersIsFilled)
{
    Text("Messages", "msg.0900", "%1 en %1");
    ShowMessageForm(nullptr, 900, {"een"});
    EXPECT_EQ(m_boxes.Texts(), QStringList{"een en %1"});
}

TEST_F(MessageBoxesTest, AnUnknownNumberIsNamedByEachKindOfBoxInItsOwnWay)
{
    ShowMessageForm(nullptr, 12);
    ShowMessage(12);
    ShowFoutForm(nullptr, 12000);
    m_boxes.Press("Ja");
    EXPECT_EQ(AskQuestion(nullptr, 12), Answer::Yes);
    EXPECT_EQ(m_boxes.Texts(), (QStringList{"Onbekende message (12)", "Onbekende fout (12)",
                                            "Onbekende fout (12000)", "Onbekende question (12)"}));
}

TEST_F(MessageBoxesTest, ASuffixInTaalChoosesAnotherSection)
{
    Text("Messages", "msg.0900", "Nederlands");
    Text("MessagesUK", "msg.0900", "English");
    ShowMessageForm(nullptr, 900);
    Text("Algemeen", "Taal", "UK");
    ShowMessageForm(nullptr, 900);
    EXPECT_EQ(m_boxes.Texts(), (QStringList{"Nederlands", "English"}));
}

TEST_F(MessageBoxesTest, TheTitleHasNoUnderscores)
{
    SetApplicationTitle("Zandvoet_RW_2");
    WrappedOkBox(nullptr, BoxTitle(), "tekst");
    EXPECT_EQ(m_boxes.Titles(), QStringList{"Zandvoet-RW-2"});
}

TEST_F(MessageBoxesTest, TheButtonTextComesFromTheIni)
{
    Text("MESSAGEBUTTONS", "OK", "Begrepen");
    ShowMessageForm(nullptr, 12);
    EXPECT_EQ(m_boxes.Buttons(), QStringList{"Begrepen"});
    ShowFoutForm(nullptr, 12);
    EXPECT_EQ(m_boxes.Buttons(), QStringList{"Begrepen"});
}

TEST_F(MessageBoxesTest, AFoutIsACriticalBox)
{
    ShowFoutForm(nullptr, 5003);
    EXPECT_EQ(m_boxes.Icons(), QList{QMessageBox::Critical});
    EXPECT_EQ(m_boxes.Texts(), QStringList{FoutText(5003)});
}

TEST_F(MessageBoxesTest, AQuestionAnswersSixForYesAndSevenForNo)
{
    m_boxes.Press("Ja");
    EXPECT_EQ(AskQuestion(nullptr, 101, {"Profiel 1"}), 6);
    m_boxes.Press("Nee");
    EXPECT_EQ(AskQuestion(nullptr, 101, {"Profiel 1"}), 7);
    EXPECT_EQ(m_boxes.Icons().last(), QMessageBox::Question);
}

TEST_F(MessageBoxesTest, NoIsTheDefaultButtonOfAQuestion)
{
    EXPECT_EQ(AskQuestion(nullptr, 101, {"x"}), 7); // the reader presses the default
    EXPECT_EQ(m_boxes.DefaultButton(), "Nee");
    EXPECT_EQ(m_boxes.Buttons().size(), 2);
}

TEST_F(MessageBoxesTest, ThreeButtonsAnswerThreeFourAndFiveAndTheThirdIsTheDefault)
{
    const auto ask = [] {
        return AskQuestionButtons(nullptr, 201, "Ja", "Nee", "Ja op alles", {"map", "plaats"});
    };
    m_boxes.Press("Ja");
    EXPECT_EQ(ask(), 3);
    m_boxes.Press("Nee");
    EXPECT_EQ(ask(), 4);
    m_boxes.Press("Ja op alles");
    EXPECT_EQ(ask(), 5);
    EXPECT_EQ(m_boxes.DefaultButton(), "Ja op alles");
    EXPECT_EQ(m_boxes.Buttons(), (QStringList{"Ja", "Nee", "Ja op alles"}));
}

TEST_F(MessageBoxesTest, AnEmptyThirdButtonMakesAQuestionWithTwo)
{
    m_boxes.Press("Doorgaan");
    EXPECT_EQ(AskQuestionButtons(nullptr, 200, "Doorgaan", "Stoppen", QString(), {"map"}), 6);
    m_boxes.Press("Stoppen");
    EXPECT_EQ(AskQuestionButtons(nullptr, 200, "Doorgaan", "Stoppen", QString(), {"map"}), 7);
}

TEST_F(MessageBoxesTest, TextIsNotTakenForMarkup)
{
    WrappedFoutBox(nullptr, "t", "C:\\<b>vet</b> & meer");
    EXPECT_EQ(m_boxes.Texts(), QStringList{"C:\\<b>vet</b> & meer"});
}

TEST_F(MessageBoxesTest, TheOwnerOfABoxIsTheWindowOfTheForm)
{
    QWidget form;
    QWidget child(&form);
    ShowMessageForm(&child, 12);
    EXPECT_EQ(m_boxes.Owner(), &form);
}

TEST_F(MessageBoxesTest, ReportErrorShowsTheDescriptionInLines)
{
    ReportError(Fout(FoutCode(1), "regel een|regel twee||"));
    EXPECT_EQ(m_boxes.Texts(), QStringList{"regel een\r\nregel twee|"});
    EXPECT_EQ(m_boxes.Icons(), QList{QMessageBox::Critical});
}

TEST_F(MessageBoxesTest, AHandlerThatFailsEndsInOneBoxAndIsBusyNoMore)
{
    bool behind = false;
    RunHandler([&] {
        SetBusy();
        RaiseFout(5003);
        behind = true;
    });
    EXPECT_FALSE(behind);
    EXPECT_EQ(m_boxes.Texts(), QStringList{FoutText(5003)});
    EXPECT_EQ(BusyCount(), 0);
}

TEST_F(MessageBoxesTest, AHandlerMeetsExceptionsOfOthersToo)
{
    RunHandler([] { throw std::runtime_error("buiten"); });
    EXPECT_EQ(m_boxes.Texts(), QStringList{"buiten"});
}

} // namespace
