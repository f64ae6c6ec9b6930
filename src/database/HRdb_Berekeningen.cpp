#include "database/HRdb.h"
#include "database/SqlTekst.h"
#include "database/Transactie.h"

#include "frame/Fouten.h"

using sql::Getal;
using sql::IdLijst;
using sql::InDubbeleQuotes;
using sql::InEnkeleQuotes;

namespace {

QString IdsVanBerekening(const QString& naam)
{
    return "SELECT [Id] From Berekening WHERE Naam=" + InDubbeleQuotes(naam) + ";";
}

} // namespace

int HRdb::AddBerekening(const QString& naam, int profielId, const QString& faalmechanisme,
                        double overslagdebiet)
{
    int id = kNietBekend;
    try {
        Execute(
            "INSERT INTO Berekening ([Naam],[ProfielId],[Faalmechanisme],[QOverslag]) VALUES (" +
            InEnkeleQuotes(naam) + "," + Getal(profielId) + "," + InEnkeleQuotes(faalmechanisme) +
            "," + Getal(overslagdebiet) + ");");
        id = FindBerekening(naam, profielId, faalmechanisme, overslagdebiet);
    } catch (const std::exception& error) {
        RaiseFout(1509, {Description(error)});
    }
    if (id == kNietBekend)
        RaiseFout(1510);
    return id;
}

int HRdb::FindBerekening(const QString& naam, int profielId, const QString& faalmechanisme,
                         double overslagdebiet)
{
    return FindId("SELECT Id FROM Berekening WHERE [Naam]=" + InEnkeleQuotes(naam) +
                      " AND [ProfielId]=" + Getal(profielId) +
                      " AND [Faalmechanisme]=" + InEnkeleQuotes(faalmechanisme) +
                      " AND [QOverslag]=" + Getal(overslagdebiet) + ";",
                  jet::RecordsetType::Snapshot);
}

void HRdb::AddNewResultaatRecord(int berekeningId, const QString& locatie, double herhalingstijd)
{
    try {
        const int locatieId = GetLocatie_ID(locatie);
        Execute("INSERT INTO Resultaat ([Berekening_ID],[Locatie_ID],[Herhalingstijd]) VALUES (" +
                Getal(berekeningId) + "," + Getal(locatieId) + "," + Getal(herhalingstijd) + ");");
    } catch (const std::exception& error) {
        RaiseFout(1509, {Description(error)});
    }
}

void HRdb::RenameBerekening(const QString& oud, const QString& nieuw)
{
    RenameRows("Berekening", oud, nieuw);
}

bool HRdb::BerekeningExists(const QString& naam)
{
    return heeftRecords(GetBerekening_IDs(naam));
}

int HRdb::GetBerekening_ID(const QString& naam)
{
    return FindId(IdsVanBerekening(naam));
}

RecordsetPtr HRdb::GetBerekening_IDs(const QString& naam)
{
    return Open(IdsVanBerekening(naam));
}

int HRdb::GetBerekening_ID_Profiel(const QString& naam, const QString& profielnaam)
{
    // A calculation without profile has ProfielId 0.
    const int profielId = profielnaam.trimmed().isEmpty() ? 0 : GetProfiel_ID(profielnaam);
    return FindId("SELECT [Id] From Berekening WHERE Naam=" + InDubbeleQuotes(naam) +
                  " AND ProfielId=" + Getal(profielId) + ";");
}

void HRdb::DeleteBerekening(const QString& naam)
{
    const auto rows = GetBerekening_IDs(naam);
    if (!heeftRecords(rows))
        return;
    try {
        Transactie transactie(m_workspace, m_leftOpen);
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            const int id = rows->Get("Id").AsIntOr(kNietBekend);
            if (id <= 0)
                continue;
            Execute("DELETE * FROM Resultaat WHERE [Berekening_ID]=" + Getal(id) + ";");
            Execute("DELETE * FROM Berekening WHERE [Id]=" + Getal(id) + ";");
        }
        transactie.Commit();
    } catch (const std::exception& error) {
        RaiseFout(1503, {Description(error)});
    }
}

void HRdb::DeleteBerekeningResultaten(int berekeningId, int locatieId)
{
    reOpenDB(false);
    try {
        Transactie transactie(m_workspace, m_leftOpen);
        const QString id = Getal(berekeningId);
        if (berekeningId > 0)
            Execute("DELETE * FROM Resultaat WHERE [Berekening_ID]=" + id +
                    " AND [Locatie_ID]=" + Getal(locatieId) + ";");
        if (!heeftRecords(Open("SELECT * FROM Resultaat WHERE [Berekening_ID]=" + id + ";",
                               jet::RecordsetType::Snapshot)))
            Execute("DELETE * FROM Berekening WHERE [Id]=" + id + ";");
        transactie.Commit();
    } catch (const std::exception& error) {
        RaiseFout(1503, {Description(error)});
    }
}

RecordsetPtr HRdb::GetBerekeningInfo(int berekeningId)
{
    return Open("SELECT Berekening.Naam as naam, Profielen.Naam as profielnaam, "
                "Berekening.Faalmechanisme as faalmechanisme, Berekening.QOverslag as "
                "overslagdebiet FROM Berekening LEFT JOIN Profielen ON Berekening.ProfielId = "
                "Profielen.Profiel_ID WHERE  Berekening.Id=" +
                Getal(berekeningId) + ";");
}

RecordsetPtr HRdb::GetBerekeningen()
{
    return Open(
        "SELECT Locatie.omschrijving AS locatieomschrijving, Berekening.Naam AS berekeningnaam, "
        "Profielen.Naam AS profielnaam, Berekening.id AS berekeningid, Locatie.Locatie_ID AS "
        "locatieid FROM Profielen RIGHT JOIN (Berekening INNER JOIN (Locatie INNER JOIN Resultaat "
        "ON Locatie.Locatie_ID = Resultaat.Locatie_ID) ON Berekening.Id = "
        "Resultaat.Berekening_ID) ON Profielen.Profiel_ID = Berekening.ProfielId;");
}

RecordsetPtr HRdb::GetBerekeningNamenFromResultaat()
{
    return Open("SELECT Berekening.Id as berekeningID, Berekening.Naam as naam, "
                "Berekening.Faalmechanisme as faalmechanisme, Berekening.QOverslag as "
                "overslagdebiet, Profielen.Naam as profielnaam FROM Berekening LEFT JOIN Profielen "
                "ON Berekening.ProfielId = Profielen.Profiel_ID WHERE  Berekening.Id IN (SELECT "
                "DISTINCT  Resultaat.Berekening_ID FROM Resultaat);");
}

RecordsetPtr HRdb::GetBerekeningNamenFromResultaatNoProfiel()
{
    return Open("SELECT DISTINCT Berekening.Naam AS naam, Berekening.Faalmechanisme AS "
                "faalmechanisme, Berekening.QOverslag AS overslagdebiet FROM Berekening WHERE "
                "Berekening.Id IN (SELECT DISTINCT  Resultaat.Berekening_ID FROM Resultaat);");
}

bool HRdb::ControleerUniekeLocatiesBijBerekening(const QList<int>& ids)
{
    return !HasRows("SELECT Resultaat.Locatie_ID, Resultaat.Herhalingstijd FROM Resultaat WHERE "
                    "Resultaat.Berekening_ID IN (" +
                    IdLijst(ids) +
                    ") GROUP BY Resultaat.Locatie_ID, Resultaat.Herhalingstijd HAVING "
                    "(((Count(Resultaat.Berekening_ID))>1)) ORDER BY Resultaat.Locatie_ID, "
                    "Resultaat.Herhalingstijd;");
}
