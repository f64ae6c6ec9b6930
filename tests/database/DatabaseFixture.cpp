#include "DatabaseFixture.h"

#include "MaakDatabase.h"

#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"

#include <mutex>

namespace {

namespace fs = std::filesystem;

/// Made once a run, then copied: making takes longer than a test.
const fs::path& Sjabloon(bool ouderwets)
{
    static const TemporaryFolder folder;
    static std::map<bool, fs::path> gemaakt;
    auto& pad = gemaakt[ouderwets];
    if (pad.empty()) {
        pad = folder / (ouderwets ? "oud.mdb" : "voorbeeld.mdb");
        voorbeeld::MaakRandvoorwaarden(pad,
                                       {.locaties = voorbeeld::Locaties(), .ouderwets = ouderwets});
    }
    return pad;
}

std::string Tekst(const jet::Value& waarde)
{
    return waarde.IsNull() ? "null" : waarde.AsText();
}

} // namespace

DatabaseTest::DatabaseTest()
{
    const fs::path data = fs::path(PROJECT_DATA_FOLDER);
    fs::copy_file(data / "Zandvoet.ini", folder / "Zandvoet.ini");
    fs::create_directory(folder / "data");
    fs::copy_file(data / "DbTables.ini", folder / "data" / "DbTables.ini");
    SetProgramFolder(QString::fromStdString(folder.Path().string()));
    SetIniPath(Pad("data"));
    gIniFile.Release();
    gBoxes.Refer(boxes);
    db.setStatusbarForm(&status);
    db.setLogRtb(&log);
}

DatabaseTest::~DatabaseTest()
{
    gBoxes.Release();
    gIniFile.Release();
    SetProgramFolder({});
}

QString DatabaseTest::Pad(const std::string& naam) const
{
    return QString::fromStdString((folder / naam).string());
}

void DatabaseTest::MaakMap(const QString& pad)
{
    fs::create_directories(pad.toStdString());
}

QString DatabaseTest::VoorbeeldDatabase(const std::string& naam)
{
    fs::copy_file(Sjabloon(false), folder / naam);
    return Pad(naam);
}

QString DatabaseTest::OudeDatabase(const std::string& naam)
{
    fs::copy_file(Sjabloon(true), folder / naam);
    return Pad(naam);
}

void DatabaseTest::OpenVoorbeeld()
{
    ASSERT_EQ(db.OpenDB(VoorbeeldDatabase(), false, false), OpenResult::Accepted)
        << db.OpenErrDescription().toStdString();
}

Rijen DatabaseTest::Lees(const QString& bestand, const std::string& sql)
{
    jet::Workspace workspace;
    const auto database =
        workspace.OpenDatabase(bestand.toStdString(), {.exclusive = true, .readOnly = true});
    return Alle(database->OpenRecordset(sql, jet::RecordsetType::Snapshot));
}

Rijen DatabaseTest::Lees(const std::string& sql)
{
    return Alle(db.GetRecordSet(QString::fromStdString(sql), jet::RecordsetType::Snapshot));
}

void DatabaseTest::Voeruit(const QString& bestand, const std::vector<std::string>& statements)
{
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(bestand.toStdString());
    workspace.BeginTrans();
    for (const std::string& statement : statements)
        database->Execute(statement);
    workspace.CommitTrans();
}

void DatabaseTest::ExpectSound(const QString& bestand)
{
    jet::Workspace workspace;
    const auto database =
        workspace.OpenDatabase(bestand.toStdString(), {.exclusive = true, .readOnly = true});
    EXPECT_THAT(database->Check().faults, testing::IsEmpty());
}

Rijen Alle(const RecordsetPtr& rijen)
{
    Rijen alle;
    if (!HRdb::heeftRecords(rijen))
        return alle;
    for (; !rijen->EndOfFile(); rijen->MoveNext()) {
        auto& rij = alle.emplace_back();
        for (std::size_t veld = 0; veld < rijen->Fields().size(); ++veld)
            rij.push_back(Tekst(rijen->Get(static_cast<int>(veld))));
    }
    return alle;
}

Rijen Alle(const RecordsetPtr& rijen, const std::vector<std::string>& velden)
{
    Rijen alle;
    if (!HRdb::heeftRecords(rijen))
        return alle;
    for (; !rijen->EndOfFile(); rijen->MoveNext()) {
        auto& rij = alle.emplace_back();
        for (const std::string& veld : velden)
            rij.push_back(Tekst(rijen->Get(veld)));
    }
    return alle;
}
