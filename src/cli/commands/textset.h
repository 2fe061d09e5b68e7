#pragma once

// lxconfig set FILE --from TEXT: the settings of a text form (textform.h) changed in the file
// as the window changes them, in one write.

#include "commands.h"

namespace lxconfig {

int setFromText(const Invocation &invocation, Output &output);

} // namespace lxconfig
