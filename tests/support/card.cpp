#include "card.h"

#include "workspace.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <unistd.h>

namespace {

struct Step
{
    bool ok;
    QString err;
};

// A /bin/sh script with the paths in $1, $2...
Step runScript(const QString &script, const QStringList &arguments)
{
    QProcess process;
    process.start("/bin/sh", QStringList{"-c", script, "sh"} + arguments);
    process.waitForFinished(-1);
    const bool ok = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return {ok, QString::fromLocal8Bit(process.readAllStandardError()).trimmed()};
}

bool hasCommand(const QString &command)
{
    return runScript("command -v \"$1\" >/dev/null", {command}).ok;
}

// What the machine lacks for mounting a card of the file system, or nothing.
QString missingFor(const QString &fileSystem)
{
    const QString install = " (scripts/install-deps.sh test installs it)";
    if (geteuid() != 0)
        return fileSystem + " cards are mounted with FUSE on an image, which needs root";
    if (!QFile::exists("/dev/fuse"))
        return fileSystem + " cards need /dev/fuse, which this machine lacks";
    const QStringList tools = fileSystem == kFat32
                                  ? QStringList{"mkfs.vfat", "fusefat"}
                                  : QStringList{"mkfs.exfat", "mount.exfat-fuse", "losetup"};
    for (const QString &tool : tools) {
        if (!hasCommand(tool))
            return tool + " is not installed" + install;
    }
    return QString();
}

// The smallest images that hold the file system: FAT32 needs 65525 clusters, so that a full card
// is quick to fill.
const char *kMakeFat32 =
    "truncate -s 34M \"$1/card.img\" && mkfs.vfat -F 32 \"$1/card.img\" >/dev/null";
const char *kMakeExFat = "truncate -s 8M \"$1/card.img\" && mkfs.exfat \"$1/card.img\" >/dev/null";
const char *kInsertFat32 =
    "fusefat -o rw+ \"$1/card.img\" \"$2\" >\"$1/daemon.log\" 2>&1 </dev/null && "
    "mountpoint -q \"$2\"";
// The loop device is detached at once: it stays until the mount lets it go (autoclear).
const char *kInsertExFat =
    "device=$(losetup -f --show \"$1/card.img\") && "
    "{ mount.exfat-fuse \"$device\" \"$2\" </dev/null >\"$1/daemon.log\" 2>&1; "
    "mounted=$?; losetup -d \"$device\"; test $mounted -eq 0; } && mountpoint -q \"$2\"";
// A lazy unmount if something still holds the card: it must not stay mounted in any case.
const char *kPull = "cd / && { umount \"$1\" 2>/dev/null || umount -l \"$1\"; }";

// Mounts the card's image at the mount point.
Step insert(const QString &fileSystem, const QString &imageDir, const QString &mountPoint)
{
    return runScript(fileSystem == kFat32 ? kInsertFat32 : kInsertExFat, {imageDir, mountPoint});
}

} // namespace

QStringList cardFileSystems()
{
    return {kHere, kFat32, kExFat};
}

Card::Card(const Workspace &workspace, const QString &fileSystem, const QString &folder)
    : m_mountPoint(workspace.path(folder)), m_fileSystem(fileSystem)
{
    QDir().mkpath(m_mountPoint);
    if (fileSystem == kHere)
        return;
    m_why = missingFor(fileSystem);
    if (!m_why.isEmpty())
        return;
    const Step made =
        runScript(fileSystem == kFat32 ? kMakeFat32 : kMakeExFat, {m_imageDir.path()});
    const Step mounted = made.ok ? insert(fileSystem, m_imageDir.path(), m_mountPoint) : made;
    m_mounted = mounted.ok;
    if (!mounted.ok) {
        QFile log(m_imageDir.filePath("daemon.log"));
        log.open(QIODevice::ReadOnly);
        m_why = "cannot mount a " + fileSystem + " card here: " + mounted.err + " " +
                QString::fromLocal8Bit(log.readAll()).trimmed();
        // A half-made mount goes too.
        runScript("umount \"$1\" 2>/dev/null; true", {m_mountPoint});
    }
}

Card::~Card()
{
    if (m_mounted)
        runScript(kPull, {m_mountPoint});
}

QString Card::pulledAndPutBack()
{
    if (!m_mounted)
        return QString();
    // Not lazily: the image is mounted again at once, so the card must be gone first.
    const Step pulled = runScript("cd / && umount \"$1\"", {m_mountPoint});
    if (!pulled.ok)
        return "the card could not be unmounted: " + pulled.err;
    m_mounted = false;
    const Step inserted = insert(m_fileSystem, m_imageDir.path(), m_mountPoint);
    m_mounted = inserted.ok;
    return inserted.ok ? QString() : "the card could not be mounted again: " + inserted.err;
}
