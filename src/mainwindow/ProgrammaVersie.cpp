#include "mainwindow/ProgrammaVersie.h"

#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/Platform.h"
#include "frame/ProcessRunner.h"
#include "frame/QLMIniFile.h"

#include <QFileInfo>
#include <QTimer>

QString getProgrammaVersie(const QString& key, LogSink& box)
{
    constexpr int kPatience = 3000; // ms
    const QString told = AbsolutePath(gIniFile().GetString("Algemeen", key));
    const QString path = platform::ShortPath(ProgramFile(told));
    if (!FileExists(path))
        return QString();
    try {
        ProcessRunner runner;
        QTimer patience;
        patience.setSingleShot(true);
        QObject::connect(&patience, &QTimer::timeout, [&runner] { runner.Terminate(); });
        patience.start(kPatience);
        box.Clear();
        const RunResult result =
            runner.Execute(nullptr, {path, {"-VERSIE"}}, QFileInfo(path).absolutePath(), &box);
        return result.exitCode == 0 && !result.aborted ? box.Text().trimmed() : QString();
    } catch (const std::exception&) {
        return QString(); // a program that does not start has no version to tell
    }
}

QString VersieText(const QString& caption)
{
    return caption + " " + PROGRAM_VERSION + " november 2021";
}

QString MetVersie(const QString& naam, const QString& versie)
{
    return versie.startsWith(naam + " ") ? versie : naam + " " + versie;
}
