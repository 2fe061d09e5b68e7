// lxconfig import JSON -o FILE: the record that a JSON form describes. The checksum is always
// computed afresh, so a hand-edited form needs no checksum of its own; a crc key that does not
// match is reported and replaced.

#include "commandfiles.h"
#include "commands.h"
#include "filereading.h"
#include "jsonform.h"
#include "recordfile.h"

namespace lxconfig {

int importCommand(const Invocation &invocation, Output &output)
{
    const QString &path = invocation.arguments.at(0);
    const FileContents contents = readFile(path, kWholeFile);
    QString error = contents.error;
    std::optional<lumarex::ConfigRecord> record;
    if (error.isEmpty())
        record = recordFromJson(contents.data, error);
    if (!record) {
        output.error(path + QStringLiteral(": ") + error);
        return kExitFailure;
    }
    const std::uint16_t checksum = record->computedChecksum();
    if (record->storedChecksum() != checksum) {
        output.warning(path + QStringLiteral(": crc %1 replaced by the computed checksum %2")
                                  .arg(record->storedChecksum())
                                  .arg(checksum));
        record->setValue(lumarex::Field::crc, checksum);
    }
    return writeOutputFile(invocation.outputPath, recordBytes(*record), output) ? kExitSuccess
                                                                                : kExitFailure;
}

} // namespace lxconfig
