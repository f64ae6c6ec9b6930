#include "jet/catalog/TableSpecs.h"

#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/catalog/CatalogParts.h"
#include "jet/table/RowView.h"

#include <algorithm>
#include <set>

namespace jet {

namespace {

constexpr std::size_t kLongestName = 64;
constexpr std::size_t kMostColumns = 255;
constexpr std::size_t kMostIndexes = 32;
constexpr std::size_t kMostIndexColumns = 10;
constexpr int kLongestText = 255;
constexpr int kHighestPrecision = 28;
/// Bytes of all fixed columns together that still leave room for the null mask
/// and the offsets of the variable ones in a row of 4060 bytes.
constexpr std::size_t kLargestFixedArea = 4000;

bool IsVariable(ColumnType type)
{
    switch (type) {
    case ColumnType::Text:
    case ColumnType::Memo:
    case ColumnType::Binary:
    case ColumnType::Ole:
        return true;
    default:
        return false;
    }
}

[[noreturn]] void BadColumn(std::string_view table, const FieldDef& spec, std::string_view what)
{
    throw Error(ErrorKind::BadSchema, "Het veld " + Quoted(spec.name) + " van de tabel " +
                                          Quoted(table) + ' ' + std::string(what) + '.');
}

Column ColumnFrom(const FieldDef& spec, std::string_view table)
{
    CheckName(spec.name);
    Column column;
    column.name = spec.name;
    column.type = spec.type;
    column.fixed = !IsVariable(spec.type);
    column.autoNumber = spec.autoNumber;
    column.required = spec.required;
    column.allowZeroLength = spec.allowZeroLength;
    column.defaultValue = spec.defaultValue;
    column.description = spec.description;
    column.compress = column.IsText();
    if (spec.autoNumber && spec.type != ColumnType::Long && spec.type != ColumnType::Guid)
        BadColumn(table, spec, "kan geen autonummering zijn: alleen een Long of GUID kan dat");

    switch (spec.type) {
    case ColumnType::Text:
    case ColumnType::Binary: {
        const int size = spec.size == 0 ? kLongestText : spec.size;
        if (size < 1 || size > kLongestText)
            BadColumn(table, spec, "moet een lengte van 1 tot en met 255 hebben");
        column.lengthBytes =
            static_cast<std::uint16_t>(spec.type == ColumnType::Text ? 2 * size : size);
        break;
    }
    case ColumnType::Decimal:
        if (spec.precision < 1 || spec.precision > kHighestPrecision || spec.scale < 0 ||
            spec.scale > spec.precision)
            BadColumn(table, spec,
                      "heeft een precisie of schaal die niet kan (1 tot en met 28, "
                      "schaal niet boven precisie)");
        column.precision = static_cast<std::uint8_t>(spec.precision);
        column.scale = static_cast<std::uint8_t>(spec.scale);
        column.lengthBytes = static_cast<std::uint16_t>(FixedSize(spec.type));
        break;
    case ColumnType::Boolean:
        column.lengthBytes = 1; // though it takes no room: its value is in the null mask
        break;
    default:
        column.lengthBytes = static_cast<std::uint16_t>(FixedSize(spec.type));
    }
    return column;
}

} // namespace

void CheckName(std::string_view name)
{
    const auto bad = [&](std::string_view why) {
        throw Error(ErrorKind::BadName,
                    "De naam " + Quoted(name) + " kan niet: " + std::string(why) + '.');
    };
    if (name.empty())
        bad("hij is leeg");
    if (Utf16FromUtf8(name).size() > kLongestName)
        bad("hij is langer dan 64 tekens");
    if (name.front() == ' ')
        bad("hij begint met een spatie");
    for (const char c : name) {
        if (static_cast<unsigned char>(c) < 0x20)
            bad("er staat een besturingsteken in");
        if (std::string_view(".![]`").find(c) != std::string_view::npos)
            bad("de tekens . ! [ ] ` mogen niet in een naam");
    }
}

void AppendColumns(TableDefinition& definition, std::string_view table,
                   const std::vector<FieldDef>& columns, std::size_t endOfFixedArea)
{
    for (const FieldDef& spec : columns) {
        Column column = ColumnFrom(spec, table);
        if (definition.FindColumn(spec.name) >= 0)
            throw Error(ErrorKind::NameInUse, "De tabel " + Quoted(table) + " heeft al een veld " +
                                                  Quoted(spec.name) + '.');
        if (definition.maxColumns >= kMostColumns)
            throw Error(ErrorKind::BadSchema,
                        "De tabel " + Quoted(table) +
                            " kan geen velden meer krijgen: er zijn er al 255 geweest.");
        const bool second = spec.type == ColumnType::Long &&
                            std::ranges::any_of(definition.columns, [](const Column& other) {
                                return other.autoNumber && other.type == ColumnType::Long;
                            });
        if (spec.autoNumber && second)
            BadColumn(table, spec, "kan geen autonummering zijn: er is er al een");
        column.number = definition.maxColumns++;
        column.rawOrdinal = column.number;
        if (!column.fixed) {
            column.position = definition.variableColumns++;
        } else if (column.type != ColumnType::Boolean) {
            column.position = static_cast<std::uint16_t>(endOfFixedArea);
            endOfFixedArea += column.lengthBytes;
            if (endOfFixedArea > kLargestFixedArea)
                BadColumn(table, spec, "past niet meer in een rij");
        }
        definition.columns.push_back(std::move(column));
    }
}

void AppendIndex(TableDefinition& definition, std::string_view table, const IndexDef& spec)
{
    CheckName(spec.name);
    const std::string where =
        "De index " + Quoted(spec.name) + " van de tabel " + Quoted(table) + ' ';
    if (definition.FindIndex(spec.name) >= 0)
        throw Error(ErrorKind::NameInUse, where + "bestaat al.");
    if (spec.fields.empty() || spec.fields.size() > kMostIndexColumns)
        throw Error(ErrorKind::BadSchema, where + "moet 1 tot en met 10 velden hebben.");
    if (definition.logicalIndexes.size() >= kMostIndexes)
        throw Error(ErrorKind::BadSchema, where + "is er een te veel: er kunnen er 32 zijn.");
    if (spec.primary && definition.PrimaryKey() >= 0)
        throw Error(ErrorKind::BadSchema,
                    where + "kan niet de primaire sleutel zijn: er is er al een.");

    PhysicalIndex physical;
    physical.unique = spec.unique || spec.primary;
    physical.required = spec.required || spec.primary;
    physical.ignoreNulls = spec.ignoreNulls && !spec.primary;
    for (const IndexDef::Part& part : spec.fields) {
        const int at = definition.FindColumn(part.field);
        if (at < 0)
            throw Error(ErrorKind::UnknownField,
                        where + "noemt een veld dat er niet is: " + Quoted(part.field) + '.');
        const Column& column = definition.columns[at];
        if (column.type == ColumnType::Ole || column.rawType == 0x11)
            throw Error(ErrorKind::BadSchema, where + "kan niet op het veld " +
                                                  Quoted(column.name) + ": het type OLE heeft " +
                                                  "geen volgorde.");
        if (!column.HasKnownOrder())
            throw Error(ErrorKind::Unsupported, where + "kan niet op het veld " +
                                                    Quoted(column.name) +
                                                    ": zijn tekstvolgorde is onbekend.");
        for (const IndexColumn& other : physical.columns)
            if (other.column == at)
                throw Error(ErrorKind::BadSchema,
                            where + "noemt het veld " + Quoted(column.name) + " tweemaal.");
        physical.columns.push_back({at, !part.descending});
    }

    LogicalIndex logical;
    logical.name = spec.name;
    logical.physical = static_cast<int>(definition.physicalIndexes.size());
    logical.kind = spec.primary ? LogicalIndex::Kind::Primary : LogicalIndex::Kind::Plain;
    for (const LogicalIndex& other : definition.logicalIndexes)
        logical.number = std::max(logical.number, other.number + 1);
    definition.physicalIndexes.push_back(std::move(physical));
    definition.logicalIndexes.push_back(std::move(logical));
}

TableDefinition DefinitionFrom(const TableDef& spec)
{
    if (spec.fields.empty())
        throw Error(ErrorKind::BadSchema,
                    "De tabel " + Quoted(spec.name) + " moet ten minste een veld hebben.");
    TableDefinition definition;
    AppendColumns(definition, spec.name, spec.fields, 0);
    for (const IndexDef& index : spec.indexes)
        if (!index.foreign)
            AppendIndex(definition, spec.name, index);
    return definition;
}

FieldDef FieldFrom(const Column& column)
{
    FieldDef field;
    field.name = column.name;
    field.type = column.type;
    field.size = column.Size();
    field.autoNumber = column.autoNumber;
    field.required = column.required;
    field.allowZeroLength = column.allowZeroLength;
    field.defaultValue = column.defaultValue;
    field.description = column.description;
    field.precision = column.precision;
    field.scale = column.scale;
    field.fixedLength = column.fixed;
    return field;
}

std::vector<FieldDef> FieldsFrom(const TableDefinition& definition)
{
    std::vector<FieldDef> fields;
    for (const Column& column : definition.columns)
        fields.push_back(FieldFrom(column));
    return fields;
}

IndexDef IndexFrom(const TableDefinition& definition, const LogicalIndex& index)
{
    const PhysicalIndex& physical = definition.physicalIndexes[index.physical];
    IndexDef result;
    result.name = index.name;
    for (const IndexColumn& part : physical.columns)
        result.fields.push_back({definition.columns[part.column].name, !part.ascending});
    result.primary = index.kind == LogicalIndex::Kind::Primary;
    result.unique = physical.unique || result.primary;
    result.required = physical.required || result.primary;
    result.ignoreNulls = physical.ignoreNulls;
    result.foreign = index.kind == LogicalIndex::Kind::Relationship;
    return result;
}

} // namespace jet
