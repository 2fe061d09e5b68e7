#include "fieldvalue.h"

#include <array>
#include <cstdio>
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
        return {0, (std::int64_t(1) << 53) - 1};
    case FieldType::Ascii4:
        break;
    }
    return {0, 0};
}

std::string rangeDescription(FieldType type)
{
    const ValueRange range = valueRange(type);
    return "a whole number from " + std::to_string(range.min) + " to " + std::to_string(range.max);
}

std::int64_t numberOf(const ConfigRecord &record, const FieldInfo &info, int element)
{
    switch (info.type) {
    case FieldType::I32:
        return record.signedValue(info.field);
    case FieldType::Bytes8:
        return static_cast<std::int64_t>(record.value64(info.field));
    default:
        return record.value(info.field, element);
    }
}

std::string numberText(const ConfigRecord &record, const FieldInfo &info, int element)
{
    if (info.type == FieldType::Bytes8)
        return std::to_string(record.value64(info.field));
    return std::to_string(numberOf(record, info, element));
}

void setNumber(ConfigRecord &record, const FieldInfo &info, int element, std::int64_t value)
{
    if (info.type == FieldType::Bytes8)
        record.setValue64(info.field, static_cast<std::uint64_t>(value));
    else
        record.setValue(info.field, static_cast<std::uint32_t>(value), element);
}

void setAllElements(ConfigRecord &record, const FieldInfo &info, std::int64_t value)
{
    for (int element = 0; element < info.elementCount(); ++element)
        setNumber(record, info, element, value);
}

std::string magicText(const ConfigRecord &record)
{
    std::string text;
    for (std::size_t i = 0; i < lumarex::kMagic.size(); ++i) {
        const std::uint8_t byte = record.bytes()[i];
        if (byte < 0x80) {
            text += static_cast<char>(byte);
        } else {
            text += static_cast<char>(0xC0 | (byte >> 6));
            text += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return text;
}

bool setMagicText(ConfigRecord &record, const std::string &utf8)
{
    // Only characters up to U+00FF fit a byte: ASCII, or a two-byte sequence led by C2 or C3.
    std::array<std::uint8_t, 4> bytes{};
    std::size_t count = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<std::uint8_t>(utf8[i]);
        std::uint8_t byte = lead;
        if (lead >= 0x80) {
            const bool twoBytes = (lead == 0xC2 || lead == 0xC3) && i + 1 < utf8.size() &&
                                  (static_cast<std::uint8_t>(utf8[i + 1]) & 0xC0) == 0x80;
            if (!twoBytes)
                return false;
            byte = static_cast<std::uint8_t>(((lead & 0x03) << 6) |
                                             (static_cast<std::uint8_t>(utf8[++i]) & 0x3F));
        }
        if (count == bytes.size())
            return false;
        bytes[count++] = byte;
    }
    if (count != bytes.size())
        return false;
    std::copy(bytes.begin(), bytes.end(), record.data());
    return true;
}

std::string quotedMagic(const ConfigRecord &record)
{
    std::string quoted = "\"";
    for (std::size_t i = 0; i < lumarex::kMagic.size(); ++i) {
        const std::uint8_t c = record.bytes()[i];
        const bool plain = c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
        if (plain) {
            quoted += static_cast<char>(c);
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02x", c);
            quoted += escaped;
        }
    }
    return quoted + '"';
}

} // namespace lxconfig
