// lxconfig set FILE FIELD=VALUE...: changes fields of a valid file in place and mends its
// checksum. A file the editor would refuse is left alone, so that set never gives a damaged
// file a fresh checksum; any bad change leaves the file as it was.

#include "assignment.h"
#include "commandfiles.h"
#include "commands.h"
#include "recordfile.h"

namespace lxconfig {

int setCommand(const Invocation &invocation, Output &output)
{
    const QString &path = invocation.arguments.at(0);
    std::optional<lumarex::ConfigRecord> record = readInputFile(path, Checks::Require, output);
    if (!record)
        return kExitFailure;
    for (const QString &assignment : invocation.arguments.mid(1)) {
        if (const std::optional<QString> problem = applyAssignment(*record, assignment)) {
            output.error(*problem);
            return kExitFailure;
        }
    }
    record->setValue(lumarex::Field::crc, record->computedChecksum());
    return writeOutputFile(path, recordBytes(*record), output) ? kExitSuccess : kExitFailure;
}

} // namespace lxconfig
