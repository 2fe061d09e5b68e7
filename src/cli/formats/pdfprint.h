#pragma once

// Printing the settings sheet to a PDF with a headless Chromium, as `report --pdf` does: the
// browser found on PATH, run with the options a root user needs, without the browser's own
// header and footer, with a fresh profile that is removed afterwards.

#include "failure.h"

#include <optional>
#include <string>
#include <vector>

namespace lxconfig {

// The names a headless Chromium goes by, in the order they are looked for on PATH.
const std::vector<std::string> &browserNames();

// The first of browserNames() that PATH holds as an executable file, with its folder.
std::optional<std::string> browserOnPath();

// Prints the HTML file to the PDF file with the browser; `work` is an empty folder for the
// browser's profile and log.
Done printToPdf(const std::string &browser, const std::string &html, const std::string &pdf,
                const std::string &work);

} // namespace lxconfig
