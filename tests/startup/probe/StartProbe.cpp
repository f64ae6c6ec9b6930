#include <QApplication>
#include <QFile>
#include <QGenericPlugin>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <stdexcept>

/// Looks on in the real program, as a user would. A generic plugin, because the
/// toolkit loads one into any program that the environment asks it to: the
/// program itself knows nothing of it.
///
/// Writes to the file STARTPROBE_LOG, one line per event, fields parted by tabs
/// (line breaks in texts as "|"):
///   box      title  text         each message box, which it closes
///   painted  ns     nanoseconds since the epoch at which frmMain was painted
///   shown    title  status text
///   state    "minimised" or "normal", each time it changes
/// STARTPROBE_MINIMISE=1 minimises the window, STARTPROBE_CLOSE=<ms> closes it that
/// long after it came on the screen. STARTPROBE_THROW=<text> lets an exception with
/// that text escape from an event.
class Probe : public QObject {
public:
    Probe()
    {
        qApp->installEventFilter(this);
        connect(&m_timer, &QTimer::timeout, this, [this] { Look(); });
        m_timer.start(5);
    }

private:
    static void Log(const QStringList& fields)
    {
        QFile file(qEnvironmentVariable("STARTPROBE_LOG"));
        if (file.open(QIODevice::Append))
            file.write(fields.join('\t').replace('\n', '|').toUtf8() + "\n");
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !m_painted && watched->objectName() == "frmMain") {
            m_painted = true;
            const auto now = std::chrono::system_clock::now().time_since_epoch();
            Log({"painted", QString::number(std::chrono::nanoseconds(now).count())});
        }
        return false;
    }

    void Look()
    {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            if (!box->property("read").toBool()) {
                box->setProperty("read", true);
                Log({"box", box->windowTitle(), box->text()});
                if (box->defaultButton())
                    box->defaultButton()->click();
            }
            return;
        }
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == "frmMain" && window->isVisible())
                LookAt(*window);
        }
    }

    void LookAt(QWidget& window)
    {
        if (!m_shown) {
            m_shown = true;
            Log({"shown", window.windowTitle()});
            if (qEnvironmentVariableIsSet("STARTPROBE_MINIMISE"))
                window.showMinimized();
            if (qEnvironmentVariableIsSet("STARTPROBE_THROW"))
                QTimer::singleShot(0, &window, [] {
                    throw std::runtime_error(qgetenv("STARTPROBE_THROW").toStdString());
                });
            if (qEnvironmentVariableIsSet("STARTPROBE_CLOSE"))
                QTimer::singleShot(qEnvironmentVariableIntValue("STARTPROBE_CLOSE"), &window,
                                   &QWidget::close);
        }
        const QString state = window.isMinimized() ? "minimised" : "normal";
        if (state != m_state)
            Log({"state", m_state = state});
    }

    QTimer m_timer;
    QString m_state = "normal";
    bool m_painted = false;
    bool m_shown = false;
};

class StartProbePlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "startprobe.json")

public:
    QObject* create(const QString& key, const QString&) override
    {
        return key.compare("startprobe", Qt::CaseInsensitive) == 0 ? new Probe : nullptr;
    }
};

#include "StartProbe.moc"
