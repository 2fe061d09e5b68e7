#include "conversions.h"

#include <array>

namespace lumarex {

namespace {

using CodeTable = std::array<std::uint8_t, 3>;

// Device mode code per list position; each table serves both directions.
constexpr CodeTable kExt0Codes = {0, 1, 5};
constexpr CodeTable kExt1Codes = {0, 2, 6};

std::optional<std::uint8_t> codeAt(const CodeTable &codes, int index)
{
    if (index < 0 || index >= static_cast<int>(codes.size()))
        return std::nullopt;
    return codes[static_cast<std::size_t>(index)];
}

std::optional<int> indexOf(const CodeTable &codes, std::uint8_t code)
{
    for (std::size_t i = 0; i < codes.size(); ++i) {
        if (codes[i] == code)
            return static_cast<int>(i);
    }
    return std::nullopt;
}

} // namespace

std::int32_t esoOffsetToField(double degrees)
{
    return static_cast<std::int32_t>(degrees * 100.0);
}

double esoOffsetFromField(std::uint32_t stored)
{
    return stored / 100.0;
}

std::optional<std::uint8_t> ext0ModeCode(int index)
{
    return codeAt(kExt0Codes, index);
}

std::optional<std::uint8_t> ext1ModeCode(int index)
{
    return codeAt(kExt1Codes, index);
}

std::optional<int> ext0ModeIndex(std::uint8_t code)
{
    return indexOf(kExt0Codes, code);
}

std::optional<int> ext1ModeIndex(std::uint8_t code)
{
    return indexOf(kExt1Codes, code);
}

} // namespace lumarex
