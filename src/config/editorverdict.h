#pragma once

// Which files the editor accepts. Its load command reads one block of at most kEditorReadSize
// bytes (a shorter file reads as if padded with zero bytes, bytes after the record are
// ignored) and then checks the magic, the format version and the checksum, in that order. The
// load command, lxconfig and the load fuzzer all take the decision from here.

#include "configrecord.h"

#include <cstddef>

namespace lumarex {

inline constexpr std::size_t kEditorReadSize = 1024;

enum class Verdict
{
    Accepted,
    BadMagic,         // refused with the version dialog
    OtherVersion,     // refused with the version dialog
    ChecksumMismatch, // refused with "CRC error"
};

// The first of the editor's checks that the record fails, or Accepted.
Verdict editorVerdict(const ConfigRecord &record);

} // namespace lumarex
