// lxconfig diff [--format json] A [B]: the fields, element by element, in which two records differ;
// with one file, in which it differs from what the editor saves untouched.

#include "commandfiles.h"
#include "commands.h"
#include "fieldtext.h"
#include "formfields.h"
#include "jsonoutput.h"
#include "recorddifference.h"

namespace lxconfig {

int diffCommand(const Invocation &invocation, Output &output)
{
    const std::vector<std::string> &paths = invocation.arguments;
    const Result<lumarex::ConfigRecord> a = readInputFile(paths.at(0), Checks::Warn, output);
    const bool readA = succeeded(a, output);
    const Result<lumarex::ConfigRecord> b = paths.size() > 1
                                                ? readInputFile(paths.at(1), Checks::Warn, output)
                                                : lumarex::untouchedFormRecord();
    if (!succeeded(b, output) || !readA)
        return kExitError;
    const bool json = invocation.format == Format::Json;
    OrderedJson differences = OrderedJson::array();
    int status = kExitSuccess;
    for (const ElementDifference &found : recordDifferences(*a, *b)) {
        status = kExitFailure;
        if (!json) {
            output.out(differenceLine(*a, *b, found) + '\n');
            continue;
        }
        const lumarex::FieldInfo &info = *found.info;
        const int element = found.element;
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
