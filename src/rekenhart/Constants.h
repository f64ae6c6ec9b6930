#pragma once

namespace rekenhart {

inline constexpr double kGravity = 9.81; // m/s2

/// Wind sectors of the database: Richting_ID 1..16, bearing (id - 1) * 22.5.
/// Inside the core they are counted from 0.
inline constexpr int kSectors = 16;
inline constexpr double kSectorWidth = 22.5;

/// "Not known" in every numeric field of boundary conditions and results.
inline constexpr double kNietBekend = -999.0;
constexpr bool IsBekend(double value)
{
    return value != kNietBekend;
}

/// The basin level is constant in blocks of 48 hours, the wind in blocks of 12.
inline constexpr double kSlowBlocksPerYear = 182.625;
inline constexpr int kFastBlocksPerSlowBlock = 4;

constexpr double SectorBearing(int sector)
{
    return kSectorWidth * sector;
}

} // namespace rekenhart
