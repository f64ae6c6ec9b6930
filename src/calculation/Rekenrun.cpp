#include "calculation/Rekenrun.h"

#include "database/HRdb.h"
#include "database/modODBC.h"
#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMFile.h"
#include "frame/QLMIniFile.h"

#include <QFile>

namespace {

void MaakAllesAlleenLezen(const QString& map)
{
    for (const QString& bestand : gFso().Files(map))
        SetReadOnly(gFso().BuildPath(map, bestand), true);
}

} // namespace

RunResult Rekenrun::Start(RunForm* form, const QString& map, LogSink& box, const QString& invoer)
{
    const QString programma = ProgramFile(
        AbsolutePath(gIniFile().GetString("Algemeen", "Rekenprogramma.exe", {})).trimmed());
    const ProgramCall aanroep{gFile().GetShortPathName(programma),
                              {"-INVOER", gFile().GetShortPathName(gFso().BuildPath(map, invoer))}};

    const QString logPad = gFso().BuildPath(map, "uitvoer.log");
    if (gFso().FileExists(logPad))
        gFso().DeleteFile(logPad, true);
    QFile log(ResolvePath(logPad));
    if (!log.open(QIODevice::WriteOnly))
        RaiseRuntimeFout(RuntimeFout::FileAccess,
                         "Het bestand kan niet worden geschreven: " + logPad);

    m_database.CloseDB();
    const RunResult resultaat = m_runner.Execute(form, aanroep, map, &box, &log);
    log.close(); // what was still in its buffer may fail only now
    if (log.error() != QFileDevice::NoError)
        box.Append("\r\nHet logbestand is niet volledig: " + log.errorString() + "\r\n");
    MaakAllesAlleenLezen(map);
    RemoveDataSource("Zandvoet Randvoorwaarden");
    return resultaat;
}
