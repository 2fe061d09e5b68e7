// Only regular files are replaced; "-" is a standard stream; links are followed and loops
// refused; names are the bytes given; no input is read without bound.

#include "card.h"
#include "expected.h"
#include "shellrun.h"
#include "tst_lxconfigfiles.h"
#include "workspace.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

void TestLxconfigFiles::outputsThatAreNotFiles_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QByteArray>("out");

    // Device nodes and links of the workspace's own, made as /dev has them: an lxconfig that
    // renamed over its output must not be able to replace the machine's /dev/null.
    const QByteArray json = withLines(kDefaultJson).toUtf8();
    QTest::newRow("null device") << "\"$LX\" defaults -o null && test -c null" << QByteArray();
    QTest::newRow("like /dev/stdout") << "\"$LX\" export good.bin -o stdout" << json;
    QTest::newRow("like /dev/fd/1") << "\"$LX\" export good.bin -o fd/1" << json;
    QTest::newRow("-") << "\"$LX\" defaults -o -" << kDefaultBytes;
    // Standard output is a regular file here: written into like a redirection, not replaced,
    // so the folder gains no file and the name keeps its inode.
    QTest::newRow("/dev/stdout onto a file")
        << "ls -i out.txt >before; \"$LX\" export good.bin -o stdout >>out.txt && "
           "ls -i out.txt >after && cmp -s before after && cat out.txt"
        << QByteArray("start\n") + json;
}

void TestLxconfigFiles::outputsThatAreNotFiles()
{
    QFETCH(QString, script);
    QFETCH(QByteArray, out);
    const Workspace workspace;
    workspace.write("out.txt", "start\n");
    if (runShell(workspace, "mknod -m 666 null c 1 3").exitCode != 0)
        QSKIP("cannot make a device node here (mknod needs root and a folder without nodev)");
    QVERIFY(QFile::link("/proc/self/fd/1", workspace.path("stdout")));
    QVERIFY(QFile::link("/proc/self/fd", workspace.path("fd")));
    const ShellResult result = runShell(workspace, script);
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    QCOMPARE(result.out, out);
    QCOMPARE(result.exitCode, 0);
}

void TestLxconfigFiles::outputIntoFifo()
{
    const Workspace workspace;
    // The shell holds the FIFO open for reading, so lxconfig's open does not wait; what it wrote
    // is then read without waiting, so that a FIFO renamed away cannot hang the test.
    const ShellResult result =
        runShell(workspace, "mkfifo pipe && exec 3<>pipe && \"$LX\" defaults -o pipe; status=$?; "
                            "test -p pipe && echo \"fifo $status\"; "
                            "dd iflag=nonblock bs=64k count=1 <&3 >got 2>/dev/null; true");
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    QCOMPARE(result.out, QByteArray("fifo 0\n"));
    QCOMPARE(workspace.read("got"), kDefaultBytes);
}

void TestLxconfigFiles::standardInput_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QString>("err");

    QTest::newRow("check, redirected")
        << "\"$LX\" check - <good.bin" << QByteArray("-: valid\n") << "";
    // A pipe has no size to tell: what it delivered counts, so a full record is no "0 bytes".
    QTest::newRow("check, pipe") << "cat good.bin | \"$LX\" check -" << QByteArray("-: valid\n")
                                 << "";
    const QByteArray mended = withMendedChecksum(kDefaultBytes.left(100) + QByteArray(67, '\0'));
    const int computed = quint8(mended.at(165)) | quint8(mended.at(166)) << 8;
    QTest::newRow("check, short pipe")
        << "head -c 100 good.bin | \"$LX\" check -"
        << QStringLiteral("-: checksum stored 0 computed %1\n").arg(computed).toUtf8()
        << "lxconfig: warning: -: 100 bytes (a record is 167)\n";
    QTest::newRow("import, pipe") << "cat good.json | \"$LX\" import - -o - | cmp - good.bin && "
                                     "echo same"
                                  << QByteArray("same\n") << "";
    QTest::newRow("diff, pipe") << "cat good.bin | \"$LX\" diff - good.bin" << QByteArray() << "";
}

void TestLxconfigFiles::standardInput()
{
    QFETCH(QString, script);
    QFETCH(QByteArray, out);
    QFETCH(QString, err);
    const Workspace workspace;
    workspace.write("good.json", withLines(kDefaultJson).toUtf8());
    const ShellResult result = runShell(workspace, script);
    QCOMPARE(QString::fromLocal8Bit(result.err), err);
    QCOMPARE(result.out, out);
}

void TestLxconfigFiles::inputFromFifo()
{
    const Workspace workspace;
    const ShellResult result =
        runShell(workspace, "mkfifo pipe && { cat good.bin >pipe & } && \"$LX\" check pipe; wait");
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    QCOMPARE(result.out, QByteArray("pipe: valid\n"));
}

void TestLxconfigFiles::symbolicLinks()
{
    const Workspace workspace;
    // set through a chain of two links, one relative across folders; then -o through a link,
    // and -o through a link whose target does not exist yet.
    const ShellResult result = runShell(
        workspace, "mkdir sub && cp good.bin sub/real.bin && ln -s sub/real.bin first && "
                   "ln -s first second && \"$LX\" set -q second gpsReceiver=1 && "
                   "test -L first && test -L second && test -f sub/real.bin && "
                   "ln -s sub/out.bin to-out && \"$LX\" defaults -o to-out && test -L to-out && "
                   "\"$LX\" export good.bin -o first && test -L first && ls -A sub && echo done");
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    QCOMPARE(result.out, QByteArray("out.bin\nreal.bin\ndone\n"));
    QCOMPARE(workspace.read("sub/out.bin"), kDefaultBytes);
    QCOMPARE(workspace.read("sub/real.bin"), withLines(kDefaultJson).toUtf8());
}

void TestLxconfigFiles::linkLoop_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("err");
    const QString loop = "Too many levels of symbolic links\n";
    QTest::newRow("set") << QStringList{"set", "a", "gpsReceiver=1"}
                         << "lxconfig: a: cannot open: " + loop;
    QTest::newRow("defaults -o") << QStringList{"defaults", "-o", "a"}
                                 << "lxconfig: a: cannot write: " + loop;
    QTest::newRow("check") << QStringList{"check", "a"} << "";
}

void TestLxconfigFiles::linkLoop()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, err);
    const Workspace workspace;
    QVERIFY(QFile::link("b", workspace.path("a")));
    QVERIFY(QFile::link("a", workspace.path("b")));
    const QStringList before = folderEntries(workspace);
    const RunResult result = workspace.run(arguments);
    QCOMPARE(result.err, err);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(folderEntries(workspace), before);
    QVERIFY(QFileInfo(workspace.path("a")).isSymLink());
}

void TestLxconfigFiles::namesAsGiven_data()
{
    QTest::addColumn<QString>("fileSystem");
    QTest::addColumn<QString>("name"); // a printf format, so that any bytes can be given

    for (const QString &fileSystem : cardFileSystems()) {
        const QByteArray name = fileSystem.toUtf8();
        const char *fs = name.constData();
        QTest::addRow("%s, Latin-1, not UTF-8", fs) << fileSystem << "caf\\351.bin";
        QTest::addRow("%s, invalid UTF-8 lead byte", fs) << fileSystem << "\\377\\376.bin";
        QTest::addRow("%s, 255 bytes", fs) << fileSystem << QString(251, 'n') + ".bin";
        QTest::addRow("%s, 255 bytes, not UTF-8", fs)
            << fileSystem << QString(250, 'n') + "\\351.bin";
        QTest::addRow("%s, 255 bytes of UTF-8", fs)
            << fileSystem << QStringLiteral("\\303\\251").repeated(125) + "x.bin";
    }
}

void TestLxconfigFiles::namesAsGiven()
{
    QFETCH(QString, fileSystem);
    QFETCH(QString, name);
    const Workspace workspace;
    const Card card(workspace, fileSystem, "c");
    if (!card.ready())
        QSKIP(qPrintable(card.why()));
    const QString file = QStringLiteral("cd c && n=$(printf '%1') && ").arg(name);
    // A card may refuse a name (FAT keeps names of at most 255 UTF-16 characters, in a character
    // set of its own): lxconfig can only be asked to keep names the card takes.
    const ShellResult taken = runShell(workspace, file + "cp ../good.bin \"$n\" && rm \"$n\"");
    if (card.isCard() && taken.exitCode != 0) {
        QSKIP(qPrintable(fileSystem +
                         " refuses this name: " + QString::fromLocal8Bit(taken.err).trimmed()));
    }
    // set, then -o over the existing file; check prints the name byte for byte.
    const ShellResult result = runShell(
        workspace, file + "cp ../good.bin \"$n\" && "
                          "\"$LX\" set -q \"$n\" gpsReceiver=1 && \"$LX\" check \"$n\" >../got && "
                          "\"$LX\" defaults -o \"$n\" && cmp -s \"$n\" ../good.bin && "
                          "printf '%s: valid\\n' \"$n\" | cmp -s - ../got && ls -A | wc -l");
    QCOMPARE(QString::fromLocal8Bit(result.err), QString());
    // The file alone: no temporary file is left.
    QCOMPARE(result.out.trimmed(), QByteArray("1"));
    QCOMPARE(result.exitCode, 0);
}

void TestLxconfigFiles::boundedInput_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("input");

    QTest::newRow("/dev/zero") << "true"
                               << "/dev/zero";
    QTest::newRow("2 GB sparse file") << "truncate -s 2G big.json"
                                      << "big.json";
    QTest::newRow("endless pipe") << "true"
                                  << "-";
}

void TestLxconfigFiles::boundedInput()
{
    QFETCH(QString, setup);
    QFETCH(QString, input);
    const Workspace workspace;
    QCOMPARE(runShell(workspace, setup).exitCode, 0);
    const QString expected =
        QStringLiteral("lxconfig: %1: cannot read: more than 1048576 bytes\n").arg(input);
    const QString command = QStringLiteral("yes | \"$LX\" import %1 -o out.bin; "
                                           "echo \"status $?\"; test -e out.bin && echo written")
                                .arg(input);
    const ShellResult result = runShell(workspace, command);
    QCOMPARE(QString::fromLocal8Bit(result.err), expected);
    QCOMPARE(result.out, QByteArray("status 1\n"));

    // 64 MiB of address space is far more than a record needs and far less than the input.
    const QString limit = QStringLiteral("ulimit -v 65536; ");
    if (runShell(workspace, limit + "\"$LX\" --version").exitCode != 0)
        QSKIP("lxconfig does not start under an address-space limit here (a sanitizer build "
              "reserves more); the bound on memory is checked in the normal build");
    const ShellResult limited = runShell(workspace, "(" + limit + command + ")");
    QCOMPARE(QString::fromLocal8Bit(limited.err), expected);
    QCOMPARE(limited.out, QByteArray("status 1\n"));
}

void TestLxconfigFiles::outputThatIsAnInput_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("input"); // the file that must stay as it was
    QTest::addColumn<QString>("err");
    QTest::newRow("export over its record")
        << QStringList{"export", "good.bin", "-o", "good.bin"} << "good.bin"
        << "lxconfig: good.bin: is also the file good.bin to export; nothing is written\n";
    QTest::newRow("export through a link")
        << QStringList{"export", "link.bin", "-o", "good.bin"} << "good.bin"
        << "lxconfig: good.bin: is also the file link.bin to export; nothing is written\n";
    QTest::newRow("import over its form")
        << QStringList{"import", "form.json", "-o", "form.json"} << "form.json"
        << "lxconfig: form.json: is also the file form.json to import; nothing is written\n";
    QTest::newRow("report over one of its files")
        << QStringList{"report", "long.bin", "good.bin", "-o", "./good.bin"} << "good.bin"
        << "lxconfig: ./good.bin: is also the file good.bin to report; nothing is written\n";
}

// A sheet or a form written over the file it was made from would replace a camera's record with
// text: refused, whatever name the output is given.
void TestLxconfigFiles::outputThatIsAnInput()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, input);
    QFETCH(QString, err);
    const Workspace workspace;
    QCOMPARE(workspace.run({"export", "good.bin", "-o", "form.json"}).exitCode, 0);
    QVERIFY(QFile::link("good.bin", workspace.path("link.bin")));
    const QByteArray before = workspace.read(input);
    COMPARE_RUN(workspace.run(arguments), 1, "", err);
    QCOMPARE(workspace.read(input), before);
    // resave may replace its input: that is how a file becomes what the editor would save.
    COMPARE_RUN(workspace.run({"resave", "good.bin", "-o", "good.bin"}), 0, "", "");
}

void TestLxconfigFiles::outputThatIsStandardInput_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("input"); // the file on standard input, which must stay as it was
    QTest::addColumn<QString>("err");
    QTest::newRow("report") << "\"$LX\" report - -o good.bin <good.bin"
                            << "good.bin"
                            << "lxconfig: good.bin: is also the file on standard input to "
                               "report; nothing is written\n";
    QTest::newRow("report, through a link")
        << "\"$LX\" report - -o link.bin <good.bin"
        << "good.bin"
        << "lxconfig: link.bin: is also the file on standard input to report; nothing is "
           "written\n";
    QTest::newRow("export") << "\"$LX\" export - -o good.bin <good.bin"
                            << "good.bin"
                            << "lxconfig: good.bin: is also the file on standard input to "
                               "export; nothing is written\n";
    QTest::newRow("import") << "\"$LX\" import - -o form.json <form.json"
                            << "form.json"
                            << "lxconfig: form.json: is also the file on standard input to "
                               "import; nothing is written\n";
    QTest::newRow("report, read-write") << "\"$LX\" report - -o good.bin <>good.bin"
                                        << "good.bin"
                                        << "lxconfig: good.bin: is also the file on standard "
                                           "input to report; nothing is written\n";
}

// The same file reached through standard input ("-" with < FILE) is as much an input as one
// named: a sheet or a form is not written over it.
void TestLxconfigFiles::outputThatIsStandardInput()
{
    QFETCH(QString, script);
    QFETCH(QString, input);
    QFETCH(QString, err);
    const Workspace workspace;
    QCOMPARE(workspace.run({"export", "good.bin", "-o", "form.json"}).exitCode, 0);
    QVERIFY(QFile::link("good.bin", workspace.path("link.bin")));
    const QByteArray before = workspace.read(input);
    const QStringList entries = folderEntries(workspace);
    const ShellResult result = runShell(workspace, script);
    QCOMPARE(QString::fromLocal8Bit(result.err), err);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(workspace.read(input), before);
    QCOMPARE(folderEntries(workspace), entries);
    // Another file on standard input is read as before.
    const ShellResult other = runShell(workspace, "\"$LX\" report - -o sheet.html <good.bin");
    QCOMPARE(other.err, QByteArray());
    QCOMPARE(other.exitCode, 0);
}
