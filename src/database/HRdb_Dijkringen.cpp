#include "database/HRdb.h"
#include "database/SqlTekst.h"
#include "database/Transactie.h"

using sql::InDubbeleQuotes;

namespace {

constexpr char kDijkring[] = "Dijkring";

} // namespace

RecordsetPtr HRdb::GetDijkringNamen()
{
    if (!TableExists(kDijkring)) {
        using jet::ColumnType;
        Connection().CreateTable({.name = kDijkring,
                                  .fields = {{.name = "Naam", .type = ColumnType::Memo},
                                             {.name = "Locatie", .type = ColumnType::Memo},
                                             {.name = "Profiel", .type = ColumnType::Memo},
                                             {.name = "ProfielNaam", .type = ColumnType::Memo},
                                             {.name = "QOverslag", .type = ColumnType::Single}}});
    }
    auto rows =
        Open("SELECT DISTINCT Naam FROM Dijkring", jet::RecordsetType::Dynaset, {.readOnly = true});
    return heeftRecords(rows) ? std::move(rows) : nullptr;
}

RecordsetPtr HRdb::GetDijkring(const QString& naam)
{
    auto rows = Open("SELECT * FROM Dijkring WHERE Naam=" + InDubbeleQuotes(naam),
                     jet::RecordsetType::Snapshot);
    return heeftRecords(rows) ? std::move(rows) : nullptr;
}

RecordsetPtr HRdb::GetDijkringProperties(const QString& naam)
{
    return Open("SELECT * From Dijkring WHERE naam=" + InDubbeleQuotes(naam) + ";");
}

RecordsetPtr HRdb::GetDijkringTabel()
{
    return Open(kDijkring);
}

bool HRdb::DijkringExists(const QString& naam)
{
    return HasRows("SELECT * FROM Dijkring WHERE Naam=" + InDubbeleQuotes(naam));
}

bool HRdb::LocatieInDijkring(const QString& locatie)
{
    return HasRows("SELECT * FROM Dijkring WHERE Locatie=" + InDubbeleQuotes(locatie));
}

bool HRdb::ProfielInDijkring(const QString& profiel)
{
    return HasRows("SELECT * FROM Dijkring WHERE ProfielNaam=" + InDubbeleQuotes(profiel));
}

void HRdb::CopyDijkring(const QString& bron, const QString& nieuw)
{
    const auto van = Open("SELECT * FROM Dijkring WHERE Naam=" + InDubbeleQuotes(bron),
                          jet::RecordsetType::Snapshot);
    const auto naar = Open(kDijkring);
    if (!heeftRecords(van))
        return;
    const int velden = static_cast<int>(van->Fields().size());
    Transactie transactie(m_workspace, m_leftOpen);
    for (; !van->EndOfFile(); van->MoveNext()) {
        naar->AddNew();
        for (int veld = 0; veld < velden; ++veld)
            naar->Set(veld, van->Get(veld));
        naar->Set("Naam", jet::Value(nieuw.toStdString()));
        naar->Update();
    }
    transactie.Commit();
}

void HRdb::RenameDijkring(const QString& oud, const QString& nieuw)
{
    RenameRows(kDijkring, oud, nieuw);
}

void HRdb::DeleteDijkring(const QString& naam)
{
    reOpenDB(false);
    if (!IsOpen() || !TableExists(kDijkring))
        return;
    const auto rows = Open("SELECT * FROM Dijkring WHERE Naam=" + InDubbeleQuotes(naam));
    if (!heeftRecords(rows))
        return;
    Transactie transactie(m_workspace, m_leftOpen);
    for (; !rows->EndOfFile(); rows->MoveNext())
        rows->Delete();
    transactie.Commit();
}
