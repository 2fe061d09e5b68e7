#pragma once

// lxconfig's command line: the global options, the choice of command and its arguments.

#include "output.h"

#include <string>
#include <vector>

namespace lxconfig {

// The arguments after the program's name, as the bytes given. Standard output is written out
// before it returns; a failure to write it makes the status a failure.
int run(const std::vector<std::string> &arguments, Output &output);

} // namespace lxconfig
