#include "frame/Globals.h"

#include "frame/Convert.h"
#include "frame/FileSystemObject.h"
#include "frame/Ports.h"
#include "frame/QLMFile.h"
#include "frame/QLMIniFile.h"

namespace {

template <typename T>
std::shared_ptr<T> Make()
{
    return std::make_shared<T>();
}

struct Settings {
    QString language;
    QString iniPath;
    QString rekeninstellingenPath;
    bool extraOpties = false;
};

Settings& TheSettings()
{
    static Settings settings;
    return settings;
}

} // namespace

Global<QLMIniFile> gIniFile{Make<QLMIniFile>};
Global<FileSystemObject> gFso{Make<FileSystemObject>};
Global<Convert> gConvert{Make<Convert>};
Global<QLMFile> gFile{Make<QLMFile>};

Global<HRdb> gHRdb;
Global<frmMain> gMainForm;
Global<frmMapResultaat> gMapResultaatForm;
Global<PaneSizes> gPaneSizes;
Global<SingleObject> gSingleObject;
Global<MapSelection> gMapSelection;
Global<Strijklengte> gStrijklengte;
Global<Boxes> gBoxes;

const QString& gLanguage()
{
    return TheSettings().language;
}
void SetLanguage(const QString& language)
{
    TheSettings().language = language;
}

const QString& gIniPath()
{
    return TheSettings().iniPath;
}
void SetIniPath(const QString& folder)
{
    TheSettings().iniPath = folder;
}

const QString& gRekeninstellingenPath()
{
    return TheSettings().rekeninstellingenPath;
}
void SetRekeninstellingenPath(const QString& folder)
{
    TheSettings().rekeninstellingenPath = folder;
}

bool gExtraOpties()
{
    return TheSettings().extraOpties;
}
void SetExtraOpties(bool on)
{
    TheSettings().extraOpties = on;
}
