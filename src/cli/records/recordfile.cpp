#include "recordfile.h"

#include "editorverdict.h"
#include "fieldvalue.h"

namespace lxconfig {

namespace {

// A note for a file whose size is not that of a record, which the editor loads all the same.
std::optional<std::string> sizeProblem(std::uint64_t size, bool beyondLimit)
{
    const std::string record = " (a record is " + std::to_string(lumarex::kRecordSize) + ")";
    // A stream that went on past what the editor reads has no size to tell.
    if (beyondLimit)
        return "more than " + std::to_string(size) + " bytes" + record;
    if (size == lumarex::kRecordSize)
        return std::nullopt;
    return std::to_string(size) + " bytes" + record;
}

} // namespace

RecordFile recordFileOf(const std::string &data, std::uint64_t size, bool beyondLimit)
{
    RecordFile file;
    file.record = lumarex::ConfigRecord::fromBytes(
        reinterpret_cast<const std::uint8_t *>(data.data()), data.size());
    file.refusal = recordProblem(file.record);
    file.sizeNote = sizeProblem(size, beyondLimit);
    return file;
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

std::string recordBytes(const lumarex::ConfigRecord &record)
{
    return std::string(reinterpret_cast<const char *>(record.bytes().data()), lumarex::kRecordSize);
}

} // namespace lxconfig
