#include "completion.h"

#include "commands.h"
#include "commandtable.h"
#include "configrecord.h"

namespace lxconfig {

int listCompletions(const std::vector<std::string> &request, Output &output)
{
    const std::string what = request.empty() ? std::string() : request.front();
    if (what == "commands" && request.size() == 1) {
        for (const Command &command : commandTable())
            output.out(std::string(command.name) + '\n');
        return kExitSuccess;
    }
    if (what == "options" && request.size() == 2) {
        if (const Command *command = findCommand(request[1])) {
            for (const OptionInfo &option : optionsOf(*command)) {
                for (const char *word : option.words)
                    output.out(std::string(word) + '\n');
            }
        }
        output.out("--help\n");
        return kExitSuccess;
    }
    if (what == "fields" && request.size() == 1) {
        // The checksum is mended, never set; explain knows every other name too.
        for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
            if (info.field != lumarex::Field::crc)
                output.out(std::string(info.name) + '\n');
        }
        return kExitSuccess;
    }
    output.usageError("--complete takes commands, options COMMAND or fields");
    return kExitError;
}

} // namespace lxconfig
