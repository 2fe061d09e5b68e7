// lxconfig check [--strict] [--format json] FILE...: whether the editor would load each file,
// and if not, the first of its checks that the file fails; with --strict, after a file the
// editor loads, every value that its load and an immediate save would not keep.

#include "commandfiles.h"
#include "commands.h"
#include "jsonoutput.h"
#include "roundtrip.h"

namespace lxconfig {

int checkCommand(const Invocation &invocation, Output &output)
{
    const bool json = invocation.format == Format::Json;
    OrderedJson entries = OrderedJson::array();
    int status = kExitSuccess;
    for (const std::string &path : invocation.arguments) {
        const Result<RecordFile> file = readRecordFile(path);
        const bool unreadable = !file;
        const std::optional<std::string> problem =
            unreadable ? std::optional<std::string>(file.failure().reason) : file->refusal;
        if (problem)
            status = kExitFailure;
        // The editor loads a file of another size all the same, so this is only a warning.
        const std::optional<std::string> sizeNote = unreadable ? std::nullopt : file->sizeNote;
        std::vector<lumarex::roundtrip::Finding> findings;
        if (invocation.strict && !problem)
            findings = lumarex::roundtrip::strictFindings(file->record.bytes());
        if (!findings.empty())
            status = kExitFailure;

        if (invocation.quiet)
            continue; // the exit status alone answers
        if (json) {
            OrderedJson entry = checkEntry(path,
                                           unreadable ? "unreadable"
                                           : problem  ? "refused"
                                                      : "valid",
                                           problem, sizeNote);
            if (invocation.strict) {
                entry["findings"] = OrderedJson::array();
                for (const lumarex::roundtrip::Finding &finding : findings)
                    entry["findings"].push_back(findingEntry(finding));
            }
            entries.push_back(entry);
        } else {
            output.out(path + ": " + problem.value_or("valid") + '\n');
            for (const lumarex::roundtrip::Finding &finding : findings)
                output.out("  " + finding.text() + '\n');
        }
        if (sizeNote)
            output.warning(path + ": " + *sizeNote);
    }
    if (json && !invocation.quiet)
        output.out(jsonText(entries));
    return status;
}

} // namespace lxconfig
