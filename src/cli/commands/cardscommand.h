#pragma once

// lxconfig cards on tables of the test's choosing: cardsCommand reads the kernel's own.

#include "cardlist.h"
#include "commands.h"

namespace lxconfig {

int listCards(const SystemTables &tables, const Invocation &invocation, Output &output);

} // namespace lxconfig
