#pragma once

// The tests' own checksum, computed bit by bit and independent of lumarex::crc16, so that a test
// may hold a checksum the code under test prints or stores against it. Its check values are
// pinned by tst_save (referenceCrcMatchesKnownValues) and the format's by tst_format.

#include <QByteArray>
#include <QString>

// The device's CRC-16 of the bytes: reflected polynomial C599, register starting at 0, data bits
// least significant first.
quint16 referenceCrc(const QByteArray &data);

// What the editor computes for a file: the CRC of bytes 0 to 164, a short file read as if padded
// with zero bytes.
quint16 referenceChecksum(const QByteArray &file);

// What the file stores at bytes 165 and 166 (low byte first), read the same way.
quint16 storedChecksum(const QByteArray &file);

// The file with its stored checksum replaced by the computed one.
QByteArray withMendedChecksum(QByteArray file);

// "checksum stored S computed C", as the editor's verdict words a file whose checksum is wrong.
QString checksumMismatch(const QByteArray &file);
