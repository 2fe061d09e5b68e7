#pragma once

// The files a command reads and writes, with what goes wrong reported on standard error.

#include "configrecord.h"
#include "output.h"

#include <QByteArray>
#include <optional>

namespace lxconfig {

enum class Checks
{
    Warn,    // a file the editor would refuse is read with a warning (show, export, diff)
    Require, // such a file is refused (set)
};

// Nothing, after an error line, when the file cannot be read or fails a required check.
std::optional<lumarex::ConfigRecord> readInputFile(const QString &path, Checks checks,
                                                   Output &output);

// Writes the whole file or, after an error line, leaves it as it was; false then.
bool writeOutputFile(const QString &path, const QByteArray &data, Output &output);

} // namespace lxconfig
