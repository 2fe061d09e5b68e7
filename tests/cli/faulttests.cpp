// A failed write changes nothing and leaves no file behind: full filesystems, file-size limits,
// full devices, folders that refuse new files, failing standard output, and a kill at every
// system call of the write.

#include "expected.h"
#include "shellrun.h"
#include "tst_lxconfigfiles.h"
#include "workspace.h"
#include "writecommands.h"

#include <QDir>
#include <QFile>
#include <QTest>

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
                          "cmp -s %2 old.bin && echo same || echo changed")
        .arg(folder, target);
}

} // namespace

void TestLxconfigFiles::fullFilesystem_data()
{
    addWriteCommandRows();
}

void TestLxconfigFiles::fullFilesystem()
{
    QFETCH(QString, line);
    const Workspace workspace;
    QString why;
    const QString unshare = mountNamespaceCommand(workspace, why);
    if (unshare.isEmpty())
        QSKIP(qPrintable(why));
    writeInputs(workspace, "old.bin");
    QDir(workspace.path(".")).mkdir("full");
    // A 16 KiB tmpfs of this test's own, the old file in it, the rest filled.
    const QString script =
        unshare +
        " sh -c 'mount -t tmpfs -o size=16k tmpfs full && cp old.bin full/target.bin && "
        "{ dd if=/dev/zero of=full/filler bs=1k 2>/dev/null; true; } && \"$LX\" " +
        commandLine({"", line, {}}, "full/target.bin") + reportLines("full", "full/target.bin") +
        "'";
    const ShellResult result = runShell(workspace, script);
    QCOMPARE(QString::fromLocal8Bit(result.err),
             QStringLiteral("lxconfig: full/target.bin: cannot write: No space left on device\n"));
    QCOMPARE(QString::fromLocal8Bit(result.out),
             QStringLiteral("status 1\nfiller\ntarget.bin\nsame\n"));
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
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("result");
    QTest::addColumn<QString>("syscall");
    const QStringList syscalls = {"openat", "flock",  "newfstatat", "unlinkat",
                                  "read",   "write",  "fchown",     "fchmod",
                                  "fsync",  "linkat", "close",      "renameat"};
    for (const WriteCommand &command : writeCommands()) {
        if (QByteArray(command.name) != "set" && QByteArray(command.name) != "import")
            continue;
        for (const QString &syscall : syscalls) {
            QTest::addRow("%s, %s", command.name, qPrintable(syscall))
                << command.line << command.result << syscall;
        }
    }
}

void TestLxconfigFiles::killedAtEveryStep()
{
    QFETCH(QString, line);
    QFETCH(QByteArray, result);
    QFETCH(QString, syscall);
    const Workspace workspace;
    if (runShell(workspace, "strace -qq -o /dev/null true").exitCode != 0)
        QSKIP("strace cannot trace here (install strace; ptrace may be forbidden)");
    writeInputs(workspace, "old.bin");
    QDir(workspace.path(".")).mkdir("k");

    const QString command = "\"$LX\" " + commandLine({"", line, {}}, "k/target.bin");
    int kills = 0;
    for (int call = 1;; ++call) {
        QVERIFY2(call < 500, "the command never got past its kills");
        workspace.write("k/target.bin", oldRecord());
        const ShellResult run = runShell(
            workspace, kLeakCheckOffUnderStrace +
                           QStringLiteral("strace -qq -o /dev/null -e trace=%1 "
                                          "-e inject=%1:signal=SIGKILL:when=%2 %3 2>/dev/null; "
                                          "echo $?")
                               .arg(syscall)
                               .arg(call)
                               .arg(command));
        const bool killed = run.out.trimmed() == "137";
        const QByteArray contents = workspace.read("k/target.bin");
        QVERIFY2(contents == oldRecord() || contents == result,
                 qPrintable(QStringLiteral("call %1: neither the old nor the new file").arg(call)));
        const QStringList entries = folderEntries(workspace, "k");
        if (entries != QStringList{"target.bin"}) {
            // Killed between link and rename: the temporary file has its short name, which the
            // next lxconfig to lock the file removes.
            QVERIFY2(
                entries.size() == 2 && entries.at(0).startsWith(".lxconfig-"),
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
