// STAND-IN, to be replaced: the form's facts written out by hand, only until the table generated
// from src/form/mainwindow.ui reaches this branch. Then formfacts.h forwards to that table and
// this file is deleted. The differential test (tests/roundtrip) holds these values to the real
// window meanwhile: any slip here shows as a byte mismatch there.

#include "formfacts.h"

#include <algorithm>
#include <iterator>

namespace lumarex::roundtrip {

namespace {

using sv = std::string_view;

constexpr sv kGps[] = {
    "Custom settings", "Lumarex GPS Receiver - based on u-blox 6 SuperSense\u00ae chipset",
    "Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT chipset",
    "Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS UBX-M8030-KT chipset"};
constexpr sv kPinModes[] = {"ON/OFF",       "SBUS",           "Serial input",
                            "PWM (normal)", "PWM (inverted)", "PPM"};
constexpr sv kFfcModes[] = {"no additional FFC (default)", "additional FFC on trigger start"};
constexpr sv kFrameModes[] = {"Ongoing stream (default)", "Single frame capture"};
constexpr sv kBaudrates[] = {"1200",  "2400",   "4800",   "9600",   "19200", "38400",
                             "57600", "115200", "230400", "460800", "921600"};
constexpr sv kParities[] = {"none", "odd", "even"};
constexpr sv kStopBits[] = {"1", "2"};
constexpr sv kChannels[] = {"Channel 1",  "Channel 2",  "Channel 3",  "Channel 4",  "Channel 5",
                            "Channel 6",  "Channel 7",  "Channel 8",  "Channel 9",  "Channel 10",
                            "Channel 11", "Channel 12", "Channel 13", "Channel 14", "Channel 15",
                            "Channel 16", "Deactivated"};
constexpr sv kSbusSwitchModes[] = {"high/low (default)", "absolute"};
constexpr sv kExt0Modes[] = {"None (default)", "do FFC (automatic FFC is off)",
                             "External Shutter RX/TX"};
constexpr sv kExt1Modes[] = {"None (default)", "External Sync", "External Shutter RX/TX"};
constexpr sv kIsothermStates[] = {"OFF (default)", "ON"};
constexpr sv kIsothermSwitchModes[] = {"high/low (default)", "absolute values"};
constexpr sv kOverlayModes[] = {"OFF", "ON"};

template <std::size_t N>
constexpr ControlFacts combo(sv name, sv page, int pageIndex, sv caption, const sv (&items)[N],
                             int start)
{
    return {name,  "QComboBox", page, pageIndex,    caption, items, static_cast<int>(N),
            start, false,       0,    items[start], 0,       0,     0};
}

constexpr ControlFacts check(sv name, sv page, int pageIndex, sv caption, bool start)
{
    return {name, "QCheckBox", page, pageIndex, caption, nullptr, 0, -1, start, 0, "", 0, 0, 0};
}

constexpr ControlFacts spin(sv name, sv page, int pageIndex, sv caption, double start, double min,
                            double max)
{
    return {name, "QSpinBox", page,  pageIndex, caption, nullptr, 0,
            -1,   false,      start, "",        min,     max,     0};
}

constexpr ControlFacts kControls[] = {
    check("cbPeripheryGimbalrc", "Periphery", 0, "Orvid Gimbal RC", false),
    combo("cbPeripheryGPS", "Periphery", 0, "GPS", kGps, 2),
    check("cb_externalshutter", "Periphery", 0, "External Shutter", false),
    spin("sb_eso_heating", "Periphery", 0, "Heating", 800, 0, 1000),
    spin("sb_eso_heatcycle", "Periphery", 0, "Heatcycle", 1000, 0, 2000),
    {"sb_eso_offset", "QDoubleSpinBox", "Periphery", 0, "Offset", nullptr, 0, -1, false, 0, "", -10,
     10, 2},
    spin("sb_eso_shutterinterval", "Periphery", 0, "shutter interval", 120, 0, 3600),
    spin("sb_eso_opt5", "Periphery", 0, "opt5", 0, 0, 99),
    combo("cbTriggerPinMode", "Trigger", 1, "Trigger Mode:", kPinModes, 0),
    combo("cbTriggerFFCMode", "Trigger", 1, "Trigger auto FFC:", kFfcModes, 0),
    combo("cbTriggerFrameMode", "Trigger", 1, "Trigger frame mode ", kFrameModes, 0),
    combo("cbBaudrate", "GPS/Serial", 2, "Baudrate:", kBaudrates, 5),
    combo("cbParity", "GPS/Serial", 2, "Parity bit:", kParities, 0),
    combo("cbStopBit", "GPS/Serial", 2, "Stop bit:", kStopBits, 0),
    check("cbInverted", "GPS/Serial", 2, "Inverted signal:", true),
    combo("cbSbusColormap", "SBUS/PPM", 3, "Color map switch", kChannels, 3),
    combo("cbSbusColorMapSwitchMode", "SBUS/PPM", 3, "Color map switch mode", kSbusSwitchModes, 0),
    combo("cbSbusFFC", "SBUS/PPM", 3, "FFC mode/execution", kChannels, 5),
    combo("cbSbusIsotherms", "SBUS/PPM", 3, "Isotherms ON/OFF", kChannels, 0),
    combo("cbSbusIsoLow", "SBUS/PPM", 3, "Isotherm lower threshold", kChannels, 16),
    combo("cbSbusIsoMid", "SBUS/PPM", 3, "Isotherm middle threshold", kChannels, 16),
    combo("cbSbusIsoUp", "SBUS/PPM", 3, "Isotherm upper threshold", kChannels, 16),
    combo("cbSbusOverlay", "SBUS/PPM", 3, "Overlay ON/OFF", kChannels, 1),
    combo("cbSbusTrigger", "SBUS/PPM", 3, "Trigger ON/OFF", kChannels, 4),
    spin("sBTriggerLow", "SBUS/PPM", 3, "Low", 688, 1, 2047),
    spin("sBTriggerHigh", "SBUS/PPM", 3, "High", 1366, 1, 2047),
    combo("cbSbusZoom", "SBUS/PPM", 3, "Zoom inc./dec.", kChannels, 2),
    combo("cbSbusZoomMode", "SBUS/PPM", 3, "Zoom mode", kSbusSwitchModes, 0),
    combo("cBext0mode", "Extensions", 4, "EXT 0 mode", kExt0Modes, 0),
    combo("cBext1mode", "Extensions", 4, "EXT 1 mode", kExt1Modes, 0),
    combo("cbIsothermsState", "Isotherms", 5, "Isotherm start state", kIsothermStates, 0),
    combo("cbIsothermSwitchMode", "Isotherms", 5, "Isotherms switch  mode", kIsothermSwitchModes,
          0),
    spin("sbIsothermsLower", "Isotherms", 5, "Lower threshold (\u00b0C)", 15, 0, 1000),
    spin("sbIsothermsMiddle", "Isotherms", 5, "Middle treshold (\u00b0C)", 34, 0, 1000),
    spin("sbIsothermsUpper", "Isotherms", 5, "Upper treshold (\u00b0C)", 40, 0, 1000),
    combo("cBOverlayMode", "Overlay", 6, "Overlay start state", kOverlayModes, 0),
    {"leFrameSkip", "QLineEdit", "Recording Options", 7, "# Frames:", nullptr, 0, -1, false, 0, "0",
     0, 0, 0},
    spin("sbRecMaxframesperfile", "Recording Options", 7, "Max frames per file", 1000, 1, 16000),
};

using S = Stored;

constexpr FormField kFormFields[] = {
    {Field::triggerLow, "sBTriggerLow", S::Value},
    {Field::triggerHigh, "sBTriggerHigh", S::Value},
    {Field::ext0Mode, "cBext0mode", S::Ext0Code},
    {Field::ext1Mode, "cBext1mode", S::Ext1Code},
    {Field::frameSkip, "leFrameSkip", S::TextNumber},
    {Field::triggerPinMode, "cbTriggerPinMode", S::ItemIndex},
    {Field::triggerFfcMode, "cbTriggerFFCMode", S::ItemIndex},
    {Field::triggerFrameMode, "cbTriggerFrameMode", S::ItemIndex},
    {Field::overlayMode, "cBOverlayMode", S::ItemIndex},
    {Field::isothermState, "cbIsothermsState", S::ItemIndex},
    {Field::isothermSwitchMode, "cbIsothermSwitchMode", S::ItemIndex},
    {Field::isothermLower, "sbIsothermsLower", S::Value},
    {Field::isothermMiddle, "sbIsothermsMiddle", S::Value},
    {Field::isothermUpper, "sbIsothermsUpper", S::Value},
    {Field::gimbalRc, "cbPeripheryGimbalrc", S::Checked},
    {Field::gpsReceiver, "cbPeripheryGPS", S::ItemIndex},
    {Field::externalShutter, "cb_externalshutter", S::Checked},
    {Field::esoHeating, "sb_eso_heating", S::Value},
    {Field::esoHeatcycle, "sb_eso_heatcycle", S::Value},
    {Field::esoOffset, "sb_eso_offset", S::Hundredths},
    {Field::esoShutterInterval, "sb_eso_shutterinterval", S::Value},
    {Field::esoOpt5, "sb_eso_opt5", S::Value},
    {Field::recMaxFramesPerFile, "sbRecMaxframesperfile", S::Value},
    {Field::sbusColormap, "cbSbusColormap", S::ItemIndex},
    {Field::sbusColorMapSwitchMode, "cbSbusColorMapSwitchMode", S::ItemIndex},
    {Field::sbusFfc, "cbSbusFFC", S::ItemIndex},
    {Field::sbusIsotherms, "cbSbusIsotherms", S::ItemIndex},
    {Field::sbusIsoLow, "cbSbusIsoLow", S::ItemIndex},
    {Field::sbusIsoMid, "cbSbusIsoMid", S::ItemIndex},
    {Field::sbusIsoUp, "cbSbusIsoUp", S::ItemIndex},
    {Field::sbusOverlay, "cbSbusOverlay", S::ItemIndex},
    {Field::sbusTrigger, "cbSbusTrigger", S::ItemIndex},
    {Field::sbusZoom, "cbSbusZoom", S::ItemIndex},
    {Field::sbusZoomMode, "cbSbusZoomMode", S::ItemIndex},
    {Field::serialBaudrate, "cbBaudrate", S::ItemNumber},
    {Field::serialParity, "cbParity", S::ItemIndex},
    {Field::serialStopBits, "cbStopBit", S::ItemNumber},
    {Field::serialInverted, "cbInverted", S::Checked},
};

} // namespace

const ControlFacts *formControls()
{
    return kControls;
}

std::size_t formControlCount()
{
    return std::size(kControls);
}

const ControlFacts *findControl(std::string_view objectName)
{
    const auto found = std::find_if(
        std::begin(kControls), std::end(kControls),
        [objectName](const ControlFacts &control) { return control.objectName == objectName; });
    return found == std::end(kControls) ? nullptr : found;
}

const FormField *formFieldOf(Field field)
{
    const auto found =
        std::find_if(std::begin(kFormFields), std::end(kFormFields),
                     [field](const FormField &entry) { return entry.field == field; });
    return found == std::end(kFormFields) ? nullptr : found;
}

Verdict editorVerdict(const ConfigRecord &record)
{
    if (!record.hasMagic())
        return Verdict::BadMagic;
    if (record.value(Field::headerVersion) != kFormatVersion)
        return Verdict::OtherVersion;
    if (record.computedChecksum() != record.storedChecksum())
        return Verdict::ChecksumMismatch;
    return Verdict::Accepted;
}

} // namespace lumarex::roundtrip
