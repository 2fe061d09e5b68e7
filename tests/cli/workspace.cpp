#include "workspace.h"

#include "expected.h"

#include <QDir>
#include <QFile>
#include <QProcess>

Workspace::Workspace()
{
    write("good.bin", kDefaultBytes);
    write("empty.bin", QByteArray());
    write("short.bin", kDefaultBytes.left(166));
    write("long.bin", kDefaultBytes + QByteArray(33, '\xAA'));
    write("magic.bin", patched(kDefaultBytes, 0, "X"));
    write("version.bin", patched(kDefaultBytes, 8, QByteArray::fromHex("7AEE3301")));
    write("checksum.bin", patched(kDefaultBytes, 100, QByteArray::fromHex("01")));
    QDir(m_dir.path()).mkdir("folder");
}

QString Workspace::path(const QString &name) const
{
    return m_dir.filePath(name);
}

void Workspace::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write the sample %s", qPrintable(name));
}

QByteArray Workspace::read(const QString &name) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

bool Workspace::exists(const QString &name) const
{
    return QFile::exists(path(name));
}

RunResult Workspace::run(const QStringList &arguments, const QStringList &extra) const
{
    QProcess process;
    process.setWorkingDirectory(m_dir.path());
    // System error texts in English, whatever the machine's locale.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C");
    environment.remove("VERSION_CONTROL");
    for (const QString &entry : extra)
        environment.insert(entry.section('=', 0, 0), entry.section('=', 1));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(LXCONFIG_PATH), arguments);
    process.waitForFinished(-1);
    const bool exited =
        process.exitStatus() == QProcess::NormalExit && process.error() == QProcess::UnknownError;
    return {exited ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}
