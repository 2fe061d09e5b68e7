// lxconfig resave FILE -o OUT: the file the editor saves when a freshly started window reads
// FILE with "Read from file" and at once writes it with "Write to file".

#include "commandfiles.h"
#include "commands.h"
#include "recordfile.h"
#include "roundtrip.h"

namespace lxconfig {

int resaveCommand(const Invocation &invocation, Output &output)
{
    const std::string &path = invocation.arguments.at(0);
    // The output is locked before the input is read: when they are one file, a set that comes
    // meanwhile waits for this resave, instead of being written over by what it read before.
    HeldOutput file;
    if (!succeeded(file.open(invocation.outputPath), output))
        return kExitFailure;
    // A file the editor refuses is never loaded, so there is nothing it would save: the words
    // are check's, and nothing is written.
    const Result<lumarex::ConfigRecord> record = readInputFile(path, Checks::Require, output);
    if (!succeeded(record, output))
        return kExitFailure;
    const lumarex::roundtrip::ResavePrediction saved =
        lumarex::roundtrip::predictResave(record->bytes());
    const std::string data(reinterpret_cast<const char *>(saved.bytes.data()), saved.bytes.size());
    return succeeded(file.write(data, invocation.backup), output) ? kExitSuccess : kExitFailure;
}

} // namespace lxconfig
