#include "frame/ui/FocusHold.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPointer>
#include <QTimer>

namespace {

/// Swallows the mouse press that is on its way, and the release behind it.
/// Qt moves the focus before it delivers the press, so a control that refuses
/// to let go is always in time.
class ClickDropper : public QObject {
public:
    static void Arm()
    {
        static QPointer<ClickDropper> current;
        if (current)
            return;
        current = new ClickDropper;
        qApp->installEventFilter(current);
    }

private:
    ClickDropper() : QObject(qApp) {}

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (!watched->isWidgetType())
            return false;
        switch (event->type()) {
        case QEvent::MouseButtonPress:
            if (m_pressDropped) { // the user's next click: not ours any more
                End();
                return false;
            }
            m_pressDropped = true;
            return true;
        case QEvent::MouseButtonDblClick:
            return true;
        case QEvent::MouseButtonRelease:
            End();
            return true;
        default:
            return false;
        }
    }

    void End()
    {
        qApp->removeEventFilter(this);
        deleteLater();
    }

    bool m_pressDropped = false;
};

} // namespace

void HoldFocus(QWidget* widget, Qt::FocusReason reason)
{
    if (reason == Qt::MouseFocusReason)
        ClickDropper::Arm();
    if (!widget->isActiveWindow())
        widget->activateWindow(); // a message box was in front
    widget->setFocus(Qt::OtherFocusReason);
}

bool GivesUpForm(const QAbstractButton& button)
{
    const QVariant validates = button.property("causesValidation");
    return validates.isValid() ? !validates.toBool() : button.objectName() == "cmdCancel";
}

bool FocusGoesToCancel()
{
    const auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
    return button && GivesUpForm(*button);
}

bool LeavesControl(Qt::FocusReason reason)
{
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
           reason != Qt::MenuBarFocusReason;
}
