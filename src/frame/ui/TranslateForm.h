#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class QLMIniFile;
class QObject;
class QWidget;

/// What the language files can say about a control.
enum class ControlKind {
    Caption,  ///< label, button, menu, option, frame, check box, FileBox
    Numbered, ///< LbnBox: text and the captions left and right of it
    Text,     ///< text box, NumBox: its first text
    List,     ///< combo box: its items
    Tabs      ///< tab widget: the captions of its pages
};

/// One control of a form as the language files know it. An element of a control
/// array is named with its index behind an underscore in the form
/// (`optFaalmechanisme_1`) and with a dot in the language file
/// (`frmX.optFaalmechanisme.1`).
struct FormControl {
    QObject* object = nullptr;
    QString name; ///< without the index
    std::optional<int> index;
    ControlKind kind = ControlKind::Caption;
    /// The form's code writes the caption (dynamic property `filledByCode`);
    /// the language file may leave it out.
    bool filledByCode = false;

    /// The keys that are tried for a property, in order; `suffix` is "Left",
    /// "Right" or empty.
    QStringList Keys(const QString& form, const QString& suffix = {}) const;
};

/// The named controls of a form that have texts: widgets, menus and menu
/// entries. Controls of a form inside the form (a pane, named frm...), text
/// boxes named rtf... (they show files) and Qt's own parts are left out.
QList<FormControl> FormControls(const QWidget& form);

/// Sets all captions of a form from section `Captions` (+ `language`) of its
/// ini: the title (application title, " - ", caption) and every control with the
/// keys that FormControl::Keys names; the last key present wins, and without any
/// the control keeps what it has. Only a combo box without a key loses its
/// items: code that fills a box comes after this call.
void TranslateForm(QWidget& form, QLMIniFile& ini, const QString& language);
