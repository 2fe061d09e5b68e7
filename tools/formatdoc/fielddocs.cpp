#include "fielddocs.h"

#include <algorithm>

namespace formatdoc {

namespace {

// What each field means to the device. The editor's side of a field (its page, caption, items,
// range and start value) is not written here: the CONTROLS table and the Default column take it
// from the form. A "channel byte" (explained in docs/file-format.md) is the index of a receiver
// channel item, the last item meaning Deactivated.
constexpr FieldDoc kDocs[] = {
    {"magic", "File identifier; a file without it is refused with the \"Version error\" dialog"},
    {"payloadLength", "Bytes from offset 12 up to the checksum (165 − 12); never checked on load"},
    {"headerVersion",
     "Format version; a file with any other number is refused with the \"Version error\" dialog"},
    {"triggerLow",
     "SBUS/PPM trigger low threshold, raw channel value; element *k* belongs to trigger channel "
     "item *k*. Saved into all 20 elements, loaded from element `sbusTrigger`"},
    {"triggerHigh", "SBUS/PPM trigger high threshold, stored like `triggerLow`"},
    {"ext0Mode", "EXT 0 device mode code of the selected item"},
    {"ext1Mode", "EXT 1 device mode code of the selected item"},
    {"frameSkip", "Frames skipped while recording: the text as an unsigned number"},
    {"triggerPinMode", "Trigger mode: the item's index"},
    {"triggerFfcMode", "Trigger auto FFC: the item's index"},
    {"triggerFrameMode", "Trigger frame mode: the item's index"},
    {"reserved101", "Always 0; readers ignore it"},
    {"overlayMode", "Overlay start state: the item's index"},
    {"isothermState", "Isotherm start state: the item's index"},
    {"isothermSwitchMode",
     "Isotherms switch mode: the item's index. The editor loads it into the start state box"},
    {"isothermLower", "Lower isotherm threshold, whole °C"},
    {"isothermMiddle", "Middle isotherm threshold, whole °C"},
    {"isothermUpper", "Upper isotherm threshold, whole °C"},
    {"gimbalRc", "Gimbal remote control attached: 1 yes, 0 no"},
    {"gpsReceiver", "GPS receiver: the item's index"},
    {"externalShutter", "External shutter attached: 1 yes, 0 no"},
    {"esoHeating", "External shutter heating"},
    {"esoHeatcycle", "External shutter heat cycle"},
    {"esoOffset",
     "External shutter offset in hundredths, cut toward zero. The editor reads it back unsigned"},
    {"esoShutterInterval", "External shutter interval"},
    {"esoOpt5", "External shutter option 5"},
    {"fixed134", "Format constant 40000000 hex as a little-endian u64; readers ignore it"},
    {"recMaxFramesPerFile", "Maximum frames per recorded file"},
    {"sbusColormap", "Colour-map switch: channel byte"},
    {"sbusColorMapSwitchMode", "Colour-map switch mode: the item's index. Not restored on load"},
    {"sbusFfc", "FFC mode/execution: channel byte"},
    {"sbusIsotherms", "Isotherms on/off: channel byte"},
    {"sbusIsoLow", "Lower isotherm threshold: channel byte"},
    {"sbusIsoMid", "Middle isotherm threshold: channel byte"},
    {"sbusIsoUp", "Upper isotherm threshold: channel byte"},
    {"sbusOverlay", "Overlay on/off: channel byte"},
    {"sbusTrigger", "Trigger on/off: channel byte; also picks the threshold element on load"},
    {"sbusZoom", "Zoom in/out: channel byte"},
    {"sbusZoomMode", "Zoom mode: the item's index. Not restored on load"},
    {"spare157", "Unused; the editor writes 0 and readers ignore it"},
    {"serialBaudrate", "Serial baud rate in bit/s: the item's text as a number"},
    {"serialParity", "Serial parity: the item's index"},
    {"serialStopBits", "Serial stop bits: the item's text as a number"},
    {"serialInverted", "Serial signal inverted: 1 yes, 0 no"},
    {"crc", "CRC-16 of bytes 0 to 164, low byte first"},
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

} // namespace formatdoc
