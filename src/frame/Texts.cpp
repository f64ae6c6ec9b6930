#include "frame/Texts.h"

#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"

namespace {

/// The format "0000".
QString FourDigits(int number)
{
    const QString digits = QString::number(qAbs(qint64(number))).rightJustified(4, '0');
    return number < 0 ? "-" + digits : digits;
}

QString Decoded(TextKind kind, int number, const QStringList& arguments, const QString& unknown)
{
    return Bars2Lines(NumberedText(kind, number, arguments, unknown));
}

} // namespace

QString NumberedText(TextKind kind, int number, const QStringList& arguments,
                     const QString& unknown)
{
    QString section;
    QString key;
    switch (kind) {
    case TextKind::Message:
        section = "Messages";
        key = "msg.";
        break;
    case TextKind::Fout:
        section = "Fouten";
        key = "fout.";
        break;
    case TextKind::Question:
        section = "Questions";
        key = "qst.";
        break;
    }
    QLMIniFile ini;
    section += ini.GetString("Algemeen", "Taal");
    QString text = ini.GetString(section, key + FourDigits(number),
                                 "Onbekende " + unknown + " (" + QString::number(number) + ")");
    FillPlaceholders(text, arguments);
    return text;
}

QString ShowMessageText(int number, const QStringList& arguments)
{
    return Decoded(TextKind::Message, number, arguments, "fout");
}

QString MessageText(int number, const QStringList& arguments)
{
    return Decoded(TextKind::Message, number, arguments, "message");
}

QString FoutText(int number, const QStringList& arguments)
{
    return Decoded(TextKind::Fout, number, arguments, "fout");
}

QString QuestionText(int number, const QStringList& arguments)
{
    return Decoded(TextKind::Question, number, arguments, "question");
}

QString StatusBarTekst(int number, const QStringList& arguments)
{
    const QString key = "sbt." + FourDigits(number);
    QLMIniFile ini;
    QString text = ini.GetString("StatusBarTeksten" + gLanguage(), key, key);
    FillPlaceholders(text, arguments);
    return text;
}

QString ButtonText(const QString& key)
{
    const QString known = key.toUpper();
    const QString defaultText = known == "YES" ? "Ja" : known == "NO" ? "Nee" : key;
    QLMIniFile ini;
    return ini.GetString("MESSAGEBUTTONS", key, defaultText);
}

QString BoxTitle()
{
    return ApplicationTitle().replace('_', '-');
}

void FillPlaceholders(QString& text, const QStringList& arguments)
{
    int number = 0;
    for (const QString& argument : arguments) {
        const qsizetype place = text.indexOf("%" + QString::number(++number));
        if (place >= 0)
            text.replace(place, 2, argument);
    }
}

QString Bars2Lines(const QString& text)
{
    QString lines;
    lines.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '|') {
            lines += text[i];
        } else if (i + 1 < text.size() && text[i + 1] == '|') {
            lines += '|';
            ++i;
        } else {
            lines += "\r\n";
        }
    }
    if (lines.endsWith("\r\n"))
        lines.chop(2);
    return lines;
}

QString Lines2Bars(const QString& text)
{
    QString bars = text;
    bars.replace("|", "||");
    const bool endsInLine = bars.endsWith("\r\n");
    bars.replace("\r\n", "|");
    // A bar of the text itself, at its end, is doubled and stays.
    if (endsInLine)
        bars.chop(1);
    return bars;
}

bool IsDutch()
{
    const QString language = gLanguage().trimmed();
    return language.isEmpty() || language == "NL";
}
