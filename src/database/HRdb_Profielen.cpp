#include "database/HRdb.h"
#include "database/SqlTekst.h"
#include "database/Transactie.h"

#include "frame/Fouten.h"

using sql::Getal;
using sql::InDubbeleQuotes;

RecordsetPtr HRdb::GetProfielNamen()
{
    return Open("SELECT Profiel_ID, Naam FROM Profielen");
}

RecordsetPtr HRdb::GetProfielNamenVanLocatie(const QString& locatie)
{
    return Open("SELECT Profielen.Naam FROM (Locatie INNER JOIN Locatie_Profiel ON "
                "Locatie.Locatie_ID = Locatie_Profiel.Locatie_ID) INNER JOIN Profielen ON "
                "Locatie_Profiel.Profiel_ID = Profielen.Profiel_ID WHERE Locatie.omschrijving=" +
                InDubbeleQuotes(locatie) + ";");
}

RecordsetPtr HRdb::GetProfielProperties(const QString& naam)
{
    return Open(
        "SELECT "
        "[Profiel_ID],[Naam],[Damtype],[DamHoogte],[Damwandmodule],[Voorland],[Kruinbreedte],["
        "Taludhelling],[Constructietype],[Palenrij],[Paaldiameter],[HartafstandPalen],[Rietkraag],"
        "[Vegetatiebreedte],[AantalLevendeStengels],[SeizoensinvloedFactor],[Memo] From Profielen "
        "WHERE Naam=" +
        InDubbeleQuotes(naam) + ";");
}

RecordsetPtr HRdb::GetProfielSegementen(int profielId)
{
    return Open("SELECT X, Y, R, Gras FROM ProfielSegmenten WHERE Profiel_ID=" + Getal(profielId) +
                " ORDER BY X;");
}

int HRdb::GetProfiel_ID(const QString& naam)
{
    return FindId("SELECT [Profiel_ID] From Profielen WHERE Naam=" + InDubbeleQuotes(naam) + ";");
}

int HRdb::GetMaxProfiel_ID()
{
    // On an empty table the one row of the aggregate holds null.
    return FindId("SELECT Max(Profiel_ID) AS MaxProfielId FROM Profielen;");
}

bool HRdb::ProfielHeeftVertikaleWand(const QString& naam)
{
    const auto rows =
        Open("SELECT [Damwandmodule] From Profielen WHERE Naam=" + InDubbeleQuotes(naam) + ";");
    return heeftRecords(rows) && rows->Get("Damwandmodule").AsIntOr(0) > 0;
}

bool HRdb::ProfielUsed(const QString& naam)
{
    const int id = GetProfiel_ID(naam);
    if (id == kNietBekend)
        return false;
    const auto rows =
        Open("SELECT COUNT(*) AS COUNT FROM Locatie_Profiel WHERE Profiel_ID=" + Getal(id) + ";");
    return heeftRecords(rows) && rows->Get("COUNT").AsIntOr(0) > 0;
}

int HRdb::UpdateProfiel(const ProfielGegevens& profiel)
{
    reOpenDB(false);
    int id = kNietBekend;
    try {
        Transactie transactie(m_workspace, m_leftOpen);
        DeleteProfiel(profiel.Naam);
        id = InsertProfiel(profiel);
        if (id > 0)
            for (const ProfielPunt& punt : profiel.punten)
                InsertProfielSegment(id, punt);
        transactie.Commit();
    } catch (const std::exception& error) {
        RaiseFout(1502, {Description(error)});
    }
    UpdateKwaliteitskenmerk();
    return id;
}

int HRdb::InsertProfiel(const ProfielGegevens& profiel)
{
    const auto vlag = [](bool aan) { return Getal(aan ? 1 : 0); };
    QStringList waarden{InDubbeleQuotes(profiel.Naam),
                        Getal(profiel.Damtype),
                        Getal(profiel.DamHoogte),
                        Getal(profiel.Damwandmodule),
                        Getal(profiel.Voorland),
                        Getal(profiel.KruinBreedte),
                        Getal(profiel.Taludhelling),
                        Getal(profiel.Constructietype),
                        vlag(profiel.Palenrij),
                        Getal(profiel.Paaldiameter),
                        Getal(profiel.HartafstandPalen),
                        vlag(profiel.Rietkraag),
                        Getal(profiel.VegetatieBreedte),
                        Getal(profiel.AantalLevendeStengels),
                        Getal(profiel.SeizoensinvloedFactor),
                        InDubbeleQuotes(profiel.Memo)};
    QString velden =
        "[Naam],[Damtype],[DamHoogte],[Damwandmodule],[Voorland],[Kruinbreedte],[Taludhelling],["
        "Constructietype],[Palenrij],[Paaldiameter],[HartafstandPalen],[Rietkraag],["
        "Vegetatiebreedte],[AantalLevendeStengels],[SeizoensinvloedFactor],[Memo]";

    // Files have either kind of key: numbered by the engine or by us.
    const auto tabel = Connection().GetTableDef("Profielen");
    const auto* sleutel = tabel.FindField("Profiel_ID");
    if (sleutel && !sleutel->autoNumber) {
        const int hoogste = GetMaxProfiel_ID();
        velden.prepend("[Profiel_ID],");
        waarden.prepend(Getal(hoogste == kNietBekend ? 1 : hoogste + 1));
    }
    Execute("INSERT INTO Profielen (" + velden + ") VALUES (" + waarden.join(',') + ");");
    return GetProfiel_ID(profiel.Naam);
}

void HRdb::InsertProfielSegment(int profielId, const ProfielPunt& punt)
{
    Execute("INSERT INTO ProfielSegmenten ([Profiel_ID],[X],[Y],[R],[Gras]) VALUES (" +
            Getal(profielId) + "," + Getal(punt.x) + "," + Getal(punt.y) + "," +
            Getal(punt.ruwheid) + "," + (punt.gras ? "True" : "False") + ");");
}

void HRdb::AddProfiel2Location(int locatieId, int profielId)
{
    Execute("INSERT INTO Locatie_Profiel (Locatie_ID, Profiel_ID) VALUES (" + Getal(locatieId) +
            "," + Getal(profielId) + ")");
    UpdateKwaliteitskenmerk();
}

void HRdb::DeleteProfielFromLocation(int locatieId, int profielId)
{
    Execute("DELETE * FROM Locatie_Profiel WHERE [Locatie_ID]=" + Getal(locatieId) +
            " AND [Profiel_ID]=" + Getal(profielId) + ";");
    UpdateKwaliteitskenmerk();
}

void HRdb::DeleteProfiel(const QString& naam)
{
    const int profielId = GetProfiel_ID(naam);
    if (profielId > 0) {
        try {
            const QString id = Getal(profielId);
            Transactie transactie(m_workspace, m_leftOpen);
            Execute("DELETE * FROM Locatie_Profiel WHERE [Profiel_ID]=" + id + ";");
            Execute("DELETE * FROM ProfielSegmenten WHERE [Profiel_ID]=" + id + ";");
            Execute("DELETE * FROM Profielen WHERE [Profiel_ID]=" + id + ";");
            transactie.Commit();
        } catch (const std::exception& error) {
            RaiseFout(1503, {Description(error)});
        }
    }
    UpdateKwaliteitskenmerk();
}
