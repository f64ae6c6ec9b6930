#include "database/ui/modHRdbOpenSaveFuncs.h"

#include "frame/Busy.h"
#include "frame/Globals.h"
#include "frame/Ports.h"
#include "frame/ui/FileDialogs.h"

namespace {

constexpr int kStatusOpenen = 5;

/// The box for each way in which a file is refused.
int FoutVan(OpenResult resultaat)
{
    switch (resultaat) {
    case OpenResult::CouldNotOpen:
        return 4;
    case OpenResult::CheckFailed:
        return 5;
    case OpenResult::TooManyLocations:
        return 28;
    case OpenResult::ResultsDeclined:
        return 27;
    case OpenResult::Accepted:
        break;
    }
    return 0;
}

} // namespace

std::unique_ptr<HRdb> OpenDatabaseDialog(QWidget* eigenaar, StatusBar& statusbalk,
                                         const QString& startmap, const QString& titel)
{
    const QString vorige = statusbalk.ClearStatusBarText();
    std::unique_ptr<HRdb> database;
    const QString pad = ChooseFile(eigenaar, {.title = titel,
                                              .filters = "Gegevensbestand (*.mdb)|*.mdb",
                                              .initialFolder = startmap,
                                              .fileName = {}});
    bool gemeld = false; // the open itself has told something that is to be read
    if (!pad.isEmpty()) {
        const BusyScope bezig;
        statusbalk.SetStatusBarTextByNumber(kStatusOpenen);
        const QString openen = statusbalk.SetStatusBarText({});
        database = OpenHRdbChecked(&statusbalk, pad);
        const QString erna = statusbalk.SetStatusBarText({});
        gemeld = !erna.isEmpty() && erna != openen;
    }
    if (!gemeld) {
        statusbalk.ClearStatusBarText();
        statusbalk.SetStatusBarText(vorige);
    }
    return database;
}

std::unique_ptr<HRdb> OpenHRdbChecked(StatusBar* statusbalk, const QString& pad)
{
    auto database = std::make_unique<HRdb>();
    database->setStatusbarForm(statusbalk);
    const OpenResult resultaat = database->OpenDB(pad, false, true);
    database->CloseDB();
    if (resultaat == OpenResult::Accepted)
        return database;
    if (gBoxes.Exists())
        gBoxes().ShowFout(FoutVan(resultaat), {pad, database->OpenErrDescription()});
    return nullptr;
}
