#include "frame/startup/EnvironmentChecks.h"

#include "frame/Convert.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>

#include <cmath>

namespace {

constexpr int kMinimumWidth = 1024;
constexpr int kMinimumHeight = 768;
constexpr double kMinimumColours = 256;

bool SystemSpeaksDutch()
{
    const QString language = gConvert().getInternational("sLanguage").toUpper();
    return language == "DUT" || language == "NLD";
}

QString Refusal(const QString& dutch, const QString& english)
{
    if (SystemSpeaksDutch())
        return dutch + "\r\n\r\nZie gebruikershandleiding.\r\n\r\nApplicatie wordt niet gestart!";
    return english + "\r\n\r\nSee user manual.\r\n\r\nApplication aborted!";
}

void AddListed(QStringList& files, const QString& section)
{
    const QString noMore = "NO MORE FILES";
    for (int n = 1;; ++n) {
        const QString file = gIniFile().GetString(section, "File" + QString::number(n), noMore);
        if (file == noMore)
            return;
        files.append(file);
    }
}

} // namespace

QSize DisplayInfo::GetScreenRect() const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? (QSizeF(screen->size()) * screen->devicePixelRatio()).toSize() : QSize();
}

double DisplayInfo::GetColourCount() const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? std::pow(2.0, screen->depth()) : 0;
}

std::optional<QString> CheckScreen(const DisplayInfo& display)
{
    const QSize screen = display.GetScreenRect();
    // The wording of the English texts is as it always was.
    if (screen.width() < kMinimumWidth || screen.height() < kMinimumHeight)
        return Refusal("Schermresolutie moet minimaal 1024x768 zijn.",
                       "Screen area must be at least  1024 by 768 pixels.");
    if (display.GetColourCount() < kMinimumColours)
        return Refusal("Aantal schermkleuren moet minimaal 256 zijn.",
                       "Number of display colours must be al least 256.");
    return std::nullopt;
}

std::optional<QString> RequireFile(const QString& path)
{
    const QString file = AbsolutePath(path);
    if (FileExists(ProgramFile(file)))
        return std::nullopt;
    return file + (SystemSpeaksDutch() ? "\r\nniet gevonden. Applicatie wordt niet gestart!"
                                       : "\r\nnot found. Application aborted!");
}

QStringList RequiredFiles()
{
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    QStringList files{AddBackslash(ProgramFolder()) + program + ".ini"};
    for (const char* section : {"AlgemeneBestanden", "IniBestanden", "RekeninstellingenBestanden"})
        AddListed(files, section);
    const QString manual = "Handleiding" + gLanguage();
    for (const QString& key :
         {QString("Rekenprogramma.exe"), QString("WindWaveCalculator.exe"), manual})
        // A name that cannot exist: the key is in effect mandatory, and the
        // message says which one is missing.
        files.append(gIniFile().GetString("Algemeen", key, "<" + key + ">"));
    return files;
}

std::optional<QString> CheckRequiredFiles()
{
    for (const QString& file : RequiredFiles()) {
        if (auto refusal = RequireFile(file))
            return refusal;
    }
    return std::nullopt;
}
