#pragma once

// The generated parts of docs/file-format.md, rendered from the field table, the field
// descriptions, the form's generated table and the checksum routine, so that the reference cannot
// drift from the code.

#include "configrecord.h"
#include "markerblocks.h"

#include <string>
#include <vector>

namespace formatdoc {

// LAYOUT: one table row per field: offset, width, type, name, meaning, editor default.
std::string layoutTable();

// A fenced hexdump -C style listing: offset, 16 bytes in two groups of 8, printable ASCII.
std::string hexDump(const lumarex::RecordBytes &bytes);

// CHECK VALUES: the checksum of a few inputs, as the library computes it.
std::string checkValuesTable();

// LAYOUT, CONTROLS, DEFAULT FILE (the hex dump of the untouched editor's file) and CHECK
// VALUES.
std::vector<Section> generatedSections();

} // namespace formatdoc
