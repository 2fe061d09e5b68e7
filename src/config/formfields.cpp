#include "formfields.h"

#include "conversions.h"

#include <algorithm>
#include <charconv>

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

// A decimal text as the toolkit's toUInt() reads it: 0 unless the whole text is a number.
std::uint32_t numberIn(std::string_view text)
{
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

std::uint32_t storedStart(Stored stored, const ControlFacts &control)
{
    switch (stored) {
    case Stored::ItemIndex:
        return static_cast<std::uint32_t>(control.startIndex);
    case Stored::Ext0Code:
        return ext0ModeCode(control.startIndex).value_or(0);
    case Stored::Ext1Code:
        return ext1ModeCode(control.startIndex).value_or(0);
    case Stored::ItemNumber:
    case Stored::TextNumber:
        return numberIn(control.startText);
    case Stored::Checked:
        return control.startChecked ? 1 : 0;
    case Stored::Value:
        return static_cast<std::uint32_t>(control.startValue);
    case Stored::Hundredths:
        return static_cast<std::uint32_t>(esoOffsetToField(control.startValue));
    }
    return 0;
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
