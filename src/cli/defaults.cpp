#include "defaults.h"

#include "fieldvalue.h"

namespace lxconfig {

using lumarex::Field;

namespace {

struct DefaultValue
{
    Field field;
    std::int64_t value; // into every element of an array
};

// Every setting of the form as the editor opens; the tests hold this to the editor's own save.
constexpr DefaultValue kDefaults[] = {
    {Field::triggerLow, 688},
    {Field::triggerHigh, 1366},
    {Field::ext0Mode, 0},           // "None (default)"
    {Field::ext1Mode, 0},           // "None (default)"
    {Field::frameSkip, 0},          // the text "0"
    {Field::triggerPinMode, 0},     // "ON/OFF"
    {Field::triggerFfcMode, 0},     // "no additional FFC (default)"
    {Field::triggerFrameMode, 0},   // "Ongoing stream (default)"
    {Field::overlayMode, 0},        // "OFF"
    {Field::isothermState, 0},      // "OFF (default)"
    {Field::isothermSwitchMode, 0}, // "high/low (default)"
    {Field::isothermLower, 15},
    {Field::isothermMiddle, 34},
    {Field::isothermUpper, 40},
    {Field::gimbalRc, 0},        // unchecked
    {Field::gpsReceiver, 2},     // the u-blox 8 receiver
    {Field::externalShutter, 0}, // unchecked
    {Field::esoHeating, 800},
    {Field::esoHeatcycle, 1000},
    {Field::esoOffset, 0}, // 0.00
    {Field::esoShutterInterval, 120},
    {Field::esoOpt5, 0},
    {Field::recMaxFramesPerFile, 1000},
    {Field::sbusColormap, 3}, // "Channel 4"
    {Field::sbusColorMapSwitchMode, 0},
    {Field::sbusFfc, 5},       // "Channel 6"
    {Field::sbusIsotherms, 0}, // "Channel 1"
    {Field::sbusIsoLow, 16},   // "Deactivated"
    {Field::sbusIsoMid, 16},
    {Field::sbusIsoUp, 16},
    {Field::sbusOverlay, 1}, // "Channel 2"
    {Field::sbusTrigger, 4}, // "Channel 5"
    {Field::sbusZoom, 2},    // "Channel 3"
    {Field::sbusZoomMode, 0},
    {Field::serialBaudrate, 38400},
    {Field::serialParity, 0}, // "none"
    {Field::serialStopBits, 1},
    {Field::serialInverted, 1}, // checked
};

} // namespace

lumarex::ConfigRecord defaultRecord()
{
    lumarex::ConfigRecord record;
    for (const DefaultValue &entry : kDefaults)
        setAllElements(record, lumarex::fieldInfo(entry.field), entry.value);
    record.seal();
    return record;
}

} // namespace lxconfig
