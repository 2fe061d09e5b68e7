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
    OutputFile file;
    if (!report(file.open(invocation.outputPath), output))
        return kExitFailure;
    InputBytes bytes;
    if (!report(readInput(path, kEditorReadSize, Overflow::Ignore, bytes), output))
        return kExitFailure;
    // A file the editor refuses is never loaded, so there is nothing it would save: the words
    // are check's, and nothing is written.
    const lumarex::ConfigRecord record = recordOf(bytes);
    if (const std::optional<std::string> problem = recordProblem(record)) {
        output.error(path + ": " + *problem);
        return kExitFailure;
    }
    if (const std::optional<std::string> note = sizeProblem(bytes))
        output.warning(path + ": " + *note);
    const lumarex::roundtrip::ResavePrediction saved =
        lumarex::roundtrip::predictResave(record.bytes());
    const std::string data(reinterpret_cast<const char *>(saved.bytes.data()), saved.bytes.size());
    return report(file.replace(data, invocation.backup), output) ? kExitSuccess : kExitFailure;
}

} // namespace lxconfig
