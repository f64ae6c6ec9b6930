// The part of Catalog that changes the schema.

#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/catalog/CatalogParts.h"
#include "jet/catalog/Clock.h"
#include "jet/catalog/FixedArea.h"
#include "jet/catalog/Session.h"
#include "jet/catalog/TableSpecs.h"
#include "jet/catalog/TableStorage.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::int32_t kFullAccess = 0xFFFFF;

void RequireWritable(const Pager& pager)
{
    if (pager.IsReadOnly())
        throw Error(ErrorKind::ReadOnly, pager.WhyReadOnly());
}

void RefuseUsedName(const std::map<std::string, TableEntry>& tables,
                    const std::map<std::string, std::string>& others, std::string_view name)
{
    const std::string folded = FoldName(name);
    if (tables.contains(folded))
        throw Error(ErrorKind::NameInUse, "De tabel " + Quoted(name) + " bestaat al.");
    if (others.contains(folded))
        throw Error(ErrorKind::NameInUse,
                    "De naam " + Quoted(name) + " is al in gebruik voor een query of koppeling.");
}

/// The rows of a system table in which one of `columns` is the name of `table`.
std::vector<RowId> RowsNaming(Table& system, std::string_view table,
                              std::initializer_list<std::string_view> columns)
{
    std::vector<RowId> rows;
    for (TableScan scan(system); scan.Next();) {
        const bool named = std::ranges::any_of(columns, [&](std::string_view column) {
            const Value value = scan.Get(SystemColumn(system, column));
            return !value.IsNull() && NamesEqual(value.AsText(), table);
        });
        if (named)
            rows.push_back(scan.Id());
    }
    return rows;
}

std::vector<RowId> RowsOfObject(Table& system, std::int32_t object)
{
    const int column = SystemColumn(system, "ObjectId");
    std::vector<RowId> rows;
    for (TableScan scan(system); scan.Next();)
        if (scan.Get(column).AsIntOr(0) == object)
            rows.push_back(scan.Id());
    return rows;
}

/// The owner that new objects get: that of the database itself.
Value OwnerOfDatabase(Table& objects)
{
    const int id = SystemColumn(objects, "Id");
    for (TableScan scan(objects); scan.Next();)
        if (scan.Get(id).AsIntOr(0) == kDatabaseObject)
            return scan.Get(SystemColumn(objects, "Owner"));
    return {};
}

/// Everybody who has a right to the container of tables gets full access to a
/// new one. The names of users are enciphered per file: copied, never made up.
void GrantAccess(Table& access, std::int32_t object)
{
    const int objectColumn = SystemColumn(access, "ObjectId");
    const int user = SystemColumn(access, "SID");
    std::vector<Value> users;
    for (TableScan scan(access); scan.Next();) {
        if (scan.Get(objectColumn).AsIntOr(0) != kTablesContainer)
            continue;
        const Value sid = scan.Get(user);
        if (std::ranges::find(users, sid) == users.end())
            users.push_back(sid);
    }
    for (const Value& sid : users) {
        Row row(access.Definition().columns.size());
        row[objectColumn] = object;
        row[user] = sid;
        row[SystemColumn(access, "ACM")] = kFullAccess;
        row[SystemColumn(access, "FInheritable")] = false;
        access.Insert(row);
    }
}

void PutColumnProperties(PropertyMap& properties, const FieldDef& spec)
{
    const auto put = [&](std::string_view name, const std::string& text) {
        if (!text.empty())
            properties.Set(spec.name, name, text);
    };
    put("DefaultValue", spec.defaultValue);
    put("Description", spec.description);
    if (spec.required)
        properties.Set(spec.name, "Required", true);
    // Said in any case: a reader that finds nothing takes its own default, which differs.
    if (spec.type == ColumnType::Text || spec.type == ColumnType::Memo)
        properties.Set(spec.name, "AllowZeroLength", spec.allowZeroLength);
}

const LogicalIndex& RequireIndex(const TableDefinition& definition, std::string_view table,
                                 std::string_view index)
{
    const int at = definition.FindIndex(index);
    if (at < 0)
        throw Error(ErrorKind::UnknownIndex,
                    "De tabel " + Quoted(table) + " heeft geen index " + Quoted(index) + '.');
    return definition.logicalIndexes[at];
}

int RequireColumn(const TableDefinition& definition, std::string_view table,
                  std::string_view column)
{
    const int at = definition.FindColumn(column);
    if (at < 0)
        throw Error(ErrorKind::UnknownField,
                    "De tabel " + Quoted(table) + " heeft geen veld " + Quoted(column) + '.');
    return at;
}

/// An index holds on to its columns.
void RefuseIndexedColumn(const TableDefinition& definition, std::string_view table, int column,
                         std::string_view change)
{
    for (std::size_t i = 0; i < definition.physicalIndexes.size(); ++i)
        for (const IndexColumn& part : definition.physicalIndexes[i].columns)
            if (part.column == column)
                throw Error(ErrorKind::InUse,
                            "Het veld " + Quoted(definition.columns[column].name) +
                                " van de tabel " + Quoted(table) + " kan niet worden " +
                                std::string(change) + ": het hoort bij de index " +
                                Quoted(definition.NameOfPhysical(static_cast<int>(i))) + '.');
}

/// What a required column of existing rows gets when it has no default.
Value ZeroOf(ColumnType type)
{
    switch (type) {
    case ColumnType::Text:
    case ColumnType::Memo:
        return "";
    case ColumnType::DateTime:
        return DateTime{};
    case ColumnType::Binary:
    case ColumnType::Ole:
        return Bytes{};
    case ColumnType::Guid:
        return Guid{};
    default:
        return Value(std::int32_t{0}).ConvertedTo(type);
    }
}

} // namespace

TableEntry Catalog::Parts::ChangeableEntry(std::string_view name)
{
    RequireWritable(pager);
    const TableEntry& entry = Entry(name);
    if (entry.system)
        throw Error(ErrorKind::InUse,
                    "De systeemtabel " + Quoted(entry.name) + " kan niet worden gewijzigd.");
    return entry;
}

void Catalog::Create(const TableDef& spec)
{
    Parts& parts = Fresh();
    RequireWritable(parts.pager);
    CheckName(spec.name);
    RefuseUsedName(parts.tables, parts.otherNames, spec.name);
    TableDefinition definition = DefinitionFrom(spec);

    AllOrNothing change(parts.pager);
    definition.page = parts.pages.Allocate().Number();
    definition.ownedMap = parts.pages.AllocateMap();
    definition.freeMap = parts.pages.AllocateMap();
    for (Column& column : definition.columns)
        if (column.IsLongValue())
            MakeLongValueMaps(parts.pages, column);
    for (PhysicalIndex& physical : definition.physicalIndexes)
        MakeTree(parts.pager, parts.pages, definition.page, physical);
    WriteTableDefinition(parts.pager, parts.pages, definition);

    PropertyMap properties;
    for (const FieldDef& column : spec.fields)
        PutColumnProperties(properties, column);
    Bytes blob = properties.Serialise();

    Table& objects = *parts.objects;
    const auto id = static_cast<std::int32_t>(definition.page);
    const DateTime now = LocalNow();
    Row row(objects.Definition().columns.size());
    const auto set = [&](std::string_view column, Value value) {
        row[SystemColumn(objects, column)] = std::move(value);
    };
    set("Id", id);
    set("ParentId", kTablesContainer);
    set("Name", spec.name);
    set("Type", std::int32_t{kTableObject});
    set("DateCreate", now);
    set("DateUpdate", now);
    set("Owner", OwnerOfDatabase(objects));
    set("Flags", std::int32_t{0});
    if (!blob.empty())
        set("LvProp", std::move(blob));
    objects.Insert(row);
    GrantAccess(*parts.SystemTable("MSysACEs"), id);
    change.Done();

    parts.open.erase(definition.page);
    parts.defaults.erase(definition.page);
    parts.Load();
    ++parts.schemaVersion;
}

void Catalog::Drop(std::string_view table)
{
    Parts& parts = Fresh();
    const TableEntry entry = parts.ChangeableEntry(table);
    const auto relationships = parts.SystemTable("MSysRelationships");
    if (!RowsNaming(*relationships, entry.name, {"szObject", "szReferencedObject"}).empty())
        throw Error(ErrorKind::InUse, "De tabel " + Quoted(entry.name) +
                                          " kan niet worden verwijderd: hij maakt deel uit van "
                                          "een relatie.");
    const TableDefinition definition = ReadTableDefinition(parts.pager, entry.page);

    AllOrNothing change(parts.pager);
    const auto access = parts.SystemTable("MSysACEs");
    for (const RowId row : RowsOfObject(*access, static_cast<std::int32_t>(entry.page)))
        access->Delete(row);
    parts.objects->Delete(entry.row);
    ReleaseTable(parts.pager, parts.pages, definition);
    change.Done();

    parts.open.erase(entry.page);
    parts.defaults.erase(entry.page);
    parts.Load();
    ++parts.schemaVersion;
}

void Catalog::Rename(std::string_view table, std::string_view newName)
{
    Parts& parts = Fresh();
    const TableEntry entry = parts.ChangeableEntry(table);
    CheckName(newName);
    if (!NamesEqual(table, newName))
        RefuseUsedName(parts.tables, parts.otherNames, newName);

    AllOrNothing change(parts.pager);
    Table& objects = *parts.objects;
    const Table::Change changes[] = {{SystemColumn(objects, "Name"), newName},
                                     {SystemColumn(objects, "DateUpdate"), LocalNow()}};
    objects.Update(entry.row, changes);
    const auto relationships = parts.SystemTable("MSysRelationships");
    for (const char* column : {"szObject", "szReferencedObject"}) {
        const Table::Change renamed[] = {{SystemColumn(*relationships, column), newName}};
        for (const RowId row : RowsNaming(*relationships, entry.name, {column}))
            relationships->Update(row, renamed);
    }
    change.Done();

    parts.Load();
    parts.Adopt(parts.Entry(newName), ReadTableDefinition(parts.pager, entry.page));
    ++parts.schemaVersion;
}

void Catalog::AddColumns(std::string_view table, const std::vector<FieldDef>& columns)
{
    Parts& parts = Fresh();
    const TableEntry entry = parts.ChangeableEntry(table);
    const auto opened = parts.OpenEntry(entry);
    TableDefinition definition = opened->Definition();
    const std::size_t before = definition.columns.size();
    AppendColumns(definition, entry.name, columns, EndOfFixedArea(parts.pager, definition));

    AllOrNothing change(parts.pager);
    for (std::size_t i = before; i < definition.columns.size(); ++i)
        if (definition.columns[i].IsLongValue())
            MakeLongValueMaps(parts.pages, definition.columns[i]);
    WriteTableDefinition(parts.pager, parts.pages, definition);
    PropertyMap properties = parts.ReadProperties(entry);
    for (const FieldDef& column : columns)
        PutColumnProperties(properties, column);
    parts.StoreProperties(entry, properties);
    parts.Adopt(entry, definition);

    // A new required column cannot stay null in the rows that are there.
    const bool fill = std::ranges::any_of(
        columns, [](const FieldDef& column) { return column.required || column.autoNumber; });
    if (fill) {
        const Row defaults = NewRow(*opened);
        std::vector<RowId> rows;
        for (TableScan scan(*opened); scan.Next();)
            rows.push_back(scan.Id());
        std::int32_t number = 0;
        for (const RowId row : rows) {
            std::vector<Table::Change> changes;
            for (std::size_t i = 0; i < columns.size(); ++i) {
                const int at = static_cast<int>(before + i);
                if (columns[i].autoNumber)
                    changes.push_back({at, ++number});
                else if (columns[i].required)
                    changes.push_back(
                        {at, defaults[at].IsNull() ? ZeroOf(columns[i].type) : defaults[at]});
            }
            opened->Update(row, changes);
        }
    }
    change.Done();
    ++parts.schemaVersion;
}

void Catalog::DropColumn(std::string_view table, std::string_view column)
{
    Parts& parts = Fresh();
    const TableEntry entry = parts.ChangeableEntry(table);
    TableDefinition definition = parts.OpenEntry(entry)->Definition();
    const int at = RequireColumn(definition, entry.name, column);
    const Column dropped = definition.columns[at];
    if (definition.columns.size() == 1)
        throw Error(ErrorKind::BadSchema, "Het laatste veld van de tabel " + Quoted(entry.name) +
                                              " kan niet worden verwijderd.");
    RefuseIndexedColumn(definition, entry.name, at, "verwijderd");
    for (PhysicalIndex& index : definition.physicalIndexes)
        for (IndexColumn& part : index.columns)
            if (part.column > at)
                --part.column;
    // Numbers and places of the others stay: old rows keep the dropped bytes.
    definition.columns.erase(definition.columns.begin() + at);

    AllOrNothing change(parts.pager);
    WriteTableDefinition(parts.pager, parts.pages, definition);
    if (dropped.IsLongValue())
        ReleaseLongValues(parts.pager, parts.pages, dropped);
    PropertyMap properties = parts.ReadProperties(entry);
    properties.RemoveOwner(dropped.name);
    parts.StoreProperties(entry, properties);
    change.Done();

    parts.Adopt(entry, std::move(definition));
    ++parts.schemaVersion;
}

void Catalog::ChangeColumn(std::string_view table, const FieldDef& column)
{
    Parts& parts = Fresh();
    const TableEntry entry = parts.ChangeableEntry(table);
    const std::shared_ptr<Table> opened = parts.OpenEntry(entry);
    const int at = RequireColumn(opened->Definition(), entry.name, column.name);
    RefuseIndexedColumn(opened->Definition(), entry.name, at, "veranderd");

    // The old column makes way under a name that nobody has; a new one takes over
    // its name, its values and, at last, its place.
    AllOrNothing change(parts.pager);
    const auto store = [&](TableDefinition definition) {
        WriteTableDefinition(parts.pager, parts.pages, definition);
        parts.Adopt(entry, std::move(definition));
    };
    TableDefinition definition = opened->Definition();
    FieldDef successor = column;
    successor.name = definition.columns[at].name;
    std::string old = "~";
    while (definition.FindColumn(old) >= 0)
        old += '~';
    definition.columns[at].name = old;
    store(std::move(definition));
    PropertyMap properties = parts.ReadProperties(entry);
    for (const char* property : {"DefaultValue", "Required"}) // as `column` says, or none
        properties.Set(successor.name, property, {});
    parts.StoreProperties(entry, properties);

    AddColumns(table, {successor});
    const int last = static_cast<int>(opened->Definition().columns.size()) - 1;
    std::vector<RowId> rows;
    for (TableScan scan(*opened); scan.Next();)
        rows.push_back(scan.Id());
    for (const RowId row : rows) {
        const Table::Change changes[] = {{last, opened->Get(row, at)}};
        opened->Update(row, changes);
    }

    DropColumn(table, old);
    definition = opened->Definition();
    std::rotate(definition.columns.begin() + at, definition.columns.end() - 1,
                definition.columns.end());
    for (PhysicalIndex& index : definition.physicalIndexes)
        for (IndexColumn& part : index.columns)
            if (part.column >= at)
                ++part.column;
    store(std::move(definition));
    change.Done();
    ++parts.schemaVersion;
}

void Catalog::CreateIndex(std::string_view table, const IndexDef& spec)
{
    Parts& parts = Fresh();
    const TableEntry entry = parts.ChangeableEntry(table);
    const auto opened = parts.OpenEntry(entry);
    TableDefinition definition = opened->Definition();
    AppendIndex(definition, entry.name, spec);

    AllOrNothing change(parts.pager);
    PhysicalIndex& index = definition.physicalIndexes.back();
    const SortedEntries entries(*opened, index, spec.name);
    MakeTree(parts.pager, parts.pages, definition.page, index);
    entries.FillTree(parts.pages, index);
    index.distinctCount = entries.DistinctKeys();
    WriteTableDefinition(parts.pager, parts.pages, definition);
    parts.SchemaChanged(entry);
    change.Done();

    parts.Adopt(entry, std::move(definition));
}

void Catalog::DropIndex(std::string_view table, std::string_view index)
{
    Parts& parts = Fresh();
    const TableEntry entry = parts.ChangeableEntry(table);
    TableDefinition definition = parts.OpenEntry(entry)->Definition();
    const LogicalIndex dropped = RequireIndex(definition, entry.name, index);
    if (dropped.kind == LogicalIndex::Kind::Relationship)
        throw Error(ErrorKind::InUse, "De index " + Quoted(dropped.name) + " van de tabel " +
                                          Quoted(entry.name) + " hoort bij een relatie.");
    std::erase_if(definition.logicalIndexes,
                  [&](const LogicalIndex& logical) { return logical.number == dropped.number; });
    const PhysicalIndex tree = definition.physicalIndexes[dropped.physical];
    const bool shared =
        std::ranges::any_of(definition.logicalIndexes, [&](const LogicalIndex& logical) {
            return logical.physical == dropped.physical;
        });
    if (!shared) {
        definition.physicalIndexes.erase(definition.physicalIndexes.begin() + dropped.physical);
        for (LogicalIndex& logical : definition.logicalIndexes)
            if (logical.physical > dropped.physical)
                --logical.physical;
    }

    AllOrNothing change(parts.pager);
    WriteTableDefinition(parts.pager, parts.pages, definition);
    if (!shared)
        ReleaseTree(parts.pager, parts.pages, definition.page, tree);
    parts.SchemaChanged(entry);
    change.Done();

    parts.Adopt(entry, std::move(definition));
}

} // namespace jet
