#include "crc16.h"

namespace lumarex {

std::uint16_t crc16Update(std::uint16_t crc, std::uint8_t data, std::uint16_t polynomial)
{
    for (int bit = 0; bit < 8; ++bit) {
        const bool dataBit = (data >> bit) & 1U;
        const bool lowBit = crc & 1U;
        crc = static_cast<std::uint16_t>(crc >> 1);
        if (dataBit != lowBit)
            crc ^= polynomial;
    }
    return crc;
}

std::uint16_t crc16(const std::uint8_t *data, int length)
{
    std::uint16_t crc = 0;
    for (int i = 0; i < length; ++i)
        crc = crc16Update(crc, data[i], kCrcPolynomial);
    return crc;
}

} // namespace lumarex
