#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace jet {

/// 64 bits that tell torn, stale and foreign bytes from the ones that were
/// written. Stands in journals, so the result must never change. Not meant to
/// withstand somebody who forges.
inline std::uint64_t Checksum(std::span<const std::byte> bytes, std::uint64_t seed)
{
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    // Four independent lanes, so that the processor works on them at once.
    std::uint64_t lanes[4] = {seed, ~seed, seed + kFactor, seed * kFactor + 1};
    std::size_t at = 0;
    for (; at + 32 <= bytes.size(); at += 32) {
        std::uint64_t words[4];
        std::memcpy(words, bytes.data() + at, 32);
        for (int i = 0; i < 4; ++i) {
            lanes[i] = (lanes[i] ^ words[i]) * kFactor;
            lanes[i] ^= lanes[i] >> 29;
        }
    }
    std::uint64_t sum = bytes.size();
    for (; at < bytes.size(); ++at)
        sum = (sum ^ std::to_integer<std::uint64_t>(bytes[at])) * kFactor;
    for (const std::uint64_t lane : lanes) {
        sum = (sum ^ lane) * kFactor;
        sum ^= sum >> 32;
    }
    return sum;
}

} // namespace jet
