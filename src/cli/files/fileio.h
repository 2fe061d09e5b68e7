#pragma once

// Every file lxconfig reads or writes goes through here, on POSIX calls only, and every failure
// comes back the same way: the file's name as given and the reason, printed as
// "lxconfig: FILE: cannot read: REASON" (or cannot open, cannot write).
//
// A regular output file is never written in place: the new contents go into an unnamed
// temporary file in the same folder, which is synced, given the old file's owner and mode, and
// only then linked in and renamed over the target. Any failure before the rename leaves the
// target as it was and no temporary file. Outputs that are not regular files (devices, FIFOs,
// terminals, "-") are written into as a shell redirection would, and never backed up.

#include "backup.h"
#include "descriptorwrite.h"
#include "failure.h"
#include "output.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace lxconfig {

struct InputBytes
{
    std::string data;         // at most the limit asked for
    std::uint64_t size = 0;   // a regular file's size; for anything else the bytes it delivered
    bool beyondLimit = false; // a stream delivered more than the limit (size is then the limit)
};

enum class Overflow
{
    Ignore, // read the first bytes, as the editor does
    Refuse, // more than the limit is a failure
};

// Reads at most limit bytes of the file, short reads from pipes included.
Result<InputBytes> readInput(const std::string &path, std::size_t limit, Overflow overflow);

// One output file, from opening to the replacement of its contents. A regular file is locked
// (flock) from open() until the object is destroyed, so that a concurrent lxconfig waits until
// this one has read, changed and replaced it.
class OutputFile
{
public:
    OutputFile() = default;
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;
    ~OutputFile();

    // The output named on the command line: symbolic links followed, a missing file allowed.
    Done open(const std::string &path);
    // The same for a file that is read before it is replaced (set): it must exist and be a
    // regular file; its failures are reported as cannot open / cannot read.
    Done openExisting(const std::string &path);
    // The locked file's first bytes (after openExisting).
    Result<InputBytes> read(std::size_t limit);
    // Replaces the contents whole, or leaves them as they were. A regular file that existed is
    // first linked in under the backup's name, beside the file a symbolic link leads to; a
    // backup that cannot be made is a failure ("cannot back up: REASON") that changes nothing.
    Done replace(std::string_view data, Backup backup = Backup::None);
    // The same with contents that write(fd) writes piece by piece (returning 0 or an errno), so
    // that a long output is never held whole.
    using ContentWriter = std::function<int(int fd)>;
    Done replaceWith(const ContentWriter &write, Backup backup = Backup::None);

private:
    enum class Kind
    {
        Stream,  // standard output, a device, a FIFO: written like a redirection
        Regular, // an existing regular file, replaced
        New,     // no file yet: created
    };

    Done resolve(const std::string &path, bool forReading);
    Done lock(bool forReading);
    Done writeStream(const ContentWriter &write);
    Done writeReplacement(const ContentWriter &write, Backup backup);
    int linkBackup(const std::string &base, Backup backup) const;
    std::string backupPendingName() const;
    Failure failure(const char *what, int error) const;

    std::string m_given;  // as on the command line, for messages
    std::string m_target; // the file that changes, links resolved
    std::string m_folder; // its folder
    Kind m_kind = Kind::New;
    std::optional<int> m_descriptor; // a stream that is one of this process's descriptors
    int m_lockedFd = -1;             // the target (or for a new file its folder), locked
    int m_folderFd = -1;
    std::string m_tempName; // the short name the temporary file is linked in under
};

} // namespace lxconfig
