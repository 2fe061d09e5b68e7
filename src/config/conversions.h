#pragma once

// How form values become field values and back, where that is more than a plain number.

#include <cstdint>
#include <optional>

namespace lumarex {

// The external-shutter offset is stored in hundredths, truncated toward zero (0.29 gives 28).
std::int32_t esoOffsetToField(double degrees);
// The stored offset read back as an unsigned number, as the device's loader does, so a
// negative offset comes back as a huge value.
double esoOffsetFromField(std::uint32_t stored);

// The two extension ports use different device mode codes for the same list position.
std::optional<std::uint8_t> ext0ModeCode(int index);
std::optional<std::uint8_t> ext1ModeCode(int index);
std::optional<int> ext0ModeIndex(std::uint8_t code);
std::optional<int> ext1ModeIndex(std::uint8_t code);

} // namespace lumarex
