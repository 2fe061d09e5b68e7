#pragma once

// Which control of the editor's form feeds which field of the record, and how the control's
// state becomes the stored number. This pairing is written once, here, next to the field
// table; everything else about the controls comes from the form (formcontrols.h).

#include "configrecord.h"
#include "formcontrols.h"

#include <optional>

namespace lumarex {

// How the save command turns a control's state into the field's value.
enum class Stored
{
    ItemIndex,  // a combo box's current index
    Ext0Code,   // the device mode code of the EXT 0 item (conversions.h)
    Ext1Code,   // the device mode code of the EXT 1 item
    ItemNumber, // a combo box's current text read as a number (baud rate, stop bits)
    Checked,    // 1 for a checked box, 0 otherwise
    Value,      // a spin box's value; into every element of an array field
    Hundredths, // a double spin box's value in hundredths, cut toward zero
    TextNumber, // a line edit's text read as an unsigned number
};

struct FormField
{
    Field field;
    std::string_view control; // the object name in src/form/mainwindow.ui
    Stored stored;
};

// Every field the form feeds, in file order; the header, the constants, spare157 and the
// checksum have no control.
const FormField *formFields();
std::size_t formFieldCount();

// The pairing of a field, or nullptr for a field no control feeds.
const FormField *formFieldOf(Field field);
// The form's facts about the control that feeds the field, or nullptr.
const ControlFacts *controlOf(Field field);

// What the untouched form saves into the field (every element of an array alike), or nothing
// for a field no control feeds.
std::optional<std::uint32_t> startValue(Field field);

// The 167 bytes the editor saves from its untouched form: every start value in its field, then
// the header, the constants and the checksum.
ConfigRecord untouchedFormRecord();

} // namespace lumarex
