#pragma once

// Where a command writes: its result on standard output, diagnostics on standard error. Texts
// are UTF-8 (item texts carry signs such as U+00AE); file names are printed as the bytes given.

#include <cstdio>
#include <string>
#include <string_view>

namespace lxconfig {

// "-" for an input is standard input, for an output standard output.
inline constexpr std::string_view kStandardStream = "-";

class Output
{
public:
    Output(FILE *out, FILE *err);

    // Appends to standard output, which is written out by finish() or when much has gathered.
    void out(std::string_view text);

    // "lxconfig: <text>" on standard error.
    void error(std::string_view text);
    // "lxconfig: warning: <text>" on standard error.
    void warning(std::string_view text);
    // The error, then a pointer to the command's help page, or without a command to the help.
    void usageError(std::string_view text, std::string_view command = {});

    // Writes what standard output still holds; false, after an error line naming standard
    // output and the reason, when any of it could not be written.
    bool finish();

private:
    bool flushOut();

    FILE *m_out;
    FILE *m_err;
    std::string m_pending;
    int m_outError = 0; // the errno of the first failed write to standard output
};

} // namespace lxconfig
