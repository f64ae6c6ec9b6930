#include "frame/Numbers.h"

#include <QByteArray>
#include <QLocale>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

bool IsDigit(QChar character)
{
    return character >= '0' && character <= '9';
}

qsizetype SkipDigits(QStringView text, qsizetype at)
{
    while (at < text.size() && IsDigit(text[at]))
        ++at;
    return at;
}

bool IsSign(QChar character)
{
    return character == '+' || character == '-';
}

/// Whether a number that fits no double is too large, not too small.
bool IsLarge(const QByteArray& number)
{
    const qsizetype e = number.toLower().indexOf('e');
    const QByteArray mantissa = e < 0 ? number : number.left(e);
    const bool negativeExponent = e >= 0 && number.at(e + 1) == '-';
    bool fits = true;
    const int exponent = e < 0 ? 0 : number.mid(e + 1).toInt(&fits);
    if (!fits)
        return !negativeExponent;
    const qsizetype point = mantissa.contains('.') ? mantissa.indexOf('.') : mantissa.size();
    const qsizetype first = std::find_if(mantissa.cbegin(), mantissa.cend(),
                                         [](char digit) { return digit >= '1' && digit <= '9'; }) -
                            mantissa.cbegin();
    return point - first + exponent > 0;
}

constexpr int kSignificantDigits = 15;

/// 0.d1d2d3... times 10 to the power of `point`.
struct Decimal {
    bool negative = false;
    QByteArray digits; // empty for zero
    int point = 0;

    explicit Decimal(double value) : negative(std::signbit(value))
    {
        if (value == 0)
            return;
        const QByteArray text = QByteArray::number(std::fabs(value), 'e', kSignificantDigits - 1);
        const qsizetype e = text.indexOf('e');
        digits = text.left(1) + text.mid(2, e - 2);
        point = text.mid(e + 1).toInt() + 1;
    }

    /// Keeps the first `count` digits, half away from zero.
    void RoundTo(int count)
    {
        if (count >= digits.size())
            return;
        const bool up = count >= 0 && digits[count] >= '5';
        digits.truncate(std::max(0, count));
        if (!up)
            return;
        for (qsizetype i = digits.size() - 1; i >= 0; --i) {
            if (digits[i] != '9') {
                ++digits[i];
                return;
            }
            digits[i] = '0';
        }
        digits.prepend('1');
        ++point;
    }

    [[nodiscard]] bool IsZero() const { return digits.count('0') == digits.size(); }

    [[nodiscard]] QByteArray Digits(int from, int count) const
    {
        QByteArray part;
        for (int i = from; i < from + count; ++i)
            part += i >= 0 && i < digits.size() ? digits[i] : '0';
        return part;
    }
};

QString WithFraction(const QByteArray& whole, const QByteArray& fraction)
{
    return QString::fromLatin1(fraction.isEmpty() ? whole : whole + '.' + fraction);
}

const International*& ReplacedInternational()
{
    static const International* replaced = nullptr;
    return replaced;
}

} // namespace

std::optional<double> ParseNumber(const QString& number)
{
    const QStringView text = QStringView(number).trimmed();
    qsizetype at = !text.isEmpty() && IsSign(text[0]) ? 1 : 0;
    const qsizetype whole = at;
    at = SkipDigits(text, at);
    qsizetype digits = at - whole;
    if (at < text.size() && (text[at] == '.' || text[at] == ',')) {
        const qsizetype fraction = at + 1;
        at = SkipDigits(text, fraction);
        digits += at - fraction;
    }
    if (digits == 0)
        return std::nullopt;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        if (at < text.size() && IsSign(text[at]))
            ++at;
        const qsizetype exponent = at;
        at = SkipDigits(text, at);
        if (at == exponent)
            return std::nullopt;
    }
    if (at != text.size())
        return std::nullopt;
    QByteArray bytes = text.toLatin1().replace(',', '.');
    if (bytes.startsWith('+'))
        bytes.remove(0, 1);
    double value = 0;
    const auto result = std::from_chars(bytes.cbegin(), bytes.cend(), value);
    if (result.ec == std::errc::result_out_of_range)
        value = IsLarge(bytes) ? std::numeric_limits<double>::infinity() : 0;
    return bytes.startsWith('-') ? -std::fabs(value) : value;
}

bool IsNumeric(const QString& text)
{
    return ParseNumber(text).has_value();
}

QString NumberText(double value)
{
    return QString::number(value == 0 ? 0.0 : value, 'G', kSignificantDigits);
}

QString ScreenText(double value)
{
    return NumberText(value).replace('.', CurrentInternational().Value("sDecimal"));
}

QString FixedText(double value, int decimals)
{
    if (!std::isfinite(value))
        return NumberText(value);
    decimals = std::max(0, decimals);
    Decimal number(value);
    number.RoundTo(number.point + decimals);
    const QByteArray whole =
        number.point > 0 && !number.IsZero() ? number.Digits(0, number.point) : "0";
    const QString text = WithFraction(
        whole, number.IsZero() ? QByteArray(decimals, '0') : number.Digits(number.point, decimals));
    return number.negative && !number.IsZero() ? "-" + text : text;
}

QString ExponentText(double value, int decimals)
{
    if (!std::isfinite(value))
        return NumberText(value);
    decimals = std::max(0, decimals);
    Decimal number(value);
    number.RoundTo(decimals + 1);
    const int exponent = number.IsZero() ? 0 : number.point - 1;
    const QString text = WithFraction(number.Digits(0, 1), number.Digits(1, decimals)) + 'E' +
                         (exponent < 0 ? '-' : '+') +
                         QString::number(std::abs(exponent)).rightJustified(2, '0');
    return number.negative && !number.IsZero() ? "-" + text : text;
}

double RoundToEven(double value)
{
    return std::nearbyint(value);
}

QString International::Value(const QString& key) const
{
    if (key.compare("sDecimal", Qt::CaseInsensitive) == 0)
        return QLocale::system().decimalPoint();
    if (key.compare("sLanguage", Qt::CaseInsensitive) == 0) {
        const QLocale locale = QLocale::system();
        return locale.language() == QLocale::Dutch ? "NLD"
                                                   : locale.name().section('_', 0, 0).toUpper();
    }
    return {};
}

void SetInternational(const International* international)
{
    ReplacedInternational() = international;
}

const International& CurrentInternational()
{
    static const International system;
    return ReplacedInternational() ? *ReplacedInternational() : system;
}
