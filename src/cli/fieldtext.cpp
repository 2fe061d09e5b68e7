#include "fieldtext.h"

#include "conversions.h"
#include "fieldvalue.h"
#include "itemtexts.h"

#include <algorithm>
#include <cstdio>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::Field;
using lumarex::FieldInfo;

namespace {

// The range of the editor's offset control, which clamps what a load gives it.
constexpr double kEsoOffsetMin = -10.0;
constexpr double kEsoOffsetMax = 10.0;

std::string esoOffsetShown(std::uint32_t stored)
{
    const double degrees =
        std::clamp(lumarex::esoOffsetFromField(stored), kEsoOffsetMin, kEsoOffsetMax);
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", degrees);
    return text;
}

} // namespace

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
