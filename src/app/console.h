#pragma once

// The editor reports what it does as console lines: one line per report, flushed at once so that
// the lines of standard output and standard error keep their order when both go to a terminal.
// Standard error carries only "<<< Unknown case" and "   not implemented.".

#include <iostream>

namespace console {

template <typename... Parts> void report(const Parts &...parts)
{
    (std::cout << ... << parts) << std::endl;
}

template <typename... Parts> void reportError(const Parts &...parts)
{
    (std::cerr << ... << parts) << std::endl;
}

} // namespace console
