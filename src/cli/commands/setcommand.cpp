// lxconfig set FILE SETTING=VALUE...: changes settings of a valid file in place as the window
// changes them (windowedit.h), or with --raw the fields' numbers as given, and mends its
// checksum. A file the editor would refuse is left alone, so that set never gives a damaged
// file a fresh checksum; any bad change leaves the file as it was. The file stays locked from
// the read to the replacement, so concurrent sets on one file each keep the others' changes.

#include "assignment.h"
#include "commandfiles.h"
#include "commands.h"
#include "commandtable.h"
#include "recordchange.h"
#include "recordfile.h"
#include "textset.h"
#include "windowedit.h"

#include <map>
#include <utility>

namespace lxconfig {

namespace {

// A change the editor would then refuse to load, unless --force asks for it.
std::optional<std::string> refusedHeader(const lumarex::ConfigRecord &record)
{
    const std::string writeAnyway = "; --force writes it all the same";
    if (!record.hasMagic())
        return "magic: the editor refuses a file without \"CONF\"" + writeAnyway;
    const std::uint32_t version = record.value(lumarex::Field::headerVersion);
    if (version != lumarex::kFormatVersion) {
        return "headerVersion: the editor refuses format version " + std::to_string(version) +
               " (it loads " + std::to_string(lumarex::kFormatVersion) + ")" + writeAnyway;
    }
    return std::nullopt;
}

} // namespace

int setCommand(const Invocation &invocation, Output &output)
{
    if (!invocation.fromPath.empty())
        return setFromText(invocation, output);
    if (invocation.arguments.size() < 2) {
        output.usageError(std::string("usage: lxconfig ") + findCommand("set")->synopsis, "set");
        return kExitError;
    }
    const std::string &path = invocation.arguments.at(0);
    FileForChange file;
    Result<lumarex::ConfigRecord> record = file.read(path, output);
    if (!succeeded(record, output))
        return kExitFailure;
    const lumarex::ConfigRecord before = *record;
    std::map<lumarex::Field, std::string> ruleChanged;
    if (!invocation.raw) {
        const std::vector<std::string> assignments(invocation.arguments.begin() + 1,
                                                   invocation.arguments.end());
        Result<RuleChanges> edit = editAsWindow(*record, assignments, invocation.force);
        if (!edit) {
            output.error(edit.failure().in(path).message());
            return kExitFailure;
        }
        ruleChanged = std::move(*edit);
    }
    for (auto it = invocation.arguments.begin() + 1;
         invocation.raw && it != invocation.arguments.end(); ++it) {
        if (const Done assigned = applyAssignment(*record, *it); !assigned) {
            output.error(assigned.failure().in(path).message());
            return kExitFailure;
        }
    }
    if (const std::optional<std::string> problem = refusedHeader(*record)) {
        if (!invocation.force) {
            output.error(path + ": " + *problem);
            return kExitFailure;
        }
    }
    record->setValue(lumarex::Field::crc, record->computedChecksum());
    const std::size_t given = invocation.arguments.size() - 1;
    return succeeded(
               finishChange(file, before, *record,
                            std::to_string(given) + (given == 1 ? " value set" : " values set"),
                            ruleChanged, invocation.backup, invocation.quiet, output),
               output)
               ? kExitSuccess
               : kExitFailure;
}

} // namespace lxconfig
