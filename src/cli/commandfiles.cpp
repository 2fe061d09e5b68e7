#include "commandfiles.h"

#include "recordfile.h"

#include <sys/stat.h>
#include <unistd.h>

namespace lxconfig {

bool report(const std::optional<Failure> &failure, Output &output)
{
    if (failure)
        output.error(failure->message());
    return !failure;
}

std::optional<lumarex::ConfigRecord> checkedRecord(const std::string &path, const InputBytes &bytes,
                                                   Checks checks, Output &output)
{
    const lumarex::ConfigRecord record = recordOf(bytes);
    if (const std::optional<std::string> problem = recordProblem(record)) {
        if (checks == Checks::Require) {
            output.error(path + ": " + *problem);
            return std::nullopt;
        }
        output.warning(path + ": " + *problem);
    }
    if (const std::optional<std::string> problem = sizeProblem(bytes))
        output.warning(path + ": " + *problem);
    return record;
}

std::optional<lumarex::ConfigRecord> readInputFile(const std::string &path, Checks checks,
                                                   Output &output)
{
    InputBytes bytes;
    if (!report(readInput(path, kEditorReadSize, Overflow::Ignore, bytes), output))
        return std::nullopt;
    return checkedRecord(path, bytes, checks, output);
}

std::optional<lumarex::ConfigRecord> readForChange(const std::string &path, OutputFile &file,
                                                   Output &output, InputBytes *read)
{
    InputBytes own;
    InputBytes &bytes = read ? *read : own;
    std::optional<Failure> failure = file.openExisting(path);
    if (!failure)
        failure = file.read(kEditorReadSize, bytes);
    if (!report(failure, output))
        return std::nullopt;
    return checkedRecord(path, bytes, Checks::Require, output);
}

bool refuseOutputOverInput(const Invocation &invocation, const char *what, Output &output)
{
    struct stat out;
    if (invocation.outputPath.empty() || ::stat(invocation.outputPath.c_str(), &out) != 0 ||
        !S_ISREG(out.st_mode))
        return false;
    for (const std::string &path : invocation.arguments) {
        // "-" reads standard input, which may be the very file -o names (< FILE).
        const bool standardInput = path == kStandardStream;
        struct stat in;
        const int status = standardInput ? ::fstat(STDIN_FILENO, &in) : ::stat(path.c_str(), &in);
        if (status == 0 && in.st_dev == out.st_dev && in.st_ino == out.st_ino) {
            output.error(
                invocation.outputPath + ": is also " +
                (standardInput ? std::string("the file on standard input") : "the file " + path) +
                " " + what + "; nothing is written");
            return true;
        }
    }
    return false;
}

bool writeOutputFile(const std::string &path, std::string_view data, Output &output, Backup backup)
{
    // Written as without -o, so that a failure names "standard output" as every command does.
    if (path == kStandardStream) {
        output.out(data);
        return true;
    }
    OutputFile file;
    std::optional<Failure> failure = file.open(path);
    if (!failure)
        failure = file.replace(data, backup);
    return report(failure, output);
}

} // namespace lxconfig
