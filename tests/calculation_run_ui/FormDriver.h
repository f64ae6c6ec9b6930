#pragma once

#include <QApplication>
#include <QDialog>
#include <QHash>
#include <QMessageBox>
#include <QSet>
#include <QTimer>

#include <functional>

/// Meets the modal forms one by one: what was told for a form's name is done
/// when it stands on the screen. Boxes are BoxReader's.
class FormDriver {
public:
    using Work = std::function<void(QDialog&)>;

    FormDriver()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Look(); });
        m_timer.start(2);
    }

    /// Done once for each form of that name.
    void On(const QString& form, Work work) { m_work[form] = std::move(work); }
    int Met(const QString& form) const { return m_met.value(form); }
    /// Counts from the begin again.
    void Vergeet() { m_met.clear(); }

private:
    void Look()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible() || qobject_cast<QMessageBox*>(dialog) ||
            dialog->property("met").toBool())
            return;
        dialog->setProperty("met", true);
        // One that is shown again is met again.
        QObject::connect(dialog, &QDialog::finished, dialog,
                         [dialog] { dialog->setProperty("met", false); });
        const QString name = dialog->objectName();
        ++m_met[name];
        // Not from here: a timer is quiet while its own slot runs, and the work
        // may open the next form.
        if (m_work.contains(name))
            QTimer::singleShot(0, dialog, [work = m_work[name], dialog] { work(*dialog); });
    }

    QTimer m_timer;
    QHash<QString, Work> m_work;
    QHash<QString, int> m_met;
};

/// Does something once, as soon as a condition holds, while event loops run.
class WhenReady {
public:
    WhenReady(std::function<bool()> ready, std::function<void()> work)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer,
                         [this, ready = std::move(ready), work = std::move(work)] {
                             if (!ready())
                                 return;
                             m_timer.stop();
                             m_done = true;
                             work();
                         });
        m_timer.start(5);
    }
    bool Done() const { return m_done; }

private:
    QTimer m_timer;
    bool m_done = false;
};
