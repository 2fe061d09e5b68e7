// lumarex-formatdoc --check|--update FILE
//
// Keeps the generated parts of the file-format reference (docs/file-format.md) in step with the
// field table of the format library. --check exits with 1 and says how to refresh when a part
// is out of date; --update rewrites the parts in place. scripts/docs.sh runs --update and CTest
// runs --check.

#include "fielddocs.h"
#include "markdownsections.h"
#include "markerblocks.h"

#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

namespace {

void printAll(std::ostream &stream, const std::vector<std::string> &lines,
              const std::string &prefix)
{
    for (const std::string &line : lines)
        stream << prefix << line << '\n';
}

} // namespace

int main(int argc, char *argv[])
{
    const std::string mode = argc == 3 ? argv[1] : "";
    if (mode != "--check" && mode != "--update") {
        std::cerr << "usage: lumarex-formatdoc --check|--update FILE\n";
        return 2;
    }
    const std::string path = argv[2];

    const std::vector<std::string> problems = formatdoc::fieldDocProblems();
    if (!problems.empty()) {
        printAll(std::cerr, problems, "lumarex-formatdoc: ");
        std::cerr << "Describe every field in tools/formatdoc/fielddocs.cpp.\n";
        return 1;
    }

    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::cerr << path << ": cannot read\n";
        return 1;
    }
    std::ostringstream text;
    text << in.rdbuf();
    const formatdoc::Refresh refresh =
        formatdoc::refreshSections(text.str(), formatdoc::generatedSections());

    for (const std::string &name : refresh.missing) {
        std::cerr << path << ": the lines " << formatdoc::beginMarker(name) << " and "
                  << formatdoc::endMarker(name) << " are missing\n";
    }
    if (!refresh.missing.empty())
        return 1;

    if (mode == "--check") {
        if (refresh.changed.empty())
            return 0;
        printAll(std::cerr, refresh.changed,
                 path + ": out of date with the field table: GENERATED ");
        std::cerr << "Refresh it with scripts/docs.sh, or with: lumarex-formatdoc --update " << path
                  << '\n';
        return 1;
    }

    if (!refresh.changed.empty()) {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        if (!(out << refresh.document)) {
            std::cerr << path << ": cannot write\n";
            return 1;
        }
        printAll(std::cout, refresh.changed, path + ": refreshed GENERATED ");
    }
    return 0;
}
