#pragma once

#include <QString>

#include <optional>

/// Numbers as text. A numeric text is, blanks around it aside: an optional
/// sign, digits with at most one decimal sign (point or comma), an optional
/// exponent; nothing else.
[[nodiscard]] std::optional<double> ParseNumber(const QString& number);
[[nodiscard]] bool IsNumeric(const QString& text);

/// The shortest text of a number, 15 significant digits, with a point: "1.5".
[[nodiscard]] QString NumberText(double value);
/// The same with the system's decimal sign.
[[nodiscard]] QString ScreenText(double value);
/// A fixed number of decimals, with a point. Rounded half away from zero on 15
/// significant digits (2.675 gives "2.68"); never "-0.00".
[[nodiscard]] QString FixedText(double value, int decimals);
/// "1.50E+03": mantissa with `decimals` decimals, rounded in the same way.
[[nodiscard]] QString ExponentText(double value, int decimals);

/// To a whole number, halves to the even one: 2.5 gives 2, 3.5 gives 4.
[[nodiscard]] double RoundToEven(double value);

/// The user's settings of sign and language, from the operating system.
class International {
public:
    virtual ~International() = default;
    /// "sDecimal": the decimal sign. "sLanguage": "NLD" for Dutch. Otherwise empty.
    [[nodiscard]] virtual QString Value(const QString& key) const;
};
/// For tests. The object must outlive its use; null restores the system's.
/// A Convert keeps the sign that it has asked for once.
void SetInternational(const International* international);
[[nodiscard]] const International& CurrentInternational();
