#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class frmSplash;
}

/// Shown while the program loads: name, version, and the version of the
/// calculation core.
class frmSplash : public QWidget {
    Q_OBJECT

public:
    frmSplash();
    ~frmSplash() override;

    /// Shows it in the middle of the screen and paints it at once.
    void ShowNow();

private:
    std::unique_ptr<Ui::frmSplash> m_ui;
};
