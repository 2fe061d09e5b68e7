#include "textform.h"

#include "assignment.h"
#include "fieldtext.h"
#include "fieldvalue.h"
#include "formfields.h"
#include "settingname.h"
#include "settingvalue.h"

#include <charconv>
#include <map>
#include <set>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::Field;
using lumarex::FieldInfo;
using lumarex::FieldType;

namespace {

std::string_view trimmed(std::string_view text)
{
    const std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool uniform(const ConfigRecord &record, const FieldInfo &info)
{
    for (int element = 1; element < info.elementCount(); ++element) {
        if (numberOf(record, info, element) != numberOf(record, info, 0))
            return false;
    }
    return true;
}

std::string fieldLines(const ConfigRecord &record, const FieldInfo &info)
{
    if (info.type == FieldType::Ascii4)
        return std::string(info.name) + " = " + quotedMagic(record) + '\n';
    const bool control = lumarex::formFieldOf(info.field) != nullptr;
    if (uniform(record, info)) {
        return std::string(info.name) + " = " +
               (control ? formValue(record, info, 0) : numberText(record, info, 0)) + '\n';
    }
    std::string lines;
    for (int element = 0; element < info.elementCount(); ++element) {
        lines += std::string(info.name) + '[' + std::to_string(element) +
                 "] = " + numberText(record, info, element) + '\n';
    }
    return lines;
}

// The text after the stored number of "-125 (shown as 10.00)" or "17 (no item)" is a note;
// an item text in double quotes is the text.
std::string plainValue(std::string_view value)
{
    std::size_t end = !value.empty() && value.front() == '-' ? 1 : 0;
    const std::size_t digits = end;
    while (end < value.size() && value[end] >= '0' && value[end] <= '9')
        ++end;
    if (end > digits &&
        (end == value.size() || value.substr(end, 2) == " (" || value.substr(end, 2) == " \""))
        return std::string(value.substr(0, end));
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
        return std::string(value.substr(1, value.size() - 2));
    return std::string(value);
}

// The magic as quotedMagic() writes it: "CONF", "\x00\x01AB".
bool setQuotedMagic(ConfigRecord &record, std::string_view text)
{
    if (text.size() < 2 || text.front() != '"' || text.back() != '"')
        return false;
    text = text.substr(1, text.size() - 2);
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"')
            return false;
        if (text[i] != '\\') {
            bytes += text[i];
            continue;
        }
        unsigned value = 0;
        if (text.substr(i, 2) != "\\x" || i + 4 > text.size())
            return false;
        const auto [end, error] =
            std::from_chars(text.data() + i + 2, text.data() + i + 4, value, 16);
        if (error != std::errc() || end != text.data() + i + 4)
            return false;
        bytes += static_cast<char>(value);
        i += 3;
    }
    if (bytes.size() != 4)
        return false;
    const int offset = lumarex::fieldInfo(Field::magic).offset;
    for (int i = 0; i < 4; ++i)
        record.data()[offset + i] = static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(i)]);
    return true;
}

// The stored number of a line into the record; a failure (without a file) when it does not fit.
Done setStoredNumber(ConfigRecord &record, const FieldInfo &info, int element,
                     const std::string &text)
{
    if (info.type == FieldType::Bytes8) {
        std::uint64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size())
            return Failure{{}, "expected a whole number from 0 to 18446744073709551615"};
        record.setValue64(info.field, value);
        return {};
    }
    const std::optional<std::int64_t> number = wholeNumber(text);
    const ValueRange range = valueRange(info.type);
    if (!number || *number < range.min || *number > range.max)
        return Failure{{}, "expected " + rangeDescription(info.type)};
    if (element < 0)
        setAllElements(record, info, *number);
    else
        setNumber(record, info, element, *number);
    return {};
}

} // namespace

std::string formValue(const ConfigRecord &record, const FieldInfo &info, int element)
{
    const std::int64_t stored = numberOf(record, info, element);
    const std::string shown = shownValue(info.field, stored);
    std::string words = shown;
    if (words.size() >= 2 && words.front() == '"' && words.back() == '"')
        words = words.substr(1, words.size() - 2);
    const SettingValue back = settingValue(*lumarex::formFieldOf(info.field), words);
    if (back.holdable && back.stored == stored)
        return shown;
    const std::string number = numberText(record, info, element);
    const std::string noted = elementText(record, info, element);
    if (noted != number || shown == number || shown.compare(0, number.size(), number) == 0)
        return noted;
    return number + " (shown as " + shown + ")";
}

std::string recordToText(const ConfigRecord &record)
{
    std::string text = "# Lumarex 2.0 settings, one NAME = VALUE line each, page by page in the "
                       "window's words;\n"
                       "# a number before a note in brackets is the value stored.\n"
                       "\n# File header\n";
    for (const Field field : {Field::magic, Field::payloadLength, Field::headerVersion})
        text += fieldLines(record, lumarex::fieldInfo(field));
    std::map<int, std::string> pages; // by tab position, each in the form's order of controls
    for (std::size_t c = 0; c < lumarex::formControlCount(); ++c) {
        const lumarex::ControlFacts &facts = lumarex::formControls()[c];
        for (std::size_t f = 0; f < lumarex::formFieldCount(); ++f) {
            const lumarex::FormField &pairing = lumarex::formFields()[f];
            if (pairing.control != facts.objectName)
                continue;
            std::string &page = pages[facts.pageIndex];
            if (page.empty())
                page = "\n# Page \"" + std::string(facts.page) + "\"\n";
            page += fieldLines(record, lumarex::fieldInfo(pairing.field));
        }
    }
    for (const auto &[index, page] : pages)
        text += page;
    text += "\n# Not in the window: constants and spare bytes\n";
    for (const FieldInfo &info : lumarex::fieldTable()) {
        const bool header = info.field == Field::magic || info.field == Field::payloadLength ||
                            info.field == Field::headerVersion;
        if (!header && info.field != Field::crc && !lumarex::formFieldOf(info.field))
            text += fieldLines(record, info);
    }
    return text + "\n# Checksum\n" + fieldLines(record, lumarex::fieldInfo(Field::crc));
}

Result<std::vector<TextLine>> textLines(std::string_view text)
{
    std::vector<TextLine> lines;
    int number = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        ++number;
        if (line.empty() || line.front() == '#')
            continue;
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || trimmed(line.substr(0, equals)).empty()) {
            return Failure{{}, "line " + std::to_string(number) + ": " + kTextLineForm};
        }
        lines.push_back({number, std::string(trimmed(line.substr(0, equals))),
                         std::string(trimmed(line.substr(equals + 1)))});
    }
    return lines;
}

LineValue readLine(const TextLine &line, ConfigRecord &record)
{
    LineValue read;
    std::string base = line.name;
    const std::size_t open = base.find('[');
    if (open != std::string::npos && base.back() == ']') {
        const std::optional<std::int64_t> element =
            wholeNumber(std::string_view(base).substr(open + 1, base.size() - open - 2));
        base = base.substr(0, open);
        read.element = element ? static_cast<int>(std::min<std::int64_t>(*element, 1 << 20)) : -2;
    }
    const NamedField named = fieldNamed(base);
    if (!named.field) {
        read.problem = base + ": " + named.problem;
        return read;
    }
    const FieldInfo &info = lumarex::fieldInfo(*named.field);
    if (read.element != -1 && (read.element < 0 || read.element >= info.elementCount() ||
                               info.type != FieldType::U16x20)) {
        read.problem = line.name + ": " +
                       (info.type == FieldType::U16x20
                            ? "an element from 0 to " + std::to_string(info.elementCount() - 1)
                            : std::string(info.name) + " has no elements");
        return read;
    }
    read.value = plainValue(line.value);
    if (info.type == FieldType::Ascii4) {
        read.value = line.value;
        if (!setQuotedMagic(record, line.value))
            read.problem = std::string(info.name) +
                           ": expected 4 characters in double quotes, a byte as \\xNN";
    } else if (!lumarex::formFieldOf(info.field) || read.element >= 0) {
        if (const Done set = setStoredNumber(record, info, read.element, read.value); !set)
            read.problem = line.name + ": " + set.failure().reason;
    } else {
        const SettingValue value = settingValue(*lumarex::formFieldOf(info.field), read.value);
        const ValueRange range = valueRange(info.type);
        if (!value.stored)
            read.problem = line.name + ": " + value.problem;
        else if (*value.stored < range.min || *value.stored > range.max)
            read.problem = line.name + ": expected " + rangeDescription(info.type);
        else
            setAllElements(record, info, *value.stored);
    }
    if (read.problem.empty())
        read.field = info.field;
    return read;
}

Result<ConfigRecord> recordFromText(std::string_view text)
{
    const Result<std::vector<TextLine>> lines = textLines(text);
    if (!lines)
        return lines.failure();
    ConfigRecord record;
    std::map<std::pair<Field, int>, int> given; // field and element: the line that gave it
    for (const TextLine &line : *lines) {
        const LineValue read = readLine(line, record);
        const std::string where = "line " + std::to_string(line.number) + ": ";
        if (!read.field) {
            return Failure{{}, where + read.problem};
        }
        const FieldInfo &info = lumarex::fieldInfo(*read.field);
        for (int element = 0; element < info.elementCount(); ++element) {
            if (read.element >= 0 && element != read.element)
                continue;
            const auto [it, fresh] =
                given.emplace(std::make_pair(*read.field, element), line.number);
            if (!fresh) {
                return Failure{{},
                               where + line.name + ": given before, on line " +
                                   std::to_string(it->second) + "; each setting once"};
            }
        }
    }
    for (const FieldInfo &info : lumarex::fieldTable()) {
        for (int element = 0; element < info.elementCount(); ++element) {
            if (given.count({info.field, element}) || info.field == Field::crc)
                continue;
            return Failure{
                {},
                "no line gives " + std::string(info.name) +
                    (info.elementCount() > 1 ? "[" + std::to_string(element) + "]" : "") +
                    "; every setting is needed to restore the file"};
        }
    }
    if (!given.count({Field::crc, 0}))
        record.setValue(Field::crc, record.computedChecksum());
    return record;
}

} // namespace lxconfig
