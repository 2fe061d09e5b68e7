#include "messagetext.h"

#include <cstdint>
#include <cstdio>

namespace lxconfig {

namespace {

// The length of the well-formed UTF-8 sequence at the start of text, 0 when there is none.
std::size_t sequenceLength(std::string_view text)
{
    const auto byte = [&text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const auto continuation = [&](std::size_t i) {
        return i < text.size() && (byte(i) & 0xC0) == 0x80;
    };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return continuation(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        if (!continuation(1) || !continuation(2))
            return 0;
        // No overlong forms and no surrogates.
        if ((lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xED && byte(1) >= 0xA0))
            return 0;
        return 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        if (!continuation(1) || !continuation(2) || !continuation(3))
            return 0;
        if ((lead == 0xF0 && byte(1) < 0x90) || (lead == 0xF4 && byte(1) >= 0x90))
            return 0;
        return 4;
    }
    return 0;
}

} // namespace

std::string escapedForMessage(std::string_view text)
{
    std::string shown;
    char escaped[8];
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = sequenceLength(text.substr(i));
        if (length == 0) {
            std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<std::uint8_t>(text[i]));
            shown += escaped;
            ++i;
            continue;
        }
        const auto lead = static_cast<std::uint8_t>(text[i]);
        const auto second = length > 1 ? static_cast<std::uint8_t>(text[i + 1]) : 0;
        if (lead < 0x20 || lead == 0x7F) {
            std::snprintf(escaped, sizeof escaped, "\\u%04x", lead);
            shown += escaped;
        } else if (lead == 0xC2 && second < 0xA0) { // U+0080 to U+009F
            std::snprintf(escaped, sizeof escaped, "\\u%04x", second);
            shown += escaped;
        } else {
            shown.append(text.substr(i, length));
        }
        i += length;
    }
    return shown;
}

} // namespace lxconfig
