#include "assignment.h"

#include "fieldvalue.h"

#include <QRegularExpression>

namespace lxconfig {

using lumarex::FieldInfo;
using lumarex::FieldType;

namespace {

constexpr int kAllElements = -1;

std::optional<QString> applyValue(lumarex::ConfigRecord &record, const FieldInfo &info, int element,
                                  const QString &value)
{
    if (info.type == FieldType::Ascii4) {
        if (setMagicText(record, value))
            return std::nullopt;
        return QStringLiteral("expected %1").arg(kMagicDescription);
    }
    bool ok = false;
    const qint64 number = value.toLongLong(&ok);
    const ValueRange range = valueRange(info.type);
    if (!ok || number < range.min || number > range.max)
        return QStringLiteral("expected %1").arg(rangeDescription(info.type));
    if (element == kAllElements)
        setAllElements(record, info, number);
    else
        setNumber(record, info, element, number);
    return std::nullopt;
}

} // namespace

std::optional<QString> applyAssignment(lumarex::ConfigRecord &record, const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^(\\w+)(?:\\[(\\d+)\\])?=(.*)$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return text + QStringLiteral(": expected FIELD=VALUE or FIELD[INDEX]=VALUE");

    const QString key = text.left(text.indexOf(QLatin1Char('=')));
    const std::optional<lumarex::Field> field =
        lumarex::fieldByName(match.captured(1).toStdString());
    if (!field)
        return key + QStringLiteral(": no such field");
    if (*field == lumarex::Field::crc)
        return key + QStringLiteral(": the checksum is computed, not set");

    const FieldInfo &info = lumarex::fieldInfo(*field);
    int element = kAllElements;
    if (!match.captured(2).isNull()) {
        bool ok = false;
        element = match.captured(2).toInt(&ok);
        if (!ok || info.elementCount() == 1 || element >= info.elementCount())
            return key + QStringLiteral(": no such element");
    }
    if (std::optional<QString> problem = applyValue(record, info, element, match.captured(3)))
        return key + QStringLiteral(": ") + *problem;
    return std::nullopt;
}

} // namespace lxconfig
