// lxconfig check FILE...: whether the editor would load each file, and if not, the first of
// its checks that the file fails.

#include "commands.h"
#include "recordfile.h"

namespace lxconfig {

int checkCommand(const Invocation &invocation, Output &output)
{
    int status = kExitSuccess;
    for (const QString &path : invocation.arguments) {
        const RecordFile file = readRecordFile(path);
        const bool readable = file.error.isEmpty();
        const std::optional<QString> problem =
            readable ? recordProblem(file.record) : std::optional<QString>(file.error);
        output.out() << path << ": " << problem.value_or(QStringLiteral("valid")) << '\n';
        if (problem)
            status = kExitFailure;
        // The editor loads a file of another size all the same, so this is only a warning.
        const std::optional<QString> sizeNote = readable ? sizeProblem(file.size) : std::nullopt;
        if (sizeNote)
            output.warning(path + QStringLiteral(": ") + *sizeNote);
    }
    return status;
}

} // namespace lxconfig
