#include "frame/ui/NumberPattern.h"

#include <QLocale>

#include <cmath>

NumberPattern::NumberPattern(const QString& pattern)
{
    const qsizetype point = pattern.indexOf('.');
    const QString whole = point < 0 ? pattern : pattern.left(point);
    const QString decimals = point < 0 ? QString() : pattern.mid(point + 1);
    m_groups = whole.contains(',');
    m_minimumWhole = static_cast<int>(whole.count('0'));
    m_minimumDecimals = static_cast<int>(decimals.count('0'));
    m_maximumDecimals = m_minimumDecimals + static_cast<int>(decimals.count('#'));
}

QString NumberPattern::Text(double value) const
{
    if (!std::isfinite(value))
        return QString();
    // Fifteen digits are what the number can tell; without this step 0.145
    // would fall on the wrong side of its half.
    const double power = std::pow(10.0, m_maximumDecimals);
    const double scaled = QString::number(std::abs(value) * power, 'g', 15).toDouble();
    const double rounded = std::round(scaled);
    QString digits = QString::number(rounded, 'f', 0).rightJustified(m_maximumDecimals + 1, '0');

    QString decimals = digits.right(m_maximumDecimals);
    QString whole = digits.chopped(m_maximumDecimals);
    while (decimals.size() > m_minimumDecimals && decimals.endsWith('0'))
        decimals.chop(1);
    while (whole.size() > m_minimumWhole && whole.startsWith('0'))
        whole.remove(0, 1);
    whole = whole.rightJustified(m_minimumWhole, '0');

    const QLocale locale = QLocale::system();
    if (m_groups) {
        for (qsizetype at = whole.size() - 3; at > 0; at -= 3)
            whole.insert(at, locale.groupSeparator());
    }
    QString text = whole;
    if (!decimals.isEmpty())
        text += locale.decimalPoint() + decimals;
    return value < 0 && rounded != 0 ? "-" + text : text;
}
