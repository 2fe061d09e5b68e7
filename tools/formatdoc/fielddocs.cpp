#include "fielddocs.h"

#include <algorithm>

namespace formatdoc {

namespace {

// Bytes the format fixes; ConfigRecord::seal() writes them.
constexpr std::optional<std::uint32_t> kSealed = std::nullopt;

// A "channel byte" (explained in docs/file-format.md) is 0 to 15 for receiver channels 1 to 16
// and 16 for Deactivated.
constexpr FieldDoc kDocs[] = {
    {"magic", "File identifier; a file without it is refused with the \"Version error\" dialog",
     kSealed},
    {"payloadLength", "Bytes from offset 12 up to the checksum (165 − 12); never checked on load",
     kSealed},
    {"headerVersion",
     "Format version; a file with any other number is refused with the \"Version error\" dialog",
     kSealed},
    {"triggerLow",
     "SBUS/PPM *Trigger ON/OFF* low threshold, raw channel value 1–2047; element *k* belongs to "
     "trigger channel item *k*. Saved into all 20 elements, loaded from element `sbusTrigger`",
     688},
    {"triggerHigh", "SBUS/PPM *Trigger ON/OFF* high threshold, stored like `triggerLow`", 1366},
    {"ext0Mode", "EXT 0 mode code: 0 none, 1 do FFC, 5 external shutter", 0},
    {"ext1Mode", "EXT 1 mode code: 0 none, 2 external sync, 6 external shutter", 0},
    {"frameSkip", "Frames skipped while recording: the *# Frames* text as an unsigned number", 0},
    {"triggerPinMode",
     "Trigger mode: 0 ON/OFF, 1 SBUS, 2 serial input, 3 PWM (normal), 4 PWM (inverted), 5 PPM", 0},
    {"triggerFfcMode", "Trigger auto FFC: 0 no additional FFC, 1 additional FFC on trigger start",
     0},
    {"triggerFrameMode", "Trigger frame mode: 0 ongoing stream, 1 single frame capture", 0},
    {"reserved101", "Always 0; readers ignore it", kSealed},
    {"overlayMode", "Overlay start state: 0 OFF, 1 ON", 0},
    {"isothermState", "Isotherm start state: 0 OFF, 1 ON", 0},
    {"isothermSwitchMode",
     "Isotherms switch mode: 0 high/low, 1 absolute values. The editor loads it into the start "
     "state box",
     0},
    {"isothermLower", "Lower isotherm threshold, whole °C, 0–1000", 15},
    {"isothermMiddle", "Middle isotherm threshold, whole °C, 0–1000", 34},
    {"isothermUpper", "Upper isotherm threshold, whole °C, 0–1000", 40},
    {"gimbalRc", "Orvid gimbal remote control attached: 1 yes, 0 no", 0},
    {"gpsReceiver", "GPS receiver: 0 custom settings, 1 u-blox 6, 2 u-blox 8, 3 u-blox 8 at 10 Hz",
     2},
    {"externalShutter", "External shutter attached: 1 yes, 0 no", 0},
    {"esoHeating", "External shutter heating, 0–1000", 800},
    {"esoHeatcycle", "External shutter heat cycle, 0–2000", 1000},
    {"esoOffset",
     "External shutter offset in hundredths, −1000 to 1000 (−10.00 to 10.00), cut toward zero. "
     "The editor reads it back unsigned",
     0},
    {"esoShutterInterval", "External shutter interval, 0–3600", 120},
    {"esoOpt5", "External shutter option 5, 0–99", 0},
    {"fixed134", "Format constant 40000000 hex as a little-endian u64; readers ignore it", kSealed},
    {"recMaxFramesPerFile", "Maximum frames per recorded file, 1–16000", 1000},
    {"sbusColormap", "Colour-map switch: channel byte", 3},
    {"sbusColorMapSwitchMode",
     "Colour-map switch mode: 0 high/low, 1 absolute. Not restored on load", 0},
    {"sbusFfc", "FFC mode/execution: channel byte", 5},
    {"sbusIsotherms", "Isotherms on/off: channel byte", 0},
    {"sbusIsoLow", "Lower isotherm threshold: channel byte", 16},
    {"sbusIsoMid", "Middle isotherm threshold: channel byte", 16},
    {"sbusIsoUp", "Upper isotherm threshold: channel byte", 16},
    {"sbusOverlay", "Overlay on/off: channel byte", 1},
    {"sbusTrigger", "Trigger on/off: channel byte; also picks the threshold element on load", 4},
    {"sbusZoom", "Zoom in/out: channel byte", 2},
    {"sbusZoomMode", "Zoom mode: 0 high/low, 1 absolute. Not restored on load", 0},
    {"spare157", "Unused; the editor writes 0 and readers ignore it", 0},
    {"serialBaudrate", "Serial baud rate in bit/s, 1200 to 921600", 38400},
    {"serialParity", "Serial parity: 0 none, 1 odd, 2 even", 0},
    {"serialStopBits", "Serial stop bits: 1 or 2", 1},
    {"serialInverted", "Serial signal inverted: 1 yes, 0 no", 1},
    {"crc", "CRC-16 of bytes 0 to 164, low byte first", kSealed},
};

} // namespace

const FieldDoc *findFieldDoc(std::string_view name)
{
    const auto it = std::find_if(std::begin(kDocs), std::end(kDocs),
                                 [name](const FieldDoc &doc) { return doc.name == name; });
    return it == std::end(kDocs) ? nullptr : &*it;
}

std::vector<std::string> fieldDocProblems()
{
    std::vector<std::string> problems;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        if (!findFieldDoc(info.name))
            problems.push_back(std::string("field ") + info.name + " has no description");
    }
    for (const FieldDoc &doc : kDocs) {
        if (!lumarex::fieldByName(doc.name))
            problems.push_back("description of unknown field " + std::string(doc.name));
    }
    return problems;
}

lumarex::ConfigRecord defaultRecord()
{
    lumarex::ConfigRecord record;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        const FieldDoc *doc = findFieldDoc(info.name);
        if (!doc || !doc->editorDefault)
            continue;
        for (int element = 0; element < info.elementCount(); ++element)
            record.setValue(info.field, *doc->editorDefault, element);
    }
    record.seal();
    return record;
}

} // namespace formatdoc
