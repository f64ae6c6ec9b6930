#include "database/HRdb.h"
#include "database/SqlTekst.h"

#include "frame/Convert.h"
#include "frame/Numbers.h"

using sql::Getal;
using sql::IdLijst;

// -999 stands for a missing value and must never enter a difference: each
// statement carries its own condition for that.

namespace {

const QString kResultaatMetLocatie =
    "FROM Resultaat INNER JOIN Locatie ON Resultaat.Locatie_ID = Locatie.Locatie_ID ";

const QString kResultaatMetZichzelf =
    "FROM (Resultaat LEFT JOIN Resultaat AS Resultaat_1 ON (Resultaat.Herhalingstijd = "
    "Resultaat_1.Herhalingstijd) AND (Resultaat.Locatie_ID = Resultaat_1.Locatie_ID)) INNER JOIN "
    "Locatie ON Resultaat.Locatie_ID = Locatie.Locatie_ID ";

const QString kLocatieMetPeilen =
    "FROM Locatie INNER JOIN Boezempeilstatistiek ON Locatie.Locatie_ID = "
    "Boezempeilstatistiek.Locatie_ID ";

/// A share on the map: one difference for a choice of calculations and a period.
QString AandeelSql(const QString& verschil, const QList<int>& ids, double herhalingstijd,
                   const QString& voorwaarde)
{
    return "SELECT Locatie.x, Locatie.y, " + verschil + " AS waarde " + kResultaatMetLocatie +
           "WHERE (Resultaat.Berekening_ID IN (" + IdLijst(ids) +
           ")) AND Resultaat.Herhalingstijd=" + Getal(herhalingstijd) + voorwaarde;
}

/// `voorwaarde` and the period, unless all periods are asked for.
QString MetHerhalingstijd(const QString& voorwaarde, double herhalingstijd,
                          const QString& slot = {})
{
    return herhalingstijd == kNietBekend ? QString()
                                         : voorwaarde + Getal(herhalingstijd) + slot + " ";
}

const QString kHerhalingstijden = "SELECT DISTINCT Herhalingstijd FROM Resultaat ";
const QString kOpHerhalingstijd = " ORDER BY Herhalingstijd;";

} // namespace

RecordsetPtr HRdb::GetHBN(int berekeningId, double herhalingstijd)
{
    return Open("SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, Locatie.x as X, "
                "Locatie.y as Y, Resultaat.Herhalingstijd as Herhalingstijd, Resultaat.HBN_MS_MO "
                "as waarde, Resultaat.[DOMINANTE WINDRICHTING], Resultaat.[WATERSTAND], "
                "Resultaat.[GOLFHOOGTE], Resultaat.[PIEKPERIODE], Resultaat.[GOLFRICHTING] " +
                kResultaatMetLocatie + "WHERE Resultaat.Berekening_ID=" + Getal(berekeningId) +
                " " + MetHerhalingstijd("AND Resultaat.Herhalingstijd=", herhalingstijd) +
                "AND Resultaat.HBN_MS_MO<>-999 "
                "ORDER BY Locatie.Locatie_ID, Resultaat.Herhalingstijd;");
}

RecordsetPtr HRdb::GetHBNVanHerhalingstijd(const QList<int>& ids, double herhalingstijd)
{
    return Open("SELECT Locatie.x, Locatie.y, Resultaat.HBN_MS_MO as waarde " +
                kResultaatMetLocatie + "WHERE Resultaat.Herhalingstijd=" + Getal(herhalingstijd) +
                " AND (Resultaat.Berekening_ID IN (" + IdLijst(ids) +
                ")) AND Resultaat.HBN_MS_MO<>-999;");
}

RecordsetPtr HRdb::GetAandelen(int berekeningId, double herhalingstijd)
{
    return Open("SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, Locatie.x as X, "
                "Locatie.y as Y, Resultaat.Herhalingstijd as herhalingstijd, Resultaat.HBN_MS_MO, "
                "Resultaat.OVERLOOP_MS_MO, Resultaat.OVERLOOP_MS_ZO, Resultaat.BOEZEMPEIL, "
                "Resultaat.STREEFPEIL " +
                kResultaatMetLocatie + "WHERE Berekening_ID=" + Getal(berekeningId) + " " +
                MetHerhalingstijd("AND Resultaat.Herhalingstijd=", herhalingstijd) +
                "ORDER BY  Locatie.Locatie_ID, Resultaat.Herhalingstijd;");
}

RecordsetPtr HRdb::GetAandeelScheefstand(const QList<int>& ids, double herhalingstijd)
{
    // Guards HBN_MS_MO, not the OVERLOOP_MS_ZO that it subtracts from: kept.
    return Open(AandeelSql("OVERLOOP_MS_ZO-BOEZEMPEIL", ids, herhalingstijd,
                           " AND Resultaat.HBN_MS_MO<>-999 AND Resultaat.BOEZEMPEIL<>-999;"));
}

RecordsetPtr HRdb::GetAandeelOpwaaiing(const QList<int>& ids, double herhalingstijd)
{
    return Open(
        AandeelSql("OVERLOOP_MS_MO-OVERLOOP_MS_ZO", ids, herhalingstijd,
                   " AND Resultaat.OVERLOOP_MS_MO<>-999 AND Resultaat.OVERLOOP_MS_ZO<>-999;"));
}

RecordsetPtr HRdb::GetAandeelWindbelasting(const QList<int>& ids, double herhalingstijd)
{
    return Open(AandeelSql("HBN_MS_MO-OVERLOOP_MS_MO", ids, herhalingstijd,
                           " AND Resultaat.HBN_MS_MO<>-999 AND Resultaat.OVERLOOP_MS_MO<>-999;"));
}

RecordsetPtr HRdb::GetAandeelWaterstand(const QList<int>& ids, double herhalingstijd)
{
    return Open(AandeelSql("Resultaat.BOEZEMPEIL-Resultaat.STREEFPEIL", ids, herhalingstijd,
                           " AND Resultaat.BOEZEMPEIL<>-999 AND Resultaat.STREEFPEIL<>-999;"));
}

RecordsetPtr HRdb::GetDataVoorCsv(int berekeningId)
{
    return Open(
        "SELECT Locatie.x as X, Locatie.y as Y, Berekening.Naam as Berekeningnaam, Profielen.Naam "
        "as Profielnaam, Berekening.Faalmechanisme as Faalmechanisme, Berekening.QOverslag as "
        "QOverslag, Resultaat.Herhalingstijd as Herhalingstijd, Resultaat.HBN_MS_MO, "
        "Resultaat.OVERLOOP_MS_MO, Resultaat.OVERLOOP_MS_ZO, Resultaat.BOEZEMPEIL, "
        "Resultaat.STREEFPEIL FROM ((Locatie LEFT JOIN Resultaat ON Locatie.Locatie_ID = "
        "Resultaat.Locatie_ID) LEFT JOIN Berekening ON Resultaat.Berekening_ID = Berekening.Id) "
        "LEFT JOIN Profielen ON Berekening.ProfielId = Profielen.Profiel_ID Where "
        "(((Resultaat.Berekening_ID) = " +
        Getal(berekeningId) +
        "  Or (Resultaat.Berekening_ID) Is Null)) ORDER BY Locatie.Locatie_ID, "
        "Resultaat.Herhalingstijd;");
}

RecordsetPtr HRdb::GetVerschilHBN(const QList<int>& ids1, const QList<int>& ids2,
                                  double herhalingstijd)
{
    return Open("SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, "
                "Resultaat.Herhalingstijd as Herhalingstijd, Locatie.x AS x, Locatie.y AS y, "
                "Resultaat.HBN_MS_MO as waarde1, Resultaat_1.HBN_MS_MO AS waarde2, "
                "Resultaat.HBN_MS_MO-Resultaat_1.HBN_MS_MO AS waarde " +
                kResultaatMetZichzelf + "WHERE ((Resultaat.Berekening_ID IN (" + IdLijst(ids1) +
                ")) AND (Resultaat_1.Berekening_ID IN (" + IdLijst(ids2) +
                ")) AND ((Resultaat.HBN_MS_MO)<>-999) AND ((Resultaat_1.HBN_MS_MO)<>-999)) " +
                MetHerhalingstijd("AND ((Resultaat.Herhalingstijd)=", herhalingstijd, ")") +
                "ORDER BY Locatie.Locatie_ID, Resultaat.Herhalingstijd;");
}

RecordsetPtr HRdb::GetVerschilHBNTussen2Berekeningen(const QList<int>& ids1, const QList<int>& ids2,
                                                     double herhalingstijd)
{
    return Open("SELECT Locatie.x AS x, Locatie.y AS y, "
                "Resultaat.HBN_MS_MO-Resultaat_1.HBN_MS_MO AS waarde " +
                kResultaatMetZichzelf + "WHERE (((Resultaat.Herhalingstijd)=" +
                Getal(herhalingstijd) + ") AND (Resultaat.Berekening_ID IN (" + IdLijst(ids1) +
                ")) AND (Resultaat_1.Berekening_ID IN (" + IdLijst(ids2) +
                ")) AND ((Resultaat.HBN_MS_MO)<>-999) AND ((Resultaat_1.HBN_MS_MO)<>-999));");
}

RecordsetPtr HRdb::GetBoezempeilen(double herhalingstijd)
{
    return Open("SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, Locatie.x as X, "
                "Locatie.y  as Y, Boezempeilstatistiek.Herhalingstijd as herhalingstijd, "
                "Boezempeilstatistiek.Boezempeil AS boezempeil " +
                kLocatieMetPeilen +
                MetHerhalingstijd("WHERE Boezempeilstatistiek.Herhalingstijd=", herhalingstijd) +
                "ORDER BY Locatie.Locatie_ID, Boezempeilstatistiek.Herhalingstijd;");
}

RecordsetPtr HRdb::GetBoezempeilenVanHerhalingstijd(double herhalingstijd)
{
    return Open("SELECT Locatie.x, Locatie.y, Boezempeilstatistiek.Boezempeil as waarde " +
                kLocatieMetPeilen +
                "WHERE Boezempeilstatistiek.Herhalingstijd=" + Getal(herhalingstijd) + ";");
}

RecordsetPtr HRdb::GetMaxScheefstanden(int richtingId)
{
    const QString sector = richtingId == kNietBekend
                               ? QString()
                               : " HAVING (((Scheefstand.Richting_ID)=" + Getal(richtingId) + ")) ";
    return Open("SELECT Locatie.Locatie_ID, Locatie.omschrijving as naam, Locatie.x AS X, "
                "Locatie.y AS Y, Windsectoren.Naam AS windrichting, Windsectoren.Graden, "
                "Max(Scheefstand.Scheefstand) AS waarde FROM (Scheefstand INNER JOIN Locatie ON "
                "Scheefstand.Locatie_ID = Locatie.Locatie_ID) INNER JOIN Windsectoren ON "
                "Scheefstand.Richting_ID = Windsectoren.Richting_ID GROUP BY Locatie.omschrijving, "
                "Locatie.Locatie_ID, Locatie.x, Locatie.y, Windsectoren.Naam, Windsectoren.Graden, "
                "Scheefstand.Richting_ID, Scheefstand.Locatie_ID " +
                sector + "ORDER BY Windsectoren.Graden, Locatie.Locatie_ID;");
}

RecordsetPtr HRdb::GetMaxScheefstandVanWindrichtingId(int richtingId)
{
    return Open(sql::VulParameters(
        "SELECT Locatie.x as X, Locatie.y as Y, Max(Scheefstand.Scheefstand) as waarde FROM "
        "Scheefstand INNER JOIN Locatie ON Scheefstand.Locatie_ID = Locatie.Locatie_ID GROUP BY "
        "Locatie.x, Locatie.y, Scheefstand.Richting_ID, Scheefstand.Locatie_ID HAVING "
        "(((Scheefstand.Richting_ID)=%1));",
        {Getal(richtingId)}));
}

RecordsetPtr HRdb::GetHerhalingstijdenBerekening(const QList<int>& ids)
{
    return Open(kHerhalingstijden + "WHERE Resultaat.Berekening_ID IN (" + IdLijst(ids) + ")" +
                kOpHerhalingstijd);
}

RecordsetPtr HRdb::GetHerhalingstijdenAandeelscheefstand(const QList<int>& ids)
{
    return Open(kHerhalingstijden +
                "WHERE OVERLOOP_MS_ZO<>-999 AND BOEZEMPEIL<>-999 AND (Resultaat.Berekening_ID IN "
                "(" +
                IdLijst(ids) + ")) " + kOpHerhalingstijd);
}

RecordsetPtr HRdb::GetHerhalingstijdenAandeelopwaaiing(const QList<int>& ids)
{
    return Open(kHerhalingstijden +
                "WHERE OVERLOOP_MS_MO<>-999 AND OVERLOOP_MS_ZO<>-999 AND "
                "(Resultaat.Berekening_ID IN(" +
                IdLijst(ids) + ")) " + kOpHerhalingstijd);
}

RecordsetPtr HRdb::GetHerhalingstijdenAandeelwindbelasting(const QList<int>& ids)
{
    return Open(kHerhalingstijden +
                "WHERE HBN_MS_MO<>-999 AND OVERLOOP_MS_MO<>-999 AND (Resultaat.Berekening_ID IN "
                "(" +
                IdLijst(ids) + ")) " + kOpHerhalingstijd);
}

RecordsetPtr HRdb::GetHerhalingstijdenAandeelwaterstand(const QList<int>& ids)
{
    return Open(kHerhalingstijden +
                "WHERE BOEZEMPEIL<>-999 AND STREEFPEIL<>-999 AND (Resultaat.Berekening_ID IN (" +
                IdLijst(ids) + ")) " + kOpHerhalingstijd);
}

RecordsetPtr HRdb::GetMinMaxHBNMSMO()
{
    return Open("SELECT MIN(HBN_MS_MO) as min,  MAX(HBN_MS_MO) as max FROM Resultaat WHERE "
                "HBN_MS_MO<>-999;");
}

RecordsetPtr HRdb::GetMinMaxScheefstanden()
{
    return Open("SELECT min(MaxScheefstand)as min, max(MaxScheefstand)as max FROM (SELECT "
                "Max([Scheefstand]) AS MaxScheefstand, [Scheefstand].[Richting_ID], "
                "[Scheefstand].[Locatie_ID] From Scheefstand GROUP BY [Richting_ID], "
                "[Locatie_ID]);");
}

RecordsetPtr HRdb::GetMinMaxBoezempeilen()
{
    return Open("SELECT  MIN(Boezempeil) as min, MAX(Boezempeil) as max FROM "
                "Boezempeilstatistiek;");
}

void HRdb::WidenByMinMax(const QString& sql, MinMax& bounds)
{
    const auto rows = Open(sql);
    if (!heeftRecords(rows))
        return;
    if (const auto minimum = rows->Get("minimum"); !minimum.IsNull())
        bounds.minimum = Convert::min(bounds.minimum, minimum.AsDouble());
    if (const auto maximum = rows->Get("maximum"); !maximum.IsNull())
        bounds.maximum = Convert::Max(bounds.maximum, maximum.AsDouble());
}

void HRdb::GetMinMaxScheefstandAandeel(int berekeningId, MinMax& bounds)
{
    WidenByMinMax("SELECT MIN(OVERLOOP_MS_ZO-BOEZEMPEIL) as minimum, "
                  "MAX(OVERLOOP_MS_ZO-BOEZEMPEIL) as maximum From Resultaat WHERE Berekening_ID=" +
                      Getal(berekeningId) + " AND OVERLOOP_MS_ZO<>-999 AND BOEZEMPEIL<>-999;",
                  bounds);
}

void HRdb::GetMinMaxOpwaaiingAandeel(int berekeningId, MinMax& bounds)
{
    WidenByMinMax("SELECT MIN(OVERLOOP_MS_MO-OVERLOOP_MS_ZO) as minimum,  "
                  "MAX(OVERLOOP_MS_MO-OVERLOOP_MS_ZO) as maximum From Resultaat WHERE "
                  "Berekening_ID=" +
                      Getal(berekeningId) + " AND OVERLOOP_MS_MO<>-999 AND OVERLOOP_MS_ZO<>-999;",
                  bounds);
}

void HRdb::GetMinMaxWindbelastingAandeel(int berekeningId, MinMax& bounds)
{
    WidenByMinMax("SELECT MIN(HBN_MS_MO-OVERLOOP_MS_MO) as minimum,  MAX(HBN_MS_MO-OVERLOOP_MS_MO) "
                  "as maximum From Resultaat WHERE Berekening_ID=" +
                      Getal(berekeningId) + " AND HBN_MS_MO<>-999 AND OVERLOOP_MS_MO<>-999;",
                  bounds);
}

void HRdb::GetMinMaxWaterstandAandeel(int berekeningId, MinMax& bounds)
{
    WidenByMinMax("SELECT Min(BOEZEMPEIL-STREEFPEIL) AS minimum, Max(BOEZEMPEIL-STREEFPEIL) AS "
                  "maximum From Resultaat WHERE (((Resultaat.Berekening_ID)=" +
                      Getal(berekeningId) +
                      ") AND ((Resultaat.BOEZEMPEIL)<>-999) AND "
                      "((Resultaat.STREEFPEIL)<>-999));",
                  bounds);
}

void HRdb::GetMinMaxAandelen(const QList<int>& ids, double& min, double& max, int lowerBound)
{
    MinMax bounds{min, max};
    for (qsizetype i = 0; i < ids.size(); ++i) {
        const int berekeningId = lowerBound + static_cast<int>(i);
        GetMinMaxScheefstandAandeel(berekeningId, bounds);
        GetMinMaxOpwaaiingAandeel(berekeningId, bounds);
        GetMinMaxWindbelastingAandeel(berekeningId, bounds);
        GetMinMaxWaterstandAandeel(berekeningId, bounds);
    }
    min = bounds.minimum;
    max = bounds.maximum;
}

void HRdb::GetMinMaxVerschil(const QList<int>& ids1, const QList<int>& ids2, double& min,
                             double& max)
{
    const auto rows =
        Open("SELECT Resultaat.Berekening_ID, Resultaat.Locatie_ID, Resultaat.Herhalingstijd, "
             "Resultaat_1.Berekening_ID, Resultaat_1.Locatie_ID, Resultaat_1.Herhalingstijd, "
             "(Resultaat.HBN_MS_MO-Resultaat_1.HBN_MS_MO) as waarde FROM Resultaat, Resultaat AS "
             "Resultaat_1 WHERE ((Resultaat.Berekening_ID IN (" +
             IdLijst(ids1) + ")) AND (Resultaat_1.Berekening_ID IN (" + IdLijst(ids2) +
             ")) AND (Resultaat.HBN_MS_MO<>-999) AND (Resultaat_1.HBN_MS_MO<>-999) AND "
             "((Resultaat.Locatie_ID)=[Resultaat_1].[Locatie_ID]) AND "
             "((Resultaat.Herhalingstijd)=[Resultaat_1].[Herhalingstijd]));");
    if (!heeftRecords(rows))
        return;
    for (const int waarde = rows->FieldIndex("waarde"); !rows->EndOfFile(); rows->MoveNext()) {
        const double verschil = rows->Get(waarde).AsDoubleOr(kNietBekend);
        if (verschil == kNietBekend)
            continue;
        min = Convert::min(min, verschil);
        max = Convert::Max(max, verschil);
    }
}

QString HRdb::GetDbValueFromField(const jet::Recordset& recordset, const QString& veld,
                                  bool puntdecimaal, const double* missing)
{
    const int index = recordset.FieldIndex(veld.toStdString());
    const jet::Value waarde = recordset.Get(index);
    switch (recordset.Fields()[std::size_t(index)].type) {
    case jet::ColumnType::Integer:
    case jet::ColumnType::Long:
    case jet::ColumnType::Decimal: // the engine's wide whole number
    case jet::ColumnType::Double: {
        if (waarde.IsNull())
            return {};
        const double getal = waarde.AsDouble();
        if (missing && getal == *missing)
            return {};
        return puntdecimaal ? NumberText(getal) : ScreenText(getal);
    }
    case jet::ColumnType::Text:
        return '"' + QString::fromStdString(waarde.AsTextOr("")) + '"';
    default:
        return {};
    }
}
