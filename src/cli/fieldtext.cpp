#include "fieldtext.h"

#include "conversions.h"
#include "fieldvalue.h"
#include "formfields.h"
#include "itemtexts.h"

#include <QStringList>
#include <algorithm>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::Field;
using lumarex::FieldInfo;

namespace {

// The offset control clamps what a load gives it to its range and shows its decimals.
QString esoOffsetShown(std::uint32_t stored)
{
    const lumarex::ControlFacts &control = *lumarex::controlOf(Field::esoOffset);
    const double degrees =
        std::clamp(lumarex::esoOffsetFromField(stored), control.minimum, control.maximum);
    return QString::number(degrees, 'f', control.decimals);
}

} // namespace

QString elementText(const ConfigRecord &record, const FieldInfo &info, int element)
{
    if (info.type == lumarex::FieldType::Ascii4)
        return quotedMagic(record);
    const QString number = numberText(record, info, element);
    if (info.field == Field::esoOffset)
        return number +
               QStringLiteral(" (shown as %1)").arg(esoOffsetShown(record.value(info.field)));
    const ItemList *list = itemListOf(info.field);
    if (!list)
        return number;
    const std::optional<QString> item = itemText(*list, record.value(info.field));
    return number + (item ? QStringLiteral(" \"%1\"").arg(*item) : QStringLiteral(" (no item)"));
}

QString fieldText(const ConfigRecord &record, const FieldInfo &info)
{
    QStringList elements;
    for (int element = 0; element < info.elementCount(); ++element)
        elements << elementText(record, info, element);
    return elements.join(QLatin1Char(' '));
}

} // namespace lxconfig
