#include "database/HRdb.h"
#include "database/SqlTekst.h"
#include "database/Transactie.h"

#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"

#include <QScopeGuard>

#include <cmath>

using sql::Getal;
using sql::InDubbeleQuotes;
using sql::InEnkeleQuotes;

namespace {

constexpr int kSectoren = 16;
constexpr double kSectorbreedte = 22.5; // degrees

// What a new location gets: harmless values with which it can be calculated.
struct Peil {
    int herhalingstijd; // years
    double peil;        // m
};
constexpr Peil kPeilenNieuweLocatie[] = {{10, 0.5}, {30, 0.6}, {100, 0.7}, {300, 0.8}, {1000, 0.9}};
constexpr int kWindsnelhedenNieuweLocatie[] = {0, 10, 20, 30, 40}; // m/s

/// Whole metres, cut off towards zero.
int HeleMeters(double meters)
{
    if (!(std::fabs(meters) < 2147483648.0))
        RaiseRuntimeFout(RuntimeFout::Overflow,
                         "De coördinaat " + QString::number(meters) + " is te groot.");
    return static_cast<int>(meters);
}

/// There must be a value for each of `aantal`; nothing is changed otherwise.
void RequireValues(int fout, qsizetype aantal, const QList<double>& waarden)
{
    if (waarden.size() < aantal)
        RaiseFout(fout, {QStringLiteral("Er zijn %1 waarden nodig, maar %2 gegeven.")
                             .arg(aantal)
                             .arg(waarden.size())});
}

} // namespace

RecordsetPtr HRdb::GetLocatieProperties(const QString& naam)
{
    return Open("SELECT * From Locatie WHERE omschrijving=" + InDubbeleQuotes(naam) + ";");
}

RecordsetPtr HRdb::GetLocatieTabel()
{
    reOpenDB(false);
    if (!IsOpen())
        return nullptr;
    return Open("SELECT * FROM Locatie");
}

int HRdb::GetLocatie_ID(const QString& naam)
{
    try {
        return FindId(
            "SELECT [Locatie_ID] From Locatie WHERE [omschrijving]=" + InDubbeleQuotes(naam) + ";");
    } catch (const std::exception&) {
        return kNietBekend;
    }
}

int HRdb::GetKwaliteitskenmerk(const QString& naam)
{
    return FindId("SELECT kwaliteitskenmerk FROM locatie WHERE Locatie_ID=" +
                  Getal(GetLocatie_ID(naam)));
}

void HRdb::GetXY(const QString& naam, int& x, int& y, int& kwaliteitskenmerk)
{
    reOpenDB(false);
    if (!IsOpen())
        return;
    const auto rows = Open("SELECT * from Locatie WHERE omschrijving = '" + naam + "'",
                           jet::RecordsetType::Dynaset, {.readOnly = true});
    if (!heeftRecords(rows))
        RaiseFout(4, {naam, m_fileName});
    x = HeleMeters(rows->Get("x").AsDouble());
    y = HeleMeters(rows->Get("y").AsDouble());
    kwaliteitskenmerk = rows->Get("kwaliteitskenmerk").AsInt();
}

double HRdb::GetNormFrequentie(const QString& naam)
{
    const auto rows =
        Open("SELECT VeiligheidsklasseHerhalingstijd.Herhalingstijd FROM Locatie INNER JOIN "
             "VeiligheidsklasseHerhalingstijd ON Locatie.veiligheidsklasse = "
             "VeiligheidsklasseHerhalingstijd.Veiligheidsklasse WHERE Locatie.omschrijving=" +
             InEnkeleQuotes(naam) + ";");
    return heeftRecords(rows) ? rows->Get(0).AsDoubleOr(0) : 0;
}

RecordsetPtr HRdb::GetVeiligheidsklasseHerhalingstijdProperties(int klasse)
{
    return Open("SELECT * From VeiligheidsklasseHerhalingstijd WHERE Veiligheidsklasse=" +
                Getal(klasse) + ";");
}

RecordsetPtr HRdb::GetBoezempeilenVanLocatie(const QString& naam)
{
    return Open("SELECT Herhalingstijd,Boezempeil FROM Locatie INNER JOIN Boezempeilstatistiek ON "
                "Locatie.Locatie_ID = Boezempeilstatistiek.Locatie_ID WHERE omschrijving=" +
                InDubbeleQuotes(naam) + " ORDER BY Herhalingstijd;");
}

RecordsetPtr HRdb::GetHerhalingstijdenBoezempeilstatistiek()
{
    return Open(
        "SELECT DISTINCT Herhalingstijd From Boezempeilstatistiek ORDER BY Herhalingstijd;");
}

RecordsetPtr HRdb::GetWindsectoren()
{
    return Open("SELECT Richting_ID, Naam FROM Windsectoren");
}

int HRdb::GetRichting_ID(double graden)
{
    return FindId("SELECT [Richting_ID] From Windsectoren WHERE Graden=" + Getal(graden) + ";");
}

void HRdb::GetFeHbodem(bool delivered, const QString& naam, QList<double>& richtingen,
                       QList<double>& bodemhoogten, QList<double>& strijklengten)
{
    const QString velden = delivered ? "Geometrie.FE_org as FE,Geometrie.B_org as B"
                                     : "Geometrie.FE as FE,Geometrie.B as B";
    const int id = GetLocatie_ID(naam);
    const auto rows = Open("SELECT Windsectoren.Graden AS richting, " + velden +
                               " FROM Geometrie INNER JOIN Windsectoren ON Geometrie.Richting_ID "
                               "= Windsectoren.Richting_ID WHERE Locatie_ID=" +
                               Getal(id) + " ORDER BY Windsectoren.Graden;",
                           jet::RecordsetType::Dynaset, {.readOnly = true});
    richtingen.clear();
    bodemhoogten.clear();
    strijklengten.clear();
    if (!heeftRecords(rows)) {
        for (int i = 0; i < kSectoren; ++i)
            richtingen << i * kSectorbreedte;
        bodemhoogten.fill(0, kSectoren);
        strijklengten.fill(0, kSectoren);
        return;
    }
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        richtingen << rows->Get("richting").AsDouble();
        bodemhoogten << rows->Get("B").AsDoubleOr(kNietBekend);
        strijklengten << rows->Get("FE").AsDoubleOr(kNietBekend);
    }
}

bool HRdb::LocatieHeeftStrijklengtes(int locatieId)
{
    return HasRows("SELECT FE FROM Geometrie WHERE FE=-999  AND Locatie_ID =" + Getal(locatieId) +
                   ";");
}

bool HRdb::AddLocatie(double x, double y, const QString& naam)
{
    if (HasRows("SELECT [Locatie_ID] From Locatie WHERE [omschrijving]=" + InDubbeleQuotes(naam) +
                ";"))
        return false;

    // Inside double quotes a doubled apostrophe is two apostrophes, and so it is
    // stored: that is how new locations have always been stored.
    const QString opgeslagen = QString(naam).replace('\'', QStringLiteral("''"));

    Transactie transactie(m_workspace, m_leftOpen);
    try {
        InsertLocatie(x, y, opgeslagen);
    } catch (...) {
        // The failure goes up as it is, without a roll-back.
        transactie.LeaveOpen();
        throw;
    }
    transactie.Commit();
    return true;
}

void HRdb::InsertLocatie(double x, double y, const QString& opgeslagen)
{
    Execute("INSERT INTO Locatie "
            "([x],[y],[omschrijving],[kwaliteitskenmerk],[kruinhoogte],[streefpeil],[dijknormaal],["
            "ruwheidslengte],[veiligheidsklasse]) VALUES (" +
            Getal(x) + "," + Getal(y) + "," + InDubbeleQuotes(opgeslagen) + ",1,1,0.1,0,0.03,3);");
    const QString id = Getal(GetLocatie_ID(opgeslagen));
    for (const auto& [herhalingstijd, peil] : kPeilenNieuweLocatie)
        Execute("INSERT INTO Boezempeilstatistiek ([Locatie_ID],[Herhalingstijd],[Boezempeil]) "
                "VALUES (" +
                id + "," + Getal(herhalingstijd) + "," + Getal(peil) + ");");
    for (int sector = 1; sector <= kSectoren; ++sector)
        for (const int windsnelheid : kWindsnelhedenNieuweLocatie)
            Execute("INSERT INTO Scheefstand "
                    "([Locatie_ID],[Richting_ID],[Windsnelheid],[Scheefstand]) VALUES (" +
                    id + "," + Getal(sector) + "," + Getal(windsnelheid) + ",0);");
    for (int sector = 1; sector <= kSectoren; ++sector)
        Execute("INSERT INTO Geometrie ([Locatie_ID],[Richting_ID],[B],[FE],[B_org],[FE_org]) "
                "VALUES (" +
                id + "," + Getal(sector) + ",0,0,0,0);");
}

bool HRdb::DeleteLocatie(const QString& naam)
{
    const int locatieId = GetLocatie_ID(naam);
    if (locatieId < 1)
        return false;
    try {
        Transactie transactie(m_workspace, m_leftOpen);
        // The look-up is by the name of a calculation, so this finds something only when a
        // calculation happens to bear the location's name. Its other results
        // stay behind, out of sight of every query that joins locations.
        if (const auto rows = GetBerekening_IDs(naam); heeftRecords(rows))
            for (; !rows->EndOfFile(); rows->MoveNext())
                DeleteBerekeningResultaten(rows->Get("Id").AsInt(), locatieId);
        const QString id = Getal(locatieId);
        Execute("DELETE * FROM Boezempeilstatistiek WHERE [Locatie_ID]=" + id + ";");
        Execute("DELETE * FROM Geometrie WHERE [Locatie_ID]=" + id + ";");
        Execute("DELETE * FROM Locatie_Profiel WHERE [Locatie_ID]=" + id + ";");
        Execute("DELETE * FROM Scheefstand WHERE [Locatie_ID]=" + id + ";");
        Execute("DELETE * FROM Dijkring WHERE [Locatie]=" + InEnkeleQuotes(naam) + ";");
        Execute("DELETE * FROM Locatie WHERE [Locatie_ID]=" + id + ";");
        // Behind the statements, so that it happens only when they went well; it
        // cannot be undone if the commit fails. A name that is no folder's would
        // mean another folder: an empty one the whole work folder.
        const QString map = gFso().BuildPath(WerkMap(), naam);
        if (IsBruikbareMapnaam(naam) && gFso().FolderExists(map))
            gFso().DeleteFolder(map, true);
        transactie.Commit();
    } catch (const std::exception& error) {
        RaiseFout(1520, {Description(error)});
    }
    return true;
}

void HRdb::UpdateDijknormaal(const QString& naam, double waarde)
{
    const int id = GetLocatie_ID(naam);
    Execute("UPDATE Locatie SET dijknormaal=" + Getal(waarde) + " WHERE Locatie_ID=" + Getal(id));
    UpdateKwaliteitskenmerk();
}

void HRdb::ChangeLocatie(int fout, const std::function<void()>& wijziging)
{
    {
        Transactie transactie(m_workspace, m_leftOpen);
        try {
            wijziging();
        } catch (const std::exception& error) {
            // Raised before a roll-back is reached: what was done stays in the open
            // transaction until the next commit or the end of the connection.
            transactie.LeaveOpen();
            RaiseFout(fout, {Description(error)});
        }
        try {
            transactie.Commit();
        } catch (const std::exception& error) {
            RaiseFout(fout, {Description(error)});
        }
    }
    UpdateKwaliteitskenmerk();
}

void HRdb::UpdateStreefpeil(const QString& naam, double waarde)
{
    const int id = GetLocatie_ID(naam);
    ChangeLocatie(1505, [&] {
        Execute("UPDATE Locatie SET Streefpeil=" + Getal(waarde) +
                " WHERE Locatie_ID=" + Getal(id) + ";");
    });
}

void HRdb::UpdateBoezempeilstatistiek(const QString& naam, const QList<int>& herhalingstijden,
                                      const QList<double>& peilen)
{
    RequireValues(1506, herhalingstijden.size(), peilen);
    const QString id = Getal(GetLocatie_ID(naam));
    ChangeLocatie(1506, [&] {
        DeleteBoezempeilen(id);
        for (qsizetype i = 0; i < herhalingstijden.size(); ++i)
            Execute("INSERT INTO Boezempeilstatistiek ([Locatie_ID],[Herhalingstijd],[Boezempeil] "
                    ") VALUES (" +
                    id + "," + Getal(herhalingstijden[i]) + "," + Getal(peilen[i]) + ");");
    });
}

void HRdb::UpdateFe(const QString& naam, const QList<double>& richtingen,
                    const QList<double>& strijklengten)
{
    RequireValues(1504, richtingen.size(), strijklengten);
    const QString id = Getal(GetLocatie_ID(naam));
    ChangeLocatie(1504, [&] {
        for (qsizetype i = 0; i < richtingen.size(); ++i)
            Execute("UPDATE Geometrie SET FE=" + Getal(strijklengten[i]) + " WHERE Locatie_ID=" +
                    id + " AND Richting_ID=" + Getal(GetRichting_ID(richtingen[i])) + ";");
    });
}

void HRdb::UpdateFeHbodem(const QString& naam, const QList<double>& richtingen,
                          const QList<double>& bodemhoogten, const QList<double>& strijklengten)
{
    RequireValues(1504, richtingen.size(), bodemhoogten);
    RequireValues(1504, richtingen.size(), strijklengten);
    const QString id = Getal(GetLocatie_ID(naam));
    ChangeLocatie(1504, [&] {
        for (qsizetype i = 0; i < richtingen.size(); ++i)
            Execute("UPDATE Geometrie SET B=" + Getal(bodemhoogten[i]) +
                    ",FE=" + Getal(strijklengten[i]) + " WHERE Locatie_ID=" + id +
                    " AND Richting_ID=" + Getal(GetRichting_ID(richtingen[i])) + ";");
    });
}

void HRdb::DeleteBoezempeilen(const QString& locatieId)
{
    Execute("DELETE * FROM Boezempeilstatistiek WHERE [Locatie_ID]=" + locatieId + ";");
    UpdateKwaliteitskenmerk();
}

bool HRdb::StreefpeilBekend(int locatieId)
{
    return !HasRows("SELECT streefpeil FROM Locatie WHERE streefpeil=-999  AND Locatie_ID =" +
                    Getal(locatieId) + ";");
}

bool HRdb::DijknormaalBekend(int locatieId)
{
    return !HasRows("SELECT dijknormaal FROM Locatie WHERE dijknormaal=-999  AND Locatie_ID =" +
                    Getal(locatieId) + ";");
}

bool HRdb::BoezempeilenBekend(int locatieId)
{
    return CountRows(Open("SELECT Boezempeil FROM Boezempeilstatistiek WHERE Boezempeil <> -999 "
                          "AND Herhalingstijd In (10,30,100,300,1000) AND Locatie_ID =" +
                          Getal(locatieId) + ";")) == 5;
}

bool HRdb::ScheefstandBekend(int locatieId)
{
    // "-999AND" without a blank: the engine reads two tokens.
    return !HasRows("SELECT * FROM Scheefstand WHERE Scheefstand=-999AND Locatie_ID =" +
                    Getal(locatieId) + ";");
}

bool HRdb::HeeftProfiel(int locatieId)
{
    return HasRows("SELECT Profiel_ID FROM Locatie_Profiel WHERE Locatie_ID=" + Getal(locatieId) +
                   ";");
}

void HRdb::UpdateKwaliteitskenmerkOnce(const std::function<void()>& changes)
{
    {
        ++m_marksPostponed;
        const auto resume = qScopeGuard([this] { --m_marksPostponed; });
        changes();
    }
    UpdateKwaliteitskenmerk();
}

void HRdb::UpdateKwaliteitskenmerk()
{
    if (m_marksPostponed > 0)
        return;
    try {
        const auto locaties = GetLocatieTabel();
        if (!heeftRecords(locaties))
            return;
        for (; !locaties->EndOfFile(); locaties->MoveNext()) {
            const int id = locaties->Get("Locatie_ID").AsInt();
            int kenmerk = 0;
            if (!LocatieHeeftStrijklengtes(id) && DijknormaalBekend(id) && BoezempeilenBekend(id) &&
                ScheefstandBekend(id) && StreefpeilBekend(id))
                kenmerk = 1;
            if (HeeftProfiel(id) && kenmerk == 1)
                kenmerk = 2;
            if (locaties->Get("kwaliteitskenmerk").AsIntOr(kNietBekend) != kenmerk) {
                locaties->Edit();
                locaties->Set("kwaliteitskenmerk", jet::Value(kenmerk));
                locaties->Update();
            }
        }
    } catch (const std::exception& error) {
        RaiseFout(1506, {Description(error)});
    }
}
