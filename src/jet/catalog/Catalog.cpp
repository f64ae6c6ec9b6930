#include "jet/catalog/Catalog.h"

#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/catalog/CatalogParts.h"
#include "jet/catalog/Clock.h"
#include "jet/table/TableInternals.h"

#include <set>

namespace jet {

namespace {

constexpr PageNumber kObjectsDefinition = 2;

constexpr int kQueryObject = 5, kOdbcLinkObject = 4, kLinkObject = 6;

bool IsTrue(const Value& value)
{
    return !value.IsNull() && value.AsBool();
}

} // namespace

std::string Quoted(std::string_view name)
{
    return '"' + std::string(name) + '"';
}

int SystemColumn(const Table& table, std::string_view name)
{
    const int column = table.Definition().FindColumn(name);
    if (column < 0)
        throw Error(ErrorKind::Damaged, "Het bestand " + Utf8FromPath(table.File().Path()) +
                                            " is beschadigd: de systeemtabel " + table.Name() +
                                            " heeft geen veld " + std::string(name) + '.');
    return column;
}

Catalog::Catalog(Pager& pager) : m_parts(std::make_unique<Parts>(pager))
{
    m_parts->rollbacksSeen = pager.RollbackCount();
    m_parts->objects = std::make_shared<Table>(pager, m_parts->pages, "MSysObjects",
                                               ReadTableDefinition(pager, kObjectsDefinition));
    m_parts->open[kObjectsDefinition] = m_parts->objects;
}

Catalog::~Catalog() = default;

Pager& Catalog::File() const
{
    return m_parts->pager;
}

PageAllocator& Catalog::Pages()
{
    return m_parts->pages;
}

Catalog::Parts& Catalog::Fresh() const
{
    if (m_parts->rollbacksSeen != m_parts->pager.RollbackCount())
        m_parts->Forget();
    if (!m_parts->loaded)
        m_parts->Load();
    return *m_parts;
}

void Catalog::Parts::Forget()
{
    rollbacksSeen = pager.RollbackCount();
    loaded = false;
    tables.clear();
    otherNames.clear();
    defaults.clear();
    ++schemaVersion;
    // Tables that somebody may hold are brought back to what the file says; those
    // that are gone are let go, so that their pages can be another table's.
    Load();
    std::set<PageNumber> there;
    for (const auto& [folded, entry] : tables) {
        there.insert(entry.page);
        if (entry.page != kObjectsDefinition && open.contains(entry.page))
            Adopt(entry, ReadTableDefinition(pager, entry.page));
    }
    std::erase_if(open, [&](const auto& known) { return !there.contains(known.first); });
}

void Catalog::Parts::Load()
{
    const int id = SystemColumn(*objects, "Id");
    const int parent = SystemColumn(*objects, "ParentId");
    const int name = SystemColumn(*objects, "Name");
    const int type = SystemColumn(*objects, "Type");
    const int flags = SystemColumn(*objects, "Flags");
    const int created = SystemColumn(*objects, "DateCreate");
    const int updated = SystemColumn(*objects, "DateUpdate");

    tables.clear();
    otherNames.clear();
    for (TableScan scan(*objects); scan.Next();) {
        const Value nameValue = scan.Get(name);
        if (nameValue.IsNull())
            continue;
        const int kind = scan.Get(type).AsIntOr(0);
        std::string text = nameValue.AsText();
        if (kind == kTableObject) {
            TableEntry entry;
            entry.page = static_cast<PageNumber>(scan.Get(id).AsIntOr(0));
            entry.flags = static_cast<std::uint32_t>(scan.Get(flags).AsIntOr(0));
            entry.system = (entry.flags & (kEngineFlag | kSystemFlag)) != 0;
            const Value made = scan.Get(created), changed = scan.Get(updated);
            entry.created = made.IsNull() ? DateTime{} : made.AsDateTime();
            entry.updated = changed.IsNull() ? DateTime{} : changed.AsDateTime();
            entry.row = scan.Id();
            entry.name = text;
            tables.emplace(FoldName(text), std::move(entry));
        } else if (scan.Get(parent).AsIntOr(0) == kTablesContainer &&
                   (kind == kQueryObject || kind == kLinkObject || kind == kOdbcLinkObject)) {
            otherNames.emplace(FoldName(text), text);
        }
    }
    loaded = true;
}

const TableEntry& Catalog::Parts::Entry(std::string_view name)
{
    const auto at = tables.find(FoldName(name));
    if (at == tables.end())
        throw Error(ErrorKind::UnknownTable, "De tabel " + Quoted(name) + " bestaat niet in " +
                                                 Utf8FromPath(pager.Path()) + '.');
    return at->second;
}

std::shared_ptr<Table> Catalog::Parts::OpenEntry(const TableEntry& entry)
{
    if (const auto known = open.find(entry.page); known != open.end())
        return known->second;
    TableDefinition definition = ReadTableDefinition(pager, entry.page);
    FillProperties(definition, entry);
    auto table = std::make_shared<Table>(pager, pages, entry.name, std::move(definition));
    open[entry.page] = table;
    defaults.erase(entry.page);
    return table;
}

std::shared_ptr<Table> Catalog::Parts::SystemTable(std::string_view name)
{
    const auto at = tables.find(FoldName(name));
    if (at == tables.end())
        throw Error(ErrorKind::Damaged, "Het bestand " + Utf8FromPath(pager.Path()) +
                                            " is beschadigd: de systeemtabel " + std::string(name) +
                                            " ontbreekt.");
    return OpenEntry(at->second);
}

PropertyMap Catalog::Parts::ReadProperties(const TableEntry& entry)
{
    const Value blob = objects->Get(entry.row, SystemColumn(*objects, "LvProp"));
    try {
        return PropertyMap::Parse(blob.IsNull() ? std::span<const std::byte>() : blob.AsBytes(),
                                  pager.Version());
    } catch (const Error& error) {
        throw Error(ErrorKind::Damaged, "Het bestand " + Utf8FromPath(pager.Path()) +
                                            " is beschadigd, tabel " + Quoted(entry.name) + ": " +
                                            error.what());
    }
}

void Catalog::Parts::StoreProperties(const TableEntry& entry, const PropertyMap& properties)
{
    Bytes blob = properties.Serialise();
    const Table::Change changes[] = {
        {SystemColumn(*objects, "LvProp"), blob.empty() ? Value() : Value(std::move(blob))},
        {SystemColumn(*objects, "DateUpdate"), LocalNow()},
    };
    objects->Update(entry.row, changes);
}

void Catalog::Parts::FillProperties(TableDefinition& definition, const TableEntry& entry)
{
    if (entry.page == kObjectsDefinition)
        return;
    const PropertyMap properties = ReadProperties(entry);
    for (Column& column : definition.columns) {
        const auto text = [&](std::string_view name) {
            return properties.Find(column.name, name).AsTextOr("");
        };
        column.required = IsTrue(properties.Find(column.name, "Required"));
        const Value zeroLength = properties.Find(column.name, "AllowZeroLength");
        // Files of other makers say nothing where anything is allowed.
        column.allowZeroLength = zeroLength.IsNull() || zeroLength.AsBool();
        column.defaultValue = text("DefaultValue");
        column.validationRule = text("ValidationRule");
        column.description = text("Description");
    }
}

void Catalog::Parts::Adopt(const TableEntry& entry, TableDefinition definition)
{
    defaults.erase(entry.page);
    const auto at = open.find(entry.page);
    if (at == open.end())
        return;
    FillProperties(definition, entry);
    at->second->Internals().name = entry.name;
    at->second->Internals().SetDefinition(std::move(definition));
}

void Catalog::Parts::SchemaChanged(const TableEntry& entry)
{
    const Table::Change stamp[] = {{SystemColumn(*objects, "DateUpdate"), LocalNow()}};
    objects->Update(entry.row, stamp);
    ++schemaVersion;
}

std::vector<TableEntry> Catalog::Tables() const
{
    std::vector<TableEntry> all;
    for (const auto& [folded, entry] : Fresh().tables)
        all.push_back(entry);
    return all;
}

bool Catalog::HasTable(std::string_view name) const
{
    return Fresh().tables.contains(FoldName(name));
}

std::shared_ptr<Table> Catalog::Open(std::string_view name)
{
    Parts& parts = Fresh();
    return parts.OpenEntry(parts.Entry(name));
}

Value Catalog::Property(std::string_view table, std::string_view column,
                        std::string_view name) const
{
    Parts& parts = Fresh();
    return parts.ReadProperties(parts.Entry(table)).Find(column, name);
}

std::map<std::string, Value> Catalog::Properties(std::string_view table,
                                                 std::string_view column) const
{
    Parts& parts = Fresh();
    return parts.ReadProperties(parts.Entry(table)).All(column);
}

void Catalog::SetProperty(std::string_view table, std::string_view column, std::string_view name,
                          const Value& value)
{
    Parts& parts = Fresh();
    const TableEntry& entry = parts.Entry(table);
    std::string owner(column);
    if (!owner.empty()) {
        const auto opened = parts.OpenEntry(entry);
        const TableDefinition& definition = opened->Definition();
        const int at = definition.FindColumn(column);
        if (at < 0)
            throw Error(ErrorKind::UnknownField,
                        "De tabel " + Quoted(table) + " heeft geen veld " + Quoted(column) + '.');
        owner = definition.columns[at].name;
    }
    ChangeScope scope(parts.pager);
    auto properties = parts.ReadProperties(entry);
    properties.Set(owner, name, value);
    parts.StoreProperties(entry, properties);
    scope.Done();
    parts.Adopt(entry, ReadTableDefinition(parts.pager, entry.page));
    ++parts.schemaVersion;
}

Row Catalog::NewRow(const Table& table, const std::vector<bool>& given)
{
    Parts& parts = Fresh();
    const auto& columns = table.Definition().columns;
    const PageNumber page = table.Definition().page;
    auto at = parts.defaults.find(page);
    if (at == parts.defaults.end()) {
        std::vector<std::optional<DefaultValue>> parsed;
        for (const Column& column : columns)
            parsed.push_back(DefaultValue::Parse(column.defaultValue));
        at = parts.defaults.emplace(page, std::move(parsed)).first;
    }

    Row row(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if ((i < given.size() && given[i]) || columns[i].autoNumber ||
            columns[i].defaultValue.empty())
            continue;
        const auto& value = at->second[i];
        if (!value)
            throw Error(ErrorKind::BadValue,
                        "De standaardwaarde " + columns[i].defaultValue + " van het veld " +
                            Quoted(columns[i].name) + " in de tabel " + Quoted(table.Name()) +
                            " kan niet worden berekend: geef het veld zelf een waarde.");
        row[i] = value->Evaluate().ConvertedTo(columns[i].type);
    }
    return row;
}

std::uint64_t Catalog::SchemaVersion() const
{
    return Fresh().schemaVersion;
}

} // namespace jet
