#pragma once

// What each field of the configuration file means to the device. Offsets, widths and types
// come from lumarex::fieldTable(), the editor's controls and start values from the form's
// generated table (formfields.h); this table is matched to them by field name.

#include "configrecord.h"

#include <string>
#include <string_view>
#include <vector>

namespace formatdoc {

struct FieldDoc
{
    std::string_view name;    // a name from lumarex::fieldTable()
    std::string_view meaning; // one Markdown table cell: no '|' and no line break
};

// The entry for a field name, or nullptr.
const FieldDoc *findFieldDoc(std::string_view name);

// One line per field of the file without an entry and per entry without a field; empty when
// the two tables agree.
std::vector<std::string> fieldDocProblems();

} // namespace formatdoc
