// lxconfig set: fields changed in place with the checksum mended, or the file left alone.

#include "expected.h"
#include "tst_cli.h"
#include "workspace.h"

#include <QFile>
#include <QTest>
#include <sys/stat.h>

namespace {

// The default record with runs of bytes replaced, offset and hex digits in turn, and the
// checksum mended by the tests' own CRC.
QByteArray defaultsWith(std::initializer_list<std::pair<int, const char *>> patches)
{
    QByteArray bytes = kDefaultBytes;
    for (const auto &[offset, hex] : patches)
        bytes = patched(bytes, offset, QByteArray::fromHex(hex));
    return withMendedChecksum(bytes);
}

} // namespace

void TestCli::set_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");

    // Every trigger slot: one line per element that changed.
    QString everySlot = "good.bin: 1 value set, 1 changed\n";
    for (int slot = 0; slot < 20; ++slot)
        everySlot += QStringLiteral("  triggerLow[%1]: 688 -> 700\n").arg(slot);

    QTest::newRow("one field") << "good.bin" << QStringList{"gpsReceiver=0"}
                               << defaultsWith({{112, "00"}})
                               << "good.bin: 1 value set, 1 changed\n"
                                  "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox 8 "
                                  "Multi GNSS UBX-M8030-KT chipset\" -> 0 \"Custom settings\"\n"
                               << "";
    QTest::newRow("every trigger slot")
        << "good.bin" << QStringList{"triggerLow=700"}
        << defaultsWith({{12, "BC02BC02BC02BC02BC02BC02BC02BC02BC02BC02"
                              "BC02BC02BC02BC02BC02BC02BC02BC02BC02BC02"}})
        << everySlot << "";
    QTest::newRow("one trigger slot")
        << "good.bin" << QStringList{"triggerLow[3]=700"} << defaultsWith({{18, "BC02"}})
        << "good.bin: 1 value set, 1 changed\n"
           "  triggerLow[3]: 688 -> 700\n"
        << "";
    QTest::newRow("last trigger slot")
        << "good.bin" << QStringList{"triggerHigh[19]=2047"} << defaultsWith({{90, "FF07"}})
        << "good.bin: 1 value set, 1 changed\n"
           "  triggerHigh[19]: 1366 -> 2047\n"
        << "";
    QTest::newRow("negative") << "good.bin" << QStringList{"esoOffset=-125"}
                              << defaultsWith({{122, "83FFFFFF"}})
                              << "good.bin: 1 value set, 1 changed\n"
                                 "  esoOffset: 0 (shown as 0.00) -> -125 (shown as 10.00)\n"
                              << "";
    QTest::newRow("largest u32") << "good.bin" << QStringList{"frameSkip=4294967295"}
                                 << defaultsWith({{94, "FFFFFFFF"}})
                                 << "good.bin: 1 value set, 1 changed\n"
                                    "  frameSkip: 0 -> 4294967295\n"
                                 << "";
    // The editor would refuse either: only with --force.
    QTest::newRow("magic") << "good.bin" << QStringList{"--force", "magic=ABCD"}
                           << defaultsWith({{0, "41424344"}})
                           << "good.bin: 1 value set, 1 changed\n"
                              "  magic: \"CONF\" -> \"ABCD\"\n"
                           << "";
    QTest::newRow("version") << "good.bin" << QStringList{"headerVersion=20180602", "--force"}
                             << defaultsWith({{8, "7AEE3301"}})
                             << "good.bin: 1 value set, 1 changed\n"
                                "  headerVersion: 20180601 -> 20180602\n"
                             << "";
    QTest::newRow("magic as it was")
        << "good.bin" << QStringList{"magic=CONF"} << kDefaultBytes
        << "good.bin: 1 value set, 0 changed; the file is left as it was\n"
        << "";
    QTest::newRow("fixed134") << "good.bin" << QStringList{"fixed134=0"}
                              << defaultsWith({{134, "0000000000000000"}})
                              << "good.bin: 1 value set, 1 changed\n"
                                 "  fixed134: 1073741824 -> 0\n"
                              << "";
    QTest::newRow("two fields") << "good.bin" << QStringList{"gpsReceiver=1", "serialParity=2"}
                                << defaultsWith({{112, "01"}, {162, "02"}})
                                << QString::fromUtf8(
                                       "good.bin: 2 values set, 2 changed\n"
                                       "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox "
                                       "8 Multi GNSS UBX-M8030-KT chipset\" -> 1 \"Lumarex GPS "
                                       "Receiver - based on u-blox 6 SuperSense\xc2\xae"
                                       " chipset\"\n"
                                       "  serialParity: 0 \"none\" -> 2 \"even\"\n")
                                << "";
    QTest::newRow("the last change wins")
        << "good.bin" << QStringList{"gpsReceiver=1", "gpsReceiver=3"}
        << defaultsWith({{112, "03"}})
        << "good.bin: 2 values set, 1 changed\n"
           "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT "
           "chipset\" -> 3 \"Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS "
           "UBX-M8030-KT chipset\"\n"
        << "";
    QTest::newRow("three fields") << "good.bin"
                                  << QStringList{"triggerLow[3]=700", "gpsReceiver=0",
                                                 "esoOffset=-125"}
                                  << defaultsWith({{18, "BC02"}, {112, "00"}, {122, "83FFFFFF"}})
                                  << "good.bin: 3 values set, 3 changed\n"
                                     "  triggerLow[3]: 688 -> 700\n"
                                     "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox 8 "
                                     "Multi GNSS UBX-M8030-KT chipset\" -> 0 \"Custom settings\"\n"
                                     "  esoOffset: 0 (shown as 0.00) -> -125 (shown as 10.00)\n"
                                  << "";
    // The record is written back alone: what followed it is dropped.
    QTest::newRow("long file") << "long.bin" << QStringList{"gimbalRc=1"}
                               << defaultsWith({{111, "01"}})
                               << "long.bin: 1 value set, 1 changed\n"
                                  "  gimbalRc: 0 -> 1\n"
                               << "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n";
}

void TestCli::set()
{
    QFETCH(QString, file);
    QFETCH(QStringList, changes);
    QFETCH(QByteArray, expected);
    QFETCH(QString, out);
    QFETCH(QString, err);

    const Workspace workspace;
    COMPARE_RUN(workspace.run(QStringList{"set", "--raw", file} + changes), 0, out, err);
    QCOMPARE(workspace.read(file).toHex(' '), expected.toHex(' '));
}

void TestCli::setQuiet()
{
    const Workspace workspace;
    COMPARE_RUN(workspace.run({"set", "-q", "good.bin", "gpsReceiver=0"}), 0, "", "");
    COMPARE_RUN(workspace.run({"set", "long.bin", "--quiet", "gpsReceiver=0"}), 0, "",
                "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n");
    COMPARE_RUN(workspace.run({"diff", "good.bin", "long.bin"}), 0, "", "");
    COMPARE_RUN(workspace.run({"set", "-q", "--raw", "good.bin", "gpsReceiver=7000"}), 1, "",
                "lxconfig: good.bin: gpsReceiver: expected a whole number from 0 to 255\n");
}

void TestCli::setNothingChanged()
{
    // A file that already holds the values is neither rewritten nor backed up.
    const Workspace workspace;
    const auto inode = [&workspace](const QString &name) {
        struct stat status;
        return ::stat(QFile::encodeName(workspace.path(name)).constData(), &status) == 0
                   ? status.st_ino
                   : ino_t(0);
    };
    const ino_t before = inode("good.bin");
    COMPARE_RUN(workspace.run({"set", "--backup=numbered", "good.bin", "gpsReceiver=2",
                               "serialBaudrate=9600", "serialBaudrate=38400"}),
                0, "good.bin: 3 values set, 0 changed; the file is left as it was\n", "");
    QCOMPARE(inode("good.bin"), before);
    QVERIFY(!workspace.exists("good.bin.~1~"));
    QCOMPARE(workspace.read("good.bin"), kDefaultBytes);
    // A long file is trimmed to its record, which is a change to the file, if not to a value.
    COMPARE_RUN(workspace.run({"set", "long.bin", "gpsReceiver=2"}), 0,
                "long.bin: 1 value set, 0 changed\n",
                "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n");
    QCOMPARE(workspace.read("long.bin"), kDefaultBytes);
}

void TestCli::setRejects_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("err");

    const auto row = [](const char *name, const char *file, const char *change,
                        const QString &err) { QTest::newRow(name) << file << change << err; };
    row("unknown field", "good.bin", "colour=1", "lxconfig: good.bin: colour: no such field\n");
    row("checksum", "good.bin", "crc=1",
        "lxconfig: good.bin: crc: the checksum is computed, not set\n");
    row("above u8", "good.bin", "gpsReceiver=256",
        "lxconfig: good.bin: gpsReceiver: expected a whole number from 0 to 255\n");
    row("below u8", "good.bin", "gpsReceiver=-1",
        "lxconfig: good.bin: gpsReceiver: expected a whole number from 0 to 255\n");
    row("not a number", "good.bin", "gpsReceiver=two",
        "lxconfig: good.bin: gpsReceiver: expected a whole number from 0 to 255\n");
    row("empty value", "good.bin",
        "gpsReceiver=", "lxconfig: good.bin: gpsReceiver: expected a whole number from 0 to 255\n");
    row("fraction", "good.bin", "esoOffset=1.5",
        "lxconfig: good.bin: esoOffset: expected a whole number from -2147483648 to 2147483647\n");
    row("above a trigger slot", "good.bin", "triggerLow=65536",
        "lxconfig: good.bin: triggerLow: expected a whole number from 0 to 65535\n");
    row("slot past the array", "good.bin", "triggerLow[20]=700",
        "lxconfig: good.bin: triggerLow[20]: no such element\n");
    row("slot of a number", "good.bin", "gpsReceiver[0]=1",
        "lxconfig: good.bin: gpsReceiver[0]: no such element\n");
    row("no value", "good.bin", "gpsReceiver",
        "lxconfig: good.bin: gpsReceiver: expected FIELD=VALUE or FIELD[INDEX]=VALUE\n");
    row("magic too long", "good.bin", "magic=CONFIG",
        "lxconfig: good.bin: magic: expected 4 characters from U+0000 to U+00FF\n");
    row("0 bytes", "empty.bin", "gimbalRc=1",
        "lxconfig: empty.bin: bad magic \"\\x00\\x00\\x00\\x00\" (expected \"CONF\")\n");
    row("short", "short.bin", "gimbalRc=1",
        "lxconfig: short.bin: " + sampleMismatch("short.bin") + "\n");
    row("bad magic", "magic.bin", "gimbalRc=1",
        "lxconfig: magic.bin: bad magic \"XONF\" (expected \"CONF\")\n");
    row("other version", "version.bin", "gimbalRc=1",
        "lxconfig: version.bin: format version 20180602 (expected 20180601)\n");
    // A damaged file does not get a fresh checksum.
    row("bad checksum", "checksum.bin", "gimbalRc=1",
        "lxconfig: checksum.bin: " + sampleMismatch("checksum.bin") + "\n");
    row("magic the editor refuses", "good.bin", "magic=ABCD",
        "lxconfig: good.bin: magic: the editor refuses a file without \"CONF\"; --force writes it "
        "all the same\n");
    row("version the editor refuses", "good.bin", "headerVersion=20180602",
        "lxconfig: good.bin: headerVersion: the editor refuses format version 20180602 (it loads "
        "20180601); --force writes it all the same\n");
    row("standard input", "-", "gimbalRc=1",
        "lxconfig: -: cannot write: standard input cannot be changed in place\n");
    row("missing", "missing.bin", "gimbalRc=1",
        "lxconfig: missing.bin: cannot open: No such file or directory\n");
    row("directory", "folder", "gimbalRc=1", "lxconfig: folder: cannot read: Is a directory\n");
}

void TestCli::setRejects()
{
    QFETCH(QString, file);
    QFETCH(QString, change);
    QFETCH(QString, err);

    const Workspace workspace;
    const bool existed = workspace.exists(file);
    const QByteArray before = workspace.read(file);
    // A good change before the bad one is not written either.
    COMPARE_RUN(workspace.run({"set", "--raw", file, "gimbalRc=1", change}), 1, "", err);
    QCOMPARE(workspace.read(file), before);
    QCOMPARE(workspace.exists(file), existed);
}
