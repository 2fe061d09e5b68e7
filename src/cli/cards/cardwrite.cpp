#include "cardwrite.h"

#include "fileio.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace lxconfig {

namespace {

// O_DIRECT reads whole blocks into a buffer aligned to one.
constexpr std::size_t kBlock = 4096;

const std::string_view kDiffers = "the read-back differs";

struct AlignedFree
{
    void operator()(char *buffer) const { std::free(buffer); }
};

int openForReadBack(const std::string &path)
{
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECT);
    if (fd == -1 && errno == EINVAL)
        fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    // The pages this machine holds of the file go too, so that a read that cannot bypass the
    // cache (no O_DIRECT here) still comes from the medium.
    if (fd != -1)
        ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
    return fd;
}

// The file's bytes up to one block beyond expected, or the errno.
int readWhole(int fd, std::size_t expected, std::string &read)
{
    const std::size_t capacity = (expected / kBlock + 2) * kBlock;
    void *memory = nullptr;
    if (::posix_memalign(&memory, kBlock, capacity) != 0)
        return ENOMEM;
    const std::unique_ptr<char, AlignedFree> buffer(static_cast<char *>(memory));
    std::size_t got = 0;
    bool direct = (::fcntl(fd, F_GETFL) & O_DIRECT) != 0;
    while (got < capacity) {
        const ssize_t n = ::read(fd, buffer.get() + got, kBlock);
        if (n == -1 && errno == EINTR)
            continue;
        if (n == -1 && errno == EINVAL && direct) {
            // The file system took O_DIRECT at open but not at read: read it through the cache,
            // which was dropped.
            direct = false;
            ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_DIRECT);
            ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
            continue;
        }
        if (n == -1)
            return errno;
        if (n == 0)
            break;
        got += static_cast<std::size_t>(n);
        if (static_cast<std::size_t>(n) < kBlock && direct)
            break; // a short direct read is the end of the file
    }
    read.assign(buffer.get(), got);
    return 0;
}

std::string byteText(unsigned char byte)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", byte);
    return text;
}

// What the card's state says of a failed write: removed, write-protected, full.
std::string causeOf(const Failure &failure, const std::string &card, dev_t cardDevice,
                    std::size_t needed)
{
    struct stat now;
    if (::stat(card.c_str(), &now) != 0)
        return "the card was removed or stopped answering (" + card + ": " + std::strerror(errno) +
               ")";
    if (now.st_dev != cardDevice)
        return "the card was removed: " + card + " is no longer where it is mounted";
    struct statvfs space;
    const bool known = ::statvfs(card.c_str(), &space) == 0;
    const std::string readOnly = std::strerror(EROFS);
    if ((known && (space.f_flag & ST_RDONLY)) ||
        failure.reason.compare(failure.reason.size() -
                                   std::min(failure.reason.size(), readOnly.size()),
                               std::string::npos, readOnly) == 0)
        return "the card is write-protected (read-only)";
    const std::uint64_t free = known ? std::uint64_t(space.f_bavail) * space.f_frsize : 0;
    if (known && free < needed)
        return "the card is full (" + std::to_string(free) + " bytes free, " +
               std::to_string(needed) + " needed)";
    return {};
}

// What the medium gives back for the file at path, compared with expected: done when every byte
// is the same, else what differs ("byte 12 reads 0x00, 0x43 was written") or why it cannot be
// read. The failure names file, which may differ from path (a descriptor's path in /proc).
Done readBack(const std::string &path, std::string_view expected, const std::string &file)
{
    const int fd = openForReadBack(path);
    if (fd == -1)
        return Failure{file, std::string("cannot read it back: ") + std::strerror(errno)};
    std::string read;
    const int error = readWhole(fd, expected.size(), read);
    ::close(fd);
    if (error)
        return Failure{file, std::string("cannot read it back: ") + std::strerror(error)};
    const std::size_t common = std::min(read.size(), expected.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (read[i] != expected[i])
            return Failure{file, std::string(kDiffers) + ": byte " + std::to_string(i) + " reads " +
                                     byteText(static_cast<unsigned char>(read[i])) + ", " +
                                     byteText(static_cast<unsigned char>(expected[i])) +
                                     " was written"};
    }
    if (read.size() != expected.size())
        return Failure{file, std::string(kDiffers) + ": the card gives back " +
                                 std::to_string(read.size()) + " bytes, " +
                                 std::to_string(expected.size()) + " were written"};
    return {};
}

// The failure followed by what the card's state says of it, when it says something.
Failure withCause(const Failure &failure, const std::string &cause)
{
    return cause.empty() ? failure : Failure{failure.file, failure.reason + "; " + cause};
}

} // namespace

Done writeToCard(const std::string &path, std::string_view data, const std::string &card,
                 dev_t cardDevice, Backup backup)
{
    // A read-back that gives other bytes says what the card is; one that cannot read, that the
    // card's state says more.
    const auto readBackFailure = [&](const Failure &problem) {
        if (problem.reason.compare(0, kDiffers.size(), kDiffers) == 0)
            return withCause(problem, "the card does not keep what is written");
        return withCause(problem, causeOf(problem, card, cardDevice, data.size()));
    };
    std::optional<Failure> unkept;
    // The temporary file is read back before it replaces the old one.
    const OutputFile::ContentWriter writeAndReadBack = [&](int fd) {
        if (const int error = writeAllErrno(fd, data))
            return error;
        if (::fsync(fd) == -1)
            return errno;
        if (Done kept = readBack("/proc/self/fd/" + std::to_string(fd), data, path); !kept)
            unkept = kept.failure();
        return unkept ? EIO : 0;
    };
    OutputFile file;
    Done done = file.open(path);
    if (done)
        done = file.replaceWith(writeAndReadBack, backup);
    if (unkept)
        return readBackFailure(*unkept);
    if (!done)
        return withCause(done.failure(), causeOf(done.failure(), card, cardDevice, data.size()));
    // The rename is on the medium too, with the folder.
    if (Done kept = readBack(path, data, path); !kept)
        return readBackFailure(kept.failure());
    return {};
}

} // namespace lxconfig
