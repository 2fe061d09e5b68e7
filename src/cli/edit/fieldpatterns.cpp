#include "fieldpatterns.h"

#include "configrecord.h"
#include "settingname.h"

#include <algorithm>
#include <fnmatch.h>

namespace lxconfig {

std::vector<std::string> patternsOf(const std::string &list)
{
    std::vector<std::string> patterns;
    std::size_t start = 0;
    for (;;) {
        const std::size_t comma = list.find(',', start);
        patterns.push_back(list.substr(start, comma - start));
        if (comma == std::string::npos)
            return patterns;
        start = comma + 1;
    }
}

bool patternMatches(const std::string &pattern, const std::string &name)
{
    if (::fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0)
        return true;
    const NamedField named = fieldNamed(pattern);
    return named.field && lumarex::fieldInfo(*named.field).name == name;
}

bool matchesAny(const std::vector<std::string> &patterns, const std::string &name)
{
    return std::any_of(patterns.begin(), patterns.end(), [&name](const std::string &pattern) {
        return patternMatches(pattern, name);
    });
}

std::string unmatchedPattern(const std::vector<std::string> &patterns)
{
    for (const std::string &pattern : patterns) {
        const auto &table = lumarex::fieldTable();
        const bool matched =
            std::any_of(table.begin(), table.end(), [&pattern](const lumarex::FieldInfo &info) {
                return patternMatches(pattern, info.name);
            });
        if (!matched)
            return "no field matches \"" + pattern + "\"" + didYouMean(pattern, settingNames());
    }
    return {};
}

} // namespace lxconfig
