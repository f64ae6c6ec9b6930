#pragma once

#include <QtCore/qnamespace.h>

class QWidget;

/// Brings the focus back to `widget`, whose content was refused while the focus
/// was on its way to another control for `reason`.
///
/// A click that took the focus is dropped as a whole (press and release), so
/// that a button does not do its work on a refused value.
void HoldFocus(QWidget* widget, Qt::FocusReason reason);

/// Whether the focus is going to a button that gives up the form: a button
/// named `cmdCancel`, or one with the dynamic property `causesValidation` set
/// to false. A form with a bad value in it can always be cancelled.
bool FocusGoesToCancel();

/// Whether losing the focus for `reason` means that the user leaves the
/// control; a window that comes in front, or a menu that opens, does not.
bool LeavesControl(Qt::FocusReason reason);
