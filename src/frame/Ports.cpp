#include "frame/Ports.h"

#include "frame/Numbers.h"
#include "frame/Texts.h"

QString StatusBar::SetStatusBarText(const QString& text)
{
    const QString previous = StatusText();
    if (!text.trimmed().isEmpty())
        ShowStatusText(text);
    return previous;
}

QString StatusBar::SetStatusBarTextByNumber(const QString& number, const QStringList& arguments)
{
    const double value = qBound(0.0, ParseNumber(number).value_or(0), 99999.0);
    return SetStatusBarTextByNumber(int(RoundToEven(value)), arguments);
}

QString StatusBar::SetStatusBarTextByNumber(int number, const QStringList& arguments)
{
    const QString previous = StatusText();
    if (number > 0)
        ShowStatusText(StatusBarTekst(number, arguments));
    return previous;
}

QString StatusBar::ClearStatusBarText()
{
    const QString previous = StatusText();
    ShowStatusText({});
    return previous;
}
