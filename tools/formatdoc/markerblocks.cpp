#include "markerblocks.h"

#include <utility>

namespace formatdoc {

std::string beginMarker(std::string_view name)
{
    return "<!-- BEGIN GENERATED " + std::string(name) + " -->";
}

std::string endMarker(std::string_view name)
{
    return "<!-- END GENERATED " + std::string(name) + " -->";
}

Refresh refreshSections(std::string document, const std::vector<Section> &sections)
{
    Refresh result;
    for (const Section &section : sections) {
        const std::size_t begin = document.find(beginMarker(section.name) + '\n');
        if (begin == std::string::npos) {
            result.missing.push_back(section.name);
            continue;
        }
        const std::size_t contentStart = document.find('\n', begin) + 1;
        // The end marker must start a line, so that the text before it ends with a newline.
        const std::size_t end = document.find('\n' + endMarker(section.name), contentStart - 1);
        if (end == std::string::npos) {
            result.missing.push_back(section.name);
            continue;
        }
        const std::size_t contentLength = end + 1 - contentStart;
        if (document.compare(contentStart, contentLength, section.text) != 0) {
            result.changed.push_back(section.name);
            document.replace(contentStart, contentLength, section.text);
        }
    }
    result.document = std::move(document);
    return result;
}

} // namespace formatdoc
