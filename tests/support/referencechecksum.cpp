#include "referencechecksum.h"

namespace {

constexpr int kChecksummed = 165;
constexpr int kRecord = 167;

QByteArray padded(const QByteArray &file)
{
    return file.left(kRecord) + QByteArray(qMax(0, kRecord - int(file.size())), '\0');
}

} // namespace

quint16 referenceCrc(const QByteArray &data)
{
    quint16 crc = 0;
    for (const char byte : data) {
        for (int bit = 0; bit < 8; ++bit) {
            const bool dataBit = (static_cast<quint8>(byte) >> bit) & 1;
            const bool lowBit = crc & 1;
            crc = static_cast<quint16>(crc >> 1);
            if (dataBit != lowBit)
                crc ^= 0xC599;
        }
    }
    return crc;
}

quint16 referenceChecksum(const QByteArray &file)
{
    return referenceCrc(padded(file).left(kChecksummed));
}

quint16 storedChecksum(const QByteArray &file)
{
    const QByteArray record = padded(file);
    return static_cast<quint16>(static_cast<quint8>(record.at(kChecksummed)) |
                                static_cast<quint8>(record.at(kChecksummed + 1)) << 8);
}

QByteArray withMendedChecksum(QByteArray file)
{
    const quint16 crc = referenceChecksum(file);
    file[kChecksummed] = static_cast<char>(crc & 0xFF);
    file[kChecksummed + 1] = static_cast<char>(crc >> 8);
    return file;
}

QString checksumMismatch(const QByteArray &file)
{
    return QStringLiteral("checksum stored %1 computed %2")
        .arg(storedChecksum(file))
        .arg(referenceChecksum(file));
}
