#pragma once

// The JSON Schema of the form that export writes and import reads, made from the field table and
// the ranges lxconfig checks, so that it says exactly what import accepts as to keys and types.

#include <nlohmann/json.hpp>

namespace lxconfig {

nlohmann::ordered_json formSchema();

} // namespace lxconfig
