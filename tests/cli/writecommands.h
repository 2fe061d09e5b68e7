#pragma once

// The commands that write a file, as rows for the fault tests: each replaces the file named
// TARGET (a shell word the row's script substitutes), which holds kOldRecord before.

#include <QByteArray>
#include <QString>

struct WriteCommand
{
    const char *name;
    QString line;      // the command line after "$LX ", with TARGET for the file it writes
    QByteArray result; // what TARGET holds after a successful run
};

// A valid record that is not the default one: gpsReceiver 3, checksum mended.
QByteArray oldRecord();

// set, import -o, export -o and defaults -o. import reads good.json, export good.bin.
QList<WriteCommand> writeCommands();

// The line with TARGET replaced by the path.
QString commandLine(const WriteCommand &command, const QString &target);

// Writes good.bin, good.json and the target with oldRecord() into the workspace.
class Workspace;
void writeInputs(const Workspace &workspace, const QString &target);
