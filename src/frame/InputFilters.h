#pragma once

#include <QString>
#include <QStringList>

/// The rules behind the input controls, on plain texts. The controls call them
/// on each key and each change, beep when `refused` and put text and caret back.

struct FilteredText {
    QString text;
    int caret = 0;
    /// Something was dropped or put back: time for the beep.
    bool refused = false;
};

enum class NameRule {
    WithoutUnderscore, ///< names of locations
    WithUnderscore,
};

/// A name box after a change. A text with a "." in front goes back to what it
/// was; characters that a name, or the code page, may not hold are dropped.
[[nodiscard]] FilteredText FilterNameKey(const QString& text, const QString& previous, int caret,
                                         NameRule rule = NameRule::WithoutUnderscore);

/// A file-name box after a change, in mode 1 (other modes do nothing).
[[nodiscard]] FilteredText FilterFileNameInput(const QString& text, int caret, int mode);

/// Values of the `DataType` property; any other is plain text.
namespace DataTypes {
inline constexpr int Integer = 2; ///< 16 bits
inline constexpr int Long = 3;    ///< 32 bits
inline constexpr int Single = 4;
inline constexpr int Double = 5;
[[nodiscard]] constexpr bool IsNumber(int dataType)
{
    return dataType >= Integer && dataType <= Double;
}
} // namespace DataTypes

/// Whether a typed character may go into a number box at the caret. Control
/// characters (backspace, Ctrl+V) always may.
[[nodiscard]] bool FilterNumberKey(QChar key, int caret, int dataType, double minimum,
                                   double maximum);

/// A number box after a change. Both decimal signs become the system's and what
/// is not allowed is dropped. `previous` comes back for a number too large for
/// its type, and for a second decimal sign: dropping one of "1.234,5" would make
/// another number of it.
[[nodiscard]] FilteredText FilterNumberChange(const QString& text, const QString& previous,
                                              int caret, int dataType, double minimum,
                                              double maximum);

struct RangeVerdict {
    bool failed = false;
    /// The box to show; empty for a beep alone.
    QString message;
    /// Give the control the focus and select its text.
    bool selectAll = false;
};

/// The check of a number box that is being left. Both bounds 0 means no range.
/// What is no number ("-", "1-2") is refused in any range; read as 0, it would
/// be a value that nobody typed.
[[nodiscard]] RangeVerdict ValidateRange(const QString& text, int dataType, double minimum,
                                         double maximum, bool mayBeEmpty,
                                         const QString& messageText);

/// The first item equal to the text, case ignored; -1 when there is none or
/// either is empty.
[[nodiscard]] int FindIndexByText(const QString& text, const QStringList& items);
