#include "recordfile.h"

#include "editorverdict.h"
#include "fieldvalue.h"

namespace lxconfig {

lumarex::ConfigRecord recordOf(const InputBytes &bytes)
{
    return lumarex::ConfigRecord::fromBytes(
        reinterpret_cast<const std::uint8_t *>(bytes.data.data()), bytes.data.size());
}

std::optional<std::string> recordProblem(const lumarex::ConfigRecord &record)
{
    switch (lumarex::editorVerdict(record)) {
    case lumarex::Verdict::BadMagic:
        return "bad magic " + quotedMagic(record) + " (expected \"CONF\")";
    case lumarex::Verdict::OtherVersion:
        return "format version " + std::to_string(record.value(lumarex::Field::headerVersion)) +
               " (expected " + std::to_string(lumarex::kFormatVersion) + ")";
    case lumarex::Verdict::ChecksumMismatch:
        return "checksum stored " + std::to_string(record.storedChecksum()) + " computed " +
               std::to_string(record.computedChecksum());
    case lumarex::Verdict::Accepted:
        break;
    }
    return std::nullopt;
}

std::optional<std::string> sizeProblem(const InputBytes &bytes)
{
    const std::string record = " (a record is " + std::to_string(lumarex::kRecordSize) + ")";
    // A stream that went on past what the editor reads has no size to tell.
    if (bytes.beyondLimit)
        return "more than " + std::to_string(bytes.size) + " bytes" + record;
    if (bytes.size == lumarex::kRecordSize)
        return std::nullopt;
    return std::to_string(bytes.size) + " bytes" + record;
}

std::string recordBytes(const lumarex::ConfigRecord &record)
{
    return std::string(reinterpret_cast<const char *>(record.bytes().data()), lumarex::kRecordSize);
}

} // namespace lxconfig
