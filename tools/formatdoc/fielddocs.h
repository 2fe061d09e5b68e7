#pragma once

// What each field of the configuration file means to the device, and what a freshly opened
// editor stores in it. Offsets, widths and types are not repeated here: they come from
// lumarex::fieldTable(), and this table is matched to it by field name.

#include "configrecord.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace formatdoc {

struct FieldDoc
{
    std::string_view name;    // a name from lumarex::fieldTable()
    std::string_view meaning; // one Markdown table cell: no '|' and no line break
    // What the untouched editor saves; empty where the format itself fixes the bytes (header,
    // constants, checksum) and ConfigRecord::seal() writes them.
    std::optional<std::uint32_t> editorDefault;
};

// The entry for a field name, or nullptr.
const FieldDoc *findFieldDoc(std::string_view name);

// One line per field of the file without an entry and per entry without a field; empty when
// the two tables agree.
std::vector<std::string> fieldDocProblems();

// The 167 bytes that the untouched editor writes, built from the defaults above.
lumarex::ConfigRecord defaultRecord();

} // namespace formatdoc
