#include "SchemaText.h"

#include "Csv.h"

#include <algorithm>

namespace jetsql {

namespace {

using jet::ColumnType;

const char* TypeName(ColumnType type)
{
    switch (type) {
    case ColumnType::Boolean:
        return "Boolean";
    case ColumnType::Byte:
        return "Byte";
    case ColumnType::Integer:
        return "Integer";
    case ColumnType::Long:
        return "Long";
    case ColumnType::Currency:
        return "Currency";
    case ColumnType::Single:
        return "Single";
    case ColumnType::Double:
        return "Double";
    case ColumnType::DateTime:
        return "DateTime";
    case ColumnType::Binary:
        return "Binary";
    case ColumnType::Text:
        return "Text";
    case ColumnType::Ole:
        return "OLE";
    case ColumnType::Memo:
        return "Memo";
    case ColumnType::Guid:
        return "GUID";
    case ColumnType::Decimal:
        return "Decimal";
    }
    return "?";
}

/// Characters, not bytes, so that columns line up.
std::size_t Width(const std::string& text)
{
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string IndexKinds(const jet::IndexDef& index)
{
    std::string kinds;
    const auto add = [&](bool on, const char* word) {
        if (on)
            kinds += (kinds.empty() ? "" : ", ") + std::string(word);
    };
    add(index.primary, "primair");
    add(index.unique && !index.primary, "uniek");
    add(index.required && !index.primary, "verplicht");
    add(index.ignoreNulls, "zonder lege");
    add(index.foreign, "relatie");
    return kinds;
}

void AppendKey(std::string& json, const char* key)
{
    if (json.back() != '{' && json.back() != '[')
        json += ',';
    json += '"';
    json += key;
    json += "\":";
}

void AppendMember(std::string& json, const char* key, const jet::Value& value)
{
    AppendKey(json, key);
    AppendJson(json, value);
}

void AppendFlag(std::string& json, const char* key, bool on)
{
    if (on)
        AppendMember(json, key, true);
}

} // namespace

std::string TypeText(const jet::FieldDef& field)
{
    std::string text = TypeName(field.type);
    if (field.type == ColumnType::Text || field.type == ColumnType::Binary)
        text += '(' + std::to_string(field.size) + ')';
    if (field.type == ColumnType::Decimal)
        text += '(' + std::to_string(field.precision) + ',' + std::to_string(field.scale) + ')';
    return text;
}

std::string SchemaAsText(const jet::TableDef& table)
{
    std::string text = table.name + " (" + std::to_string(table.recordCount) +
                       (table.recordCount == 1 ? " rij)\n" : " rijen)\n");
    std::size_t widest = 0;
    for (const jet::FieldDef& field : table.fields)
        widest = std::max(widest, Width(field.name));
    for (const jet::FieldDef& field : table.fields) {
        text +=
            "  " + field.name + std::string(widest - Width(field.name) + 2, ' ') + TypeText(field);
        if (field.autoNumber)
            text += ", autonummering";
        if (field.required)
            text += ", verplicht";
        if (!field.defaultValue.empty())
            text += ", standaard " + field.defaultValue;
        if (!field.description.empty())
            text += "  -- " + field.description;
        text += '\n';
    }
    for (const jet::IndexDef& index : table.indexes) {
        text += "  index " + index.name + " op ";
        for (std::size_t i = 0; i < index.fields.size(); ++i)
            text += (i > 0 ? ", " : "") + index.fields[i].field +
                    (index.fields[i].descending ? " aflopend" : "");
        const std::string kinds = IndexKinds(index);
        text += kinds.empty() ? "\n" : " (" + kinds + ")\n";
    }
    return text;
}

std::string SchemaAsJson(const jet::TableDef& table)
{
    std::string json = "{";
    AppendMember(json, "table", table.name);
    AppendMember(json, "rows", table.recordCount);
    AppendKey(json, "fields");
    json += '[';
    for (const jet::FieldDef& field : table.fields) {
        json += json.back() == '[' ? "{" : ",{";
        AppendMember(json, "name", field.name);
        AppendMember(json, "type", TypeName(field.type));
        if (field.type == ColumnType::Text || field.type == ColumnType::Binary)
            AppendMember(json, "size", field.size);
        if (field.type == ColumnType::Decimal) {
            AppendMember(json, "precision", field.precision);
            AppendMember(json, "scale", field.scale);
        }
        AppendFlag(json, "autoNumber", field.autoNumber);
        AppendFlag(json, "required", field.required);
        if (field.type == ColumnType::Text || field.type == ColumnType::Memo)
            AppendMember(json, "allowZeroLength", field.allowZeroLength);
        if (!field.defaultValue.empty())
            AppendMember(json, "default", field.defaultValue);
        if (!field.description.empty())
            AppendMember(json, "description", field.description);
        json += '}';
    }
    json += ']';
    AppendKey(json, "indexes");
    json += '[';
    for (const jet::IndexDef& index : table.indexes) {
        json += json.back() == '[' ? "{" : ",{";
        AppendMember(json, "name", index.name);
        AppendKey(json, "fields");
        json += '[';
        for (const jet::IndexDef::Part& part : index.fields) {
            json += json.back() == '[' ? "{" : ",{";
            AppendMember(json, "name", part.field);
            AppendFlag(json, "descending", part.descending);
            json += '}';
        }
        json += ']';
        AppendFlag(json, "primary", index.primary);
        AppendFlag(json, "unique", index.unique);
        AppendFlag(json, "required", index.required);
        AppendFlag(json, "ignoreNulls", index.ignoreNulls);
        AppendFlag(json, "foreign", index.foreign);
        json += '}';
    }
    return json + "]}\n";
}

} // namespace jetsql
