#pragma once

// The settings a template never touches: apply's --except patterns and the template's own
// "keep" list (patterns as --fields takes them), so that a camera's own settings survive a
// template copied from another camera.

#include "jsonsyntax.h"

#include <optional>
#include <string>

namespace lxconfig {

// Takes the "keep" key out of the form and every field that it or exceptPattern (a
// comma-separated list, empty: none) matches; the reason when either is not a list of patterns
// that each match a field.
std::optional<std::string> leaveKept(JsonValue &form, const std::string &exceptPattern);

} // namespace lxconfig
