// lxconfig check: the verdict of the editor's load checks, in the editor's order.

#include "expected.h"
#include "shellrun.h"
#include "tst_cli.h"
#include "workspace.h"

#include <QTest>

void TestCli::check_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes"); // written first unless empty
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");

    const QByteArray none;
    QTest::newRow("good") << "good.bin" << none << 0 << "good.bin: valid\n"
                          << "";
    QTest::newRow("0 bytes")
        << "empty.bin" << none << 1
        << "empty.bin: bad magic \"\\x00\\x00\\x00\\x00\" (expected \"CONF\")\n"
        << "lxconfig: warning: empty.bin: 0 bytes (a record is 167)\n";
    QTest::newRow("short") << "short.bin" << none << 1
                           << "short.bin: " + sampleMismatch("short.bin") + "\n"
                           << "lxconfig: warning: short.bin: 166 bytes (a record is 167)\n";
    QTest::newRow("long") << "long.bin" << none << 0 << "long.bin: valid\n"
                          << "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n";
    QTest::newRow("bad magic") << "magic.bin" << none << 1
                               << "magic.bin: bad magic \"XONF\" (expected \"CONF\")\n"
                               << "";
    QTest::newRow("other version") << "version.bin" << none << 1
                                   << "version.bin: format version 20180602 (expected 20180601)\n"
                                   << "";
    QTest::newRow("bad checksum") << "checksum.bin" << none << 1
                                  << "checksum.bin: " + sampleMismatch("checksum.bin") + "\n"
                                  << "";
    QTest::newRow("missing") << "missing.bin" << none << 1
                             << "missing.bin: cannot open: No such file or directory\n"
                             << "";
    QTest::newRow("directory") << "folder" << none << 1 << "folder: cannot read: Is a directory\n"
                               << "";
    // The editor tests the magic before the version and the version before the checksum.
    QTest::newRow("magic before version")
        << "both.bin" << patched(patched(kDefaultBytes, 0, "conf"), 8, QByteArray(4, '\0')) << 1
        << "both.bin: bad magic \"conf\" (expected \"CONF\")\n"
        << "";
    QTest::newRow("version before checksum")
        << "both.bin" << patched(kDefaultBytes, 8, QByteArray::fromHex("00000000")) << 1
        << "both.bin: format version 0 (expected 20180601)\n"
        << "";
    QTest::newRow("unprintable magic")
        << "odd.bin" << patched(kDefaultBytes, 0, QByteArray::fromHex("22 5C 7F FF")) << 1
        << "odd.bin: bad magic \"\\x22\\x5c\\x7f\\xff\" (expected \"CONF\")\n"
        << "";
    // What follows the record is ignored, as the editor reads only its first 1024 bytes.
    QTest::newRow("2000 bytes") << "huge.bin" << kDefaultBytes + QByteArray(1833, 'x') << 0
                                << "huge.bin: valid\n"
                                << "lxconfig: warning: huge.bin: 2000 bytes (a record is 167)\n";
}

void TestCli::check()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    QFETCH(int, exitCode);
    QFETCH(QString, out);
    QFETCH(QString, err);

    const Workspace workspace;
    if (!bytes.isEmpty())
        workspace.write(file, bytes);
    const QByteArray before = workspace.read(file);
    COMPARE_RUN(workspace.run({"check", file}), exitCode, out, err);
    QCOMPARE(workspace.read(file), before);
}

void TestCli::checkSeveralFiles()
{
    const Workspace workspace;
    COMPARE_RUN(workspace.run({"check", "good.bin", "checksum.bin", "long.bin"}), 1,
                "good.bin: valid\n"
                "checksum.bin: " +
                    sampleMismatch("checksum.bin") +
                    "\n"
                    "long.bin: valid\n",
                "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n");
    COMPARE_RUN(workspace.run({"check", "good.bin", "long.bin"}), 0,
                "good.bin: valid\nlong.bin: valid\n",
                "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n");
}

void TestCli::warningNextToItsFile()
{
    // Both streams into one pipe, as a script or a log sees them: each warning right after the
    // line of its own file, not before all of them.
    const Workspace workspace;
    const ShellResult result = runShell(
        workspace, "\"$LX\" check good.bin long.bin checksum.bin empty.bin good.bin 2>&1 | cat");
    QCOMPARE(QString::fromUtf8(result.out),
             QString("good.bin: valid\n"
                     "long.bin: valid\n"
                     "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n"
                     "checksum.bin: " +
                     sampleMismatch("checksum.bin") +
                     "\n"
                     "empty.bin: bad magic \"\\x00\\x00\\x00\\x00\" (expected \"CONF\")\n"
                     "lxconfig: warning: empty.bin: 0 bytes (a record is 167)\n"
                     "good.bin: valid\n"));
}

void TestCli::checkQuiet_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("valid") << QStringList{"good.bin"} << 0;
    QTest::newRow("valid, with a size warning") << QStringList{"long.bin"} << 0;
    QTest::newRow("refused") << QStringList{"good.bin", "magic.bin"} << 1;
    QTest::newRow("unreadable") << QStringList{"missing.bin"} << 1;
    QTest::newRow("strict, with findings") << QStringList{"--strict", "hazards.bin"} << 1;
    QTest::newRow("json") << QStringList{"--format", "json", "good.bin"} << 0;
}

void TestCli::checkQuiet()
{
    // -q: the exit status alone answers; not a line on either stream.
    QFETCH(QStringList, files);
    QFETCH(int, exitCode);
    const Workspace workspace;
    workspace.write("hazards.bin", workspace.read("good.bin"));
    QCOMPARE(workspace.run({"set", "-q", "--raw", "hazards.bin", "esoHeating=1500"}).exitCode, 0);
    COMPARE_RUN(workspace.run(QStringList{"check", "-q"} + files), exitCode, "", "");
    COMPARE_RUN(workspace.run(QStringList{"check", "--quiet"} + files), exitCode, "", "");
}
