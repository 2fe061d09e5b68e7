#include "templatekeep.h"

#include "fieldpatterns.h"

#include <vector>

namespace lxconfig {

namespace {

inline constexpr const char *kKeepKey = "keep";

} // namespace

Done leaveKept(JsonValue &form, const std::string &exceptPattern)
{
    std::vector<std::string> patterns;
    if (!exceptPattern.empty()) {
        patterns = patternsOf(exceptPattern);
        const std::string unmatched = unmatchedPattern(patterns);
        if (!unmatched.empty())
            return Failure{{}, "--except: " + unmatched};
    }
    if (const auto keep = form.find(kKeepKey); keep != form.end()) {
        std::vector<std::string> kept;
        for (const JsonValue &pattern : keep->is_array() ? *keep : JsonValue::array()) {
            if (pattern.is_string() && !pattern.get_ref<const std::string &>().empty())
                kept.push_back(pattern.get<std::string>());
        }
        if (!keep->is_array() || kept.size() != keep->size())
            return Failure{{},
                           std::string(kKeepKey) +
                               ": expected a list of field patterns, as --fields takes"};
        const std::string unmatched = unmatchedPattern(kept);
        if (!unmatched.empty())
            return Failure{{}, std::string(kKeepKey) + ": " + unmatched};
        patterns.insert(patterns.end(), kept.begin(), kept.end());
        form.erase(kKeepKey);
    }
    for (auto it = form.begin(); it != form.end();) {
        if (matchesAny(patterns, it.key()))
            it = form.erase(it);
        else
            ++it;
    }
    return {};
}

} // namespace lxconfig
