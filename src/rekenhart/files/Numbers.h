#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rekenhart {

// Numbers in files always have a point as decimal sign, whatever the system's is.

/// The whole of `text` as a number; nothing when it is anything else.
std::optional<double> ParseNumber(std::string_view text);
std::optional<int> ParseInteger(std::string_view text);

/// With so many decimals, never "-0.00"; "-" for "not known".
std::string Fixed(double value, int decimals);
/// As short as possible with at most `digits` significant digits.
std::string General(double value, int digits = 6);
/// A return period: "1000", "33.3333".
std::string Period(double years);

} // namespace rekenhart
