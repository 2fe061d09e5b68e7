#include "controlstable.h"

#include "conversions.h"
#include "formfields.h"

#include <cstdio>

namespace formatdoc {

namespace {

using lumarex::ControlFacts;
using lumarex::Stored;

std::string fixed(double value, int decimals)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

// What the item at index saves into the field.
std::string itemCode(Stored stored, const ControlFacts &control, int index)
{
    std::optional<std::uint8_t> code;
    switch (stored) {
    case Stored::Ext0Code:
        code = lumarex::ext0ModeCode(index);
        break;
    case Stored::Ext1Code:
        code = lumarex::ext1ModeCode(index);
        break;
    case Stored::ItemNumber:
        return std::string(control.item(index));
    default:
        return std::to_string(index);
    }
    return code ? std::to_string(*code) : "nothing";
}

std::string valuesCell(const lumarex::FormField &entry, const ControlFacts &control)
{
    if (control.itemCount > 0) {
        std::string cell;
        for (int i = 0; i < control.itemCount; ++i) {
            cell += (i ? ", " : "") + itemCode(entry.stored, control, i) + " *" +
                    std::string(control.item(i)) + "*";
        }
        return cell;
    }
    switch (entry.stored) {
    case Stored::Checked:
        return "1 checked, 0 unchecked";
    case Stored::TextNumber:
        return "the text";
    default:
        return fixed(control.minimum, control.decimals) + " to " +
               fixed(control.maximum, control.decimals);
    }
}

std::string startCell(const ControlFacts &control)
{
    if (control.itemCount > 0 || control.className == "QLineEdit")
        return "*" + std::string(control.startText) + "*";
    if (control.className == "QCheckBox")
        return control.startChecked ? "checked" : "unchecked";
    return fixed(control.startValue, control.decimals);
}

} // namespace

std::string controlsTable()
{
    std::string table = "| Field | Page | Caption | Control | Saves | At start-up |\n"
                        "|---|---|---|---|---|---|\n";
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        const lumarex::FormField *entry = lumarex::formFieldOf(info.field);
        const ControlFacts *control = lumarex::controlOf(info.field);
        if (!entry || !control)
            continue;
        table += "| `" + std::string(info.name) + "` | " + std::string(control->page) + " | " +
                 std::string(control->caption) + " | `" + std::string(control->objectName) + "` (" +
                 std::string(control->className) + ") | " + valuesCell(*entry, *control) + " | " +
                 startCell(*control) + " |\n";
    }
    return table;
}

} // namespace formatdoc
