#pragma once

#include "calculation/LogViewer.h"
#include "calculation/TextFile.h"
#include "frame/QLMIniFile.h"
#include "frame/ui/LogBox.h"

#include <QWidget>

#include <memory>

namespace Ui {
class frmLog;
}

/// The pane that shows `uitvoer.log` of the node that is current, its last lines
/// in view. A long log is read from its end; what stands before it is
/// read when the user scrolls there.
class frmLog : public QWidget, public LogViewer {
    Q_OBJECT

public:
    explicit frmLog(QWidget* parent = nullptr);
    ~frmLog() override;

    void ShowLogFile(const QString& path) override;
    void ClearLogWindow() override;

    /// The box as the place where the checks of the database are written.
    LogSink& Box() { return m_box; }

    /// Bytes of a log that are read at once.
    static constexpr qint64 kChunk = 256 * 1024;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void ReadEarlier();
    void ShowCaption();
    void Forget();

    class Sink : public LogBox {
    public:
        Sink(frmLog& form, QPlainTextEdit* box) : LogBox(box), m_form(form) {}
        void SetText(const QString& text) override;

    private:
        frmLog& m_form;
    };

    std::unique_ptr<Ui::frmLog> m_ui;
    QLMIniFile m_iniFile;
    Sink m_box;
    std::unique_ptr<TailReader> m_reader; // of the file in view
};
