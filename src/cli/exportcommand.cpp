// lxconfig export FILE [-o OUT]: the record in its JSON form, or with --format text as
// NAME = VALUE lines (textform.h), on standard output or into OUT.

#include "commandfiles.h"
#include "commands.h"
#include "jsonform.h"
#include "textform.h"

namespace lxconfig {

int exportCommand(const Invocation &invocation, Output &output)
{
    if (refuseOutputOverInput(invocation, "to export", output))
        return kExitFailure;
    const std::string &path = invocation.arguments.at(0);
    const std::optional<lumarex::ConfigRecord> record = readInputFile(path, Checks::Warn, output);
    if (!record)
        return kExitFailure;
    std::string error;
    const bool asText = invocation.formatGiven && invocation.format == Format::Text;
    const std::optional<std::string> json =
        asText ? std::optional<std::string>(recordToText(*record)) : recordToJson(*record, error);
    if (!json) {
        output.error(path + ": " + error);
        return kExitFailure;
    }
    if (invocation.outputPath.empty()) {
        output.out(*json);
        return kExitSuccess;
    }
    return writeOutputFile(invocation.outputPath, *json, output, invocation.backup) ? kExitSuccess
                                                                                    : kExitFailure;
}

} // namespace lxconfig
