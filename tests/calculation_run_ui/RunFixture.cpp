#include "RunFixture.h"

#include "MaakDatabase.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

/// Made once a run, then copied: making takes longer than a test.
const fs::path& Sjabloon()
{
    static const TemporaryFolder folder;
    static const fs::path pad = [] {
        const fs::path gemaakt = folder / "voorbeeld.mdb";
        voorbeeld::MaakRandvoorwaarden(gemaakt, {.locaties = voorbeeld::Locaties()});
        return gemaakt;
    }();
    return pad;
}

} // namespace

RunTest::RunTest()
{
    SetRekeninstellingenPath(Pad("data"));
    gBoxes.Refer(boxen);
    fs::copy_file(Sjabloon(), Pad("boezem.mdb").toStdString());
    EXPECT_EQ(db.OpenDB(Pad("boezem.mdb"), false, false), OpenResult::Accepted);
    boom.setTreeViewObject(&boomvenster);
    QTreeWidgetItem* root = boom.AddRoot(navkey::RootLocaties, "Locaties", false);
    boom.addLocatiesFromDb2Root(
        root, db.GetRecordSet("SELECT OMSCHRIJVING AS OMSCHR FROM Locatie ORDER BY Locatie_ID"));
    boom.addProfielenFromDb2Locaties(root);
    boom.AddRoot(navkey::RootBerekeningen, "Berekeningen", true);
}

RunTest::~RunTest()
{
    gBoxes.Release();
    SetRekeninstellingenPath({});
}

QByteArray RunTest::Lees(const QString& pad) const
{
    QFile bestand(pad);
    return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray();
}

QString RunTest::Instelling(const char* sectie, const char* sleutel) const
{
    QLMIniFile ini(Pad("data/Instellingen.ini"));
    return ini.GetString(sectie, sleutel, "(afwezig)");
}

void RunTest::ZetInstelling(const char* sectie, const char* sleutel, const QString& waarde) const
{
    QLMIniFile ini(Pad("data/Instellingen.ini"));
    ini.SaveString(sectie, sleutel, waarde);
}

void RunTest::Rekenhart(const QByteArray& script) const
{
    installatie.Write("Rekenprogramma", "#!/bin/sh\n" + script + "\n");
    QFile::setPermissions(Pad("Rekenprogramma"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void RunTest::Voeruit(const std::string& sql)
{
    db.CloseDB();
    {
        jet::Workspace workspace;
        workspace.OpenDatabase(Pad("boezem.mdb").toStdString())->Execute(sql);
    }
    db.reOpenDB(true);
}

int RunTest::Tel(const QString& sql)
{
    const auto rijen = db.GetRecordSet(sql);
    return HRdb::heeftRecords(rijen) ? rijen->Get(0).AsIntOr(-1) : -1;
}

QString RunTest::Map(const QString& locatie, const QString& naam) const
{
    return db.WerkMap() + "/" + locatie + "/Berekeningen/" + naam;
}
