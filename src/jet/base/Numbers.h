#pragma once

#include "jet/base/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace jet {

// Numbers as text: a point as decimal sign whatever the system's locale, blanks
// around allowed, nothing else left over. Nothing is returned for any other text.

std::optional<double> DoubleFromText(std::string_view text);
/// `digits` significant digits, exponent form outside 1E-05 .. 1E+15.
std::string TextFromDouble(double value, int digits = 15);

/// Exact; nothing when the text has more than 28 digits that matter.
std::optional<Decimal> DecimalFromText(std::string_view text);
std::string TextFromDecimal(const Decimal& value);
double DoubleFromDecimal(const Decimal& value);
Decimal DecimalFromInteger(std::int64_t value, std::uint8_t scale = 0);
/// With `scale` decimals, halves to even. Nothing when that takes more than
/// `precision` digits.
std::optional<Decimal> RescaleDecimal(const Decimal& value, std::uint8_t scale,
                                      std::uint8_t precision = 28);
/// The magnitude at its own scale; nothing when it is beyond 64 bits.
std::optional<std::int64_t> IntegerFromDecimal(const Decimal& value);

std::string TextFromCurrency(Currency value);
/// Nothing when the text is no number; throws Overflow beyond the type's range.
std::optional<Currency> CurrencyFromText(std::string_view text);

/// Halves to even, as Jet rounds.
double RoundHalfToEven(double value);

/// "yyyy-mm-dd", with " hh:mm:ss" when there is a time of day.
std::string TextFromDateTime(DateTime value);
/// "yyyy-mm-dd", "dd-mm-yyyy" or "mm/dd/yyyy", with "hh:mm" or "hh:mm:ss" behind it or alone.
std::optional<DateTime> DateTimeFromText(std::string_view text);

/// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}"
std::string TextFromGuid(const Guid& value);
/// With or without braces.
std::optional<Guid> GuidFromText(std::string_view text);

} // namespace jet
