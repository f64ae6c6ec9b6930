#include "calculation/ui/run/frmBatchjob.h"

#include "frame/Globals.h"
#include "frame/Platform.h"
#include "frame/Texts.h"
#include "frame/ui/MessageBoxes.h"
#include "ui_frmBatchjob.h"

#include <QFontDatabase>

namespace {

constexpr int kVraagAfbreken = 5001;
constexpr int kTijdInterval = 500; // ms

/// Keeps the screen saver away while it lives.
class GeenSchermbeveiliging {
public:
    GeenSchermbeveiliging() { platform::SetScreenSaverActive(false); }
    ~GeenSchermbeveiliging() { platform::SetScreenSaverActive(true); }
    GeenSchermbeveiliging(const GeenSchermbeveiliging&) = delete;
    GeenSchermbeveiliging& operator=(const GeenSchermbeveiliging&) = delete;
};

} // namespace

frmBatchjob::frmBatchjob(HRdb& database, BatchVoortgang& voortgang, QWidget* parent)
    : IniDialog("Batchjob.ini", parent),
      m_ui(std::make_unique<Ui::frmBatchjob>()),
      m_rekenrun(database),
      m_voortgang(voortgang),
      m_log((m_ui->setupUi(this), m_ui->rtfLog))
{
    LoadForm();
    if (parent)
        setWindowIcon(parent->window()->windowIcon());
    m_ui->rtfLog->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->rtfLog->setAccessibleName(iniFile().GetString("Teksten" + gLanguage(), "rtfLog"));
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &frmBatchjob::reject);
    connect(&m_timer, &QTimer::timeout, this, &frmBatchjob::ShowProgress);
    SetRunUsable(false);
    ShowProgress();
}

frmBatchjob::~frmBatchjob() = default;

void frmBatchjob::InitialiseerLocatie(const QString& berekening, const QString& map,
                                      const QString& locatie)
{
    m_map = map;
    ShowNames(locatie, berekening);
}

void frmBatchjob::InitialiseerDijkring(const QString& faalmechanisme, const QString& map,
                                       const QString& dijkring, int indexFaalmechanisme)
{
    m_map = map;
    m_indexFaalmechanisme = indexFaalmechanisme;
    ShowNames(dijkring, faalmechanisme);
}

void frmBatchjob::ShowNames(const QString& eigenaar, const QString& berekening)
{
    QString tekst = iniFile().GetString("Teksten" + gLanguage(), "bezig", "%1: %2");
    FillPlaceholders(tekst, {eigenaar, berekening});
    m_ui->lblBezig->setText(tekst);
}

void frmBatchjob::ToonVoortgang(int nummer, int aantal)
{
    m_voortgang.Begin(nummer, aantal);
    ShowProgress();
}

void frmBatchjob::ShowProgress()
{
    const QString teksten = "Teksten" + gLanguage();
    // A single run has no batch to be part of.
    const bool isBatch = m_voortgang.Aantal() > 0;
    m_ui->prgBatch->setVisible(isBatch);
    m_ui->lblAantal->setVisible(isBatch);
    if (!isBatch)
        return;
    m_ui->prgBatch->setMaximum(m_voortgang.Aantal());
    m_ui->prgBatch->setValue(m_voortgang.Gedaan());
    QString aantal = iniFile().GetString(teksten, "aantal", "%1/%2");
    FillPlaceholders(
        aantal, {QString::number(m_voortgang.Gedaan()), QString::number(m_voortgang.Aantal())});
    m_ui->lblAantal->setText(aantal);
    const auto rest = m_voortgang.Resterend();
    QString tijd = iniFile().GetString(teksten, rest ? "tijd.rest" : "tijd", "%1 %2");
    FillPlaceholders(tijd,
                     {DuurTekst(m_voortgang.Verstreken()), rest ? DuurTekst(*rest) : QString()});
    m_ui->lblTijd->setText(tijd.trimmed());
}

void frmBatchjob::Toon()
{
    exec();
    if (m_fout)
        std::rethrow_exception(m_fout);
}

void frmBatchjob::showEvent(QShowEvent* event)
{
    IniDialog::showEvent(event);
    if (m_gestart)
        return;
    m_gestart = true;
    // Once the window is painted and its own loop runs.
    QTimer::singleShot(0, this, &frmBatchjob::Start);
}

void frmBatchjob::Start()
{
    if (!isVisible()) // closed before it began
        return;
    try {
        const GeenSchermbeveiliging geenSchermbeveiliging;
        const BusyScope busy;
        m_abortedByUser = false;
        m_exitCode = kGeenExitCode;
        m_log.Clear();
        m_log.Refresh();
        m_timer.start(kTijdInterval);
        const RunResult resultaat = m_rekenrun.Start(this, m_map, m_log);
        m_exitCode = resultaat.exitCode;
        m_abortedByUser = resultaat.aborted;
        m_berekeningOK = m_exitCode == 0 && !m_abortedByUser;
    } catch (...) {
        m_fout = std::current_exception();
    }
    m_timer.stop();
    IniDialog::reject();
}

void frmBatchjob::reject()
{
    if (m_rekenrun.Rekent()) {
        // The form closes when the core is gone.
        RunHandler([this] {
            if (!m_batchStopped && AskQuestion(this, kVraagAfbreken) == Answer::Yes) {
                m_batchStopped = true;
                m_rekenrun.Terminate(); // nothing, when it ended under the question
            }
        });
        return;
    }
    IniDialog::reject();
}

void frmBatchjob::SetRunUsable(bool usable)
{
    m_ui->cmdCancel->setEnabled(usable);
}
