#pragma once

#include "frame/Ports.h"

#include <QPointer>

class QPlainTextEdit;

/// A read-only text box as the place that logs are written to. The last line
/// stays in view; the box costs no more time as it fills.
class LogBox : public LogSink {
public:
    /// Makes `box` read-only, without wrapping and without a way back.
    explicit LogBox(QPlainTextEdit* box);

    [[nodiscard]] QString Text() const override;
    void SetText(const QString& text) override;
    void Append(const QString& text) override;
    void Refresh() override;

private:
    void ShowEnd();

    QPointer<QPlainTextEdit> m_box;
};
