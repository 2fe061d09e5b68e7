#pragma once

// Putting the editor's file on a card and proving that the card keeps it: the file is written
// through OutputFile (temporary file, sync, rename, lock, backup), and read back from the medium
// itself, past the caches, both before the rename (so that a card which does not keep what is
// written never loses its old file) and after it.

#include "backup.h"
#include "failure.h"

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace lxconfig {

// What the medium gives back for the file at path, compared with expected: nothing when every
// byte is the same, else what differs ("byte 12 reads 0x00, 0x43 was written").
std::optional<std::string> readBackProblem(const std::string &path, std::string_view expected);

struct CardWriteFailure
{
    Failure failure;   // the file and the reason, as any write reports it
    std::string cause; // what the card's state says of it: "the card is full ..."; may be empty
};

// Replaces path (on the card mounted at card, whose device is cardDevice) with data and reads
// it back; nothing when the card holds it.
std::optional<CardWriteFailure> writeToCard(const std::string &path, std::string_view data,
                                            const std::string &card, dev_t cardDevice,
                                            Backup backup);

} // namespace lxconfig
