#include "settingvalue.h"

#include "assignment.h"
#include "controltext.h"
#include "conversions.h"
#include "fieldtext.h"
#include "fieldvalue.h"
#include "storednumber.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <vector>

namespace lxconfig {

using lumarex::ControlFacts;
using lumarex::Stored;

namespace {

std::string lower(std::string_view text)
{
    std::string out;
    for (char c : text)
        out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

// The stored value of an item, or nothing when the item cannot be stored (a mode without code).
std::optional<std::int64_t> itemStored(Stored stored, const ControlFacts &facts, int index)
{
    return lumarex::itemStoredNumber(stored, facts, index);
}

std::string itemList(Stored stored, const ControlFacts &facts)
{
    std::string list;
    for (int i = 0; i < facts.itemCount; ++i) {
        const std::optional<std::int64_t> value = itemStored(stored, facts, i);
        if (!value)
            continue;
        list += (list.empty() ? "" : ", ") + std::to_string(*value) + " " +
                lumarex::quoted(facts.item(i));
    }
    return list;
}

SettingValue comboValue(Stored stored, const ControlFacts &facts, std::string_view text)
{
    const std::string holds = "the window offers " + itemList(stored, facts);
    if (const std::optional<std::int64_t> number = wholeNumber(text)) {
        for (int i = 0; i < facts.itemCount; ++i) {
            if (itemStored(stored, facts, i) == number)
                return {number, true, {}};
        }
        return {number, false,
                "no item has the stored value " + std::to_string(*number) + "; " + holds};
    }
    const std::string wanted = lower(trimmed(text));
    std::vector<int> prefixed;
    for (int i = 0; i < facts.itemCount; ++i) {
        const std::string item = lower(trimmed(facts.item(i)));
        if (!itemStored(stored, facts, i))
            continue;
        if (item == wanted)
            return {itemStored(stored, facts, i), true, {}};
        if (!wanted.empty() && item.compare(0, wanted.size(), wanted) == 0)
            prefixed.push_back(i);
    }
    if (prefixed.size() == 1)
        return {itemStored(stored, facts, prefixed.front()), true, {}};
    if (prefixed.size() > 1) {
        std::string problem = "\"" + std::string(text) + "\" begins more than one item: ";
        for (std::size_t i = 0; i < prefixed.size(); ++i)
            problem += (i > 0 ? ", " : "") + lumarex::quoted(facts.item(prefixed[i]));
        return {std::nullopt, false, problem};
    }
    return {std::nullopt, false, "no item \"" + std::string(text) + "\"; " + holds};
}

SettingValue checkValue(std::string_view text)
{
    const std::string word = lower(trimmed(text));
    if (word == "on" || word == "true" || word == "yes" || word == "1")
        return {1, true, {}};
    if (word == "off" || word == "false" || word == "no" || word == "0")
        return {0, true, {}};
    const std::string holds = "the window's check box holds on (1) or off (0)";
    if (const std::optional<std::int64_t> number = wholeNumber(text))
        return {number, false, holds};
    return {std::nullopt, false, "expected on or off (" + holds + ")"};
}

SettingValue spinValue(const ControlFacts &facts, std::string_view text)
{
    const std::string holds = "the window holds " + lumarex::rangeText(facts);
    const std::optional<std::int64_t> number = wholeNumber(text);
    if (!number)
        return {std::nullopt, false, "expected a whole number; " + holds};
    const bool inside = *number >= facts.minimum && *number <= facts.maximum;
    return {number, inside, inside ? std::string() : holds};
}

// A decimal as the window shows it, or a whole number of hundredths as stored.
SettingValue hundredthsValue(const ControlFacts &facts, std::string_view text)
{
    const std::string holds =
        "the window holds " + lumarex::rangeText(facts) + " (stored in hundredths)";
    std::optional<std::int64_t> stored = wholeNumber(text);
    const bool whole = stored.has_value();
    const std::string_view number = trimmed(text);
    if (!stored && number.find_first_of(".,") != std::string_view::npos) {
        std::string decimal(number);
        for (char &c : decimal)
            c = c == ',' ? '.' : c;
        double degrees = 0;
        const auto [end, error] =
            std::from_chars(decimal.data(), decimal.data() + decimal.size(), degrees);
        if (error == std::errc() && end == decimal.data() + decimal.size() &&
            std::isfinite(degrees) && std::fabs(degrees) < 2e7)
            stored = std::llround(degrees * 100);
    }
    if (!stored)
        return {std::nullopt, false, "expected a decimal; " + holds};
    const double shown = static_cast<double>(*stored) / 100;
    const bool inside = shown >= facts.minimum - 1e-9 && shown <= facts.maximum + 1e-9 &&
                        (!whole || lumarex::esoOffsetToField(lumarex::esoOffsetFromField(
                                       static_cast<std::uint32_t>(*stored))) == *stored);
    return {stored, inside, inside ? std::string() : holds};
}

} // namespace

SettingValue settingValue(const lumarex::FormField &pairing, std::string_view text)
{
    const ControlFacts &facts = *lumarex::findControl(pairing.control);
    switch (pairing.stored) {
    case Stored::ItemIndex:
    case Stored::Ext0Code:
    case Stored::Ext1Code:
    case Stored::ItemNumber:
        return comboValue(pairing.stored, facts, text);
    case Stored::Checked:
        return checkValue(text);
    case Stored::Value:
        return spinValue(facts, text);
    case Stored::Hundredths:
        return hundredthsValue(facts, text);
    case Stored::TextNumber:
        break;
    }
    const lumarex::FieldInfo &info = lumarex::fieldInfo(pairing.field);
    const std::optional<std::int64_t> number = wholeNumber(text);
    const ValueRange range = valueRange(info.type);
    if (!number || *number < 0 || *number > range.max)
        return {std::nullopt, false,
                "expected a whole number from 0 to " + std::to_string(range.max)};
    return {number, true, {}};
}

std::string shownValue(lumarex::Field field, std::int64_t stored)
{
    const lumarex::FormField *pairing = lumarex::formFieldOf(field);
    const ControlFacts *facts = lumarex::controlOf(field);
    if (!pairing || !facts)
        return std::to_string(stored);
    if (facts->itemCount > 0) {
        for (int i = 0; i < facts->itemCount; ++i) {
            if (itemStored(pairing->stored, *facts, i) == stored)
                return lumarex::quoted(facts->item(i));
        }
        return std::to_string(stored) + " (no item)";
    }
    if (pairing->stored == Stored::Checked)
        return stored == 0 ? "off" : "on";
    if (pairing->stored == Stored::Hundredths)
        return esoOffsetShown(static_cast<std::uint32_t>(stored));
    return std::to_string(stored);
}

} // namespace lxconfig
