#include "jet/sql/Parser.h"

#include "jet/sql/DefinitionParser.h"
#include "jet/sql/StatementError.h"

#include <algorithm>

namespace jet::sql {

namespace {

void Raise(int& height, const ExprPtr& expr)
{
    if (expr)
        height = std::max(height, expr->height + 1);
}

int HeightOf(const TableRef& table)
{
    int height = table.select ? table.select->height : 1;
    if (table.IsJoin())
        height = std::max(HeightOf(*table.left), HeightOf(*table.right));
    Raise(height, table.on);
    return height + 1;
}

int HeightOf(const Select& select)
{
    int height = 1;
    for (const SelectItem& item : select.items)
        Raise(height, item.expr);
    for (const TableRef& table : select.from)
        height = std::max(height, HeightOf(table) + 1);
    Raise(height, select.where);
    Raise(height, select.having);
    for (const ExprPtr& expr : select.groupBy)
        Raise(height, expr);
    for (const OrderTerm& term : select.orderBy)
        Raise(height, term.expr);
    for (const Select::Branch& branch : select.unions)
        height = std::max(height, HeightOf(*branch.select) + 1);
    return height;
}

/// SELECT, INSERT, UPDATE, DELETE. What defines tables is DefinitionParser's.
class StatementParser {
public:
    StatementParser(TokenReader& tokens, ExpressionParser& expressions)
        : m_tokens(tokens), m_expressions(expressions)
    {}

    Statement Parse()
    {
        if (m_tokens.AtWord("SELECT"))
            return SelectStatement();
        if (m_tokens.TakeWord("INSERT"))
            return InsertStatement();
        if (m_tokens.TakeWord("UPDATE"))
            return UpdateStatement();
        if (m_tokens.TakeWord("DELETE"))
            return DeleteStatement();
        return ParseDefinition(m_tokens);
    }

    std::unique_ptr<Select> SelectStatement();

private:
    std::unique_ptr<Select> SelectBranch();
    void Items(Select& select);
    SelectItem Item();
    std::vector<TableRef> From();
    TableRef Joined();
    TableRef Single();
    TableRef TableName();
    void Alias(TableRef& table);
    Statement InsertStatement();
    Statement UpdateStatement();
    Statement DeleteStatement();
    void Top(Select& select);

    TokenReader& m_tokens;
    ExpressionParser& m_expressions;
};

std::unique_ptr<Select> ParseNested(TokenReader& tokens, ExpressionParser& expressions)
{
    return StatementParser(tokens, expressions).SelectStatement();
}

std::unique_ptr<Select> StatementParser::SelectStatement()
{
    const TokenReader::Level level(m_tokens);
    std::unique_ptr<Select> select = SelectBranch();
    while (m_tokens.TakeWord("UNION")) {
        Select::Branch branch;
        branch.all = m_tokens.TakeWord("ALL");
        branch.select = SelectBranch();
        if (branch.select->into)
            m_tokens.FailAt(branch.select->position, ErrorKind::Syntax,
                            "INTO hoort in de eerste SELECT");
        select->unions.push_back(std::move(branch));
    }
    if (m_tokens.TakeWord("ORDER")) {
        m_tokens.ExpectWord("BY");
        do {
            OrderTerm term;
            term.expr = m_expressions.Parse();
            term.descending = m_tokens.TakeWord("DESC");
            if (!term.descending)
                m_tokens.TakeWord("ASC");
            select->orderBy.push_back(std::move(term));
        } while (m_tokens.TakeSymbol(","));
    }
    select->height = HeightOf(*select);
    if (select->height > kMaxHeight)
        m_tokens.FailAt(select->position, ErrorKind::Syntax, "De opdracht is te diep genest");
    return select;
}

void StatementParser::Top(Select& select)
{
    const Token token = m_tokens.Take();
    if (token.kind != TokenKind::Integer)
        m_tokens.FailAt(token.position, ErrorKind::Syntax, "Achter TOP hoort een geheel getal");
    select.top = token.integer;
    select.topPercent = m_tokens.TakeWord("PERCENT");
    if (select.topPercent && token.integer > 100)
        m_tokens.FailAt(token.position, ErrorKind::Syntax, "TOP gaat tot 100 procent");
}

std::unique_ptr<Select> StatementParser::SelectBranch()
{
    auto select = std::make_unique<Select>();
    select->position = m_tokens.Position();
    m_tokens.ExpectWord("SELECT");
    for (bool more = true; more;) {
        more = true;
        if (m_tokens.TakeWord("DISTINCT"))
            select->distinct = true;
        else if (m_tokens.AtWord("TOP") && m_tokens.Peek(1).kind == TokenKind::Integer &&
                 m_tokens.TakeWord("TOP"))
            Top(*select);
        else if (!m_tokens.TakeWord("ALL") && !m_tokens.TakeWord("DISTINCTROW"))
            more = false;
    }
    Items(*select);
    if (m_tokens.TakeWord("INTO"))
        select->into = TableName();
    if (m_tokens.TakeWord("FROM"))
        select->from = From();
    if (m_tokens.TakeWord("WHERE"))
        select->where = m_expressions.Parse();
    if (m_tokens.TakeWord("GROUP")) {
        m_tokens.ExpectWord("BY");
        do {
            select->groupBy.push_back(m_expressions.Parse());
        } while (m_tokens.TakeSymbol(","));
    }
    if (m_tokens.TakeWord("HAVING"))
        select->having = m_expressions.Parse();
    return select;
}

void StatementParser::Items(Select& select)
{
    do {
        select.items.push_back(Item());
    } while (m_tokens.TakeSymbol(","));
}

SelectItem StatementParser::Item()
{
    SelectItem item;
    item.position = m_tokens.Position();
    if (m_tokens.TakeSymbol("*"))
        return item;
    if (m_tokens.AtName() && m_tokens.AtSymbol(".", 1) && m_tokens.AtSymbol("*", 2)) {
        item.starTable = m_tokens.Take().text;
        m_tokens.Take();
        m_tokens.Take();
        return item;
    }
    item.expr = m_expressions.Parse();
    if (m_tokens.TakeWord("AS")) {
        // COUNT(*) AS COUNT, MIN(x) as min: no word is reserved here.
        const Token& token = m_tokens.Peek();
        if (token.kind != TokenKind::Name && token.kind != TokenKind::Word)
            m_tokens.Unexpected("een naam");
        item.alias = m_tokens.Take().text;
    }
    return item;
}

std::vector<TableRef> StatementParser::From()
{
    std::vector<TableRef> tables;
    do {
        tables.push_back(Joined());
    } while (m_tokens.TakeSymbol(","));
    return tables;
}

// Joins of one level read from the left: a JOIN b ON .. JOIN c ON .. .
TableRef StatementParser::Joined()
{
    TableRef left = Single();
    for (int joins = 0;; ++joins) {
        JoinKind kind = JoinKind::Inner;
        const std::size_t position = m_tokens.Position();
        if (m_tokens.AtWord("LEFT") || m_tokens.AtWord("RIGHT")) {
            kind = m_tokens.Take().IsWord("LEFT") ? JoinKind::Left : JoinKind::Right;
            m_tokens.TakeWord("OUTER");
            m_tokens.ExpectWord("JOIN");
        } else if (m_tokens.TakeWord("INNER")) {
            m_tokens.ExpectWord("JOIN");
        } else if (!m_tokens.TakeWord("JOIN")) {
            return left;
        }
        if (joins >= 60)
            m_tokens.Fail("Er worden te veel tabellen gekoppeld");
        TableRef join;
        join.position = position;
        join.join = kind;
        join.left = std::make_unique<TableRef>(std::move(left));
        join.right = std::make_unique<TableRef>(Single());
        m_tokens.ExpectWord("ON");
        join.on = m_expressions.Parse();
        left = std::move(join);
    }
}

TableRef StatementParser::Single()
{
    const std::size_t position = m_tokens.Position();
    if (m_tokens.TakeSymbol("(")) {
        TableRef table;
        if (m_tokens.AtWord("SELECT")) {
            table.select = SelectStatement();
            table.position = position;
            m_tokens.TakeSymbol(";");
            m_tokens.ExpectSymbol(")");
            Alias(table);
        } else {
            const TokenReader::Level level(m_tokens);
            table = Joined();
            m_tokens.ExpectSymbol(")");
        }
        return table;
    }
    TableRef table = TableName();
    Alias(table);
    return table;
}

TableRef StatementParser::TableName()
{
    TableRef table;
    table.position = m_tokens.Position();
    table.name = m_tokens.ExpectName("een tabelnaam");
    if (m_tokens.TakeSymbol(".")) {
        table.file = std::move(table.name);
        table.name = m_tokens.ExpectName("een tabelnaam");
    }
    if (m_tokens.AtWord("IN") && m_tokens.Peek(1).kind == TokenKind::Text) {
        m_tokens.Take();
        table.file = m_tokens.Take().text;
    }
    return table;
}

void StatementParser::Alias(TableRef& table)
{
    if (m_tokens.TakeWord("AS")) {
        table.alias = m_tokens.ExpectName("een naam");
        return;
    }
    const bool joinFollows = m_tokens.AtWord("LEFT") || m_tokens.AtWord("RIGHT");
    if (m_tokens.AtName() && !joinFollows)
        table.alias = m_tokens.Take().text;
}

Statement StatementParser::InsertStatement()
{
    Insert insert;
    m_tokens.ExpectWord("INTO");
    insert.target = TableName();
    if (m_tokens.AtSymbol("(") && !m_tokens.AtWord("SELECT", 1)) {
        m_tokens.Take();
        do {
            const std::size_t position = m_tokens.Position();
            std::string name = m_tokens.ExpectName("een veldnaam");
            if (m_tokens.TakeSymbol(".")) // table.field
                name = m_tokens.ExpectName("een veldnaam");
            insert.fields.emplace_back(std::move(name), position);
        } while (m_tokens.TakeSymbol(","));
        m_tokens.ExpectSymbol(")");
    }
    if (m_tokens.AtWord("SELECT")) {
        insert.select = SelectStatement();
    } else if (m_tokens.AtSymbol("(")) {
        m_tokens.Take();
        insert.select = SelectStatement();
        m_tokens.ExpectSymbol(")");
    } else {
        m_tokens.ExpectWord("VALUES");
        m_tokens.ExpectSymbol("(");
        do {
            insert.values.push_back(m_expressions.Parse());
        } while (m_tokens.TakeSymbol(","));
        m_tokens.ExpectSymbol(")");
    }
    return insert;
}

Statement StatementParser::UpdateStatement()
{
    Update update;
    m_tokens.TakeWord("DISTINCTROW");
    update.from = From();
    m_tokens.ExpectWord("SET");
    do {
        Assignment assignment;
        assignment.field = std::make_unique<Expr>();
        assignment.field->kind = ExprKind::Field;
        assignment.field->position = m_tokens.Position();
        assignment.field->name = m_tokens.ExpectName("een veldnaam");
        if (m_tokens.TakeSymbol(".") || m_tokens.TakeSymbol("!")) {
            assignment.field->table = std::move(assignment.field->name);
            assignment.field->name = m_tokens.ExpectName("een veldnaam");
        }
        m_tokens.ExpectSymbol("=");
        assignment.value = m_expressions.Parse();
        update.assignments.push_back(std::move(assignment));
    } while (m_tokens.TakeSymbol(","));
    if (m_tokens.TakeWord("WHERE"))
        update.where = m_expressions.Parse();
    return update;
}

// What stands between DELETE and FROM only says from which table rows go.
Statement StatementParser::DeleteStatement()
{
    Delete statement;
    m_tokens.TakeWord("DISTINCTROW");
    statement.position = m_tokens.Position();
    if (!m_tokens.AtWord("FROM") && !m_tokens.TakeSymbol("*")) {
        statement.table = m_tokens.ExpectName("FROM");
        m_tokens.ExpectSymbol(".");
        if (!m_tokens.TakeSymbol("*"))
            m_tokens.ExpectName("een veldnaam");
    }
    m_tokens.ExpectWord("FROM");
    statement.from = From();
    if (m_tokens.TakeWord("WHERE"))
        statement.where = m_expressions.Parse();
    return statement;
}

void ExpectEnd(TokenReader& tokens)
{
    tokens.TakeSymbol(";");
    if (tokens.Peek().kind != TokenKind::End)
        tokens.Unexpected("het einde van de opdracht");
}

} // namespace

Statement ParseStatement(std::string_view text)
{
    TokenReader tokens(text);
    if (tokens.Peek().kind == TokenKind::End)
        tokens.Fail("De opdracht is leeg");
    ExpressionParser expressions(tokens);
    expressions.parseSelect = ParseNested;
    Statement statement = StatementParser(tokens, expressions).Parse();
    ExpectEnd(tokens);
    return statement;
}

ExprPtr ParseCriterion(std::string_view criterion)
{
    TokenReader tokens(criterion);
    ExpressionParser expressions(tokens);
    expressions.parseSelect = ParseNested;
    ExprPtr expr = expressions.Parse();
    ExpectEnd(tokens);
    return expr;
}

std::vector<OrderTerm> ParseSort(std::string_view fields)
{
    TokenReader tokens(fields);
    ExpressionParser expressions(tokens);
    expressions.parseSelect = ParseNested;
    std::vector<OrderTerm> terms;
    do {
        OrderTerm term;
        term.expr = expressions.Parse();
        term.descending = tokens.TakeWord("DESC");
        if (!term.descending)
            tokens.TakeWord("ASC");
        terms.push_back(std::move(term));
    } while (tokens.TakeSymbol(","));
    ExpectEnd(tokens);
    return terms;
}

bool IsSelect(std::string_view text)
{
    std::size_t start = 0;
    while (start < text.size() &&
           (text[start] == '(' || static_cast<unsigned char>(text[start]) <= 0x20))
        ++start;
    static constexpr std::string_view kSelect = "SELECT";
    if (text.size() - start <= kSelect.size())
        return false;
    for (std::size_t i = 0; i < kSelect.size(); ++i) {
        if ((text[start + i] & ~0x20) != kSelect[i])
            return false;
    }
    const char next = text[start + kSelect.size()];
    return static_cast<unsigned char>(next) <= 0x20 || next == '[' || next == '*' || next == '(' ||
           next == '"' || next == '\'' || next == '-';
}

} // namespace jet::sql
