// lxconfig report FILE... [-o OUT.html]: the printable settings sheet of each file, in one
// HTML page on standard output or in OUT.

#include "commandfiles.h"
#include "commands.h"
#include "htmlreport.h"
#include "recordfile.h"

#include <sys/stat.h>

namespace lxconfig {

namespace {

// The input that OUT names too, if any: a sheet written there would replace a camera's file
// with HTML, which is never what a report is asked for (a typo or a completed name).
const std::string *inputAlsoWritten(const Invocation &invocation)
{
    struct stat out;
    if (invocation.outputPath.empty() || ::stat(invocation.outputPath.c_str(), &out) != 0 ||
        !S_ISREG(out.st_mode))
        return nullptr;
    for (const std::string &path : invocation.arguments) {
        struct stat in;
        if (::stat(path.c_str(), &in) == 0 && in.st_dev == out.st_dev && in.st_ino == out.st_ino)
            return &path;
    }
    return nullptr;
}

} // namespace

int reportCommand(const Invocation &invocation, Output &output)
{
    if (const std::string *path = inputAlsoWritten(invocation)) {
        output.error(invocation.outputPath + ": is also the file " + *path +
                     " to report; nothing is written");
        return kExitFailure;
    }
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
