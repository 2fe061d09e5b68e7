#pragma once

// Values as `lxconfig explain` and the strict findings write them.

#include "configrecord.h"
#include "editormodel.h"
#include "formcontrols.h"

#include <string>

namespace lumarex::roundtrip {

std::string realText(double value, int decimals);   // "10.00"
std::string rangeText(const ControlFacts &facts);   // "0 to 1000", "-10.00 to 10.00"
std::string shownText(const ControlValue &control); // what the box shows: "\"ON\"", "no item"
// The field's stored value in decimal (signed for signed fields), hex bytes for the constants.
std::string storedText(const ConfigRecord &record, Field field);
std::string quoted(std::string_view text);

} // namespace lumarex::roundtrip
