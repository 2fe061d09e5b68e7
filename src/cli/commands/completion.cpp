#include "completion.h"

#include "commands.h"
#include "commandtable.h"
#include "configrecord.h"
#include "controltext.h"
#include "formfields.h"
#include "settingname.h"
#include "settingvalue.h"

namespace lxconfig {

namespace {

// The values the window offers for a setting, in the words set accepts: a combo box's item
// texts (each one that set reads back as that very item), on and off for a check box; nothing
// for numbers and for names that mean no single setting.
void listValues(const std::string &name, Output &output)
{
    const NamedField named = fieldNamed(name);
    const lumarex::FormField *pairing = named.field ? lumarex::formFieldOf(*named.field) : nullptr;
    const lumarex::ControlFacts *facts = named.field ? lumarex::controlOf(*named.field) : nullptr;
    if (!pairing || !facts)
        return;
    if (pairing->stored == lumarex::Stored::Checked) {
        output.out("on\noff\n");
        return;
    }
    for (const std::string_view item : facts->items()) {
        const SettingValue value = settingValue(*pairing, item);
        if (value.holdable && value.stored &&
            shownValue(pairing->field, *value.stored) == lumarex::quoted(item))
            output.out(std::string(item) + '\n');
    }
}

} // namespace

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
    if (what == "values" && request.size() == 2) {
        listValues(request[1], output);
        return kExitSuccess;
    }
    output.usageError("--complete takes commands, options COMMAND, fields or values NAME");
    return kExitError;
}

} // namespace lxconfig
