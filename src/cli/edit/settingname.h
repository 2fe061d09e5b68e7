#pragma once

// Settings named in the window's words: a field by its name in any letter case, its control's
// object name, or the caption the window shows next to it ("Trigger Mode"), qualified by its
// page ("SBUS/PPM:Low") where two controls share a caption. Names that match nothing get the
// closest candidates.

#include "configrecord.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lxconfig {

struct NamedField
{
    std::optional<lumarex::Field> field;
    std::string problem; // why the name means no single field, with the closest candidates
};

NamedField fieldNamed(std::string_view name);

// Every name fieldNamed() accepts as written in the window: field names and captions (page
// qualified where a caption repeats), for completion and suggestions.
std::vector<std::string> settingNames();

// " (did you mean gpsReceiver?)" naming the candidates closest to the given text, or nothing
// when none is close.
std::string didYouMean(std::string_view given, const std::vector<std::string> &candidates);

} // namespace lxconfig
