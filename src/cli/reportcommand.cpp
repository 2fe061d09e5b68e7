// lxconfig report FILE... [-o OUT.html]: the printable settings sheet of each file, in one
// HTML page on standard output or in OUT.

#include "commandfiles.h"
#include "commands.h"
#include "htmlreport.h"
#include "recordfile.h"

#include <unistd.h>

namespace lxconfig {

int reportCommand(const Invocation &invocation, Output &output)
{
    // Some 14 KB of markup on a terminal help nobody; "-o -" still asks for it on purpose.
    if (invocation.outputPath.empty() && ::isatty(STDOUT_FILENO)) {
        output.usageError("standard output: is a terminal, and the sheet is HTML; write it with "
                          "-o FILE.html, or pipe it",
                          "report");
        return kExitError;
    }
    if (refuseOutputOverInput(invocation, "to report", output))
        return kExitFailure;
    std::vector<ReportedFile> files;
    int status = kExitSuccess;
    for (const std::string &path : invocation.arguments) {
        ReportedFile file;
        file.path = path;
        InputBytes bytes;
        if (const std::optional<Failure> failure =
                readInput(path, kEditorReadSize, Overflow::Ignore, bytes)) {
            // Reported on the sheet and here; the other files are still reported.
            output.error(failure->message());
            file.unreadable = failure->reason;
            status = kExitFailure;
        } else {
            file.record = recordOf(bytes);
            file.refusal = recordProblem(file.record);
            file.sizeNote = sizeProblem(bytes);
            if (file.refusal)
                status = kExitFailure;
        }
        files.push_back(file);
    }
    const std::string html = htmlReport(files);
    if (invocation.outputPath.empty()) {
        output.out(html);
        return status;
    }
    return writeOutputFile(invocation.outputPath, html, output, invocation.backup) ? status
                                                                                   : kExitFailure;
}

} // namespace lxconfig
