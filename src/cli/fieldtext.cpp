#include "fieldtext.h"

#include "conversions.h"
#include "fieldvalue.h"
#include "formfields.h"
#include "itemtexts.h"

#include <algorithm>
#include <cstdio>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::Field;
using lumarex::FieldInfo;

std::string esoOffsetShown(std::uint32_t stored)
{
    const lumarex::ControlFacts &control = *lumarex::controlOf(Field::esoOffset);
    const double degrees =
        std::clamp(lumarex::esoOffsetFromField(stored), control.minimum, control.maximum);
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", control.decimals, degrees);
    return text;
}

std::string elementText(const ConfigRecord &record, const FieldInfo &info, int element)
{
    if (info.type == lumarex::FieldType::Ascii4)
        return quotedMagic(record);
    const std::string number = numberText(record, info, element);
    if (info.field == Field::esoOffset)
        return number + " (shown as " + esoOffsetShown(record.value(info.field)) + ")";
    const ItemList *list = itemListOf(info.field);
    if (!list)
        return number;
    const std::optional<std::string> item = itemText(*list, record.value(info.field));
    return number + (item ? " \"" + *item + "\"" : std::string(" (no item)"));
}

std::string fieldText(const ConfigRecord &record, const FieldInfo &info)
{
    std::string text;
    for (int element = 0; element < info.elementCount(); ++element)
        text += (element == 0 ? "" : " ") + elementText(record, info, element);
    return text;
}

} // namespace lxconfig
