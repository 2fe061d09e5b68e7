#pragma once

// The files a command reads and writes, as records and outputs. Every command reads a record,
// reads one for change, and writes its output through here, so no command sees a descriptor;
// what goes wrong comes back as a Failure that names the file.

#include "backup.h"
#include "configrecord.h"
#include "failure.h"
#include "output.h"
#include "recordfile.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lxconfig {

class OutputFile;

enum class Checks
{
    Warn,    // a file the editor would refuse is read with a warning (show, export, diff)
    Require, // such a file is refused (set, resave)
};

// The file's first bytes, as the editor's load reads them, and what the editor would say.
Result<RecordFile> readRecordFile(const std::string &path);

// A text file (a JSON form or template) of at most limit bytes; a longer one is the failure.
Result<std::string> readTextFile(const std::string &path, std::size_t limit);

// The record of a file whose bytes are already read, with what the editor would say of it: its
// refusal is a warning (Warn) or the failure (Require); a size other than a record's is a warning.
Result<lumarex::ConfigRecord> checkedRecord(const std::string &path, const RecordFile &file,
                                            Checks checks, Output &output);

// The record of the file for a command that goes on with it: the editor's refusal is a warning
// (Warn) or the failure (Require); a size other than a record's is a warning.
Result<lumarex::ConfigRecord> readInputFile(const std::string &path, Checks checks, Output &output);

// The failure when outputPath names (under any name, through links too) a regular file that is
// one of the inputs, standard input ("-") included: writing a sheet or a form there would
// replace the very file the command reads with something else, which is a slip of the keyboard,
// never a wish. `what` completes "is also the file FILE ...", e.g. "to report".
Done outputIsNoInput(const std::string &outputPath, const std::vector<std::string> &inputs,
                     const char *what);

// Writes the whole file, or leaves it as it was. A regular file that is replaced is first kept
// as the backup asks. "-" is standard output, written at the end of the command like any result.
Done writeOutputFile(const std::string &path, std::string_view data, Backup backup, Output &output);

// Pieces of a long output: produce calls put with each piece in order, and stops when put
// returns false, so that the whole is never held.
using PutPiece = std::function<bool(std::string_view piece)>;
using PieceProducer = std::function<void(const PutPiece &put)>;

// An output held from open() until it is destroyed: a regular file is locked meanwhile, so that
// a concurrent lxconfig waits until this one has replaced it.
class HeldOutput
{
public:
    HeldOutput();
    HeldOutput(const HeldOutput &) = delete;
    HeldOutput &operator=(const HeldOutput &) = delete;
    ~HeldOutput();

    // The output named on the command line: symbolic links followed, a missing file allowed.
    Done open(const std::string &path);
    // Replaces the contents whole, or leaves them as they were.
    Done write(std::string_view data, Backup backup);
    Done writePieces(const PieceProducer &produce, Backup backup);

private:
    std::unique_ptr<OutputFile> m_file;
};

// A file that is read, changed and replaced in place (set, apply): opened and locked from read()
// until it is destroyed, and required to pass the editor's checks.
class FileForChange
{
public:
    FileForChange();
    FileForChange(const FileForChange &) = delete;
    FileForChange &operator=(const FileForChange &) = delete;
    ~FileForChange();

    // The record; a size other than a record's is a warning.
    Result<lumarex::ConfigRecord> read(const std::string &path, Output &output);
    const std::string &path() const { return m_path; }
    // Whether the file holds exactly these bytes already.
    bool holds(std::string_view bytes) const;
    Done replace(std::string_view data, Backup backup);

private:
    std::unique_ptr<OutputFile> m_file;
    std::string m_path;
    std::string m_read;
    std::uint64_t m_size = 0;
};

// Prints the failure's error line, if there is one; whether there is none.
template <typename T> bool succeeded(const Result<T> &result, Output &output)
{
    if (!result)
        output.error(result.failure().message());
    return static_cast<bool>(result);
}

} // namespace lxconfig
