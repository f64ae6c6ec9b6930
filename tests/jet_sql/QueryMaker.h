#pragma once

#include <random>
#include <string>
#include <vector>

namespace jet::testing {

/// The same in Jet's dialect and in SQLite's.
struct Twin {
    std::string jet, lite;
};

/// Money is compared and joined, not calculated with: its results are rounded.
enum class Kind { Whole, Number, Money, Text, YesNo };

struct MadeColumn {
    std::string name;
    Kind kind = Kind::Whole;
    std::string jetType;
};

struct MadeTable {
    std::string name;
    std::vector<MadeColumn> columns;
};

struct MadeQuery {
    Twin text;
    bool foldsTexts = false; ///< equal texts may come out in either spelling
    bool ordered = false;    ///< by its first column
    int top = -1;            ///< first rows and their ties, left to the reader of `lite`
};

/// Makes random tables, rows and statements that mean the same to both engines.
/// Numbers are small multiples of a quarter, so that sums are exact.
class QueryMaker {
public:
    explicit QueryMaker(unsigned seed) : m_random(seed) {}

    std::vector<MadeTable> MakeTables();
    std::vector<std::string> MakeIndexes();
    /// INSERT INTO ... VALUES, the same text for both.
    std::string MakeRow(const MadeTable& table, int id);
    MadeQuery MakeQuery();
    Twin MakeChange();

    int Below(int bound) { return static_cast<int>(m_random() % static_cast<unsigned>(bound)); }
    bool Chance(int percent) { return Below(100) < percent; }

private:
    struct Source {
        std::string alias;
        const MadeTable* table;
    };
    struct ColumnOf {
        std::string text;
        Kind kind;
    };

    Twin From();
    Twin Leaf();
    Twin Join(int depth);
    Twin JoinCondition(std::size_t leftEnd, std::size_t leftBegin);
    ColumnOf AnyColumn();
    ColumnOf ColumnOfKind(Kind kind);
    bool HasKind(Kind kind) const;
    Twin Number(int depth);
    Twin Text(int depth);
    Twin Literal(Kind kind);
    Twin Value(Kind kind, int depth);
    Twin Condition(int depth);
    Twin Comparison(int depth);
    Twin SubCondition();
    Twin Aggregate();
    MadeQuery Plain();
    MadeQuery Grouped();
    MadeQuery United();

    std::mt19937 m_random;
    std::vector<MadeTable> m_tables;
    std::vector<Source> m_sources;
    int m_aliases = 0;
};

} // namespace jet::testing
