#include "jet/sql/Types.h"

#include <utility>

namespace jet::sql {

namespace {

using T = ColumnType;

// Where a type stands among those that numbers are widened to.
int Width(T type)
{
    switch (type) {
    case T::Boolean:
        return 0;
    case T::Byte:
        return 1;
    case T::Integer:
        return 2;
    case T::Long:
        return 3;
    case T::Currency:
        return 4;
    case T::Decimal:
        return 5;
    case T::Single:
        return 6;
    default:
        return 7;
    }
}

T Wider(T a, T b)
{
    if (Width(a) > Width(b))
        std::swap(a, b);
    // A single holds 16 bits exactly, 32 bits or money not.
    if (b == T::Single && a != b && Width(a) > Width(T::Integer))
        return T::Double;
    return b;
}

} // namespace

Family FamilyOf(ExprType type)
{
    if (!type)
        return Family::Unknown;
    switch (*type) {
    case T::Text:
    case T::Memo:
        return Family::Text;
    case T::Binary:
    case T::Ole:
        return Family::Binary;
    case T::Guid:
        return Family::Guid;
    default:
        return Family::Number;
    }
}

bool IsText(ExprType type)
{
    return FamilyOf(type) == Family::Text;
}

bool IsWhole(ExprType type)
{
    return type &&
           (*type == T::Boolean || *type == T::Byte || *type == T::Integer || *type == T::Long);
}

ExprType TypeOfSum(Op op, ExprType left, ExprType right)
{
    if (op == Op::Add && IsText(left) && IsText(right))
        return T::Text;
    if (op == Op::Add && ((IsText(left) && !right) || (IsText(right) && !left)))
        return T::Text;
    if (IsText(left))
        left = T::Double;
    if (IsText(right))
        right = T::Double;
    if (!left || !right) {
        const ExprType known = left ? left : right;
        return known == T::Boolean || known == T::Byte || known == T::Integer ? T::Long : known;
    }
    if (*left == T::DateTime || *right == T::DateTime) {
        if (op == Op::Multiply || (op == Op::Subtract && *left == *right) ||
            (op == Op::Subtract && *left != T::DateTime))
            return T::Double;
        return T::DateTime;
    }
    if (IsWhole(left) && IsWhole(right))
        return T::Long;
    return Wider(*left, *right);
}

ExprType CommonType(ExprType a, ExprType b)
{
    if (!a || !b)
        return a ? a : b;
    if (*a == *b)
        return a;
    const Family first = FamilyOf(a), second = FamilyOf(b);
    if (first == Family::Text && second == Family::Text)
        return T::Memo;
    if (first != second)
        return T::Text;
    if (first == Family::Binary)
        return T::Ole;
    if (*a == T::DateTime || *b == T::DateTime)
        return T::Double;
    return Wider(*a, *b);
}

ExprType TypeOfAggregate(AggregateKind kind, ExprType argument)
{
    switch (kind) {
    case AggregateKind::Count:
        return T::Long;
    case AggregateKind::Sum:
    case AggregateKind::Avg:
        if (argument == T::Currency || argument == T::Decimal)
            return argument;
        return T::Double;
    case AggregateKind::Min:
    case AggregateKind::Max:
    case AggregateKind::First:
    case AggregateKind::Last:
        return argument;
    default:
        return T::Double;
    }
}

const char* TypeWord(ExprType type)
{
    if (type == T::DateTime)
        return "een datum";
    if (type == T::Boolean)
        return "ja/nee";
    switch (FamilyOf(type)) {
    case Family::Number:
        return "een getal";
    case Family::Text:
        return "een tekst";
    case Family::Binary:
        return "binaire gegevens";
    case Family::Guid:
        return "een GUID";
    case Family::Unknown:
        break;
    }
    return "onbekend";
}

} // namespace jet::sql
