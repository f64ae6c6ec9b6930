#include "jet/sql/DefinitionParser.h"

#include "jet/base/Text.h"

#include <array>

namespace jet::sql {

namespace {

struct TypeName {
    std::string_view name;
    ColumnType type;
};

// INTEGER is 32 bits here, as the dialect has it; 16 bits are SHORT.
constexpr std::array<TypeName, 52> kTypes = {{
    {"BIT", ColumnType::Boolean},        {"BOOLEAN", ColumnType::Boolean},
    {"LOGICAL", ColumnType::Boolean},    {"LOGICAL1", ColumnType::Boolean},
    {"YESNO", ColumnType::Boolean},      {"BYTE", ColumnType::Byte},
    {"INTEGER1", ColumnType::Byte},      {"TINYINT", ColumnType::Byte},
    {"SHORT", ColumnType::Integer},      {"SMALLINT", ColumnType::Integer},
    {"INTEGER2", ColumnType::Integer},   {"LONG", ColumnType::Long},
    {"INTEGER", ColumnType::Long},       {"INT", ColumnType::Long},
    {"INTEGER4", ColumnType::Long},      {"COUNTER", ColumnType::Long},
    {"AUTOINCREMENT", ColumnType::Long}, {"IDENTITY", ColumnType::Long},
    {"CURRENCY", ColumnType::Currency},  {"MONEY", ColumnType::Currency},
    {"SINGLE", ColumnType::Single},      {"REAL", ColumnType::Single},
    {"FLOAT4", ColumnType::Single},      {"IEEESINGLE", ColumnType::Single},
    {"DOUBLE", ColumnType::Double},      {"FLOAT", ColumnType::Double},
    {"FLOAT8", ColumnType::Double},      {"IEEEDOUBLE", ColumnType::Double},
    {"NUMBER", ColumnType::Double},      {"DECIMAL", ColumnType::Decimal},
    {"NUMERIC", ColumnType::Decimal},    {"DEC", ColumnType::Decimal},
    {"DATETIME", ColumnType::DateTime},  {"DATE", ColumnType::DateTime},
    {"TIME", ColumnType::DateTime},      {"TIMESTAMP", ColumnType::DateTime},
    {"TEXT", ColumnType::Text},          {"CHAR", ColumnType::Text},
    {"CHARACTER", ColumnType::Text},     {"VARCHAR", ColumnType::Text},
    {"STRING", ColumnType::Text},        {"ALPHANUMERIC", ColumnType::Text},
    {"MEMO", ColumnType::Memo},          {"LONGTEXT", ColumnType::Memo},
    {"NOTE", ColumnType::Memo},          {"LONGCHAR", ColumnType::Memo},
    {"BINARY", ColumnType::Binary},      {"VARBINARY", ColumnType::Binary},
    {"LONGBINARY", ColumnType::Ole},     {"OLEOBJECT", ColumnType::Ole},
    {"GUID", ColumnType::Guid},          {"UNIQUEIDENTIFIER", ColumnType::Guid},
}};

class DefinitionParser {
public:
    explicit DefinitionParser(TokenReader& tokens) : m_tokens(tokens) {}

    Statement Parse()
    {
        if (m_tokens.TakeWord("CREATE")) {
            if (m_tokens.TakeWord("TABLE"))
                return Table();
            const bool unique = m_tokens.TakeWord("UNIQUE");
            if (m_tokens.TakeWord("INDEX"))
                return Index(unique);
            m_tokens.Unexpected("TABLE of INDEX");
        }
        if (m_tokens.TakeWord("ALTER")) {
            m_tokens.ExpectWord("TABLE");
            return Alter();
        }
        if (m_tokens.TakeWord("DROP")) {
            if (m_tokens.TakeWord("TABLE"))
                return DropTable{m_tokens.ExpectName("een tabelnaam")};
            if (m_tokens.TakeWord("INDEX")) {
                DropIndex drop;
                drop.index = m_tokens.ExpectName("een indexnaam");
                m_tokens.ExpectWord("ON");
                drop.table = m_tokens.ExpectName("een tabelnaam");
                return drop;
            }
            m_tokens.Unexpected("TABLE of INDEX");
        }
        for (const std::string_view word :
             {"TRANSFORM", "PARAMETERS", "EXECUTE", "GRANT", "REVOKE"}) {
            if (m_tokens.AtWord(word))
                m_tokens.FailAt(m_tokens.Position(), ErrorKind::NotSupported,
                                "De opdracht " + std::string(word) + " wordt niet ondersteund");
        }
        m_tokens.Unexpected("SELECT, INSERT, UPDATE, DELETE, CREATE, ALTER of DROP");
    }

private:
    Statement Table()
    {
        CreateTable create;
        create.table.name = m_tokens.ExpectName("een tabelnaam");
        m_tokens.ExpectSymbol("(");
        do {
            if (AtConstraint())
                create.table.indexes.push_back(Constraint());
            else
                create.table.fields.push_back(Field(create.table.indexes));
        } while (m_tokens.TakeSymbol(","));
        m_tokens.ExpectSymbol(")");
        return create;
    }

    bool AtConstraint() const
    {
        // A field may be called Primary: then its type follows, not KEY.
        return m_tokens.AtWord("CONSTRAINT") ||
               (m_tokens.AtWord("PRIMARY") && m_tokens.AtWord("KEY", 1)) ||
               (m_tokens.AtWord("UNIQUE") && m_tokens.AtSymbol("(", 1)) ||
               (m_tokens.AtWord("FOREIGN") && m_tokens.AtWord("KEY", 1));
    }

    IndexDef Constraint()
    {
        IndexDef index;
        if (m_tokens.TakeWord("CONSTRAINT"))
            index.name = m_tokens.ExpectName("een naam");
        Kind(index);
        Parts(index);
        if (index.name.empty())
            index.name = index.primary ? "PrimaryKey" : index.fields.front().field;
        return index;
    }

    void Kind(IndexDef& index)
    {
        const std::size_t position = m_tokens.Position();
        if (m_tokens.TakeWord("PRIMARY")) {
            m_tokens.ExpectWord("KEY");
            index.primary = index.unique = index.required = true;
        } else if (m_tokens.TakeWord("UNIQUE")) {
            index.unique = true;
        } else if (m_tokens.TakeWord("FOREIGN") || m_tokens.TakeWord("REFERENCES") ||
                   m_tokens.TakeWord("CHECK")) {
            m_tokens.FailAt(position, ErrorKind::NotSupported,
                            "Relaties en controleregels worden niet met een opdracht gemaakt");
        } else {
            m_tokens.Unexpected("PRIMARY KEY of UNIQUE");
        }
    }

    void Parts(IndexDef& index)
    {
        m_tokens.ExpectSymbol("(");
        do {
            IndexDef::Part part;
            part.field = m_tokens.ExpectName("een veldnaam");
            part.descending = m_tokens.TakeWord("DESC");
            if (!part.descending)
                m_tokens.TakeWord("ASC");
            index.fields.push_back(std::move(part));
        } while (m_tokens.TakeSymbol(","));
        m_tokens.ExpectSymbol(")");
    }

    FieldDef Field(std::vector<IndexDef>& indexes)
    {
        FieldDef field;
        field.name = m_tokens.ExpectName("een veldnaam");
        Type(field);
        for (;;) {
            if (m_tokens.TakeWord("NOT")) {
                m_tokens.ExpectWord("NULL");
                field.required = true;
            } else if (m_tokens.TakeWord("DEFAULT")) {
                field.defaultValue = Default();
            } else if (m_tokens.AtWord("CONSTRAINT") || m_tokens.AtWord("PRIMARY") ||
                       m_tokens.AtWord("UNIQUE") || m_tokens.AtWord("REFERENCES") ||
                       m_tokens.AtWord("CHECK")) {
                IndexDef index;
                if (m_tokens.TakeWord("CONSTRAINT"))
                    index.name = m_tokens.ExpectName("een naam");
                Kind(index);
                if (index.name.empty())
                    index.name = index.primary ? "PrimaryKey" : field.name;
                index.fields.push_back({field.name, false});
                indexes.push_back(std::move(index));
            } else if (!m_tokens.TakeWord("NULL") && !WithCompression()) {
                return field;
            }
        }
    }

    bool WithCompression()
    {
        if (!m_tokens.AtWord("WITH"))
            return false;
        m_tokens.Take();
        if (!m_tokens.TakeWord("COMPRESSION"))
            m_tokens.ExpectWord("COMP");
        return true;
    }

    void Type(FieldDef& field)
    {
        const Token token = m_tokens.Take();
        const TypeName* found = nullptr;
        for (const TypeName& type : kTypes)
            found = token.IsWord(type.name) ? &type : found;
        if (found == nullptr)
            m_tokens.FailAt(token.position, ErrorKind::Syntax,
                            "Onbekend veldtype '" + token.text + "'");
        field.type = found->type;
        field.autoNumber =
            token.IsWord("COUNTER") || token.IsWord("AUTOINCREMENT") || token.IsWord("IDENTITY");
        if (field.type == ColumnType::Text || field.type == ColumnType::Binary)
            m_tokens.TakeWord("VARYING");
        if (!m_tokens.TakeSymbol("("))
            return;
        const auto [first, firstPlace] = Number();
        int second = 0;
        if (m_tokens.TakeSymbol(","))
            second = Number().first;
        m_tokens.ExpectSymbol(")");
        if (field.type == ColumnType::Decimal) {
            if (first < 1 || first > 28 || second > first)
                m_tokens.FailAt(firstPlace, ErrorKind::Syntax,
                                "Een decimaal getal heeft 1 tot 28 cijfers");
            field.precision = first;
            field.scale = second;
        } else if (field.type == ColumnType::Text || field.type == ColumnType::Binary) {
            const int most = field.type == ColumnType::Text ? 255 : 510;
            if (first < 1 || first > most)
                m_tokens.FailAt(firstPlace, ErrorKind::BadSchema,
                                "De lengte van een veld gaat van 1 tot " + std::to_string(most));
            field.size = first;
        }
    }

    std::pair<int, std::size_t> Number()
    {
        const Token token = m_tokens.Take();
        if (token.kind != TokenKind::Integer || token.integer > 100000)
            m_tokens.FailAt(token.position, ErrorKind::Syntax, "Hier hoort een lengte");
        return {static_cast<int>(token.integer), token.position};
    }

    // Kept as the expression that stands in the field's properties.
    std::string Default()
    {
        std::string text;
        if (m_tokens.TakeSymbol("-"))
            text = "-";
        const Token token = m_tokens.Take();
        switch (token.kind) {
        case TokenKind::Text: {
            std::string quoted = "\"";
            for (const char c : token.text)
                quoted += c == '"' ? "\"\"" : std::string(1, c);
            return text + quoted + "\"";
        }
        case TokenKind::Integer:
            return text + std::to_string(token.integer);
        case TokenKind::Real:
            return text + Value(token.number).AsText();
        case TokenKind::Date:
            return text + "#" + Value(DateTime{token.number}).AsText() + "#";
        case TokenKind::Word:
            text += token.text;
            if (m_tokens.TakeSymbol("(")) {
                m_tokens.ExpectSymbol(")");
                text += "()";
            }
            return text;
        default:
            m_tokens.FailAt(token.position, ErrorKind::Syntax, "Hier hoort een standaardwaarde");
        }
    }

    Statement Index(bool unique)
    {
        CreateIndex create;
        create.index.unique = unique;
        create.index.name = m_tokens.ExpectName("een indexnaam");
        m_tokens.ExpectWord("ON");
        create.table = m_tokens.ExpectName("een tabelnaam");
        Parts(create.index);
        if (m_tokens.TakeWord("WITH")) {
            if (m_tokens.TakeWord("PRIMARY")) {
                create.index.primary = create.index.unique = create.index.required = true;
            } else if (m_tokens.TakeWord("DISALLOW")) {
                m_tokens.ExpectWord("NULL");
                create.index.required = true;
            } else {
                m_tokens.ExpectWord("IGNORE");
                m_tokens.ExpectWord("NULL");
                create.index.ignoreNulls = true;
            }
        }
        return create;
    }

    Statement Alter()
    {
        AlterTable alter;
        alter.table = m_tokens.ExpectName("een tabelnaam");
        if (m_tokens.TakeWord("DROP")) {
            if (m_tokens.TakeWord("CONSTRAINT")) {
                alter.dropIndex = m_tokens.ExpectName("een naam");
                return alter;
            }
            m_tokens.TakeWord("COLUMN");
            do {
                alter.drop.push_back(m_tokens.ExpectName("een veldnaam"));
            } while (m_tokens.TakeSymbol(","));
            return alter;
        }
        if (m_tokens.TakeWord("ALTER")) {
            m_tokens.TakeWord("COLUMN");
            const std::size_t position = m_tokens.Position();
            std::vector<IndexDef> indexes;
            alter.change = Field(indexes);
            if (!indexes.empty())
                m_tokens.FailAt(position, ErrorKind::NotSupported,
                                "Een veld dat verandert, krijgt niet tegelijk een index");
            return alter;
        }
        m_tokens.ExpectWord("ADD");
        if (AtConstraint()) {
            alter.addIndex = Constraint();
            return alter;
        }
        std::vector<IndexDef> indexes;
        const std::size_t position = m_tokens.Position();
        do {
            m_tokens.TakeWord("ADD");
            m_tokens.TakeWord("COLUMN");
            alter.add.push_back(Field(indexes));
        } while (m_tokens.TakeSymbol(","));
        if (indexes.size() > 1)
            m_tokens.FailAt(position, ErrorKind::NotSupported,
                            "Een opdracht maakt hoogstens een index");
        if (!indexes.empty())
            alter.addIndex = std::move(indexes.front());
        return alter;
    }

    TokenReader& m_tokens;
};

} // namespace

Statement ParseDefinition(TokenReader& tokens)
{
    return DefinitionParser(tokens).Parse();
}

} // namespace jet::sql
