#include "workspace.h"

#include "expected.h"
#include "referencechecksum.h"

#include <QDir>
#include <QFile>
#include <QProcess>

namespace {

const char *const kSampleNames[] = {"good.bin",  "empty.bin",   "short.bin",   "long.bin",
                                    "magic.bin", "version.bin", "checksum.bin"};

} // namespace

QByteArray sampleFile(const QString &name)
{
    if (name == QLatin1String("good.bin"))
        return kDefaultBytes;
    if (name == QLatin1String("empty.bin"))
        return QByteArray();
    if (name == QLatin1String("short.bin"))
        return kDefaultBytes.left(166);
    if (name == QLatin1String("long.bin"))
        return kDefaultBytes + QByteArray(33, '\xAA');
    if (name == QLatin1String("magic.bin"))
        return patched(kDefaultBytes, 0, "X");
    if (name == QLatin1String("version.bin"))
        return patched(kDefaultBytes, 8, QByteArray::fromHex("7AEE3301"));
    if (name == QLatin1String("checksum.bin"))
        return patched(kDefaultBytes, 100, QByteArray::fromHex("01"));
    qFatal("no sample file %s", qPrintable(name));
}

QString sampleMismatch(const QString &name)
{
    return checksumMismatch(sampleFile(name));
}

Workspace::Workspace()
{
    for (const char *name : kSampleNames)
        write(QLatin1String(name), sampleFile(QLatin1String(name)));
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
