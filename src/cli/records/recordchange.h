#pragma once

// The end of a change to a file (set, apply): the file replaced, and what changed said.

#include "backup.h"
#include "commandfiles.h"
#include "configrecord.h"
#include "failure.h"
#include "output.h"

#include <map>
#include <string>

namespace lxconfig {

// Replaces the file with the changed record, unless its bytes are exactly what the file holds
// already: a file in which nothing changes is neither rewritten nor backed up. Then, unless
// quiet, the file's line ("FILE: 2 values set, 1 changed") and one indented line per value that
// changed, old -> new in diff's words, followed by the rule that changed it where a rule of the
// form did ("(GPS receiver rule)"); the checksum, mended and never given, is left out.
Done finishChange(FileForChange &file, const lumarex::ConfigRecord &before,
                  const lumarex::ConfigRecord &after, const std::string &given,
                  const std::map<lumarex::Field, std::string> &ruleChanged, Backup backup,
                  bool quiet, Output &output);

} // namespace lxconfig
