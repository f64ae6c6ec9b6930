#include "database/HRdb.h"

#include "database/FolderChanges.h"
#include "database/SqlTekst.h"
#include "database/Transactie.h"

#include "frame/Busy.h"
#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/Ports.h"

#include <QFileInfo>
#include <QStringList>

namespace {

QDateTime Stamp(const QString& path)
{
    return QFileInfo(ResolvePath(path)).lastModified();
}

} // namespace

HRdb::HRdb()
    : m_fieldNameTable{{{"xcoor", "sx"},
                        {"ycoor", "sy"},
                        {"qbr", ""},
                        {"qlith", ""},
                        {"maxwinds", ""},
                        {"windr", ""},
                        {"behsvk", ""},
                        {"zmaxmamo", ""},
                        {"zmax", ""},
                        {"hsign", ""},
                        {"tpiek", ""},
                        {"dir", ""},
                        {"B", ""},
                        {"fe", ""}}}
{
    QStringList namen;
    for (const auto& [naam, tweedeNaam] : m_fieldNameTable)
        namen << '\'' + naam + '\'';
    m_quotedFieldList = namen.join(',');
}

HRdb::~HRdb()
{
    CloseDB();
}

int HRdb::FieldNameRow(const QString& name) const
{
    for (std::size_t row = 0; row < m_fieldNameTable.size(); ++row)
        if (m_fieldNameTable[row].first.toUpper() == name.toUpper())
            return static_cast<int>(row);
    return -1;
}

OpenResult HRdb::OpenDB(const QString& path, bool readOnly, bool check)
{
    const BusyScope busy;
    m_openErrDescription.clear();
    try {
        return OpenOrThrow(path, readOnly, check);
    } catch (const std::exception& error) {
        m_openErrDescription = Description(error);
        Forget();
        if (m_statusbarForm) {
            m_statusbarForm->ClearStatusBarText();
            m_statusbarForm->HideProgress();
        }
        return OpenResult::CouldNotOpen;
    }
}

OpenResult HRdb::OpenOrThrow(const QString& path, bool readOnly, bool check)
{
    QString vorigeStatus;
    if (m_statusbarForm)
        vorigeStatus = m_statusbarForm->ClearStatusBarText();

    auto result = OpenResult::Accepted;
    if (IsOpen() && m_fileName.toUpper() != path.toUpper())
        CloseDB();
    if (!IsOpen()) {
        m_fileName = path;
        m_copyKept = false;
        m_copyReport.clear();
        Connect(readOnly);
        if (!readOnly)
            FolderChanges::UndoInterrupted(WerkMap());
        if (check) {
            if (m_statusbarForm)
                m_statusbarForm->SetStatusBarText(
                    "Controleer of database geschikt is voor Zandvoet...");
            result = Guard(readOnly);
        }
        if (m_statusbarForm) {
            m_statusbarForm->ClearStatusBarText();
            m_statusbarForm->SetStatusBarText(vorigeStatus);
            m_statusbarForm->SetStatusBarText(m_copyReport); // stays, to be read
            m_statusbarForm->HideProgress();
        }
    }
    m_dateLastModifiedByOpen = Stamp(path);
    return result;
}

std::filesystem::path HRdb::EnginePath(const QString& path)
{
    return std::filesystem::path(ResolvePath(path).toStdU16String());
}

void HRdb::Connect(bool readOnly)
{
    m_database =
        m_workspace.OpenDatabase(EnginePath(m_fileName), {.exclusive = true, .readOnly = readOnly});
}

void HRdb::CloseDB()
{
    if (m_database) {
        while (m_workspace.TransactionDepth() > 0) {
            try {
                m_workspace.Rollback();
            } catch (const jet::Error&) {
                // The journal stays beside the file; the next opener plays it back.
            }
        }
        m_database->Close();
        m_database.reset();
    }
    m_leftOpen = 0;
}

void HRdb::Forget()
{
    CloseDB();
    m_fileName.clear();
}

Transactie HRdb::BeginTransactie()
{
    reOpenDB(false);
    return Transactie(m_workspace, m_leftOpen);
}

void HRdb::reOpenDB(bool updateDate)
{
    if (m_fileName.trimmed().isEmpty() || IsOpen())
        return;
    Connect(false);
    if (updateDate)
        m_dateLastModifiedByOpen = Stamp(m_fileName);
}

bool HRdb::IsDirty()
{
    reOpenDB(false);
    if (!IsOpen())
        return false;
    CloseDB();
    return m_dateLastModifiedByOpen.secsTo(Stamp(m_fileName)) != 0;
}

QString HRdb::WerkMap() const
{
    const QFileInfo file(ResolvePath(m_fileName));
    return UncToDrive(gFso().BuildPath(file.path(), file.completeBaseName()));
}

void HRdb::OpenWerkMap(const QString& path)
{
    const QString map = UncToDrive(path);
    if (gFso().FolderExists(map))
        return;
    const QString ouder = QFileInfo(ResolvePath(map)).path();
    if (!gFso().FolderExists(ouder))
        RaiseRuntimeFout(RuntimeFout::FileAccess,
                         "De map kan niet worden gemaakt, want de map erboven ontbreekt: " + map);
    gFso().CreateFolder(map);
}

QString HRdb::Sourcefilename() const
{
    return AbsolutePath(m_fileName);
}

bool HRdb::heeftRecords(jet::Recordset* recordset)
{
    if (!recordset || !recordset->IsOpen())
        return false;
    if (recordset->Type() == jet::RecordsetType::Table) {
        if (recordset->BOF() && recordset->EndOfFile())
            return false;
        recordset->MoveFirst();
        return !recordset->EndOfFile();
    }
    if (recordset->BOF() && recordset->EndOfFile())
        return false;
    recordset->MoveFirst();
    return recordset->AbsolutePosition() != -1;
}

RecordsetPtr HRdb::GetRecordSet(const QString& sql, jet::RecordsetType type,
                                jet::RecordsetOptions options)
{
    return Open(sql, type, options);
}

jet::Database& HRdb::Connection()
{
    reOpenDB(false);
    if (!IsOpen())
        RaiseRuntimeFout(RuntimeFout::InvalidArgument, "Er is geen database geopend.");
    return *m_database;
}

RecordsetPtr HRdb::Open(const QString& sql, jet::RecordsetType type, jet::RecordsetOptions options)
{
    return Connection().OpenRecordset(sql.toStdString(), type, options);
}

int HRdb::Execute(const QString& sql)
{
    return Connection().Execute(sql.toStdString());
}

bool HRdb::HasRows(const QString& sql)
{
    return heeftRecords(Open(sql));
}

int HRdb::FindId(const QString& sql, jet::RecordsetType type)
{
    const auto rows = Open(sql, type);
    return heeftRecords(rows) ? rows->Get(0).AsIntOr(kNietBekend) : kNietBekend;
}

int HRdb::CountRows(const RecordsetPtr& recordset)
{
    if (!heeftRecords(recordset))
        return 0;
    recordset->MoveLast();
    const int aantal = recordset->RecordCount();
    recordset->MoveFirst();
    return aantal;
}

void HRdb::RenameRows(const QString& tabel, const QString& oud, const QString& nieuw)
{
    reOpenDB(false);
    if (nieuw.trimmed().isEmpty() || !IsOpen() || !TableExists(tabel))
        return;
    const auto rows = Open("SELECT * FROM " + tabel + " WHERE Naam=" + sql::InDubbeleQuotes(oud));
    if (!heeftRecords(rows))
        return;
    Transactie transactie(m_workspace, m_leftOpen);
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        rows->Edit();
        rows->Set("Naam", jet::Value(nieuw.toStdString()));
        rows->Update();
    }
    transactie.Commit();
}

QString HRdb::RelativeFileName() const
{
    return RelativePath(m_fileName);
}
