// lxconfig diff [--format json] A [B]: the fields, element by element, in which two records differ;
// with one file, in which it differs from what the editor saves untouched.

#include "commandfiles.h"
#include "commands.h"
#include "defaults.h"
#include "fieldtext.h"
#include "jsonoutput.h"

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
    const bool json = invocation.format == Format::Json;
    OrderedJson differences = OrderedJson::array();
    int status = kExitSuccess;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        for (int element = 0; element < info.elementCount(); ++element) {
            if (sameElement(*a, *b, info, element))
                continue;
            status = kExitFailure;
            if (!json) {
                output.out(elementName(info, element) + ": " + elementText(*a, info, element) +
                           " -> " + elementText(*b, info, element) + '\n');
                continue;
            }
            OrderedJson difference = {
                {"field", info.name},
                {"element", info.elementCount() == 1 ? OrderedJson(nullptr) : OrderedJson(element)},
                {"offset", info.offset + element * info.elementWidth()},
                {"a", elementValue(*a, info, element)},
                {"b", elementValue(*b, info, element)}};
            if (const std::optional<OrderedJson> text = shownText(*a, info, element))
                difference["aText"] = *text;
            if (const std::optional<OrderedJson> text = shownText(*b, info, element))
                difference["bText"] = *text;
            differences.push_back(difference);
        }
    }
    if (json) {
        // Without B the record compared with is what the editor saves untouched.
        output.out(jsonText(
            OrderedJson{{"a", paths.at(0)},
                        {"b", paths.size() > 1 ? OrderedJson(paths.at(1)) : OrderedJson(nullptr)},
                        {"differences", differences}}));
    }
    return status;
}

} // namespace lxconfig
