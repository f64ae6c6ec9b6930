#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace jet {

/// Throws Damaged: a field would lie outside the bytes it is read from. Pages
/// are checked before they are decoded; this is the net below those checks.
[[noreturn]] void ThrowOutOfBounds(std::size_t offset, std::size_t length, std::size_t size);

namespace byte_order {

template <typename T>
T Load(std::span<const std::byte> bytes, std::size_t offset)
{
    if (bytes.size() < sizeof(T) || offset > bytes.size() - sizeof(T))
        ThrowOutOfBounds(offset, sizeof(T), bytes.size());
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof(T)); // both our platforms are little-endian
    return value;
}

template <typename T>
void Store(std::span<std::byte> bytes, std::size_t offset, T value)
{
    if (bytes.size() < sizeof(T) || offset > bytes.size() - sizeof(T))
        ThrowOutOfBounds(offset, sizeof(T), bytes.size());
    std::memcpy(bytes.data() + offset, &value, sizeof(T));
}

} // namespace byte_order

// Little-endian numbers, as everywhere in the file but in index keys. A field
// that lies outside `bytes` throws Damaged.

inline std::uint8_t GetU8(std::span<const std::byte> bytes, std::size_t offset)
{
    return byte_order::Load<std::uint8_t>(bytes, offset);
}
inline std::uint16_t GetU16(std::span<const std::byte> bytes, std::size_t offset)
{
    return byte_order::Load<std::uint16_t>(bytes, offset);
}
inline std::int16_t GetI16(std::span<const std::byte> bytes, std::size_t offset)
{
    return byte_order::Load<std::int16_t>(bytes, offset);
}
inline std::uint32_t GetU32(std::span<const std::byte> bytes, std::size_t offset)
{
    return byte_order::Load<std::uint32_t>(bytes, offset);
}
inline std::int32_t GetI32(std::span<const std::byte> bytes, std::size_t offset)
{
    return byte_order::Load<std::int32_t>(bytes, offset);
}
inline std::uint64_t GetU64(std::span<const std::byte> bytes, std::size_t offset)
{
    return byte_order::Load<std::uint64_t>(bytes, offset);
}
inline std::int64_t GetI64(std::span<const std::byte> bytes, std::size_t offset)
{
    return byte_order::Load<std::int64_t>(bytes, offset);
}
inline float GetF32(std::span<const std::byte> bytes, std::size_t offset)
{
    return byte_order::Load<float>(bytes, offset);
}
inline double GetF64(std::span<const std::byte> bytes, std::size_t offset)
{
    return byte_order::Load<double>(bytes, offset);
}
/// Big-endian 24 bits: page numbers in index entries.
inline std::uint32_t GetU24BigEndian(std::span<const std::byte> bytes, std::size_t offset)
{
    return std::uint32_t{GetU8(bytes, offset)} << 16 |
           std::uint32_t{GetU8(bytes, offset + 1)} << 8 | GetU8(bytes, offset + 2);
}
inline std::uint32_t GetU32BigEndian(std::span<const std::byte> bytes, std::size_t offset)
{
    return __builtin_bswap32(GetU32(bytes, offset));
}

inline void PutU8(std::span<std::byte> bytes, std::size_t offset, std::uint8_t value)
{
    byte_order::Store(bytes, offset, value);
}
inline void PutU16(std::span<std::byte> bytes, std::size_t offset, std::uint16_t value)
{
    byte_order::Store(bytes, offset, value);
}
inline void PutI16(std::span<std::byte> bytes, std::size_t offset, std::int16_t value)
{
    byte_order::Store(bytes, offset, value);
}
inline void PutU32(std::span<std::byte> bytes, std::size_t offset, std::uint32_t value)
{
    byte_order::Store(bytes, offset, value);
}
inline void PutI32(std::span<std::byte> bytes, std::size_t offset, std::int32_t value)
{
    byte_order::Store(bytes, offset, value);
}
inline void PutU64(std::span<std::byte> bytes, std::size_t offset, std::uint64_t value)
{
    byte_order::Store(bytes, offset, value);
}
inline void PutI64(std::span<std::byte> bytes, std::size_t offset, std::int64_t value)
{
    byte_order::Store(bytes, offset, value);
}
inline void PutF32(std::span<std::byte> bytes, std::size_t offset, float value)
{
    byte_order::Store(bytes, offset, value);
}
inline void PutF64(std::span<std::byte> bytes, std::size_t offset, double value)
{
    byte_order::Store(bytes, offset, value);
}
inline void PutU24BigEndian(std::span<std::byte> bytes, std::size_t offset, std::uint32_t value)
{
    PutU8(bytes, offset, static_cast<std::uint8_t>(value >> 16));
    PutU8(bytes, offset + 1, static_cast<std::uint8_t>(value >> 8));
    PutU8(bytes, offset + 2, static_cast<std::uint8_t>(value));
}
inline void PutU32BigEndian(std::span<std::byte> bytes, std::size_t offset, std::uint32_t value)
{
    PutU32(bytes, offset, __builtin_bswap32(value));
}

} // namespace jet
