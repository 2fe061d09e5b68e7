// lxconfig defaults -o FILE: the bytes the editor saves from its untouched form.

#include "commandfiles.h"
#include "commands.h"
#include "formfields.h"
#include "recordfile.h"

namespace lxconfig {

int defaultsCommand(const Invocation &invocation, Output &output)
{
    return writeOutputFile(invocation.outputPath, recordBytes(lumarex::untouchedFormRecord()),
                           output, invocation.backup)
               ? kExitSuccess
               : kExitFailure;
}

} // namespace lxconfig
