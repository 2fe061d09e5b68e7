#pragma once

// lxconfig's command line: the global options, the choice of command and its arguments.

#include "output.h"

#include <QStringList>

namespace lxconfig {

// arguments as QCoreApplication::arguments() gives them, the program's name first.
int run(const QStringList &arguments, Output &output);

} // namespace lxconfig
