#include "frame/Convert.h"

#include "frame/Fouten.h"
#include "frame/Texts.h"

#include <cmath>
#include <limits>

namespace {

[[noreturn]] void RaiseOverflow(const QString& text)
{
    RaiseRuntimeFout(RuntimeFout::Overflow, "Het getal " + text.trimmed() + " is te groot.");
}

double NumberOrZero(const QString& text, double largest)
{
    const double value = ParseNumber(text).value_or(0);
    if (std::fabs(value) > largest)
        RaiseOverflow(text);
    return value;
}

template <typename Whole>
Whole WholeNumber(const QString& text)
{
    const double value = RoundToEven(ParseNumber(text).value_or(0));
    if (value < double(std::numeric_limits<Whole>::min()) ||
        value > double(std::numeric_limits<Whole>::max()))
        RaiseOverflow(text);
    return Whole(value);
}

QString ReplaceFirstStrange(const QString& text, const QString& sign)
{
    static const QString plain = "-0123456789eE";
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!plain.contains(text[i]))
            return QString(text).replace(i, 1, sign);
    }
    return text;
}

std::optional<double> Numeric(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray)
        return ParseNumber(value.toString());
    bool numeric = false;
    const double number = value.toDouble(&numeric);
    return numeric ? std::optional(number) : std::nullopt;
}

struct FieldFormat {
    bool left = false;
    bool plus = false;
    bool exponent = false;
    int width = 0;
    int decimals = 0;
};

int TakeDigits(QStringView& text)
{
    qint64 value = 0;
    while (!text.isEmpty() && text[0] >= '0' && text[0] <= '9') {
        value = qMin<qint64>(value * 10 + text[0].digitValue(), 10000);
        text = text.mid(1);
    }
    return int(value);
}

bool TakeFirst(QStringView& text, QChar character)
{
    if (!text.startsWith(character))
        return false;
    text = text.mid(1);
    return true;
}

FieldFormat ParseFormat(QStringView text)
{
    FieldFormat format;
    format.left = TakeFirst(text, '-');
    format.plus = TakeFirst(text, '+');
    if (text.endsWith('E', Qt::CaseInsensitive)) {
        format.exponent = true;
        text.chop(1);
    }
    TakeFirst(text, '-'); // the width counts by its absolute value
    format.width = TakeDigits(text);
    if (TakeFirst(text, '.'))
        format.decimals = TakeDigits(text);
    return format;
}

} // namespace

bool Convert::ConvBln(const QString& text) const
{
    return ParseNumber(text).value_or(0) != 0;
}

double Convert::ConvDbl(const QString& text) const
{
    return NumberOrZero(text, std::numeric_limits<double>::max());
}

float Convert::ConvSng(const QString& text) const
{
    return float(NumberOrZero(text, double(std::numeric_limits<float>::max())));
}

qint32 Convert::ConvLng(const QString& text) const
{
    return WholeNumber<qint32>(text);
}

qint16 Convert::ConvInt(const QString& text) const
{
    return WholeNumber<qint16>(text);
}

QString Convert::NumPoint(const QString& text) const
{
    return ReplaceFirstStrange(text, ".");
}

QString Convert::NumSys(const QString& text) const
{
    return ReplaceFirstStrange(text, DecimalSign());
}

QString Convert::getInternational(const QString& key) const
{
    return CurrentInternational().Value(key);
}

QChar Convert::DecimalSign() const
{
    if (m_decimalSign.isEmpty())
        m_decimalSign = getInternational("sDecimal");
    return m_decimalSign.isEmpty() ? QChar('.') : m_decimalSign[0];
}

QString Convert::QLMAlignCenter(int width, const QVariant& value) const
{
    QString text;
    if (value.typeId() == QMetaType::QString)
        text = value.toString();
    else if (value.typeId() != QMetaType::Bool && Numeric(value))
        text = ScreenText(value.toDouble());
    const qsizetype room = width - text.size();
    if (room <= 0)
        return text;
    return QString(room / 2, ' ') + text + QString(room - room / 2, ' ');
}

QString Convert::ConvertFormat(const QString& format) const
{
    const FieldFormat field = ParseFormat(format);
    QString numberFormat = field.decimals > 0 ? "0." + QString(field.decimals, '0') : "0";
    if (field.plus)
        numberFormat.prepend('+');
    if (field.exponent)
        numberFormat += "E+00";
    return numberFormat;
}

QString Convert::QLMFormat(const QString& format, double value) const
{
    const FieldFormat field = ParseFormat(format);
    QString text =
        field.exponent ? ExponentText(value, field.decimals) : FixedText(value, field.decimals);
    text.replace('.', DecimalSign());
    if (field.plus && value >= 0)
        text.prepend('+');
    return field.left ? text.leftJustified(field.width) : text.rightJustified(field.width);
}

bool Convert::IsEqual(const QVariant& a, const QVariant& b) const
{
    const auto first = Numeric(a);
    const auto second = Numeric(b);
    if (!first || !second)
        return false;
    return std::fabs(*first - *second) <= 0.000001 * std::fabs((*first + *second) / 2);
}

double Convert::Arcsin(double x) const
{
    const double square = 1 - x * x;
    if (square == 0)
        RaiseRuntimeFout(RuntimeFout::DivisionByZero, "Deling door nul.");
    if (!(square > 0))
        RaiseRuntimeFout(RuntimeFout::InvalidArgument,
                         "Arcsin bestaat niet voor " + ScreenText(x) + ".");
    return std::atan(x / std::sqrt(square));
}

double Convert::Atnd(double x) const
{
    return std::atan(x) * 180 / (4 * std::atan(1.0));
}

qint16 Convert::Ndec(const QString& text) const
{
    const QString number = NumPoint(text);
    const qsizetype point = number.indexOf('.');
    return point < 0 ? qint16(0) : qint16(number.size() - point - 1);
}

QString WindDirectionName(double degrees)
{
    static const QString dutch = "N  NNONO ONOO  OZOZO ZZOZ  ZZWZW WZWW  WNWNW NNW";
    static const QString english = "N  NNENE ENEE  ESESE SSES  SSWSW WSWW  WNWNW NNW";
    if (!std::isfinite(degrees))
        return "   ";
    double bearing = std::fmod(degrees, 360);
    if (bearing < 0)
        bearing += 360;
    const int index = int(RoundToEven(bearing / 22.5)) % 16;
    return (IsDutch() ? dutch : english).mid(index * 3, 3);
}

double AngleToMath(double degrees)
{
    double angle = std::fmod(90 - degrees, 360);
    if (angle < 0)
        angle += 360;
    return angle < 360 ? angle : 0; // a tiny negative angle rounds up to 360
}

double Interpolate(double x, double x1, double y1, double x2, double y2)
{
    if (x1 == x2)
        RaiseRuntimeFout(RuntimeFout::DivisionByZero, "Deling door nul.");
    return y1 + (x - x1) * (y2 - y1) / (x2 - x1);
}
