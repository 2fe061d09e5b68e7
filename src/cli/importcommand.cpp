// lxconfig import JSON -o FILE: the record that a JSON form describes. The checksum is always
// computed afresh, so a hand-edited form needs no checksum of its own; a crc key that does not
// match is reported and replaced.

#include "commandfiles.h"
#include "commands.h"
#include "jsonform.h"
#include "recordfile.h"
#include "textform.h"

namespace lxconfig {

namespace {

// A form is about 1.3 KiB; room for any spacing, and a bound on memory for an endless input.
constexpr std::size_t kJsonLimit = 1024 * 1024;

} // namespace

int importCommand(const Invocation &invocation, Output &output)
{
    if (refuseOutputOverInput(invocation, "to import", output))
        return kExitFailure;
    const std::string &path = invocation.arguments.at(0);
    InputBytes contents;
    if (!report(readInput(path, kJsonLimit, Overflow::Refuse, contents), output))
        return kExitFailure;
    std::string error;
    const bool asText = invocation.formatGiven && invocation.format == Format::Text;
    std::optional<lumarex::ConfigRecord> record =
        asText ? recordFromText(contents.data, error) : recordFromJson(contents.data, error);
    if (!record) {
        output.error(path + ": " + error);
        return kExitFailure;
    }
    const std::uint16_t checksum = record->computedChecksum();
    if (record->storedChecksum() != checksum) {
        output.warning(path + ": crc " + std::to_string(record->storedChecksum()) +
                       " replaced by the computed checksum " + std::to_string(checksum));
        record->setValue(lumarex::Field::crc, checksum);
    }
    return writeOutputFile(invocation.outputPath, recordBytes(*record), output, invocation.backup)
               ? kExitSuccess
               : kExitFailure;
}

} // namespace lxconfig
