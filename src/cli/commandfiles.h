#pragma once

// The files a command reads and writes, with what goes wrong reported on standard error.

#include "commands.h"
#include "configrecord.h"
#include "fileio.h"
#include "output.h"

#include <optional>
#include <string>

namespace lxconfig {

enum class Checks
{
    Warn,    // a file the editor would refuse is read with a warning (show, export, diff)
    Require, // such a file is refused (set)
};

// Nothing, after an error line, when the file cannot be read or fails a required check.
std::optional<lumarex::ConfigRecord> readInputFile(const std::string &path, Checks checks,
                                                   Output &output);

// The record of bytes already read, with the same checks and reports.
std::optional<lumarex::ConfigRecord> checkedRecord(const std::string &path, const InputBytes &bytes,
                                                   Checks checks, Output &output);

// A file that is read, changed and replaced in place (set, apply): opened and locked until file
// is destroyed, read, and required to pass the editor's checks. Nothing after an error line.
// The bytes read are kept in read, when given.
std::optional<lumarex::ConfigRecord> readForChange(const std::string &path, OutputFile &file,
                                                   Output &output, InputBytes *read = nullptr);

// True, after an error line, when -o names (under any name, through links too) a regular file
// that is one of the command's inputs, standard input ("-") included: writing a sheet or a form
// there would replace the very file the command reads with something else, which is a slip of the
// keyboard, never a wish. `what` completes "is also the file FILE ...", e.g. "to report".
bool refuseOutputOverInput(const Invocation &invocation, const char *what, Output &output);

// Writes the whole file or, after an error line, leaves it as it was; false then. A regular file
// that is replaced is first kept as the backup asks. "-" is standard output, written at the end
// of the command like any result.
bool writeOutputFile(const std::string &path, std::string_view data, Output &output,
                     Backup backup = Backup::None);

// The error line of a failure; false, for returning.
bool report(const std::optional<Failure> &failure, Output &output);

} // namespace lxconfig
