#pragma once

// JSON text into a document, with nlohmann-json's SAX parser: a key given twice in one object is
// an error naming the key (a plain parse would keep one of the two silently), and a syntax error
// is worded as lxconfig has always worded it: "malformed JSON: <what> at offset <byte>".

#include "failure.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace lxconfig {

using JsonValue = nlohmann::json;

// Deeper than any form, and shallow enough that no document costs much to build or free.
inline constexpr std::size_t kMaxJsonNesting = 1024;

// The document, or the reason when the text is not one JSON value with unique keys.
Result<JsonValue> parseJson(std::string_view text);

} // namespace lxconfig
