#pragma once

// What the editor saves from its untouched form.

#include "configrecord.h"

namespace lxconfig {

// The form's start-up values in their fields, with the header, the constants and the checksum.
lumarex::ConfigRecord defaultRecord();

} // namespace lxconfig
