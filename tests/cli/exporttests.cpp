// lxconfig export: the JSON form of a file, on standard output or into a file.

#include "expected.h"
#include "tst_cli.h"
#include "workspace.h"

#include <QTest>

void TestCli::exportFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");

    QTest::newRow("good") << "good.bin" << 0 << withLines(kDefaultJson) << "";
    QTest::newRow("0 bytes") << "empty.bin" << 0 << withLines(kZeroJson)
                             << "lxconfig: warning: empty.bin: bad magic \"\\x00\\x00\\x00\\x00\" "
                                "(expected \"CONF\")\n"
                                "lxconfig: warning: empty.bin: 0 bytes (a record is 167)\n";
    QTest::newRow("short")
        << "short.bin" << 0
        << withLines(
               kDefaultJson,
               {QStringLiteral(R"-(    "crc": %1)-").arg(storedChecksum(sampleFile("short.bin")))})
        << "lxconfig: warning: short.bin: " + sampleMismatch("short.bin") +
               "\n"
               "lxconfig: warning: short.bin: 166 bytes (a record is 167)\n";
    QTest::newRow("long") << "long.bin" << 0 << withLines(kDefaultJson)
                          << "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n";
    QTest::newRow("bad magic") << "magic.bin" << 0
                               << withLines(kDefaultJson, {R"-(    "magic": "XONF",)-"})
                               << "lxconfig: warning: magic.bin: bad magic \"XONF\" (expected "
                                  "\"CONF\")\n";
    QTest::newRow("other version")
        << "version.bin" << 0 << withLines(kDefaultJson, {R"-(    "headerVersion": 20180602,)-"})
        << "lxconfig: warning: version.bin: format version 20180602 (expected 20180601)\n";
    QTest::newRow("bad checksum") << "checksum.bin" << 0
                                  << withLines(kDefaultJson, {R"-(    "triggerFrameMode": 1,)-"})
                                  << "lxconfig: warning: checksum.bin: " +
                                         sampleMismatch("checksum.bin") + "\n";
    QTest::newRow("missing") << "missing.bin" << 1 << ""
                             << "lxconfig: missing.bin: cannot open: No such file or directory\n";
    QTest::newRow("directory") << "folder" << 1 << ""
                               << "lxconfig: folder: cannot read: Is a directory\n";
}

void TestCli::exportFile()
{
    QFETCH(QString, file);
    QFETCH(int, exitCode);
    QFETCH(QString, out);
    QFETCH(QString, err);

    const Workspace workspace;
    COMPARE_RUN(workspace.run({"export", file}), exitCode, out, err);
}

void TestCli::exportToFile()
{
    const Workspace workspace;
    COMPARE_RUN(workspace.run({"export", "good.bin", "-o", "out.json"}), 0, "", "");
    QCOMPARE(QString::fromUtf8(workspace.read("out.json")), withLines(kDefaultJson));
    COMPARE_RUN(workspace.run({"export", "--output", "magic.json", "magic.bin"}), 0, "",
                "lxconfig: warning: magic.bin: bad magic \"XONF\" (expected \"CONF\")\n");
    QCOMPARE(QString::fromUtf8(workspace.read("magic.json")),
             withLines(kDefaultJson, {R"-(    "magic": "XONF",)-"}));
}

void TestCli::exportBeyondJsonNumber()
{
    // fixed134 is a number in the JSON form, and a JSON number holds whole numbers exactly only
    // up to 2^53 - 1.
    const Workspace workspace;
    workspace.write("largest.bin",
                    patched(kDefaultBytes, 134, QByteArray::fromHex("FFFFFFFFFFFF1F00")));
    workspace.write("beyond.bin",
                    patched(kDefaultBytes, 134, QByteArray::fromHex("0000000000002000")));
    workspace.write("out.json", "kept");

    const auto warning = [&workspace](const QString &name) {
        return "lxconfig: warning: " + name + ": " + checksumMismatch(workspace.read(name)) + "\n";
    };
    COMPARE_RUN(workspace.run({"export", "largest.bin"}), 0,
                withLines(kDefaultJson, {R"-(    "fixed134": 9007199254740991,)-"}),
                warning("largest.bin"));
    COMPARE_RUN(workspace.run({"export", "beyond.bin", "-o", "out.json"}), 1, "",
                warning("beyond.bin") +
                    "lxconfig: beyond.bin: fixed134: 9007199254740992 is more than a JSON number "
                    "holds\n");
    QCOMPARE(workspace.read("out.json"), QByteArray("kept"));
}
