#pragma once

// How `lxconfig compare` prints its table: the command hands a writer the files and their
// verdicts, then each setting with the group of every accepted file, in file order, and a writer
// prints as it goes (text, JSON, CSV, HTML), so that nothing holds the whole table unless a
// format needs it: the text as columns, which only a few files fit on a terminal.

#include "comparetally.h"
#include "output.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace lxconfig {

struct ComparedFiles
{
    const std::vector<std::string> &paths; // as given: the command's arguments, not a copy
    std::vector<std::string> labels;       // fileLabels(paths)
    std::vector<FileVerdict> verdicts;
    std::vector<std::string> reasons;    // why a file is not compared; empty for a valid one
    std::vector<std::uint32_t> accepted; // the valid files' indexes, in order
};

class CompareWriter
{
public:
    virtual ~CompareWriter() = default;
    virtual void begin(const ComparedFiles &files,
                       const std::vector<const SettingTally *> &settings) = 0;
    // groups[k]: the index into setting.groups of the k-th accepted file's value.
    virtual void setting(const SettingTally &setting, const std::vector<std::uint32_t> &groups) = 0;
    virtual void end() = 0;
};

// width: the terminal's columns, 0 when unknown (a line per setting and file then).
std::unique_ptr<CompareWriter> compareTextWriter(Output &output, int width);
std::unique_ptr<CompareWriter> compareJsonWriter(Output &output);
std::unique_ptr<CompareWriter> compareCsvWriter(Output &output);
std::unique_ptr<CompareWriter> compareHtmlWriter(Output &output);

} // namespace lxconfig
