#pragma once

#include "windwave/WindWaveTable.h"
#include "windwave/WindWaveTexts.h"

#include <QWidget>

#include <memory>

namespace Ui {
class WindWaveWindow;
}

/// The window of the wind-wave calculator: wind, fetch and depth go in, a table
/// and a chart over the wind speed come out, at every change.
class WindWaveWindow : public QWidget {
    Q_OBJECT

public:
    /// `language` and `models` as on the command line: "NL", "BYH".
    WindWaveWindow(const QString& language, const QString& models, QWidget* parent = nullptr);
    ~WindWaveWindow() override;

private:
    WindWaveInput Input() const;
    void ShowTexts();
    void Recalculate();
    void FillTable();
    void FillChart();
    void CopyTable() const;
    QString Number(double value, int decimals) const;

    std::unique_ptr<Ui::WindWaveWindow> m_ui;
    bool m_dutch;
    WindWaveTexts m_texts;
    std::vector<rekenhart::Golfgroeimodule> m_models;
    std::vector<WindWaveRow> m_rows;
};
