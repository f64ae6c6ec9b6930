#include "frame/ui/NumBox.h"

#include "frame/Convert.h"
#include "frame/Globals.h"
#include "frame/Numbers.h"
#include "frame/Texts.h"
#include "frame/ui/FocusHold.h"
#include "frame/ui/KeyFilters.h"
#include "frame/ui/LbnBox.h"
#include "frame/ui/MessageBoxes.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTabWidget>

namespace {

bool EnterGivesUp(const NumBox& box)
{
    for (const QPushButton* button : box.window()->findChildren<QPushButton*>()) {
        if (button->isDefault())
            return GivesUpForm(*button);
    }
    return false;
}

} // namespace

NumBox::NumBox(QWidget* parent) : QLineEdit(parent)
{
    ApplyRule();
    connect(this, &QLineEdit::textChanged, this, [this](const QString& changed) {
        if (changed != text())
            return; // a filter is about to tell the cleaned text
        UpdateControls();
        emit Change();
    });
}

void NumBox::setDataType(int dataType)
{
    m_dataType = dataType;
    ApplyRule();
}

void NumBox::setMinimumValue(double value)
{
    m_minimum = value;
    ApplyRule();
    UpdateControls();
}

void NumBox::setMaximumValue(double value)
{
    m_maximum = value;
    ApplyRule();
    UpdateControls();
}

void NumBox::setSound(bool on)
{
    m_sound = on;
    ApplyRule();
}

void NumBox::ApplyRule()
{
    AttachNumberFilter(this, {m_dataType, m_minimum, m_maximum, m_sound});
}

void NumBox::setText(const QString& text)
{
    QString shown = text;
    if (DataTypes::IsNumber(m_dataType)) {
        // NumSys would take the "+" of an exponent for a decimal sign.
        shown = text.trimmed();
        shown = shown.contains('+') ? shown.replace('.', gConvert().DecimalSign())
                                    : gConvert().NumSys(shown);
    }
    QLineEdit::setText(shown);
    if (!hasFocus())
        m_oldText = QLineEdit::text();
}

void NumBox::setBackColor(const QColor& colour)
{
    QPalette own = palette();
    own.setColor(QPalette::Base, colour);
    setPalette(own);
}

void NumBox::setForeColor(const QColor& colour)
{
    QPalette own = palette();
    own.setColor(QPalette::Text, colour);
    setPalette(own);
}

void NumBox::AddControl(QWidget* control)
{
    m_controls.append(control);
    UpdateControls();
}

bool NumBox::IsUsable() const
{
    return !ValidateRange(text(), m_dataType, m_minimum, m_maximum, false, QString()).failed;
}

void NumBox::UpdateControls()
{
    if (m_controls.isEmpty())
        return;
    const bool usable = IsUsable();
    for (const QPointer<QWidget>& control : m_controls) {
        if (!control)
            continue;
        if (qobject_cast<QPushButton*>(control) || qobject_cast<NumBox*>(control) ||
            qobject_cast<LbnBox*>(control)) {
            control->setEnabled(usable);
        } else if (auto* tabs = qobject_cast<QTabWidget*>(control)) {
            const double value = ParseNumber(text()).value_or(0);
            for (int tab = 0; tab < tabs->count(); ++tab) {
                bool isNumber = false;
                const double tag = tabs->widget(tab)->property("tag").toDouble(&isNumber);
                const bool needed = isNumber && tag <= value;
                tabs->setTabEnabled(tab, needed);
                tabs->setTabVisible(tab, needed);
            }
        }
    }
}

void NumBox::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    if (!LeavesControl(event->reason()) || m_checking)
        return; // the user never left: a window or a menu came between
    m_oldText = text();
    selectAll();
    m_selectOnRelease = event->reason() == Qt::MouseFocusReason;
}

void NumBox::mouseReleaseEvent(QMouseEvent* event)
{
    // The press that brought the focus has put the caret somewhere.
    QLineEdit::mouseReleaseEvent(event);
    if (m_selectOnRelease && !hasSelectedText())
        selectAll();
    m_selectOnRelease = false;
}

void NumBox::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    if (LeavesControl(event->reason()) && !m_checking)
        CheckLeaving(event->reason());
}

bool NumBox::CheckNow()
{
    return m_checking || CheckLeaving(Qt::OtherFocusReason);
}

bool NumBox::CheckLeaving(Qt::FocusReason reason)
{
    m_rangeError = false;
    if (m_validate && isVisible() && isEnabled() && !FocusGoesToCancel()) {
        const RangeVerdict verdict =
            ValidateRange(text(), m_dataType, m_minimum, m_maximum, m_mayBeEmpty, m_messageText);
        m_rangeError = verdict.failed;
        if (!verdict.failed)
            return true;
        const QScopedValueRollback checking(m_checking, true);
        if (m_sound)
            QApplication::beep();
        if (!verdict.message.isEmpty())
            WrappedFoutBox(this, BoxTitle(), verdict.message);
        HoldFocus(this, reason);
        selectAll();
        return false;
    }
    if (DataTypes::IsNumber(m_dataType) && !text().trimmed().isEmpty())
        m_rangeError = !IsUsable();
    return true;
}

void NumBox::keyPressEvent(QKeyEvent* event)
{
    // With nothing to take back, Escape is the form's.
    if (event->key() == Qt::Key_Escape && text() != m_oldText) {
        QLineEdit::setText(m_oldText);
        end(false);
        event->accept();
        return;
    }
    // Enter presses the form's default button, and the focus stays here.
    const bool confirms = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (confirms && !EnterGivesUp(*this) && !CheckNow()) {
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}
