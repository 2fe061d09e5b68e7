#pragma once

// The help lxconfig prints: the general page (lxconfig --help, lxconfig help) and one page per
// command (lxconfig help COMMAND, lxconfig COMMAND --help), both from the command table.

#include "commandtable.h"

#include <string>

namespace lxconfig {

std::string generalHelp();
std::string commandHelp(const Command &command);

} // namespace lxconfig
