#pragma once

// The words the shell completion scripts offer, asked of lxconfig itself at completion time
// (`lxconfig --complete commands`, `--complete options COMMAND`, `--complete fields`,
// `--complete values NAME`), so that the scripts hold no list of their own: commands and options
// come from the command table, field names from the record's field table, a setting's values
// from the form's items (NAME read as set reads it).

#include "output.h"

#include <string>
#include <vector>

namespace lxconfig {

inline constexpr const char *kCompleteOption = "--complete";

// One word per line; an unknown request is a usage error.
int listCompletions(const std::vector<std::string> &request, Output &output);

} // namespace lxconfig
