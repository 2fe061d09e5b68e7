#pragma once

// The sizes around the record's that the malformed-input suites give the editor and lxconfig
// alike: nothing, one byte, the header alone, one byte short, the record, one byte more, the
// editor's read size and one byte past it, and a mebibyte. Past the record come bytes that would
// change settings if they were read.

#include <QByteArray>
#include <QVector>

struct SizedFile
{
    const char *name; // the row's name, e.g. "166 bytes"
    QByteArray contents;
};

// A valid file cut or grown to each size.
QVector<SizedFile> sizedFiles(const QByteArray &validFile);
