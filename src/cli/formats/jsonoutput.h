#pragma once

// The JSON that check, show and diff print with --format json: plain data for scripts, one
// document on standard output. Names of files that are not UTF-8 have each stray byte replaced
// by U+FFFD, as JSON text must be UTF-8.

#include "configrecord.h"
#include "roundtrip.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace lxconfig {

using OrderedJson = nlohmann::ordered_json;

// The document as printed: two-space indent, a final newline.
std::string jsonText(const OrderedJson &document);

// {"path", "verdict": "valid" | "refused" | "unreadable", "reason": string or null,
//  "warning": string or null, ["findings": [...]]}
OrderedJson checkEntry(const std::string &path, const char *verdict,
                       const std::optional<std::string> &reason,
                       const std::optional<std::string> &warning);
// {"field", "offset", "stored", "shown", "saved", "why", "reason"}
OrderedJson findingEntry(const lumarex::roundtrip::Finding &finding);

// {"field", "element": index or null, "offset", "value", ["text": string or null]}
OrderedJson elementEntry(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info,
                         int element);
// What the editor shows instead of the number, when it shows something else: the item text
// (null: no item), or the shutter offset in degrees. Nothing for a field shown as its number.
std::optional<OrderedJson> shownText(const lumarex::ConfigRecord &record,
                                     const lumarex::FieldInfo &info, int element);
// The element's value: a number, the magic as its four characters.
OrderedJson elementValue(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info,
                         int element);

} // namespace lxconfig
