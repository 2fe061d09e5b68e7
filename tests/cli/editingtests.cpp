// set keeps what the file was (mode, owner, group), breaks a hard link as sed -i does, and
// several sets on one file at once each keep the others' changes.

#include "expected.h"
#include "shellrun.h"
#include "tst_lxconfigfiles.h"
#include "workspace.h"

#include <QProcess>
#include <QTest>
#include <memory>
#include <unistd.h>

void TestLxconfigFiles::setKeepsMode_data()
{
    QTest::addColumn<QString>("mode");
    QTest::newRow("read-only") << "444";
    QTest::newRow("private") << "600";
    QTest::newRow("group-writable") << "664";
    QTest::newRow("set-user-ID") << "4755";
    QTest::newRow("set-group-ID and sticky") << "3750";
}

void TestLxconfigFiles::setKeepsMode()
{
    QFETCH(QString, mode);
    const Workspace workspace;
    const ShellResult result = runShell(
        workspace, QStringLiteral("chmod %1 good.bin && \"$LX\" set -q good.bin gpsReceiver=1 && "
                                  "stat -c %a good.bin")
                       .arg(mode));
    if (geteuid() != 0 && mode == "444")
        QSKIP("a read-only file is replaced only where its folder allows; checked as root");
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    QCOMPARE(result.out.trimmed(), mode.toUtf8());
    QCOMPARE(workspace.read("good.bin"),
             withMendedChecksum(patched(kDefaultBytes, 112, QByteArray(1, '\x01'))));
}

void TestLxconfigFiles::setKeepsOwner()
{
    if (geteuid() != 0)
        QSKIP("giving a file to another owner needs root");
    const Workspace workspace;
    const ShellResult result =
        runShell(workspace, "chown 1234:5678 good.bin && chmod 6755 good.bin && "
                            "\"$LX\" set -q good.bin gpsReceiver=1 && stat -c '%u:%g %a' good.bin");
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    QCOMPARE(result.out, QByteArray("1234:5678 6755\n"));
}

void TestLxconfigFiles::setBreaksHardLink()
{
    // The file is replaced, not written in place: the other name keeps the old record.
    const Workspace workspace;
    const ShellResult result =
        runShell(workspace, "ln good.bin other.bin && \"$LX\" set -q good.bin gpsReceiver=1 && "
                            "stat -c %h good.bin other.bin");
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    QCOMPARE(result.out, QByteArray("1\n1\n"));
    QCOMPARE(workspace.read("other.bin"), kDefaultBytes);
    QCOMPARE(workspace.read("good.bin"),
             withMendedChecksum(patched(kDefaultBytes, 112, QByteArray(1, '\x01'))));
}

void TestLxconfigFiles::concurrentSets()
{
    // Each process changes a field of its own; every change must be in the result.
    const QStringList changes = {
        "gpsReceiver=1",    "gimbalRc=1",     "externalShutter=1", "overlayMode=1",
        "isothermState=1",  "serialParity=2", "sbusZoom=7",        "sbusFfc=9",
        "frameSkip=5",      "esoHeating=900", "esoHeatcycle=1100", "recMaxFramesPerFile=500",
        "isothermLower=16", "sbusOverlay=3",  "esoOpt5=4",         "serialStopBits=2"};
    const Workspace workspace;
    workspace.write("expected.bin", kDefaultBytes);
    COMPARE_RUN(workspace.run(QStringList{"set", "-q", "--raw", "expected.bin"} + changes), 0, "",
                "");
    const QByteArray expected = workspace.read("expected.bin");
    for (int round = 0; round < 5; ++round) {
        workspace.write("shared.bin", kDefaultBytes);
        std::vector<std::unique_ptr<QProcess>> processes;
        for (const QString &change : changes) {
            auto process = std::make_unique<QProcess>();
            process->setWorkingDirectory(workspace.path("."));
            process->start(QStringLiteral(LXCONFIG_PATH), {"set", "--raw", "shared.bin", change});
            processes.push_back(std::move(process));
        }
        for (const auto &process : processes) {
            QVERIFY(process->waitForFinished(-1));
            QCOMPARE(process->readAllStandardError(), QByteArray());
            QCOMPARE(process->exitCode(), 0);
        }
        QCOMPARE(workspace.read("shared.bin").toHex(' '), expected.toHex(' '));
    }
}
