#include "frame/StrToken.h"

#include "frame/Fouten.h"

#include <array>

namespace {

/// What is left of a slot's text, begun anew if there is one.
QString& Remainder(int slot, const QString& text)
{
    static std::array<QString, 10> remainders;
    if (slot < 1 || slot > int(remainders.size()))
        RaiseRuntimeFout(RuntimeFout::OutOfRange,
                         "Tokenslot " + QString::number(slot) + " bestaat niet.");
    QString& remainder = remainders[std::size_t(slot - 1)];
    if (!text.isEmpty())
        remainder = text + EndOfFields();
    return remainder;
}

bool IsDelimiter(QChar character, const QString& delimiters)
{
    return character.isNull() || delimiters.contains(character);
}

} // namespace

QString EndOfFields()
{
    return QString(QChar(u'\0'));
}

QString StrToken(int slot, const QString& text, const QString& delimiters)
{
    QString& remainder = Remainder(slot, text);
    qsizetype start = 0;
    while (start < remainder.size() && IsDelimiter(remainder[start], delimiters))
        ++start;
    qsizetype end = start;
    while (end < remainder.size() && !IsDelimiter(remainder[end], delimiters))
        ++end;
    const QString token = remainder.mid(start, end - start);
    remainder.remove(0, end); // the delimiter itself stays
    return token;
}

QString StrTokenNext(int slot, const QString& text, const QString& delimiters)
{
    QString& remainder = Remainder(slot, text);
    if (remainder.isEmpty())
        return EndOfFields();
    qsizetype end = 0;
    while (end < remainder.size() && !IsDelimiter(remainder[end], delimiters))
        ++end;
    const QString field = remainder.left(end);
    remainder.remove(0, end + 1);
    return field;
}
