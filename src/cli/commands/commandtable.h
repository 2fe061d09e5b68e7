#pragma once

// lxconfig's commands as data: the one list that the parser, the help pages and the shell
// completion read.

#include "commands.h"

#include <string>
#include <vector>

namespace lxconfig {

enum class OutputOption
{
    None,
    Optional,
    Required
};

// The options besides -o and --help that a command accepts.
enum Accepts : unsigned
{
    kNoOption = 0,
    kForce = 1u << 0,
    kStrict = 1u << 1,
    kFormat = 1u << 2,
    kBackup = 1u << 3,
    kFields = 1u << 4,
    kSheet = 1u << 5, // report's --pdf, --title and --paper
    kRaw = 1u << 6,
    kQuiet = 1u << 7,
    kList = 1u << 8,
    kCheckOnly = 1u << 9,
    kEject = 1u << 10,
    kTextForm = 1u << 11, // export's and import's --format: json or text
    kFrom = 1u << 12,
    kExcept = 1u << 13,
    kAll = 1u << 14,          // compare's --all
    kTableFormats = 1u << 15, // --format text, json, csv or html (compare)
};

inline constexpr int kAnyNumber = -1;

struct Command
{
    const char *name;
    const char *synopsis; // as the general help lists it
    const char *summary;  // ditto
    int minArguments;
    int maxArguments; // kAnyNumber: no limit
    OutputOption output;
    unsigned accepts; // Accepts
    int (*run)(const Invocation &, Output &);
    const char *description; // the command's help page: what it does, in full sentences
    const char *example;     // and one command line that uses it
};

const std::vector<Command> &commandTable();
const Command *findCommand(const std::string &name);

// An option as a command's help page and the shell completion show it.
struct OptionInfo
{
    unsigned bit;      // Accepts; 0 for -o
    const char *names; // "--strict", "-o, --output FILE"
    const char *text;
    std::vector<const char *> words; // what the shell completes: "--strict"; "-o", "--output"
};

// The options the command takes, -o first when it takes one.
std::vector<OptionInfo> optionsOf(const Command &command);

} // namespace lxconfig
