#pragma once

#include "jet/sql/Syntax.h"

namespace jet::sql {

/// What values can be compared and calculated with each other.
enum class Family { Unknown, Number, Text, Binary, Guid };

Family FamilyOf(ExprType type);
bool IsText(ExprType type);
/// Boolean, Byte, Integer, Long: SQLite holds them as integers.
bool IsWhole(ExprType type);

/// The type of + - * on two operands. Text counts as a number, but two texts
/// that are added are joined.
ExprType TypeOfSum(Op op, ExprType left, ExprType right);
/// The type that both branches of an IIf, or both halves of a UNION, fit in.
ExprType CommonType(ExprType a, ExprType b);
ExprType TypeOfAggregate(AggregateKind kind, ExprType argument);

/// The Dutch word of a type, for messages.
const char* TypeWord(ExprType type);

} // namespace jet::sql
