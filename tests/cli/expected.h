#pragma once

// Expected files and outputs, written out by hand.

#include <QByteArray>
#include <QString>
#include <QStringList>

// The 167 bytes the editor saves from its untouched form.
extern const QByteArray kDefaultBytes;

// `lxconfig show` of the default record and of a record of zero bytes, one line per field.
extern const QStringList kDefaultShow;
extern const QStringList kZeroShow;

// `lxconfig export` of the same two records, line by line.
extern const QStringList kDefaultJson;
extern const QStringList kZeroJson;

// The record with its checksum (bytes 165 and 166) computed anew over bytes 0 to 164.
QByteArray withMendedChecksum(QByteArray record);

// The bytes with a run of them replaced from offset on.
QByteArray patched(QByteArray bytes, int offset, const QByteArray &replacement);

// The lines with those whose first word matches a replacement's first word replaced by it
// ("gpsReceiver ..." for show, "\"gpsReceiver\": ..." for JSON), joined and ended by newlines.
QString withLines(const QStringList &lines, const QStringList &replacements = {});
