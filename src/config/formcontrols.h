#pragma once

// What the editor's Designer form (src/form/mainwindow.ui) says about each of its input
// controls, as the window shows them right after start-up. The table is generated from the form
// at build time by tools/formfacts, so it holds no type of the toolkit and the file-format
// library, lxconfig and the generated documentation can all read it.

#include <cstddef>
#include <string_view>

namespace lumarex {

// A combo box's item texts, for range-based for loops.
struct ItemTexts
{
    const std::string_view *first;
    const std::string_view *last;

    const std::string_view *begin() const { return first; }
    const std::string_view *end() const { return last; }
};

struct ControlFacts
{
    std::string_view objectName;      // e.g. "cbPeripheryGPS"
    std::string_view className;       // "QComboBox", "QSpinBox", "QDoubleSpinBox", "QCheckBox", ...
    std::string_view page;            // the text of the tab the control is on, e.g. "Periphery"
    int pageIndex;                    // that tab's position, from 0
    std::string_view caption;         // the label that names the control, without its '&' marker
    const std::string_view *itemData; // a combo box's item texts, in list order
    int itemCount;
    int startIndex;             // a combo box's current item at start-up; -1 for none
    bool startChecked;          // a check box's state at start-up
    double startValue;          // a spin box's value at start-up
    std::string_view startText; // a line edit's text, or a combo box's current item text
    double minimum;             // a spin box's range
    double maximum;
    int decimals;        // a double spin box's decimals; 0 for other controls
    bool ownEnabled;     // the control's own enabled property in the form
    bool enabledAtStart; // it and every page and group around it enabled at start-up

    std::string_view item(int index) const
    {
        return index >= 0 && index < itemCount ? itemData[index] : std::string_view();
    }
    ItemTexts items() const { return {itemData, itemData + itemCount}; }
};

// Every input control of the form, in the order the form lists them. Generated.
const ControlFacts *formControls();
std::size_t formControlCount();

// The control with that object name, or nullptr.
const ControlFacts *findControl(std::string_view objectName);

} // namespace lumarex
