#pragma once

// The order in which the editor's "Read from file" puts the stored values back into the form,
// and how each value is put. Every restore that changes a control runs its rules at once, and
// later steps overwrite what those rules preset, so the order is part of what a load does. It
// mirrors the load command of the window (src/config/loadcommand.cpp), which cannot read it:
// there each step is a toolkit call that runs the window's rule slots as it happens, and the
// window's code stays as it is. The differential test holds the two equal.

#include "configrecord.h"

#include <string_view>

namespace lumarex::roundtrip {

enum class Restore
{
    Check,         // setChecked(value != 0)
    Index,         // setCurrentIndex(value)
    Value,         // a spin box's setValue, the field read as signed
    UnsignedValue, // a spin box's setValue, the field zero-extended
    Hundredths,    // a double spin box's setValue, the field read unsigned and divided by 100
    NumberText,    // setCurrentText with the field in decimal (unsigned)
    LineText,      // a line edit's setText with the field in decimal (unsigned)
    Ext0Code,      // mode code to item of port 0; an unknown code leaves the box
    Ext1Code,      // mode code to item of port 1; an unknown code leaves the box
    TriggerSlot,   // setValue of the array element that the stored trigger channel selects; a
                   // channel past the stored slots leaves the box
};

struct RestoreStep
{
    std::string_view control;
    Field field;
    Restore how;
};

// The steps in order; step n of the load is restoreSteps()[n - 1].
const RestoreStep *restoreSteps();
int restoreStepCount();

} // namespace lumarex::roundtrip
