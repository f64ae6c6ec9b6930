#include "jet_sql/QueryMaker.h"

#include <algorithm>
#include <array>

namespace jet::testing {

namespace {

constexpr std::array<const char*, 14> kTexts = {"dijk", "Dijk", "DIJK", "kade", "Kade",
                                                "kadé", "KADÉ", "",     "a b",  "a-b",
                                                "A B",  "zijl", "é",    "E"};

Twin Same(const std::string& text)
{
    return {text, text};
}

Twin operator+(const Twin& a, const Twin& b)
{
    return {a.jet + b.jet, a.lite + b.lite};
}

Twin operator+(const Twin& a, const std::string& b)
{
    return {a.jet + b, a.lite + b};
}

Twin operator+(const std::string& a, const Twin& b)
{
    return {a + b.jet, a + b.lite};
}

} // namespace

std::vector<MadeTable> QueryMaker::MakeTables()
{
    m_tables.clear();
    const int count = 2 + Below(3);
    for (int t = 0; t < count; ++t) {
        MadeTable table;
        table.name = "T" + std::to_string(t);
        table.columns = {{"id", Kind::Whole, "LONG"},
                         {"k", Kind::Whole, Chance(50) ? "LONG" : "SHORT"},
                         {"t", Kind::Text, Chance(80) ? "TEXT(30)" : "MEMO"},
                         {"d", Kind::Number, Chance(70) ? "DOUBLE" : "SINGLE"}};
        if (Chance(50))
            table.columns.push_back({"b", Kind::YesNo, "YESNO"});
        if (Chance(50))
            table.columns.push_back({"w", Kind::Whole, Chance(50) ? "BYTE" : "LONG"});
        if (Chance(40))
            table.columns.push_back({"g", Kind::Money, "CURRENCY"});
        if (Chance(40))
            table.columns.push_back({"u", Kind::Text, "TEXT(20)"});
        m_tables.push_back(std::move(table));
    }
    return m_tables;
}

std::vector<std::string> QueryMaker::MakeIndexes()
{
    std::vector<std::string> indexes;
    for (const MadeTable& table : m_tables) {
        if (Chance(70))
            indexes.push_back("CREATE UNIQUE INDEX pk ON " + table.name + " (id" +
                              (Chance(30) ? " DESC" : "") + ")" +
                              (Chance(50) ? " WITH PRIMARY" : ""));
        for (int i = Below(3); i > 0; --i) {
            std::string fields;
            std::vector<std::size_t> order(table.columns.size());
            for (std::size_t c = 0; c < order.size(); ++c)
                order[c] = c;
            std::shuffle(order.begin(), order.end(), m_random);
            const int parts = 1 + Below(3);
            for (int p = 0, used = 0; p < static_cast<int>(order.size()) && used < parts; ++p) {
                const MadeColumn& column = table.columns[order[static_cast<std::size_t>(p)]];
                if (column.jetType == "MEMO")
                    continue;
                fields += (used++ > 0 ? "," : "") + column.name + (Chance(30) ? " DESC" : "");
            }
            if (!fields.empty())
                indexes.push_back("CREATE INDEX x" + std::to_string(i) + " ON " + table.name +
                                  " (" + fields + ")" + (Chance(15) ? " WITH IGNORE NULL" : ""));
        }
    }
    return indexes;
}

std::string QueryMaker::MakeRow(const MadeTable& table, int id)
{
    std::string values = std::to_string(id);
    for (std::size_t i = 1; i < table.columns.size(); ++i) {
        const MadeColumn& column = table.columns[i];
        values += ',';
        if (Chance(15) && column.kind != Kind::YesNo)
            values += "NULL";
        else if (column.kind == Kind::Text)
            values +=
                "'" + std::string(kTexts[static_cast<std::size_t>(Below(kTexts.size()))]) + "'";
        else if (column.kind == Kind::YesNo)
            values += Chance(50) ? "-1" : "0";
        else if (column.jetType == "BYTE")
            values += std::to_string(Below(6));
        else if (column.kind == Kind::Whole)
            values += std::to_string(Below(8) - 2);
        else
            values += std::to_string(Below(12) - 4) + (Chance(50) ? ".25" : ".5");
    }
    return "INSERT INTO " + table.name + " VALUES (" + values + ")";
}

// --- FROM ------------------------------------------------------------------------

Twin QueryMaker::Leaf()
{
    const MadeTable& table =
        m_tables[static_cast<std::size_t>(Below(static_cast<int>(m_tables.size())))];
    const std::string alias = "a" + std::to_string(++m_aliases);
    m_sources.push_back({alias, &table});
    if (Chance(10)) { // a sub-select in its place
        std::string fields;
        for (const MadeColumn& column : table.columns)
            fields += (fields.empty() ? "" : ",") + column.name;
        return Same("(SELECT " + fields + " FROM " + table.name + (Chance(50) ? " WHERE k>0" : "") +
                    ") AS " + alias);
    }
    return Same(table.name + " AS " + alias);
}

Twin QueryMaker::JoinCondition(std::size_t leftBegin, std::size_t rightBegin)
{
    // Some column of the left side against one of the same kind on the right.
    const Source& right =
        m_sources[rightBegin +
                  static_cast<std::size_t>(Below(static_cast<int>(m_sources.size() - rightBegin)))];
    const Source& left =
        m_sources[leftBegin +
                  static_cast<std::size_t>(Below(static_cast<int>(rightBegin - leftBegin)))];
    for (;;) {
        const MadeColumn& a = left.table->columns[static_cast<std::size_t>(
            Below(static_cast<int>(left.table->columns.size())))];
        const MadeColumn& b = right.table->columns[static_cast<std::size_t>(
            Below(static_cast<int>(right.table->columns.size())))];
        if ((a.kind == Kind::Text) != (b.kind == Kind::Text) || a.kind == Kind::YesNo ||
            b.kind == Kind::YesNo)
            continue;
        const char* op = Chance(85) ? "=" : Chance(50) ? "<" : ">=";
        return Same(left.alias + "." + a.name + " " + op + " " + right.alias + "." + b.name);
    }
}

Twin QueryMaker::Join(int depth)
{
    if (depth == 0 || Chance(30))
        return Leaf();
    const std::size_t leftBegin = m_sources.size();
    Twin left = Join(depth - 1);
    const std::size_t rightBegin = m_sources.size();
    Twin right = Join(depth - 1);
    if (left.jet.find(" JOIN ") != std::string::npos)
        left = "(" + left + ")";
    if (right.jet.find(" JOIN ") != std::string::npos)
        right = "(" + right + ")";
    const char* kind = Chance(50) ? " INNER JOIN " : Chance(60) ? " LEFT JOIN " : " RIGHT JOIN ";
    Twin on = JoinCondition(leftBegin, rightBegin);
    if (Chance(20))
        on = "(" + on + ") AND (" + JoinCondition(leftBegin, rightBegin) + ")";
    return left + kind + right + " ON " + on;
}

Twin QueryMaker::From()
{
    m_sources.clear();
    Twin from = Join(Chance(40) ? 0 : 1 + Below(2));
    if (Chance(10) && m_sources.size() < 3)
        from = from + ", " + Leaf();
    return from;
}

// --- expressions -----------------------------------------------------------------

QueryMaker::ColumnOf QueryMaker::AnyColumn()
{
    const Source& source =
        m_sources[static_cast<std::size_t>(Below(static_cast<int>(m_sources.size())))];
    const MadeColumn& column = source.table->columns[static_cast<std::size_t>(
        Below(static_cast<int>(source.table->columns.size())))];
    return {source.alias + "." + column.name, column.kind};
}

bool QueryMaker::HasKind(Kind kind) const
{
    return std::any_of(m_sources.begin(), m_sources.end(), [&](const Source& source) {
        return std::any_of(source.table->columns.begin(), source.table->columns.end(),
                           [&](const MadeColumn& column) { return column.kind == kind; });
    });
}

QueryMaker::ColumnOf QueryMaker::ColumnOfKind(Kind kind)
{
    for (;;) {
        const ColumnOf column = AnyColumn();
        if (column.kind == kind)
            return column;
    }
}

Twin QueryMaker::Literal(Kind kind)
{
    switch (kind) {
    case Kind::Text: {
        const std::string text = kTexts[static_cast<std::size_t>(Below(kTexts.size()))];
        return {Chance(50) ? "\"" + text + "\"" : "'" + text + "'", "'" + text + "'"};
    }
    case Kind::YesNo:
        return Chance(50) ? Twin{"True", "-1"} : Twin{"False", "0"};
    case Kind::Whole:
        return Same(std::to_string(Below(7) - 1));
    default:
        return Same(std::to_string(Below(6) - 2) + (Chance(50) ? ".25" : ".5"));
    }
}

Twin QueryMaker::Number(int depth)
{
    if (depth == 0 || Chance(40))
        return Chance(70) ? Same(ColumnOfKind(Chance(50) && HasKind(Kind::Number) ? Kind::Number
                                                                                  : Kind::Whole)
                                     .text)
                          : Literal(Kind::Whole);
    switch (Below(8)) {
    case 0:
        return "(" + Number(depth - 1) + "+" + Number(depth - 1) + ")";
    case 1:
        return "(" + Number(depth - 1) + " - " + Number(depth - 1) + ")";
    case 2:
        return "(" + Number(0) + "*" + Number(0) + ")";
    case 3: {
        const Twin a = Number(depth - 1), b = Number(0);
        return {"(" + a.jet + "/" + b.jet + ")", "(1.0*" + a.lite + "/" + b.lite + ")"};
    }
    case 4: {
        const Twin condition = Condition(depth - 1), a = Number(0), b = Number(0);
        return {"IIf(" + condition.jet + "," + a.jet + "," + b.jet + ")",
                "iif(" + condition.lite + "," + a.lite + "," + b.lite + ")"};
    }
    case 5: {
        const Twin a = Number(depth - 1);
        return {"Nz(" + a.jet + ",0)", "coalesce(" + a.lite + ",0)"};
    }
    case 6: {
        const Twin text = Text(0);
        return {"Len(" + text.jet + ")", "length(" + text.lite + ")"};
    }
    default:
        return "(- " + Number(depth - 1) + ")";
    }
}

Twin QueryMaker::Text(int depth)
{
    if (depth == 0 || Chance(50))
        return Chance(75) ? Same(ColumnOfKind(Kind::Text).text) : Literal(Kind::Text);
    switch (Below(4)) {
    case 0: {
        const Twin a = Text(0), b = Literal(Kind::Text);
        return {"(" + a.jet + " & " + b.jet + ")",
                "(coalesce(" + a.lite + ",'')||coalesce(" + b.lite + ",''))"};
    }
    case 1: {
        const Twin a = Text(0);
        return {"Left(" + a.jet + ",2)", "substr(" + a.lite + ",1,2)"};
    }
    case 2: {
        const Twin condition = Condition(depth - 1), a = Text(0), b = Text(0);
        return {"IIf(" + condition.jet + "," + a.jet + "," + b.jet + ")",
                "iif(" + condition.lite + "," + a.lite + "," + b.lite + ")"};
    }
    default: {
        const Twin a = Text(0);
        return {"Nz(" + a.jet + ",'leeg')", "coalesce(" + a.lite + ",'leeg')"};
    }
    }
}

Twin QueryMaker::Value(Kind kind, int depth)
{
    return kind == Kind::Text ? Text(depth) : Number(depth);
}

Twin QueryMaker::Comparison(int depth)
{
    static constexpr std::array<const char*, 6> kOps = {"=", "<>", "<", "<=", ">", ">="};
    const char* op = kOps[static_cast<std::size_t>(Chance(50) ? 0 : Below(6))];
    if (Chance(10) && HasKind(Kind::YesNo))
        return Same(ColumnOfKind(Kind::YesNo).text) + (Chance(70) ? "=" : "<>") +
               Literal(Kind::YesNo);
    const Kind kind = Chance(40) ? Kind::Text : Kind::Whole;
    const Twin a = Value(kind, depth), b = Chance(50) ? Literal(kind) : Value(kind, depth);
    const std::string collate = kind == Kind::Text ? " COLLATE JET" : "";
    return {a.jet + op + b.jet, a.lite + collate + op + b.lite};
}

Twin QueryMaker::SubCondition()
{
    const MadeTable& table =
        m_tables[static_cast<std::size_t>(Below(static_cast<int>(m_tables.size())))];
    const std::string alias = "s" + std::to_string(++m_aliases);
    const std::string outerKey = ColumnOfKind(Kind::Whole).text;
    const std::string from = " FROM " + table.name + " AS " + alias;
    switch (Below(4)) {
    case 0:
        return Same(outerKey + (Chance(70) ? " IN " : " NOT IN ") + "(SELECT " + alias + ".k" +
                    from + (Chance(50) ? " WHERE " + alias + ".k Is Not Null" : "") + ")");
    case 1: {
        const std::string text = ColumnOfKind(Kind::Text).text;
        return Same(text + " IN (SELECT " + alias + ".t" + from + ")");
    }
    case 2:
        return Same(std::string(Chance(50) ? "" : "NOT ") + "EXISTS (SELECT *" + from + " WHERE " +
                    alias + ".k=" + outerKey + ")");
    default:
        return Same("(SELECT Max(" + alias + ".d)" + from + " WHERE " + alias + ".k=" + outerKey +
                    ")>1");
    }
}

Twin QueryMaker::Condition(int depth)
{
    if (depth > 0 && Chance(35)) {
        const Twin a = Condition(depth - 1), b = Condition(depth - 1);
        return "(" + a + (Chance(60) ? " AND " : " OR ") + b + ")";
    }
    switch (Below(9)) {
    case 0:
        return "Not (" + Comparison(0) + ")";
    case 1:
        return Same(AnyColumn().text + (Chance(50) ? " Is Null" : " Is Not Null"));
    case 2: {
        const Kind kind = Chance(40) ? Kind::Text : Kind::Whole;
        const Twin a = Value(kind, 0);
        const std::string collate = kind == Kind::Text ? " COLLATE JET" : "";
        Twin list = Literal(kind);
        for (int i = Below(5); i > 0; --i)
            list = list + "," + Literal(kind);
        const std::string in = Chance(80) ? " IN (" : " NOT IN (";
        return {a.jet + in + list.jet + ")", a.lite + collate + in + list.lite + ")"};
    }
    case 3: {
        const Kind kind = Chance(40) ? Kind::Text : Kind::Whole;
        const Twin a = Value(kind, 0), b = Literal(kind), c = Literal(kind);
        const std::string collate = kind == Kind::Text ? " COLLATE JET" : "";
        return {a.jet + " Between " + b.jet + " And " + c.jet,
                a.lite + collate + " BETWEEN " + b.lite + " AND " + c.lite};
    }
    case 4:
        return depth > 0 ? SubCondition() : Comparison(0);
    default:
        return Comparison(depth > 0 ? 1 : 0);
    }
}

Twin QueryMaker::Aggregate()
{
    switch (Below(6)) {
    case 0:
        return Same("Count(*)");
    case 1:
        return Same("Count(" + AnyColumn().text + ")");
    case 2:
        return "Sum(" + Number(1) + ")";
    case 3:
        return "Avg(" + Number(0) + ")";
    case 4: {
        const Twin text = Text(1);
        return {"Max(" + text.jet + ")", "max(" + text.lite + " COLLATE JET)"};
    }
    default:
        return std::string(Chance(50) ? "Min(" : "Max(") + Number(1) + ")";
    }
}

// --- statements --------------------------------------------------------------------

MadeQuery QueryMaker::Plain()
{
    MadeQuery query;
    const Twin from = From();
    query.foldsTexts = Chance(20);
    Twin items;
    const int count = 1 + Below(4);
    for (int i = 0; i < count; ++i) {
        const Kind kind = Chance(35) ? Kind::Text : Kind::Whole;
        Twin item = Chance(60) ? Same(AnyColumn().text) : Value(kind, 2);
        if (query.foldsTexts)
            item.lite += " COLLATE JET";
        items = items + (i > 0 ? ", " : "") + item + " AS o" + std::to_string(i);
    }
    query.text =
        std::string("SELECT ") + (query.foldsTexts ? "DISTINCT " : "") + items + " FROM " + from;
    if (Chance(70))
        query.text = query.text + " WHERE " + Condition(2);
    if (Chance(30)) {
        query.ordered = true;
        const char* direction = Chance(50) ? "" : " DESC";
        query.text.jet += std::string(" ORDER BY 1") + direction;
        query.text.lite += std::string(" ORDER BY 1 COLLATE JET") + direction;
        if (Chance(30)) {
            query.top = 1 + Below(6);
            const std::size_t at = query.foldsTexts ? 16 : 7;
            query.text.jet.insert(at, "TOP " + std::to_string(query.top) + " ");
        }
    }
    return query;
}

MadeQuery QueryMaker::Grouped()
{
    MadeQuery query;
    query.foldsTexts = true;
    const Twin from = From();
    Twin items, groups;
    const int keys = Below(3);
    for (int i = 0; i < keys; ++i) {
        Twin key = Same(AnyColumn().text);
        if (Chance(30)) {
            // Not a number alone, which SQLite takes for the place of an item.
            const Twin value = Value(Chance(50) ? Kind::Text : Kind::Whole, 1);
            if (value.jet.find_first_not_of("-() 0123456789") != std::string::npos)
                key = value;
        }
        items = items + key + ", ";
        groups.jet += (i > 0 ? ", " : "") + key.jet;
        groups.lite += (i > 0 ? ", " : "") + key.lite + " COLLATE JET";
    }
    items = items + Aggregate();
    for (int i = Below(3); i > 0; --i)
        items = items + ", " + Aggregate();
    query.text = "SELECT " + items + " FROM " + from;
    if (Chance(50))
        query.text = query.text + " WHERE " + Condition(1);
    if (keys > 0)
        query.text = query.text + " GROUP BY " + groups;
    if (keys > 0 && Chance(30))
        query.text = query.text + " HAVING Count(*)>" + std::to_string(Below(4));
    return query;
}

MadeQuery QueryMaker::United()
{
    MadeQuery query;
    query.foldsTexts = true;
    const Kind first = Chance(50) ? Kind::Text : Kind::Whole;
    for (int i = 0; i < 2; ++i) {
        const Twin from = From();
        Twin item = Value(first, 1);
        item.lite += first == Kind::Text ? " COLLATE JET" : "";
        Twin branch = "SELECT " + item + " AS o FROM " + from;
        if (Chance(60))
            branch = branch + " WHERE " + Condition(1);
        query.text =
            i == 0 ? branch : query.text + (Chance(30) ? " UNION ALL " : " UNION ") + branch;
    }
    return query;
}

MadeQuery QueryMaker::MakeQuery()
{
    const int kind = Below(10);
    return kind < 6 ? Plain() : kind < 9 ? Grouped() : United();
}

Twin QueryMaker::MakeChange()
{
    const MadeTable& table =
        m_tables[static_cast<std::size_t>(Below(static_cast<int>(m_tables.size())))];
    m_sources = {{table.name, &table}};
    // No sub-selects: SQLite would see in them what the statement has changed already.
    if (Chance(30))
        return "DELETE FROM " + table.name + " WHERE " + Condition(0) + " AND id>" +
               std::to_string(Below(40));
    const char* column = Chance(50) ? "k" : "d";
    const Twin value = Chance(80) ? Literal(Kind::Whole) : Same("NULL");
    return "UPDATE " + table.name + " SET " + column + "=" + value + ", t=" + Literal(Kind::Text) +
           " WHERE " + Condition(0);
}

} // namespace jet::testing
