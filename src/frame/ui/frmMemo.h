#pragma once

#include "frame/ui/IniDialog.h"

#include <memory>

namespace Ui {
class frmMemo;
}

/// A plain text editor for memos. Lines end in CR LF outside the form.
class frmMemo : public IniDialog {
    Q_OBJECT

public:
    explicit frmMemo(QWidget* parent = nullptr);
    ~frmMemo() override;

    void SetMemo(const QString& text);
    /// What was set, or after OK what the user made of it.
    QString GetMemo() const { return m_memo; }

    /// Every way out but OK puts the text back.
    void done(int result) override;

private:
    std::unique_ptr<Ui::frmMemo> m_ui;
    QString m_memo;
};
