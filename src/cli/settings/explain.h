#pragma once

// `lxconfig explain [NAME]`: for a field, where it is in the window, what it may hold and how
// it is stored, how "Read from file" restores it and which form rules lock or preset it. All of
// it comes from the form's facts, the field table, the restore order and the rules as data.

#include "configrecord.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lxconfig {

struct Explanation
{
    bool found = false;             // false: no field, control or caption has that name
    std::vector<std::string> lines; // the text, one line each, without newlines
};

// By field name ("gpsReceiver"), control name ("cbPeripheryGPS") or the caption shown in the
// window ("GPS", "Baudrate"; case and a trailing colon do not matter). Without a name: every
// field, grouped by page in tab order, then the fields no control shows.
Explanation explain(std::optional<std::string_view> name = std::nullopt);

// The fields as the window shows them: page by page in tab order, within a page in the form's
// own order (its keyboard focus order); the fields no control shows come last, in file order.
struct PageOfFields
{
    int index = -1;        // the tab's position from 0; -1 for the fields not in the window
    std::string_view page; // the tab's text; empty for those
    std::vector<const lumarex::FieldInfo *> fields;
};
std::vector<PageOfFields> fieldsByPage();

// The settings index: a heading line, then one line per field a control shows, in the order of
// fieldsByPage(), with its page, caption, field name and what it may hold (a list's items with
// their stored values, a check box's two states, a box's range), in aligned columns.
std::vector<std::string> settingsIndex();

} // namespace lxconfig
