#pragma once

// The memory cards and USB sticks that are mounted, found in the kernel's own tables: the mount
// table of this process (/proc/self/mountinfo) and the block devices' "removable" flags
// (/sys/block/*/removable), with the labels udev links in /dev/disk/by-label. No desktop service
// is asked. The tables are read through SystemTables, so that a test can point them at a
// prepared tree while the mount points it names are real mounts.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lxconfig {

struct SystemTables
{
    std::string mountInfo = "/proc/self/mountinfo";
    std::string sysBlock = "/sys/block";
    std::string labels = "/dev/disk/by-label";
};

// The editor's file at a card's root, as check would say of it.
struct CardFile
{
    enum Verdict
    {
        None,       // no LXCONFIG.BIN
        Valid,      // the editor loads it
        Refused,    // the editor refuses it: reason
        Unreadable, // it cannot be read: reason
    };
    Verdict verdict = None;
    std::string reason;
};

struct MountedCard
{
    std::string mountPoint;
    std::string device;     // "/dev/sdb1", as the mount table names it
    std::string fileSystem; // "vfat", "exfat"
    std::string label;      // empty when the card has none
    bool readOnly = false;
    std::uint64_t size = 0; // bytes, 0 when the file system does not say
    std::uint64_t free = 0; // bytes an ordinary user may still write
};

inline constexpr const char *kCardFileName = "LXCONFIG.BIN";

// In the mount table's order; a card mounted twice is listed at each mount point.
std::vector<MountedCard> mountedCards(const SystemTables &tables = {});

// The mount whose mount point is path (any mount, removable or not), or nothing.
std::optional<MountedCard> mountAt(const std::string &path, const SystemTables &tables = {});

CardFile cardFile(const std::string &mountPoint);

// "31.9 GB", "8.4 MB": decimal units, as card makers print them.
std::string sizeText(std::uint64_t bytes);

} // namespace lxconfig
