#include "calculation/ui/run/BerekeningStarten.h"

#include "calculation/BatchVoortgang.h"
#include "calculation/Rekeninstellingen.h"
#include "calculation/ui/run/frmBatchjob.h"
#include "calculation/ui/run/frmBatchresult.h"
#include "calculation/ui/run/frmBerekeningStart.h"
#include "frame/ui/MessageBoxes.h"
#include "navigation/NavTree.h"

#include <QApplication>

namespace {

constexpr int kStatusGereed = 1;
constexpr int kStatusBezig = 2;

Batch MaakBatch(const frmBerekeningStart& form)
{
    Batch batch;
    batch.instellingen = InstellingenBestand();
    const BerekeningSelectie selectie = form.GetSelection(batch.instellingen);
    batch.naam = form.Berekeningnaam();
    for (int i = 0; i < selectie.locaties.size(); ++i)
        batch.paren << TeBerekenen{selectie.locaties[i], selectie.profielen[i]};
    batch.overzicht = selectie.overzicht;
    batch.memo = selectie.memo;
    return batch;
}

} // namespace

BerekeningStarten::Uitkomst BerekeningStarten::Start()
{
    Uitkomst uitkomst;
    frmBerekeningStart start({m_omgeving.database, m_omgeving.locaties, m_omgeving.instellingen},
                             m_omgeving.venster);
    start.exec();
    if (!start.OK())
        return uitkomst;
    uitkomst.gestart = true;
    const Batch batch = MaakBatch(start);

    m_omgeving.hoofdscherm.SetStatusBarTextByNumber(kStatusBezig);
    frmBatchresult resultaat(m_omgeving.venster);
    resultaat.txtLog().Clear();
    QObject::connect(&resultaat, &frmBatchresult::NaarBerekening, &resultaat,
                     [this](const Resultaatregel& regel) { GaNaar(regel); });

    BatchVoortgang voortgang;
    const BatchDeelnemers deelnemers{m_omgeving.database,
                                     m_omgeving.hoofdscherm,
                                     m_omgeving.browser,
                                     m_omgeving.boom,
                                     resultaat.txtLog(),
                                     [this, &voortgang] {
                                         return std::make_unique<frmBatchjob>(
                                             m_omgeving.database, voortgang, m_omgeving.venster);
                                     }};
    try {
        BerekenLocaties(deelnemers, batch, uitkomst.verloop);
    } catch (const std::exception& fout) {
        if (uitkomst.verloop.Gepland() == 0) {
            m_omgeving.hoofdscherm.SetStatusBarTextByNumber(kStatusGereed);
            throw; // nothing was run: there is no list to show
        }
        uitkomst.mislukt = true;
        ReportError(fout);
    }
    ResetBusy();
    uitkomst.lijst = resultaat.txtLog().Text();
    if (m_omgeving.meldKlaar)
        m_omgeving.meldKlaar(m_omgeving.venster);
    resultaat.ToonVerloop(uitkomst.verloop, uitkomst.mislukt);
    if (!uitkomst.verloop.afgebroken) // the text of a stopped batch stays
        m_omgeving.hoofdscherm.SetStatusBarTextByNumber(kStatusGereed);
    resultaat.exec();
    return uitkomst;
}

void BerekeningStarten::MeldAanBureaublad(QWidget* venster)
{
    if (venster && QGuiApplication::applicationState() != Qt::ApplicationActive)
        QApplication::alert(venster->window());
}

void BerekeningStarten::GaNaar(const Resultaatregel& regel)
{
    const QString key =
        QStringList{navkey::RootLocaties, regel.locatie, navkey::Berekeningen, regel.berekening}
            .join(m_omgeving.browser.GetPathSeparator());
    if (m_omgeving.browser.NodeExists(key))
        m_omgeving.browser.ApplyNode(m_omgeving.browser.GetNodeByKey(key));
}
