#include "helptext.h"

namespace lxconfig {

namespace {

std::string leftJustified(std::string text, std::size_t width)
{
    if (text.size() < width)
        text.append(width - text.size(), ' ');
    return text;
}

} // namespace

std::string generalHelp()
{
    std::string text = "Usage: lxconfig COMMAND ARGUMENTS...\n"
                       "Checks, shows and edits Lumarex 2.0 configuration files (LXCONFIG.BIN).\n"
                       "\n"
                       "Commands:\n";
    for (const Command &command : commandTable())
        text += "  " + leftJustified(command.synopsis, 26) + command.summary + '\n';
    text += "\n"
            "Options:\n"
            "  -o, --output FILE         the file to write\n"
            "  --force                   set, apply: store a value the window cannot hold\n"
            "  --raw                     set, apply: the stored numbers as given, no rules\n"
            "  --strict                  check: also what the editor's load and save change\n"
            "  --backup[=KIND]           keep the replaced file as FILE~ (simple) or FILE.~N~\n"
            "                            (numbered); without KIND, as VERSION_CONTROL says\n"
            "  --format FORMAT           check, show, diff, cards: text (the default) or json\n"
            "                            compare: also csv or html\n"
            "  --fields PATTERN          apply: only the template's fields that match\n"
            "  --pdf OUT.pdf             report: print the sheet to a PDF (headless Chromium)\n"
            "  --title NAME              report: the camera's name on every sheet\n"
            "  --paper SIZE              report: a4 or letter\n"
            "  -q, --quiet               set, apply: no list of changes; check: print nothing\n"
            "  --list                    explain: the settings index\n"
            "  --check-only              write: nothing, only what would change on the card\n"
            "  --eject                   write: then unmount the card and power it off\n"
            "  --format text             export, import: the settings as NAME = VALUE lines\n"
            "  --from TEXT               set: the settings as text ('-': standard input)\n"
            "  --except PATTERN          apply: leave the fields that match as they are\n"
            "  --all                     compare: every setting, not only those that differ\n"
            "  --no-pager                never page the output on a terminal\n"
            "  -h, --help                show this help\n"
            "  --version                 show the version\n"
            "\n"
            "Exit status: 0 success, 1 a file is not valid or a command failed\n"
            "(diff, compare: the files differ), 2 a wrong command line (diff, compare:\n"
            "any failure).\n";
    return text;
}

std::string commandHelp(const Command &command)
{
    // A command without a page of its own yet gets its line of the general help.
    std::string text =
        std::string("Usage: lxconfig ") + command.synopsis + "\n" +
        (command.description ? command.description : std::string(command.summary) + ".\n");
    const std::vector<OptionInfo> options = optionsOf(command);
    text += "\nOptions:\n";
    for (const OptionInfo &option : options)
        text += "  " + leftJustified(option.names, 26) + option.text + '\n';
    text += "  " + leftJustified("-h, --help", 26) + "show this help\n";
    if (command.example)
        text += std::string("\nExample:\n  ") + command.example + '\n';
    return text;
}

} // namespace lxconfig
