#pragma once

class QLMIniFile;
class QWidget;

/// The place of a window in section `SETTINGS` of an ini, normally gIniFile,
/// under its form name and `Left`, `Top`, `Width`, `Height`, in twips (see
/// FormUnits.h). A form of a fixed size has no `Width` and `Height`.

/// Puts the form where it was, in the middle of the screen at first. Negative
/// places become 0; a place that no screen shows any more, and a number that is
/// none or far too large, are left alone. No form is larger than all screens.
void LoadWindowPosition(QWidget& form, QLMIniFile& ini);

/// Does nothing for a minimised or maximised form: its last normal place stays.
void SaveWindowPosition(const QWidget& form, QLMIniFile& ini);

void CenterForm(QWidget& form);

/// The user cannot change the size: a fixed layout, equal smallest and largest
/// size, or the dynamic property `fixedDialog`.
bool HasFixedSize(const QWidget& form);
