#pragma once

#include <QString>

/// Tokenisers with ten shared slots, numbered 1 to 10 (any other raises
/// RuntimeFout::OutOfRange). A slot keeps what is left of its text; a text
/// that is not empty starts anew, an empty one goes on. A slot belongs to one
/// parse at a time; both functions share the slots.

/// The next token; runs of delimiters count as one. "" at the end.
QString StrToken(int slot, const QString& text, const QString& delimiters);

/// The next field, empty ones included. EndOfFields() at the end.
QString StrTokenNext(int slot, const QString& text, const QString& delimiters);

/// One NUL character.
[[nodiscard]] QString EndOfFields();
