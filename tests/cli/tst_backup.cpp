// --backup on every command that replaces a file: the names GNU tools give (FILE~, FILE.~N~),
// what the backup holds, and that a backup which cannot be made leaves everything as it was; on
// FAT32 and exFAT cards too, which have no hard links.

#include "card.h"
#include "shellrun.h"
#include "workspace.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

const QByteArray kOld = "the old contents";

} // namespace

class TestBackup : public QObject
{
    Q_OBJECT

private slots:
    void everyReplacingCommand_data();
    void everyReplacingCommand();
    void kinds_data();
    void kinds();
    void simpleReplacesTheOldBackup();
    void backupKeepsMode_data();
    void backupKeepsMode();
    void numberedTwiceAfterNineDigits();
    void nothingToBackUp_data();
    void nothingToBackUp();
    void besideTheLinkedFile();
    void backupThatCannotBeMade();
    void backupKeepsOwner();
    void olderBackupKeptOnFailure_data();
    void olderBackupKeptOnFailure();
    void killedBeforeTheBackupsRename();
};

void TestBackup::everyReplacingCommand_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("set") << QStringList{"set", "--backup=simple", "out.bin", "gpsReceiver=0"};
    QTest::newRow("defaults") << QStringList{"defaults", "-o", "out.bin", "--backup=simple"};
    QTest::newRow("import") << QStringList{"import", "good.json", "-o", "out.bin",
                                           "--backup=simple"};
    QTest::newRow("export") << QStringList{"export", "good.bin", "-o", "out.bin",
                                           "--backup=simple"};
    QTest::newRow("resave") << QStringList{"resave", "good.bin", "-o", "out.bin",
                                           "--backup=simple"};
    QTest::newRow("report") << QStringList{"report", "good.bin", "-o", "out.bin",
                                           "--backup=simple"};
    QTest::newRow("apply") << QStringList{"apply", "--raw", "--backup=simple", "t.json", "out.bin"};
}

void TestBackup::everyReplacingCommand()
{
    QFETCH(QStringList, arguments);
    const Workspace workspace;
    QCOMPARE(workspace.run({"export", "good.bin", "-o", "good.json"}).exitCode, 0);
    workspace.write("t.json", R"({"esoHeating": 500})");
    // set and apply need a file they accept; for the others any old contents do.
    const bool changesInPlace = arguments.first() == "set" || arguments.first() == "apply";
    const QByteArray old = changesInPlace ? workspace.read("good.bin") : kOld;
    workspace.write("out.bin", old);
    const RunResult result = workspace.run(arguments);
    QCOMPARE(result.err, QString());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(workspace.read("out.bin~"), old);
    QVERIFY(workspace.read("out.bin") != old);
}

void TestBackup::kinds_data()
{
    QTest::addColumn<QString>("fileSystem");
    QTest::addColumn<QStringList>("existing"); // backups there before the command
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("versionControl"); // empty: not set
    QTest::addColumn<QString>("expected");       // the backup's name

    // On every file system, cards included: there the backup is a copy, not a second link.
    for (const QString &fileSystem : cardFileSystems()) {
        const auto row = [&](const char *name) -> QTestData & {
            return QTest::addRow("%s, %s", qPrintable(fileSystem), name) << fileSystem;
        };
        row("simple") << QStringList{} << "--backup=simple"
                      << ""
                      << "f.bin~";
        row("simple beside numbered") << QStringList{"f.bin.~1~"} << "--backup=simple"
                                      << ""
                                      << "f.bin~";
        row("numbered, first") << QStringList{} << "--backup=numbered"
                               << ""
                               << "f.bin.~1~";
        row("numbered after a gap") << QStringList{"f.bin.~1~", "f.bin.~7~"} << "--backup=numbered"
                                    << ""
                                    << "f.bin.~8~";
        row("numbered ignores other names")
            << QStringList{"f.bin.~02~", "f.bin.~x~", "f.bin.~3~.old", "g.bin.~9~", "f.bin.~~"}
            << "--backup=numbered"
            << ""
            << "f.bin.~1~";
        row("existing without numbered") << QStringList{"f.bin~"} << "--backup=existing"
                                         << ""
                                         << "f.bin~";
        row("existing with numbered") << QStringList{"f.bin.~4~"} << "--backup=existing"
                                      << ""
                                      << "f.bin.~5~";
        row("bare option: existing") << QStringList{"f.bin.~2~"} << "--backup"
                                     << ""
                                     << "f.bin.~3~";
        row("VERSION_CONTROL numbered") << QStringList{} << "--backup"
                                        << "numbered"
                                        << "f.bin.~1~";
        row("VERSION_CONTROL t") << QStringList{} << "--backup"
                                 << "t"
                                 << "f.bin.~1~";
        row("VERSION_CONTROL never") << QStringList{"f.bin.~1~"} << "--backup"
                                     << "never"
                                     << "f.bin~";
        row("the option over VERSION_CONTROL") << QStringList{} << "--backup=simple"
                                               << "numbered"
                                               << "f.bin~";
        row("old names: nil") << QStringList{} << "--backup=nil"
                              << ""
                              << "f.bin~";
        // Numbers of any length, as GNU tools count them.
        row("numbered past nine digits") << QStringList{"f.bin.~999999999~"} << "--backup=numbered"
                                         << ""
                                         << "f.bin.~1000000000~";
        row("numbered after ten digits")
            << QStringList{"f.bin.~999999999~", "f.bin.~1000000000~"} << "--backup=numbered"
            << ""
            << "f.bin.~1000000001~";
        row("numbered after eleven digits")
            << QStringList{"f.bin.~12345678901~", "f.bin.~9~"} << "--backup=existing"
            << ""
            << "f.bin.~12345678902~";
        row("numbered past every integer type")
            << QStringList{"f.bin.~99999999999999999999999~"} << "--backup=numbered"
            << ""
            << "f.bin.~100000000000000000000000~";
    }
}

void TestBackup::kinds()
{
    QFETCH(QString, fileSystem);
    QFETCH(QStringList, existing);
    QFETCH(QString, option);
    QFETCH(QString, versionControl);
    QFETCH(QString, expected);

    const Workspace workspace;
    const Card card(workspace, fileSystem, "c");
    if (!card.ready())
        QSKIP(qPrintable(card.why()));
    workspace.write("c/f.bin", kOld);
    for (const QString &name : existing)
        workspace.write("c/" + name, "an older backup");
    const QStringList environment =
        versionControl.isEmpty() ? QStringList{} : QStringList{"VERSION_CONTROL=" + versionControl};
    COMPARE_RUN(workspace.run({"defaults", option, "-o", "c/f.bin"}, environment), 0, "", "");
    QCOMPARE(workspace.read("c/" + expected), kOld);
    QCOMPARE(workspace.read("c/f.bin"), workspace.read("good.bin"));
    for (const QString &name : existing) {
        if (name != expected)
            QCOMPARE(workspace.read("c/" + name), QByteArray("an older backup"));
    }
    // Nothing else new in the folder.
    QStringList names = existing + QStringList{expected, "f.bin"};
    names.removeDuplicates();
    names.sort();
    QCOMPARE(folderEntries(workspace, "c"), names);
}

void TestBackup::simpleReplacesTheOldBackup()
{
    const Workspace workspace;
    workspace.write("f.bin", kOld);
    workspace.write("f.bin~", "an older backup");
    COMPARE_RUN(workspace.run({"defaults", "--backup=simple", "-o", "f.bin"}), 0, "", "");
    QCOMPARE(workspace.read("f.bin~"), kOld);
}

void TestBackup::backupKeepsMode_data()
{
    QTest::addColumn<QString>("fileSystem");
    for (const QString &fileSystem : cardFileSystems())
        QTest::newRow(qPrintable(fileSystem)) << fileSystem;
}

void TestBackup::backupKeepsMode()
{
    // The mode and times, as far as the file system keeps them (a card keeps no mode bits).
    QFETCH(QString, fileSystem);
    const Workspace workspace;
    Card card(workspace, fileSystem, "c");
    if (!card.ready())
        QSKIP(qPrintable(card.why()));
    workspace.write("c/f.bin", kOld);
    QFile::setPermissions(workspace.path("c/f.bin"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    const QFile::Permissions mode = QFile::permissions(workspace.path("c/f.bin"));
    // A time long past (and even, as FAT keeps seconds in twos), so that a copy stamped with
    // the time of the run shows.
    const QDateTime modified = QDateTime::fromString("2021-03-04T05:06:08Z", Qt::ISODate);
    const struct timespec times[2] = {{modified.toSecsSinceEpoch(), 0},
                                      {modified.toSecsSinceEpoch(), 0}};
    QVERIFY(::utimensat(AT_FDCWD, QFile::encodeName(workspace.path("c/f.bin")), times, 0) == 0);
    QCOMPARE(QFileInfo(workspace.path("c/f.bin")).lastModified(), modified);
    COMPARE_RUN(workspace.run({"defaults", "--backup=numbered", "-o", "c/f.bin"}), 0, "", "");
    // What the card keeps, not what the kernel caches of it.
    const QString reinserted = card.pulledAndPutBack();
    QVERIFY2(reinserted.isEmpty(), qPrintable(reinserted));
    QCOMPARE(QFile::permissions(workspace.path("c/f.bin.~1~")), mode);
    QCOMPARE(QFileInfo(workspace.path("c/f.bin.~1~")).lastModified(), modified);
    QCOMPARE(QFile::permissions(workspace.path("c/f.bin")), mode);
    QCOMPARE(workspace.read("c/f.bin.~1~"), kOld);
}

void TestBackup::numberedTwiceAfterNineDigits()
{
    // Two backups after "~999999999~": each gets a number of its own, none is lost.
    const Workspace workspace;
    workspace.write("f.bin", kOld);
    workspace.write("f.bin.~999999999~", "an older backup");
    COMPARE_RUN(workspace.run({"defaults", "--backup=numbered", "-o", "f.bin"}), 0, "", "");
    workspace.write("f.bin", "the newer contents");
    COMPARE_RUN(workspace.run({"defaults", "--backup=numbered", "-o", "f.bin"}), 0, "", "");
    QCOMPARE(workspace.read("f.bin.~999999999~"), QByteArray("an older backup"));
    QCOMPARE(workspace.read("f.bin.~1000000000~"), kOld);
    QCOMPARE(workspace.read("f.bin.~1000000001~"), QByteArray("the newer contents"));
}

void TestBackup::nothingToBackUp_data()
{
    QTest::addColumn<QString>("output");
    QTest::newRow("a new file") << "new.bin";
    QTest::newRow("a device") << "/dev/null";
    QTest::newRow("standard output") << "-";
}

void TestBackup::nothingToBackUp()
{
    QFETCH(QString, output);
    const Workspace workspace;
    const QStringList before = folderEntries(workspace);
    const RunResult result = workspace.run({"export", "good.bin", "--backup=simple", "-o", output});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.exitCode, 0);
    QStringList after = folderEntries(workspace);
    after.removeAll(output);
    QCOMPARE(after, before);
    QVERIFY(!QFile::exists("/dev/null~"));
}

void TestBackup::besideTheLinkedFile()
{
    const Workspace workspace;
    QVERIFY(QDir(workspace.path(".")).mkdir("real"));
    workspace.write("real/f.bin", kOld);
    QVERIFY(QFile::link("real/f.bin", workspace.path("link.bin")));
    COMPARE_RUN(workspace.run({"defaults", "--backup=simple", "-o", "link.bin"}), 0, "", "");
    QCOMPARE(workspace.read("real/f.bin~"), kOld);
    QVERIFY(!workspace.exists("link.bin~"));
    QVERIFY(QFileInfo(workspace.path("link.bin")).isSymLink());
    QCOMPARE(workspace.read("link.bin"), workspace.read("good.bin"));
}

void TestBackup::backupThatCannotBeMade()
{
    // A folder of the backup's name that is not empty cannot be replaced, root or not.
    const Workspace workspace;
    workspace.write("f.bin", kOld);
    QVERIFY(QDir(workspace.path(".")).mkpath("f.bin~/inside"));
    const QStringList before = folderEntries(workspace);
    COMPARE_RUN(workspace.run({"defaults", "--backup=simple", "-o", "f.bin"}), 1, "",
                "lxconfig: f.bin: cannot back up: Is a directory\n");
    QCOMPARE(workspace.read("f.bin"), kOld);
    QCOMPARE(folderEntries(workspace), before);
    QCOMPARE(folderEntries(workspace, "f.bin~"), QStringList{"inside"});
}

void TestBackup::backupKeepsOwner()
{
    const Workspace workspace;
    workspace.write("f.bin", kOld);
    // Another owner than the one running the test: only root can give a file one.
    const ShellResult chown = runShell(workspace, "chown 12345:12346 f.bin");
    if (chown.exitCode != 0)
        QSKIP("cannot give a file another owner here (chown needs root)");
    COMPARE_RUN(workspace.run({"defaults", "--backup=simple", "-o", "f.bin"}), 0, "", "");
    for (const char *name : {"f.bin~", "f.bin"}) {
        const QFileInfo info(workspace.path(name));
        QCOMPARE(info.ownerId(), 12345u);
        QCOMPARE(info.groupId(), 12346u);
    }
    QCOMPARE(workspace.read("f.bin~"), kOld);
}

void TestBackup::olderBackupKeptOnFailure_data()
{
    QTest::addColumn<QString>("injection"); // strace's -e inject=... for the failing call
    QTest::addColumn<QString>("reason");
    // The backup's own link and its rename over the older backup are the first of their calls.
    QTest::newRow("link") << "linkat:error=EMLINK:when=1+"
                          << "Too many links";
    QTest::newRow("rename") << "renameat:error=EXDEV:when=1"
                            << "Invalid cross-device link";
}

void TestBackup::olderBackupKeptOnFailure()
{
    // An older backup is replaced in one step: a backup that cannot be made leaves it whole.
    QFETCH(QString, injection);
    QFETCH(QString, reason);
    const Workspace workspace;
    if (runShell(workspace, "strace -qq -o /dev/null true").exitCode != 0)
        QSKIP("strace cannot trace here (install strace; ptrace may be forbidden)");
    workspace.write("f.bin", kOld);
    workspace.write("f.bin~", "an older backup");
    const QStringList before = folderEntries(workspace);
    const ShellResult result = runShell(
        workspace, kLeakCheckOffUnderStrace + ("strace -qq -o /dev/null -e inject=" + injection) +
                       " \"$LX\" defaults --backup=simple -o f.bin; echo \"status $?\"");
    QCOMPARE(QString::fromLocal8Bit(result.err),
             "lxconfig: f.bin: cannot back up: " + reason + "\n");
    QCOMPARE(result.out, QByteArray("status 1\n"));
    QCOMPARE(workspace.read("f.bin"), kOld);
    QCOMPARE(workspace.read("f.bin~"), QByteArray("an older backup"));
    QCOMPARE(folderEntries(workspace), before);
}

void TestBackup::killedBeforeTheBackupsRename()
{
    // The backup's second name left by a run killed there is removed by the next run.
    const Workspace workspace;
    if (runShell(workspace, "strace -qq -o /dev/null true").exitCode != 0)
        QSKIP("strace cannot trace here (install strace; ptrace may be forbidden)");
    workspace.write("f.bin", kOld);
    workspace.write("f.bin~", "an older backup");
    const QStringList before = folderEntries(workspace);
    const ShellResult killed = runShell(
        workspace, kLeakCheckOffUnderStrace +
                       QStringLiteral("strace -qq -o /dev/null -e trace=renameat "
                                      "-e inject=renameat:signal=SIGKILL:when=1 \"$LX\" defaults "
                                      "--backup=simple -o f.bin 2>/dev/null; echo \"status $?\""));
    QCOMPARE(killed.out, QByteArray("status 137\n"));
    QCOMPARE(workspace.read("f.bin"), kOld);
    QCOMPARE(workspace.read("f.bin~"), QByteArray("an older backup"));
    QCOMPARE(folderEntries(workspace).filter(".lxconfig-").size(), 1);
    COMPARE_RUN(workspace.run({"defaults", "--backup=simple", "-o", "f.bin"}), 0, "", "");
    QCOMPARE(workspace.read("f.bin~"), kOld);
    QCOMPARE(folderEntries(workspace), before);
}

QTEST_GUILESS_MAIN(TestBackup)
#include "tst_backup.moc"
