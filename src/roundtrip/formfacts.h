#pragma once

// What the round-trip model needs to know about the editor's form: each input control's class,
// page, caption, items, start state and range; which control feeds which field and how; and which
// files the editor refuses. The model reads these facts only through this header.
//
// Until the generated table of the form is available on this branch, formfacts_adapter.cpp
// supplies them. When it is, this header forwards to the generated table and the adapter goes.

#include "configrecord.h"

#include <cstddef>
#include <string_view>

namespace lumarex::roundtrip {

struct ItemTexts
{
    const std::string_view *first;
    const std::string_view *last;

    const std::string_view *begin() const { return first; }
    const std::string_view *end() const { return last; }
};

struct ControlFacts
{
    std::string_view objectName; // e.g. "cbPeripheryGPS"
    std::string_view className;  // "QComboBox", "QSpinBox", "QDoubleSpinBox", "QCheckBox", ...
    std::string_view page;       // the text of the tab the control is on
    int pageIndex;               // that tab's position, from 0
    std::string_view caption;    // the label that names the control
    const std::string_view *itemData;
    int itemCount;
    int startIndex;             // a combo box's current item at start-up; -1 for none
    bool startChecked;          // a check box's state at start-up
    double startValue;          // a spin box's value at start-up
    std::string_view startText; // a line edit's text, or a combo box's current item text
    double minimum;             // a spin box's range
    double maximum;
    int decimals; // a double spin box's decimals; 0 for other controls

    std::string_view item(int index) const
    {
        return index >= 0 && index < itemCount ? itemData[index] : std::string_view();
    }
    ItemTexts items() const { return {itemData, itemData + itemCount}; }
};

// How the save command turns a control's state into the field's value.
enum class Stored
{
    ItemIndex,  // a combo box's current index
    Ext0Code,   // the device mode code of the EXT 0 item
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
    std::string_view control;
    Stored stored;
};

// Every input control, in the order the form lists them.
const ControlFacts *formControls();
std::size_t formControlCount();
const ControlFacts *findControl(std::string_view objectName);

// The pairing of a field with its control, or nullptr for a field no control feeds.
const FormField *formFieldOf(Field field);

enum class Verdict
{
    Accepted,
    BadMagic,         // refused with the version dialog
    OtherVersion,     // refused with the version dialog
    ChecksumMismatch, // refused with "CRC error"
};

// The first of the editor's checks that the record fails, or Accepted.
Verdict editorVerdict(const ConfigRecord &record);

} // namespace lumarex::roundtrip
