// lxconfig show FILE: every field in file order with its offset and value.

#include "commandfiles.h"
#include "commands.h"
#include "fieldtext.h"

#include <algorithm>
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
    const std::optional<lumarex::ConfigRecord> record =
        readInputFile(invocation.arguments.at(0), Checks::Warn, output);
    if (!record)
        return kExitFailure;
    // Name, offset and value in columns: "gpsReceiver             112  2 "Custom settings"".
    const int nameWidth = longestFieldName() + 1;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        output.out() << QString::fromLatin1(info.name).leftJustified(nameWidth)
                     << QString::number(info.offset).rightJustified(3) << "  "
                     << fieldText(*record, info) << '\n';
    }
    return kExitSuccess;
}

} // namespace lxconfig
