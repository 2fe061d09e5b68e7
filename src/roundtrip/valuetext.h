#pragma once

// The model's controls as the strict findings write them; the numbers, ranges and quotes are
// controltext.h's.

#include "configrecord.h"
#include "editormodel.h"
#include "formcontrols.h"

#include <string>

namespace lumarex::roundtrip {

std::string shownText(const ControlValue &control); // what the box shows: "\"ON\"", "no item"
// The field's stored value in decimal (signed for signed fields), hex bytes for the constants.
std::string storedText(const ConfigRecord &record, Field field);

} // namespace lumarex::roundtrip
