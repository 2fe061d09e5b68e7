#include "expected.h"

#include "referencechecksum.h"
#include "untouchedform.h"

#include <QRegularExpression>

const QByteArray kDefaultBytes = untouchedFormFile();

const QString kFrameModeItems[2] = {QStringLiteral("Ongoing stream (default)"),
                                    QStringLiteral("Single frame capture")};

QString frameModeChange(int from, int to)
{
    return QStringLiteral("triggerFrameMode: %1 \"%2\" -> %3 \"%4\"")
        .arg(from)
        .arg(kFrameModeItems[from])
        .arg(to)
        .arg(kFrameModeItems[to]);
}

const QStringList kDefaultShow = {
    R"-(magic                    0  "CONF")-",
    R"-(payloadLength            4  153)-",
    R"-(headerVersion            8  20180601)-",
    R"-(triggerLow              12  688 688 688 688 688 688 688 688 688 688 688 688 688 688 688 688 688 688 688 688)-",
    R"-(triggerHigh             52  1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366 1366)-",
    R"-(ext0Mode                92  0 "None (default)")-",
    R"-(ext1Mode                93  0 "None (default)")-",
    R"-(frameSkip               94  0)-",
    R"-(triggerPinMode          98  0 "ON/OFF")-",
    R"-(triggerFfcMode          99  0 "no additional FFC (default)")-",
    QStringLiteral(R"-(triggerFrameMode       100  0 "%1")-").arg(kFrameModeItems[0]),
    R"-(reserved101            101  0)-",
    R"-(overlayMode            102  0 "OFF")-",
    R"-(isothermState          103  0 "OFF (default)")-",
    R"-(isothermSwitchMode     104  0 "high/low (default)")-",
    R"-(isothermLower          105  15)-",
    R"-(isothermMiddle         107  34)-",
    R"-(isothermUpper          109  40)-",
    R"-(gimbalRc               111  0)-",
    R"-(gpsReceiver            112  2 "Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT chipset")-",
    R"-(externalShutter        113  0)-",
    R"-(esoHeating             114  800)-",
    R"-(esoHeatcycle           118  1000)-",
    R"-(esoOffset              122  0 (shown as 0.00))-",
    R"-(esoShutterInterval     126  120)-",
    R"-(esoOpt5                130  0)-",
    R"-(fixed134               134  1073741824)-",
    R"-(recMaxFramesPerFile    142  1000)-",
    R"-(sbusColormap           146  3 "Channel 4")-",
    R"-(sbusColorMapSwitchMode 147  0 "high/low (default)")-",
    R"-(sbusFfc                148  5 "Channel 6")-",
    R"-(sbusIsotherms          149  0 "Channel 1")-",
    R"-(sbusIsoLow             150  16 "Deactivated")-",
    R"-(sbusIsoMid             151  16 "Deactivated")-",
    R"-(sbusIsoUp              152  16 "Deactivated")-",
    R"-(sbusOverlay            153  1 "Channel 2")-",
    R"-(sbusTrigger            154  4 "Channel 5")-",
    R"-(sbusZoom               155  2 "Channel 3")-",
    R"-(sbusZoomMode           156  0 "high/low (default)")-",
    R"-(spare157               157  0)-",
    R"-(serialBaudrate         158  38400 "38400")-",
    R"-(serialParity           162  0 "none")-",
    R"-(serialStopBits         163  1 "1")-",
    R"-(serialInverted         164  1)-",
    QStringLiteral("crc                    165  %1").arg(storedChecksum(kDefaultBytes)),
};

const QStringList kZeroShow = {
    R"-(magic                    0  "\x00\x00\x00\x00")-",
    R"-(payloadLength            4  0)-",
    R"-(headerVersion            8  0)-",
    R"-(triggerLow              12  0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0)-",
    R"-(triggerHigh             52  0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0)-",
    R"-(ext0Mode                92  0 "None (default)")-",
    R"-(ext1Mode                93  0 "None (default)")-",
    R"-(frameSkip               94  0)-",
    R"-(triggerPinMode          98  0 "ON/OFF")-",
    R"-(triggerFfcMode          99  0 "no additional FFC (default)")-",
    QStringLiteral(R"-(triggerFrameMode       100  0 "%1")-").arg(kFrameModeItems[0]),
    R"-(reserved101            101  0)-",
    R"-(overlayMode            102  0 "OFF")-",
    R"-(isothermState          103  0 "OFF (default)")-",
    R"-(isothermSwitchMode     104  0 "high/low (default)")-",
    R"-(isothermLower          105  0)-",
    R"-(isothermMiddle         107  0)-",
    R"-(isothermUpper          109  0)-",
    R"-(gimbalRc               111  0)-",
    R"-(gpsReceiver            112  0 "Custom settings")-",
    R"-(externalShutter        113  0)-",
    R"-(esoHeating             114  0)-",
    R"-(esoHeatcycle           118  0)-",
    R"-(esoOffset              122  0 (shown as 0.00))-",
    R"-(esoShutterInterval     126  0)-",
    R"-(esoOpt5                130  0)-",
    R"-(fixed134               134  0)-",
    R"-(recMaxFramesPerFile    142  0)-",
    R"-(sbusColormap           146  0 "Channel 1")-",
    R"-(sbusColorMapSwitchMode 147  0 "high/low (default)")-",
    R"-(sbusFfc                148  0 "Channel 1")-",
    R"-(sbusIsotherms          149  0 "Channel 1")-",
    R"-(sbusIsoLow             150  0 "Channel 1")-",
    R"-(sbusIsoMid             151  0 "Channel 1")-",
    R"-(sbusIsoUp              152  0 "Channel 1")-",
    R"-(sbusOverlay            153  0 "Channel 1")-",
    R"-(sbusTrigger            154  0 "Channel 1")-",
    R"-(sbusZoom               155  0 "Channel 1")-",
    R"-(sbusZoomMode           156  0 "high/low (default)")-",
    R"-(spare157               157  0)-",
    R"-(serialBaudrate         158  0 (no item))-",
    R"-(serialParity           162  0 "none")-",
    R"-(serialStopBits         163  0 (no item))-",
    R"-(serialInverted         164  0)-",
    R"-(crc                    165  0)-",
};

const QStringList kDefaultJson = {
    R"-({)-",
    R"-(    "magic": "CONF",)-",
    R"-(    "payloadLength": 153,)-",
    R"-(    "headerVersion": 20180601,)-",
    R"-(    "triggerLow": [688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688],)-",
    R"-(    "triggerHigh": [1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366, 1366],)-",
    R"-(    "ext0Mode": 0,)-",
    R"-(    "ext1Mode": 0,)-",
    R"-(    "frameSkip": 0,)-",
    R"-(    "triggerPinMode": 0,)-",
    R"-(    "triggerFfcMode": 0,)-",
    R"-(    "triggerFrameMode": 0,)-",
    R"-(    "reserved101": 0,)-",
    R"-(    "overlayMode": 0,)-",
    R"-(    "isothermState": 0,)-",
    R"-(    "isothermSwitchMode": 0,)-",
    R"-(    "isothermLower": 15,)-",
    R"-(    "isothermMiddle": 34,)-",
    R"-(    "isothermUpper": 40,)-",
    R"-(    "gimbalRc": 0,)-",
    R"-(    "gpsReceiver": 2,)-",
    R"-(    "externalShutter": 0,)-",
    R"-(    "esoHeating": 800,)-",
    R"-(    "esoHeatcycle": 1000,)-",
    R"-(    "esoOffset": 0,)-",
    R"-(    "esoShutterInterval": 120,)-",
    R"-(    "esoOpt5": 0,)-",
    R"-(    "fixed134": 1073741824,)-",
    R"-(    "recMaxFramesPerFile": 1000,)-",
    R"-(    "sbusColormap": 3,)-",
    R"-(    "sbusColorMapSwitchMode": 0,)-",
    R"-(    "sbusFfc": 5,)-",
    R"-(    "sbusIsotherms": 0,)-",
    R"-(    "sbusIsoLow": 16,)-",
    R"-(    "sbusIsoMid": 16,)-",
    R"-(    "sbusIsoUp": 16,)-",
    R"-(    "sbusOverlay": 1,)-",
    R"-(    "sbusTrigger": 4,)-",
    R"-(    "sbusZoom": 2,)-",
    R"-(    "sbusZoomMode": 0,)-",
    R"-(    "spare157": 0,)-",
    R"-(    "serialBaudrate": 38400,)-",
    R"-(    "serialParity": 0,)-",
    R"-(    "serialStopBits": 1,)-",
    R"-(    "serialInverted": 1,)-",
    QStringLiteral(R"-(    "crc": %1)-").arg(storedChecksum(kDefaultBytes)),
    R"-(})-",
};

const QStringList kZeroJson = {
    R"-({)-",
    R"-(    "magic": "\u0000\u0000\u0000\u0000",)-",
    R"-(    "payloadLength": 0,)-",
    R"-(    "headerVersion": 0,)-",
    R"-(    "triggerLow": [0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0],)-",
    R"-(    "triggerHigh": [0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0],)-",
    R"-(    "ext0Mode": 0,)-",
    R"-(    "ext1Mode": 0,)-",
    R"-(    "frameSkip": 0,)-",
    R"-(    "triggerPinMode": 0,)-",
    R"-(    "triggerFfcMode": 0,)-",
    R"-(    "triggerFrameMode": 0,)-",
    R"-(    "reserved101": 0,)-",
    R"-(    "overlayMode": 0,)-",
    R"-(    "isothermState": 0,)-",
    R"-(    "isothermSwitchMode": 0,)-",
    R"-(    "isothermLower": 0,)-",
    R"-(    "isothermMiddle": 0,)-",
    R"-(    "isothermUpper": 0,)-",
    R"-(    "gimbalRc": 0,)-",
    R"-(    "gpsReceiver": 0,)-",
    R"-(    "externalShutter": 0,)-",
    R"-(    "esoHeating": 0,)-",
    R"-(    "esoHeatcycle": 0,)-",
    R"-(    "esoOffset": 0,)-",
    R"-(    "esoShutterInterval": 0,)-",
    R"-(    "esoOpt5": 0,)-",
    R"-(    "fixed134": 0,)-",
    R"-(    "recMaxFramesPerFile": 0,)-",
    R"-(    "sbusColormap": 0,)-",
    R"-(    "sbusColorMapSwitchMode": 0,)-",
    R"-(    "sbusFfc": 0,)-",
    R"-(    "sbusIsotherms": 0,)-",
    R"-(    "sbusIsoLow": 0,)-",
    R"-(    "sbusIsoMid": 0,)-",
    R"-(    "sbusIsoUp": 0,)-",
    R"-(    "sbusOverlay": 0,)-",
    R"-(    "sbusTrigger": 0,)-",
    R"-(    "sbusZoom": 0,)-",
    R"-(    "sbusZoomMode": 0,)-",
    R"-(    "spare157": 0,)-",
    R"-(    "serialBaudrate": 0,)-",
    R"-(    "serialParity": 0,)-",
    R"-(    "serialStopBits": 0,)-",
    R"-(    "serialInverted": 0,)-",
    R"-(    "crc": 0)-",
    R"-(})-",
};

const QString kDefaultText =
    QStringLiteral(
        "# Lumarex 2.0 settings, one NAME = VALUE line each, page by page in the window's words;\n"
        "# a number before a note in brackets is the value stored.\n"
        "\n"
        "# File header\n"
        "magic = \"CONF\"\n"
        "payloadLength = 153\n"
        "headerVersion = 20180601\n"
        "\n"
        "# Page \"Periphery\"\n"
        "gimbalRc = off\n"
        "gpsReceiver = \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT "
        "chipset\"\n"
        "externalShutter = off\n"
        "esoHeating = 800\n"
        "esoHeatcycle = 1000\n"
        "esoShutterInterval = 120\n"
        "esoOpt5 = 0\n"
        "esoOffset = 0.00\n"
        "\n"
        "# Page \"Trigger\"\n"
        "triggerFrameMode = \"") +
    kFrameModeItems[0] +
    QStringLiteral("\"\n"
                   "triggerPinMode = \"ON/OFF\"\n"
                   "triggerFfcMode = \"no additional FFC (default)\"\n"
                   "\n"
                   "# Page \"GPS/Serial\"\n"
                   "serialParity = \"none\"\n"
                   "serialStopBits = \"1\"\n"
                   "serialInverted = on\n"
                   "serialBaudrate = \"38400\"\n"
                   "\n"
                   "# Page \"SBUS/PPM\"\n"
                   "triggerLow = 688\n"
                   "sbusFfc = \"Channel 6\"\n"
                   "sbusIsotherms = \"Channel 1\"\n"
                   "sbusColormap = \"Channel 4\"\n"
                   "sbusIsoLow = \"Deactivated\"\n"
                   "sbusIsoMid = \"Deactivated\"\n"
                   "sbusIsoUp = \"Deactivated\"\n"
                   "sbusOverlay = \"Channel 2\"\n"
                   "triggerHigh = 1366\n"
                   "sbusTrigger = \"Channel 5\"\n"
                   "sbusZoom = \"Channel 3\"\n"
                   "sbusZoomMode = \"high/low (default)\"\n"
                   "sbusColorMapSwitchMode = \"high/low (default)\"\n"
                   "\n"
                   "# Page \"Extensions\"\n"
                   "ext0Mode = \"None (default)\"\n"
                   "ext1Mode = \"None (default)\"\n"
                   "\n"
                   "# Page \"Isotherms\"\n"
                   "isothermState = \"OFF (default)\"\n"
                   "isothermLower = 15\n"
                   "isothermMiddle = 34\n"
                   "isothermUpper = 40\n"
                   "isothermSwitchMode = \"high/low (default)\"\n"
                   "\n"
                   "# Page \"Overlay\"\n"
                   "overlayMode = \"OFF\"\n"
                   "\n"
                   "# Page \"Recording Options\"\n"
                   "frameSkip = 0\n"
                   "recMaxFramesPerFile = 1000\n"
                   "\n"
                   "# Not in the window: constants and spare bytes\n"
                   "reserved101 = 0\n"
                   "fixed134 = 1073741824\n"
                   "spare157 = 0\n"
                   "\n"
                   "# Checksum\n") +
    QStringLiteral("crc = %1\n").arg(storedChecksum(kDefaultBytes));

QString crcChange(const QByteArray &from, const QByteArray &to)
{
    return QStringLiteral("crc: %1 -> %2\n").arg(storedChecksum(from)).arg(storedChecksum(to));
}

QByteArray patched(QByteArray bytes, int offset, const QByteArray &replacement)
{
    return bytes.replace(offset, replacement.size(), replacement);
}

QString withLines(const QStringList &lines, const QStringList &replacements)
{
    static const QRegularExpression firstWord(QStringLiteral("^\\s*(\\S+)"));
    QStringList result = lines;
    for (const QString &replacement : replacements) {
        const QString word = firstWord.match(replacement).captured(1);
        bool replaced = false;
        for (QString &line : result) {
            if (firstWord.match(line).captured(1) == word) {
                line = replacement;
                replaced = true;
            }
        }
        // A replacement that matches no line is a mistake in the test itself.
        if (!replaced)
            qFatal("withLines: no line for %s", qPrintable(replacement));
    }
    return result.join(QLatin1Char('\n')) + QLatin1Char('\n');
}
