#pragma once

#include "jet/catalog/Catalog.h"
#include "jet/catalog/DefaultValue.h"
#include "jet/catalog/PropertyMap.h"

#include <optional>

namespace jet {

// ids of the objects that every file has
inline constexpr std::int32_t kTablesContainer = 0x0F000001;
inline constexpr std::int32_t kDatabaseObject = 0x10000000;

// kinds of objects, the field Type of MSysObjects
inline constexpr int kTableObject = 1;
inline constexpr int kRelationshipObject = 8;

// the field Flags
inline constexpr std::uint32_t kEngineFlag = 0x80000000;
inline constexpr std::uint32_t kSystemFlag = 0x2;

/// What a Catalog keeps of its file between calls.
struct Catalog::Parts {
    explicit Parts(Pager& file) : pager(file), pages(file) {}

    Pager& pager;
    PageAllocator pages;
    std::uint64_t rollbacksSeen = 0;
    std::uint64_t schemaVersion = 0;

    bool loaded = false;
    std::map<std::string, TableEntry> tables;          ///< by folded name
    std::map<std::string, std::string> otherNames;     ///< queries and links, by folded name
    std::map<PageNumber, std::shared_ptr<Table>> open; ///< by definition page
    std::shared_ptr<Table> objects;                    ///< MSysObjects
    std::map<PageNumber, std::vector<std::optional<DefaultValue>>> defaults;

    void Load();
    void Forget();
    const TableEntry& Entry(std::string_view name);
    /// A copy, which survives what is done to the tables. Throws ReadOnly, InUse.
    TableEntry ChangeableEntry(std::string_view name);
    std::shared_ptr<Table> OpenEntry(const TableEntry& entry);
    /// A system table by name; throws Damaged when the file has none.
    std::shared_ptr<Table> SystemTable(std::string_view name);
    PropertyMap ReadProperties(const TableEntry& entry);
    void StoreProperties(const TableEntry& entry, const PropertyMap& properties);
    /// Reads required, default and so on out of the properties into `definition`.
    void FillProperties(TableDefinition& definition, const TableEntry& entry);
    /// Brings the table's object up to date with a definition just written.
    void Adopt(const TableEntry& entry, TableDefinition definition);
    void SchemaChanged(const TableEntry& entry);
};

/// Position of a column that a system table must have; throws Damaged.
int SystemColumn(const Table& table, std::string_view name);

std::string Quoted(std::string_view name);

} // namespace jet
