#include "jet/sql/VirtualTable.h"

#include "jet/base/Numbers.h"
#include "jet/sql/KeyBounds.h"

#include <algorithm>
#include <new>
#include <variant>

namespace jet::sql {

namespace {

struct Connection : sqlite3_vtab {
    VirtualTable* table = nullptr;
};

/// Walks the rows that a plan finds. Every row is read when it is stepped on;
/// one that is gone by then is passed over.
class Cursor : public sqlite3_vtab_cursor {
public:
    explicit Cursor(VirtualTable& table)
        : sqlite3_vtab_cursor{}, m_table(table), m_rows(table.Rows()), m_reader(*m_rows)
    {}

    void Filter(const AccessPlan& plan, sqlite3_value** arguments)
    {
        m_scan.reset();
        m_index.reset();
        m_matches.reset();
        m_single.reset();
        m_end = false;
        switch (plan.how) {
        case AccessPlan::How::Row:
            m_single = UnpackRowId(sqlite3_value_int64(arguments[0]));
            break;
        case AccessPlan::How::Index:
            StartIndex(plan, arguments);
            break;
        case AccessPlan::How::Hash:
            StartHash(plan, arguments);
            break;
        case AccessPlan::How::Scan:
            m_scan.emplace(*m_rows);
            break;
        }
        Next();
    }

    void Next()
    {
        if (m_end)
            return;
        if (m_scan) {
            m_end = !m_scan->Next();
        } else if (m_index) {
            do {
                m_end = !m_index->Next();
            } while (!m_end && !m_reader.MoveTo(m_index->Id()));
        } else if (m_matches) {
            do {
                m_end = !m_matches->Next();
            } while (!m_end && !m_reader.MoveTo(m_matches->Id()));
        } else {
            m_end = !m_single || !m_reader.MoveTo(*m_single);
            m_single.reset();
        }
    }

    bool AtEnd() const { return m_end; }
    RowId Id() const { return m_scan ? m_scan->Id() : m_reader.Id(); }

    void Column(sqlite3_context* context, int column) const
    {
        const int fields = static_cast<int>(m_table.Shape()->fields.size());
        if (column >= fields + m_table.ExactFields()) {
            sqlite3_result_int64(context, PackRowId(Id()));
            return;
        }
        const bool exact = column >= fields;
        const int field = exact ? m_table.ExactField(column - fields) : column;
        ReturnValue(context, m_scan ? m_scan->Get(field) : m_reader.Get(field), exact);
    }

private:
    const jet::Column& Definition(int column) const
    {
        return m_rows->Definition().columns[static_cast<std::size_t>(column)];
    }

    // Bounds are always taken inclusive and SQLite compares again, so that a key
    // that is cut off, or a number that is rounded, costs time at most.
    void StartIndex(const AccessPlan& plan, sqlite3_value** arguments)
    {
        const PhysicalIndex& index =
            m_rows->Definition().physicalIndexes[static_cast<std::size_t>(plan.index)];
        Row first, last;
        bool zero = false;
        std::size_t argument = 0;
        for (; argument < plan.columns.size(); ++argument) {
            const KeyValue key = EqualKey(Definition(plan.columns[argument]), arguments[argument]);
            if (key.kind == KeyValue::Kind::Nothing) {
                m_end = true;
                return;
            }
            if (key.kind == KeyValue::Kind::Unknown) {
                m_scan.emplace(*m_rows);
                return;
            }
            if (zero)
                continue;
            first.push_back(key.value);
            last.push_back(key.value);
            // Plus and minus zero are equal, but have keys of their own.
            zero = WidenZero(first.back(), last.back(), index.columns[argument].ascending);
        }
        if (!zero && (plan.lower || plan.upper)) {
            const IndexColumn& part = index.columns[plan.columns.size()];
            const jet::Column& column = Definition(part.column);
            for (const bool up : {false, true}) {
                if (!(up ? plan.upper : plan.lower))
                    continue;
                sqlite3_value* value = arguments[argument++];
                const KeyValue key = up ? UpperKey(column, value) : LowerKey(column, value);
                if (key.kind == KeyValue::Kind::Nothing) {
                    m_end = true;
                    return;
                }
                if (key.kind == KeyValue::Kind::Value)
                    (up == part.ascending ? last : first).push_back(WidenedZero(key.value, up));
            }
        }
        IndexRange range;
        if (!first.empty())
            range.lower = std::move(first);
        if (!last.empty())
            range.upper = std::move(last);
        try {
            m_index.emplace(*m_rows, plan.index, range);
        } catch (const Error& error) {
            if (error.Kind() != ErrorKind::TextNotIndexable)
                throw;
            m_scan.emplace(*m_rows);
        }
    }

    static Value WidenedZero(const Value& value, bool up)
    {
        const double sign = up ? 0.0 : -0.0;
        if (const auto* number = std::get_if<double>(&value.Raw()); number && *number == 0)
            return sign;
        if (const auto* number = std::get_if<float>(&value.Raw()); number && *number == 0)
            return static_cast<float>(sign);
        if (const auto* moment = std::get_if<DateTime>(&value.Raw()); moment && moment->days == 0)
            return DateTime{sign};
        return value;
    }

    static bool WidenZero(Value& first, Value& last, bool ascending)
    {
        const bool zero = (std::holds_alternative<double>(first.Raw()) ||
                           std::holds_alternative<float>(first.Raw()) ||
                           std::holds_alternative<DateTime>(first.Raw())) &&
                          first.AsDouble() == 0;
        if (zero) {
            first = WidenedZero(first, !ascending);
            last = WidenedZero(last, ascending);
        }
        return zero;
    }

    void StartHash(const AccessPlan& plan, sqlite3_value** arguments)
    {
        std::uint64_t hash = 0;
        for (std::size_t i = 0; i < plan.columns.size(); ++i) {
            KeyValue::Kind kind = KeyValue::Kind::Unknown;
            const std::uint64_t part = HashOf(Definition(plan.columns[i]), arguments[i], kind);
            if (kind == KeyValue::Kind::Nothing) {
                m_end = true;
                return;
            }
            if (kind == KeyValue::Kind::Unknown) {
                m_scan.emplace(*m_rows);
                return;
            }
            hash = MixHashes(hash, part);
        }
        m_lookup = m_table.Lookups().Find(*m_rows, plan.columns);
        if (m_lookup)
            m_matches = m_lookup->Find(hash);
        else
            m_scan.emplace(*m_rows);
    }

    VirtualTable& m_table;
    std::shared_ptr<Table> m_rows;
    RowReader m_reader;
    std::optional<TableScan> m_scan;
    std::optional<IndexScan> m_index;
    std::shared_ptr<const HashLookup> m_lookup;
    std::optional<HashLookup::Matches> m_matches;
    std::optional<RowId> m_single;
    bool m_end = true;
};

template <typename Body>
int Guarded(sqlite3_vtab* vtab, Body&& body) noexcept
{
    try {
        return body();
    } catch (...) {
        static_cast<Connection*>(vtab)->table->Errors().Keep(std::current_exception());
        return SQLITE_ERROR;
    }
}

int Connect(sqlite3* handle, void* table, int, const char* const*, sqlite3_vtab** vtab,
            char**) noexcept
{
    auto* connection = new (std::nothrow) Connection;
    if (connection == nullptr)
        return SQLITE_NOMEM;
    connection->table = static_cast<VirtualTable*>(table);
    *vtab = connection;
    const int result = Guarded(connection, [&] {
        return sqlite3_declare_vtab(handle, connection->table->Declaration().c_str());
    });
    if (result != SQLITE_OK) {
        delete connection;
        *vtab = nullptr;
    }
    return result;
}

int Disconnect(sqlite3_vtab* vtab) noexcept
{
    delete static_cast<Connection*>(vtab);
    return SQLITE_OK;
}

int BestIndex(sqlite3_vtab* vtab, sqlite3_index_info* info) noexcept
{
    return Guarded(vtab, [&] {
        VirtualTable& table = *static_cast<Connection*>(vtab)->table;
        info->idxNum = table.AddPlan(ChoosePlan(*table.Rows(), *info));
        return SQLITE_OK;
    });
}

int Open(sqlite3_vtab* vtab, sqlite3_vtab_cursor** cursor) noexcept
{
    return Guarded(vtab, [&] {
        *cursor = new Cursor(*static_cast<Connection*>(vtab)->table);
        return SQLITE_OK;
    });
}

int CloseCursor(sqlite3_vtab_cursor* cursor) noexcept
{
    delete static_cast<Cursor*>(cursor);
    return SQLITE_OK;
}

int Filter(sqlite3_vtab_cursor* cursor, int plan, const char*, int,
           sqlite3_value** arguments) noexcept
{
    return Guarded(cursor->pVtab, [&] {
        const VirtualTable& table = *static_cast<Connection*>(cursor->pVtab)->table;
        static_cast<Cursor*>(cursor)->Filter(table.Plan(plan), arguments);
        return SQLITE_OK;
    });
}

int Next(sqlite3_vtab_cursor* cursor) noexcept
{
    return Guarded(cursor->pVtab, [&] {
        static_cast<Cursor*>(cursor)->Next();
        return SQLITE_OK;
    });
}

int AtEnd(sqlite3_vtab_cursor* cursor) noexcept
{
    return static_cast<Cursor*>(cursor)->AtEnd() ? 1 : 0;
}

int Column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column) noexcept
{
    return Guarded(cursor->pVtab, [&] {
        static_cast<Cursor*>(cursor)->Column(context, column);
        return SQLITE_OK;
    });
}

int GetRowId(sqlite3_vtab_cursor* cursor, sqlite3_int64* row) noexcept
{
    *row = PackRowId(static_cast<Cursor*>(cursor)->Id());
    return SQLITE_OK;
}

const sqlite3_module kModule = [] {
    sqlite3_module module{};
    module.iVersion = 1;
    module.xConnect = Connect; // no xCreate: usable without being created
    module.xBestIndex = BestIndex;
    module.xDisconnect = Disconnect;
    module.xDestroy = Disconnect;
    module.xOpen = Open;
    module.xClose = CloseCursor;
    module.xFilter = Filter;
    module.xNext = Next;
    module.xEof = AtEnd;
    module.xColumn = Column;
    module.xRowid = GetRowId;
    return module;
}();

} // namespace

VirtualTable::VirtualTable(sqlite3* handle, std::string name, std::shared_ptr<Table> table,
                           LookupCache& lookups, PendingError& errors)
    : m_handle(handle), m_table(std::move(table)), m_lookups(lookups), m_errors(errors)
{
    auto shape = std::make_shared<TableShape>();
    shape->name = m_table->Name();
    shape->module = std::move(name);
    const std::vector<jet::Column>& columns = m_table->Definition().columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const jet::Column& column = columns[i];
        shape->fields.push_back({column.name, column.type, column.Size(), column.autoNumber,
                                 column.precision, column.scale});
        if (column.type == ColumnType::Currency || column.type == ColumnType::Decimal)
            m_exact.push_back(static_cast<int>(i));
    }
    m_shape = std::move(shape);
    sqlite3_create_module_v2(m_handle, m_shape->module.c_str(), &kModule, this, nullptr);
}

VirtualTable::~VirtualTable()
{
    sqlite3_create_module_v2(m_handle, m_shape->module.c_str(), nullptr, nullptr, nullptr);
}

std::string VirtualTable::Declaration() const
{
    std::string text = "CREATE TABLE t(";
    for (std::size_t i = 0; i < m_shape->fields.size(); ++i) {
        const ColumnType type = m_shape->fields[i].type;
        text += (i > 0 ? ",c" : "c") + std::to_string(i);
        if (type == ColumnType::Text || type == ColumnType::Memo || type == ColumnType::Guid)
            text += " TEXT COLLATE JET";
    }
    for (const int field : m_exact)
        text += ",x" + std::to_string(field);
    return text + ",r)";
}

int VirtualTable::AddPlan(const AccessPlan& plan)
{
    const auto place = std::find(m_plans.begin(), m_plans.end(), plan);
    if (place != m_plans.end())
        return static_cast<int>(place - m_plans.begin());
    m_plans.push_back(plan);
    return static_cast<int>(m_plans.size()) - 1;
}

std::int64_t PackRowId(RowId row)
{
    return static_cast<std::int64_t>(row.page) << 8 | row.slot;
}

RowId UnpackRowId(std::int64_t number)
{
    return {static_cast<PageNumber>(number >> 8), static_cast<std::uint8_t>(number & 0xFF)};
}

namespace {

struct Returner {
    sqlite3_context* context;
    bool exact;

    void Text(std::string_view text) const
    {
        sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    void operator()(std::monostate) const { sqlite3_result_null(context); }
    void operator()(bool v) const { sqlite3_result_int(context, v ? -1 : 0); }
    void operator()(std::uint8_t v) const { sqlite3_result_int(context, v); }
    void operator()(std::int16_t v) const { sqlite3_result_int(context, v); }
    void operator()(std::int32_t v) const { sqlite3_result_int(context, v); }
    void operator()(Currency v) const
    {
        if (exact)
            sqlite3_result_int64(context, v.scaled);
        else
            sqlite3_result_double(context, static_cast<double>(v.scaled) / 10000.0);
    }
    void operator()(float v) const { sqlite3_result_double(context, static_cast<double>(v)); }
    void operator()(double v) const { sqlite3_result_double(context, v); }
    void operator()(DateTime v) const { sqlite3_result_double(context, v.days); }
    void operator()(const std::string& v) const { Text(v); }
    void operator()(const Bytes& v) const
    {
        sqlite3_result_blob64(context, v.data(), v.size(), SQLITE_TRANSIENT);
    }
    void operator()(const Guid& v) const { Text(TextFromGuid(v)); }
    void operator()(const Decimal& v) const
    {
        if (exact)
            Text(TextFromDecimal(v));
        else
            sqlite3_result_double(context, DoubleFromDecimal(v));
    }
};

} // namespace

void ReturnValue(sqlite3_context* context, const Value& value, bool exact)
{
    std::visit(Returner{context, exact}, value.Raw());
}

} // namespace jet::sql
