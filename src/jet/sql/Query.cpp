#include "jet/sql/StatementError.h"
#include "jet/sql/Statements.h"

namespace jet::sql {

namespace {

std::unique_ptr<Select> SelectAll(TableRef from)
{
    auto select = std::make_unique<Select>();
    select->items.emplace_back();
    select->from.push_back(std::move(from));
    return select;
}

std::unique_ptr<Select> ParseSource(std::string_view source)
{
    if (!IsSelect(source)) {
        TableRef table;
        table.name = source;
        return SelectAll(std::move(table));
    }
    Statement statement = ParseStatement(source);
    auto* select = std::get_if<std::unique_ptr<Select>>(&statement);
    if (select == nullptr)
        throw StatementError(ErrorKind::Query, "Alleen een SELECT geeft rijen", source, 0);
    if ((*select)->into)
        throw StatementError(ErrorKind::Query, "Een SELECT met INTO geeft geen rijen", source,
                             (*select)->into->position);
    return std::move(*select);
}

std::unique_ptr<Select> Sorted(std::unique_ptr<Select> select, const std::string& sort)
{
    if (sort.empty())
        return select;
    if (select->top || !select->unions.empty()) { // first chosen, then sorted
        TableRef derived;
        derived.select = std::move(select);
        select = SelectAll(std::move(derived));
    }
    select->orderBy = ParseSort(sort);
    return select;
}

} // namespace

Query::Query(std::shared_ptr<Engine> engine, std::string_view source)
    : m_engine(std::move(engine)), m_text(source)
{}

Query::~Query() = default;

std::unique_ptr<Rows> Query::Run()
{
    Schema& schema = m_engine->CurrentSchema();
    const std::unique_ptr<Select> select = Sorted(ParseSource(m_text), m_sort);
    Binder binder(schema, m_text);
    binder.Bind(*select);

    m_table = nullptr;
    m_calculated = {};
    std::vector<int> rowIds;
    const bool single = select->from.size() == 1 && !select->from.front().IsJoin() &&
                        !select->from.front().select && !select->distinct && !select->grouped &&
                        select->unions.empty();
    if (single) {
        const int source = select->from.front().source;
        std::vector<const Expr*> calculated;
        m_calculatedFields.clear();
        for (std::size_t i = 0; i < select->output.size(); ++i) {
            if (select->output[i].source == source)
                continue;
            calculated.push_back(select->output[i].expr);
            m_calculatedFields.push_back(static_cast<int>(i));
        }
        if (calculated.size() < select->output.size()) {
            m_table = m_engine->TableOf(*binder.Sources()[static_cast<std::size_t>(source)].table);
            rowIds = {source};
        }
        if (m_table && !calculated.empty()) {
            m_calculated = Rewriter(binder).RewriteRows(select->from, nullptr, calculated, rowIds);
            m_calculated.sql += " WHERE t" + std::to_string(source) + ".rowid=";
        }
    }
    Rewritten rewritten = Rewriter(binder).Rewrite(*select, rowIds);
    m_columns = rewritten.columns;
    return m_engine->Run(std::move(rewritten), m_text);
}

Row Query::Calculated(RowId row)
{
    Row values(m_columns.size());
    if (m_calculated.sql.empty())
        return values;
    Rewritten statement = m_calculated;
    statement.sql += '?' + std::to_string(statement.parameters.size() + 1);
    statement.parameters.emplace_back(PackRowId(row));
    const std::unique_ptr<Rows> rows = m_engine->Run(std::move(statement), m_text);
    if (rows->Next()) {
        for (std::size_t i = 0; i < m_calculatedFields.size(); ++i)
            values[static_cast<std::size_t>(m_calculatedFields[i])] =
                rows->Get(static_cast<int>(i));
    }
    return values;
}

} // namespace jet::sql
