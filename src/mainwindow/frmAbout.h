#pragma once

#include "frame/ui/IniDialog.h"

#include <memory>

namespace Ui {
class frmAbout;
}

/// What the program is, its version and that of the calculation core, and where
/// to ask.
class frmAbout : public IniDialog {
    Q_OBJECT

public:
    explicit frmAbout(QWidget* parent = nullptr);
    ~frmAbout() override;

private:
    void OpenUrl(const QString& key);
    void cmdMAILWaterkeren_Click();

    std::unique_ptr<Ui::frmAbout> m_ui;
};
