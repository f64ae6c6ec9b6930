#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QObject>
#include <QPushButton>
#include <QStringList>
#include <QTimer>

#include <functional>

/// Meets every message box as the active modal widget, notes what it shows and
/// presses a button: the ones given with Press, in order, by their texts; then
/// the default button.
class BoxReader {
public:
    BoxReader()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Look(); });
        m_timer.start(2);
    }

    void Press(const QString& buttonText) { m_answers.append(buttonText); }

    /// Lines end in CR LF, as in the texts that the boxes are given.
    QStringList Texts() const { return m_texts; }
    QStringList Titles() const { return m_titles; }
    QList<QMessageBox::Icon> Icons() const { return m_icons; }
    /// The texts of the last box's buttons, and of its default button.
    QStringList Buttons() const { return m_buttons; }
    QString DefaultButton() const { return m_default; }
    QWidget* Owner() const { return m_owner; }

private:
    void Look()
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible() || box->property("read").toBool())
            return;
        box->setProperty("read", true);
        m_texts.append(box->text().replace("\n", "\r\n"));
        m_titles.append(box->windowTitle());
        m_icons.append(box->icon());
        m_owner = box->parentWidget();
        m_buttons.clear();
        QAbstractButton* chosen = box->defaultButton();
        m_default = chosen ? chosen->text() : QString();
        const QString wanted = m_answers.isEmpty() ? m_default : m_answers.takeFirst();
        for (QAbstractButton* button : box->buttons()) {
            m_buttons.append(button->text());
            if (button->text() == wanted)
                chosen = button;
        }
        if (chosen)
            chosen->click();
        else
            box->close();
    }

    QTimer m_timer;
    QStringList m_answers;
    QStringList m_texts;
    QStringList m_titles;
    QList<QMessageBox::Icon> m_icons;
    QStringList m_buttons;
    QString m_default;
    QWidget* m_owner = nullptr;
};

/// Drives one modal dialog: `work` runs when it stands on the screen.
class DialogDriver {
public:
    explicit DialogDriver(std::function<void(QDialog&)> work) : m_work(std::move(work))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible() || m_met)
                return;
            m_met = true;
            m_timer.stop();
            m_work(*dialog);
        });
        m_timer.start(2);
    }
    bool Met() const { return m_met; }

private:
    std::function<void(QDialog&)> m_work;
    QTimer m_timer;
    bool m_met = false;
};
