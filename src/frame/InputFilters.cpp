#include "frame/InputFilters.h"

#include "frame/Convert.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Windows1252.h"

#include <algorithm>

namespace {

bool IsSign(QChar character)
{
    return character == '+' || character == '-';
}
bool IsDigit(QChar character)
{
    return character >= '0' && character <= '9';
}
bool IsDecimalSign(QChar character)
{
    return character == '.' || character == ',';
}

bool IsExponent(QChar character)
{
    return character == 'e' || character == 'E';
}

bool IsWhole(int dataType)
{
    return dataType == DataTypes::Integer || dataType == DataTypes::Long;
}

/// Drops the characters that `keep` refuses; the caret stays where it was
/// between the others.
template <typename Keep>
FilteredText Filter(const QString& text, int caret, Keep keep)
{
    FilteredText result{{}, caret, false};
    for (int i = 0; i < text.size(); ++i) {
        if (keep(i, text[i])) {
            result.text += text[i];
        } else {
            result.refused = true;
            if (i < caret)
                --result.caret;
        }
    }
    return result;
}

/// Restored, with the caret before what was typed.
FilteredText Restored(const QString& previous, int caret)
{
    return {previous, std::clamp(caret - 1, 0, int(previous.size())), true};
}

bool TooLarge(const QString& text, int dataType)
{
    try {
        switch (dataType) {
        case DataTypes::Integer:
            static_cast<void>(gConvert().ConvInt("0" + text));
            break;
        case DataTypes::Long:
            static_cast<void>(gConvert().ConvLng("0" + text));
            break;
        case DataTypes::Single:
            static_cast<void>(gConvert().ConvSng("0" + text));
            break;
        default:
            static_cast<void>(gConvert().ConvDbl("0" + text));
        }
        return false;
    } catch (const Fout&) {
        return true;
    }
}

} // namespace

FilteredText FilterNameKey(const QString& text, const QString& previous, int caret, NameRule rule)
{
    if (text.startsWith('.'))
        return Restored(previous, caret);
    QString forbidden = "[];=%{}`^'*?\\/<>:|\"";
    if (rule == NameRule::WithoutUnderscore)
        forbidden += '_';
    FilteredText result = Filter(text, caret, [&forbidden](int, QChar character) {
        return !forbidden.contains(character) && FitsWindows1252(QStringView(&character, 1));
    });
    if (result.refused)
        result.caret = int(result.text.size());
    return result;
}

FilteredText FilterFileNameInput(const QString& text, int caret, int mode)
{
    if (mode != 1 || text.startsWith('.'))
        return {text, caret, false};
    static const QString forbidden = "\\/:*?<>|\"";
    FilteredText result = Filter(text, caret, [](int, QChar character) {
        return !forbidden.contains(character) && FitsWindows1252(QStringView(&character, 1));
    });
    if (result.refused)
        result.caret = std::clamp(caret - 1, 0, int(result.text.size()));
    return result;
}

bool FilterNumberKey(QChar key, int caret, int dataType, double minimum, double maximum)
{
    if (!DataTypes::IsNumber(dataType) || key < QChar(' ') || key == QChar(0x7F) || IsDigit(key))
        return true;
    if (IsSign(key) && caret == 0)
        return true;
    const bool negative = minimum < 0 || maximum < 0;
    if (IsWhole(dataType))
        return key == '+' || (key == '-' && negative);
    return IsSign(key) || IsDecimalSign(key);
}

FilteredText FilterNumberChange(const QString& text, const QString& previous, int caret,
                                int dataType, double minimum, double maximum)
{
    if (!DataTypes::IsNumber(dataType))
        return {text, caret, false};
    const bool whole = IsWhole(dataType);
    const bool signsAnywhere = minimum < 0 || maximum < 0;
    const QChar decimalSign = gConvert().DecimalSign();

    QString screen = text;
    if (!whole)
        screen.replace('.', decimalSign).replace(',', decimalSign);
    FilteredText result = Filter(screen, caret, [=, &screen](int place, QChar character) {
        if (IsDigit(character))
            return true;
        if (IsSign(character)) // the sign of an exponent belongs to its number
            return place == 0 || signsAnywhere || (!whole && IsExponent(screen[place - 1]));
        return !whole && (character == decimalSign || IsExponent(character));
    });
    const bool twoSigns = !whole && result.text.count(decimalSign) > 1;
    return twoSigns || TooLarge(result.text, dataType) ? Restored(previous, caret) : result;
}

RangeVerdict ValidateRange(const QString& text, int dataType, double minimum, double maximum,
                           bool mayBeEmpty, const QString& messageText)
{
    RangeVerdict verdict;
    if (text.trimmed().isEmpty()) {
        verdict.failed = !mayBeEmpty;
        return verdict;
    }
    if (!DataTypes::IsNumber(dataType))
        return verdict;
    const auto value = ParseNumber(text); // infinite is out of range, too
    const bool hasRange = minimum != 0 || maximum != 0;
    if (!value || (hasRange && (*value < minimum || *value > maximum))) {
        verdict.failed = true;
        verdict.selectAll = true;
        if (hasRange && !messageText.trimmed().isEmpty())
            verdict.message = ScreenText(minimum) + "<=" + messageText + "<=" + ScreenText(maximum);
    }
    return verdict;
}

int FindIndexByText(const QString& text, const QStringList& items)
{
    if (text.isEmpty())
        return -1;
    for (int i = 0; i < items.size(); ++i) {
        if (items[i].compare(text, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}
