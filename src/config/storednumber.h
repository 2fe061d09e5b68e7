#pragma once

// How the save command turns a control's state into the number stored in its field, written
// once for the untouched form (formfields.cpp) and for the model of the editor (src/roundtrip).
//
// The window's own save command (savecommand.cpp) keeps its copy: it is the editor's fixed
// sequence of steps, reading each control through the toolkit (currentIndex(), toUInt() on a
// QString, value()), and it stays exactly as the editor has it. This table is held to it by
// tst_facts (the untouched form) and by the differential test of tests/roundtrip.

#include "formfields.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace lumarex {

// A control's state as far as the save command reads it.
struct ControlState
{
    int index = -1;            // a combo box's current index
    std::string_view itemText; // its current item's text
    std::string_view text;     // a line edit's text
    bool checked = false;      // a check box
    int value = 0;             // a spin box
    double real = 0;           // a double spin box
};

// A decimal text as the toolkit's toUInt() reads it: 0 unless the whole text is a number.
std::uint32_t numberIn(std::string_view text);

// The number the save command stores for the state, or nothing for a mode item without a device
// code (the save command then leaves the cleared record's byte).
std::optional<std::uint32_t> storedNumber(Stored stored, const ControlState &state);
// The same for a combo box's item at that index: what choosing it stores.
std::optional<std::uint32_t> itemStoredNumber(Stored stored, const ControlFacts &facts, int index);

} // namespace lumarex
