#pragma once

// A configuration file as the editor's load command sees it, and the checks it makes.

#include "configrecord.h"
#include "editorverdict.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lxconfig {

// The editor reads at most this much of a file.
using lumarex::kEditorReadSize;

// A file as the editor's load reads it, and what the editor would say of it.
struct RecordFile
{
    lumarex::ConfigRecord record;
    std::optional<std::string> refusal;  // the first check of the editor's load that it fails
    std::optional<std::string> sizeNote; // a size other than a record's, loaded all the same
};

// The file of which `data` are the first bytes: `size` is a regular file's size, or what a
// stream delivered, and beyondLimit says that a stream went on past what was read. A shorter file
// reads as if padded with zero bytes and bytes after the record are ignored.
RecordFile recordFileOf(const std::string &data, std::uint64_t size, bool beyondLimit = false);

// The first check of the editor's load that the record fails, in the editor's order (magic,
// format version, checksum), or nothing when it would load.
std::optional<std::string> recordProblem(const lumarex::ConfigRecord &record);

// The record's bytes, for writing.
std::string recordBytes(const lumarex::ConfigRecord &record);

} // namespace lxconfig
