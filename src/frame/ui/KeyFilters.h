#pragma once

#include "frame/InputFilters.h"

class QComboBox;
class QLineEdit;
class QString;
class QVariant;

/// The input filters at work on line edits. A filter lives as long as its line
/// edit; a line edit takes one. Refused input beeps, unless sound is off.

struct NumberRule {
    int dataType = DataTypes::Double;
    double minimum = 0;
    double maximum = 0;
    bool sound = true;
};

/// Keys that a number cannot hold are swallowed, pasted text is cleaned, and
/// both decimal signs become the system's. Calling it again changes the rule.
void AttachNumberFilter(QLineEdit* edit, const NumberRule& rule);

/// For names of locations, profiles, rings and calculations.
void AttachNameFilter(QLineEdit* edit, NameRule rule = NameRule::WithoutUnderscore,
                      bool sound = true);

/// For the name of a file, without its folder.
void AttachFileNameFilter(QLineEdit* edit, bool sound = true);

/// Index of the first item that equals the text, case ignored; -1 if none.
int FindComboIndexByText(const QString& text, const QComboBox& box);
int FindComboIndexByItemData(const QVariant& value, const QComboBox& box);
