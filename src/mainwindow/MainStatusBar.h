#pragma once

#include "frame/Ports.h"

#include <QStatusBar>

class QLabel;
class QProgressBar;

/// The status bar of the main window: the text, the coordinates under the mouse
/// and, while something counts, a progress bar.
class MainStatusBar : public StatusBar {
public:
    /// Fills `bar`, which must outlive this object.
    explicit MainStatusBar(QStatusBar& bar);

    void ShowCoordinates(const QString& text);
    void ShowProgress(int maximum) override;
    void SetProgress(int value) override;
    void HideProgress() override;

    // Public here: the main window passes its own on.
    QString StatusText() const override;
    void ShowStatusText(const QString& text) override;

private:
    QLabel* m_text;
    QLabel* m_coordinates;
    QProgressBar* m_progress;
};
