// lxconfig show [--format json] FILE: every field in file order with its offset and value.

#include "commandfiles.h"
#include "commands.h"
#include "fieldtext.h"
#include "jsonoutput.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace lxconfig {

namespace {

int longestFieldName()
{
    const auto &table = lumarex::fieldTable();
    const auto longest = std::max_element(
        table.begin(), table.end(), [](const lumarex::FieldInfo &a, const lumarex::FieldInfo &b) {
            return std::strlen(a.name) < std::strlen(b.name);
        });
    return static_cast<int>(std::strlen(longest->name));
}

} // namespace

int showCommand(const Invocation &invocation, Output &output)
{
    const Result<lumarex::ConfigRecord> record =
        readInputFile(invocation.arguments.at(0), Checks::Warn, output);
    if (!succeeded(record, output))
        return kExitFailure;
    if (invocation.format == Format::Json) {
        OrderedJson fields = OrderedJson::array();
        for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
            for (int element = 0; element < info.elementCount(); ++element)
                fields.push_back(elementEntry(*record, info, element));
        }
        output.out(jsonText(OrderedJson{{"path", invocation.arguments.at(0)}, {"fields", fields}}));
        return kExitSuccess;
    }
    // Name, offset and value in columns: "gpsReceiver             112  2 "Custom settings"".
    const int nameWidth = longestFieldName() + 1;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        char columns[64];
        std::snprintf(columns, sizeof columns, "%-*s%3d  ", nameWidth, info.name, info.offset);
        output.out(columns + fieldText(*record, info) + '\n');
    }
    return kExitSuccess;
}

} // namespace lxconfig
