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
    if (!succeeded(outputIsNoInput(invocation.outputPath, invocation.arguments, "to import"),
                   output))
        return kExitFailure;
    const std::string &path = invocation.arguments.at(0);
    const Result<std::string> contents = readTextFile(path, kJsonLimit);
    if (!succeeded(contents, output))
        return kExitFailure;
    const bool asText = invocation.formatGiven && invocation.format == Format::Text;
    Result<lumarex::ConfigRecord> record =
        asText ? recordFromText(*contents) : recordFromJson(*contents);
    if (!record) {
        output.error(record.failure().in(path).message());
        return kExitFailure;
    }
    const std::uint16_t checksum = record->computedChecksum();
    if (record->storedChecksum() != checksum) {
        output.warning(path + ": crc " + std::to_string(record->storedChecksum()) +
                       " replaced by the computed checksum " + std::to_string(checksum));
        record->setValue(lumarex::Field::crc, checksum);
    }
    return succeeded(writeOutputFile(invocation.outputPath, recordBytes(*record), invocation.backup,
                                     output),
                     output)
               ? kExitSuccess
               : kExitFailure;
}

} // namespace lxconfig
