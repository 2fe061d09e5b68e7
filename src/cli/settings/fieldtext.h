#pragma once

// Field values as show and diff print them: the number, and where the editor shows it as
// something else, what the editor shows.

#include "configrecord.h"

#include <string>

namespace lxconfig {

// What the window shows for an element: its number, or instead an item's text (a value that
// picks no item shows none), or the shutter offset as its box shows it. show, diff, set and the
// JSON output all take it from here.
struct Shown
{
    enum class Kind
    {
        Number,
        Item,
        NoItem,
        Degrees
    };
    Kind kind = Kind::Number;
    std::string text; // the item's text or the degrees
};
Shown shownOf(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info, int element);

// One element: `2 "Custom settings"`, `17 (no item)`, `-125 (shown as 10.00)`, `"CONF"`.
std::string elementText(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info,
                        int element);

// The shutter offset as the window shows it: the box clamps what a load gives it to its range
// and shows its decimals ("10.00").
std::string esoOffsetShown(std::uint32_t stored);
// The shutter offset in degrees with the box's decimals as the file stores it: a signed number,
// not clamped to the box's range (the report's Value column).
std::string esoOffsetStored(std::uint32_t stored);

// The whole field; an array as its 20 numbers separated by spaces.
std::string fieldText(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info);

} // namespace lxconfig
