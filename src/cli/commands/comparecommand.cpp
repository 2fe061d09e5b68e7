// lxconfig compare [--all] [--format text|json|csv|html] FILE...: one table of the settings that
// differ across many files. Two passes keep its memory small whatever the number of files: the
// first counts each setting's values (comparetally.h), the second reads the files again and
// hands the writer each setting with every file's group, a few settings at a time.

#include "commands.h"
#include "comparelabels.h"
#include "comparetally.h"
#include "comparewriter.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace lxconfig {

namespace {

// The groups held at once in the second pass: 4 MB, whatever the number of files.
constexpr std::size_t kGroupsHeld = 1u << 20;

std::uint64_t fingerprint(const lumarex::ConfigRecord &record)
{
    std::uint64_t hash = 14695981039346656037u; // FNV-1a
    for (const std::uint8_t byte : record.bytes())
        hash = (hash ^ byte) * 1099511628211u;
    return hash;
}

// The terminal's columns, else COLUMNS, else 0.
int terminalWidth()
{
    winsize size{};
    if (::isatty(STDOUT_FILENO) && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col)
        return size.ws_col;
    const char *columns = std::getenv("COLUMNS");
    const int width = columns ? std::atoi(columns) : 0;
    return width > 0 ? width : 0;
}

std::unique_ptr<CompareWriter> writerFor(Format format, Output &output)
{
    switch (format) {
    case Format::Json:
        return compareJsonWriter(output);
    case Format::Csv:
        return compareCsvWriter(output);
    case Format::Html:
        return compareHtmlWriter(output);
    case Format::Text:
        break;
    }
    return compareTextWriter(output, terminalWidth());
}

} // namespace

int compareCommand(const Invocation &invocation, Output &output)
{
    ComparedFiles files{invocation.arguments, {}, {}, {}, {}};
    if (std::find(files.paths.begin(), files.paths.end(), kStandardStream) != files.paths.end()) {
        output.usageError("compare reads each file twice, so it takes files, not standard input",
                          "compare");
        return kExitError;
    }
    files.labels = fileLabels(files.paths);

    CompareTally tally;
    std::vector<std::uint64_t> fingerprints;
    lumarex::ConfigRecord record;
    for (std::uint32_t index = 0; index < files.paths.size(); ++index) {
        std::string reason;
        files.verdicts.push_back(readComparedFile(files.paths[index], record, reason));
        files.reasons.push_back(reason);
        if (files.verdicts.back() != FileVerdict::Valid)
            continue;
        files.accepted.push_back(index);
        fingerprints.push_back(fingerprint(record));
        tally.add(index, record);
    }
    tally.finish();
    const std::vector<const SettingTally *> settings = tally.settings(invocation.all);
    const std::unique_ptr<CompareWriter> writer = writerFor(invocation.format, output);
    writer->begin(files, settings);

    const std::size_t perPass =
        std::max<std::size_t>(1, kGroupsHeld / std::max<std::size_t>(1, files.accepted.size()));
    for (std::size_t first = 0; first < settings.size(); first += perPass) {
        const std::size_t count = std::min(perPass, settings.size() - first);
        std::vector<std::vector<std::uint32_t>> groups(count);
        for (std::size_t k = 0; k < files.accepted.size(); ++k) {
            const std::string &path = files.paths[files.accepted[k]];
            std::string reason;
            if (readComparedFile(path, record, reason) != FileVerdict::Valid ||
                fingerprint(record) != fingerprints[k]) {
                output.error(path + ": changed while compare read it; the table is not complete");
                return kExitError;
            }
            for (std::size_t s = 0; s < count; ++s)
                groups[s].push_back(*settings[first + s]->groupIndex(record));
        }
        for (std::size_t s = 0; s < count; ++s)
            writer->setting(*settings[first + s], groups[s]);
    }
    writer->end();

    if (files.accepted.size() < files.paths.size())
        return kExitError;
    return tally.settings(false).empty() ? kExitSuccess : kExitFailure;
}

} // namespace lxconfig
