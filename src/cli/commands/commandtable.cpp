#include "commandtable.h"

#include <algorithm>

namespace lxconfig {

const std::vector<Command> &commandTable()
{
    static const std::vector<Command> table = {
        {"check", "check FILE...", "tell whether each file loads in the editor", 1, kAnyNumber,
         OutputOption::None, kStrict | kFormat | kQuiet, checkCommand,
         "For each file one line: \"valid\", or the first check of the editor's load that the\n"
         "file fails (open, read, magic, format version, checksum). With --strict, after a file\n"
         "the editor loads, one line per value that its load and an immediate save would not\n"
         "keep, with the reason. Exit status 1 when a file is not valid or has such a value.\n"
         "With -q nothing is printed: the exit status alone answers.\n",
         "lxconfig check --strict LXCONFIG.BIN"},
        {"show", "show FILE", "list every field with its offset and value", 1, 1,
         OutputOption::None, kFormat, showCommand,
         "Every field of the record with its name, offset and value; list indexes and mode\n"
         "codes also with the text the editor shows for them.\n",
         "lxconfig show LXCONFIG.BIN"},
        {"export", "export FILE [-o OUT]", "write the fields as JSON to standard output or OUT", 1,
         1, OutputOption::Optional, kBackup | kTextForm, exportCommand,
         "The fields as a JSON object, one key per field, for scripts to read or edit and\n"
         "import to write back.\n"
         "With --format text, the settings as text: one NAME = VALUE line per setting, page by\n"
         "page, in the window's words (a stored value the window shows otherwise as the number\n"
         "with a note), then the header, constants and checksum: every byte of the file, and\n"
         "nothing that changes between runs. git can diff files through it (textconv).\n",
         "lxconfig export LXCONFIG.BIN -o config.json"},
        {"import", "import JSON -o FILE", "write the record that a JSON form describes", 1, 1,
         OutputOption::Required, kBackup | kTextForm, importCommand,
         "Writes the record that a JSON form (as export writes it) describes, with a fresh\n"
         "checksum. A missing, unknown or repeated key or a value out of its field's range is\n"
         "reported with the key's name, and nothing is written.\n"
         "With --format text, the settings as export --format text writes them, every setting\n"
         "once (crc may be left out): the file is restored byte for byte, values the window\n"
         "cannot hold included; an error names the line.\n",
         "lxconfig import config.json -o LXCONFIG.BIN"},
        {"defaults", "defaults -o FILE", "write what the editor saves from its untouched form", 0,
         0, OutputOption::Required, kBackup, defaultsCommand,
         "Writes the exact bytes the editor saves from its untouched form.\n",
         "lxconfig defaults -o LXCONFIG.BIN"},
        {"set", "set FILE SETTING=VALUE...", "change settings as the window does", 1, kAnyNumber,
         OutputOption::None, kForce | kBackup | kRaw | kQuiet | kFrom, setCommand,
         "Changes settings of the file as an operator changes them in the window, in the order\n"
         "given, the form's rules included, and mends the checksum. SETTING is a field name in\n"
         "any letter case or the caption the window shows (PAGE:CAPTION where one repeats);\n"
         "VALUE an item text or its beginning, on or off, a decimal as shown, or the stored\n"
         "number. A setting the window locks is refused with what frees it, unless it already\n"
         "holds the value; a value the window cannot hold is refused unless --force is given.\n"
         "--raw writes the stored numbers as given, without rules (FIELD[i]=VALUE one element);\n"
         "with --raw, --force also writes a magic or format version the editor refuses.\n"
         "A file that fails check is refused. Prints a line for the file, then each setting\n"
         "that changed, old -> new, as diff shows them, naming the rule that changed it\n"
         "(-q: nothing). A file in which nothing changes is neither rewritten nor backed up.\n"
         "--from TEXT takes the settings from a text form (export --format text; '-' reads\n"
         "standard input; lines beginning with '#' and blank lines are ignored) in one write,\n"
         "all or nothing, as the window changes them; a line that names the value the file\n"
         "holds changes nothing. An error names the line.\n",
         "lxconfig set LXCONFIG.BIN gpsReceiver=0 serialBaudrate=9600"},
        {"diff", "diff A [B]", "list the fields that differ (one file: from the defaults)", 1, 2,
         OutputOption::None, kFormat, diffCommand,
         "The fields that differ between two files with both values; with one file, those\n"
         "that differ from the editor's defaults. Exit status 1 when they differ, 2 on any\n"
         "failure.\n",
         "lxconfig diff LXCONFIG.BIN NEW.BIN"},
        {"explain", "explain [NAME]", "where a setting is in the window and what it may hold", 0, 1,
         OutputOption::None, kList, explainCommand,
         "For the field with that field name, control name or caption: its page and caption,\n"
         "its items and their stored values, start value, range, place in the file, and the\n"
         "form rules that lock or preset it. Without a name, every field, page by page. With\n"
         "--list, the settings index: one line per setting with its page, caption, name and\n"
         "items.\n",
         "lxconfig explain Baudrate"},
        {"resave", "resave FILE -o OUT", "write what the editor saves after loading FILE", 1, 1,
         OutputOption::Required, kBackup, resaveCommand,
         "Writes the 167 bytes the editor saves when a freshly started window reads FILE and at\n"
         "once writes it. A file the editor refuses is reported as check reports it, and\n"
         "nothing is written.\n",
         "lxconfig resave LXCONFIG.BIN -o RESAVED.BIN"},
        {"apply", "apply TEMPLATE FILE...", "set a JSON template's fields in each file", 2,
         kAnyNumber, OutputOption::None, kFields | kBackup | kForce | kRaw | kQuiet | kExcept,
         applyCommand,
         "Sets the fields of a JSON form with all or only some keys (as export writes it) in\n"
         "each file, as set would: checked, locked, changed as the window changes them (the\n"
         "gimbal, GPS receiver, external shutter and trigger pin mode first), the checksum\n"
         "mended, replaced safely. One line per file, then each setting that changed, old ->\n"
         "new (-q: nothing); a file in which nothing changes is not rewritten. Exit status 1\n"
         "if any failed. --fields takes a comma-separated list of shell patterns. With --raw\n"
         "the stored numbers are written as given, and a warning names the fields a form rule\n"
         "ties to a field that the template sets without them.\n"
         "--except takes patterns as --fields does and leaves those fields as each file has\n"
         "them; so does a template's \"keep\" key, a list of such patterns.\n",
         "lxconfig apply --fields 'serial*,gpsReceiver' fleet.json cam*/LXCONFIG.BIN"},
        {"report", "report FILE... [-o OUT]", "write a printable settings sheet (HTML)", 1,
         kAnyNumber, OutputOption::Optional, kBackup | kSheet, reportCommand,
         "One HTML page, to print on A4 or Letter, with a section per file: its camera, a\n"
         "sign-off block, its checksum and the editor's verdict, the eight pages of the window\n"
         "in tab order with the editor's captions and item texts, the values that differ from\n"
         "the untouched form marked, and what the editor would change. Every sheet names the\n"
         "camera and file and shows the date and page N of M. The camera is the file's folder\n"
         "name unless --title names it. --pdf prints the page to a PDF through a headless\n"
         "Chromium found on PATH (A4 unless --paper letter). Exit status 1 when a file is not\n"
         "valid; an OUT that is one of the FILEs is refused, so a sheet never replaces a\n"
         "camera's file. Without -o or --pdf on a terminal it refuses to print the HTML: name\n"
         "a file with -o, or pipe it.\n",
         "lxconfig report cam*/LXCONFIG.BIN --pdf settings.pdf"},
        {"cards", "cards", "list the mounted memory cards and their LXCONFIG.BIN", 0, 0,
         OutputOption::None, kFormat, cardsCommand,
         "The memory cards and USB sticks that are mounted, from the kernel's own tables: each\n"
         "with its mount point, device, file system, size and free space, label, whether it is\n"
         "read-only, and what check says of the LXCONFIG.BIN at its root (valid, refused and\n"
         "why, unreadable and why, or none).\n",
         "lxconfig cards"},
        {"write", "write FILE [CARD]", "put a file on a card as LXCONFIG.BIN and read it back", 1,
         2, OutputOption::None, kBackup | kCheckOnly | kEject, writeCommand,
         "Puts FILE, which must pass check, on the card mounted at CARD as LXCONFIG.BIN, the old\n"
         "file replaced safely; CARD may be left out when exactly one card is mounted. The file\n"
         "is flushed to the card and read back from it, past every cache, before and after it\n"
         "replaces the old one: \"written and verified\", or what went wrong (write-protected,\n"
         "full, removed, or a card that does not keep what is written), the old file left as it\n"
         "was wherever the card allows it; exit status 1 then. Then whether the card can be\n"
         "pulled. --eject unmounts it and powers it off through udisksctl. --check-only writes\n"
         "nothing and lists what would change on the card, as diff does.\n",
         "lxconfig write --eject LXCONFIG.BIN /media/operator/CAM1"},
        {"help", "help [COMMAND]", "show this help, or a command's", 0, 1, OutputOption::None,
         kNoOption, helpCommand,
         "Without a command, the list of commands and options; with one, its own page, as\n"
         "lxconfig COMMAND --help shows it.\n",
         "lxconfig help set"},
        {"compare", "compare FILE...", "one table of the settings that differ across the files", 1,
         kAnyNumber, OutputOption::None, kAll | kTableFormats, compareCommand,
         "One table with a row per setting that differs across the files (every setting with\n"
         "--all) and a column per file, named by the shortest tail of its path that tells it\n"
         "from the others. Values are in the window's words, as set takes them. Each row says\n"
         "how the files group, most common value first, and names the files of the minority,\n"
         "whose values are marked *. On a terminal as wide as the table (or COLUMNS), files are\n"
         "columns; else a line per setting and file. Files the editor refuses are listed with\n"
         "the reason. --format json, csv or html (a page in the style of report) for other\n"
         "programs. Each file is read twice, so standard input is not taken. Exit status 0\n"
         "when the files hold the same settings, 1 when they differ, 2 when a file is refused\n"
         "or cannot be read.\n",
         "lxconfig compare cam*/LXCONFIG.BIN"},
    };
    return table;
}

const Command *findCommand(const std::string &name)
{
    const std::vector<Command> &table = commandTable();
    const auto it = std::find_if(table.begin(), table.end(),
                                 [&name](const Command &command) { return name == command.name; });
    return it == table.end() ? nullptr : &*it;
}

std::vector<OptionInfo> optionsOf(const Command &command)
{
    static const OptionInfo output{
        0, "-o, --output FILE", "the file to write ('-': standard output)", {"-o", "--output"}};
    static const std::vector<OptionInfo> options = {
        {kStrict,
         "--strict",
         "also every value the editor's load and save would change",
         {"--strict"}},
        {kForce, "--force", "store a value the window cannot hold", {"--force"}},
        {kRaw, "--raw", "write the stored numbers as given, without the form's rules", {"--raw"}},
        {kFormat, "--format FORMAT", "text (the default) or json", {"--format"}},
        {kFields, "--fields PATTERN", "only the template's fields whose names match", {"--fields"}},
        {kSheet, "--pdf OUT.pdf", "print the sheet to a PDF with a headless Chromium", {"--pdf"}},
        {kSheet, "--title NAME", "the camera's name on every sheet", {"--title"}},
        {kSheet,
         "--paper SIZE",
         "a4 or letter (the default: the printer's; A4 for --pdf)",
         {"--paper"}},
        {kBackup,
         "--backup[=KIND]",
         "keep the old file: simple, numbered or existing",
         {"--backup", "--backup=simple", "--backup=numbered", "--backup=existing"}},
        {kQuiet,
         "-q, --quiet",
         "set, apply: no list of changes; check: print nothing",
         {"-q", "--quiet"}},
        {kList, "--list", "the settings index: page, caption, name, items", {"--list"}},
        {kCheckOnly,
         "--check-only",
         "write nothing: what would change on the card",
         {"--check-only"}},
        {kEject, "--eject", "then unmount the card and power it off", {"--eject"}},
        {kTextForm,
         "--format FORMAT",
         "json (the default) or text: NAME = VALUE lines",
         {"--format"}},
        {kFrom, "--from TEXT", "the settings as text, from TEXT ('-': standard input)", {"--from"}},
        {kExcept,
         "--except PATTERN",
         "leave the fields whose names match as they are",
         {"--except"}},
        {kAll, "--all", "every setting, also those all files hold alike", {"--all"}},
        {kTableFormats, "--format FORMAT", "text (the default), json, csv or html", {"--format"}},
    };
    std::vector<OptionInfo> taken;
    if (command.output != OutputOption::None)
        taken.push_back(output);
    for (const OptionInfo &option : options) {
        if (command.accepts & option.bit)
            taken.push_back(option);
    }
    return taken;
}

} // namespace lxconfig
