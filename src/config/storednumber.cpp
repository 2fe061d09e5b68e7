#include "storednumber.h"

#include "conversions.h"

#include <charconv>

namespace lumarex {

std::uint32_t numberIn(std::string_view text)
{
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

std::optional<std::uint32_t> storedNumber(Stored stored, const ControlState &state)
{
    switch (stored) {
    case Stored::ItemIndex:
        return static_cast<std::uint32_t>(state.index);
    case Stored::Ext0Code:
        return ext0ModeCode(state.index);
    case Stored::Ext1Code:
        return ext1ModeCode(state.index);
    case Stored::ItemNumber:
        return numberIn(state.itemText);
    case Stored::Checked:
        return state.checked ? 1 : 0;
    case Stored::Value:
        return static_cast<std::uint32_t>(state.value);
    case Stored::Hundredths:
        return static_cast<std::uint32_t>(esoOffsetToField(state.real));
    case Stored::TextNumber:
        return numberIn(state.text);
    }
    return std::nullopt;
}

std::optional<std::uint32_t> itemStoredNumber(Stored stored, const ControlFacts &facts, int index)
{
    ControlState state;
    state.index = index;
    state.itemText = facts.item(index);
    return storedNumber(stored, state);
}

} // namespace lumarex
