#pragma once

#include "jet/dao/Recordset.h"

#include <QList>
#include <QString>
#include <QStringList>

/// How values enter a statement.
namespace sql {

/// With a point as decimal sign and at most 15 significant digits, whatever the
/// system's settings. Raises RuntimeFout::Overflow for what is no finite number.
QString Getal(double waarde);
/// With as many digits as it takes to read the same single back.
QString Getal(float waarde);
inline QString Getal(int waarde)
{
    return QString::number(waarde);
}

/// "naam", as it is: the names of a checked database hold no double quote.
QString InDubbeleQuotes(const QString& naam);
/// 'naam', with each ' doubled.
QString InEnkeleQuotes(const QString& naam);
/// The ids for IN (...), in the order of the list. An empty list finds no rows.
QString IdLijst(const QList<int>& ids);
/// `statement` with %1, %2, ... replaced in order, every occurrence.
QString VulParameters(QString statement, const QStringList& waarden);

} // namespace sql

/// How values leave a recordset.
namespace veld {

inline QString Tekst(const jet::Recordset& recordset, std::string_view naam)
{
    return QString::fromStdString(recordset.Get(naam).AsTextOr(""));
}

} // namespace veld
