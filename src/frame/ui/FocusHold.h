#pragma once

#include <QtCore/qnamespace.h>

class QAbstractButton;
class QWidget;

/// Brings the focus back to `widget`, whose content was refused while the focus
/// was on its way to another control for `reason`.
///
/// A click that took the focus is dropped as a whole (press and release), so
/// that a button does not do its work on a refused value.
void HoldFocus(QWidget* widget, Qt::FocusReason reason);

/// Whether the button gives up the form: it is named `cmdCancel`, or has the
/// dynamic property `causesValidation` set to false. A form with a bad value in
/// it can always be cancelled.
bool GivesUpForm(const QAbstractButton& button);
bool FocusGoesToCancel();

/// Whether losing the focus for `reason` means that the user leaves the
/// control; a window that comes in front, or a menu that opens, does not.
bool LeavesControl(Qt::FocusReason reason);
