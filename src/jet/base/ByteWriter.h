#pragma once

#include "jet/base/Value.h"

#include <span>

namespace jet {

/// Puts bytes behind each other, numbers little-endian.
class ByteWriter {
public:
    void U8(std::uint8_t v) { m_bytes.push_back(std::byte{v}); }
    void U16(std::uint16_t v)
    {
        U8(static_cast<std::uint8_t>(v));
        U8(static_cast<std::uint8_t>(v >> 8));
    }
    void U32(std::uint32_t v)
    {
        U16(static_cast<std::uint16_t>(v));
        U16(static_cast<std::uint16_t>(v >> 16));
    }
    void Append(std::span<const std::byte> bytes)
    {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }
    const Bytes& Content() const { return m_bytes; }

protected:
    Bytes m_bytes;
};

} // namespace jet
