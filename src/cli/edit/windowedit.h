#pragma once

// The set and apply commands' changes as an operator's changes in the window: the file is read
// into the model of the form, each setting is changed as the operator changes its control, in
// the order given, with the form's rules running as in the window, and the settings that
// changed are written back. A setting whose control the window has locked at that moment is
// refused with the setting that locks it and the value that frees it, unless it already holds
// the value given.

#include "configrecord.h"
#include "failure.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lxconfig {

// The settings a rule of the form changed after the operator last gave them (or that were not
// given), each with the rule that did: serialBaudrate -> "GPS receiver rule".
using RuleChanges = std::map<lumarex::Field, std::string>;

// Each assignment is NAME=VALUE in the window's words (settingname.h, settingvalue.h); force
// stores a value the window cannot hold all the same.
// The failure says "KEY: reason", and the record is then left as it was.
Result<RuleChanges> editAsWindow(lumarex::ConfigRecord &record,
                                 const std::vector<std::string> &assignments, bool force);

} // namespace lxconfig
