#pragma once

// Fields chosen by shell patterns, as apply's --fields and --except take them: a comma-separated
// list, each a pattern of field names in any letter case or a setting as set names it.

#include <string>
#include <vector>

namespace lxconfig {

std::vector<std::string> patternsOf(const std::string &list);
bool patternMatches(const std::string &pattern, const std::string &name);
bool matchesAny(const std::vector<std::string> &patterns, const std::string &name);

// The reason, with the closest names, when a pattern matches no field of the record at all.
std::string unmatchedPattern(const std::vector<std::string> &patterns);

} // namespace lxconfig
