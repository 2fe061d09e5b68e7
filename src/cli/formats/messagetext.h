#pragma once

// Text from a file, made safe to quote in a message on a terminal: a control character (C0,
// DEL or C1) is shown as \uXXXX and a byte that is not UTF-8 as \xNN, so no quoted key can move
// the cursor, change colours or end the line. The rest, well-formed UTF-8, is kept as it is.

#include <string>
#include <string_view>

namespace lxconfig {

std::string escapedForMessage(std::string_view text);

} // namespace lxconfig
