#pragma once

// The values the form rules preset, written once for the window's rule slots
// (src/form/formrules.cpp) and for the model of the rules (src/roundtrip/formrulemodel.cpp).
// Combo boxes by item index.

#include <array>

namespace lumarex {

// Channel assignments of the SBUS/PPM page, as combo indexes (index n is channel n+1, 16 is
// "Deactivated"), in the order the rule assigns them.
struct SbusChannels
{
    int colormap;
    int colorMapSwitchMode;
    int ffc;
    int isotherms;
    int isoLow;
    int isoMid;
    int isoUp;
    int overlay;
    int trigger;
    int zoom;
    int zoomMode;
};

// The gimbal remote control drives these functions on fixed channels.
inline constexpr SbusChannels kGimbalChannels{0, 1, 1, 2, 3, 4, 5, 6, 8, 9, 1};
// The page's start-up assignment, which releasing the gimbal puts back.
inline constexpr SbusChannels kStartChannels{3, 0, 5, 0, 16, 16, 16, 1, 4, 2, 0};

// Serial settings of the Lumarex GPS receivers, by cbPeripheryGPS index; all of them run at no
// parity, one stop bit and an inverted signal.
inline constexpr std::array<int, 4> kGpsBaudrateIndex = {-1, 5 /* 38400 */, 3 /* 9600 */,
                                                         7 /* 115200 */};

// The trigger pin modes that open the SBUS/PPM page.
inline constexpr int kPinModeSbus = 1;
inline constexpr int kPinModePpm = 5;

} // namespace lumarex
