#pragma once

// The printable settings sheet of `lxconfig report`: one self-contained XHTML page (inline
// style, no scripts, nothing fetched) with a section per file that starts on a new sheet of
// paper. Each section names the file, its checksum and the editor's verdict, then the eight
// pages of the window in tab order with the editor's captions and item texts, the values that
// differ from the untouched form marked (class "changed"), and the strict findings.

#include "configrecord.h"

#include <optional>
#include <string>
#include <vector>

namespace lxconfig {

struct ReportedFile
{
    std::string path;                      // as given; any bytes
    std::optional<std::string> unreadable; // why it could not be read
    std::optional<std::string> refusal;    // why the editor refuses it
    std::optional<std::string> sizeNote;   // a size other than a record's
    lumarex::ConfigRecord record;          // when it could be read
};

std::string htmlReport(const std::vector<ReportedFile> &files);

} // namespace lxconfig
