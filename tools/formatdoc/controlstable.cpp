#include "controlstable.h"

#include "controltext.h"
#include "formfields.h"
#include "storednumber.h"

namespace formatdoc {

namespace {

using lumarex::ControlFacts;
using lumarex::Stored;

// What the item at index saves into the field, as the save command stores it.
std::string itemCode(Stored stored, const ControlFacts &control, int index)
{
    const std::optional<std::uint32_t> code = lumarex::itemStoredNumber(stored, control, index);
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
        return "1 " + std::string(lumarex::checkText(true)) + ", 0 " +
               std::string(lumarex::checkText(false));
    case Stored::TextNumber:
        return "the text";
    default:
        return lumarex::rangeText(control);
    }
}

std::string startCell(const ControlFacts &control)
{
    if (control.itemCount > 0 || control.className == "QLineEdit")
        return "*" + std::string(control.startText) + "*";
    if (control.className == "QCheckBox")
        return std::string(lumarex::checkText(control.startChecked));
    return lumarex::decimalText(control.startValue, control.decimals);
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
