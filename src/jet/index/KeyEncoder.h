#pragma once

#include "jet/base/Value.h"
#include "jet/storage/Pager.h"

#include <optional>
#include <span>

namespace jet {

/// Appends the key bytes of one column of an index: a flag byte (null or not)
/// and the value in a form whose bytes compare as the values do. `value` is
/// converted to `type` first; a decimal counts by its digits alone, so all keys
/// of one index must have the same scale.
/// Returns false when a text holds a character whose key is unknown; what was
/// appended is then of no use.
bool AppendKey(const Value& value, ColumnType type, bool ascending, FileVersion version,
               Bytes& key);

/// Key bytes of `values` as an index on columns of these types stores them in a
/// Jet 4 file; nullopt when a text holds a character whose key is unknown.
/// Comparing bytes gives Jet's order.
std::optional<Bytes> EncodeKey(std::span<const Value> values, std::span<const ColumnType> types,
                               std::span<const bool> ascending);

} // namespace jet
