#pragma once

// The editor reports what it does as console lines: one line per report, flushed at once so that
// the lines of standard output and standard error keep their order when both go to a terminal.
// Standard error carries only "<<< Unknown case" and "   not implemented.".
//
// The lines go to std::cout and std::cerr, which console.cpp sets up on the first report. This
// header leaves out <iostream> on purpose: every file that includes <iostream> gets a static
// initialiser that sets up all eight standard streams and the classic locale as the program
// starts, 0.4 MiB of the editor's start-up memory, although nothing is printed until the operator
// acts.

#include <ostream>

namespace console {

// std::cout and std::cerr, set up on first use.
std::ostream &standardOutput();
std::ostream &standardError();

template <typename... Parts> void report(const Parts &...parts)
{
    (standardOutput() << ... << parts) << std::endl;
}

template <typename... Parts> void reportError(const Parts &...parts)
{
    (standardError() << ... << parts) << std::endl;
}

} // namespace console
