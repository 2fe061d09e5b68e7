#include "fileio.h"

#include "descriptorwrite.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace lxconfig {

namespace {

// As many links as the kernel follows in one path before it says ELOOP.
constexpr int kMaxLinkHops = 40;

std::string reasonOf(const char *what, int error)
{
    return std::string(what) + ": " + std::strerror(error);
}

void closeKeepingErrno(int fd)
{
    if (fd < 0)
        return;
    const int saved = errno;
    ::close(fd);
    errno = saved;
}

std::string folderOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string baseOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The links in /proc/self/fd (behind /dev/stdout, /dev/fd/N) name open descriptors, not files:
// an output behind one is written through, never replaced.
bool isDescriptorLink(const std::string &link)
{
    struct statfs filesystem = {};
    return ::statfs(folderOf(link).c_str(), &filesystem) == 0 &&
           filesystem.f_type == PROC_SUPER_MAGIC;
}

// The descriptor that a link in this process's /proc/self/fd names (/dev/stdout, /dev/fd/1), so
// that writing goes into the descriptor as it stands (offset, append mode), as ">&1" would.
std::optional<int> ownDescriptor(const std::string &link)
{
    const std::string number = baseOf(link);
    if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos ||
        number.size() > 9)
        return std::nullopt;
    char *own = ::realpath("/proc/self/fd", nullptr);
    char *folder = ::realpath(folderOf(link).c_str(), nullptr);
    const bool same = own && folder && std::strcmp(own, folder) == 0;
    std::free(own);
    std::free(folder);
    return same ? std::optional<int>(std::stoi(number)) : std::nullopt;
}

// Reads until the end or limit bytes; errno, or 0.
int readUpTo(int fd, std::size_t limit, std::string &data)
{
    char chunk[4096];
    while (data.size() < limit) {
        const std::size_t wanted = std::min(sizeof chunk, limit - data.size());
        const ssize_t got = retried([&] { return ::read(fd, chunk, wanted); });
        if (got < 0)
            return errno;
        if (got == 0)
            break;
        data.append(chunk, static_cast<std::size_t>(got));
    }
    return 0;
}

// Whether a stream has another byte after the limit; it is read and dropped.
bool hasMore(int fd)
{
    char byte = 0;
    return retried([&] { return ::read(fd, &byte, 1); }) > 0;
}

// Every signal that ends a process by default and can be held back (SIGKILL and SIGSTOP cannot)
// is held while a complete temporary file is linked in and renamed, and over the whole life of a
// named one, so that none can leave it behind: the ones a user or the system sends (SIGTERM,
// SIGINT, SIGHUP, SIGPWR...), SIGIO, SIGSTKFLT and the real-time signals alike. Only the signals
// of the process's own faults stay open (SIGSEGV, SIGBUS...): the kernel delivers those whether
// held or not. See the note at writeReplacement for SIGKILL.
class TerminationSignalsHeld
{
public:
    TerminationSignalsHeld()
    {
        sigset_t held;
        sigfillset(&held);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS})
            sigdelset(&held, fault);
        ::sigprocmask(SIG_BLOCK, &held, &m_previous);
    }
    ~TerminationSignalsHeld() { ::sigprocmask(SIG_SETMASK, &m_previous, nullptr); }
    TerminationSignalsHeld(const TerminationSignalsHeld &) = delete;
    TerminationSignalsHeld &operator=(const TerminationSignalsHeld &) = delete;

private:
    sigset_t m_previous;
};

// The errors of a file system that has no hard links (FAT, exFAT).
bool noHardLinks(int error)
{
    return error == EPERM || error == ENOSYS || error == EOPNOTSUPP || error == ENOTSUP;
}

// Gives the new file the old one's owner and mode, as far as the file system keeps them (as
// cp -p and sed -i do); errno, or 0.
int keepOwnerAndMode(int fd, const struct stat &old)
{
    // Owner first: changing it clears the set-user-ID and set-group-ID bits that the mode then
    // puts back. Another owner is allowed only to root; the group where it is allowed. A file
    // system that keeps no owner says so, and the file has the owner it gives every file.
    if (::fchown(fd, old.st_uid, old.st_gid) == -1 &&
        ::fchown(fd, static_cast<uid_t>(-1), old.st_gid) == -1) {
        // The group stays the folder's: a user may give a file only a group of its own.
    }
    const mode_t mode = old.st_mode & 07777;
    if (::fchmod(fd, mode) == 0)
        return 0;
    const int error = errno;
    // A file system that keeps no mode bits refuses to change them, and gives every file the
    // same: then the new file already has the mode the old one had, or none can be kept.
    struct stat created = {};
    if (::fstat(fd, &created) == 0 && (created.st_mode & 07777) == mode)
        return 0;
    return error == ENOSYS || error == EOPNOTSUPP || error == ENOTSUP ? 0 : error;
}

} // namespace

Result<InputBytes> readInput(const std::string &path, std::size_t limit, Overflow overflow)
{
    InputBytes bytes;
    const bool standardInput = path == kStandardStream;
    const int fd =
        standardInput ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC);
    if (fd == -1)
        return Failure{path, reasonOf("cannot open", errno)};
    struct stat status = {};
    int error = ::fstat(fd, &status) == -1 ? errno : 0;
    const bool regular = error == 0 && S_ISREG(status.st_mode);
    // A file already known to be too large is not read at all.
    if (error == 0 && regular && overflow == Overflow::Refuse &&
        static_cast<std::uint64_t>(status.st_size) > limit)
        bytes.beyondLimit = true;
    if (error == 0 && !bytes.beyondLimit) {
        error = readUpTo(fd, limit, bytes.data);
        if (error == 0 && bytes.data.size() == limit && (!regular || overflow == Overflow::Refuse))
            bytes.beyondLimit = hasMore(fd);
    }
    if (!standardInput)
        ::close(fd);
    if (error != 0)
        return Failure{path, reasonOf("cannot read", error)};
    if (bytes.beyondLimit && overflow == Overflow::Refuse)
        return Failure{path, "cannot read: more than " + std::to_string(limit) + " bytes"};
    bytes.size = regular ? static_cast<std::uint64_t>(status.st_size) : bytes.data.size();
    return bytes;
}

OutputFile::~OutputFile()
{
    if (m_lockedFd >= 0 && m_lockedFd != m_folderFd)
        ::close(m_lockedFd);
    if (m_folderFd >= 0)
        ::close(m_folderFd);
}

Failure OutputFile::failure(const char *what, int error) const
{
    return Failure{m_given, reasonOf(what, error)};
}

Done OutputFile::resolve(const std::string &path, bool forReading)
{
    const char *what = forReading ? "cannot open" : "cannot write";
    std::string current = path;
    for (int hop = 0; hop <= kMaxLinkHops; ++hop) {
        struct stat status = {};
        if (::lstat(current.c_str(), &status) == -1) {
            if (errno != ENOENT || forReading)
                return failure(what, errno);
            m_kind = Kind::New;
        } else if (S_ISLNK(status.st_mode)) {
            if (isDescriptorLink(current)) {
                m_kind = Kind::Stream;
                m_descriptor = ownDescriptor(current);
            } else {
                std::string link(static_cast<std::size_t>(PATH_MAX), '\0');
                const ssize_t length = ::readlink(current.c_str(), link.data(), link.size());
                if (length < 0)
                    return failure(what, errno);
                link.resize(static_cast<std::size_t>(length));
                current = link.front() == '/' ? link : folderOf(current) + '/' + link;
                continue;
            }
        } else if (S_ISDIR(status.st_mode)) {
            if (forReading)
                return failure("cannot read", EISDIR);
            return Failure{m_given, "cannot write: Filename refers to a directory"};
        } else {
            m_kind = S_ISREG(status.st_mode) ? Kind::Regular : Kind::Stream;
        }
        m_target = current;
        m_folder = folderOf(current);
        return {};
    }
    return failure(what, ELOOP);
}

Done OutputFile::open(const std::string &path)
{
    m_given = path;
    if (path == kStandardStream) {
        m_kind = Kind::Stream;
        m_descriptor = STDOUT_FILENO;
        return {};
    }
    if (Done done = resolve(path, false); !done)
        return done;
    return m_kind == Kind::Stream ? Done() : lock(false);
}

Done OutputFile::openExisting(const std::string &path)
{
    m_given = path;
    if (path == kStandardStream)
        return Failure{path, "cannot write: standard input cannot be changed in place"};
    if (Done done = resolve(path, true); !done)
        return done;
    if (m_kind != Kind::Regular)
        return Failure{path, "cannot write: not a regular file"};
    return lock(true);
}

Done OutputFile::lock(bool forReading)
{
    const char *what = forReading ? "cannot open" : "cannot write";
    for (;;) {
        m_folderFd = ::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (m_folderFd == -1)
            return failure("cannot write", errno);
        m_lockedFd = m_kind == Kind::New
                         ? m_folderFd
                         : ::open(m_target.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC);
        if (m_lockedFd == -1)
            return failure(what, errno);
        if (retried([&] { return ::flock(m_lockedFd, LOCK_EX); }) == -1)
            return failure(what, errno);
        // The previous holder may have renamed a new file over the path while this one waited.
        struct stat locked = {};
        struct stat named = {};
        const bool namedExists = ::stat(m_target.c_str(), &named) == 0;
        if (::fstat(m_lockedFd, &locked) == -1)
            return failure(what, errno);
        const bool same = m_kind == Kind::New ? !namedExists
                                              : namedExists && named.st_dev == locked.st_dev &&
                                                    named.st_ino == locked.st_ino;
        if (same) {
            // Named after what is locked, so only the lock's holder uses it: a file of this name
            // is what a holder that was killed between link and rename left, and can go.
            char name[32];
            std::snprintf(name, sizeof name, ".lxconfig-%llx",
                          static_cast<unsigned long long>(locked.st_ino));
            m_tempName = name;
            ::unlinkat(m_folderFd, m_tempName.c_str(), 0);
            ::unlinkat(m_folderFd, backupPendingName().c_str(), 0);
            return {};
        }
        if (m_lockedFd != m_folderFd)
            ::close(m_lockedFd);
        ::close(m_folderFd);
        m_lockedFd = m_folderFd = -1;
        if (Done done = resolve(m_given, forReading); !done)
            return done;
        if (m_kind == Kind::Stream)
            return forReading ? Done(Failure{m_given, "cannot write: not a regular file"}) : Done();
    }
}

Result<InputBytes> OutputFile::read(std::size_t limit)
{
    InputBytes bytes;
    struct stat status = {};
    if (::fstat(m_lockedFd, &status) == -1)
        return failure("cannot read", errno);
    if (const int error = readUpTo(m_lockedFd, limit, bytes.data))
        return failure("cannot read", error);
    bytes.size = static_cast<std::uint64_t>(status.st_size);
    return bytes;
}

Done OutputFile::replace(std::string_view data, Backup backup)
{
    return replaceWith([data](int fd) { return writeAllErrno(fd, data); }, backup);
}

Done OutputFile::replaceWith(const ContentWriter &write, Backup backup)
{
    return m_kind == Kind::Stream ? writeStream(write) : writeReplacement(write, backup);
}

Done OutputFile::writeStream(const ContentWriter &write)
{
    const int fd = m_descriptor ? *m_descriptor
                                : ::open(m_target.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY | O_CLOEXEC, 0666);
    if (fd == -1)
        return failure("cannot write", errno);
    int error = write(fd);
    if (!m_descriptor && ::close(fd) == -1 && error == 0)
        error = errno;
    return error == 0 ? Done() : Done(failure("cannot write", error));
}

// Between the link and the rename a complete, synced temporary file has a name. Every signal
// that can be held back is held back for those two calls; a SIGKILL or a power cut there leaves
// the file under its short name, which is the locked file's inode number: the next lxconfig to
// lock the same file removes it.
Done OutputFile::writeReplacement(const ContentWriter &write, Backup backup)
{
    struct stat old = {};
    if (m_kind == Kind::Regular && ::fstat(m_lockedFd, &old) == -1)
        return failure("cannot write", errno);
    const mode_t mode = m_kind == Kind::Regular ? 0600 : 0666;

    bool named = false;
    // A named temporary file has its name from creation to rename: every signal that can be held
    // back is held back over its whole life, so that none leaves it behind.
    std::optional<TerminationSignalsHeld> heldWhileNamed;
    int fd = ::openat(m_folderFd, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
    if (fd == -1 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL)) {
        // No unnamed temporary files here (FAT, exFAT): a named one, removed on every failure.
        named = true;
        heldWhileNamed.emplace();
        fd =
            ::openat(m_folderFd, m_tempName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    }
    if (fd == -1) {
        const int error = errno;
        if (error == EACCES || error == EPERM || error == EROFS)
            return Failure{m_given, "cannot write: the folder " + m_folder +
                                        " refuses new files: " + std::strerror(error)};
        return failure("cannot write", error);
    }
    const auto fail = [&](int error) {
        closeKeepingErrno(fd);
        if (named)
            ::unlinkat(m_folderFd, m_tempName.c_str(), 0);
        return Done(failure("cannot write", error));
    };

    if (const int error = write(fd))
        return fail(error);
    if (m_kind == Kind::Regular) {
        if (const int error = keepOwnerAndMode(fd, old))
            return fail(error);
    }
    if (retried([&] { return ::fsync(fd); }) == -1)
        return fail(errno);

    const std::string base = baseOf(m_target);
    // The backup is the old file itself under a second name, so it keeps its contents, mode,
    // owner and times; made last, so that a failure before it leaves no backup of a file that
    // was not replaced.
    if (m_kind == Kind::Regular && backup != Backup::None) {
        if (const int error = linkBackup(base, backup)) {
            closeKeepingErrno(fd);
            if (named)
                ::unlinkat(m_folderFd, m_tempName.c_str(), 0);
            return failure("cannot back up", error);
        }
    }
    {
        const TerminationSignalsHeld held;
        if (!named) {
            int linked = ::linkat(fd, "", m_folderFd, m_tempName.c_str(), AT_EMPTY_PATH);
            if (linked == -1) {
                // AT_EMPTY_PATH needs a capability; the descriptor's link in /proc does not.
                const std::string self = "/proc/self/fd/" + std::to_string(fd);
                linked = ::linkat(AT_FDCWD, self.c_str(), m_folderFd, m_tempName.c_str(),
                                  AT_SYMLINK_FOLLOW);
            }
            if (linked == -1)
                return fail(errno);
            named = true;
        }
        if (::close(fd) == -1) {
            fd = -1;
            return fail(errno);
        }
        fd = -1;
        if (::renameat(m_folderFd, m_tempName.c_str(), m_folderFd, base.c_str()) == -1)
            return fail(errno);
    }
    // The rename itself reaches the disk with the folder.
    if (retried([&] { return ::fsync(m_folderFd); }) == -1)
        return failure("cannot write", errno);
    return {};
}

namespace {

// The digits N of "BASE.~N~" (no leading zero, as many as there are), or nothing for any other
// name.
std::string backupNumber(const std::string &base, const char *name)
{
    const std::size_t length = std::strlen(name);
    if (length < base.size() + 4 || std::strncmp(name, base.data(), base.size()) != 0 ||
        std::strncmp(name + base.size(), ".~", 2) != 0 || name[length - 1] != '~')
        return {};
    std::string digits(name + base.size() + 2, length - base.size() - 3);
    if (digits.empty() || digits[0] == '0' ||
        digits.find_first_not_of("0123456789") != std::string::npos)
        return {};
    return digits;
}

// Whether the decimal number a is below b (both without leading zeros; empty is zero).
bool belowNumber(const std::string &a, const std::string &b)
{
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

// The decimal number one more, with as many digits as it takes: 999999999 gives 1000000000.
std::string nextNumber(std::string digits)
{
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return digits;
        }
        *digit = '0';
    }
    return '1' + digits;
}

// The highest N of the folder's "BASE.~N~" names, whatever its length (empty when there is
// none); false and errno on failure.
bool highestBackupNumber(int folderFd, const std::string &base, std::string &highest)
{
    const int listed = ::openat(folderFd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (listed == -1)
        return false;
    DIR *folder = ::fdopendir(listed);
    if (!folder) {
        closeKeepingErrno(listed);
        return false;
    }
    highest.clear();
    errno = 0;
    while (const dirent *entry = ::readdir(folder)) {
        std::string number = backupNumber(base, entry->d_name);
        if (belowNumber(highest, number))
            highest = std::move(number);
    }
    const int error = errno;
    ::closedir(folder);
    errno = error;
    return error == 0;
}

// A copy of the file, for a file system without hard links: contents, owner and mode as far as
// the file system keeps them, and times. Written whole and synced; errno, or 0.
int copyFile(int from, int to, const struct stat &old)
{
    char chunk[65536];
    for (off_t offset = 0;;) {
        const ssize_t got = retried([&] { return ::pread(from, chunk, sizeof chunk, offset); });
        if (got < 0)
            return errno;
        if (got == 0)
            break;
        if (const int error =
                writeAllErrno(to, std::string_view(chunk, static_cast<std::size_t>(got))))
            return error;
        offset += got;
    }
    if (const int error = keepOwnerAndMode(to, old))
        return error;
    const struct timespec times[2] = {old.st_atim, old.st_mtim};
    if (::futimens(to, times) == -1)
        return errno;
    return retried([&] { return ::fsync(to); }) == -1 ? errno : 0;
}

} // namespace

// The old file (locked, so no other lxconfig replaces it meanwhile) gets the backup's name. It is
// linked in under a name of its own first and renamed over the backup's name, so that an older
// backup of that name is replaced in one step, as GNU tools replace theirs, and stays whole when
// the new one cannot be made. A file system without hard links (FAT, exFAT) gets a copy under
// that name instead, with the same promises. Returns 0 or the errno.
int OutputFile::linkBackup(const std::string &base, Backup backup) const
{
    std::string name = base + '~';
    if (backup != Backup::Simple) {
        std::string highest;
        if (!highestBackupNumber(m_folderFd, base, highest))
            return errno;
        if (backup == Backup::Numbered || !highest.empty())
            name = base + ".~" + nextNumber(highest.empty() ? "0" : highest) + '~';
    }
    const std::string pending = backupPendingName();
    const TerminationSignalsHeld held;
    int linked = ::linkat(m_lockedFd, "", m_folderFd, pending.c_str(), AT_EMPTY_PATH);
    if (linked == -1 && errno != EEXIST) {
        const std::string self = "/proc/self/fd/" + std::to_string(m_lockedFd);
        linked = ::linkat(AT_FDCWD, self.c_str(), m_folderFd, pending.c_str(), AT_SYMLINK_FOLLOW);
    }
    struct stat old = {};
    bool copied = false;
    if (linked == -1 && noHardLinks(errno)) {
        const int copy = ::fstat(m_lockedFd, &old) == -1
                             ? -1
                             : ::openat(m_folderFd, pending.c_str(),
                                        O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (copy == -1)
            return errno;
        int error = copyFile(m_lockedFd, copy, old);
        if (::close(copy) == -1 && error == 0)
            error = errno;
        if (error != 0) {
            ::unlinkat(m_folderFd, pending.c_str(), 0);
            return error;
        }
        linked = 0;
        copied = true;
    }
    if (linked == -1)
        return errno;
    int renamed = ::renameat(m_folderFd, pending.c_str(), m_folderFd, name.c_str());
    // fusefat 0.3 (Debian 13) refuses to rename over a file that exists; the backup it would
    // replace is an older backup, which goes first there.
    struct stat existing = {};
    if (renamed == -1 && errno == EEXIST &&
        ::fstatat(m_folderFd, name.c_str(), &existing, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISREG(existing.st_mode) && ::unlinkat(m_folderFd, name.c_str(), 0) == 0)
        renamed = ::renameat(m_folderFd, pending.c_str(), m_folderFd, name.c_str());
    const int error = renamed == -1 ? errno : 0;
    // fusefat stamps a renamed file with the time of the rename: the copy gets its times again
    // under its final name. Only the times are at stake then, so a failure here fails nothing.
    if (renamed == 0 && copied) {
        const struct timespec times[2] = {old.st_atim, old.st_mtim};
        ::utimensat(m_folderFd, name.c_str(), times, AT_SYMLINK_NOFOLLOW);
    }
    // Gone after the rename, unless the backup's name was already a link of the old file (then
    // rename leaves both names); and on a failure.
    ::unlinkat(m_folderFd, pending.c_str(), 0);
    return error;
}

// Like the temporary file's name, owned by the lock's holder: left by a holder that was killed
// between link and rename, it is removed by the next one to lock the file.
std::string OutputFile::backupPendingName() const
{
    return m_tempName + '~';
}

} // namespace lxconfig
