#pragma once

// A configuration file as the editor's load command sees it, and the checks it makes.

#include "configrecord.h"

#include <QString>
#include <optional>

namespace lxconfig {

struct RecordFile
{
    QString error; // why the file could not be read at all; empty when it could
    lumarex::ConfigRecord record;
    qint64 size = 0;
};

// Reads at most lumarex::kEditorReadSize bytes, as the editor does; a shorter file reads as if
// padded with zero bytes and bytes after the record are ignored.
RecordFile readRecordFile(const QString &path);

// The first check of the editor's load that the record fails, in the editor's order (magic,
// format version, checksum), or nothing when it would load.
std::optional<QString> recordProblem(const lumarex::ConfigRecord &record);

// A note for a file whose size is not that of a record, which the editor loads all the same.
std::optional<QString> sizeProblem(qint64 size);

// The record's bytes as a byte array, for writing and comparing.
QByteArray recordBytes(const lumarex::ConfigRecord &record);

} // namespace lxconfig
