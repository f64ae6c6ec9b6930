#include "calculation/BerekenLocaties.h"

#include "calculation/InvoerBestand.h"
#include "database/HRdb.h"
#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"

namespace {

constexpr int kMaximumPad = 240;
constexpr int kVraagOverschrijven = 20;
constexpr int kMeldingNietLeeg = 205;
constexpr int kStatusAfgebroken = 8;

const QString kRootLocaties = QStringLiteral("ROOTLOCATIES");

struct Paar {
    TeBerekenen wat;
    QString map;
    bool uitvoeren = false;
};

QString Mapnaam(const QString& berekening, const QString& profiel)
{
    return profiel.trimmed().isEmpty() ? berekening : berekening + "_" + profiel;
}

QString LaatsteDeel(const QString& map)
{
    return map.section('\\', -1).section('/', -1);
}

/// The tree's key of a calculation folder.
QString Boomsleutel(const QString& map, const QString& werkmap, const QString& scheiding)
{
    QString sleutel = map;
    sleutel.replace(werkmap, kRootLocaties, Qt::CaseInsensitive);
    return sleutel.replace('/', scheiding).replace('\\', scheiding);
}

void BereidMappenVoor(const BatchDeelnemers& deelnemers, const Batch& batch, QList<Paar>& paren)
{
    const QString werkmap = deelnemers.database.WerkMap();
    for (const TeBerekenen& wat : batch.paren) {
        Paar paar{wat, {}, false};
        switch (
            MaakBerekeningMap(Mapnaam(batch.naam, wat.profiel), wat.locatie, werkmap, paar.map)) {
        case MapAntwoord::Stoppen:
            paren.clear();
            return;
        case MapAntwoord::Doorgaan:
            if (gFso().FolderExists(paar.map))
                deelnemers.browser.BerekeningNodeDelete(
                    Boomsleutel(paar.map, werkmap, deelnemers.browser.GetPathSeparator()));
            else
                gFso().CreateFolder(paar.map);
            paar.uitvoeren = true;
            break;
        case MapAntwoord::Overslaan:
            break;
        }
        paren << paar;
    }
}

} // namespace

MapAntwoord MaakBerekeningMap(const QString& mapnaam, const QString& locatie,
                              const QString& werkmap, QString& map)
{
    const QString locatiemap = gFso().BuildPath(werkmap, locatie);
    const QString berekeningen = gFso().BuildPath(locatiemap, "Berekeningen");
    for (const QString& pad : {werkmap, locatiemap, berekeningen})
        if (!gFso().FolderExists(pad))
            gFso().CreateFolder(pad);
    map = gFso().BuildPath(berekeningen, mapnaam);
    if (map.size() > kMaximumPad)
        RaiseFout(26, {map});
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
    // Folder, tree and database all hold the name in lower case.
    Batch batch = gevraagd;
    batch.naam = gevraagd.naam.toLower();
    QList<Paar> paren;
    BereidMappenVoor(deelnemers, batch, paren);
    paren.removeIf([](const Paar& paar) { return !paar.uitvoeren; });
    verloop = {};
    verloop.gepland = static_cast<int>(paren.size());

    const QString scheiding = deelnemers.browser.GetPathSeparator();
    for (const Paar& paar : std::as_const(paren)) {
        deelnemers.database.CloseDB();
        const auto job = deelnemers.nieuweJob();
        const QString sleutel = kRootLocaties + scheiding + paar.wat.locatie;
        QTreeWidgetItem* locatie = deelnemers.browser.NodeExists(sleutel)
                                       ? deelnemers.browser.GetNodeByKey(sleutel)
                                       : nullptr;
        if (!SchrijfInvoerBestand(deelnemers.database, batch.instellingen,
                                  {.berekening = batch.naam,
                                   .locatie = paar.wat.locatie,
                                   .profiel = paar.wat.profiel,
                                   .map = paar.map,
                                   .overzicht = batch.overzicht,
                                   .memo = batch.memo}))
            continue;

        job->InitialiseerLocatie(batch.naam, paar.map, paar.wat.locatie);
        job->ToonVoortgang(verloop.gedaan + 1, verloop.gepland);
        job->Toon();

        if (job->IsAbortedByUser()) {
            deelnemers.hoofdscherm.SetStatusBarTextByNumber(kStatusAfgebroken);
            if (gFso().FolderExists(paar.map))
                gFso().DeleteFolder(paar.map, true);
            verloop.afgebroken = true;
            return;
        }
        ++verloop.gedaan;
        const QString naam = LaatsteDeel(paar.map).toLower();
        deelnemers.resultaat.Append(paar.wat.locatie + ": " + naam +
                                    (job->ExitCode() == 0
                                         ? QStringLiteral(" OK")
                                         : " FOUT: EXITCODE=" + QString::number(job->ExitCode())) +
                                    "\r\n");
        // A calculation that failed is still a calculation.
        QTreeWidgetItem* node = deelnemers.boom.AddBerekening2Locatie(locatie, naam);
        deelnemers.boom.AddBerekening2Root(naam);
        deelnemers.browser.ResetCurrentNode();
        deelnemers.browser.ApplyNode(node);
    }
}
