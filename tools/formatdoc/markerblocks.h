#pragma once

// Generated parts of a Markdown document, each fenced by two marker comments on lines of their
// own:
//
//   <!-- BEGIN GENERATED NAME -->
//   ...everything here belongs to the generator...
//   <!-- END GENERATED NAME -->
//
// The hand-written text around the markers is never touched.

#include <string>
#include <string_view>
#include <vector>

namespace formatdoc {

struct Section
{
    std::string name; // NAME in the markers, e.g. "LAYOUT"
    std::string text; // the lines between the markers, each ended by '\n'
};

std::string beginMarker(std::string_view name);
std::string endMarker(std::string_view name);

struct Refresh
{
    std::string document;             // with each found section's text between its markers
    std::vector<std::string> changed; // sections whose text in the input differed
    std::vector<std::string> missing; // sections whose markers were not found
};

Refresh refreshSections(std::string document, const std::vector<Section> &sections);

} // namespace formatdoc
