#include "editorverdict.h"

namespace lumarex {

Verdict editorVerdict(const ConfigRecord &record)
{
    if (!record.hasMagic())
        return Verdict::BadMagic;
    if (record.value(Field::headerVersion) != kFormatVersion)
        return Verdict::OtherVersion;
    if (record.storedChecksum() != record.computedChecksum())
        return Verdict::ChecksumMismatch;
    return Verdict::Accepted;
}

} // namespace lumarex
