#pragma once

// Field values as show and diff print them: the number, and where the editor shows it as
// something else, what the editor shows.

#include "configrecord.h"

#include <string>

namespace lxconfig {

// One element: `2 "Custom settings"`, `17 (no item)`, `-125 (shown as 10.00)`, `"CONF"`.
std::string elementText(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info,
                        int element);

// The shutter offset as the window shows it: the box clamps what a load gives it to its range
// and shows its decimals ("10.00").
std::string esoOffsetShown(std::uint32_t stored);

// The whole field; an array as its 20 numbers separated by spaces.
std::string fieldText(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info);

} // namespace lxconfig
