#pragma once

#include "jet/table/TableDefinition.h"

namespace jet {

/// Where the parts of a definition stand. The definition is one string of bytes:
/// the first page whole, then each following page from kDefinitionPageHeader on.
inline constexpr std::size_t kDefinitionPageHeader = 8;
/// Far beyond what 255 columns and 32 indexes can need.
inline constexpr std::size_t kLongestDefinition = 1u << 18;

struct DefinitionLayout {
    std::size_t rowCount, autoNumber, kind, counts, indexCounts, maps, counters;
    std::size_t counterSize, counterDistinct;
    std::size_t columnSize, physicalSize, logicalSize;
};

inline constexpr DefinitionLayout kDefinitionJet3 = {12, 16, 20, 21, 27, 35, 43, 8, 4, 18, 39, 20};
inline constexpr DefinitionLayout kDefinitionJet4 = {16, 20, 40, 41, 47, 55, 63, 12, 4, 25, 52, 28};

inline const DefinitionLayout& DefinitionLayoutOf(FileVersion version)
{
    return version == FileVersion::Jet3 ? kDefinitionJet3 : kDefinitionJet4;
}

inline constexpr std::uint32_t kDefinitionMark = 1625;    // stands in many places of Jet 4
inline constexpr std::uint32_t kPhysicalIndexMark = 1923; // before each physical index
inline constexpr int kIndexSlots = 10;                    // columns of an index at most
inline constexpr std::uint16_t kNoColumn = 0xFFFF;

// column flags
inline constexpr std::uint8_t kColumnFixed = 0x01;
inline constexpr std::uint8_t kColumnUpdatable = 0x02;
inline constexpr std::uint8_t kColumnAutoNumber = 0x04;
inline constexpr std::uint8_t kColumnAutoGuid = 0x40;
inline constexpr std::uint8_t kColumnHyperlink = 0x80;
inline constexpr std::uint8_t kColumnCompressed = 0x01; // of the extra flags

// index flags
inline constexpr std::uint8_t kIndexUnique = 0x01;
inline constexpr std::uint8_t kIndexIgnoreNulls = 0x02;
inline constexpr std::uint8_t kIndexRequired = 0x08;
inline constexpr std::uint8_t kIndexJet4 = 0x80;

} // namespace jet
