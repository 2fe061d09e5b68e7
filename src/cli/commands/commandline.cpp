#include "commandline.h"

#include "commands.h"
#include "commandtable.h"
#include "completion.h"
#include "helptext.h"
#include "pager.h"
#include "settingname.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <optional>

namespace lxconfig {

namespace {

// Whether the command's output may be long enough to page: show, diff, explain, check, help.
bool commandPages(const Command &command)
{
    static const char *const paged[] = {"show", "diff", "explain", "check", "help"};
    for (const char *name : paged) {
        if (std::strcmp(command.name, name) == 0)
            return true;
    }
    return false;
}

bool fits(const Command &command, const Invocation &invocation, bool outputGiven)
{
    const int count = static_cast<int>(invocation.arguments.size());
    if (count < command.minArguments ||
        (command.maxArguments != kAnyNumber && count > command.maxArguments))
        return false;
    const auto given = [&command](bool used, unsigned option) {
        return used && !(command.accepts & option);
    };
    if (given(invocation.force, kForce) || given(invocation.strict, kStrict) ||
        given(invocation.raw, kRaw) ||
        given(invocation.format != Format::Text, kFormat | kTextForm | kTableFormats) ||
        given(invocation.format == Format::Csv || invocation.format == Format::Html,
              kTableFormats) ||
        given(invocation.all, kAll) || given(invocation.backup != Backup::None, kBackup) ||
        given(!invocation.fieldsPattern.empty(), kFields) ||
        given(!invocation.pdfPath.empty() || !invocation.title.empty() || !invocation.paper.empty(),
              kSheet) ||
        given(invocation.quiet, kQuiet) || given(invocation.list, kList) ||
        given(invocation.checkOnly, kCheckOnly) || given(invocation.eject, kEject) ||
        given(!invocation.fromPath.empty(), kFrom) ||
        given(!invocation.exceptPattern.empty(), kExcept))
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

// The options as lxconfig has always read them: anywhere on the line, "--" ends them, short
// options may be run together ("-ho"), a value follows its option or is joined to it
// ("-oFILE", "--output=FILE"). --backup takes its kind only joined ("--backup=numbered"), as
// GNU tools read it, since FILE... may follow it.
struct ParsedLine
{
    std::vector<std::string> positional;
    std::optional<std::string> outputPath; // the last one given
    bool help = false;
    bool helpAfterCommand = false; // "set --help" asks for set's page, "--help set" for all
    bool version = false;
    bool force = false;
    bool raw = false;
    bool strict = false;
    bool quiet = false;
    bool list = false;
    bool checkOnly = false;
    bool eject = false;
    bool all = false;
    bool noPager = false;
    Format format = Format::Text;
    Backup backup = Backup::None;
    std::string fieldsPattern;
    std::string pdfPath;
    std::string title;
    std::string paper;
    bool formatGiven = false;
    std::string fromPath;
    std::string exceptPattern;
    std::string error;
    std::vector<std::string> unknown;

    // The error as the help-less first line of a usage error, or nothing.
    std::optional<std::string> errorText() const
    {
        if (!error.empty())
            return error;
        if (unknown.size() == 1)
            return "Unknown option '" + unknown.front() + "'." +
                   didYouMean("--" + unknown.front(),
                              {"--help", "--version", "--force", "--raw", "--strict", "--format",
                               "--fields", "--backup", "--output", "--quiet", "--list",
                               "--no-pager", "--check-only", "--eject", "--from", "--except",
                               "--all"});
        if (unknown.empty())
            return std::nullopt;
        std::string names;
        for (const std::string &name : unknown)
            names += (names.empty() ? "" : ", ") + name;
        return "Unknown options: " + names + ".";
    }
};

std::optional<Format> formatNamed(const std::string &name)
{
    if (name == "text")
        return Format::Text;
    if (name == "json")
        return Format::Json;
    if (name == "csv")
        return Format::Csv;
    if (name == "html")
        return Format::Html;
    return std::nullopt;
}

// The kinds GNU tools accept, with their older names; without a kind, VERSION_CONTROL's, and
// "existing" when that is not set.
std::optional<Backup> backupNamed(const std::string &name)
{
    if (name == "none" || name == "off")
        return Backup::None;
    if (name == "simple" || name == "never")
        return Backup::Simple;
    if (name == "numbered" || name == "t")
        return Backup::Numbered;
    if (name == "existing" || name == "nil")
        return Backup::Existing;
    return std::nullopt;
}

std::string versionControl()
{
    const char *variable = std::getenv("VERSION_CONTROL");
    return variable ? variable : "";
}

ParsedLine parseLine(const std::vector<std::string> &arguments)
{
    ParsedLine line;
    bool optionsEnded = false;
    const auto askHelp = [&line] {
        line.help = true;
        line.helpAfterCommand = line.helpAfterCommand || !line.positional.empty();
    };
    const auto setFlag = [&](const std::string &name) {
        if (name == "h" || name == "help")
            askHelp();
        else if (name == "version")
            line.version = true;
        else if (name == "force")
            line.force = true;
        else if (name == "strict")
            line.strict = true;
        else if (name == "raw")
            line.raw = true;
        else if (name == "q" || name == "quiet")
            line.quiet = true;
        else if (name == "list")
            line.list = true;
        else if (name == "all")
            line.all = true;
        else if (name == "no-pager")
            line.noPager = true;
        else if (name == "check-only")
            line.checkOnly = true;
        else if (name == "eject")
            line.eject = true;
        else
            return false;
        return true;
    };
    // The options that take a value, once it is known.
    const auto setValue = [&line](const std::string &name, const std::string &value) {
        if (name == "output") {
            line.outputPath = value;
        } else if (name == "format") {
            line.formatGiven = true;
            if (const std::optional<Format> format = formatNamed(value))
                line.format = *format;
            else
                line.error =
                    "Unknown format '" + value + "' (text or json; compare also csv or html).";
        } else if (name == "fields") {
            if (value.empty())
                line.error = "The pattern after '--fields' is empty.";
            line.fieldsPattern = value;
        } else if (name == "pdf") {
            if (value.empty())
                line.error = "The file name after '--pdf' is empty.";
            line.pdfPath = value;
        } else if (name == "title") {
            if (value.empty())
                line.error = "The name after '--title' is empty.";
            line.title = value;
        } else if (name == "paper") {
            if (value != "a4" && value != "letter")
                line.error = "Unknown paper '" + value + "' (a4 or letter).";
            line.paper = value;
        } else if (name == "from") {
            if (value.empty())
                line.error = "The file name after '--from' is empty.";
            line.fromPath = value;
        } else if (name == "except") {
            if (value.empty())
                line.error = "The pattern after '--except' is empty.";
            line.exceptPattern = value;
        }
    };
    const auto takesValue = [](const std::string &name) {
        return name == "output" || name == "format" || name == "fields" || name == "pdf" ||
               name == "title" || name == "paper" || name == "from" || name == "except";
    };
    for (auto it = arguments.begin(); it != arguments.end(); ++it) {
        const std::string &argument = *it;
        const auto takeValue = [&](const std::string &name, const std::string &joined) {
            if (!joined.empty())
                setValue(name, joined);
            else if (std::next(it) != arguments.end())
                setValue(name, *++it);
            else
                line.error = "Missing value after '" + argument + "'.";
        };
        if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
            line.positional.push_back(argument);
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (argument.compare(0, 2, "--") == 0) {
            const std::size_t equals = argument.find('=');
            const std::string name = argument.substr(2, equals - 2);
            if (takesValue(name)) {
                if (equals != std::string::npos)
                    setValue(name, argument.substr(equals + 1));
                else
                    takeValue(name, {});
            } else if (name == "backup") {
                const std::string kind =
                    equals == std::string::npos ? versionControl() : argument.substr(equals + 1);
                const std::optional<Backup> backup = equals == std::string::npos && kind.empty()
                                                         ? Backup::Existing
                                                         : backupNamed(kind);
                if (backup)
                    line.backup = *backup;
                else
                    line.error =
                        "Unknown backup kind '" + kind + "' (simple, numbered or existing).";
            } else if (setFlag(name)) {
                if (equals != std::string::npos)
                    line.error = "Unexpected value after '--" + name + "'.";
            } else {
                line.unknown.push_back(name);
            }
        } else {
            for (std::size_t i = 1; i < argument.size(); ++i) {
                const std::string name(1, argument[i]);
                if (name == "o") {
                    takeValue("output", argument.substr(i + 1));
                    break;
                }
                if (name == "h")
                    askHelp();
                else if (name == "q")
                    line.quiet = true;
                else
                    line.unknown.push_back(name);
            }
        }
    }
    return line;
}

int runCommand(const std::vector<std::string> &arguments, Output &output, bool &isDiff)
{
    // Asked by the shell completion scripts only, so neither listed nor mixed with options.
    if (!arguments.empty() && arguments.front() == kCompleteOption)
        return listCompletions({arguments.begin() + 1, arguments.end()}, output);
    const ParsedLine line = parseLine(arguments);
    if (const std::optional<std::string> error = line.errorText()) {
        const Command *command =
            line.positional.empty() ? nullptr : findCommand(line.positional.front());
        output.usageError(*error, command ? command->name : "");
        return kExitError;
    }
    if (line.help) {
        if (!line.helpAfterCommand) {
            output.out(generalHelp());
            return kExitSuccess;
        }
        Invocation helpFor;
        helpFor.arguments = {line.positional.front()};
        return helpCommand(helpFor, output);
    }
    if (line.version) {
        output.out(std::string("lxconfig ") + LXCONFIG_VERSION + '\n');
        return kExitSuccess;
    }
    if (line.positional.empty()) {
        output.usageError("no command given");
        return kExitError;
    }
    const std::string &name = line.positional.front();
    const Command *command = findCommand(name);
    if (!command) {
        std::vector<std::string> names;
        for (const Command &known : commandTable())
            names.emplace_back(known.name);
        output.usageError("unknown command \"" + name + "\"" + didYouMean(name, names));
        return kExitError;
    }
    isDiff = command->run == diffCommand;
    Invocation invocation;
    invocation.arguments.assign(line.positional.begin() + 1, line.positional.end());
    invocation.outputPath = line.outputPath.value_or(std::string());
    invocation.force = line.force;
    invocation.strict = line.strict;
    invocation.raw = line.raw;
    invocation.quiet = line.quiet;
    invocation.list = line.list;
    invocation.checkOnly = line.checkOnly;
    invocation.eject = line.eject;
    invocation.all = line.all;
    invocation.format = line.format;
    invocation.backup = line.backup;
    invocation.fieldsPattern = line.fieldsPattern;
    invocation.pdfPath = line.pdfPath;
    invocation.title = line.title;
    invocation.paper = line.paper;
    invocation.formatGiven = line.formatGiven;
    invocation.fromPath = line.fromPath;
    invocation.exceptPattern = line.exceptPattern;
    if (!fits(*command, invocation, line.outputPath.has_value())) {
        output.usageError(std::string("usage: lxconfig ") + command->synopsis, command->name);
        return kExitError;
    }
    if (line.outputPath && line.outputPath->empty()) {
        output.usageError("the output file name is empty", command->name);
        return kExitError;
    }
    if (!line.noPager && commandPages(*command))
        startPager();
    return command->run(invocation, output);
}

} // namespace

int run(const std::vector<std::string> &arguments, Output &output)
{
    bool isDiff = false;
    const int status = runCommand(arguments, output, isDiff);
    const bool written = output.finish();
    waitForPager();
    if (written)
        return status;
    // As coreutils do: what could not be written is a failure, for diff a trouble.
    return isDiff ? kExitError : std::max(status, kExitFailure);
}

} // namespace lxconfig
