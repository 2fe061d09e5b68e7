// lxconfig show: every field with its offset and value, and what the editor shows for it.

#include "expected.h"
#include "tst_cli.h"
#include "workspace.h"

#include <QTest>

namespace {

// The default record with a run of bytes replaced and the checksum mended.
QByteArray defaultsWith(int offset, const QByteArray &replacement)
{
    return withMendedChecksum(patched(kDefaultBytes, offset, replacement));
}

} // namespace

void TestCli::show_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");

    QTest::newRow("good") << "good.bin" << 0 << withLines(kDefaultShow) << "";
    QTest::newRow("0 bytes") << "empty.bin" << 0 << withLines(kZeroShow)
                             << "lxconfig: warning: empty.bin: bad magic \"\\x00\\x00\\x00\\x00\" "
                                "(expected \"CONF\")\n"
                                "lxconfig: warning: empty.bin: 0 bytes (a record is 167)\n";
    QTest::newRow("short") << "short.bin" << 0
                           << withLines(kDefaultShow,
                                        {QStringLiteral("crc                    165  %1")
                                             .arg(storedChecksum(sampleFile("short.bin")))})
                           << "lxconfig: warning: short.bin: " + sampleMismatch("short.bin") +
                                  "\n"
                                  "lxconfig: warning: short.bin: 166 bytes (a record is 167)\n";
    QTest::newRow("long") << "long.bin" << 0 << withLines(kDefaultShow)
                          << "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n";
    QTest::newRow("bad magic") << "magic.bin" << 0
                               << withLines(kDefaultShow,
                                            {R"-(magic                    0  "XONF")-"})
                               << "lxconfig: warning: magic.bin: bad magic \"XONF\" (expected "
                                  "\"CONF\")\n";
    QTest::newRow("other version")
        << "version.bin" << 0 << withLines(kDefaultShow, {"headerVersion            8  20180602"})
        << "lxconfig: warning: version.bin: format version 20180602 (expected 20180601)\n";
    QTest::newRow("bad checksum")
        << "checksum.bin" << 0
        << withLines(
               kDefaultShow,
               {QStringLiteral(R"-(triggerFrameMode       100  1 "%1")-").arg(kFrameModeItems[1])})
        << "lxconfig: warning: checksum.bin: " + sampleMismatch("checksum.bin") + "\n";
    QTest::newRow("missing") << "missing.bin" << 1 << ""
                             << "lxconfig: missing.bin: cannot open: No such file or directory\n";
    QTest::newRow("directory") << "folder" << 1 << ""
                               << "lxconfig: folder: cannot read: Is a directory\n";
}

void TestCli::show()
{
    QFETCH(QString, file);
    QFETCH(int, exitCode);
    QFETCH(QString, out);
    QFETCH(QString, err);

    const Workspace workspace;
    COMPARE_RUN(workspace.run({"show", file}), exitCode, out, err);
}

void TestCli::showItemTexts_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("line");

    const auto row = [](const char *name, int offset, const char *hex, const QString &line) {
        QTest::newRow(name) << offset << QByteArray::fromHex(hex) << line;
    };
    row("gps 0", 112, "00", R"-(gpsReceiver            112  0 "Custom settings")-");
    row("gps 1", 112, "01",
        QString::fromUtf8("gpsReceiver            112  1 \"Lumarex GPS Receiver - based on "
                          "u-blox 6 SuperSense\xC2\xAE chipset\""));
    row("gps 3", 112, "03",
        R"-(gpsReceiver            112  3 "Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS UBX-M8030-KT chipset")-");
    row("gps 4", 112, "04", "gpsReceiver            112  4 (no item)");
    row("ext0 code 1", 92, "01",
        R"-(ext0Mode                92  1 "do FFC (automatic FFC is off)")-");
    row("ext0 code 5", 92, "05", R"-(ext0Mode                92  5 "External Shutter RX/TX")-");
    row("ext0 code 2", 92, "02", "ext0Mode                92  2 (no item)");
    row("ext1 code 2", 93, "02", R"-(ext1Mode                93  2 "External Sync")-");
    row("ext1 code 6", 93, "06", R"-(ext1Mode                93  6 "External Shutter RX/TX")-");
    row("ext1 code 1", 93, "01", "ext1Mode                93  1 (no item)");
    row("channel 1", 154, "00", R"-(sbusTrigger            154  0 "Channel 1")-");
    row("channel 16", 154, "0F", R"-(sbusTrigger            154  15 "Channel 16")-");
    row("deactivated", 154, "10", R"-(sbusTrigger            154  16 "Deactivated")-");
    row("past the channels", 154, "11", "sbusTrigger            154  17 (no item)");
    row("no current item", 150, "FF", "sbusIsoLow             150  255 (no item)");
    row("trigger mode", 98, "05", R"-(triggerPinMode          98  5 "PPM")-");
    row("auto FFC", 99, "01",
        R"-(triggerFfcMode          99  1 "additional FFC on trigger start")-");
    row("overlay", 102, "01", R"-(overlayMode            102  1 "ON")-");
    row("isotherm state", 103, "01", R"-(isothermState          103  1 "ON")-");
    row("isotherm switch", 104, "01", R"-(isothermSwitchMode     104  1 "absolute values")-");
    row("sbus switch", 156, "01", R"-(sbusZoomMode           156  1 "absolute")-");
    row("colour map switch", 147, "02", "sbusColorMapSwitchMode 147  2 (no item)");
    row("parity", 162, "02", R"-(serialParity           162  2 "even")-");
    row("baud rate 9600", 158, "80250000", R"-(serialBaudrate         158  9600 "9600")-");
    row("baud rate 921600", 158, "00100E00", R"-(serialBaudrate         158  921600 "921600")-");
    row("baud rate 9601", 158, "81250000", "serialBaudrate         158  9601 (no item)");
    row("stop bits 2", 163, "02", R"-(serialStopBits         163  2 "2")-");
    row("stop bits 3", 163, "03", "serialStopBits         163  3 (no item)");
    row("offset 2.5", 122, "FA000000", "esoOffset              122  250 (shown as 2.50)");
    row("offset 0.29", 122, "1D000000", "esoOffset              122  29 (shown as 0.29)");
    row("offset above 10", 122, "E9030000", "esoOffset              122  1001 (shown as 10.00)");
    row("negative offset", 122, "83FFFFFF", "esoOffset              122  -125 (shown as 10.00)");
    row("negative heating", 114, "FFFFFFFF", "esoHeating             114  -1");
    row("frames per file", 142, "80000000", "recMaxFramesPerFile    142  128");
    row("frame skip", 94, "FFFFFFFF", "frameSkip               94  4294967295");
    row("fixed134", 134, "FFFFFFFFFFFFFFFF", "fixed134               134  18446744073709551615");
    row("trigger slot 3", 18, "BC02",
        "triggerLow              12  688 688 688 700 688 688 688 688 688 688 688 688 688 688 "
        "688 688 688 688 688 688");
    row("last trigger slot", 90, "FFFF",
        "triggerHigh             52  1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 "
        "1366 1366 1366 1366 1366 1366 1366 1366 65535");
}

void TestCli::showItemTexts()
{
    QFETCH(int, offset);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, line);

    const Workspace workspace;
    const QByteArray record = defaultsWith(offset, bytes);
    workspace.write("changed.bin", record);
    // Only the changed field and the mended checksum differ from the defaults.
    const QString crcLine = QStringLiteral("crc                    165  %1")
                                .arg(quint8(record[165]) | quint16(quint8(record[166]) << 8));
    COMPARE_RUN(workspace.run({"show", "changed.bin"}), 0, withLines(kDefaultShow, {line, crcLine}),
                "");
}
