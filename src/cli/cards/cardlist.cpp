#include "cardlist.h"

#include "commandfiles.h"
#include "recordfile.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fstream>
#include <map>
#include <sstream>
#include <sys/statvfs.h>
#include <unistd.h>

namespace lxconfig {

namespace {

// One line of the mount table, the fields lxconfig needs.
struct MountLine
{
    std::string device; // "major:minor"
    std::string mountPoint;
    std::string options; // per mount: "rw,nosuid"
    std::string fileSystem;
    std::string source;
};

// The mount table writes space, tab, newline and backslash as \ooo.
std::string unescaped(const std::string &field)
{
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size()) {
            const std::string octal = field.substr(i + 1, 3);
            if (octal.find_first_not_of("01234567") == std::string::npos) {
                text += static_cast<char>(std::strtol(octal.c_str(), nullptr, 8));
                i += 3;
                continue;
            }
        }
        text += field[i];
    }
    return text;
}

std::vector<MountLine> mountLines(const std::string &path)
{
    std::vector<MountLine> lines;
    std::ifstream table(path);
    std::string text;
    while (std::getline(table, text)) {
        std::istringstream fields(text);
        std::string id, parent, device, root, mountPoint, options, field;
        if (!(fields >> id >> parent >> device >> root >> mountPoint >> options))
            continue;
        while (fields >> field && field != "-") {
            // optional fields ("shared:1") up to the separator
        }
        MountLine line{device, unescaped(mountPoint), options, {}, {}};
        fields >> line.fileSystem >> line.source;
        line.source = unescaped(line.source);
        lines.push_back(line);
    }
    return lines;
}

std::string firstLine(const std::string &path)
{
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

std::vector<std::string> entries(const std::string &folder)
{
    std::vector<std::string> names;
    DIR *dir = ::opendir(folder.c_str());
    if (!dir)
        return names;
    while (const dirent *entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..")
            names.push_back(name);
    }
    ::closedir(dir);
    return names;
}

// A card reader's slot says "removable"; an SD or MMC slot of the machine itself need not, but
// what sits in it is a card all the same.
bool isRemovable(const std::string &disk)
{
    if (firstLine(disk + "/removable") == "1")
        return true;
    const std::string type = firstLine(disk + "/device/type");
    return type == "SD" || type == "MMC";
}

// The removable disks and their partitions, by kernel name and by "major:minor".
struct RemovableDevices
{
    std::map<std::string, bool> byName;
    std::map<std::string, std::string> nameOfNumber;
};

RemovableDevices removableDevices(const std::string &sysBlock)
{
    RemovableDevices devices;
    for (const std::string &disk : entries(sysBlock)) {
        const std::string folder = sysBlock + "/" + disk;
        if (!isRemovable(folder))
            continue;
        devices.byName[disk] = true;
        devices.nameOfNumber[firstLine(folder + "/dev")] = disk;
        for (const std::string &part : entries(folder)) {
            const std::string number = firstLine(folder + "/" + part + "/dev");
            if (part.compare(0, disk.size(), disk) != 0 || number.empty())
                continue;
            devices.byName[part] = true;
            devices.nameOfNumber[number] = part;
        }
    }
    return devices;
}

std::string baseName(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The kernel's name of the device a mount line reads from: its number for a kernel file
// system, its source for one in user space (fuseblk names /dev/sdb1 as the source).
std::string kernelName(const MountLine &line, const RemovableDevices &devices)
{
    const auto numbered = devices.nameOfNumber.find(line.device);
    if (numbered != devices.nameOfNumber.end())
        return numbered->second;
    char resolved[PATH_MAX];
    const std::string source =
        ::realpath(line.source.c_str(), resolved) ? std::string(resolved) : line.source;
    if (source.compare(0, 5, "/dev/") != 0)
        return {};
    return baseName(source);
}

// udev writes a space in a label as \x20.
std::string labelText(const std::string &name)
{
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name.compare(i, 2, "\\x") == 0 && i + 3 < name.size()) {
            text += static_cast<char>(std::strtol(name.substr(i + 2, 2).c_str(), nullptr, 16));
            i += 3;
        } else {
            text += name[i];
        }
    }
    return text;
}

std::string labelOf(const std::string &kernelName, const std::string &labels)
{
    for (const std::string &name : entries(labels)) {
        char target[PATH_MAX];
        const ssize_t length = ::readlink((labels + "/" + name).c_str(), target, sizeof target - 1);
        if (length > 0 && baseName(std::string(target, length)) == kernelName)
            return labelText(name);
    }
    return {};
}

MountedCard cardOf(const MountLine &line)
{
    MountedCard card;
    card.mountPoint = line.mountPoint;
    card.device = line.source;
    card.fileSystem = line.fileSystem;
    // A file system in user space is "fuse.NAME" or "fuseblk"; the operator knows it as NAME.
    if (card.fileSystem.compare(0, 5, "fuse.") == 0)
        card.fileSystem = card.fileSystem.substr(5);
    card.readOnly = ("," + line.options + ",").find(",ro,") != std::string::npos;
    struct statvfs space;
    if (::statvfs(line.mountPoint.c_str(), &space) == 0) {
        card.size = std::uint64_t(space.f_blocks) * space.f_frsize;
        card.free = std::uint64_t(space.f_bavail) * space.f_frsize;
        card.readOnly = card.readOnly || (space.f_flag & ST_RDONLY);
    }
    return card;
}

} // namespace

std::vector<MountedCard> mountedCards(const SystemTables &tables)
{
    const RemovableDevices devices = removableDevices(tables.sysBlock);
    std::vector<MountedCard> cards;
    for (const MountLine &line : mountLines(tables.mountInfo)) {
        const std::string name = kernelName(line, devices);
        if (name.empty() || !devices.byName.count(name))
            continue;
        MountedCard card = cardOf(line);
        card.label = labelOf(name, tables.labels);
        cards.push_back(card);
    }
    return cards;
}

std::optional<MountedCard> mountAt(const std::string &path, const SystemTables &tables)
{
    char resolved[PATH_MAX];
    if (!::realpath(path.c_str(), resolved))
        return std::nullopt;
    std::optional<MountedCard> found;
    // The last mount at a place hides those before it.
    for (const MountLine &line : mountLines(tables.mountInfo)) {
        if (line.mountPoint == resolved)
            found = cardOf(line);
    }
    return found;
}

CardFile cardFile(const std::string &mountPoint)
{
    const std::string path = mountPoint + "/" + kCardFileName;
    if (::access(path.c_str(), F_OK) != 0 && errno == ENOENT)
        return {};
    const Result<RecordFile> file = readRecordFile(path);
    if (!file)
        return {CardFile::Unreadable, file.failure().reason};
    if (file->refusal)
        return {CardFile::Refused, *file->refusal};
    return {CardFile::Valid, {}};
}

std::string sizeText(std::uint64_t bytes)
{
    static const char *const units[] = {"bytes", "kB", "MB", "GB", "TB"};
    double value = static_cast<double>(bytes);
    int unit = 0;
    while (value >= 1000 && unit < 4) {
        value /= 1000;
        ++unit;
    }
    char text[32];
    if (unit == 0)
        std::snprintf(text, sizeof text, "%llu bytes", static_cast<unsigned long long>(bytes));
    else
        std::snprintf(text, sizeof text, "%.1f %s", value, units[unit]);
    return text;
}

} // namespace lxconfig
