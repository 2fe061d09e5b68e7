#pragma once

// A field element as the tool reads and writes it: a number for every field but the magic,
// which is four characters of one byte each (Latin-1, so that any bytes survive).

#include "configrecord.h"

#include <cstdint>
#include <string>

namespace lxconfig {

struct ValueRange
{
    std::int64_t min;
    std::int64_t max;
};

// The numbers an element may hold: its width, signed for the I32 fields. fixed134 stops at
// 2^53 - 1, the largest whole number a JSON number holds exactly.
ValueRange valueRange(lumarex::FieldType type);
// "a whole number from 0 to 255"
std::string rangeDescription(lumarex::FieldType type);

// The element as a number; for fixed134 above 2^63 - 1 the number is negative, outside its range.
std::int64_t numberOf(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info,
                      int element);
// The element in decimal, fixed134 as the unsigned 64-bit number it holds.
std::string numberText(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info,
                       int element);
// The value must lie within valueRange(info.type).
void setNumber(lumarex::ConfigRecord &record, const lumarex::FieldInfo &info, int element,
               std::int64_t value);
// The same value into every element of the field.
void setAllElements(lumarex::ConfigRecord &record, const lumarex::FieldInfo &info,
                    std::int64_t value);

// The magic's four bytes as UTF-8 text, each byte the character of that number.
std::string magicText(const lumarex::ConfigRecord &record);
// False, leaving the record as it is, unless the UTF-8 text is four characters of one byte each.
bool setMagicText(lumarex::ConfigRecord &record, const std::string &utf8);
inline constexpr const char *kMagicDescription = "4 characters from U+0000 to U+00FF";

// The magic in double quotes, every byte outside printable ASCII and every quote or backslash
// as \xNN: "CONF", "\x00\x00\x00\x00".
std::string quotedMagic(const lumarex::ConfigRecord &record);

} // namespace lxconfig
