// set keeps what the file was (mode, owner, group), breaks a hard link as sed -i does, and
// several sets on one file at once each keep the others' changes, as does a resave over its
// own input. On FAT32 and exFAT cards, what the card can keep.

#include "card.h"
#include "expected.h"
#include "shellrun.h"
#include "tst_lxconfigfiles.h"
#include "workspace.h"

#include <QFile>
#include <QProcess>
#include <QTest>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/syscall.h>
#include <unistd.h>

void TestLxconfigFiles::setKeepsMode_data()
{
    QTest::addColumn<QString>("fileSystem");
    QTest::addColumn<QString>("mode");
    for (const QString &fileSystem : cardFileSystems()) {
        for (const char *mode : {"444", "600", "664", "4755", "3750"})
            QTest::addRow("%s, %s", qPrintable(fileSystem), mode) << fileSystem << mode;
    }
}

void TestLxconfigFiles::setKeepsMode()
{
    QFETCH(QString, fileSystem);
    QFETCH(QString, mode);
    const Workspace workspace;
    const Card card(workspace, fileSystem, "c");
    if (!card.ready())
        QSKIP(qPrintable(card.why()));
    // A card keeps no mode bits (chmod fails or changes nothing): the file keeps the mode the
    // card gives every file.
    const ShellResult result = runShell(
        workspace,
        QStringLiteral("cp good.bin c/ && { chmod %1 c/good.bin 2>/dev/null; true; } && "
                       "stat -c %a c/good.bin && \"$LX\" set -q c/good.bin gpsReceiver=1 && "
                       "stat -c %a c/good.bin")
            .arg(mode));
    if (geteuid() != 0 && mode == "444")
        QSKIP("a read-only file is replaced only where its folder allows; checked as root");
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    const QList<QByteArray> modes = result.out.trimmed().split('\n');
    QCOMPARE(modes.size(), 2);
    QCOMPARE(modes.at(1), modes.at(0));
    if (!card.isCard())
        QCOMPARE(modes.at(1), mode.toUtf8());
    QCOMPARE(workspace.read("c/good.bin"),
             withMendedChecksum(patched(kDefaultBytes, 112, QByteArray(1, '\x01'))));
}

void TestLxconfigFiles::setKeepsOwner_data()
{
    QTest::addColumn<QString>("fileSystem");
    for (const QString &fileSystem : cardFileSystems())
        QTest::newRow(qPrintable(fileSystem)) << fileSystem;
}

void TestLxconfigFiles::setKeepsOwner()
{
    QFETCH(QString, fileSystem);
    if (geteuid() != 0)
        QSKIP("giving a file to another owner needs root");
    const Workspace workspace;
    const Card card(workspace, fileSystem, "c");
    if (!card.ready())
        QSKIP(qPrintable(card.why()));
    // A card keeps no owner: the file keeps the one the card gives every file.
    const ShellResult result = runShell(
        workspace, "cp good.bin c/ && { chown 1234:5678 c/good.bin && chmod 6755 c/good.bin; } "
                   "2>/dev/null; stat -c '%u:%g %a' c/good.bin && "
                   "\"$LX\" set -q c/good.bin gpsReceiver=1 && stat -c '%u:%g %a' c/good.bin");
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    const QList<QByteArray> owners = result.out.trimmed().split('\n');
    QCOMPARE(owners.size(), 2);
    QCOMPARE(owners.at(1), owners.at(0));
    if (!card.isCard())
        QCOMPARE(owners.at(1), QByteArray("1234:5678 6755"));
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

void TestLxconfigFiles::concurrentSets_data()
{
    QTest::addColumn<QString>("fileSystem");
    for (const QString &fileSystem : cardFileSystems())
        QTest::newRow(qPrintable(fileSystem)) << fileSystem;
}

void TestLxconfigFiles::concurrentSets()
{
    QFETCH(QString, fileSystem);
    // Each process changes a field of its own; every change must be in the result.
    const QStringList changes = {
        "gpsReceiver=1",    "gimbalRc=1",     "externalShutter=1", "overlayMode=1",
        "isothermState=1",  "serialParity=2", "sbusZoom=7",        "sbusFfc=9",
        "frameSkip=5",      "esoHeating=900", "esoHeatcycle=1100", "recMaxFramesPerFile=500",
        "isothermLower=16", "sbusOverlay=3",  "esoOpt5=4",         "serialStopBits=2"};
    const Workspace workspace;
    if (fileSystem == kFat32) {
        QSKIP(
            "fusefat serves zero bytes to a process that opens a file while another renames a "
            "file over it (so would any tool that replaces files); concurrent edits on a card are "
            "tried on exFAT");
    }
    const Card card(workspace, fileSystem, "c");
    if (!card.ready())
        QSKIP(qPrintable(card.why()));
    workspace.write("expected.bin", kDefaultBytes);
    COMPARE_RUN(workspace.run(QStringList{"set", "-q", "--raw", "expected.bin"} + changes), 0, "",
                "");
    const QByteArray expected = workspace.read("expected.bin");
    for (int round = 0; round < 5; ++round) {
        workspace.write("c/shared.bin", kDefaultBytes);
        std::vector<std::unique_ptr<QProcess>> processes;
        for (const QString &change : changes) {
            auto process = std::make_unique<QProcess>();
            process->setWorkingDirectory(workspace.path("."));
            process->start(QStringLiteral(LXCONFIG_PATH), {"set", "--raw", "c/shared.bin", change});
            processes.push_back(std::move(process));
        }
        for (const auto &process : processes) {
            QVERIFY(process->waitForFinished(-1));
            QCOMPARE(process->readAllStandardError(), QByteArray());
            QCOMPARE(process->exitCode(), 0);
        }
        QCOMPARE(workspace.read("c/shared.bin").toHex(' '), expected.toHex(' '));
        QCOMPARE(folderEntries(workspace, "c"), QStringList{"shared.bin"});
    }
}

void TestLxconfigFiles::resaveOverItselfWaitsForTheLock()
{
    // resave FILE -o FILE while a set holds the file: the set's change must be in what resave
    // writes. The test holds the lock itself, as a set between its read and its rename would,
    // and replaces the file meanwhile, as that set then does.
    const Workspace workspace;
    const int lockFd = ::open(qPrintable(workspace.path("good.bin")), O_RDONLY | O_CLOEXEC);
    QVERIFY(lockFd >= 0);
    QVERIFY(::flock(lockFd, LOCK_EX) == 0);
    QProcess resave;
    resave.setWorkingDirectory(workspace.path("."));
    resave.start(QStringLiteral(LXCONFIG_PATH), {"resave", "good.bin", "-o", "good.bin"});
    QVERIFY(resave.waitForStarted());
    // Until resave waits for the lock: the call it is in, from /proc (its number first).
    QFile syscall(QStringLiteral("/proc/%1/syscall").arg(resave.processId()));
    for (;;) {
        QVERIFY2(syscall.open(QIODevice::ReadOnly),
                 "cannot see which call lxconfig is in (/proc/PID/syscall)");
        const QByteArray call = syscall.readAll().split(' ').value(0);
        syscall.close();
        if (call == QByteArray::number(SYS_flock))
            break;
        QVERIFY2(resave.state() == QProcess::Running, "resave ended without waiting for the lock");
    }
    const QByteArray changed =
        withMendedChecksum(patched(kDefaultBytes, 112, QByteArray(1, '\x01')));
    workspace.write("changed.bin", changed);
    QVERIFY(::rename(qPrintable(workspace.path("changed.bin")),
                     qPrintable(workspace.path("good.bin"))) == 0);
    ::close(lockFd);
    QVERIFY(resave.waitForFinished(-1));
    QCOMPARE(resave.readAllStandardError(), QByteArray());
    QCOMPARE(resave.exitCode(), 0);
    QCOMPARE(workspace.read("good.bin").at(112), '\x01');
}
