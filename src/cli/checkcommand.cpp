// lxconfig check [--strict] FILE...: whether the editor would load each file, and if not, the
// first of its checks that the file fails; with --strict, after a file the editor loads, every
// value that its load and an immediate save would not keep.

#include "commands.h"
#include "recordfile.h"
#include "roundtrip.h"

namespace lxconfig {

int checkCommand(const Invocation &invocation, Output &output)
{
    int status = kExitSuccess;
    for (const std::string &path : invocation.arguments) {
        InputBytes bytes;
        const std::optional<Failure> failure =
            readInput(path, kEditorReadSize, Overflow::Ignore, bytes);
        const std::optional<std::string> problem =
            failure ? std::optional<std::string>(failure->reason) : recordProblem(recordOf(bytes));
        output.out(path + ": " + problem.value_or("valid") + '\n');
        if (problem)
            status = kExitFailure;
        // The editor loads a file of another size all the same, so this is only a warning.
        const std::optional<std::string> sizeNote = failure ? std::nullopt : sizeProblem(bytes);
        if (sizeNote)
            output.warning(path + ": " + *sizeNote);
        if (invocation.strict && !problem) {
            const auto findings = lumarex::roundtrip::strictFindings(recordOf(bytes).bytes());
            for (const lumarex::roundtrip::Finding &finding : findings)
                output.out("  " + finding.text() + '\n');
            if (!findings.empty())
                status = kExitFailure;
        }
    }
    return status;
}

} // namespace lxconfig
