#include "calculation/BerekenLocaties.h"

#include "calculation/InvoerBestand.h"
#include "database/HRdb.h"
#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMFile.h"

#include <QDir>
#include <QSet>

#include <cstdint>
#include <filesystem>

namespace {

constexpr int kMaximumPad = 240;
constexpr int kVraagOverschrijven = 20;
constexpr int kMeldingNietLeeg = 205;
constexpr int kFoutPadTeLang = 26;
constexpr int kStatusAfgebroken = 8;
/// Bytes that must be free before a run: its files, and the growth of the database.
constexpr std::uintmax_t kMinimumSchijfruimte = 1024 * 1024;

const QString kRootLocaties = QStringLiteral("ROOTLOCATIES");

struct Paar {
    TeBerekenen wat;
    QString map;
};

QString Mapnaam(const QString& berekening, const QString& profiel)
{
    return profiel.trimmed().isEmpty() ? berekening : berekening + "_" + profiel;
}

QString Berekeningenmap(const QString& werkmap, const QString& locatie)
{
    return gFso().BuildPath(gFso().BuildPath(werkmap, locatie), "Berekeningen");
}

/// Error 26 when the path is too long.
QString Berekeningmap(const QString& werkmap, const QString& locatie, const QString& mapnaam)
{
    const QString map = gFso().BuildPath(Berekeningenmap(werkmap, locatie), mapnaam);
    if (map.size() > kMaximumPad)
        RaiseFout(kFoutPadTeLang, {map});
    return map;
}

/// The calculation's name in tree and list.
QString Boomnaam(const QString& map)
{
    return gFile().GetFile(map).toLower();
}

/// The tree's key of a calculation folder.
QString Boomsleutel(const QString& map, const QString& werkmap, const QString& scheiding)
{
    QString sleutel = map;
    sleutel.replace(werkmap, kRootLocaties, Qt::CaseInsensitive);
    return sleutel.replace('/', scheiding).replace('\\', scheiding);
}

/// Makes the folders of locations that have none yet. One look at the work folder tells
/// which: to look for each of them without regard to case costs the square of their number.
void MaakLocatiemappen(const QString& werkmap, const QList<TeBerekenen>& paren)
{
    QSet<QString> aanwezig;
    for (const QString& map : gFso().SubFolders(werkmap))
        aanwezig << map.toLower();
    for (const TeBerekenen& wat : paren) {
        if (aanwezig.contains(wat.locatie.toLower()))
            continue;
        QDir().mkpath(Berekeningenmap(ResolvePath(werkmap), wat.locatie));
        aanwezig << wat.locatie.toLower();
    }
}

/// The pairs that are to run; empty when the user stopped.
QList<Paar> BereidMappenVoor(const BatchDeelnemers& deelnemers, const Batch& batch)
{
    const QString werkmap = deelnemers.database.WerkMap();
    // Found out before the first folder is emptied: a batch that cannot begin costs nothing.
    for (const TeBerekenen& wat : batch.paren)
        Berekeningmap(werkmap, wat.locatie, Mapnaam(batch.naam, wat.profiel));

    MaakLocatiemappen(werkmap, batch.paren);
    QList<Paar> paren;
    for (const TeBerekenen& wat : batch.paren) {
        QString map;
        switch (MaakBerekeningMap(Mapnaam(batch.naam, wat.profiel), wat.locatie, werkmap, map)) {
        case MapAntwoord::Stoppen:
            return {};
        case MapAntwoord::Doorgaan:
            if (gFso().FolderExists(map))
                deelnemers.browser.BerekeningNodeDelete(
                    Boomsleutel(map, werkmap, deelnemers.browser.GetPathSeparator()));
            else
                gFso().CreateFolder(map);
            // It can be made; until its run it is not there, since the tree takes every
            // folder for a calculation: a batch that is stopped, or a program that is
            // killed, leaves none that never ran. One that is not empty stays.
            QDir().rmdir(ResolvePath(map));
            paren << Paar{wat, map};
            break;
        case MapAntwoord::Overslaan:
            break;
        }
    }
    return paren;
}

/// Stops the batch at the first sign of a full disk, instead of failing pair by pair.
void ControleerSchijfruimte(const QString& map)
{
    std::error_code onbekend;
    const auto ruimte =
        std::filesystem::space(std::filesystem::path(map.toStdU16String()), onbekend);
    if (!onbekend && ruimte.available < kMinimumSchijfruimte)
        RaiseRuntimeFout(RuntimeFout::FileAccess,
                         "De schijf is vol. Maak ruimte vrij en start de overige berekeningen "
                         "daarna opnieuw.|" +
                             map);
}

/// The runs of a batch, pair by pair.
class Uitvoering {
public:
    Uitvoering(const BatchDeelnemers& deelnemers, const Batch& batch, BatchVerloop& verloop)
        : m_deelnemers(deelnemers), m_batch(batch), m_verloop(verloop)
    {}

    void Voer(const QList<Paar>& paren)
    {
        m_verloop = {};
        for (const Paar& paar : paren)
            m_verloop.niet << paar.wat.locatie + ": " + Boomnaam(paar.map);
        for (const Paar& paar : paren) {
            if (m_verloop.afgebroken)
                return;
            VoerUit(paar);
        }
    }

private:
    void VoerUit(const Paar& paar)
    {
        m_deelnemers.database.CloseDB();
        ControleerSchijfruimte(m_deelnemers.database.WerkMap());
        const auto job = m_deelnemers.nieuweJob();
        const QString sleutel =
            kRootLocaties + m_deelnemers.browser.GetPathSeparator() + paar.wat.locatie;
        QTreeWidgetItem* locatie = m_deelnemers.browser.NodeExists(sleutel)
                                       ? m_deelnemers.browser.GetNodeByKey(sleutel)
                                       : nullptr;
        gFso().CreateFolder(paar.map);
        if (!SchrijfInvoerBestand(m_deelnemers.database, m_batch.instellingen,
                                  {.berekening = m_batch.naam,
                                   .locatie = paar.wat.locatie,
                                   .profiel = paar.wat.profiel,
                                   .map = paar.map,
                                   .overzicht = m_batch.overzicht,
                                   .memo = m_batch.memo})) {
            ++m_overgeslagen;
            return;
        }
        job->InitialiseerLocatie(m_batch.naam, paar.map, paar.wat.locatie);
        job->ToonVoortgang(m_verloop.gedaan + 1, m_verloop.Gepland() - m_overgeslagen);
        job->Toon();
        if (job->IsAbortedByUser()) {
            BreekAf();
            if (gFso().FolderExists(paar.map))
                gFso().DeleteFolder(paar.map, true);
            return;
        }
        Verwerk(paar, locatie, job->ExitCode());
        const bool isLaatste = m_verloop.niet.size() == m_overgeslagen;
        if (job->IsBatchStopped() && !isLaatste)
            BreekAf();
    }

    void BreekAf()
    {
        m_verloop.afgebroken = true;
        m_deelnemers.hoofdscherm.SetStatusBarTextByNumber(kStatusAfgebroken);
    }

    /// A calculation that failed is still a calculation.
    void Verwerk(const Paar& paar, QTreeWidgetItem* locatie, int exitCode)
    {
        ++m_verloop.gedaan;
        const QString regel = m_verloop.niet.takeAt(m_overgeslagen);
        m_deelnemers.resultaat.Append(regel +
                                      (exitCode == 0
                                           ? QStringLiteral(" OK")
                                           : " FOUT: EXITCODE=" + QString::number(exitCode)) +
                                      "\r\n");
        const QString naam = Boomnaam(paar.map);
        QTreeWidgetItem* node = m_deelnemers.boom.AddBerekening2Locatie(locatie, naam);
        m_deelnemers.boom.AddBerekening2Root(naam);
        m_deelnemers.browser.ResetCurrentNode();
        m_deelnemers.browser.ApplyNode(node);
    }

    const BatchDeelnemers& m_deelnemers;
    const Batch& m_batch;
    BatchVerloop& m_verloop;
    int m_overgeslagen = 0; // their input could not be written; they lead `niet`
};

} // namespace

MapAntwoord MaakBerekeningMap(const QString& mapnaam, const QString& locatie,
                              const QString& werkmap, QString& map)
{
    const QString berekeningen = Berekeningenmap(werkmap, locatie);
    if (!gFso().FolderExists(berekeningen))
        gFso().CreateFolder(berekeningen); // and those above it
    map = ResolvePath(Berekeningmap(werkmap, locatie, mapnaam));
    if (!gFso().FolderExists(map))
        return MapAntwoord::Doorgaan;

    if (!gBoxes.Exists() ||
        gBoxes().AskQuestion(kVraagOverschrijven, {map, locatie}) != Answer::Yes)
        return MapAntwoord::Overslaan;
    try {
        for (const QString& bestand : gFso().Files(map))
            gFso().DeleteFile(gFso().BuildPath(map, bestand), true);
    } catch (const Fout&) {
        gBoxes().ShowMessage(kMeldingNietLeeg, {map});
        return MapAntwoord::Overslaan;
    }
    return MapAntwoord::Doorgaan;
}

void BerekenLocaties(const BatchDeelnemers& deelnemers, const Batch& gevraagd,
                     BatchVerloop& verloop)
{
    verloop = {};
    // Folder, tree and database all hold the name in lower case.
    Batch batch = gevraagd;
    batch.naam = gevraagd.naam.toLower();
    Uitvoering(deelnemers, batch, verloop).Voer(BereidMappenVoor(deelnemers, batch));
}
