#pragma once

// A folder of a workspace on a file system of its own, the way a camera's memory card is: FAT32
// (an image made by mkfs.vfat, mounted with fusefat) or exFAT (an image made by mkfs.exfat on a
// loop device, mounted with exfat-fuse). The kernel of the test machines has FUSE but no FAT
// driver, so both are FUSE mounts; they need root and /dev/fuse.
//
// The image lives in a temporary folder of its own, not in the workspace, so that a test sees
// only the files it puts on the card. Whatever the test does (a failed comparison returns from
// the test function), the card is unmounted when the object goes; its loop device is released
// as soon as it is mounted (autoclear), so that it goes with the mount even if the test process
// dies.
//
// kHere is no card at all: the folder is made in the workspace, on whatever file system the
// temporary folder has (tmpfs or ext4), so that a data-driven test can run its rows on each.

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

class Workspace;

inline constexpr const char *kHere = "here";
inline constexpr const char *kFat32 = "FAT32";
inline constexpr const char *kExFat = "exFAT";

// here, FAT32 and exFAT: the file systems the file promises are tried on.
QStringList cardFileSystems();

class Card
{
public:
    // Mounts an empty card of the file system at workspace/folder (made if missing).
    Card(const Workspace &workspace, const QString &fileSystem, const QString &folder);
    ~Card();
    Card(const Card &) = delete;
    Card &operator=(const Card &) = delete;

    // Whether the folder is ready; if not, why() says what the machine lacks, for QSKIP.
    bool ready() const { return m_why.isEmpty(); }
    QString why() const { return m_why; }
    // Whether the folder is a card (FAT32 or exFAT), which keeps no owner, mode bits or links.
    bool isCard() const { return m_mounted; }
    // The card pulled out and put back: unmounted and mounted again from its image, so that
    // what the test reads next is what the medium holds, not what the kernel still caches.
    // Nothing for a folder that is no card. Returns what went wrong, or nothing.
    QString pulledAndPutBack();

private:
    QString m_mountPoint;
    QString m_fileSystem;
    QTemporaryDir m_imageDir;
    QString m_why;
    bool m_mounted = false;
};
