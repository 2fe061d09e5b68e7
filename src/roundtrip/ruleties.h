#pragma once

// Which fields each form rule ties to the control that runs it: the fields whose boxes the rule
// presets, and those on the pages or in the groups it locks or hides. A template that sets the
// rule's field without these leaves the file in a state the editor never saves (the gimbal
// switched on with the form's channel assignments of a file without it, say). Taken from the
// rules as data, so nothing here names a field.

#include "configrecord.h"

#include <string_view>
#include <vector>

namespace lumarex::roundtrip {

struct RuleTie
{
    std::string_view rule;   // e.g. "gimbal remote-control rule"
    Field source;            // the field of the control whose signal runs the rule
    std::vector<Field> tied; // in file order, the source itself not among them
};

const std::vector<RuleTie> &ruleTies();

} // namespace lumarex::roundtrip
