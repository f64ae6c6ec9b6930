#pragma once

#include "calculation/BatchVoortgang.h"
#include "calculation/BerekenLocaties.h"
#include "calculation/Rekenrun.h"
#include "frame/ui/IniDialog.h"
#include "frame/ui/LogBox.h"

#include <QTimer>

#include <exception>
#include <memory>

namespace Ui {
class frmBatchjob;
}

/// One run of the calculation core, watched: the run starts when the form comes
/// on the screen, the form closes when it is over. There is a fresh form for
/// each run; how far the batch is stands in `voortgang`.
///
/// Cancel, Escape and the close button ask first while the core runs.
class frmBatchjob : public IniDialog, public JobForm, public RunForm {
    Q_OBJECT

public:
    /// Before a core has ended.
    static constexpr int kGeenExitCode = -99;

    /// Both must outlive the form.
    frmBatchjob(HRdb& database, BatchVoortgang& voortgang, QWidget* parent = nullptr);
    ~frmBatchjob() override;

    void InitialiseerLocatie(const QString& berekening, const QString& map,
                             const QString& locatie) override;
    void InitialiseerDijkring(const QString& faalmechanisme, const QString& map,
                              const QString& dijkring, int indexFaalmechanisme);
    void ToonVoortgang(int nummer, int aantal) override;
    /// Raises 700 and 701 when the core does not start.
    void Toon() override;

    bool IsAbortedByUser() const override { return m_abortedByUser; }
    bool IsBatchStopped() const override { return m_batchStopped; }
    int ExitCode() const override { return m_exitCode; }
    /// The core ended well and nobody stopped it.
    bool BerekeningOK() const { return m_berekeningOK; }
    int IndexFaalmechanisme() const { return m_indexFaalmechanisme; }

    void reject() override;
    void SetRunUsable(bool usable) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void ShowNames(const QString& eigenaar, const QString& berekening);
    void ShowProgress();
    void Start();

    std::unique_ptr<Ui::frmBatchjob> m_ui;
    Rekenrun m_rekenrun;
    BatchVoortgang& m_voortgang;
    LogBox m_log;
    QTimer m_timer; // for the times
    QString m_map;
    std::exception_ptr m_fout; // on its way out of the form's own event loop
    int m_exitCode = kGeenExitCode;
    int m_indexFaalmechanisme = 0;
    bool m_gestart = false;
    bool m_abortedByUser = false;
    bool m_batchStopped = false;
    bool m_berekeningOK = false;
};
