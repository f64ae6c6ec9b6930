#include "database/HRdb.h"
#include "database/SqlTekst.h"
#include "database/Transactie.h"

#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/Ports.h"
#include "frame/QLMIniFile.h"

#include <QDate>
#include <QFileInfo>
#include <QSet>

// The guard: decides whether a file is acceptable and brings an older one up to
// the present schema. The order of its steps binds: what an earlier step has
// changed stays changed when a later one refuses the file.

namespace {

constexpr int kMaximumAantalLocaties = 1000;

/// In the order in which they are dropped and copied.
constexpr const char* kStatistiektabellen[] = {"Kanswindrichting winter", "Kanswindrichting zomer",
                                               "Windstatistiek winter", "Windstatistiek zomer",
                                               "Transformatietabel"};

/// The fields of Profielen that came later, all in one step.
const QStringList kLatereProfielvelden{
    "kruinbreedte",          "taludhelling",         "constructietype", "palenrij",
    "paaldiameter",          "hartafstandpalen",     "rietkraag",       "vegetatiebreedte",
    "aantallevendestengels", "seizoensinvloedfactor"};

/// A calculation at a location, and the folder that should hold its output.
struct BerekeningMap {
    int locatieId, berekeningId;
    QString locatie, berekening, map;
};

/// A file as a statement names it. Square brackets cannot hold a closing one, which a
/// folder's name can.
QString NaamVanBestand(const QString& pad)
{
    return pad.contains(']') ? '`' + pad + '`' : '[' + pad + ']';
}

QString BerekeningMapnaam(const QString& berekening, const QString& profiel)
{
    return profiel.trimmed().isEmpty() ? berekening : berekening + "_" + profiel;
}

/// Each pair of location and calculation once, in the order of the rows: there is one for
/// every result, and those of a pair need not stand together.
QList<BerekeningMap> ReadBerekeningMappen(const RecordsetPtr& berekeningen)
{
    QList<BerekeningMap> mappen;
    QSet<std::pair<int, int>> gezien;
    for (; !berekeningen->EndOfFile(); berekeningen->MoveNext()) {
        const int locatieId = berekeningen->Get("locatieid").AsInt();
        const int berekeningId = berekeningen->Get("berekeningid").AsInt();
        const std::pair sleutel(locatieId, berekeningId);
        if (gezien.contains(sleutel))
            continue;
        gezien.insert(sleutel);
        const QString berekening = veld::Tekst(*berekeningen, "berekeningnaam");
        mappen << BerekeningMap{
            locatieId, berekeningId, veld::Tekst(*berekeningen, "locatieomschrijving"), berekening,
            BerekeningMapnaam(berekening, veld::Tekst(*berekeningen, "profielnaam"))};
    }
    return mappen;
}

} // namespace

OpenResult HRdb::Guard(bool readOnly)
{
    if (!CheckDatabaseSchema() || !CheckLocatieNamenBruikbaar()) {
        Forget();
        return OpenResult::CheckFailed;
    }

    auto result = CountRows(GetLocatieTabel()) > kMaximumAantalLocaties
                      ? OpenResult::TooManyLocations
                      : OpenResult::Accepted;
    result = ReconcileResults(result);
    if (!readOnly)
        UpdateKwaliteitskenmerk();
    return result;
}

OpenResult HRdb::ReconcileResults(OpenResult result)
{
    const QString werkmap = WerkMap();
    auto berekeningen = GetBerekeningen();
    if (!heeftRecords(berekeningen)) {
        if (!gFso().FolderExists(werkmap))
            OpenWerkMap(werkmap);
        return result;
    }
    // Read to its end first: what is deleted below would change the list.
    const auto mappen = ReadBerekeningMappen(berekeningen);
    berekeningen.reset();

    if (!gFso().FolderExists(werkmap)) {
        if (!gBoxes.Exists() || gBoxes().AskQuestion(200, {werkmap}) != Answer::Yes)
            return OpenResult::ResultsDeclined;
        OpenWerkMap(werkmap);
        KeepCopyBeforeChange();
        for (const auto& map : mappen)
            DeleteBerekening(map.berekening);
        return result;
    }
    if (result != OpenResult::Accepted)
        return result;

    bool nietMeerVragen = false;
    QHash<QString, QSet<QString>> uitvoermappen; // of each location, lower case
    for (const auto& map : mappen) {
        if (!uitvoermappen.contains(map.locatie)) {
            const QString ouder =
                gFso().BuildPath(gFso().BuildPath(werkmap, map.locatie), "Berekeningen");
            QSet<QString>& namen = uitvoermappen[map.locatie];
            for (const QString& naam : gFso().SubFolders(ouder))
                namen.insert(naam.toLower());
        }
        if (uitvoermappen[map.locatie].contains(map.map.toLower()))
            continue;
        if (!nietMeerVragen) {
            const int antwoord = gBoxes.Exists()
                                     ? gBoxes().AskQuestionButtons(201, "Ja", "Nee", "Ja op alles",
                                                                   {map.map, map.locatie})
                                     : Answer::Second;
            if (antwoord == Answer::Third)
                nietMeerVragen = true;
            else if (antwoord != Answer::First)
                return OpenResult::ResultsDeclined;
        }
        KeepCopyBeforeChange();
        DeleteBerekeningResultaten(map.berekeningId, map.locatieId);
    }
    return result;
}

bool HRdb::CheckDatabaseSchema()
{
    try {
        CheckTableStructure();
        CheckLocatieNamenUniek();
        return true;
    } catch (const std::exception& error) {
        m_openErrDescription = Description(error);
        return false;
    }
}

void HRdb::CheckTableStructure()
{
    EnsureVeiligheidsklasseTable();
    EnsureBerekeningTable();
    EnsureResultaatTable();
    RefreshStatistiekTables();

    QLMIniFile tabellen(gFso().BuildPath(gIniPath(), "DbTables.ini"));
    const QString geenTabel = "NO MORE FILES";
    for (int i = 1;; ++i) {
        const QString tabel = tabellen.GetString("TABLES", "t." + QString::number(i), geenTabel);
        if (tabel == geenTabel)
            break;
        if (!TableExists(tabel))
            RaiseFout(1500, {m_fileName, tabel});
        CheckFieldsOfTable(tabellen, tabel);
    }
    EnsureGrasField();
}

void HRdb::EnsureVeiligheidsklasseTable()
{
    if (TableExists("VeiligheidsklasseHerhalingstijd"))
        return;
    KeepCopyBeforeChange();
    using jet::ColumnType;
    Transactie transactie(m_workspace, m_leftOpen); // never a table with some of its rows
    m_database->CreateTable({.name = "VeiligheidsklasseHerhalingstijd",
                             .fields = {{.name = "Veiligheidsklasse", .type = ColumnType::Long},
                                        {.name = "Herhalingstijd", .type = ColumnType::Double}}});
    Execute("INSERT INTO VeiligheidsklasseHerhalingstijd VALUES (1,10);");
    Execute("INSERT INTO VeiligheidsklasseHerhalingstijd VALUES (2,30);");
    Execute("INSERT INTO VeiligheidsklasseHerhalingstijd VALUES (3,100);");
    Execute("INSERT INTO VeiligheidsklasseHerhalingstijd VALUES (4,300);");
    Execute("INSERT INTO VeiligheidsklasseHerhalingstijd VALUES (5,1000);");
    transactie.Commit();
}

void HRdb::EnsureBerekeningTable()
{
    if (TableExists("Berekening"))
        return;
    KeepCopyBeforeChange();
    using jet::ColumnType;
    m_database->CreateTable(
        {.name = "Berekening",
         .fields = {{.name = "Id", .type = ColumnType::Long, .autoNumber = true},
                    {.name = "Naam", .type = ColumnType::Text, .size = 255},
                    {.name = "ProfielId", .type = ColumnType::Long},
                    {.name = "Faalmechanisme", .type = ColumnType::Text, .size = 50},
                    {.name = "QOverslag", .type = ColumnType::Double}},
         .indexes = {{.name = "PrimaryKey", .fields = {{"Id"}}, .primary = true, .unique = true},
                     {.name = "SecondaryKey",
                      .fields = {{"Naam"}, {"ProfielId"}, {"Faalmechanisme"}, {"QOverslag"}},
                      .unique = true,
                      .required = true}}});
}

void HRdb::EnsureResultaatTable()
{
    if (TableExists("Resultaat"))
        return;
    KeepCopyBeforeChange();
    using jet::ColumnType;
    jet::TableDef tabel{.name = "Resultaat"};
    const auto sleutel = [&tabel](const char* naam, ColumnType type) {
        tabel.fields.push_back({.name = naam, .type = type, .required = true, .defaultValue = "0"});
    };
    sleutel("Berekening_ID", ColumnType::Long);
    sleutel("Locatie_ID", ColumnType::Long);
    sleutel("Herhalingstijd", ColumnType::Double);
    for (const char* naam :
         {"HBN_MS_MO", "OVERLOOP_MS_MO", "OVERLOOP_MS_ZO", "BOEZEMPEIL", "STREEFPEIL",
          "DOMINANTE WINDRICHTING", "WATERSTAND", "GOLFHOOGTE", "PIEKPERIODE", "GOLFRICHTING"})
        tabel.fields.push_back({.name = naam, .type = ColumnType::Double, .defaultValue = "-999"});
    tabel.indexes = {{.name = "PrimaryKey",
                      .fields = {{"Berekening_Id"}, {"Locatie_Id"}, {"Herhalingstijd"}},
                      .primary = true,
                      .unique = true}};
    m_database->CreateTable(tabel);
}

void HRdb::RefreshStatistiekTables()
{
    // The same momentary probability in winter and in summer marks an old database.
    if (!HasRows("SELECT [Kanswindrichting winter].[Momentane kans], [Kanswindrichting "
                 "zomer].[Momentane kans] FROM [Kanswindrichting winter] INNER JOIN "
                 "[Kanswindrichting zomer] ON [Kanswindrichting winter].Richting_ID = "
                 "[Kanswindrichting zomer].Richting_ID WHERE [Kanswindrichting winter].[Momentane "
                 "kans]=[Kanswindrichting zomer].[Momentane kans];"))
        return;
    KeepCopyBeforeChange();
    for (const char* tabel : kStatistiektabellen)
        Execute(QStringLiteral("DROP TABLE [%1];").arg(QLatin1String(tabel)));

    const QString statistieken =
        AbsolutePath(gIniFile().GetString("ALGEMEEN", "Statistieken.mdb", ""));
    if (!FileExists(statistieken))
        return; // the walk over the tables reports the first as missing

    CloseDB();
    {
        const auto bron = m_workspace.OpenDatabase(EnginePath(statistieken),
                                                   {.exclusive = true, .readOnly = true});
        const QString doel = NaamVanBestand(ResolvePath(m_fileName));
        for (const char* tabel : kStatistiektabellen)
            bron->Execute(
                ("SELECT * into " + doel + ".[" + tabel + "] FROM [" + tabel + "];").toStdString());
    }
    Connect(false);
}

void HRdb::EnsureGrasField()
{
    if (FieldExists("Profielsegmenten", "Gras"))
        return;
    KeepCopyBeforeChange();
    m_database->AddField(
        "Profielsegmenten",
        {.name = "Gras", .type = jet::ColumnType::Boolean, .defaultValue = "False"});
}

void HRdb::CheckFieldsOfTable(QLMIniFile& tabellen, const QString& tabel)
{
    const QString geenVeld = "NO MORE FIELDS";
    const bool opwaardeerbaar = tabel.compare("Profielen", Qt::CaseInsensitive) == 0;
    for (int i = 1;; ++i) {
        const QString regel = tabellen.GetString(tabel, "f." + QString::number(i), geenVeld);
        if (regel == geenVeld)
            return;
        const QString veldnaam = regel.section(';', 0, 0);
        if (FieldExists(tabel, veldnaam))
            continue;
        if (!opwaardeerbaar || !kLatereProfielvelden.contains(veldnaam.toLower()))
            RaiseFout(1501, {m_fileName, tabel, veldnaam});
        UpgradeProfielen(); // brings the other nine as well
    }
}

void HRdb::UpgradeProfielen()
{
    KeepCopyBeforeChange();
    Transactie transactie(m_workspace, m_leftOpen);
    // All ten in one statement: a table that lacks only some of them is no
    // known state, and is refused by the engine here.
    Execute("ALTER TABLE Profielen ADD COLUMN [Kruinbreedte] SINGLE NOT NULL,[Taludhelling] SINGLE "
            "NOT NULL,[Constructietype] INTEGER NOT NULL,[Palenrij] INTEGER NOT "
            "NULL,[Paaldiameter] SINGLE NOT NULL,[HartafstandPalen] SINGLE NOT NULL,[Rietkraag] "
            "INTEGER NOT NULL,[Vegetatiebreedte] SINGLE NOT NULL,[AantalLevendeStengels] SINGLE "
            "NOT NULL,[SeizoensinvloedFactor] SINGLE NOT NULL;");
    // In this dialect INTEGER has 32 bits; these fields are to have 16.
    for (const char* veld : {"Constructietype", "Palenrij", "Rietkraag"})
        m_database->ChangeField("Profielen",
                                {.name = veld, .type = jet::ColumnType::Integer, .required = true});
    const auto profielen = Open("SELECT * FROM Profielen;");
    if (heeftRecords(profielen)) {
        for (; !profielen->EndOfFile(); profielen->MoveNext()) {
            profielen->Edit();
            for (const QString& naam : kLatereProfielvelden)
                profielen->Set(naam.toStdString(), jet::Value(0));
            profielen->Update();
        }
    }
    transactie.Commit();
}

HRdb::LocatieNamen HRdb::ReadLocatieNamen()
{
    LocatieNamen resultaat;
    const auto verschillend = Open("SELECT DISTINCT omschrijving FROM Locatie");
    const auto alle = Open("SELECT omschrijving FROM Locatie");
    resultaat.dubbel = CountRows(verschillend) != CountRows(alle);
    if (heeftRecords(verschillend))
        for (; !verschillend->EndOfFile(); verschillend->MoveNext())
            resultaat.verschillend << veld::Tekst(*verschillend, "omschrijving");
    return resultaat;
}

void HRdb::CheckLocatieNamenUniek()
{
    const auto namen = ReadLocatieNamen();
    if (namen.dubbel)
        RaiseFout(1507, {RelativeFileName(), "Locaties"});
    for (const QString& naam : namen.verschillend)
        if (!IsBruikbareMapnaam(naam))
            RaiseFout(3004, {naam});
}

bool HRdb::CheckLocatieNamenBruikbaar()
{
    try {
        const auto namen = ReadLocatieNamen();
        if (namen.dubbel)
            RaiseFout(10, {RelativeFileName()});
        for (const QString& naam : namen.verschillend)
            if (!IsBruikbareMapnaam(naam))
                RaiseFout(11, {RelativeFileName(), naam});
        return true;
    } catch (const std::exception& error) {
        m_openErrDescription = Description(error);
        return false;
    }
}

bool HRdb::IsBruikbareMapnaam(const QString& tekst)
{
    if (tekst.isEmpty() || tekst.startsWith('.'))
        return false;
    const QString verboden = QStringLiteral("\\/:*?<>|\"");
    for (const QChar teken : tekst)
        if (verboden.contains(teken))
            return false;
    return true;
}

bool HRdb::TableExists(const QString& tabel)
{
    return Connection().HasTable(tabel.toStdString());
}

bool HRdb::FieldExists(const QString& tabel, const QString& veldnaam)
{
    return Connection().GetTableDef(tabel.toStdString()).FindField(veldnaam.toStdString());
}

void HRdb::KeepCopyBeforeChange()
{
    if (m_copyKept || m_database->IsReadOnly())
        return;
    m_copyKept = true; // also when it fails: one message is enough
    const QFileInfo bestand(ResolvePath(m_fileName));
    const QString basis =
        gFso().BuildPath(bestand.path(), bestand.completeBaseName() + ".voor-opwaardering-" +
                                             QDate::currentDate().toString(Qt::ISODate));
    // An earlier copy is never overwritten.
    QString kopie = basis + ".mdb";
    for (int i = 2; FileExists(kopie); ++i)
        kopie = basis + "-" + QString::number(i) + ".mdb";

    // Nothing can copy the file while we hold it exclusively.
    CloseDB();
    m_copyReport = "Kopie van de database bewaard als " + QFileInfo(kopie).fileName();
    try {
        gFso().CopyFile(m_fileName, kopie);
    } catch (const std::exception& error) {
        m_copyReport = "Er kon geen kopie van de database worden bewaard: " +
                       Description(error).replace('|', ' ');
    }
    Connect(false);
    if (m_statusbarForm)
        m_statusbarForm->SetStatusBarText(m_copyReport);
}
