#include "controltext.h"

#include <charconv>

namespace lumarex {

std::string decimalText(double value, int decimals)
{
    // Room for the largest double in fixed notation with any decimals the form may give.
    char text[400];
    const auto [end, error] =
        std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
    return error == std::errc() ? std::string(text, end) : std::string("?");
}

std::string rangeText(const ControlFacts &facts)
{
    return decimalText(facts.minimum, facts.decimals) + " to " +
           decimalText(facts.maximum, facts.decimals);
}

std::string_view checkText(bool checked)
{
    return checked ? "checked" : "unchecked";
}

std::string quoted(std::string_view text)
{
    return "\"" + std::string(text) + "\"";
}

} // namespace lumarex
