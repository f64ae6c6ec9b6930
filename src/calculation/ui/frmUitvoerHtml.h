#pragma once

#include "frame/ui/IniDialog.h"

#include <memory>

namespace Ui {
class frmUitvoerHtml;
}

/// Shows a local web page: the manual's tables, help texts.
class frmUitvoerHtml : public IniDialog {
    Q_OBJECT

public:
    explicit frmUitvoerHtml(QWidget* parent = nullptr);
    ~frmUitvoerHtml() override;

    void ShowUitvoerFile(const QString& path);
    /// Whether size and place are stored when the window closes; they are unless
    /// this says otherwise.
    void SaveSize(bool save) { m_saveSize = save; }

    void done(int result) override;

private:
    void cmdBack_Click();
    void cmdOpenByAssoc_Click();

    std::unique_ptr<Ui::frmUitvoerHtml> m_ui;
    QString m_path;
    bool m_saveSize = true;
};
