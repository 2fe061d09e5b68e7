#pragma once

// After a write that the card was proved to keep: whether the card can be pulled, and how to
// unmount it first. --eject unmounts it and powers it off through the desktop's disk service
// (udisksctl), where there is one.

#include "output.h"

#include <string>

namespace lxconfig {

// Says so on standard output; with eject, unmounts and powers off the device mounted at card.
// False, after an error line, when that was asked and could not be done.
bool safelyRemoved(const std::string &card, const std::string &device, bool eject, Output &output);

} // namespace lxconfig
