#include "jet/table/TableChange.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/base/Numbers.h"
#include "jet/base/Text.h"
#include "jet/storage/Faults.h"
#include "jet/table/DefinitionLayout.h"
#include "jet/table/LongValues.h"
#include "jet/table/TextCodec.h"
#include "jet/table/ValueKind.h"

#include <algorithm>
#include <limits>
#include <random>

namespace jet {

namespace {

Guid RandomGuid()
{
    static std::mt19937_64 generator{std::random_device{}()};
    Guid guid;
    for (std::byte& b : guid.bytes)
        b = static_cast<std::byte>(generator());
    guid.bytes[6] = (guid.bytes[6] & std::byte{0x0F}) | std::byte{0x40}; // version: random
    guid.bytes[8] = (guid.bytes[8] & std::byte{0x3F}) | std::byte{0x80};
    return guid;
}

} // namespace

bool AppendColumnKey(const Value& value, const Column& column, bool ascending, FileVersion version,
                     Bytes& key)
{
    if (column.type == ColumnType::Decimal && !value.IsNull()) {
        const Value converted = value.ConvertedTo(ColumnType::Decimal);
        const Decimal& decimal = std::get<Decimal>(converted.Raw());
        const auto scaled = RescaleDecimal(decimal, column.scale);
        return AppendKey(scaled ? *scaled : decimal, column.type, ascending, version, key);
    }
    return AppendKey(value, column.type, ascending, version, key);
}

TableChange::TableChange(TableParts& parts)
    : m_parts(parts), m_builder(parts.definition), m_oldValues(parts.definition.columns.size())
{
    const std::size_t indexes = parts.definition.physicalIndexes.size();
    for (std::size_t i = 0; i < indexes; ++i) {
        m_unique.push_back(parts.IsUnique(static_cast<int>(i)));
        m_nullsRefused.push_back(parts.RefusesNulls(static_cast<int>(i)));
    }
    m_keys.resize(indexes);
    m_oldKeys.resize(indexes);
}

void TableChange::RequireWritable() const
{
    if (m_parts.pager.IsReadOnly())
        throw Error(ErrorKind::ReadOnly, m_parts.pager.WhyReadOnly());
    for (const PhysicalIndex& index : m_parts.definition.physicalIndexes) {
        for (const IndexColumn& part : index.columns) {
            if (!m_parts.definition.columns[static_cast<std::size_t>(part.column)].HasKnownOrder())
                throw Error(
                    ErrorKind::ReadOnly,
                    "Tabel \"" + m_parts.name +
                        "\" kan alleen worden gelezen: de tekstvolgorde van veld \"" +
                        m_parts.definition.columns[static_cast<std::size_t>(part.column)].name +
                        "\" wordt niet ondersteund.");
        }
    }
}

/// Converts `value` to what the column stores and checks it.
void TableChange::Prepare(int column, Value& value) const
{
    const Column& c = m_parts.definition.columns[static_cast<std::size_t>(column)];
    if (value.IsNull()) {
        if (c.type == ColumnType::Boolean)
            value = false; // a yes/no field knows no null
        else if (c.required)
            throw Error(ErrorKind::NullNotAllowed,
                        m_parts.FieldText(column) + " moet een waarde hebben.");
        return;
    }
    if (!IsOfKind(value, c.type)) {
        try {
            value = value.ConvertedTo(c.type);
        } catch (const Error& error) {
            throw Error(error.Kind(), m_parts.FieldText(column) + ": " + error.what());
        }
    }
    const auto tooLong = [&](std::size_t length, std::size_t most, const char* unit) {
        throw Error(ErrorKind::TooLong, m_parts.FieldText(column) +
                                            " is te lang: " + std::to_string(length) + " " + unit +
                                            ", er passen er " + std::to_string(most) + ".");
    };
    switch (c.type) {
    case ColumnType::Text:
    case ColumnType::Memo: {
        const std::string& text = std::get<std::string>(value.Raw());
        if (text.empty() && !c.allowZeroLength)
            throw Error(ErrorKind::EmptyNotAllowed,
                        m_parts.FieldText(column) + " mag geen lege tekst zijn.");
        const std::size_t most = c.type == ColumnType::Text ? static_cast<std::size_t>(c.Size())
                                                            : LongValueReference::kLongest / 2;
        if (text.size() > most && TextUnits(text) > most)
            tooLong(TextUnits(text), most, "tekens");
        break;
    }
    case ColumnType::Binary:
    case ColumnType::Ole: {
        const std::size_t most =
            c.type == ColumnType::Binary ? c.lengthBytes : LongValueReference::kLongest;
        if (const std::size_t length = std::get<Bytes>(value.Raw()).size(); length > most)
            tooLong(length, most, "bytes");
        break;
    }
    case ColumnType::Decimal: {
        const auto scaled = RescaleDecimal(std::get<Decimal>(value.Raw()), c.scale, c.precision);
        if (!scaled)
            throw Error(ErrorKind::Overflow,
                        m_parts.FieldText(column) + ": het getal is te groot voor het veld.");
        value = *scaled;
        break;
    }
    default:
        break;
    }
}

void TableChange::FillAutoNumber(int column, Value& value)
{
    const Column& c = m_parts.definition.columns[static_cast<std::size_t>(column)];
    if (!c.autoNumber)
        return;
    if (c.type == ColumnType::Guid) {
        if (value.IsNull())
            value = RandomGuid();
        return;
    }
    if (!value.IsNull()) {
        Prepare(column, value);
        const std::int32_t given = std::get<std::int32_t>(value.Raw());
        if (given > static_cast<std::int32_t>(m_autoNumber))
            m_autoNumber = static_cast<std::uint32_t>(given);
        return;
    }
    if (m_autoNumber == static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max()))
        throw Error(ErrorKind::Overflow,
                    m_parts.FieldText(column) + ": alle volgnummers zijn gebruikt.");
    value = static_cast<std::int32_t>(++m_autoNumber);
}

void TableChange::MakeKey(std::size_t index, const ValueOf& valueOf, IndexKey& key) const
{
    const PhysicalIndex& physical = m_parts.definition.physicalIndexes[index];
    key.entry.clear();
    key.state = IndexKey::State::Known;
    key.nullColumn = -1;
    key.allNull = true;
    for (const IndexColumn& part : physical.columns) {
        const Column& column = m_parts.definition.columns[static_cast<std::size_t>(part.column)];
        const Value& value = valueOf(part.column);
        if (value.IsNull() && column.type != ColumnType::Boolean)
            key.nullColumn = part.column;
        else
            key.allNull = false;
        if (!AppendColumnKey(value, column, part.ascending, m_parts.pager.Version(), key.entry)) {
            key.state = IndexKey::State::Unknown;
            key.unknownColumn = part.column;
            key.allNull = false;
            return;
        }
    }
    if (key.allNull && physical.ignoreNulls)
        key.state = IndexKey::State::Absent;
}

void TableChange::CheckKey(std::size_t index, const IndexKey& key, RowId except) const
{
    const auto indexText = [&] {
        return "index \"" + m_parts.definition.NameOfPhysical(static_cast<int>(index)) +
               "\" van tabel \"" + m_parts.name + "\"";
    };
    if (key.state == IndexKey::State::Unknown)
        throw Error(
            ErrorKind::TextNotIndexable,
            m_parts.FieldText(key.unknownColumn) +
                " kan deze tekst niet bevatten: er staat een teken in waarvan de plaats in " +
                indexText() + " niet bekend is.");
    if (key.nullColumn >= 0 && m_nullsRefused[index])
        throw Error(ErrorKind::NullNotAllowed, m_parts.FieldText(key.nullColumn) +
                                                   " moet een waarde hebben: het hoort bij " +
                                                   indexText() + ".");
    if (key.state == IndexKey::State::Absent)
        return;
    if (key.entry.size() + kRowPointerSize > IndexTree::kLongestEntry)
        throw Error(ErrorKind::TooLong, "De waarden zijn samen te lang voor " + indexText() + ".");
    // Rows of nulls alone may stand in a unique index more than once.
    if (m_unique[index] && !key.allNull && m_parts.trees[index].HasKey(key.entry, except))
        throw Error(ErrorKind::Duplicate,
                    "Er is al een rij met dezelfde waarde in de unieke " + indexText() + ".");
}

void TableChange::BuildRow()
{
    if (!m_builder.Finish())
        throw Error(ErrorKind::RowTooLarge,
                    "De rij is te lang voor tabel \"" + m_parts.name + "\": er passen " +
                        std::to_string(RowBuilder::kLongestRow) + " bytes op een pagina.");
    for (const RowBuilder::Outside& outside : m_builder.OutsideValues()) {
        if (!m_parts.longValues[static_cast<std::size_t>(outside.column)])
            ThrowDamaged(m_parts.pager, m_parts.definition.page,
                         "een memoveld heeft geen paginakaart");
    }
}

void TableChange::WriteOutside()
{
    for (const RowBuilder::Outside& outside : m_builder.OutsideValues()) {
        RowStore& store = *m_parts.longValues[static_cast<std::size_t>(outside.column)];
        const auto reference = WriteLongValue(store, outside.data).ToBytes();
        std::ranges::copy(reference, m_builder.Row().begin() +
                                         static_cast<std::ptrdiff_t>(outside.referenceAt));
    }
}

void TableChange::WriteCounters() const
{
    const TableDefinition& definition = m_parts.definition;
    const PageEdit edit = m_parts.pager.Write(definition.page);
    const auto data = edit.Data();
    const DefinitionLayout& layout = kDefinitionJet4;
    PutU32(data, layout.rowCount, definition.rowCount);
    PutU32(data, layout.autoNumber, definition.lastAutoNumber);
    for (std::size_t i = 0; i < definition.physicalIndexes.size(); ++i)
        PutU32(data, layout.counters + i * layout.counterSize + layout.counterDistinct,
               definition.physicalIndexes[i].distinctCount);
}

RowId TableChange::Insert(Row& row)
{
    RequireWritable();
    TableDefinition& definition = m_parts.definition;
    if (row.size() != definition.columns.size())
        throw Error(ErrorKind::BadValue,
                    "De rij voor tabel \"" + m_parts.name + "\" heeft niet één waarde per veld.");
    m_parts.Refresh();
    m_autoNumber = definition.lastAutoNumber;
    m_builder.Begin();
    for (std::size_t i = 0; i < row.size(); ++i) {
        FillAutoNumber(static_cast<int>(i), row[i]);
        Prepare(static_cast<int>(i), row[i]);
        if (!row[i].IsNull())
            m_builder.SetValue(static_cast<int>(i), row[i]);
    }
    const ValueOf valueOf = [&](int column) -> const Value& {
        return row[static_cast<std::size_t>(column)];
    };
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        MakeKey(i, valueOf, m_keys[i]);
        CheckKey(i, m_keys[i], {});
    }
    BuildRow();

    ChangeScope scope(m_parts.pager);
    WriteOutside();
    const RowId id = m_parts.rows->Insert(m_builder.Row());
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        if (m_keys[i].state != IndexKey::State::Known)
            continue;
        AppendRowPointer(id, m_keys[i].entry);
        if (m_parts.trees[i].Insert(m_keys[i].entry))
            ++definition.physicalIndexes[i].distinctCount;
    }
    ++definition.rowCount;
    definition.lastAutoNumber = m_autoNumber;
    WriteCounters();
    scope.Done();
    if (m_parts.rowCount)
        ++*m_parts.rowCount;
    return id;
}

void TableChange::TakeOldRow(RowId row)
{
    const auto found = FindRow(m_parts.pager, m_parts.definition.page, row);
    if (!found)
        throw Error(ErrorKind::NoCurrentRow,
                    "De rij staat niet (meer) in tabel \"" + m_parts.name + "\".");
    m_oldRow.assign(found->bytes.begin(), found->bytes.end());
    m_oldPage = found->at.page;
    m_oldView.emplace(m_parts.pager, m_oldPage, m_parts.definition, m_oldRow);
    std::fill(m_oldValues.begin(), m_oldValues.end(), std::nullopt);
}

const Value& TableChange::OldValue(int column)
{
    auto& value = m_oldValues[static_cast<std::size_t>(column)];
    if (!value)
        value = m_parts.Decode(*m_oldView, m_oldPage, column);
    return *value;
}

void TableChange::EraseEntry(std::size_t index, IndexKey& key, RowId row)
{
    switch (key.state) {
    case IndexKey::State::Absent:
        return;
    case IndexKey::State::Known:
        AppendRowPointer(row, key.entry);
        m_parts.trees[index].Erase(key.entry);
        return;
    case IndexKey::State::Unknown: // written by another program, which knows more characters
        m_parts.trees[index].EraseRow(row);
        return;
    }
}

void TableChange::Update(RowId row, std::span<const Table::Change> changes)
{
    RequireWritable();
    if (changes.empty())
        return;
    TableDefinition& definition = m_parts.definition;
    m_parts.Refresh();
    TakeOldRow(row);
    m_autoNumber = definition.lastAutoNumber;

    std::vector<std::optional<Value>> changed(definition.columns.size());
    for (const Table::Change& change : changes) {
        if (change.column < 0 || change.column >= static_cast<int>(changed.size()))
            throw Error(ErrorKind::UnknownField,
                        "Tabel \"" + m_parts.name + "\" heeft dit veld niet.");
        Value value = change.value;
        if (definition.columns[static_cast<std::size_t>(change.column)].autoNumber) {
            if (value.IsNull())
                throw Error(ErrorKind::NullNotAllowed,
                            m_parts.FieldText(change.column) + " moet een waarde hebben.");
            FillAutoNumber(change.column, value);
        }
        Prepare(change.column, value);
        changed[static_cast<std::size_t>(change.column)] = std::move(value);
    }

    m_builder.Begin();
    for (std::size_t i = 0; i < changed.size(); ++i) {
        const Column& column = definition.columns[i];
        if (changed[i]) {
            if (!changed[i]->IsNull())
                m_builder.SetValue(static_cast<int>(i), *changed[i]);
        } else if (m_oldView->HasValue(column)) {
            const bool boolean = column.type == ColumnType::Boolean;
            m_builder.SetStored(static_cast<int>(i),
                                boolean ? std::span<const std::byte>() : m_oldView->Bytes(column));
        }
    }

    const ValueOf newValue = [&](int column) -> const Value& {
        const auto& value = changed[static_cast<std::size_t>(column)];
        return value ? *value : OldValue(column);
    };
    const ValueOf oldValue = [&](int column) -> const Value& { return OldValue(column); };
    std::vector<std::size_t> indexes; // those whose key changes
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        const bool touched = std::ranges::any_of(
            definition.physicalIndexes[i].columns, [&](const IndexColumn& part) {
                return changed[static_cast<std::size_t>(part.column)].has_value();
            });
        if (!touched)
            continue;
        MakeKey(i, newValue, m_keys[i]);
        MakeKey(i, oldValue, m_oldKeys[i]);
        if (m_keys[i].state == m_oldKeys[i].state && m_keys[i].entry == m_oldKeys[i].entry &&
            m_keys[i].state != IndexKey::State::Unknown)
            continue;
        CheckKey(i, m_keys[i], row);
        indexes.push_back(i);
    }
    BuildRow();

    ChangeScope scope(m_parts.pager);
    WriteOutside();
    m_parts.rows->Replace(row, m_builder.Row());
    bool counted = m_autoNumber != definition.lastAutoNumber;
    definition.lastAutoNumber = m_autoNumber;
    for (const std::size_t i : indexes) {
        EraseEntry(i, m_oldKeys[i], row);
        if (m_keys[i].state != IndexKey::State::Known)
            continue;
        AppendRowPointer(row, m_keys[i].entry);
        if (m_parts.trees[i].Insert(m_keys[i].entry)) {
            ++definition.physicalIndexes[i].distinctCount;
            counted = true;
        }
    }
    for (std::size_t i = 0; i < changed.size(); ++i) {
        const Column& column = definition.columns[i];
        if (changed[i] && m_parts.longValues[i] && m_oldView->HasValue(column))
            FreeLongValue(m_parts.pager, m_oldPage, *m_parts.longValues[i],
                          m_oldView->Bytes(column));
    }
    if (counted)
        WriteCounters();
    scope.Done();
}

void TableChange::Delete(RowId row)
{
    RequireWritable();
    TableDefinition& definition = m_parts.definition;
    m_parts.Refresh();
    TakeOldRow(row);
    const ValueOf oldValue = [&](int column) -> const Value& { return OldValue(column); };
    for (std::size_t i = 0; i < m_oldKeys.size(); ++i)
        MakeKey(i, oldValue, m_oldKeys[i]);

    ChangeScope scope(m_parts.pager);
    for (std::size_t i = 0; i < m_oldKeys.size(); ++i)
        EraseEntry(i, m_oldKeys[i], row);
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        const Column& column = definition.columns[i];
        if (m_parts.longValues[i] && m_oldView->HasValue(column))
            FreeLongValue(m_parts.pager, m_oldPage, *m_parts.longValues[i],
                          m_oldView->Bytes(column));
    }
    m_parts.rows->Erase(row);
    if (definition.rowCount > 0)
        --definition.rowCount;
    WriteCounters();
    scope.Done();
    if (m_parts.rowCount && *m_parts.rowCount > 0)
        --*m_parts.rowCount;
}

RowId Table::Insert(Row& row)
{
    return m_parts->change->Insert(row);
}

void Table::Update(RowId row, std::span<const Change> changes)
{
    m_parts->change->Update(row, changes);
}

void Table::Delete(RowId row)
{
    m_parts->change->Delete(row);
}

} // namespace jet
