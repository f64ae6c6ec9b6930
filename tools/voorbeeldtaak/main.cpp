// Does the program's main job on the example database without a screen: opens
// it, sets the calculation up, runs the core over all locations and keeps
// pictures, files and a table of what came out.

#include "Robot.h"

#include "calculation/BatchVoortgang.h"
#include "database/HRdb.h"
#include "frame/Convert.h"
#include "frame/FileSystemObject.h"
#include "frame/Globals.h"
#include "frame/Numbers.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "frame/SingleObject.h"
#include "frame/startup/Assembly.h"
#include "mainwindow/PaneSizes.h"
#include "mainwindow/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTest>
#include <QTextStream>
#include <QTreeWidget>

#include <algorithm>
#include <stdexcept>

namespace {

const QString kBerekening = "voorbeeld";
const QString kLocatie = "Plas-04"; // whose files are shown

/// Puts a file back as it was: the job leaves no settings behind.
class Teruggezet {
public:
    explicit Teruggezet(const QString& pad) : m_pad(pad)
    {
        QFile bestand(pad);
        if (bestand.open(QIODevice::ReadOnly))
            m_inhoud = bestand.readAll();
    }
    ~Teruggezet()
    {
        QFile bestand(m_pad);
        if (!m_inhoud.isNull() && bestand.open(QIODevice::WriteOnly))
            bestand.write(m_inhoud);
    }
    Teruggezet(const Teruggezet&) = delete;
    Teruggezet& operator=(const Teruggezet&) = delete;

private:
    QString m_pad;
    QByteArray m_inhoud;
};

/// The program's global objects, which go while the application still stands, also when
/// the job ends in an error.
struct Globalen {
    Globalen() = default;
    ~Globalen()
    {
        gMainForm.Release();
        gSingleObject.Release();
        gMapSelection.Release();
        gPaneSizes.Release();
        gIniFile.Release();
        gHRdb.Release();
    }
    Globalen(const Globalen&) = delete;
    Globalen& operator=(const Globalen&) = delete;
};

/// A copy of the example database in a folder of its own, so that the job can be repeated.
QString KopieVanVoorbeeld(const QString& installatie, const QString& uitvoer)
{
    const QString map = uitvoer + "/werk";
    if (gFso().FolderExists(map))
        gFso().DeleteFolder(map, true);
    QDir().mkpath(map);
    const QString kopie = map + "/Voorbeeldboezem.mdb";
    gFso().CopyFile(installatie + "/data/databases/Voorbeeldboezem.mdb", kopie);
    return kopie;
}

/// Clicks the first location in the tree and then the command.
bool StartBerekening(frmMain& window)
{
    auto* tree = window.findChild<QTreeWidget*>("treLocaties");
    auto* command = window.findChild<QAction*>("mnuBerekeningStart");
    if (!tree || !command || tree->topLevelItemCount() == 0)
        return false;
    auto* locaties = tree->topLevelItem(0);
    locaties->setExpanded(true);
    if (locaties->childCount() == 0)
        return false;
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                      tree->visualItemRect(locaties->child(0)).center());
    if (!command->isEnabled())
        return false;
    command->trigger();
    return true;
}

/// The load levels per location (rows) and return period, as CSV; returns the
/// number of values that are known.
int SchrijfTabel(HRdb& database, const QString& csv)
{
    const auto rijen = database.GetRecordSet(
        "SELECT Locatie.omschrijving AS naam, Profielen.Naam AS profiel, Resultaat.Herhalingstijd "
        "AS tijd, Resultaat.HBN_MS_MO AS hbn FROM ((Resultaat INNER JOIN Locatie ON "
        "Resultaat.Locatie_ID = Locatie.Locatie_ID) INNER JOIN Berekening ON "
        "Resultaat.Berekening_ID = Berekening.Id) LEFT JOIN Profielen ON Berekening.ProfielId = "
        "Profielen.Profiel_ID WHERE Berekening.Naam=\"" +
        kBerekening + "\" ORDER BY Locatie.Locatie_ID, Profielen.Naam, Resultaat.Herhalingstijd;");
    QFile bestand(csv);
    if (!bestand.open(QIODevice::WriteOnly))
        return 0;
    QTextStream uit(&bestand);
    QTextStream scherm(stdout);
    uit << "locatie,profiel,herhalingstijd,hbn\r\n";
    scherm << "\nlocatie     profiel         T (jaar)   HBN (m)\n";
    int bekend = 0;
    if (!HRdb::heeftRecords(rijen))
        return 0;
    for (; !rijen->EndOfFile(); rijen->MoveNext()) {
        const QString naam = QString::fromStdString(rijen->Get("naam").AsTextOr(""));
        const QString profiel = QString::fromStdString(rijen->Get("profiel").AsTextOr(""));
        const double tijd = rijen->Get("tijd").AsDouble();
        const double hbn = rijen->Get("hbn").AsDouble();
        if (hbn != kNietBekend)
            ++bekend;
        uit << naam << ',' << profiel << ',' << NumberText(tijd) << ','
            << (hbn == kNietBekend ? QString() : FixedText(hbn, 3)) << "\r\n";
        scherm << naam.leftJustified(12) << profiel.leftJustified(16)
               << NumberText(tijd).rightJustified(8) << "   "
               << (hbn == kNietBekend ? QStringLiteral("-") : FixedText(hbn, 3)).rightJustified(7)
               << '\n';
    }
    return bekend;
}

QString Bewaard(const QString& uitvoer, const QString& naam)
{
    return uitvoer + "/" + kLocatie + "-" + naam;
}

/// Input, report and frequency line of one run, where a reader finds them; whether they
/// are there.
bool BewaarBestanden(HRdb& database, const QString& uitvoer)
{
    const QStringList bestanden{"invoer.txt", "uitvoer.txt", "freqlijn.txt"};
    const QString berekeningen =
        gFso().BuildPath(gFso().BuildPath(database.WerkMap(), kLocatie), "Berekeningen");
    for (const QString& map : gFso().SubFolders(berekeningen))
        for (const QString& naam : bestanden) {
            const QString doel = Bewaard(uitvoer, naam);
            const QString bron = gFso().BuildPath(gFso().BuildPath(berekeningen, map), naam);
            if (gFso().FileExists(bron) && !gFso().FileExists(doel)) {
                gFso().CopyFile(bron, doel);
                SetReadOnly(doel, false);
            }
        }
    return std::all_of(bestanden.begin(), bestanden.end(), [&](const QString& naam) {
        return gFso().FileExists(Bewaard(uitvoer, naam));
    });
}

/// Every pair that was chosen ran well.
bool AllesGelukt(const Robot& robot)
{
    const QStringList regels = robot.ResultList().split('\n', Qt::SkipEmptyParts);
    return robot.Selected() > 0 && regels.size() == robot.Selected() &&
           AantalMislukt(robot.ResultList()) == 0;
}

int VoerUit(const QString& installatie, const QString& uitvoer)
{
    QTextStream scherm(stdout);
    SetApplicationTitle("Zandvoet");
    SetProgramFolder(installatie);
    const Teruggezet programmaIni(installatie + "/Zandvoet.ini");
    const Teruggezet instellingenIni(installatie + "/data/Instellingen.ini");
    if (!QDir().mkpath(uitvoer))
        throw std::runtime_error("de map kan niet worden gemaakt: " + uitvoer.toStdString());
    for (const QString& oud : QDir(uitvoer).entryList(QDir::Files))
        QFile::remove(uitvoer + "/" + oud);

    const Globalen globalen;
    gPaneSizes.SetFactory([] { return std::make_shared<PaneSizes>(); });
    gSingleObject.SetFactory([] { return std::make_shared<SingleObject>(); });
    gIniFile.Set(std::make_shared<QLMIniFile>());
    SetIniPath(AbsolutePath(gIniFile().GetString("IniBestanden", "IniPath")));
    SetRekeninstellingenPath(
        AbsolutePath(gIniFile().GetString("RekeninstellingenBestanden", "IniPath")));

    Robot robot(uitvoer);
    robot.setBerekening(kBerekening);
    gMainForm.Set(std::make_shared<frmMain>());
    frmMain& window = gMainForm();
    AssembleMainWindow(window);
    window.Load();
    window.resize(1280, 800);
    window.show();
    window.OpenDatabase(KopieVanVoorbeeld(installatie, uitvoer));
    QCoreApplication::processEvents();

    int bekend = 0;
    const bool gestart = StartBerekening(window);
    if (!gestart)
        scherm << "De opdracht om te rekenen is niet beschikbaar.\n";
    else
        bekend = SchrijfTabel(gHRdb(), uitvoer + "/hbn.csv");
    QCoreApplication::processEvents();
    robot.Keep(&window, "hoofdscherm.png");
    const bool bestanden = gestart && BewaarBestanden(gHRdb(), uitvoer);

    for (const QString& fault : robot.Faults())
        scherm << "Melding: " << fault << '\n';
    for (const QString& regel : robot.ResultList().split('\n', Qt::SkipEmptyParts))
        if (const auto gelezen = LeesResultaatregel(regel); gelezen && !gelezen->gelukt)
            scherm << regel << '\n';
    if (gestart && !bestanden)
        scherm << "De bestanden van " << kLocatie << " zijn niet compleet.\n";
    scherm << '\n'
           << robot.Summary() << '\n'
           << bekend << " hydraulische belastingniveaus berekend.\n"
           << "Beelden, bestanden en hbn.csv staan in " << QDir(uitvoer).absolutePath() << '\n';
    const bool goed = AllesGelukt(robot) && bekend > 0 && bestanden && robot.Faults().isEmpty();
    window.CloseRandvoorwaarden();
    return goed ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        QTextStream(stderr) << "Gebruik: voorbeeldtaak INSTALLATIEMAP UITVOERMAP\n";
        return 2;
    }
    try {
        return VoerUit(QDir(arguments[1]).absolutePath(), QDir(arguments[2]).absolutePath());
    } catch (const std::exception& error) {
        QTextStream(stderr) << "voorbeeldtaak: " << error.what() << '\n';
        return 1;
    }
}
