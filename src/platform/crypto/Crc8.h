#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orv {

/// CRC-8 with polynomial x^8 + x^2 + x + 1 (0x07), initial value 0, nothing reflected or inverted: 0xF4 for
/// "123456789".
constexpr std::uint8_t Compute8BitCRC(std::span<const std::byte> bytes) {
    unsigned crc = 0;
    for (const std::byte byte : bytes) {
        crc ^= std::to_integer<unsigned>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = crc & 0x80 ? (crc << 1 ^ 0x07) & 0xFF : crc << 1;
    }
    return static_cast<std::uint8_t>(crc);
}

}  // namespace orv
