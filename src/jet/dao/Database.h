#pragma once

#include "jet/catalog/TableDef.h"
#include "jet/dao/Recordset.h"
#include "jet/upkeep/CheckReport.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace jet {

class Session;

/// One open database file.
///
/// SQL is Jet's dialect, in UTF-8. Recordsets stay valid until they or the
/// database are closed; then every operation throws Closed.
class Database {
public:
    ~Database(); ///< closes
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    const std::filesystem::path& Name() const; ///< the file
    bool IsOpen() const;
    bool IsReadOnly() const;
    /// Frees the file at once. A transaction still open on it is rolled back.
    void Close();

    /// User tables in the order of their names.
    std::vector<std::string> TableNames(bool withSystemTables = false) const;
    bool HasTable(std::string_view name) const;
    /// A snapshot of the table's definition. Throws UnknownTable.
    TableDef GetTableDef(std::string_view name) const;
    void CreateTable(const TableDef& table);
    void DropTable(std::string_view name);
    void RenameTable(std::string_view name, std::string_view newName);
    void AddField(std::string_view table, const FieldDef& field);
    /// All in one change; see Catalog::AddColumns for what existing rows get.
    void AddFields(std::string_view table, const std::vector<FieldDef>& fields);
    /// Gives the field of this name another type, size and properties; the values
    /// are converted. Throws InUse while an index uses the field.
    void ChangeField(std::string_view table, const FieldDef& field);
    void DropField(std::string_view table, std::string_view field);
    void CreateIndex(std::string_view table, const IndexDef& index);
    void DropIndex(std::string_view table, std::string_view index);
    void SetFieldProperty(std::string_view table, std::string_view field, std::string_view property,
                          const Value& value);
    Value FieldProperty(std::string_view table, std::string_view field,
                        std::string_view property) const;

    /// Runs one statement that gives no rows; all of it happens or nothing.
    /// Returns the number of rows touched (also in RecordsAffected).
    int Execute(std::string_view sql);
    int RecordsAffected() const;

    /// `source` is a table's name or a SELECT statement. Without a type: Table
    /// for a table's name, Dynaset otherwise.
    std::unique_ptr<Recordset> OpenRecordset(std::string_view source);
    std::unique_ptr<Recordset> OpenRecordset(std::string_view source, RecordsetType type,
                                             RecordsetOptions options = {});

    /// Examines the whole file (pages, rows, indexes, long values, maps). Never
    /// throws for what it finds in the file.
    CheckReport Check();

    explicit Database(std::shared_ptr<Session> session); ///< made by Workspace
    /// The file as the engine's own parts share it.
    const std::shared_ptr<Session>& FileSession() const { return m_session; }

private:
    std::shared_ptr<Session> m_session;
    int m_recordsAffected = 0;
};

} // namespace jet
