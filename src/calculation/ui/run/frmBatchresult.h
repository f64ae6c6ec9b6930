#pragma once

#include "calculation/BatchVoortgang.h"
#include "calculation/BerekenLocaties.h"
#include "frame/ui/IniDialog.h"
#include "frame/ui/LogBox.h"

#include <memory>

namespace Ui {
class frmBatchresult;
}

/// The list of a batch: a line for each run in `txtLog`, and in one sentence
/// what became of the whole.
class frmBatchresult : public IniDialog {
    Q_OBJECT

public:
    explicit frmBatchresult(QWidget* parent = nullptr);
    ~frmBatchresult() override;

    /// The box that lines are added to.
    LogSink& txtLog() { return m_log; }
    /// `mislukt`: an error ended the batch before its end.
    void ToonVerloop(const BatchVerloop& verloop, bool mislukt);

signals:
    /// The user wants to see this calculation. The list stays open.
    void NaarBerekening(const Resultaatregel& regel);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cmdCopy_Click() const;

    std::unique_ptr<Ui::frmBatchresult> m_ui;
    LogBox m_log;
};
