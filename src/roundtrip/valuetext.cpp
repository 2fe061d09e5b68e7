#include "valuetext.h"

#include "controltext.h"

namespace lumarex::roundtrip {

std::string shownText(const ControlValue &control)
{
    const ControlFacts &facts = *control.facts;
    if (facts.className == "QComboBox")
        return control.index < 0 ? "no item" : quoted(facts.item(control.index));
    if (facts.className == "QCheckBox")
        return std::string(checkText(control.checked));
    if (facts.className == "QDoubleSpinBox")
        return decimalText(control.real, facts.decimals);
    if (facts.className == "QLineEdit")
        return quoted(control.text);
    return std::to_string(control.value);
}

std::string storedText(const ConfigRecord &record, Field field)
{
    const FieldInfo &info = fieldInfo(field);
    switch (info.type) {
    case FieldType::I32:
        return std::to_string(record.signedValue(field));
    case FieldType::Ascii4:
    case FieldType::Bytes8: {
        static const char digits[] = "0123456789ABCDEF";
        std::string hex;
        for (int i = 0; i < info.width; ++i) {
            const std::uint8_t byte = record.bytes()[static_cast<std::size_t>(info.offset + i)];
            if (i > 0)
                hex += ' ';
            hex += digits[byte >> 4];
            hex += digits[byte & 15];
        }
        return hex;
    }
    case FieldType::U8:
    case FieldType::U16:
    case FieldType::U32:
    case FieldType::U16x20:
        break;
    }
    return std::to_string(record.value(field));
}

} // namespace lumarex::roundtrip
