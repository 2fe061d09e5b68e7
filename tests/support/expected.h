#pragma once

// Expected files and outputs, written out by hand; the untouched form's bytes and checksum come
// from the one data file.

#include "referencechecksum.h" // withMendedChecksum, storedChecksum, checksumMismatch

#include <QByteArray>
#include <QString>
#include <QStringList>

// The 167 bytes the editor saves from its untouched form: tests/data/untouched-form.bin.
extern const QByteArray kDefaultBytes;

// The trigger frame mode's two item texts, written out once for every output that quotes them.
extern const QString kFrameModeItems[2];

// The line diff, set and apply write for a change of the trigger frame mode from one item to
// the other, without indent or newline: triggerFrameMode: 0 "..." -> 1 "...".
QString frameModeChange(int from, int to);

// `lxconfig show` of the default record and of a record of zero bytes, one line per field.
extern const QStringList kDefaultShow;
extern const QStringList kZeroShow;

// `lxconfig export` of the same two records, line by line.
extern const QStringList kDefaultJson;
extern const QStringList kZeroJson;

// `lxconfig export --format text` of the default record.
extern const QString kDefaultText;

// diff's line for the checksum of two files, "crc: A -> B\n", each the value the file stores.
QString crcChange(const QByteArray &from, const QByteArray &to);

// The bytes with a run of them replaced from offset on.
QByteArray patched(QByteArray bytes, int offset, const QByteArray &replacement);

// The lines with those whose first word matches a replacement's first word replaced by it
// ("gpsReceiver ..." for show, "\"gpsReceiver\": ..." for JSON), joined and ended by newlines.
QString withLines(const QStringList &lines, const QStringList &replacements = {});
