// A failed write changes nothing and leaves no file behind: full filesystems, file-size limits,
// full devices, folders that refuse new files, failing standard output, and a kill at every
// system call of the write.

#include "card.h"
#include "expected.h"
#include "shellrun.h"
#include "tst_lxconfigfiles.h"
#include "workspace.h"
#include "writecommands.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <csignal>
#include <cstring>

namespace {

void addWriteCommandRows()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("result");
    for (const WriteCommand &command : writeCommands())
        QTest::newRow(command.name) << command.line << command.result;
}

// After the script, the report lines it printed: "status N", the folder's entries, "same" or
// "changed" for the target against oldRecord().
QString reportLines(const QString &folder, const QString &target)
{
    return QStringLiteral(" ; echo \"status $?\"; ls -A %1; "
                          "{ cmp -s %2 old.bin && echo same || echo changed; }")
        .arg(folder, target);
}

} // namespace

void TestLxconfigFiles::fullFilesystem_data()
{
    QTest::addColumn<QString>("fileSystem");
    QTest::addColumn<QStringList>("lines");
    for (const WriteCommand &command : writeCommands())
        QTest::newRow(command.name) << QString(kHere) << QStringList{command.line};
    // A full card stays full when a write fails: one filling serves every command.
    QStringList lines;
    for (const WriteCommand &command : writeCommands())
        lines << command.line;
    QTest::newRow(kFat32) << QString(kFat32) << lines;
    QTest::newRow(kExFat) << QString(kExFat) << lines;
}

void TestLxconfigFiles::fullFilesystem()
{
    QFETCH(QString, fileSystem);
    QFETCH(QStringList, lines);
    const Workspace workspace;
    writeInputs(workspace, "old.bin");
    QString unshare;
    if (fileSystem == kHere) {
        QString why;
        unshare = mountNamespaceCommand(workspace, why);
        if (unshare.isEmpty())
            QSKIP(qPrintable(why));
    }
    const Card card(workspace, fileSystem, "full");
    if (!card.ready())
        QSKIP(qPrintable(card.why()));
    // The old file on the card, the rest filled (exFAT refuses a write that does not fit whole,
    // so the last bytes go in small writes).
    QString script =
        "cp old.bin full/target.bin && "
        "{ dd if=/dev/zero of=full/filler bs=64k; dd if=/dev/zero bs=512 >>full/filler; "
        "} 2>/dev/null; ";
    for (const QString &line : lines) {
        script += "\"$LX\" " + commandLine({"", line, {}}, "full/target.bin") +
                  reportLines("full", "full/target.bin") + "; ";
    }
    // Here, a 16 KiB tmpfs of this test's own.
    if (fileSystem == kHere)
        script = unshare + " sh -c 'mount -t tmpfs -o size=16k tmpfs full && " + script + "'";
    const ShellResult result = runShell(workspace, script);
    // fusefat answers a write that does not fit with EPERM (0.1a, Debian 12) or EIO (0.3,
    // Debian 13), not ENOSPC, and lxconfig says what the system says.
    QString reason = "No space left on device";
    if (fileSystem == kFat32) {
        reason = QStringLiteral("Operation not permitted");
        if (QString::fromLocal8Bit(result.err)
                .startsWith("lxconfig: full/target.bin: cannot write: Input/output error\n"))
            reason = QStringLiteral("Input/output error");
    }
    QCOMPARE(QString::fromLocal8Bit(result.err),
             ("lxconfig: full/target.bin: cannot write: " + reason + "\n").repeated(lines.size()));
    QCOMPARE(QString::fromLocal8Bit(result.out),
             QStringLiteral("status 1\nfiller\ntarget.bin\nsame\n").repeated(lines.size()));
}

void TestLxconfigFiles::fileSizeLimit_data()
{
    addWriteCommandRows();
}

void TestLxconfigFiles::fileSizeLimit()
{
    QFETCH(QString, line);
    const Workspace workspace;
    writeInputs(workspace, "old.bin");
    QDir(workspace.path(".")).mkdir("out");
    workspace.write("out/target.bin", oldRecord());
    // No block may be written; SIGXFSZ keeps its default, which would kill the process.
    const ShellResult result = runShell(
        workspace, "(ulimit -f 0; exec \"$LX\" " + commandLine({"", line, {}}, "out/target.bin") +
                       ")" + reportLines("out", "out/target.bin"));
    QCOMPARE(QString::fromLocal8Bit(result.err),
             QStringLiteral("lxconfig: out/target.bin: cannot write: File too large\n"));
    QCOMPARE(QString::fromLocal8Bit(result.out), QStringLiteral("status 1\ntarget.bin\nsame\n"));
}

void TestLxconfigFiles::fullDevice_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("err");
    for (const WriteCommand &command : writeCommands()) {
        const bool set = QByteArray(command.name) == "set";
        // set only ever replaces a regular file.
        QTest::newRow(command.name) << command.line
                                    << (set ? "lxconfig: full: cannot write: not a regular file\n"
                                            : "lxconfig: full: cannot write: No space left on "
                                              "device\n");
    }
}

void TestLxconfigFiles::fullDevice()
{
    QFETCH(QString, line);
    QFETCH(QString, err);
    const Workspace workspace;
    // A node of the full device in the workspace, not /dev/full itself: an lxconfig that
    // renamed over its output would otherwise replace the machine's device.
    if (runShell(workspace, "mknod -m 666 full c 1 7").exitCode != 0)
        QSKIP("cannot make a device node here (mknod needs root and a folder without nodev)");
    writeInputs(workspace, "old.bin");
    const ShellResult result =
        runShell(workspace, "\"$LX\" " + commandLine({"", line, {}}, "full") +
                                "; echo \"status $?\"; test -c full && echo device");
    QCOMPARE(QString::fromLocal8Bit(result.err), err);
    QCOMPARE(QString::fromLocal8Bit(result.out), QStringLiteral("status 1\ndevice\n"));
}

void TestLxconfigFiles::refusingFolder_data()
{
    addWriteCommandRows();
}

void TestLxconfigFiles::refusingFolder()
{
    QFETCH(QString, line);
    const Workspace workspace;
    // Root writes whatever the permission bits say; a read-only mount refuses everyone.
    QString why;
    const QString unshare = mountNamespaceCommand(workspace, why);
    if (unshare.isEmpty())
        QSKIP(qPrintable(why));
    writeInputs(workspace, "old.bin");
    QDir(workspace.path(".")).mkdir("ro");
    workspace.write("ro/target.bin", oldRecord());
    const QString script =
        unshare + " sh -c 'mount --bind ro ro && mount -o remount,bind,ro ro && \"$LX\" " +
        commandLine({"", line, {}}, "ro/target.bin") + reportLines("ro", "ro/target.bin") + "'";
    const ShellResult result = runShell(workspace, script);
    QCOMPARE(QString::fromLocal8Bit(result.err),
             QStringLiteral("lxconfig: ro/target.bin: cannot write: the folder ro refuses new "
                            "files: Read-only file system\n"));
    QCOMPARE(QString::fromLocal8Bit(result.out), QStringLiteral("status 1\ntarget.bin\nsame\n"));
}

void TestLxconfigFiles::standardOutputFails_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("err");

    const QString full = "lxconfig: standard output: cannot write: No space left on device\n";
    const QString closed = "lxconfig: standard output: cannot write: Bad file descriptor\n";
    QTest::newRow("export, full") << "\"$LX\" export good.bin >/dev/full" << 1 << full;
    QTest::newRow("show, full") << "\"$LX\" show good.bin >/dev/full" << 1 << full;
    QTest::newRow("check, full") << "\"$LX\" check good.bin >/dev/full" << 1 << full;
    QTest::newRow("help, full") << "\"$LX\" --help >/dev/full" << 1 << full;
    // diff's 1 means "the files differ", so a failure is 2.
    QTest::newRow("diff, full") << "\"$LX\" diff good.bin other.bin >/dev/full" << 2 << full;
    QTest::newRow("export, closed") << "\"$LX\" export good.bin >&-" << 1 << closed;
    QTest::newRow("check, closed") << "\"$LX\" check good.bin >&-" << 1 << closed;
    QTest::newRow("diff, closed") << "\"$LX\" diff good.bin other.bin >&-" << 2 << closed;
    // -o - is standard output too, and named so.
    QTest::newRow("-o -, full") << "\"$LX\" defaults -o - >/dev/full" << 1 << full;
    QTest::newRow("-o -, closed") << "\"$LX\" defaults -o - >&-" << 1 << closed;
    QTest::newRow("report -o -, full") << "\"$LX\" report good.bin -o - >/dev/full" << 1 << full;
    QTest::newRow("report -o -, closed") << "\"$LX\" report good.bin -o - >&-" << 1 << closed;
    QTest::newRow("export -o -, full") << "\"$LX\" export good.bin -o - >/dev/full" << 1 << full;
    QTest::newRow("import -o -, closed")
        << "\"$LX\" export good.bin | \"$LX\" import - -o - >&-" << 1 << closed;
}

void TestLxconfigFiles::standardOutputFails()
{
    QFETCH(QString, script);
    QFETCH(int, exitCode);
    QFETCH(QString, err);
    const Workspace workspace;
    workspace.write("other.bin", oldRecord());
    const QStringList before = folderEntries(workspace);
    const ShellResult result = runShell(workspace, script);
    QCOMPARE(QString::fromLocal8Bit(result.err), err);
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(folderEntries(workspace), before);
}

void TestLxconfigFiles::killedAtEveryStep_data()
{
    QTest::addColumn<QString>("fileSystem");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("result");
    QTest::addColumn<QString>("syscall");
    QTest::addColumn<int>("signal");
    const QStringList syscalls = {"openat", "flock",  "newfstatat", "unlinkat",
                                  "read",   "write",  "fchown",     "fchmod",
                                  "fsync",  "linkat", "close",      "renameat"};
    for (const WriteCommand &command : writeCommands()) {
        if (QByteArray(command.name) != "set" && QByteArray(command.name) != "import")
            continue;
        for (const QString &syscall : syscalls) {
            QTest::addRow("%s, %s", command.name, qPrintable(syscall))
                << QString(kHere) << command.line << command.result << syscall << SIGKILL;
        }
    }
    // On a card the temporary file has a name from creation to rename, and nothing is linked:
    // SIGKILL may leave it (the next lxconfig removes it), SIGTERM and SIGINT never.
    const WriteCommand set = writeCommands().constFirst();
    for (const int signal : {SIGKILL, SIGTERM, SIGINT}) {
        for (const QString &syscall : syscalls) {
            if (syscall == "linkat" ||
                (signal == SIGINT && syscall != "write" && syscall != "renameat"))
                continue;
            QTest::addRow("exFAT, set, %s, %s", qPrintable(syscall), strsignal(signal))
                << QString(kExFat) << set.line << set.result << syscall << signal;
        }
    }
    QTest::newRow("FAT32") << QString(kFat32) << set.line << set.result << "write" << SIGTERM;
}

void TestLxconfigFiles::killedAtEveryStep()
{
    QFETCH(QString, fileSystem);
    QFETCH(QString, line);
    QFETCH(QByteArray, result);
    QFETCH(QString, syscall);
    QFETCH(int, signal);
    if (fileSystem == kFat32) {
        QSKIP("fusefat stops answering (and spins) once a process is killed in the middle of its "
              "calls, and then hangs every later call on the card; kills on a card are tried on "
              "exFAT");
    }
    const Workspace workspace;
    if (runShell(workspace, "strace -qq -o /dev/null true").exitCode != 0)
        QSKIP("strace cannot trace here (install strace; ptrace may be forbidden)");
    writeInputs(workspace, "old.bin");
    const Card card(workspace, fileSystem, "k");
    if (!card.ready())
        QSKIP(qPrintable(card.why()));

    const QString command = "\"$LX\" " + commandLine({"", line, {}}, "k/target.bin");
    const QByteArray killedStatus = QByteArray::number(128 + signal);
    int kills = 0;
    for (int call = 1;; ++call) {
        QVERIFY2(call < 500, "the command never got past its kills");
        workspace.write("k/target.bin", oldRecord());
        const ShellResult run =
            runShell(workspace, kLeakCheckOffUnderStrace +
                                    QStringLiteral("strace -qq -o /dev/null -e trace=%1 "
                                                   "-e inject=%1:signal=%4:when=%2 %3 2>/dev/null; "
                                                   "echo $?")
                                        .arg(syscall)
                                        .arg(call)
                                        .arg(command)
                                        .arg(signal));
        const bool killed = run.out.trimmed() == killedStatus;
        const QByteArray contents = workspace.read("k/target.bin");
        QVERIFY2(contents == oldRecord() || contents == result,
                 qPrintable(QStringLiteral("call %1: neither the old nor the new file").arg(call)));
        const QStringList entries = folderEntries(workspace, "k");
        if (entries != QStringList{"target.bin"}) {
            // Killed between link and rename (or, where the temporary file has a name from the
            // start, anywhere in its life): it has its short name, which the next lxconfig to lock
            // the file removes. Every signal but SIGKILL is held back there.
            QVERIFY2(
                signal == SIGKILL && entries.size() == 2 && entries.at(0).startsWith(".lxconfig-"),
                qPrintable(QStringLiteral("call %1 left %2").arg(call).arg(entries.join(' '))));
            COMPARE_RUN(workspace.run({"set", "-q", "k/target.bin", "gpsReceiver=1"}), 0, "", "");
            QCOMPARE(folderEntries(workspace, "k"), QStringList{"target.bin"});
        }
        if (!killed) {
            QCOMPARE(run.out.trimmed(), QByteArray("0"));
            QCOMPARE(contents, result);
            break;
        }
        ++kills;
    }
    // lxconfig makes every one of these calls, so at least one run was killed in it.
    QVERIFY(kills > 0);
}

void TestLxconfigFiles::failedCall_data()
{
    QTest::addColumn<QString>("injection"); // strace's -e inject=... for the failing call
    QTest::addColumn<bool>("namedTemporary");
    QTest::addColumn<QString>("reason");

    const struct
    {
        const char *name;
        const char *injection;
        const char *reason;
    } calls[] = {
        {"write, no space", "write:error=ENOSPC:when=1", "No space left on device"},
        {"write, I/O error", "write:error=EIO:when=1", "Input/output error"},
        {"fchmod", "fchmod:error=EPERM:when=1", "Operation not permitted"},
        {"fsync", "fsync:error=EIO:when=1", "Input/output error"},
        {"rename", "renameat:error=EXDEV:when=1", "Invalid cross-device link"},
    };
    for (const auto &call : calls) {
        QTest::addRow("%s", call.name) << call.injection << false << call.reason;
        QTest::addRow("%s, named temporary", call.name) << call.injection << true << call.reason;
    }
    // Both ways of linking the unnamed file in fail.
    QTest::newRow("link") << "linkat:error=EPERM:when=1+" << false << "Operation not permitted";
}

void TestLxconfigFiles::failedCall()
{
    QFETCH(QString, injection);
    QFETCH(bool, namedTemporary);
    QFETCH(QString, reason);
    const Workspace workspace;
    if (runShell(workspace, "strace -qq -o /dev/null true").exitCode != 0)
        QSKIP("strace cannot trace here (install strace; ptrace may be forbidden)");
    workspace.write("old.bin", oldRecord());
    workspace.write("target.bin", oldRecord());
    const QString command = "\"$LX\" set -q target.bin gpsReceiver=1";
    QString injections = "-e inject=" + injection;
    if (namedTemporary) {
        // The unnamed temporary file refused, as on a filesystem without O_TMPFILE: the call
        // is found by its number among the command's openat calls.
        const ShellResult trace = runShell(
            workspace,
            kLeakCheckOffUnderStrace + ("strace -qq -o trace.txt -e trace=openat " + command) +
                " && cp old.bin target.bin && grep -n O_TMPFILE trace.txt | cut -d: -f1");
        const int call = trace.out.trimmed().toInt();
        QVERIFY(call > 0);
        injections += QStringLiteral(" -e inject=openat:error=EOPNOTSUPP:when=%1").arg(call);
        QVERIFY(QFile::remove(workspace.path("trace.txt")));
    }
    const QStringList before = folderEntries(workspace);
    const ShellResult result = runShell(
        workspace, kLeakCheckOffUnderStrace + ("strace -qq -o /dev/null " + injections) + " " +
                       command + "; echo \"status $?\"; cmp -s target.bin old.bin && echo same");
    QCOMPARE(QString::fromLocal8Bit(result.err),
             "lxconfig: target.bin: cannot write: " + reason + "\n");
    QCOMPARE(result.out, QByteArray("status 1\nsame\n"));
    QCOMPARE(folderEntries(workspace), before);
}

void TestLxconfigFiles::everySignalHeld_data()
{
    QTest::addColumn<QString>("injection"); // where strace sends the signal
    QTest::addColumn<int>("signal");
    QTest::addColumn<bool>("replaced"); // whether the file is replaced before the signal ends it
    // Every signal whose default action ends the process, not only those a user sends.
    const int endingSignals[] = {SIGHUP,   SIGINT,       SIGTERM,   SIGUSR1, SIGALRM,
                                 SIGPWR,   SIGIO,        SIGSTKFLT, SIGPROF, SIGVTALRM,
                                 SIGRTMIN, SIGRTMIN + 7, SIGRTMAX};
    // set --backup=numbered links the backup in, renames it, links the new file in and renames
    // it over the target.
    const struct
    {
        const char *name;
        const char *injection;
        bool replaced;
    } steps[] = {
        {"backup's rename", "renameat:when=1", false},
        {"new file's link", "linkat:when=2", true},
        {"new file's rename", "renameat:when=2", true},
    };
    for (const auto &step : steps) {
        for (const int signal : endingSignals) {
            QTest::addRow("%s, %d", step.name, signal)
                << QStringLiteral("%1:signal=%2").arg(step.injection).arg(signal) << signal
                << step.replaced;
        }
    }
}

// A signal that comes between a link and its rename waits until the rename is done: the backup
// is made (and the file replaced, when the signal came at the new file's link or rename), and the
// signal then ends lxconfig with no short name left. (lxconfig ignores SIGXFSZ, so that a write
// past the file-size limit is a failure it reports.)
void TestLxconfigFiles::everySignalHeld()
{
    QFETCH(QString, injection);
    QFETCH(int, signal);
    QFETCH(bool, replaced);
    const Workspace workspace;
    if (runShell(workspace, "strace -qq -o /dev/null true").exitCode != 0)
        QSKIP("strace cannot trace here (install strace; ptrace may be forbidden)");
    QDir(workspace.path(".")).mkdir("k");
    writeInputs(workspace, "k/target.bin");
    const ShellResult result = runShell(
        workspace, kLeakCheckOffUnderStrace + ("strace -qq -o /dev/null -e inject=" + injection) +
                       " \"$LX\" set --backup=numbered k/target.bin gpsReceiver=1 2>/dev/null; "
                       "echo \"status $?\"");
    QCOMPARE(result.out, "status " + QByteArray::number(128 + signal) + "\n");
    QCOMPARE(folderEntries(workspace, "k"), (QStringList{"target.bin", "target.bin.~1~"}));
    QCOMPARE(workspace.read("k/target.bin"),
             replaced ? writeCommands().constFirst().result : oldRecord());
    QCOMPARE(workspace.read("k/target.bin.~1~"), oldRecord());
}
