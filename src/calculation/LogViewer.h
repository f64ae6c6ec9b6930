#pragma once

#include <QString>

/// The log pane as the location browser sees it.
class LogViewer {
public:
    virtual ~LogViewer() = default;
    /// Shows the end of a log file. A file that cannot be read is reported, and
    /// what stood in the pane stays.
    virtual void ShowLogFile(const QString& path) = 0;
    virtual void ClearLogWindow() = 0;
};
