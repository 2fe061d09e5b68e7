#include "formrulemodel.h"

#include "rulepresets.h"

#include <algorithm>
#include <iterator>

namespace lumarex::roundtrip {

namespace {

using A = RuleAct;

template <std::size_t N> constexpr int countOf(const RuleAction (&)[N])
{
    return static_cast<int>(N);
}

// Trigger pin mode: "SBUS" and "PPM" open the SBUS/PPM page unless the gimbal owns it.
constexpr RuleAction kPinReceiver[] = {{A::Enable, "tab_SBUS", 0}, {A::Enable, "cbSbusFFC", 0}};
constexpr RuleAction kPinOther[] = {{A::Disable, "tab_SBUS", 0}};
constexpr RuleCase kPinCases[] = {
    {{kPinModeSbus, kPinModePpm},
     2,
     "SBUS or PPM",
     "cbPeripheryGimbalrc",
     kPinReceiver,
     countOf(kPinReceiver)},
    {{0, 0}, 0, "any other mode (or none)", "", kPinOther, countOf(kPinOther)},
};

// GPS receiver: custom settings unlock the serial page; a Lumarex receiver locks and presets it.
constexpr RuleAction kGpsCustom[] = {{A::Enable, "tabSerial", 0}};
constexpr RuleAction kGpsUblox6[] = {{A::Disable, "tabSerial", 0},
                                     {A::Select, "cbBaudrate", kGpsBaudrateIndex[1]},
                                     {A::Select, "cbParity", 0},
                                     {A::Select, "cbStopBit", 0},
                                     {A::Check, "cbInverted", 1}};
constexpr RuleAction kGpsUblox8[] = {{A::Disable, "tabSerial", 0},
                                     {A::Select, "cbBaudrate", kGpsBaudrateIndex[2]},
                                     {A::Select, "cbParity", 0},
                                     {A::Select, "cbStopBit", 0},
                                     {A::Check, "cbInverted", 1}};
constexpr RuleAction kGpsUblox8Fast[] = {{A::Disable, "tabSerial", 0},
                                         {A::Select, "cbBaudrate", kGpsBaudrateIndex[3]},
                                         {A::Select, "cbParity", 0},
                                         {A::Select, "cbStopBit", 0},
                                         {A::Check, "cbInverted", 1}};
constexpr RuleCase kGpsCases[] = {
    {{0, 0}, 1, "item 0", "", kGpsCustom, countOf(kGpsCustom)},
    {{1, 0}, 1, "item 1", "", kGpsUblox6, countOf(kGpsUblox6)},
    {{2, 0}, 1, "item 2", "", kGpsUblox8, countOf(kGpsUblox8)},
    {{3, 0}, 1, "item 3", "", kGpsUblox8Fast, countOf(kGpsUblox8Fast)},
};

// Gimbal remote control: attaching it locks what it drives and assigns its fixed channels;
// releasing it unlocks the same controls and puts the start channels back.
constexpr RuleAction kGimbalAttached[] = {
    {A::Disable, "cbIsothermsState", 0},
    {A::Select, "cbIsothermsState", 0},
    {A::Select, "cbIsothermSwitchMode", 1},
    {A::Disable, "tab_SBUS", 0},
    {A::Select, "cbSbusColormap", kGimbalChannels.colormap},
    {A::Select, "cbSbusColorMapSwitchMode", kGimbalChannels.colorMapSwitchMode},
    {A::Select, "cbSbusFFC", kGimbalChannels.ffc},
    {A::Select, "cbSbusIsotherms", kGimbalChannels.isotherms},
    {A::Select, "cbSbusIsoLow", kGimbalChannels.isoLow},
    {A::Select, "cbSbusIsoMid", kGimbalChannels.isoMid},
    {A::Select, "cbSbusIsoUp", kGimbalChannels.isoUp},
    {A::Select, "cbSbusOverlay", kGimbalChannels.overlay},
    {A::Select, "cbSbusTrigger", kGimbalChannels.trigger},
    {A::Select, "cbSbusZoom", kGimbalChannels.zoom},
    {A::Select, "cbSbusZoomMode", kGimbalChannels.zoomMode},
    {A::Disable, "cbTriggerPinMode", 0},
    {A::Select, "cbTriggerPinMode", kPinModeSbus},
    {A::Disable, "cbTriggerFrameMode", 0},
    {A::Select, "cbTriggerFrameMode", 0},
    {A::Disable, "cBOverlayMode", 0},
    {A::Select, "cBOverlayMode", 0},
};
constexpr RuleAction kGimbalReleased[] = {
    {A::Enable, "cbIsothermsState", 0},
    {A::Select, "cbIsothermsState", 0},
    {A::Select, "cbIsothermSwitchMode", 0},
    {A::Enable, "tab_SBUS", 0},
    {A::Select, "cbSbusColormap", kStartChannels.colormap},
    {A::Select, "cbSbusColorMapSwitchMode", kStartChannels.colorMapSwitchMode},
    {A::Select, "cbSbusFFC", kStartChannels.ffc},
    {A::Select, "cbSbusIsotherms", kStartChannels.isotherms},
    {A::Select, "cbSbusIsoLow", kStartChannels.isoLow},
    {A::Select, "cbSbusIsoMid", kStartChannels.isoMid},
    {A::Select, "cbSbusIsoUp", kStartChannels.isoUp},
    {A::Select, "cbSbusOverlay", kStartChannels.overlay},
    {A::Select, "cbSbusTrigger", kStartChannels.trigger},
    {A::Select, "cbSbusZoom", kStartChannels.zoom},
    {A::Select, "cbSbusZoomMode", kStartChannels.zoomMode},
    {A::Enable, "cbTriggerPinMode", 0},
    {A::Select, "cbTriggerPinMode", 0},
    {A::Enable, "cbTriggerFrameMode", 0},
    {A::Select, "cbTriggerFrameMode", 0},
    {A::Enable, "cBOverlayMode", 0},
    {A::Select, "cBOverlayMode", 0},
};
constexpr RuleCase kGimbalCases[] = {
    {{kChecked, 0}, 1, "checked", "", kGimbalAttached, countOf(kGimbalAttached)},
    {{kUnchecked, 0}, 1, "unchecked", "", kGimbalReleased, countOf(kGimbalReleased)},
};

// External shutter: switched on it shows its options and claims both extension ports.
constexpr RuleAction kShutterOff[] = {
    {A::Disable, "gb_externalshutteroptions", 0},
    {A::Hide, "gb_externalshutteroptions", 0},
    {A::Select, "cBext0mode", 0},
    {A::Enable, "cBext0mode", 0},
    {A::Select, "cBext1mode", 0},
    {A::Enable, "cBext1mode", 0},
};
constexpr RuleAction kShutterOn[] = {
    {A::Enable, "gb_externalshutteroptions", 0},
    {A::Show, "gb_externalshutteroptions", 0},
    {A::Select, "cBext0mode", 2},
    {A::Disable, "cBext0mode", 0},
    {A::Select, "cBext1mode", 2},
    {A::Disable, "cBext1mode", 0},
};
constexpr RuleCase kShutterCases[] = {
    {{kUnchecked, 0}, 1, "unchecked", "", kShutterOff, countOf(kShutterOff)},
    {{0, 0}, 0, "checked", "", kShutterOn, countOf(kShutterOn)},
};

template <std::size_t N> constexpr int casesIn(const RuleCase (&)[N])
{
    return static_cast<int>(N);
}

constexpr FormRule kRules[] = {
    {"gimbal remote-control rule", "cbPeripheryGimbalrc", RuleSignal::StateChanged, 2, kGimbalCases,
     casesIn(kGimbalCases)},
    {"GPS receiver rule", "cbPeripheryGPS", RuleSignal::IndexChanged, 1, kGpsCases,
     casesIn(kGpsCases)},
    {"external-shutter rule", "cb_externalshutter", RuleSignal::StateChanged, 1, kShutterCases,
     casesIn(kShutterCases)},
    {"trigger pin mode rule", "cbTriggerPinMode", RuleSignal::IndexChanged, 1, kPinCases,
     casesIn(kPinCases)},
};

constexpr std::string_view kShutterOptions[] = {
    "sb_eso_heating", "sb_eso_heatcycle", "sb_eso_offset", "sb_eso_shutterinterval", "sb_eso_opt5"};

constexpr RuleContainer kContainers[] = {
    {"tab_SBUS", "page SBUS/PPM", "SBUS/PPM", nullptr, 0, false},
    {"tabSerial", "page GPS/Serial", "GPS/Serial", nullptr, 0, false},
    {"gb_externalshutteroptions", "group External Shutter Options", "", kShutterOptions,
     static_cast<int>(std::size(kShutterOptions)), true},
};

} // namespace

const RuleCase *FormRule::caseFor(int value) const
{
    const RuleCase *otherwise = nullptr;
    for (int i = 0; i < caseCount; ++i) {
        const RuleCase &ruleCase = cases[i];
        if (ruleCase.valueCount == 0)
            otherwise = &ruleCase;
        for (int v = 0; v < ruleCase.valueCount; ++v) {
            if (ruleCase.values[v] == value)
                return &ruleCase;
        }
    }
    return otherwise;
}

bool RuleContainer::holds(const ControlFacts &control) const
{
    if (!page.empty())
        return control.page == page;
    return std::find(members, members + memberCount, control.objectName) != members + memberCount;
}

const FormRule *formRules()
{
    return kRules;
}

int formRuleCount()
{
    return static_cast<int>(std::size(kRules));
}

RuleContainerList allRuleContainers()
{
    return {std::begin(kContainers), std::end(kContainers)};
}

const RuleContainer *ruleContainerNamed(std::string_view objectName)
{
    const auto found = std::find_if(std::begin(kContainers), std::end(kContainers),
                                    [objectName](const RuleContainer &container) {
                                        return container.objectName == objectName;
                                    });
    return found == std::end(kContainers) ? nullptr : found;
}

} // namespace lumarex::roundtrip
