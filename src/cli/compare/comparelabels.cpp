#include "comparelabels.h"

#include <algorithm>
#include <unordered_map>

namespace lxconfig {

namespace {

// The path's components; "./a//b/" is {"a", "b"}.
std::vector<std::string> componentsOf(const std::string &path)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start <= path.size()) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string part = path.substr(start, end - start);
        if (!part.empty() && part != ".")
            parts.push_back(part);
        start = end + 1;
    }
    return parts;
}

// How many trailing components every path has in common, leaving at least one of each.
std::size_t sharedTail(const std::vector<std::vector<std::string>> &parts)
{
    if (parts.size() < 2)
        return 0;
    for (std::size_t shared = 0;; ++shared) {
        for (const std::vector<std::string> &one : parts) {
            if (one.size() <= shared + 1 ||
                one[one.size() - 1 - shared] != parts.front()[parts.front().size() - 1 - shared])
                return shared;
        }
    }
}

std::string tail(const std::vector<std::string> &parts, std::size_t skip, std::size_t length)
{
    std::string text;
    for (std::size_t i = parts.size() - skip - length; i < parts.size() - skip; ++i)
        text += (text.empty() ? "" : "/") + parts[i];
    return text;
}

} // namespace

std::vector<std::string> fileLabels(const std::vector<std::string> &paths)
{
    std::vector<std::vector<std::string>> parts;
    parts.reserve(paths.size());
    for (const std::string &path : paths)
        parts.push_back(componentsOf(path));
    const bool anyEmpty =
        std::any_of(parts.begin(), parts.end(),
                    [](const std::vector<std::string> &one) { return one.empty(); });
    const std::size_t skip = anyEmpty ? 0 : sharedTail(parts);

    std::vector<std::size_t> lengths(paths.size(), 1);
    std::vector<std::string> labels(paths.size());
    std::vector<bool> settled(paths.size(), false);
    for (bool growing = true; growing;) {
        growing = false;
        std::unordered_map<std::string, std::size_t> uses;
        for (std::size_t i = 0; i < paths.size(); ++i) {
            labels[i] =
                settled[i] || parts[i].empty() ? paths[i] : tail(parts[i], skip, lengths[i]);
            ++uses[labels[i]];
        }
        for (std::size_t i = 0; i < paths.size(); ++i) {
            if (settled[i] || uses[labels[i]] == 1)
                continue;
            if (lengths[i] + skip < parts[i].size()) {
                ++lengths[i];
                growing = true;
            } else {
                settled[i] = true; // the whole path, as given
            }
        }
    }
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (settled[i])
            labels[i] = paths[i];
    }
    return labels;
}

} // namespace lxconfig
