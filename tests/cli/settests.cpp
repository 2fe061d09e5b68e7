// lxconfig set: fields changed in place with the checksum mended, or the file left alone.

#include "expected.h"
#include "tst_cli.h"
#include "workspace.h"

#include <QTest>

namespace {

// The default record with runs of bytes replaced, offset and hex digits in turn, and the
// mended checksum.
QByteArray defaultsWith(std::initializer_list<std::pair<int, const char *>> patches, quint16 crc)
{
    QByteArray bytes = kDefaultBytes;
    for (const auto &[offset, hex] : patches)
        bytes = patched(bytes, offset, QByteArray::fromHex(hex));
    bytes[165] = char(crc & 0xFF);
    bytes[166] = char(crc >> 8);
    return bytes;
}

} // namespace

void TestCli::set_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QString>("err");

    QTest::newRow("one field") << "good.bin" << QStringList{"gpsReceiver=0"}
                               << defaultsWith({{112, "00"}}, 60521) << "";
    QTest::newRow("every trigger slot")
        << "good.bin" << QStringList{"triggerLow=700"}
        << defaultsWith({{12, "BC02BC02BC02BC02BC02BC02BC02BC02BC02BC02"
                              "BC02BC02BC02BC02BC02BC02BC02BC02BC02BC02"}},
                        51122)
        << "";
    QTest::newRow("one trigger slot") << "good.bin" << QStringList{"triggerLow[3]=700"}
                                      << defaultsWith({{18, "BC02"}}, 55728) << "";
    QTest::newRow("last trigger slot") << "good.bin" << QStringList{"triggerHigh[19]=2047"}
                                       << defaultsWith({{90, "FF07"}}, 53935) << "";
    QTest::newRow("negative") << "good.bin" << QStringList{"esoOffset=-125"}
                              << defaultsWith({{122, "83FFFFFF"}}, 28950) << "";
    QTest::newRow("largest u32") << "good.bin" << QStringList{"frameSkip=4294967295"}
                                 << defaultsWith({{94, "FFFFFFFF"}}, 23166) << "";
    // The editor would refuse either: only with --force.
    QTest::newRow("magic") << "good.bin" << QStringList{"--force", "magic=ABCD"}
                           << defaultsWith({{0, "41424344"}}, 19460) << "";
    QTest::newRow("version") << "good.bin" << QStringList{"headerVersion=20180602", "--force"}
                             << defaultsWith({{8, "7AEE3301"}}, 55130) << "";
    QTest::newRow("magic as it was")
        << "good.bin" << QStringList{"magic=CONF"} << kDefaultBytes << "";
    QTest::newRow("fixed134") << "good.bin" << QStringList{"fixed134=0"}
                              << defaultsWith({{134, "0000000000000000"}}, 7) << "";
    QTest::newRow("two fields") << "good.bin" << QStringList{"gpsReceiver=1", "serialParity=2"}
                                << defaultsWith({{112, "01"}, {162, "02"}}, 14284) << "";
    QTest::newRow("the last change wins")
        << "good.bin" << QStringList{"gpsReceiver=1", "gpsReceiver=3"}
        << defaultsWith({{112, "03"}}, 50406) << "";
    QTest::newRow("three fields")
        << "good.bin" << QStringList{"triggerLow[3]=700", "gpsReceiver=0", "esoOffset=-125"}
        << defaultsWith({{18, "BC02"}, {112, "00"}, {122, "83FFFFFF"}}, 17615) << "";
    // The record is written back alone: what followed it is dropped.
    QTest::newRow("long file") << "long.bin" << QStringList{"gimbalRc=1"}
                               << defaultsWith({{111, "01"}}, 12885)
                               << "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n";
}

void TestCli::set()
{
    QFETCH(QString, file);
    QFETCH(QStringList, changes);
    QFETCH(QByteArray, expected);
    QFETCH(QString, err);

    const Workspace workspace;
    COMPARE_RUN(workspace.run(QStringList{"set", "--raw", file} + changes), 0, "", err);
    QCOMPARE(workspace.read(file).toHex(' '), expected.toHex(' '));
}

void TestCli::setRejects_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("err");

    const auto row = [](const char *name, const char *file, const char *change, const char *err) {
        QTest::newRow(name) << file << change << err;
    };
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
        "lxconfig: short.bin: checksum stored 114 computed 23154\n");
    row("bad magic", "magic.bin", "gimbalRc=1",
        "lxconfig: magic.bin: bad magic \"XONF\" (expected \"CONF\")\n");
    row("other version", "version.bin", "gimbalRc=1",
        "lxconfig: version.bin: format version 20180602 (expected 20180601)\n");
    // A damaged file does not get a fresh checksum.
    row("bad checksum", "checksum.bin", "gimbalRc=1",
        "lxconfig: checksum.bin: checksum stored 23154 computed 41000\n");
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
