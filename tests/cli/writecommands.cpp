#include "writecommands.h"

#include "expected.h"
#include "workspace.h"

#include <QList>

QByteArray oldRecord()
{
    return withMendedChecksum(patched(kDefaultBytes, 112, QByteArray(1, '\x03')));
}

QList<WriteCommand> writeCommands()
{
    const QByteArray gpsOne = withMendedChecksum(patched(oldRecord(), 112, QByteArray(1, '\x01')));
    return {
        {"set", "set -q TARGET gpsReceiver=1", gpsOne},
        {"import", "import good.json -o TARGET", kDefaultBytes},
        {"export", "export good.bin -o TARGET", withLines(kDefaultJson).toUtf8()},
        {"defaults", "defaults -o TARGET", kDefaultBytes},
    };
}

QString commandLine(const WriteCommand &command, const QString &target)
{
    return QString(command.line).replace("TARGET", target);
}

void writeInputs(const Workspace &workspace, const QString &target)
{
    workspace.write("good.json", withLines(kDefaultJson).toUtf8());
    workspace.write(target, oldRecord());
}
