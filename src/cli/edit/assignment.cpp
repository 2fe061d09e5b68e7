#include "assignment.h"

#include "fieldvalue.h"

#include <cctype>
#include <charconv>
#include <limits>

namespace lxconfig {

using lumarex::FieldInfo;
using lumarex::FieldType;

namespace {

constexpr int kAllElements = -1;

// Letters, digits and the underscore; bytes of UTF-8 sequences count as letters, so that a
// name in another script is read whole and then reported as no such field.
bool isNameByte(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || std::isalnum(byte) || c == '_';
}

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace

std::optional<std::int64_t> wholeNumber(std::string_view text)
{
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    if (text.size() > 1 && text.front() == '+' && text[1] != '-')
        text.remove_prefix(1);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

namespace {

// One value into the record; a failure (without a file) when the field cannot hold it.
Done applyValue(lumarex::ConfigRecord &record, const FieldInfo &info, int element,
                const std::string &value)
{
    if (info.type == FieldType::Ascii4) {
        if (setMagicText(record, value))
            return {};
        return Failure{{}, std::string("expected ") + kMagicDescription};
    }
    const std::optional<std::int64_t> number = wholeNumber(value);
    const ValueRange range = valueRange(info.type);
    if (!number || *number < range.min || *number > range.max)
        return Failure{{}, "expected " + rangeDescription(info.type)};
    if (element == kAllElements)
        setAllElements(record, info, *number);
    else
        setNumber(record, info, element, *number);
    return {};
}

} // namespace

Done applyAssignment(lumarex::ConfigRecord &record, const std::string &text)
{
    // NAME, then [DIGITS], then = and a value on one line.
    std::size_t at = 0;
    while (at < text.size() && isNameByte(text[at]))
        ++at;
    const std::string name = text.substr(0, at);
    std::optional<std::string> index;
    if (at < text.size() && text[at] == '[') {
        const std::size_t digits = at + 1;
        std::size_t end = digits;
        while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])))
            ++end;
        if (end > digits && end < text.size() && text[end] == ']') {
            index = text.substr(digits, end - digits);
            at = end + 1;
        }
    }
    const bool matches = !name.empty() && at < text.size() && text[at] == '=' &&
                         text.find('\n', at) == std::string::npos;
    if (!matches)
        return Failure{{}, text + ": expected FIELD=VALUE or FIELD[INDEX]=VALUE"};

    const std::string key = text.substr(0, text.find('='));
    const std::optional<lumarex::Field> field = lumarex::fieldByName(name);
    if (!field)
        return Failure{{}, key + ": no such field"};
    if (*field == lumarex::Field::crc)
        return Failure{{}, key + ": the checksum is computed, not set"};

    const FieldInfo &info = lumarex::fieldInfo(*field);
    int element = kAllElements;
    if (index) {
        const auto [end, error] =
            std::from_chars(index->data(), index->data() + index->size(), element);
        if (error != std::errc() || info.elementCount() == 1 || element >= info.elementCount())
            return Failure{{}, key + ": no such element"};
    }
    if (const Done applied = applyValue(record, info, element, text.substr(at + 1)); !applied)
        return Failure{{}, key + ": " + applied.failure().reason};
    return {};
}

} // namespace lxconfig
