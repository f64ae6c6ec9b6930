#include "navigation/NodeCommands.h"

#include "navigation/NavTree.h"

namespace {

bool IsBelow(const QString& key, const QString& root)
{
    return key.size() > root.size() && key.startsWith(root, Qt::CaseInsensitive);
}

} // namespace

QMap<QString, bool> CommandsOfNode(const NodeState& node)
{
    const bool isRoot = !node.key.isEmpty() && node.tag.isEmpty();
    const bool belowLocaties = IsBelow(node.key, navkey::RootLocaties);
    const bool belowProfielen = IsBelow(node.key, navkey::RootProfielen);
    const bool belowDijkringen = IsBelow(node.key, navkey::RootDijkringen);
    const bool isProfiel = node.tag == navtag::Profiel;
    const bool isBerekening =
        node.tag == navtag::Berekening || node.tag == navtag::Dijkringberekening;

    return {
        {"mnuLocatieDelete", node.selection},

        {"mnuDijkringEdit", belowDijkringen},
        {"mnuDijkringDelete", belowDijkringen},
        {"mnuDijkringRename", belowDijkringen},
        {"mnuDijkringCopy", belowDijkringen},
        {"mnuDijkringPaste", belowDijkringen},

        {"mnuBerekeningStrijklengtes", belowLocaties},
        {"mnuBerekeningBodemhoogtes", belowLocaties},
        {"mnuBerekeningDijknormalen", isRoot || belowLocaties},
        {"mnuBerekeningStart", belowLocaties && node.selection},

        {"mnuBerekeningUitvoer", isBerekening && node.uitvoer},
        {"mnuBerekeningGrafiekFaalfreq", isBerekening && node.freqlijn},
        {"mnuBerekeningInvoer", isBerekening},
        {"mnuBerekeningFolder", isBerekening},
        {"mnuBerekeningDelete", isBerekening},
        {"mnuBerekeningRename", isBerekening},

        {"mnuProfielEdit", isProfiel},
        {"mnuProfielDelete", isProfiel},
        {"mnuProfielAssign2SelectedLocations", isProfiel && belowProfielen && node.selection},

        {"mnuWeergaveHBN", node.resultaten},
        {"mnuWeergaveExportMap", node.resultaten},
    };
}

QString ContextMenuOfNode(const QString& key, const QString& tag)
{
    static const QMap<QString, QString> menus{
        {navkey::RootLocaties, "mnuLocatie"},     {navtag::Locatie, "mnuLocatie"},
        {navkey::RootProfielen, "mnuProfiel"},    {navtag::Profielmap, "mnuProfiel"},
        {navtag::Profiel, "mnuProfiel"},          {navkey::RootDijkringen, "mnuDijkring"},
        {navtag::Dijkring, "mnuDijkring"},        {navkey::RootBerekeningen, "mnuBerekening"},
        {navtag::Berekeningmap, "mnuBerekening"}, {navtag::Berekening, "mnuBerekening"},
        {navtag::Dijkringmap, "mnuBerekening"},   {navtag::Dijkringberekening, "mnuBerekening"},
    };
    return menus.value(tag.isEmpty() ? key.toUpper() : tag);
}
