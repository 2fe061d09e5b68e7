#pragma once

// The words the shell completion scripts offer, asked of lxconfig itself at completion time
// (`lxconfig --complete commands`, `--complete options COMMAND`, `--complete fields`), so that
// the scripts hold no list of their own: commands and options come from the command table,
// field names from the record's field table.

#include "output.h"

#include <string>
#include <vector>

namespace lxconfig {

inline constexpr const char *kCompleteOption = "--complete";

// One word per line; an unknown request is a usage error.
int listCompletions(const std::vector<std::string> &request, Output &output);

} // namespace lxconfig
