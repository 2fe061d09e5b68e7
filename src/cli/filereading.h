#pragma once

// Reading files the way the editor does, with POSIX open and read: a directory opens and then
// fails to read, as it does in the editor.

#include <QByteArray>
#include <QString>
#include <limits>

namespace lxconfig {

struct FileContents
{
    QString error;   // "cannot open: <reason>" or "cannot read: <reason>"; empty on success
    QByteArray data; // at most the requested number of bytes
    qint64 size = 0; // the whole file's size
};

inline constexpr qint64 kWholeFile = std::numeric_limits<qint64>::max();

FileContents readFile(const QString &path, qint64 maxBytes);

} // namespace lxconfig
