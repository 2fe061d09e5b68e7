#pragma once

// Values in the window's words: an item text (letter case ignored, a unique beginning
// accepted), on/off (true/false, yes/no) for a check box, the shutter offset as the decimal the
// window shows ("2.5" stores 250). A whole number is the stored value, as in the JSON form.

#include "configrecord.h"
#include "formfields.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lxconfig {

struct SettingValue
{
    std::optional<std::int64_t> stored; // the value to store, also when the window cannot hold it
    bool holdable = false;              // the window's control can show it
    std::string problem; // why not: no value, or what the control holds when it cannot
};

SettingValue settingValue(const lumarex::FormField &pairing, std::string_view text);

// The stored value as the window shows it: "\"Custom settings\"", "on", "2.50", "38400".
std::string shownValue(lumarex::Field field, std::int64_t stored);

} // namespace lxconfig
