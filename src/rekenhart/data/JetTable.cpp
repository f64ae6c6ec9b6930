#include "rekenhart/data/JetTable.h"

#include "rekenhart/Constants.h"
#include "rekenhart/files/InputFile.h"

namespace rekenhart {

namespace {

/// The name of an index whose first field is `field`; empty when there is none.
std::string IndexOn(const jet::TableDef& table, std::string_view field)
{
    for (const jet::IndexDef& index : table.indexes)
        if (!index.fields.empty() && !index.fields.front().descending &&
            UpperCase(index.fields.front().field) == UpperCase(field))
            return index.name;
    return {};
}

} // namespace

JetTable::JetTable(jet::Database& database, const std::string& table)
    : m_definition(database.GetTableDef(table)),
      m_rows(database.OpenRecordset(table, jet::RecordsetType::Table))
{}

void JetTable::ForEach(const std::function<void()>& visit)
{
    for (; !m_rows->EndOfFile(); m_rows->MoveNext())
        visit();
}

void JetTable::ForEach(std::string_view field, int key, const std::function<void()>& visit)
{
    const std::string index = IndexOn(m_definition, field);
    const int column = m_rows->FieldIndex(field);
    const int otherKey = ~key; // null equals no key
    if (index.empty()) {
        ForEach([&] {
            if (m_rows->Get(column).AsIntOr(otherKey) == key)
                visit();
        });
        return;
    }
    m_rows->SetIndex(index);
    m_rows->Seek(">=", {jet::Value(key)});
    if (m_rows->NoMatch())
        return;
    for (; !m_rows->EndOfFile() && m_rows->Get(column).AsIntOr(otherKey) == key; m_rows->MoveNext())
        visit();
}

double JetTable::Number(std::string_view field) const
{
    return m_rows->Get(field).AsDoubleOr(kNietBekend);
}

int JetTable::Whole(std::string_view field, int whenNull) const
{
    return m_rows->Get(field).AsIntOr(whenNull);
}

std::string JetTable::Text(std::string_view field) const
{
    return m_rows->Get(field).AsTextOr("");
}

bool JetTable::Flag(std::string_view field) const
{
    return HasField(field) && Whole(field) != 0;
}

double JetTable::NumberOr(std::string_view field, double otherwise) const
{
    return HasField(field) ? m_rows->Get(field).AsDoubleOr(otherwise) : otherwise;
}

bool JetTable::HasField(std::string_view field) const
{
    return m_definition.FindField(field) != nullptr;
}

} // namespace rekenhart
