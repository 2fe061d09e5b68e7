#include "shellrun.h"

#include <QDir>
#include <QProcess>

ShellResult runShell(const Workspace &workspace, const QString &script)
{
    QProcess process;
    process.setWorkingDirectory(workspace.path("."));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C");
    environment.insert("LX", QStringLiteral(LXCONFIG_PATH));
    process.setProcessEnvironment(environment);
    process.start("/bin/sh", {"-c", script});
    process.waitForFinished(-1);
    const bool exited =
        process.exitStatus() == QProcess::NormalExit && process.error() == QProcess::UnknownError;
    return {exited ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

QString mountNamespaceCommand(const Workspace &workspace, QString &why)
{
    for (const QString &command :
         {QStringLiteral("unshare --mount"), QStringLiteral("unshare -rm")}) {
        const ShellResult probe =
            runShell(workspace,
                     command + " sh -c 'mkdir -p probe && mount -t tmpfs -o size=16k tmpfs probe'");
        QDir(workspace.path(".")).rmdir("probe");
        if (probe.exitCode == 0)
            return command;
        why = QString::fromLocal8Bit(probe.err).trimmed();
    }
    why = "no private mount namespace with a tmpfs of its own (" + why + ")";
    return QString();
}

QStringList folderEntries(const Workspace &workspace, const QString &folder)
{
    QStringList names =
        QDir(workspace.path(folder))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    names.sort();
    return names;
}
