#pragma once

#include "jet/dao/Recordset.h"
#include "jet/dao/TableDef.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace jet {

/// The outcome of a whole-file examination; see Database::Check.
struct CheckReport {
    std::vector<std::string> faults;  ///< empty = the file is sound
    std::vector<std::string> remarks; ///< harmless: stale counters, leaked pages
    bool IsSound() const { return faults.empty(); }
};

/// One open database file.
///
/// SQL is Jet's dialect, in UTF-8. Recordsets stay valid until they or the
/// database are closed; then every operation throws Closed.
class Database {
public:
    ~Database(); ///< closes

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
    void AddField(std::string_view table, const FieldDef& field);
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

    struct Parts;
    explicit Database(std::shared_ptr<Parts> parts); ///< made by Workspace
    Parts& Internals() const { return *m_parts; }

private:
    std::shared_ptr<Parts> m_parts;
};

} // namespace jet
