#include "commandfiles.h"

#include "filewriting.h"
#include "recordfile.h"

namespace lxconfig {

namespace {

QString prefixed(const QString &path, const QString &text)
{
    return path + QStringLiteral(": ") + text;
}

} // namespace

std::optional<lumarex::ConfigRecord> readInputFile(const QString &path, Checks checks,
                                                   Output &output)
{
    const RecordFile file = readRecordFile(path);
    if (!file.error.isEmpty()) {
        output.error(prefixed(path, file.error));
        return std::nullopt;
    }
    if (const std::optional<QString> problem = recordProblem(file.record)) {
        if (checks == Checks::Require) {
            output.error(prefixed(path, *problem));
            return std::nullopt;
        }
        output.warning(prefixed(path, *problem));
    }
    if (const std::optional<QString> problem = sizeProblem(file.size))
        output.warning(prefixed(path, *problem));
    return file.record;
}

bool writeOutputFile(const QString &path, const QByteArray &data, Output &output)
{
    const std::optional<QString> problem = writeFile(path, data);
    if (problem)
        output.error(prefixed(path, *problem));
    return !problem;
}

} // namespace lxconfig
