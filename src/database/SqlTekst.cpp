#include "database/SqlTekst.h"

#include "frame/Fouten.h"
#include "frame/Numbers.h"

#include <charconv>
#include <cmath>

namespace {

void RequireNumber(double waarde)
{
    if (!std::isfinite(waarde))
        RaiseRuntimeFout(RuntimeFout::Overflow,
                         "Een waarde is geen getal of te groot om op te slaan.");
}

} // namespace

namespace sql {

QString Getal(double waarde)
{
    RequireNumber(waarde);
    return NumberText(waarde);
}

QString Getal(float waarde)
{
    RequireNumber(double(waarde));
    char tekst[32];
    const auto einde = std::to_chars(tekst, tekst + sizeof tekst, waarde).ptr;
    return QString::fromLatin1(tekst, einde - tekst);
}

QString InDubbeleQuotes(const QString& naam)
{
    return '"' + naam + '"';
}

QString InEnkeleQuotes(const QString& naam)
{
    return '\'' + QString(naam).replace('\'', QStringLiteral("''")) + '\'';
}

QString IdLijst(const QList<int>& ids)
{
    if (ids.isEmpty())
        return "NULL";
    QStringList teksten;
    for (const int id : ids)
        teksten << QString::number(id);
    return teksten.join(',');
}

QString VulParameters(QString statement, const QStringList& waarden)
{
    for (qsizetype i = 0; i < waarden.size(); ++i)
        statement.replace('%' + QString::number(i + 1), waarden[i]);
    return statement;
}

} // namespace sql
