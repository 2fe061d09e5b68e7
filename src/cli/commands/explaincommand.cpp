// lxconfig explain [NAME]: where a setting is in the window, what it may hold, how the file
// stores it and which rules of the form lock or preset it.

#include "commands.h"
#include "explain.h"
#include "settingname.h"

namespace lxconfig {

int explainCommand(const Invocation &invocation, Output &output)
{
    if (invocation.list) {
        if (!invocation.arguments.empty()) {
            output.usageError("--list takes no name", "explain");
            return kExitError;
        }
        for (const std::string &line : settingsIndex())
            output.out(line + '\n');
        return kExitSuccess;
    }
    Explanation explanation = invocation.arguments.empty()
                                  ? explain()
                                  : explain(std::string_view(invocation.arguments.front()));
    if (!explanation.found) {
        // A caption qualified by its page names one field as set takes it.
        const NamedField named = fieldNamed(invocation.arguments.front());
        if (named.field)
            explanation = explain(std::string_view(lumarex::fieldInfo(*named.field).name));
    }
    if (!explanation.found) {
        output.error("no field, control or caption is named \"" + invocation.arguments.front() +
                     "\"" + didYouMean(invocation.arguments.front(), settingNames()));
        return kExitFailure;
    }
    for (const std::string &line : explanation.lines)
        output.out(line + '\n');
    return kExitSuccess;
}

} // namespace lxconfig
