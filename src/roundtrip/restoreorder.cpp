#include "restoreorder.h"

#include <iterator>

namespace lumarex::roundtrip {

namespace {

using R = Restore;

constexpr RestoreStep kSteps[] = {
    {"cbPeripheryGimbalrc", Field::gimbalRc, R::Check},
    {"cbPeripheryGPS", Field::gpsReceiver, R::Index},
    {"cb_externalshutter", Field::externalShutter, R::Check},
    {"sb_eso_heatcycle", Field::esoHeatcycle, R::Value},
    {"sb_eso_heating", Field::esoHeating, R::Value},
    {"sb_eso_offset", Field::esoOffset, R::Hundredths},
    {"sb_eso_shutterinterval", Field::esoShutterInterval, R::Value},
    {"sb_eso_opt5", Field::esoOpt5, R::Value},
    {"cbBaudrate", Field::serialBaudrate, R::NumberText},
    {"cbParity", Field::serialParity, R::Index},
    {"cbStopBit", Field::serialStopBits, R::NumberText},
    {"cbInverted", Field::serialInverted, R::Check},
    {"leFrameSkip", Field::frameSkip, R::LineText},
    {"cbTriggerPinMode", Field::triggerPinMode, R::Index},
    {"cbTriggerFFCMode", Field::triggerFfcMode, R::Index},
    {"cbTriggerFrameMode", Field::triggerFrameMode, R::Index},
    {"cBOverlayMode", Field::overlayMode, R::Index},
    {"sbRecMaxframesperfile", Field::recMaxFramesPerFile, R::Value},
    {"cBext0mode", Field::ext0Mode, R::Ext0Code},
    {"cBext1mode", Field::ext1Mode, R::Ext1Code},
    {"cbIsothermsState", Field::isothermState, R::Index},
    // The switch mode goes into the start-state box as well; cbIsothermSwitchMode is not restored.
    {"cbIsothermsState", Field::isothermSwitchMode, R::Index},
    {"sbIsothermsLower", Field::isothermLower, R::UnsignedValue},
    {"sbIsothermsMiddle", Field::isothermMiddle, R::UnsignedValue},
    {"sbIsothermsUpper", Field::isothermUpper, R::UnsignedValue},
    // The two switch-mode boxes of the SBUS/PPM page are not restored.
    {"cbSbusColormap", Field::sbusColormap, R::Index},
    {"cbSbusFFC", Field::sbusFfc, R::Index},
    {"cbSbusIsotherms", Field::sbusIsotherms, R::Index},
    {"cbSbusIsoLow", Field::sbusIsoLow, R::Index},
    {"cbSbusIsoMid", Field::sbusIsoMid, R::Index},
    {"cbSbusIsoUp", Field::sbusIsoUp, R::Index},
    {"cbSbusOverlay", Field::sbusOverlay, R::Index},
    {"cbSbusTrigger", Field::sbusTrigger, R::Index},
    {"cbSbusZoom", Field::sbusZoom, R::Index},
    {"sBTriggerLow", Field::triggerLow, R::TriggerSlot},
    {"sBTriggerHigh", Field::triggerHigh, R::TriggerSlot},
};

} // namespace

const RestoreStep *restoreSteps()
{
    return kSteps;
}

int restoreStepCount()
{
    return static_cast<int>(std::size(kSteps));
}

} // namespace lumarex::roundtrip
