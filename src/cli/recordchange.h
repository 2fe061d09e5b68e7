#pragma once

// The end of a change to a file (set, apply): the file replaced, and what changed said.

#include "commands.h"
#include "configrecord.h"
#include "fileio.h"
#include "output.h"

#include <map>
#include <string>

namespace lxconfig {

// Replaces the file with the changed record, unless its bytes are exactly what the file holds
// already: a file in which nothing changes is neither rewritten nor backed up. Then, unless
// quiet, the file's line ("FILE: 2 values set, 1 changed") and one indented line per value that
// changed, old -> new in diff's words, followed by the rule that changed it where a rule of the
// form did ("(GPS receiver rule)"); the checksum, mended and never given, is left out.
// False after an error line.
bool finishChange(const std::string &path, OutputFile &file, const InputBytes &read,
                  const lumarex::ConfigRecord &before, const lumarex::ConfigRecord &after,
                  const std::string &given,
                  const std::map<lumarex::Field, std::string> &ruleChanged,
                  const Invocation &invocation, Output &output);

} // namespace lxconfig
