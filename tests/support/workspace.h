#pragma once

// A temporary folder with sample files, in which the built lxconfig runs.
//
// Samples: good.bin (the default record), empty.bin (0 bytes), short.bin (166 bytes: the last
// checksum byte is missing), long.bin (the default record and 33 more bytes, 200 in all),
// magic.bin ("XONF"), version.bin (format version 20180602), checksum.bin (one payload byte
// changed, the checksum not mended) and the folder folder/. missing.bin does not exist.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

struct RunResult
{
    int exitCode; // -1 when lxconfig did not exit normally
    QString out;
    QString err;
};

class Workspace
{
public:
    Workspace();

    QString path(const QString &name) const;
    void write(const QString &name, const QByteArray &bytes) const;
    QByteArray read(const QString &name) const;
    bool exists(const QString &name) const;

    // lxconfig with these arguments, run in the folder so that messages name the files as given,
    // in the C locale, without VERSION_CONTROL unless the extra "NAME=VALUE" entries set it.
    RunResult run(const QStringList &arguments, const QStringList &environment = {}) const;

private:
    QTemporaryDir m_dir;
};

// The bytes of a sample file, by name; the test stops when there is no such sample.
QByteArray sampleFile(const QString &name);
// "checksum stored S computed C" for a sample: how check words short.bin and checksum.bin.
QString sampleMismatch(const QString &name);

// Runs once, then compares standard output, standard error and the exit status.
#define COMPARE_RUN(run, expectedExit, expectedOut, expectedErr)                                   \
    do {                                                                                           \
        const RunResult result_ = (run);                                                           \
        QCOMPARE(result_.out, QString(expectedOut));                                               \
        QCOMPARE(result_.err, QString(expectedErr));                                               \
        QCOMPARE(result_.exitCode, expectedExit);                                                  \
    } while (false)
