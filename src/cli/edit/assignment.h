#pragma once

// The changes of the set command: FIELD=VALUE, or FIELD[INDEX]=VALUE for one element of an
// array (FIELD=VALUE sets all of them). Values are the numbers of the JSON form, the magic its
// four characters. The checksum is not among them: the command computes it.

#include "configrecord.h"
#include "failure.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lxconfig {

// A decimal whole number with an optional sign, blanks around it allowed.
std::optional<std::int64_t> wholeNumber(std::string_view text);

// Applies one change; the reason naming the field when it cannot, leaving the record as it was.
Done applyAssignment(lumarex::ConfigRecord &record, const std::string &text);

} // namespace lxconfig
