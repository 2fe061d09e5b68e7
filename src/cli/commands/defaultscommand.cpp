// lxconfig defaults -o FILE: the bytes the editor saves from its untouched form.

#include "commandfiles.h"
#include "commands.h"
#include "formfields.h"
#include "recordfile.h"

namespace lxconfig {

int defaultsCommand(const Invocation &invocation, Output &output)
{
    return succeeded(writeOutputFile(invocation.outputPath,
                                     recordBytes(lumarex::untouchedFormRecord()), invocation.backup,
                                     output),
                     output)
               ? kExitSuccess
               : kExitFailure;
}

} // namespace lxconfig
