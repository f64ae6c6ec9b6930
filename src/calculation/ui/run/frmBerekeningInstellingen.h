#pragma once

#include "calculation/BerekeningInstellingen.h"
#include "frame/ui/IniDialog.h"

#include <memory>

class QCheckBox;

namespace Ui {
class frmBerekeningInstellingen;
}

/// The calculation settings: edits `Instellingen.ini`.
///
/// There is one for as long as the program runs; closing hides it. Each opening
/// begins with Initialiseer, which reads the file anew; the memo alone outlives
/// an opening, as no file keeps it.
class frmBerekeningInstellingen : public IniDialog {
    Q_OBJECT

public:
    explicit frmBerekeningInstellingen(QWidget* parent = nullptr);
    ~frmBerekeningInstellingen() override;

    /// Loads the settings from a file, normally InstellingenBestand().
    void Initialiseer(const QString& bestand);
    /// Shows the form modally before `owner`, which it does not belong to.
    void Toon(QWidget* owner);

    /// The last showing was confirmed (the base's flag knows one showing only).
    bool OK() const { return m_bevestigd; }
    /// The last confirmed dialog chose another failure mechanism than it began with.
    bool SomChange() const { return m_somChange; }
    bool AnderFaalmechanisme() const { return m_somChange; }
    /// For the calculations that are started next.
    const QString& Memo() const { return m_memo; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void PrepareGrids();
    void PrepareNumbers();
    void ConnectInputs();
    void ConnectRules();

    void Show(const BerekeningInstellingen& instellingen);
    BerekeningInstellingen Read() const;
    void SetDirty(bool dirty);

    void KeepOneOn(QCheckBox* clicked);
    void EnableInputs();
    void lbnAantalFrequenties_Change();
    void lbnAantalKruinhoogtes_Change();
    /// Message 700 and false when `tekst` is not within the bounds.
    bool CheckRange(const QString& tekst, double minimum, double maximum);
    void CheckGolfCorrFactor(Qt::FocusReason reason);
    /// The box with the focus has not been left, so nobody has checked it yet.
    bool FocusedInputIsUsable();
    void cmdMemo_Click();
    void cmdOK_Click();

    std::unique_ptr<Ui::frmBerekeningInstellingen> m_ui;
    std::unique_ptr<QLMIniFile> m_instellingen;
    QString m_memo;
    int m_faalmechanismeBegin = 0;
    bool m_bevestigd = false;
    bool m_somChange = false;
    bool m_showing = false;  // values are being put in: no change of the user's
    bool m_checking = false; // the box of a refused factor is open
};
