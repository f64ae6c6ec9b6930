#pragma once

#include "calculation/Keuzelijst.h"
#include "frame/Globals.h"
#include "frame/ui/IniDialog.h"

#include <memory>

class QMenu;
class frmBerekeningInstellingen;

namespace Ui {
class frmBerekeningStart;
}

/// What the start dialog hands to the run.
struct BerekeningSelectie {
    QStringList locaties;       ///< in the order of the grid
    QStringList profielen;      ///< one for each; empty texts for overflow
    QStringList debieten;       ///< one for each; empty texts but for wave overtopping
    QString overzicht;          ///< overview file, or empty
    bool overschrijven = false; ///< not looked at: the question is always asked
    QString memo;
};

/// The choice of what to calculate: a name, and pairs of location and profile.
class frmBerekeningStart : public IniDialog {
    Q_OBJECT

public:
    /// `instellingen` is the one settings dialog; it is made when it is first
    /// asked for. All must outlive the form.
    struct Omgeving {
        HRdb& database;
        const LocatieBron& locaties;
        Global<frmBerekeningInstellingen>& instellingen;
    };

    explicit frmBerekeningStart(const Omgeving& omgeving, QWidget* parent = nullptr);
    ~frmBerekeningStart() override;

    /// Fills the grid for the failure mechanism of the settings.
    void InitialiseerThisForm();

    const QString& Berekeningnaam() const { return m_naam; }
    int NSelected() const;
    BerekeningSelectie GetSelection(const QString& instellingen) const;

    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void PrepareGrid();
    void PrepareMenu();
    void LoadState();
    void SaveState() const;
    bool OverzichtGevraagd() const;
    /// Absolute: the core, which stands in another folder, must mean the same file.
    QString Overzicht() const;
    bool IsRed(int row) const;

    void EnableInputs();
    void SelectAll(bool on);
    void ShowSelectMenu(const QPoint& globalPosition);
    void fsbOverzichtNm_Change();
    void cmdparameters_Click();
    void cmdOK_Click();
    /// Error 555 when the user wants the file replaced and it stays.
    void AskAboutOverzicht();

    std::unique_ptr<Ui::frmBerekeningStart> m_ui;
    Omgeving m_omgeving;
    QMenu* m_mnuSelect; // a child
    QString m_naam;
    int m_faalmechanisme = 0;
};
