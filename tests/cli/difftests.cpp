// lxconfig diff: the fields that differ between two files, or between a file and the defaults.

#include "expected.h"
#include "tst_cli.h"
#include "workspace.h"

#include <QTest>

namespace {

// triggerLow[3] 700, gpsReceiver 0, esoOffset -125, checksum mended.
QByteArray changedFile()
{
    QByteArray changed = patched(kDefaultBytes, 18, QByteArray::fromHex("BC02"));
    changed = patched(changed, 112, QByteArray::fromHex("00"));
    changed = patched(changed, 122, QByteArray::fromHex("83FFFFFF"));
    return withMendedChecksum(changed);
}

} // namespace

void TestCli::diff_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");

    const QString gps8 = "2 \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT "
                         "chipset\"";
    QTest::newRow("same file") << QStringList{"good.bin", "good.bin"} << 0 << ""
                               << "";
    QTest::newRow("defaults") << QStringList{"good.bin"} << 0 << ""
                              << "";
    QTest::newRow("changed from the defaults")
        << QStringList{"changed.bin"} << 1
        << "triggerLow[3]: 700 -> 688\n"
           "gpsReceiver: 0 \"Custom settings\" -> " +
               gps8 +
               "\n"
               "esoOffset: -125 (shown as 10.00) -> 0 (shown as 0.00)\n" +
               crcChange(changedFile(), kDefaultBytes)
        << "";
    QTest::newRow("changed, other way round")
        << QStringList{"good.bin", "changed.bin"} << 1
        << "triggerLow[3]: 688 -> 700\n"
           "gpsReceiver: " +
               gps8 +
               " -> 0 \"Custom settings\"\n"
               "esoOffset: 0 (shown as 0.00) -> -125 (shown as 10.00)\n" +
               crcChange(kDefaultBytes, changedFile())
        << "";
    QTest::newRow("0 bytes with itself")
        << QStringList{"empty.bin", "empty.bin"} << 0 << ""
        << "lxconfig: warning: empty.bin: bad magic \"\\x00\\x00\\x00\\x00\" (expected \"CONF\")\n"
           "lxconfig: warning: empty.bin: 0 bytes (a record is 167)\n"
           "lxconfig: warning: empty.bin: bad magic \"\\x00\\x00\\x00\\x00\" (expected \"CONF\")\n"
           "lxconfig: warning: empty.bin: 0 bytes (a record is 167)\n";
    QTest::newRow("short") << QStringList{"short.bin"} << 1
                           << crcChange(sampleFile("short.bin"), kDefaultBytes)
                           << "lxconfig: warning: short.bin: " + sampleMismatch("short.bin") +
                                  "\n"
                                  "lxconfig: warning: short.bin: 166 bytes (a record is 167)\n";
    QTest::newRow("long") << QStringList{"long.bin", "good.bin"} << 0 << ""
                          << "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n";
    QTest::newRow("bad magic") << QStringList{"magic.bin"} << 1 << "magic: \"XONF\" -> \"CONF\"\n"
                               << "lxconfig: warning: magic.bin: bad magic \"XONF\" (expected "
                                  "\"CONF\")\n";
    QTest::newRow("other version")
        << QStringList{"good.bin", "version.bin"} << 1 << "headerVersion: 20180601 -> 20180602\n"
        << "lxconfig: warning: version.bin: format version 20180602 (expected 20180601)\n";
    QTest::newRow("bad checksum") << QStringList{"checksum.bin"} << 1
                                  << frameModeChange(1, 0) + "\n"
                                  << "lxconfig: warning: checksum.bin: " +
                                         sampleMismatch("checksum.bin") + "\n";
    QTest::newRow("missing first") << QStringList{"missing.bin", "good.bin"} << 2 << ""
                                   << "lxconfig: missing.bin: cannot open: No such file or "
                                      "directory\n";
    QTest::newRow("missing second") << QStringList{"good.bin", "missing.bin"} << 2 << ""
                                    << "lxconfig: missing.bin: cannot open: No such file or "
                                       "directory\n";
    QTest::newRow("directory") << QStringList{"folder"} << 2 << ""
                               << "lxconfig: folder: cannot read: Is a directory\n";
}

void TestCli::diff()
{
    QFETCH(QStringList, files);
    QFETCH(int, exitCode);
    QFETCH(QString, out);
    QFETCH(QString, err);

    const Workspace workspace;
    workspace.write("changed.bin", changedFile());
    COMPARE_RUN(workspace.run(QStringList{"diff"} + files), exitCode, out, err);
}
