#include "navigation/NodeCommands.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

QStringList Enabled(const NodeState& node)
{
    QStringList names;
    const auto commands = CommandsOfNode(node);
    for (auto command = commands.cbegin(); command != commands.cend(); ++command)
        if (command.value())
            names << command.key();
    return names;
}

const QStringList kRing{"mnuDijkringCopy", "mnuDijkringDelete", "mnuDijkringEdit",
                        "mnuDijkringPaste", "mnuDijkringRename"};
const QStringList kBerekening{"mnuBerekeningDelete", "mnuBerekeningFolder", "mnuBerekeningInvoer",
                              "mnuBerekeningRename"};
const QStringList kLocatie{"mnuBerekeningBodemhoogtes", "mnuBerekeningDijknormalen",
                           "mnuBerekeningStrijklengtes"};

QStringList Sorted(QStringList names)
{
    names.sort();
    return names;
}

TEST(NodeCommandsTest, ARootAllowsDikeNormalsAlone)
{
    for (const char* root : {"ROOTLOCATIES", "ROOTDIJKRINGEN", "ROOTPROFIELEN", "ROOTBEREKENINGEN"})
        EXPECT_EQ(Enabled({.key = root}), QStringList{"mnuBerekeningDijknormalen"}) << root;
}

TEST(NodeCommandsTest, BelowTheRingsTheRingCommandsAreOn)
{
    EXPECT_EQ(Enabled({.key = "ROOTDIJKRINGEN\\A", .tag = "DIJKRING"}), kRing);
    EXPECT_EQ(Enabled({.key = "ROOTDIJKRINGEN\\A\\berekeningen", .tag = "DRDIR"}), kRing);
    EXPECT_EQ(Enabled({.key = "ROOTDIJKRINGEN\\A\\berekeningen\\b", .tag = "DRBEREKENING"}),
              Sorted(kRing + kBerekening));
}

TEST(NodeCommandsTest, BelowTheLocationsAComputationCanStartWhenSomethingIsSelected)
{
    for (const char* tag : {"LOCATIE", "PRDIR", "BRDIR"}) {
        EXPECT_EQ(Enabled({.key = "ROOTLOCATIES\\A", .tag = tag}), kLocatie) << tag;
        EXPECT_EQ(Enabled({.key = "ROOTLOCATIES\\A", .tag = tag, .selection = true}),
                  Sorted(kLocatie + QStringList{"mnuBerekeningStart", "mnuLocatieDelete"}))
            << tag;
    }
}

TEST(NodeCommandsTest, OutputCanBeShownWhenItIsThere)
{
    NodeState node{.key = "ROOTLOCATIES\\A\\berekeningen\\b", .tag = "BEREKENING"};
    EXPECT_EQ(Enabled(node), Sorted(kLocatie + kBerekening));
    node.uitvoer = true;
    EXPECT_EQ(Enabled(node), Sorted(kLocatie + kBerekening + QStringList{"mnuBerekeningUitvoer"}));
    node.freqlijn = true;
    EXPECT_EQ(Enabled(node),
              Sorted(kLocatie + kBerekening +
                     QStringList{"mnuBerekeningUitvoer", "mnuBerekeningGrafiekFaalfreq"}));
    EXPECT_EQ(
        Enabled({.key = "ROOTLOCATIES\\A", .tag = "LOCATIE", .uitvoer = true, .freqlijn = true}),
        kLocatie)
        << "only a calculation has output";
    EXPECT_EQ(Enabled({.key = "ROOTBEREKENINGEN\\b", .tag = "BEREKENING"}), kBerekening);
}

TEST(NodeCommandsTest, AProfileIsAssignedFromItsOwnListWithASelection)
{
    const QStringList profiel{"mnuProfielDelete", "mnuProfielEdit"};
    EXPECT_EQ(Enabled({.key = "ROOTLOCATIES\\A\\profielen\\P", .tag = "PROFIEL"}),
              Sorted(kLocatie + profiel));
    EXPECT_FALSE(
        Enabled({.key = "ROOTLOCATIES\\A\\profielen\\P", .tag = "PROFIEL", .selection = true})
            .contains("mnuProfielAssign2SelectedLocations"));
    EXPECT_EQ(Enabled({.key = "ROOTPROFIELEN\\P", .tag = "PROFIEL"}), profiel);
    EXPECT_EQ(
        Enabled({.key = "ROOTPROFIELEN\\P", .tag = "PROFIEL", .selection = true}),
        Sorted(profiel + QStringList{"mnuLocatieDelete", "mnuProfielAssign2SelectedLocations"}));
}

TEST(NodeCommandsTest, ResultsCanBeShownWhenThereAreSomeWhateverTheNode)
{
    EXPECT_EQ(Enabled({.resultaten = true}),
              (QStringList{"mnuWeergaveExportMap", "mnuWeergaveHBN"}));
    EXPECT_TRUE(Enabled({.key = "ROOTPROFIELEN", .resultaten = true}).contains("mnuWeergaveHBN"));
}

TEST(NodeCommandsTest, ASelectionCanBeDeletedWhateverTheNode)
{
    EXPECT_EQ(Enabled({.selection = true}), QStringList{"mnuLocatieDelete"});
    for (const char* root : {"ROOTLOCATIES", "ROOTDIJKRINGEN", "ROOTPROFIELEN", "ROOTBEREKENINGEN"})
        EXPECT_EQ(Enabled({.key = root, .selection = true}),
                  (QStringList{"mnuBerekeningDijknormalen", "mnuLocatieDelete"}))
            << root;
}

TEST(NodeCommandsTest, WithoutANodeEverythingIsOff)
{
    EXPECT_TRUE(Enabled({}).isEmpty());
    EXPECT_EQ(CommandsOfNode({}).keys(), CommandsOfNode({.key = "ROOTLOCATIES"}).keys());
}

TEST(NodeCommandsTest, EveryKindOfNodeHasAContextMenu)
{
    EXPECT_EQ(ContextMenuOfNode("ROOTLOCATIES", ""), "mnuLocatie");
    EXPECT_EQ(ContextMenuOfNode("ROOTLOCATIES\\A", "LOCATIE"), "mnuLocatie");
    EXPECT_EQ(ContextMenuOfNode("ROOTDIJKRINGEN", ""), "mnuDijkring");
    EXPECT_EQ(ContextMenuOfNode("ROOTDIJKRINGEN\\A", "DIJKRING"), "mnuDijkring");
    for (const char* tag : {"PRDIR", "PROFIEL"})
        EXPECT_EQ(ContextMenuOfNode("x", tag), "mnuProfiel");
    EXPECT_EQ(ContextMenuOfNode("ROOTPROFIELEN", ""), "mnuProfiel");
    for (const char* tag : {"BRDIR", "BEREKENING", "DRDIR", "DRBEREKENING"})
        EXPECT_EQ(ContextMenuOfNode("x", tag), "mnuBerekening");
    EXPECT_EQ(ContextMenuOfNode("ROOTBEREKENINGEN", ""), "mnuBerekening");
    EXPECT_EQ(ContextMenuOfNode("", ""), "");
}

} // namespace
