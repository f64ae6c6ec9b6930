#pragma once

#include "frame/ui/IniDialog.h"

#include <memory>
#include <optional>

namespace Ui {
class frmUitvoer;
}

/// Shows a text file that a calculation left behind, and nothing else is done to
/// it. With a second, extra file two buttons switch between them.
class frmUitvoer : public IniDialog {
    Q_OBJECT

public:
    explicit frmUitvoer(QWidget* parent = nullptr);
    ~frmUitvoer() override;

    /// Without `extra` the buttons that switch are not there; with one that does
    /// not exist the button to it is off. Raises when the file cannot be read.
    void ShowUitvoerFile(const QString& path, const std::optional<QString>& extra = {});

    /// What is read of a file at most; a core never writes that much.
    static constexpr qint64 kLimit = 64 * 1024 * 1024;

private:
    void LoadFile(const QString& path);
    void cmdExtra_Click();
    void cmdUitvoer_Click();
    void cmdPrint_Click();
    void ShowCaption(const QString& key);

    std::unique_ptr<Ui::frmUitvoer> m_ui;
    QString m_normal;
    QString m_extra;
    QString m_loaded; // the file in view
};

/// Opens a file with the program that belongs to its extension. Message 3 with
/// extension and path when there is none; `owner` gets the box, without one it
/// belongs to the active window.
void OpenByAssociation(QWidget* owner, const QString& path);
