#pragma once

// The settings a template never touches: apply's --except patterns and the template's own
// "keep" list (patterns as --fields takes them), so that a camera's own settings survive a
// template copied from another camera.

#include "failure.h"
#include "jsonsyntax.h"

#include <string>

namespace lxconfig {

// Takes the "keep" key out of the form and every field that it or exceptPattern (a
// comma-separated list, empty: none) matches; a failure (without a file) when either is not a
// list of patterns that each match a field, the form then left as it may be.
Done leaveKept(JsonValue &form, const std::string &exceptPattern);

} // namespace lxconfig
