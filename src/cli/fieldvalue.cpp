#include "fieldvalue.h"

#include <limits>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::FieldInfo;
using lumarex::FieldType;

ValueRange valueRange(FieldType type)
{
    switch (type) {
    case FieldType::U8:
        return {0, std::numeric_limits<std::uint8_t>::max()};
    case FieldType::U16:
    case FieldType::U16x20:
        return {0, std::numeric_limits<std::uint16_t>::max()};
    case FieldType::U32:
        return {0, std::numeric_limits<std::uint32_t>::max()};
    case FieldType::I32:
        return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    case FieldType::Bytes8:
        return {0, (qint64(1) << 53) - 1};
    case FieldType::Ascii4:
        break;
    }
    return {0, 0};
}

QString rangeDescription(FieldType type)
{
    const ValueRange range = valueRange(type);
    return QStringLiteral("a whole number from %1 to %2").arg(range.min).arg(range.max);
}

qint64 numberOf(const ConfigRecord &record, const FieldInfo &info, int element)
{
    switch (info.type) {
    case FieldType::I32:
        return record.signedValue(info.field);
    case FieldType::Bytes8:
        return static_cast<qint64>(record.value64(info.field));
    default:
        return record.value(info.field, element);
    }
}

QString numberText(const ConfigRecord &record, const FieldInfo &info, int element)
{
    if (info.type == FieldType::Bytes8)
        return QString::number(record.value64(info.field));
    return QString::number(numberOf(record, info, element));
}

void setNumber(ConfigRecord &record, const FieldInfo &info, int element, qint64 value)
{
    if (info.type == FieldType::Bytes8)
        record.setValue64(info.field, static_cast<std::uint64_t>(value));
    else
        record.setValue(info.field, static_cast<std::uint32_t>(value), element);
}

void setAllElements(ConfigRecord &record, const FieldInfo &info, qint64 value)
{
    for (int element = 0; element < info.elementCount(); ++element)
        setNumber(record, info, element, value);
}

QString magicText(const ConfigRecord &record)
{
    return QString::fromLatin1(reinterpret_cast<const char *>(record.bytes().data()),
                               static_cast<int>(lumarex::kMagic.size()));
}

bool setMagicText(ConfigRecord &record, const QString &text)
{
    if (text.size() != static_cast<int>(lumarex::kMagic.size()))
        return false;
    for (const QChar c : text) {
        if (c.unicode() > 0xFF)
            return false;
    }
    const QByteArray bytes = text.toLatin1();
    std::copy(bytes.begin(), bytes.end(), record.data());
    return true;
}

QString quotedMagic(const ConfigRecord &record)
{
    QString quoted = QStringLiteral("\"");
    for (const QChar c : magicText(record)) {
        const bool plain = c.unicode() >= 0x20 && c.unicode() < 0x7F && c != QLatin1Char('"') &&
                           c != QLatin1Char('\\');
        if (plain)
            quoted += c;
        else
            quoted += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
    }
    return quoted + QLatin1Char('"');
}

} // namespace lxconfig
