#include "commandfiles.h"

#include "fileio.h"

#include <sys/stat.h>
#include <unistd.h>

namespace lxconfig {

namespace {

// What a piece producer writes to a descriptor: 0, or the errno of the first failed write.
OutputFile::ContentWriter writerOf(const PieceProducer &produce)
{
    return [&produce](int fd) {
        int error = 0;
        produce([fd, &error](std::string_view piece) {
            error = writeAllErrno(fd, piece);
            return error == 0;
        });
        return error;
    };
}

} // namespace

Result<RecordFile> readRecordFile(const std::string &path)
{
    const Result<InputBytes> bytes = readInput(path, kEditorReadSize, Overflow::Ignore);
    if (!bytes)
        return bytes.failure();
    return recordFileOf(bytes->data, bytes->size, bytes->beyondLimit);
}

Result<std::string> readTextFile(const std::string &path, std::size_t limit)
{
    Result<InputBytes> bytes = readInput(path, limit, Overflow::Refuse);
    if (!bytes)
        return bytes.failure();
    return std::move(bytes->data);
}

Result<lumarex::ConfigRecord> checkedRecord(const std::string &path, const RecordFile &file,
                                            Checks checks, Output &output)
{
    if (file.refusal) {
        if (checks == Checks::Require)
            return Failure{path, *file.refusal};
        output.warning(path + ": " + *file.refusal);
    }
    if (file.sizeNote)
        output.warning(path + ": " + *file.sizeNote);
    return file.record;
}

Result<lumarex::ConfigRecord> readInputFile(const std::string &path, Checks checks, Output &output)
{
    const Result<RecordFile> file = readRecordFile(path);
    if (!file)
        return file.failure();
    return checkedRecord(path, *file, checks, output);
}

Done outputIsNoInput(const std::string &outputPath, const std::vector<std::string> &inputs,
                     const char *what)
{
    struct stat out;
    if (outputPath.empty() || ::stat(outputPath.c_str(), &out) != 0 || !S_ISREG(out.st_mode))
        return {};
    for (const std::string &path : inputs) {
        // "-" reads standard input, which may be the very file -o names (< FILE).
        const bool standardInput = path == kStandardStream;
        struct stat in;
        const int status = standardInput ? ::fstat(STDIN_FILENO, &in) : ::stat(path.c_str(), &in);
        if (status == 0 && in.st_dev == out.st_dev && in.st_ino == out.st_ino) {
            return Failure{outputPath,
                           "is also " +
                               (standardInput ? std::string("the file on standard input")
                                              : "the file " + path) +
                               " " + what + "; nothing is written"};
        }
    }
    return {};
}

Done writeOutputFile(const std::string &path, std::string_view data, Backup backup, Output &output)
{
    // Written as without -o, so that a failure names "standard output" as every command does.
    if (path == kStandardStream) {
        output.out(data);
        return {};
    }
    HeldOutput file;
    Done done = file.open(path);
    if (done)
        done = file.write(data, backup);
    return done;
}

HeldOutput::HeldOutput() : m_file(std::make_unique<OutputFile>()) {}

HeldOutput::~HeldOutput() = default;

Done HeldOutput::open(const std::string &path)
{
    return m_file->open(path);
}

Done HeldOutput::write(std::string_view data, Backup backup)
{
    return m_file->replace(data, backup);
}

Done HeldOutput::writePieces(const PieceProducer &produce, Backup backup)
{
    return m_file->replaceWith(writerOf(produce), backup);
}

FileForChange::FileForChange() : m_file(std::make_unique<OutputFile>()) {}

FileForChange::~FileForChange() = default;

Result<lumarex::ConfigRecord> FileForChange::read(const std::string &path, Output &output)
{
    m_path = path;
    if (Done opened = m_file->openExisting(path); !opened)
        return opened.failure();
    const Result<InputBytes> bytes = m_file->read(kEditorReadSize);
    if (!bytes)
        return bytes.failure();
    m_read = bytes->data;
    m_size = bytes->size;
    return checkedRecord(path, recordFileOf(bytes->data, bytes->size), Checks::Require, output);
}

bool FileForChange::holds(std::string_view bytes) const
{
    return m_size == bytes.size() && m_read == bytes;
}

Done FileForChange::replace(std::string_view data, Backup backup)
{
    return m_file->replace(data, backup);
}

} // namespace lxconfig
