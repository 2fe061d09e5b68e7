// lxconfig export FILE [-o OUT]: the record in its JSON form, or with --format text as
// NAME = VALUE lines (textform.h), on standard output or into OUT.

#include "commandfiles.h"
#include "commands.h"
#include "jsonform.h"
#include "textform.h"

namespace lxconfig {

int exportCommand(const Invocation &invocation, Output &output)
{
    if (!succeeded(outputIsNoInput(invocation.outputPath, invocation.arguments, "to export"),
                   output))
        return kExitFailure;
    const std::string &path = invocation.arguments.at(0);
    const Result<lumarex::ConfigRecord> record = readInputFile(path, Checks::Warn, output);
    if (!succeeded(record, output))
        return kExitFailure;
    const bool asText = invocation.formatGiven && invocation.format == Format::Text;
    const Result<std::string> json =
        asText ? Result<std::string>(recordToText(*record)) : recordToJson(*record);
    if (!json) {
        output.error(json.failure().in(path).message());
        return kExitFailure;
    }
    if (invocation.outputPath.empty()) {
        output.out(*json);
        return kExitSuccess;
    }
    return succeeded(writeOutputFile(invocation.outputPath, *json, invocation.backup, output),
                     output)
               ? kExitSuccess
               : kExitFailure;
}

} // namespace lxconfig
