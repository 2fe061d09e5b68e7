#pragma once

// Putting the editor's file on a card and proving that the card keeps it: the file is written
// through OutputFile (temporary file, sync, rename, lock, backup), and read back from the medium
// itself, past the caches, both before the rename (so that a card which does not keep what is
// written never loses its old file) and after it.

#include "backup.h"
#include "failure.h"

#include <string>
#include <string_view>
#include <sys/types.h>

namespace lxconfig {

// Replaces path (on the card mounted at card, whose device is cardDevice) with data and reads
// it back from the medium. A failure names the file and the reason, followed by what the card's
// state says of it when it says something ("...; the card is full (512 bytes free, 167 needed)").
Done writeToCard(const std::string &path, std::string_view data, const std::string &card,
                 dev_t cardDevice, Backup backup);

} // namespace lxconfig
