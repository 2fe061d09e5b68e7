#pragma once

// Seeded random records for the differential test: every field drawn from values inside and
// outside the controls' ranges, every mode code, the accessories on and off, header and checksum
// valid unless asked otherwise. The same seed always gives the same record.

#include "configrecord.h"

#include <cstdint>

// A record the editor accepts (right magic, version and checksum); about one in fifty seeds has
// its checksum spoiled, which the editor refuses.
lumarex::RecordBytes randomRecord(std::uint32_t seed);
