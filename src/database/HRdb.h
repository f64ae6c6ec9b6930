#pragma once

#include "database/ProfielGegevens.h"
#include "jet/dao/Workspace.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

class LogSink;
class QLMIniFile;
class StatusBar;
class Transactie;

/// "Not known": in every numeric field of boundary conditions and results, and
/// as an id that was not found. As a return-period argument: all of them.
inline constexpr int kNietBekend = -999;

/// A recordset handed out belongs to the caller; it must not outlive the HRdb
/// it came from.
using RecordsetPtr = std::unique_ptr<jet::Recordset>;

/// The outcome of HRdb::OpenDB. Callers show a message for each of 1 to 4.
enum class OpenResult : qint16 {
    Accepted = 0,
    CouldNotOpen = 1, ///< or an error outside the checks
    CheckFailed = 2,
    TooManyLocations = 3, ///< the file stays open
    ResultsDeclined = 4,  ///< the user kept results without output; the file stays open
};

/// The boundary-condition database: the one way to the `.mdb` file.
///
/// The file is edited in place: every change goes straight into it, and what
/// takes several statements runs in a transaction that is flushed to disk. The
/// file is opened exclusively; while it is closed (the calculation core needs
/// it then) the next operation opens it again by itself.
///
/// Names of locations, profiles and calculations compare without regard to
/// case, with regard to accents. Failures go up: as Fout with a number where
/// one is told, else as the engine's own error.
class HRdb {
public:
    HRdb();
    ~HRdb();
    HRdb(const HRdb&) = delete;
    HRdb& operator=(const HRdb&) = delete;

    // --- connection (HRdb_Verbinding.cpp) ---

    /// Opens `path` exclusively; with `check` the guard decides whether it is
    /// acceptable and brings it up to date. After a failure OpenErrDescription
    /// says why. Opening the file that is open already runs no check.
    OpenResult OpenDB(const QString& path, bool readOnly, bool check = false);
    /// Frees the file; `fileName` stays, so that the next operation reopens it.
    void CloseDB();
    /// Opens `fileName` again when it is closed; with `updateDate` its stamp is taken anew.
    void reOpenDB(bool updateDate);
    bool IsOpen() const { return m_database != nullptr; }
    /// Whether the file on disk changed (by a second or more) since it was
    /// opened. Leaves the connection closed.
    bool IsDirty();
    /// The work folder: beside the file, named after it.
    QString WerkMap() const;
    /// Creates the folder when it is missing; its parent must exist.
    void OpenWerkMap(const QString& path);
    const QString& fileName() const { return m_fileName; }
    QString Sourcefilename() const; ///< absolute
    const QString& OpenErrDescription() const { return m_openErrDescription; }
    QDateTime DateLastModifiedByOpen() const { return m_dateLastModifiedByOpen; }
    void setDateLastModifiedByOpen(const QDateTime& stamp) { m_dateLastModifiedByOpen = stamp; }
    /// Neither is owned; either may stay unset.
    void setStatusbarForm(StatusBar* statusBar) { m_statusbarForm = statusBar; }
    void setLogRtb(LogSink* box) { m_logRtb = box; }
    /// The one test for rows; the cursor then stands on the first one. False
    /// for nothing and for a closed recordset.
    static bool heeftRecords(jet::Recordset* recordset);
    static bool heeftRecords(const RecordsetPtr& recordset)
    {
        return heeftRecords(recordset.get());
    }
    RecordsetPtr GetRecordSet(const QString& sql,
                              jet::RecordsetType type = jet::RecordsetType::Dynaset,
                              jet::RecordsetOptions options = {});
    /// Makes one change of the operations that follow: what is not committed is undone.
    [[nodiscard]] Transactie BeginTransactie();

    // --- locations (HRdb_Locaties.cpp) ---

    RecordsetPtr GetLocatieProperties(const QString& naam);
    RecordsetPtr GetLocatieTabel();         ///< nothing when no database is open
    int GetLocatie_ID(const QString& naam); ///< kNietBekend when unknown, or on any error
    int GetKwaliteitskenmerk(const QString& naam);
    /// Coordinates cut off to whole metres. Error 4 for an unknown name.
    void GetXY(const QString& naam, int& x, int& y, int& kwaliteitskenmerk);
    /// The return period that belongs to the location's safety class, years; 0 when unknown.
    double GetNormFrequentie(const QString& naam);
    RecordsetPtr GetVeiligheidsklasseHerhalingstijdProperties(int klasse);
    RecordsetPtr GetBoezempeilenVanLocatie(const QString& naam);
    RecordsetPtr GetHerhalingstijdenBoezempeilstatistiek();
    RecordsetPtr GetWindsectoren();
    int GetRichting_ID(double graden);
    /// Bearings (degrees), bed levels (m) and fetches (m) of a location, as in
    /// use or as delivered. Sixteen sectors with zeros when there are no rows.
    void GetFeHbodem(bool delivered, const QString& naam, QList<double>& richtingen,
                     QList<double>& bodemhoogten, QList<double>& strijklengten);
    /// True when the location still has a sector WITHOUT a known fetch: the
    /// opposite of what the name says. Callers rely on this sense.
    bool LocatieHeeftStrijklengtes(int locatieId);
    /// False when the name exists. A new location gets harmless values
    /// throughout, so that it can be calculated at once. Apostrophes of the name
    /// are stored twice.
    bool AddLocatie(double x, double y, const QString& naam);
    /// With all that hangs from it, its folder in the work folder included. Error 1520.
    bool DeleteLocatie(const QString& naam);
    void UpdateDijknormaal(const QString& naam, double waarde);
    void UpdateStreefpeil(const QString& naam, double waarde); ///< error 1505
    void UpdateBoezempeilstatistiek(const QString& naam, const QList<int>& herhalingstijden,
                                    const QList<double>& peilen); ///< error 1506
    void UpdateFe(const QString& naam, const QList<double>& richtingen,
                  const QList<double>& strijklengten); ///< error 1504
    void UpdateFeHbodem(const QString& naam, const QList<double>& richtingen,
                        const QList<double>& bodemhoogten,
                        const QList<double>& strijklengten); ///< error 1504
    /// Computes the quality mark of all locations anew. Error 1506.
    void UpdateKwaliteitskenmerk();
    /// For a row of changes, each of which would compute the marks of all locations: they are
    /// computed once, behind the last. Not when `changes` throws: roll back then.
    void UpdateKwaliteitskenmerkOnce(const std::function<void()>& changes);

    // --- set-up table (HRdb_Scheefstand.cpp) ---

    /// Checks `Scheefstand` of every location and writes a line for each into the log
    /// box. Errors 12 and 14.
    void Checkscheefstandtabel();

    // --- profiles (HRdb_Profielen.cpp) ---

    RecordsetPtr GetProfielNamen();
    RecordsetPtr GetProfielNamenVanLocatie(const QString& locatie);
    RecordsetPtr GetProfielProperties(const QString& naam);
    RecordsetPtr GetProfielSegementen(int profielId);
    int GetProfiel_ID(const QString& naam);
    int GetMaxProfiel_ID(); ///< kNietBekend when there is none
    bool ProfielHeeftVertikaleWand(const QString& naam);
    bool ProfielUsed(const QString& naam); ///< some location is linked to it
    /// Stores a profile; an older one of that name goes first, its links to
    /// locations too, and the id may change. Returns the id. Error 1502.
    int UpdateProfiel(const ProfielGegevens& profiel);
    void AddProfiel2Location(int locatieId, int profielId);
    void DeleteProfielFromLocation(int locatieId, int profielId);
    void DeleteProfiel(const QString& naam); ///< error 1503

    // --- calculations (HRdb_Berekeningen.cpp) ---

    /// Registers a calculation and returns its id. Errors 1509 (also when there
    /// is one with the same four fields) and 1510.
    int AddBerekening(const QString& naam, int profielId, const QString& faalmechanisme,
                      double overslagdebiet);
    /// The calculation with exactly these four fields; kNietBekend when there is none.
    int FindBerekening(const QString& naam, int profielId, const QString& faalmechanisme,
                       double overslagdebiet);
    /// An empty result row, to be filled by the calculation core. Error 1509.
    void AddNewResultaatRecord(int berekeningId, const QString& locatie, double herhalingstijd);
    void RenameBerekening(const QString& oud, const QString& nieuw);
    bool BerekeningExists(const QString& naam);
    int GetBerekening_ID(const QString& naam); ///< of the first row; kNietBekend
    RecordsetPtr GetBerekening_IDs(const QString& naam);
    /// Without a profile name: the calculation without profile.
    int GetBerekening_ID_Profiel(const QString& naam, const QString& profielnaam);
    void DeleteBerekening(const QString& naam); ///< error 1503
    /// The calculation goes too when no result is left. Error 1503.
    void DeleteBerekeningResultaten(int berekeningId, int locatieId);
    RecordsetPtr GetBerekeningInfo(int berekeningId);
    /// Every pair of location and calculation that has results, a row per result row.
    RecordsetPtr GetBerekeningen();
    RecordsetPtr GetBerekeningNamenFromResultaat();
    RecordsetPtr GetBerekeningNamenFromResultaatNoProfiel();
    /// Whether no location and return period occurs twice in these calculations.
    bool ControleerUniekeLocatiesBijBerekening(const QList<int>& ids);

    // --- results (HRdb_Resultaten.cpp) ---
    // Return periods in years; kNietBekend means all. Rows come with the
    // aliases waarde, naam, X, Y, Herhalingstijd.

    RecordsetPtr GetHBN(int berekeningId, double herhalingstijd);
    RecordsetPtr GetHBNVanHerhalingstijd(const QList<int>& ids, double herhalingstijd);
    RecordsetPtr GetAandelen(int berekeningId, double herhalingstijd);
    RecordsetPtr GetAandeelScheefstand(const QList<int>& ids, double herhalingstijd);
    RecordsetPtr GetAandeelOpwaaiing(const QList<int>& ids, double herhalingstijd);
    RecordsetPtr GetAandeelWindbelasting(const QList<int>& ids, double herhalingstijd);
    RecordsetPtr GetAandeelWaterstand(const QList<int>& ids, double herhalingstijd);
    RecordsetPtr GetDataVoorCsv(int berekeningId);
    RecordsetPtr GetVerschilHBN(const QList<int>& ids1, const QList<int>& ids2,
                                double herhalingstijd);
    RecordsetPtr GetVerschilHBNTussen2Berekeningen(const QList<int>& ids1, const QList<int>& ids2,
                                                   double herhalingstijd);
    RecordsetPtr GetBoezempeilen(double herhalingstijd);
    RecordsetPtr GetBoezempeilenVanHerhalingstijd(double herhalingstijd);
    RecordsetPtr GetMaxScheefstanden(int richtingId);
    RecordsetPtr GetMaxScheefstandVanWindrichtingId(int richtingId);

    RecordsetPtr GetHerhalingstijdenBerekening(const QList<int>& ids);
    RecordsetPtr GetHerhalingstijdenAandeelscheefstand(const QList<int>& ids);
    RecordsetPtr GetHerhalingstijdenAandeelopwaaiing(const QList<int>& ids);
    RecordsetPtr GetHerhalingstijdenAandeelwindbelasting(const QList<int>& ids);
    RecordsetPtr GetHerhalingstijdenAandeelwaterstand(const QList<int>& ids);

    RecordsetPtr GetMinMaxHBNMSMO();
    RecordsetPtr GetMinMaxScheefstanden();
    RecordsetPtr GetMinMaxBoezempeilen();
    /// Widens min and max, which the caller sets first, to the four shares. The
    /// calculations asked for are the POSITIONS of the array, `lowerBound` and
    /// up, not its elements: kept, as callers choose their lower bound for it.
    void GetMinMaxAandelen(const QList<int>& ids, double& min, double& max, int lowerBound = 1);
    void GetMinMaxVerschil(const QList<int>& ids1, const QList<int>& ids2, double& min,
                           double& max);
    /// One field of the current row as the text of an export: numbers with a
    /// point or the system's sign, texts in double quotes, nulls and
    /// `missing` empty.
    static QString GetDbValueFromField(const jet::Recordset& recordset, const QString& veld,
                                       bool puntdecimaal, const double* missing = nullptr);

    // --- dike rings (HRdb_Dijkringen.cpp) ---

    /// Makes the table when it is missing. Nothing when there are no rings.
    RecordsetPtr GetDijkringNamen();
    RecordsetPtr GetDijkring(const QString& naam); ///< nothing when unknown
    RecordsetPtr GetDijkringProperties(const QString& naam);
    RecordsetPtr GetDijkringTabel();
    bool DijkringExists(const QString& naam);
    bool LocatieInDijkring(const QString& locatie);
    bool ProfielInDijkring(const QString& profiel);
    void CopyDijkring(const QString& bron, const QString& nieuw);
    void RenameDijkring(const QString& oud, const QString& nieuw);
    void DeleteDijkring(const QString& naam);

private:
    // connection
    OpenResult OpenOrThrow(const QString& path, bool readOnly, bool check);
    void Connect(bool readOnly); ///< opens m_fileName exclusively
    /// The engine's path of a file that the system names by text.
    static std::filesystem::path EnginePath(const QString& path);
    void Forget();               ///< nothing open, no file name
    jet::Database& Connection(); ///< reopens; raises when there is no database
    RecordsetPtr Open(const QString& sql, jet::RecordsetType type = jet::RecordsetType::Dynaset,
                      jet::RecordsetOptions options = {});
    int Execute(const QString& sql);
    bool HasRows(const QString& sql);
    /// The first field of the first row, an id; kNietBekend without a row.
    int FindId(const QString& sql, jet::RecordsetType type = jet::RecordsetType::Dynaset);
    /// The number of rows; the cursor then stands on the first one.
    static int CountRows(const RecordsetPtr& recordset);
    /// `Naam` of all rows of `tabel` that bear the old name. Nothing happens without
    /// a new name, a database or the table.
    void RenameRows(const QString& tabel, const QString& oud, const QString& nieuw);
    QString RelativeFileName() const;
    /// The row of fieldNameTable whose first name is `name`, without regard to case; -1.
    int FieldNameRow(const QString& name) const;

    // locations
    /// Makes one change of `wijziging` and refreshes the marks; `fout` when it fails.
    void ChangeLocatie(int fout, const std::function<void()>& wijziging);
    void InsertLocatie(double x, double y, const QString& opgeslagen);
    bool StreefpeilBekend(int locatieId);
    bool DijknormaalBekend(int locatieId);
    bool BoezempeilenBekend(int locatieId);
    bool ScheefstandBekend(int locatieId);
    bool HeeftProfiel(int locatieId);
    void DeleteBoezempeilen(const QString& locatieId);

    // set-up table: row 0 the wind speeds in rising order, row 1 the set-ups
    using Scheefstandtabel = std::array<std::vector<double>, 2>;
    bool ControleerLocatieScheefstand(int locatieId, const QList<int>& sectoren, QString& melding);
    Scheefstandtabel ReadScheefstand(int locatieId, int sector);
    static bool IsOplopend(const Scheefstandtabel& tabel);
    static bool IsNietNegatief(const Scheefstandtabel& tabel);
    static bool ZelfdeWindsnelheden(const Scheefstandtabel& een, const Scheefstandtabel& twee);

    // profiles
    int InsertProfiel(const ProfielGegevens& profiel);
    void InsertProfielSegment(int profielId, const ProfielPunt& punt);

    // results
    struct MinMax {
        double minimum, maximum;
    };
    void GetMinMaxScheefstandAandeel(int berekeningId, MinMax& bounds);
    void GetMinMaxOpwaaiingAandeel(int berekeningId, MinMax& bounds);
    void GetMinMaxWaterstandAandeel(int berekeningId, MinMax& bounds);
    void GetMinMaxWindbelastingAandeel(int berekeningId, MinMax& bounds);
    void WidenByMinMax(const QString& sql, MinMax& bounds);

    // guard (HRdb_Bewaking.cpp)
    OpenResult Guard(bool readOnly);
    bool CheckDatabaseSchema();
    void CheckTableStructure();
    void EnsureVeiligheidsklasseTable();
    void EnsureBerekeningTable();
    void EnsureResultaatTable();
    void RefreshStatistiekTables();
    void EnsureGrasField();
    void CheckFieldsOfTable(QLMIniFile& tabellen, const QString& tabel);
    void UpgradeProfielen();
    void CheckLocatieNamenUniek();
    bool CheckLocatieNamenBruikbaar();
    static bool IsBruikbareMapnaam(const QString& tekst);
    bool TableExists(const QString& tabel);
    bool FieldExists(const QString& tabel, const QString& veldnaam);
    struct LocatieNamen {
        QStringList verschillend;
        bool dubbel = false; ///< two locations share a name
    };
    LocatieNamen ReadLocatieNamen();
    /// Deals with results whose output folder is gone; `result` is the outcome so far.
    OpenResult ReconcileResults(OpenResult result);
    /// Keeps a copy of the file as it was before the guard changes it; once per open.
    void KeepCopyBeforeChange();

    std::array<std::pair<QString, QString>, 14> m_fieldNameTable;
    QString m_quotedFieldList;
    QString m_fileName; // kept by CloseDB
    QString m_openErrDescription;
    jet::Workspace m_workspace;                // outlives the database below
    std::unique_ptr<jet::Database> m_database; // empty while closed
    StatusBar* m_statusbarForm = nullptr;      // not owned
    LogSink* m_logRtb = nullptr;               // not owned
    QDateTime m_dateLastModifiedByOpen;
    int m_leftOpen = 0;       // transactions that a failed operation left open
    int m_marksPostponed = 0; // nested calls of UpdateKwaliteitskenmerkOnce
    bool m_copyKept = false;
    QString m_copyReport; // what KeepCopyBeforeChange has to tell
};
