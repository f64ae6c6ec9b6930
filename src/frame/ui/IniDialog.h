#pragma once

#include "frame/QLMIniFile.h"

#include <QDialog>

#include <functional>

/// Base of all dialogs: owns the form's ini file, translates the form, keeps its
/// place, and gives it the keys that every form has.
///
///     frmMemo::frmMemo(QWidget* parent)
///         : IniDialog("Memo.ini", parent), m_ui(std::make_unique<Ui::frmMemo>())
///     {
///         m_ui->setupUi(this);   // the object name becomes "frmMemo"
///         LoadForm();            // captions, place, keys
///         connect(...);
///     }
///
/// Enter presses `cmdOK` (unless the .ui names another default button), Escape
/// presses `cmdCancel` and, where there is none, closes the form. F1 opens the
/// manual. The place is stored when the form closes, by whichever way.
/// A letter (Alt+O) clicks its button with the focus where it is; a number box
/// that has it and refuses its value keeps the button from its work first.
class IniDialog : public QDialog {
    Q_OBJECT

public:
    enum class Place {
        Kept,   ///< in the program's ini
        Centred ///< in the middle of the screen, each time
    };

    /// `iniName` is a file in the folder of the forms' ini files.
    explicit IniDialog(const QString& iniName, QWidget* parent = nullptr,
                       Place place = Place::Kept);
    ~IniDialog() override;

    /// Closed with OK, the last time it was shown.
    bool OK() const { return m_ok; }

    void done(int result) override;

protected:
    /// To be called once, behind setupUi.
    void LoadForm();
    QLMIniFile& iniFile() { return m_iniFile; }
    /// Marks the form as confirmed and closes it.
    void CloseOK();

    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void SetUpButtons();

    QLMIniFile m_iniFile;
    Place m_place;
    bool m_loaded = false;
    bool m_ok = false;
};

/// `text.0`, `text.1`, ... of a section: the header texts of a grid. A missing
/// one is empty.
QStringList ReadTexts(QLMIniFile& ini, const QString& section, int count,
                      const QString& keyBase = "text.");

/// What F1 does in every form; set by the main window.
void SetHelpHandler(std::function<void(QWidget* form)> handler);
void ShowHelp(QWidget* form);
