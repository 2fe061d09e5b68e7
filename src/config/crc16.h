#pragma once

// The file's CRC-16: bit-serial, reflected polynomial C599, initial register 0, no final XOR,
// bits of each byte taken least significant first. No lookup table: the device computes it the
// same way and the buffers are only 165 bytes long.

#include <cstdint>

namespace lumarex {

inline constexpr std::uint16_t kCrcPolynomial = 0xC599;

// One byte into the register with the given polynomial.
std::uint16_t crc16Update(std::uint16_t crc, std::uint8_t data, std::uint16_t polynomial);

// The checksum of the first length bytes; 0 for a length below 1.
std::uint16_t crc16(const std::uint8_t *data, int length);

} // namespace lumarex
