#include "safelyremoved.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace lxconfig {

namespace {

constexpr const char *kDiskService = "udisksctl";

bool onPath(const char *program)
{
    const char *path = std::getenv("PATH");
    std::string folders = path ? path : "/usr/bin:/bin";
    std::size_t start = 0;
    while (start <= folders.size()) {
        const std::size_t colon = std::min(folders.find(':', start), folders.size());
        const std::string folder = folders.substr(start, colon - start);
        if (::access(((folder.empty() ? "." : folder) + "/" + program).c_str(), X_OK) == 0)
            return true;
        start = colon + 1;
    }
    return false;
}

// A name as the operator would type it in a shell.
std::string quoted(const std::string &name)
{
    if (name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                               "/._-+:,@") == std::string::npos)
        return name;
    std::string text = "'";
    for (const char c : name)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

// Runs the disk service with its messages on standard error; whether it succeeded.
bool diskService(const std::vector<std::string> &arguments)
{
    std::vector<char *> argv{const_cast<char *>(kDiskService)};
    for (const std::string &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    // Its "Unmounted /dev/sdb1." would stand between lxconfig's own lines.
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int spawned =
        ::posix_spawnp(&child, kDiskService, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0)
        return false;
    int status = 0;
    while (::waitpid(child, &status, 0) == -1 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

bool safelyRemoved(const std::string &card, const std::string &device, bool eject, Output &output)
{
    const bool hasService = onPath(kDiskService);
    // A file system in user space names no block device that the service knows.
    const bool blockDevice = device.compare(0, 5, "/dev/") == 0;
    const std::string unmount = "umount " + quoted(card);
    const std::string serviceCommands = std::string(kDiskService) + " unmount -b " +
                                        quoted(device) + " && " + kDiskService + " power-off -b " +
                                        quoted(device);
    const std::string pullable = "The card can be pulled now: everything is on it.\n";
    if (!eject) {
        output.out(pullable);
        if (hasService && blockDevice)
            output.out("To unmount it and power it off first: --eject, or run: " + serviceCommands +
                       "\n");
        else
            output.out("To unmount it first, run: " + unmount + "\n");
        return true;
    }
    const std::string cannot = "cannot eject " + card + ": ";
    const std::string still = "; the file is on the card, which can be pulled now (to unmount "
                              "it first, run: " +
                              unmount + ")";
    if (!hasService) {
        output.error(cannot + kDiskService + " is not installed (Debian's udisks2)" + still);
        return false;
    }
    if (!blockDevice) {
        output.error(cannot + device + " is no block device for " + kDiskService + still);
        return false;
    }
    if (!diskService({"unmount", "-b", device})) {
        output.error(cannot + kDiskService + " could not unmount " + device + still);
        return false;
    }
    if (!diskService({"power-off", "-b", device})) {
        output.error(cannot + "unmounted, but " + kDiskService + " could not power off " + device +
                     "; the card can be pulled now");
        return false;
    }
    output.out(card + ": unmounted and powered off; the card can be pulled now.\n");
    return true;
}

} // namespace lxconfig
