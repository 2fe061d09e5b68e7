#include "commandline.h"

#include "commands.h"

#include <QCommandLineParser>
#include <algorithm>
#include <iterator>

namespace lxconfig {

namespace {

enum class OutputOption
{
    None,
    Optional,
    Required
};

struct Command
{
    const char *name;
    const char *synopsis;
    const char *summary;
    int minArguments;
    int maxArguments; // -1: no limit
    OutputOption output;
    int (*run)(const Invocation &, Output &);
};

constexpr int kAny = -1;

constexpr Command kCommands[] = {
    {"check", "check FILE...", "tell whether each file loads in the editor", 1, kAny,
     OutputOption::None, checkCommand},
    {"show", "show FILE", "list every field with its offset and value", 1, 1, OutputOption::None,
     showCommand},
    {"export", "export FILE [-o OUT]", "write the fields as JSON to standard output or OUT", 1, 1,
     OutputOption::Optional, exportCommand},
    {"import", "import JSON -o FILE", "write the record that a JSON form describes", 1, 1,
     OutputOption::Required, importCommand},
    {"defaults", "defaults -o FILE", "write what the editor saves from its untouched form", 0, 0,
     OutputOption::Required, defaultsCommand},
    {"set", "set FILE FIELD=VALUE...", "change fields in place and mend the checksum", 2, kAny,
     OutputOption::None, setCommand},
    {"diff", "diff A [B]", "list the fields that differ (one file: from the defaults)", 1, 2,
     OutputOption::None, diffCommand},
};

QString helpText()
{
    QString text =
        QStringLiteral("Usage: lxconfig COMMAND ARGUMENTS...\n"
                       "Checks, shows and edits Lumarex 2.0 configuration files (LXCONFIG.BIN).\n"
                       "\n"
                       "Commands:\n");
    for (const Command &command : kCommands) {
        text += QStringLiteral("  %1%2\n")
                    .arg(QString::fromLatin1(command.synopsis).leftJustified(26),
                         QString::fromLatin1(command.summary));
    }
    text +=
        QStringLiteral("\n"
                       "Options:\n"
                       "  -o, --output FILE         the file to write\n"
                       "  -h, --help                show this help\n"
                       "  --version                 show the version\n"
                       "\n"
                       "Exit status: 0 success, 1 a file is not valid or a command failed\n"
                       "(diff: the files differ), 2 a wrong command line (diff: any failure).\n");
    return text;
}

const Command *findCommand(const QString &name)
{
    const auto it = std::find_if(std::begin(kCommands), std::end(kCommands),
                                 [&name](const Command &command) { return name == command.name; });
    return it == std::end(kCommands) ? nullptr : it;
}

bool fits(const Command &command, const Invocation &invocation, bool outputGiven)
{
    const int count = invocation.arguments.size();
    if (count < command.minArguments ||
        (command.maxArguments != kAny && count > command.maxArguments))
        return false;
    switch (command.output) {
    case OutputOption::None:
        return !outputGiven;
    case OutputOption::Optional:
        return true;
    case OutputOption::Required:
        return outputGiven;
    }
    return false;
}

} // namespace

int run(const QStringList &arguments, Output &output)
{
    // The help text is helpText(), so the options need no descriptions of their own.
    QCommandLineParser parser;
    const QCommandLineOption outputOption({"o", "output"}, QString(), "FILE");
    const QCommandLineOption helpOption(QStringList{"h", "help"});
    const QCommandLineOption versionOption("version");
    parser.addOptions({outputOption, helpOption, versionOption});
    if (!parser.parse(arguments)) {
        output.usageError(parser.errorText());
        return kExitError;
    }
    if (parser.isSet(helpOption)) {
        output.out() << helpText();
        return kExitSuccess;
    }
    if (parser.isSet(versionOption)) {
        output.out() << "lxconfig " << LXCONFIG_VERSION << '\n';
        return kExitSuccess;
    }

    QStringList positional = parser.positionalArguments();
    if (positional.isEmpty()) {
        output.usageError(QStringLiteral("no command given"));
        return kExitError;
    }
    const QString name = positional.takeFirst();
    const Command *command = findCommand(name);
    if (!command) {
        output.usageError(QStringLiteral("unknown command \"%1\"").arg(name));
        return kExitError;
    }
    const Invocation invocation{positional, parser.value(outputOption)};
    if (!fits(*command, invocation, parser.isSet(outputOption))) {
        output.usageError(QStringLiteral("usage: lxconfig ") +
                          QString::fromLatin1(command->synopsis));
        return kExitError;
    }
    return command->run(invocation, output);
}

} // namespace lxconfig
