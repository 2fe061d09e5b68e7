// lxconfig diff A [B]: the fields, element by element, in which two records differ; with one
// file, in which it differs from what the editor saves untouched.

#include "commandfiles.h"
#include "commands.h"
#include "defaults.h"
#include "fieldtext.h"

#include <algorithm>

namespace lxconfig {

namespace {

bool sameElement(const lumarex::ConfigRecord &a, const lumarex::ConfigRecord &b,
                 const lumarex::FieldInfo &info, int element)
{
    const int offset = info.offset + element * info.elementWidth();
    const auto first = a.bytes().begin() + offset;
    return std::equal(first, first + info.elementWidth(), b.bytes().begin() + offset);
}

std::string elementName(const lumarex::FieldInfo &info, int element)
{
    const std::string name = info.name;
    return info.elementCount() == 1 ? name : name + '[' + std::to_string(element) + ']';
}

} // namespace

int diffCommand(const Invocation &invocation, Output &output)
{
    const std::vector<std::string> &paths = invocation.arguments;
    const std::optional<lumarex::ConfigRecord> a = readInputFile(paths.at(0), Checks::Warn, output);
    const std::optional<lumarex::ConfigRecord> b =
        paths.size() > 1 ? readInputFile(paths.at(1), Checks::Warn, output) : defaultRecord();
    if (!a || !b)
        return kExitError;
    int status = kExitSuccess;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        for (int element = 0; element < info.elementCount(); ++element) {
            if (sameElement(*a, *b, info, element))
                continue;
            output.out(elementName(info, element) + ": " + elementText(*a, info, element) + " -> " +
                       elementText(*b, info, element) + '\n');
            status = kExitFailure;
        }
    }
    return status;
}

} // namespace lxconfig
