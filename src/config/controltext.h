#pragma once

// A control's values as text, as the window shows them: a number with the box's decimals, a
// box's range, a check box's state. The one place that writes them, for lxconfig (show, set,
// explain, report), the model of the editor (its strict findings) and the file-format
// reference alike, which all stand on this library.

#include "formcontrols.h"

#include <string>
#include <string_view>

namespace lumarex {

// The number in fixed notation with that many decimals, as a spin box shows it: "10.00", "120".
std::string decimalText(double value, int decimals);
// A box's range: "0 to 1000", "-10.00 to 10.00".
std::string rangeText(const ControlFacts &facts);
// A check box's state in the window's words.
std::string_view checkText(bool checked);
// An item's or a line edit's text in double quotes, as lxconfig's prose quotes it.
std::string quoted(std::string_view text);

} // namespace lumarex
