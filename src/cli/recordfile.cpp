#include "recordfile.h"

#include "editorverdict.h"
#include "fieldvalue.h"
#include "filereading.h"

namespace lxconfig {

RecordFile readRecordFile(const QString &path)
{
    const FileContents contents = readFile(path, static_cast<qint64>(lumarex::kEditorReadSize));
    RecordFile file;
    file.error = contents.error;
    file.size = contents.size;
    file.record = lumarex::ConfigRecord::fromBytes(
        reinterpret_cast<const std::uint8_t *>(contents.data.constData()),
        static_cast<std::size_t>(contents.data.size()));
    return file;
}

std::optional<QString> recordProblem(const lumarex::ConfigRecord &record)
{
    switch (lumarex::editorVerdict(record)) {
    case lumarex::Verdict::BadMagic:
        return QStringLiteral("bad magic %1 (expected \"CONF\")").arg(quotedMagic(record));
    case lumarex::Verdict::OtherVersion:
        return QStringLiteral("format version %1 (expected %2)")
            .arg(record.value(lumarex::Field::headerVersion))
            .arg(lumarex::kFormatVersion);
    case lumarex::Verdict::ChecksumMismatch:
        return QStringLiteral("checksum stored %1 computed %2")
            .arg(record.storedChecksum())
            .arg(record.computedChecksum());
    case lumarex::Verdict::Accepted:
        break;
    }
    return std::nullopt;
}

std::optional<QString> sizeProblem(qint64 size)
{
    if (size == lumarex::kRecordSize)
        return std::nullopt;
    return QStringLiteral("%1 bytes (a record is %2)").arg(size).arg(lumarex::kRecordSize);
}

QByteArray recordBytes(const lumarex::ConfigRecord &record)
{
    return QByteArray(reinterpret_cast<const char *>(record.bytes().data()), lumarex::kRecordSize);
}

} // namespace lxconfig
