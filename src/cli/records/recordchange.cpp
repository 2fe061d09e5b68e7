#include "recordchange.h"

#include "recorddifference.h"
#include "recordfile.h"

#include <algorithm>

namespace lxconfig {

Done finishChange(FileForChange &file, const lumarex::ConfigRecord &before,
                  const lumarex::ConfigRecord &after, const std::string &given,
                  const std::map<lumarex::Field, std::string> &ruleChanged, Backup backup,
                  bool quiet, Output &output)
{
    const std::string bytes = recordBytes(after);
    const bool unchanged = file.holds(bytes);
    if (!unchanged) {
        if (Done replaced = file.replace(bytes, backup); !replaced)
            return replaced;
    }
    if (quiet)
        return {};
    std::vector<ElementDifference> differences = recordDifferences(before, after);
    differences.erase(std::remove_if(differences.begin(), differences.end(),
                                     [](const ElementDifference &difference) {
                                         return difference.info->field == lumarex::Field::crc;
                                     }),
                      differences.end());
    int changedFields = 0;
    for (std::size_t i = 0; i < differences.size(); ++i)
        changedFields += i == 0 || differences[i].info != differences[i - 1].info;
    std::string text = file.path() + ": " + given + ", " + std::to_string(changedFields) +
                       " changed" + (unchanged ? "; the file is left as it was\n" : "\n");
    for (const ElementDifference &difference : differences) {
        const auto rule = ruleChanged.find(difference.info->field);
        text += "  " + differenceLine(before, after, difference) +
                (rule == ruleChanged.end() ? std::string() : " (" + rule->second + ")") + '\n';
    }
    output.out(text);
    return {};
}

} // namespace lxconfig
