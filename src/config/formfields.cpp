#include "formfields.h"

#include "storednumber.h"

#include <algorithm>

namespace lumarex {

namespace {

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

// The untouched form's state of the control, stored as the save command stores it.
std::uint32_t storedStart(Stored stored, const ControlFacts &control)
{
    ControlState state;
    state.index = control.startIndex;
    state.itemText = control.startText;
    state.text = control.startText;
    state.checked = control.startChecked;
    state.value = static_cast<int>(control.startValue);
    state.real = control.startValue;
    return storedNumber(stored, state).value_or(0);
}

} // namespace

const FormField *formFields()
{
    return kFormFields;
}

std::size_t formFieldCount()
{
    return std::size(kFormFields);
}

const FormField *formFieldOf(Field field)
{
    const auto found =
        std::find_if(std::begin(kFormFields), std::end(kFormFields),
                     [field](const FormField &entry) { return entry.field == field; });
    return found == std::end(kFormFields) ? nullptr : found;
}

const ControlFacts *controlOf(Field field)
{
    const FormField *entry = formFieldOf(field);
    return entry ? findControl(entry->control) : nullptr;
}

std::optional<std::uint32_t> startValue(Field field)
{
    const FormField *entry = formFieldOf(field);
    const ControlFacts *control = entry ? findControl(entry->control) : nullptr;
    if (!control)
        return std::nullopt;
    return storedStart(entry->stored, *control);
}

ConfigRecord untouchedFormRecord()
{
    ConfigRecord record;
    for (const FieldInfo &info : fieldTable()) {
        const std::optional<std::uint32_t> value = startValue(info.field);
        for (int element = 0; value && element < info.elementCount(); ++element)
            record.setValue(info.field, *value, element);
    }
    record.seal();
    return record;
}

} // namespace lumarex
