#include "fieldtext.h"

#include "controltext.h"
#include "conversions.h"
#include "fieldvalue.h"
#include "formfields.h"
#include "itemtexts.h"

#include <algorithm>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::Field;
using lumarex::FieldInfo;

std::string esoOffsetShown(std::uint32_t stored)
{
    const lumarex::ControlFacts &control = *lumarex::controlOf(Field::esoOffset);
    const double degrees =
        std::clamp(lumarex::esoOffsetFromField(stored), control.minimum, control.maximum);
    return lumarex::decimalText(degrees, control.decimals);
}

std::string esoOffsetStored(std::uint32_t stored)
{
    const auto number = static_cast<std::int32_t>(stored);
    const double degrees = number < 0 ? -lumarex::esoOffsetFromField(static_cast<std::uint32_t>(
                                            -static_cast<std::int64_t>(number)))
                                      : lumarex::esoOffsetFromField(stored);
    return lumarex::decimalText(degrees, lumarex::controlOf(Field::esoOffset)->decimals);
}

Shown shownOf(const ConfigRecord &record, const FieldInfo &info, int element)
{
    if (info.field == Field::esoOffset)
        return {Shown::Kind::Degrees, esoOffsetShown(record.value(info.field, element))};
    const ItemList *list = itemListOf(info.field);
    if (!list)
        return {};
    const std::optional<std::string> item = itemText(*list, record.value(info.field, element));
    return item ? Shown{Shown::Kind::Item, *item} : Shown{Shown::Kind::NoItem, {}};
}

std::string elementText(const ConfigRecord &record, const FieldInfo &info, int element)
{
    if (info.type == lumarex::FieldType::Ascii4)
        return quotedMagic(record);
    const std::string number = numberText(record, info, element);
    const Shown shown = shownOf(record, info, element);
    switch (shown.kind) {
    case Shown::Kind::Number:
        break;
    case Shown::Kind::Item:
        return number + " \"" + shown.text + "\"";
    case Shown::Kind::NoItem:
        return number + " (no item)";
    case Shown::Kind::Degrees:
        return number + " (shown as " + shown.text + ")";
    }
    return number;
}

std::string fieldText(const ConfigRecord &record, const FieldInfo &info)
{
    std::string text;
    for (int element = 0; element < info.elementCount(); ++element)
        text += (element == 0 ? "" : " ") + elementText(record, info, element);
    return text;
}

} // namespace lxconfig
