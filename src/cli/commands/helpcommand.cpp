// lxconfig help [COMMAND]: the general help, or one command's page.

#include "commands.h"
#include "commandtable.h"
#include "helptext.h"

namespace lxconfig {

int helpCommand(const Invocation &invocation, Output &output)
{
    if (invocation.arguments.empty()) {
        output.out(generalHelp());
        return kExitSuccess;
    }
    const std::string &name = invocation.arguments.front();
    const Command *command = findCommand(name);
    if (!command) {
        output.usageError("unknown command \"" + name + "\"");
        return kExitError;
    }
    output.out(commandHelp(*command));
    return kExitSuccess;
}

} // namespace lxconfig
