// The command line itself: help, version and the mistakes that make lxconfig exit with 2.

#include "tst_cli.h"

#include "helptext.h"
#include "workspace.h"

#include <QTest>

namespace {

const QString kHelp = QStringLiteral(
    "Usage: lxconfig COMMAND ARGUMENTS...\n"
    "Checks, shows and edits Lumarex 2.0 configuration files (LXCONFIG.BIN).\n"
    "\n"
    "Commands:\n"
    "  check FILE...             tell whether each file loads in the editor\n"
    "  show FILE                 list every field with its offset and value\n"
    "  export FILE [-o OUT]      write the fields as JSON to standard output or OUT\n"
    "  import JSON -o FILE       write the record that a JSON form describes\n"
    "  defaults -o FILE          write what the editor saves from its untouched form\n"
    "  set FILE SETTING=VALUE... change settings as the window does\n"
    "  diff A [B]                list the fields that differ (one file: from the defaults)\n"
    "  explain [NAME]            where a setting is in the window and what it may hold\n"
    "  resave FILE -o OUT        write what the editor saves after loading FILE\n"
    "  apply TEMPLATE FILE...    set a JSON template's fields in each file\n"
    "  report FILE... [-o OUT]   write a printable settings sheet (HTML)\n"
    "  cards                     list the mounted memory cards and their LXCONFIG.BIN\n"
    "  write FILE [CARD]         put a file on a card as LXCONFIG.BIN and read it back\n"
    "  help [COMMAND]            show this help, or a command's\n"
    "  compare FILE...           one table of the settings that differ across the files\n"
    "\n"
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
    "any failure).\n");

const QString kSetHelp = QStringLiteral(
    "Usage: lxconfig set FILE SETTING=VALUE...\n"
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
    "holds changes nothing. An error names the line.\n"
    "\n"
    "Options:\n"
    "  --force                   store a value the window cannot hold\n"
    "  --raw                     write the stored numbers as given, without the form's rules\n"
    "  --backup[=KIND]           keep the old file: simple, numbered or existing\n"
    "  -q, --quiet               set, apply: no list of changes; check: print nothing\n"
    "  --from TEXT               the settings as text, from TEXT ('-': standard input)\n"
    "  -h, --help                show this help\n"
    "\n"
    "Example:\n"
    "  lxconfig set LXCONFIG.BIN gpsReceiver=0 serialBaudrate=9600\n");

const QString kTryHelp = QStringLiteral("Try 'lxconfig --help'.\n");

// A usage error of a known command points at that command's page.
QString tryHelp(const QString &command)
{
    return "Try 'lxconfig help " + command + "'.\n";
}

QString usage(const QString &synopsis)
{
    return QStringLiteral("lxconfig: usage: lxconfig ") + synopsis + '\n' +
           tryHelp(synopsis.section(' ', 0, 0));
}

} // namespace

void TestCli::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");

    QTest::newRow("--help") << QStringList{"--help"} << 0 << kHelp << "";
    QTest::newRow("-h") << QStringList{"-h"} << 0 << kHelp << "";
    QTest::newRow("help before a command") << QStringList{"--help", "check"} << 0 << kHelp << "";
    QTest::newRow("help command") << QStringList{"help"} << 0 << kHelp << "";
    QTest::newRow("help of a command") << QStringList{"help", "set"} << 0 << kSetHelp << "";
    QTest::newRow("--help after a command") << QStringList{"set", "--help"} << 0 << kSetHelp << "";
    QTest::newRow("-h after a command and its arguments")
        << QStringList{"set", "good.bin", "gpsReceiver=0", "-h"} << 0 << kSetHelp << "";
    QTest::newRow("help of an unknown command")
        << QStringList{"help", "frobnicate"} << 2 << ""
        << "lxconfig: unknown command \"frobnicate\"\n" + kTryHelp;
    QTest::newRow("--help after an unknown command")
        << QStringList{"frobnicate", "--help"} << 2 << ""
        << "lxconfig: unknown command \"frobnicate\"\n" + kTryHelp;
    QTest::newRow("help of two commands")
        << QStringList{"help", "set", "check"} << 2 << "" << usage("help [COMMAND]");
    QTest::newRow("--version") << QStringList{"--version"} << 0
                               << QStringLiteral("lxconfig " PROJECT_VERSION "\n") << "";
    QTest::newRow("no command") << QStringList{} << 2 << ""
                                << "lxconfig: no command given\n" + kTryHelp;
    QTest::newRow("unknown command") << QStringList{"frobnicate", "good.bin"} << 2 << ""
                                     << "lxconfig: unknown command \"frobnicate\"\n" + kTryHelp;
    QTest::newRow("unknown short option") << QStringList{"check", "-x", "good.bin"} << 2 << ""
                                          << "lxconfig: Unknown option 'x'.\n" + tryHelp("check");
    QTest::newRow("unknown long option")
        << QStringList{"--colour", "show", "good.bin"} << 2 << ""
        << "lxconfig: Unknown option 'colour'.\n" + tryHelp("show");
    QTest::newRow("-o without a value")
        << QStringList{"export", "good.bin", "-o"} << 2 << ""
        << "lxconfig: Missing value after '-o'.\n" + tryHelp("export");
    QTest::newRow("check without files")
        << QStringList{"check"} << 2 << "" << usage("check FILE...");
    QTest::newRow("check with -o")
        << QStringList{"check", "good.bin", "-o", "x"} << 2 << "" << usage("check FILE...");
    QTest::newRow("show without a file") << QStringList{"show"} << 2 << "" << usage("show FILE");
    QTest::newRow("show with two files")
        << QStringList{"show", "good.bin", "long.bin"} << 2 << "" << usage("show FILE");
    QTest::newRow("export with two files") << QStringList{"export", "good.bin", "long.bin"} << 2
                                           << "" << usage("export FILE [-o OUT]");
    QTest::newRow("import without -o")
        << QStringList{"import", "in.json"} << 2 << "" << usage("import JSON -o FILE");
    QTest::newRow("import without JSON")
        << QStringList{"import", "-o", "x.bin"} << 2 << "" << usage("import JSON -o FILE");
    QTest::newRow("defaults without -o")
        << QStringList{"defaults"} << 2 << "" << usage("defaults -o FILE");
    QTest::newRow("defaults with a file") << QStringList{"defaults", "good.bin", "-o", "x.bin"} << 2
                                          << "" << usage("defaults -o FILE");
    QTest::newRow("set without changes")
        << QStringList{"set", "good.bin"} << 2 << "" << usage("set FILE SETTING=VALUE...");
    QTest::newRow("force with another command") << QStringList{"defaults", "--force", "-o", "x.bin"}
                                                << 2 << "" << usage("defaults -o FILE");
    QTest::newRow("empty output name")
        << QStringList{"defaults", "-o", ""} << 2 << ""
        << "lxconfig: the output file name is empty\n" + tryHelp("defaults");
    QTest::newRow("empty output name, export")
        << QStringList{"export", "good.bin", "--output="} << 2 << ""
        << "lxconfig: the output file name is empty\n" + tryHelp("export");
    QTest::newRow("set with -o") << QStringList{"set", "good.bin", "gimbalRc=1", "-o", "x.bin"} << 2
                                 << "" << usage("set FILE SETTING=VALUE...");
    QTest::newRow("diff without files") << QStringList{"diff"} << 2 << "" << usage("diff A [B]");
    QTest::newRow("diff with three files")
        << QStringList{"diff", "good.bin", "long.bin", "short.bin"} << 2 << ""
        << usage("diff A [B]");
    QTest::newRow("strict with another command")
        << QStringList{"show", "--strict", "good.bin"} << 2 << "" << usage("show FILE");
    QTest::newRow("backup with a command that replaces nothing")
        << QStringList{"check", "--backup", "good.bin"} << 2 << "" << usage("check FILE...");
    QTest::newRow("unknown backup kind")
        << QStringList{"defaults", "--backup=always", "-o", "x.bin"} << 2 << ""
        << "lxconfig: Unknown backup kind 'always' (simple, numbered or existing).\n" +
               tryHelp("defaults");
    QTest::newRow("backup kind as a separate word")
        << QStringList{"defaults", "--backup", "simple", "-o", "x.bin"} << 2 << ""
        << usage("defaults -o FILE");
    QTest::newRow("unknown format")
        << QStringList{"check", "--format", "xml", "good.bin"} << 2 << ""
        << "lxconfig: Unknown format 'xml' (text or json; compare also csv or html).\n" +
               tryHelp("check");
    QTest::newRow("format without a value")
        << QStringList{"check", "good.bin", "--format"} << 2 << ""
        << "lxconfig: Missing value after '--format'.\n" + tryHelp("check");
    QTest::newRow("explain with two names")
        << QStringList{"explain", "GPS", "Baudrate"} << 2 << "" << usage("explain [NAME]");
    QTest::newRow("quiet with another command")
        << QStringList{"show", "-q", "good.bin"} << 2 << "" << usage("show FILE");
    QTest::newRow("list with another command")
        << QStringList{"show", "--list", "good.bin"} << 2 << "" << usage("show FILE");
    QTest::newRow("explain --list with a name")
        << QStringList{"explain", "--list", "GPS"} << 2 << ""
        << "lxconfig: --list takes no name\n" + tryHelp("explain");
    QTest::newRow("resave without -o")
        << QStringList{"resave", "good.bin"} << 2 << "" << usage("resave FILE -o OUT");
    QTest::newRow("resave without a file")
        << QStringList{"resave", "-o", "x.bin"} << 2 << "" << usage("resave FILE -o OUT");
}

void TestCli::commandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, out);
    QFETCH(QString, err);

    const Workspace workspace;
    COMPARE_RUN(workspace.run(arguments), exitCode, out, err);
    // A refused command line writes nothing.
    QVERIFY(!workspace.exists("x.bin"));
}

void TestCli::helpOfCommandWithoutPage()
{
    // A command added to the table before its page is written: its line of the general help.
    const lxconfig::Command command{"frobnicate",
                                    "frobnicate FILE -o OUT",
                                    "turn the knobs",
                                    1,
                                    1,
                                    lxconfig::OutputOption::Required,
                                    lxconfig::kBackup,
                                    nullptr,
                                    nullptr,
                                    nullptr};
    QCOMPARE(QString::fromStdString(lxconfig::commandHelp(command)),
             QStringLiteral(
                 "Usage: lxconfig frobnicate FILE -o OUT\n"
                 "turn the knobs.\n"
                 "\n"
                 "Options:\n"
                 "  -o, --output FILE         the file to write ('-': standard output)\n"
                 "  --backup[=KIND]           keep the old file: simple, numbered or existing\n"
                 "  -h, --help                show this help\n"));
}

QTEST_MAIN(TestCli)
