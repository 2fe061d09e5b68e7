#pragma once

// A configuration file as the editor's load command sees it, and the checks it makes.

#include "configrecord.h"
#include "editorverdict.h"
#include "fileio.h"

#include <optional>
#include <string>

namespace lxconfig {

// The editor reads at most this much of a file.
using lumarex::kEditorReadSize;

// The record in the first bytes read: a shorter file reads as if padded with zero bytes and
// bytes after the record are ignored.
lumarex::ConfigRecord recordOf(const InputBytes &bytes);

// The first check of the editor's load that the record fails, in the editor's order (magic,
// format version, checksum), or nothing when it would load.
std::optional<std::string> recordProblem(const lumarex::ConfigRecord &record);

// A note for a file whose size is not that of a record, which the editor loads all the same.
std::optional<std::string> sizeProblem(const InputBytes &bytes);

// The record's bytes, for writing.
std::string recordBytes(const lumarex::ConfigRecord &record);

} // namespace lxconfig
