// lxconfig's shell completion, run in the real shells: bash (the function bash's programmable
// completion calls, bash-completion loaded, the line cut into words as bash cuts it), zsh (the
// function as compinit loads it, with compadd captured) and fish (its own completion engine,
// `complete -C`). Each completes commands, a command's options, field names after `set FILE` and
// for `explain`, the values the window offers after `set FILE NAME=`, and file names, from the
// built lxconfig.

#include "workspace.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

namespace {

const QString kCompletions = QStringLiteral(COMPLETIONS_DIR);
const QString kHarnesses = QStringLiteral(HARNESS_DIR);
// What bash-harness.sh loads first, as an interactive bash does.
const QString kBashCompletion = QStringLiteral("/usr/share/bash-completion/bash_completion");

struct Shell
{
    QString program;
    QStringList arguments; // before the words of the line
};

// The shell's command line for completing `words` (the last one under the cursor), or the
// reason it cannot run here.
Shell shellFor(const QString &name, const QStringList &words)
{
    if (name == "bash")
        return {"bash", QStringList{"--norc", "--noprofile", kHarnesses + "/bash-harness.sh",
                                    kCompletions + "/lxconfig.bash"} +
                            words};
    if (name == "zsh")
        return {"zsh", QStringList{"-f", kHarnesses + "/zsh-harness.zsh", kCompletions} + words};
    // fish completes a line as typed, the cursor at its end.
    return {"fish",
            {"--no-config", "-c",
             "source " + kCompletions + "/lxconfig.fish; complete -C" +
                 words.join(' ').prepend('\'').append('\'')}};
}

} // namespace

class TestCompletion : public QObject
{
    Q_OBJECT

private slots:
    void offered_data();
    void offered();
    void installedWhereShellsLook();
};

void TestCompletion::offered_data()
{
    QTest::addColumn<QString>("shell");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("expected");

    for (const char *shell : {"bash", "zsh", "fish"}) {
        const QString files = QString(shell) == "zsh" ? "(files)" : "good.bin";
        const auto row = [shell](const char *name) {
            return &QTest::newRow(qPrintable(QString(shell) + ": " + name));
        };
        *row("commands") << shell << QStringList{"lxconfig", "e"}
                         << QStringList{"export", "explain"};
        *row("commands after an option")
            << shell << QStringList{"lxconfig", "--format", "json", "d"}
            << QStringList{"defaults", "diff"};
        *row("check's options") << shell << QStringList{"lxconfig", "check", "--s"}
                                << QStringList{"--strict"};
        *row("set's options") << shell << QStringList{"lxconfig", "set", "--f"}
                              << QStringList{"--force", "--from"};
        *row("field after set FILE") << shell << QStringList{"lxconfig", "set", "good.bin", "gps"}
                                     << QStringList{"gpsReceiver="};
        *row("field after another change")
            << shell << QStringList{"lxconfig", "set", "good.bin", "gpsReceiver=0", "serialB"}
            << QStringList{"serialBaudrate="};
        *row("explain's names") << shell << QStringList{"lxconfig", "explain", "esoHeat"}
                                << QStringList{"esoHeatcycle", "esoHeating"};
        *row("format's values") << shell << QStringList{"lxconfig", "check", "--format", ""}
                                << QStringList{"json", "text"};
        *row("help's commands") << shell << QStringList{"lxconfig", "help", "res"}
                                << QStringList{"resave"};
        *row("compare") << shell << QStringList{"lxconfig", "comp"} << QStringList{"compare"};
        *row("compare's options") << shell << QStringList{"lxconfig", "compare", "--a"}
                                  << QStringList{"--all"};
        *row("file after check") << shell << QStringList{"lxconfig", "check", "goo"}
                                 << QStringList{files};
        *row("file after set") << shell << QStringList{"lxconfig", "set", "goo"}
                               << QStringList{files};
        *row("file after --from") << shell
                                  << QStringList{"lxconfig", "set", "good.bin", "--from", "goo"}
                                  << QStringList{files};
        *row("field after --except")
            << shell << QStringList{"lxconfig", "apply", "--except", "serialB"}
            << QStringList{"serialBaudrate"};
        // Words that hold an "=", which bash also cuts there.
        const bool bash = QString(shell) == "bash"; // bash replaces only what follows the "="
        *row("file after --backup=KIND")
            << shell << QStringList{"lxconfig", "set", "--backup=numbered", "goo"}
            << QStringList{files};
        *row("field after --backup=KIND")
            << shell << QStringList{"lxconfig", "set", "--backup=numbered", "good.bin", "gps"}
            << QStringList{"gpsReceiver="};
        *row("nothing after a number's NAME=")
            << shell << QStringList{"lxconfig", "set", "good.bin", "triggerLow="} << QStringList{};
        // The values the window offers after NAME=, quoted as each shell inserts them: bash gets
        // what follows the "=" with backslashes, zsh's compadd quotes the same way behind the
        // kept NAME=, fish offers the whole word and escapes it itself as it inserts it.
        const QString shellName(shell);
        const auto values = [&shellName, bash](const QString &name, const QStringList &items) {
            QStringList offered;
            for (const QString &item : items) {
                QString word;
                for (const QChar c : item) {
                    if (shellName != "fish" && QString(" ()").contains(c))
                        word += '\\';
                    word += c;
                }
                offered << (bash ? word : name + '=' + word);
            }
            return offered;
        };
        *row("combo box item after NAME=")
            << shell << QStringList{"lxconfig", "set", "good.bin", "gpsReceiver=Cu"}
            << values("gpsReceiver", {"Custom settings"});
        *row("item texts with commas and the registered sign")
            << shell << QStringList{"lxconfig", "set", "good.bin", "gpsReceiver=L"}
            << values("gpsReceiver",
                      {"Lumarex GPS Receiver - based on u-blox 6 SuperSense® chipset",
                       "Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT chipset",
                       "Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS UBX-M8030-KT "
                       "chipset"});
        *row("item texts with parentheses")
            << shell << QStringList{"lxconfig", "set", "good.bin", "triggerPinMode=PWM"}
            << values("triggerPinMode", {"PWM (normal)", "PWM (inverted)"});
        *row("every item after NAME=")
            << shell << QStringList{"lxconfig", "set", "good.bin", "serialParity="}
            << values("serialParity", {"none", "odd", "even"});
        *row("on and off for a check box")
            << shell << QStringList{"lxconfig", "set", "good.bin", "externalShutter="}
            << values("externalShutter", {"on", "off"});
        // set ignores letter case; zsh matches case as the user's matcher-list says.
        if (shellName != "zsh")
            *row("value in any letter case")
                << shell << QStringList{"lxconfig", "set", "good.bin", "gpsReceiver=cu"}
                << values("gpsReceiver", {"Custom settings"});
        *row("NAME read as set reads it")
            << shell
            << QStringList{"lxconfig", "set", "good.bin", "gpsReceiver=0", "SERIALPARITY=o"}
            << values("SERIALPARITY", {"odd"});
        *row("backup's kinds") << shell << QStringList{"lxconfig", "set", "--backup=n"}
                               << QStringList{bash ? "numbered" : "--backup=numbered"};
        *row("format's value joined") << shell << QStringList{"lxconfig", "check", "--format=j"}
                                      << QStringList{bash ? "json" : "--format=json"};
        *row("fields' names joined") << shell << QStringList{"lxconfig", "apply", "--fields=gpsR"}
                                     << QStringList{bash ? "gpsReceiver" : "--fields=gpsReceiver"};
    }
}

void TestCompletion::offered()
{
    QFETCH(QString, shell);
    QFETCH(QStringList, words);
    QFETCH(QStringList, expected);

    if (QStandardPaths::findExecutable(shell).isEmpty())
        QSKIP(qPrintable(shell + " is not installed (scripts/install-deps.sh test installs it)"));
    if (shell == "bash" && !QFileInfo::exists(kBashCompletion))
        QSKIP("bash-completion is not installed (scripts/install-deps.sh test installs it)");
    const Workspace workspace; // good.bin and the other samples
    const Shell command = shellFor(shell, words);
    QProcess process;
    process.setWorkingDirectory(workspace.path("."));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PATH", QFileInfo(QStringLiteral(LXCONFIG_PATH)).path() + ':' +
                                   environment.value("PATH"));
    environment.insert("HOME", workspace.path(".")); // fish keeps its state there
    process.setProcessEnvironment(environment);
    process.start(command.program, command.arguments);
    QVERIFY(process.waitForFinished(-1));
    const QString err = QString::fromUtf8(process.readAllStandardError());
    QCOMPARE(process.exitCode(), 0);
    QStringList offered;
    for (const QString &line : QString::fromUtf8(process.readAllStandardOutput()).split('\n')) {
        if (!line.isEmpty())
            offered << line.section('\t', 0, 0); // fish adds a description after a tab
    }
    offered.sort();
    expected.sort();
    QVERIFY2(offered == expected, qPrintable(offered.join(' ') + " / expected: " +
                                             expected.join(' ') + " / stderr: " + err));
}

void TestCompletion::installedWhereShellsLook()
{
    // Each shell finds a command's completion by the command's name in these folders.
    QVERIFY(QFileInfo::exists(kCompletions + "/lxconfig.bash"));
    QVERIFY(QFileInfo::exists(kCompletions + "/_lxconfig"));
    QVERIFY(QFileInfo::exists(kCompletions + "/lxconfig.fish"));
    if (QStandardPaths::findExecutable("pkg-config").isEmpty())
        return;
    QProcess process;
    process.start("pkg-config", {"--variable=completionsdir", "bash-completion"});
    process.waitForFinished(-1);
    const QString bashFolder = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    if (!bashFolder.isEmpty())
        QCOMPARE(bashFolder, QStringLiteral("/usr/share/bash-completion/completions"));
}

QTEST_GUILESS_MAIN(TestCompletion)
#include "tst_completion.moc"
