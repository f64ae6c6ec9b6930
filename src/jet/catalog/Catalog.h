#pragma once

#include "jet/catalog/TableDef.h"
#include "jet/table/Table.h"

#include <map>
#include <memory>

namespace jet {

struct TableEntry {
    std::string name;
    PageNumber page = 0;
    bool system = false; ///< of the engine or of Access, not the user's
    std::uint32_t flags = 0;
    DateTime created, updated;
    RowId row; ///< in MSysObjects
};

/// The tables of one open file: the system tables read and written.
/// Names are compared without regard to case.
class Catalog {
public:
    /// The pages of a new, empty Jet 4 file (16 pages of 4096 bytes).
    static Bytes EmptyFile(DateTime created);

    explicit Catalog(Pager& pager);
    ~Catalog();

    Pager& File() const;
    PageAllocator& Pages();

    /// All local tables, system tables too, in the order of their names.
    std::vector<TableEntry> Tables() const;
    bool HasTable(std::string_view name) const;
    /// The same object for everybody, so that a change made through one user is
    /// seen by all. Throws UnknownTable.
    std::shared_ptr<Table> Open(std::string_view name);

    // Changes of the schema: all of it happens or nothing, inside a transaction too.

    /// Throws NameInUse, BadName, BadSchema.
    void Create(const TableDef& spec);
    /// Throws UnknownTable, InUse (a relationship names it, or it is a system table).
    void Drop(std::string_view table);
    void Rename(std::string_view table, std::string_view newName);
    /// Existing rows read null in the new column (boolean: false), except that a
    /// required column is filled with its type's zero (text: empty) or its default.
    void AddColumns(std::string_view table, const std::vector<FieldDef>& columns);
    /// Throws InUse while an index uses the column.
    void DropColumn(std::string_view table, std::string_view column);
    /// Gives the column of this name another type, size and properties; its values
    /// are converted. Throws what an update would when one does not fit, and InUse
    /// while an index uses the column.
    void ChangeColumn(std::string_view table, const FieldDef& column);
    /// Throws Duplicate or NullNotAllowed when the rows do not allow it.
    void CreateIndex(std::string_view table, const IndexDef& spec);
    void DropIndex(std::string_view table, std::string_view index);

    /// A property of a column ("DefaultValue", "Required", "Description", ...),
    /// or of the table itself when `column` is empty. Null = absent / remove.
    Value Property(std::string_view table, std::string_view column, std::string_view name) const;
    void SetProperty(std::string_view table, std::string_view column, std::string_view name,
                     const Value& value);
    std::map<std::string, Value> Properties(std::string_view table, std::string_view column) const;

    /// A row of nulls with the default values of `table` filled in: what an
    /// insert that leaves fields out starts from. The default of a column marked
    /// in `given` is not evaluated (empty = none is given). Throws BadValue when
    /// a default is an expression that only the query engine could evaluate.
    Row NewRow(const Table& table, const std::vector<bool>& given = {});

    /// Rises with every change of the schema, roll-backs included.
    std::uint64_t SchemaVersion() const;

private:
    struct Parts;
    Parts& Fresh() const; ///< forgets what a roll-back may have undone
    std::unique_ptr<Parts> m_parts;
};

} // namespace jet
