#include "jsonform.h"

#include "fieldvalue.h"
#include "jsonsyntax.h"
#include "messagetext.h"

#include <cmath>
#include <cstdio>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::FieldInfo;
using lumarex::FieldType;

namespace {

std::string elementKey(const FieldInfo &info, int element)
{
    return std::string(info.name) + '[' + std::to_string(element) + ']';
}

// A JSON string literal: quotes, backslashes and control characters escaped, the rest as is.
std::string jsonString(const std::string &utf8)
{
    std::string quoted = "\"";
    for (const char c : utf8) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned char>(c));
            quoted += escaped;
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

std::optional<std::int64_t> wholeNumber(const JsonValue &value, FieldType type)
{
    if (!value.is_number())
        return std::nullopt;
    // Every JSON number is taken as a double, as the form has always read them.
    const double number = value.get<double>();
    const ValueRange range = valueRange(type);
    // Every bound is exact as a double, so the comparisons are too.
    if (std::trunc(number) != number || number < double(range.min) || number > double(range.max))
        return std::nullopt;
    return static_cast<std::int64_t>(number);
}

// One field's value into the record; a failure (without a file) naming the key when it does
// not fit.
Done readField(const JsonValue &value, const FieldInfo &info, ConfigRecord &record)
{
    const std::string key = info.name;
    if (info.type == FieldType::Ascii4) {
        if (value.is_string() && setMagicText(record, value.get_ref<const std::string &>()))
            return {};
        return Failure{{}, key + ": expected " + kMagicDescription};
    }
    if (info.type == FieldType::U16x20) {
        if (!value.is_array() || value.size() != static_cast<std::size_t>(info.elementCount())) {
            return Failure{{},
                           key + ": expected an array of " + std::to_string(info.elementCount()) +
                               " numbers, each " + rangeDescription(info.type)};
        }
        for (int element = 0; element < info.elementCount(); ++element) {
            const std::optional<std::int64_t> number =
                wholeNumber(value.at(static_cast<std::size_t>(element)), info.type);
            if (!number)
                return Failure{
                    {}, elementKey(info, element) + ": expected " + rangeDescription(info.type)};
            setNumber(record, info, element, *number);
        }
        return {};
    }
    const std::optional<std::int64_t> number = wholeNumber(value, info.type);
    if (!number)
        return Failure{{}, key + ": expected " + rangeDescription(info.type)};
    setNumber(record, info, 0, *number);
    return {};
}

} // namespace

Result<std::string> recordToJson(const ConfigRecord &record)
{
    std::string text = "{\n";
    bool first = true;
    for (const FieldInfo &info : lumarex::fieldTable()) {
        std::string value;
        if (info.type == FieldType::Ascii4) {
            value = jsonString(magicText(record));
        } else if (info.type == FieldType::U16x20) {
            value = "[";
            for (int element = 0; element < info.elementCount(); ++element)
                value += (element == 0 ? "" : ", ") + numberText(record, info, element);
            value += ']';
        } else {
            const std::int64_t number = numberOf(record, info, 0);
            const ValueRange range = valueRange(info.type);
            if (number < range.min || number > range.max) {
                return Failure{{},
                               std::string(info.name) + ": " + numberText(record, info, 0) +
                                   " is more than a JSON number holds"};
            }
            value = std::to_string(number);
        }
        text += (first ? "    \"" : ",\n    \"") + std::string(info.name) + "\": " + value;
        first = false;
    }
    return text + "\n}\n";
}

Result<ConfigRecord> recordFromJson(std::string_view json)
{
    Result<JsonValue> parsed = parseJson(json);
    if (!parsed)
        return parsed.failure();
    const JsonValue &document = *parsed;
    if (!document.is_object())
        return Failure{{}, "not a JSON object"};
    // Keys in the order of their names, so the same form always gives the same first complaint.
    for (const auto &member : document.items()) {
        if (!lumarex::fieldByName(member.key()))
            return Failure{{}, escapedForMessage(member.key()) + ": no such field"};
    }
    ConfigRecord record;
    for (const FieldInfo &info : lumarex::fieldTable()) {
        const auto it = document.find(info.name);
        if (it == document.end())
            return Failure{{}, std::string(info.name) + ": missing"};
        if (Done read = readField(*it, info, record); !read)
            return read.failure();
    }
    return record;
}

Done setFieldsFromJson(const nlohmann::json &form, ConfigRecord &record)
{
    for (const auto &member : form.items()) {
        const std::optional<lumarex::Field> field = lumarex::fieldByName(member.key());
        if (!field)
            return Failure{{}, escapedForMessage(member.key()) + ": no such field"};
        if (Done read = readField(member.value(), lumarex::fieldInfo(*field), record); !read)
            return read;
    }
    return {};
}

} // namespace lxconfig
