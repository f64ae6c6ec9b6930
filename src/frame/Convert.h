#pragma once

#include "frame/Numbers.h"

#include <QString>
#include <QVariant>

/// Conversions between text and numbers; the shared instance is gConvert.
///
/// Towards files and towards numbers a decimal sign is a point (NumPoint),
/// towards the screen it is the system's (NumSys).
class Convert {
public:
    /// Numeric and not 0.
    [[nodiscard]] bool ConvBln(const QString& text) const;
    /// Text that is not numeric gives 0; a number too large for the type
    /// raises RuntimeFout::Overflow. Whole numbers round halves to even.
    [[nodiscard]] double ConvDbl(const QString& text) const;
    [[nodiscard]] float ConvSng(const QString& text) const;
    [[nodiscard]] qint32 ConvLng(const QString& text) const;
    [[nodiscard]] qint16 ConvInt(const QString& text) const;

    /// Replace the first character that is none of "-0123456789eE", whatever
    /// it is: "1,5" becomes "1.5", but also "1e+3" becomes "1e.3" and " 12"
    /// becomes ".12". Meant; give them the texts of plain numbers only.
    [[nodiscard]] QString NumPoint(const QString& text) const;
    [[nodiscard]] QString NumSys(const QString& text) const;

    /// A key of the system's international settings: "sDecimal", "sLanguage".
    [[nodiscard]] QString getInternational(const QString& key) const;
    /// The system's decimal sign, asked for once.
    [[nodiscard]] QChar DecimalSign() const;

    template <typename T>
    [[nodiscard]] static T Max(T a, T b)
    {
        return a < b ? b : a;
    }
    template <typename T>
    [[nodiscard]] static T min(T a, T b)
    {
        return b < a ? b : a;
    }

    /// A number or string in the middle of a field, the odd blank on the right.
    [[nodiscard]] QString QLMAlignCenter(int width, const QVariant& value) const;

    /// Format language: ["-"]["+"]width["."decimals][letters]["E"].
    /// "-" aligns left, "+" asks for a plus sign, "E" for an exponent.
    /// The number format that belongs to it: "10.2F" gives "0.00".
    [[nodiscard]] QString ConvertFormat(const QString& format) const;
    /// The value in that format with the system's sign, in a field of the
    /// width; a text longer than its field is not cut.
    [[nodiscard]] QString QLMFormat(const QString& format, double value) const;

    /// Within a millionth of their mean; 0 equals only 0. False for a value
    /// that is not numeric.
    [[nodiscard]] bool IsEqual(const QVariant& a, const QVariant& b) const;

    /// In radians. Raises RuntimeFout::DivisionByZero for 1 and -1 (and
    /// RuntimeFout::InvalidArgument beyond): callers keep away from them.
    [[nodiscard]] double Arcsin(double x) const;
    /// Arc tangent in degrees.
    [[nodiscard]] double Atnd(double x) const;
    /// How many characters stand behind the decimal sign.
    [[nodiscard]] qint16 Ndec(const QString& text) const;

private:
    mutable QString m_decimalSign;
};

/// The bearing's compass name, three characters with blanks behind it ("N  ",
/// "NNO"); Dutch when gLanguage is empty or "NL". Halves between two names go
/// to the one with the even index.
[[nodiscard]] QString WindDirectionName(double degrees);

/// From a bearing (0 north, clockwise) to an angle (0 east, counter-clockwise),
/// both in degrees; from 0 up to 360.
[[nodiscard]] double AngleToMath(double degrees);

/// On the straight line through two points. Raises RuntimeFout::DivisionByZero
/// when x1 equals x2.
[[nodiscard]] double Interpolate(double x, double x1, double y1, double x2, double y2);
