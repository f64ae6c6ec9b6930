#include "database/SqlTekst.h"

namespace sql {

QString Getal(double waarde)
{
    return QString::number(waarde, 'g', 15);
}

QString Getal(float waarde)
{
    return QString::number(double(waarde), 'g', 7);
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
