#include "xmltext.h"

#include <cstddef>
#include <cstdio>

namespace lxconfig {

namespace {

constexpr const char *kReplacement = "\xEF\xBF\xBD"; // U+FFFD

unsigned char byteAt(const std::string &text, std::size_t i)
{
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
}

bool isContinuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

// The length of the well-formed UTF-8 sequence of two or more bytes at i, or 0. The second
// byte's range is what rules out overlong forms, surrogates and code points past U+10FFFF.
std::size_t sequenceLength(const std::string &text, std::size_t i)
{
    const unsigned char lead = byteAt(text, i);
    const unsigned char second = byteAt(text, i + 1);
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;  // not overlong
        high = lead == 0xED ? 0x9F : 0xBF; // not a surrogate
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;  // not overlong
        high = lead == 0xF4 ? 0x8F : 0xBF; // not past U+10FFFF
    } else {
        return 0;
    }
    if (second < low || second > high)
        return 0;
    for (std::size_t k = 2; k < length; ++k) {
        if (!isContinuation(byteAt(text, i + k)))
            return 0;
    }
    return length;
}

// U+FFFE and U+FFFF are not characters XML allows.
bool isNonCharacter(const std::string &text, std::size_t i, std::size_t length)
{
    return length == 3 && byteAt(text, i) == 0xEF && byteAt(text, i + 1) == 0xBF &&
           byteAt(text, i + 2) >= 0xBE;
}

// Calls keep(i, length) for each character XML allows and replace() for each byte or character
// it does not, in order.
template <typename Keep, typename Replace>
void forEachCharacter(const std::string &text, Keep keep, Replace replace)
{
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char byte = byteAt(text, i);
        if (byte >= 0x80) {
            const std::size_t length = sequenceLength(text, i);
            if (length == 0 || isNonCharacter(text, i, length)) {
                replace();
                i += length == 0 ? 1 : length;
            } else {
                keep(i, length);
                i += length;
            }
        } else {
            // XML 1.0 allows no control characters in text but tab and line feed (a carriage
            // return would be read back as a line feed).
            if (byte < 0x20 && byte != '\t' && byte != '\n')
                replace();
            else
                keep(i, 1);
            ++i;
        }
    }
}

} // namespace

std::string cssString(const std::string &text)
{
    std::string out = "\"";
    forEachCharacter(
        text,
        [&](std::size_t i, std::size_t length) {
            const unsigned char byte = byteAt(text, i);
            const bool plain = length > 1 || (byte >= 'a' && byte <= 'z') ||
                               (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
                               byte == ' ' || byte == '.' || byte == '_' || byte == '-' ||
                               byte == '/';
            if (plain) {
                out.append(text, i, length);
            } else {
                // Six hex digits need no space after them to end the escape.
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\%06X", byte);
                out += escape;
            }
        },
        [&] { out += kReplacement; });
    return out + "\"";
}

std::string xmlEscaped(const std::string &text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char byte = byteAt(text, i);
        if (byte >= 0x80) {
            const std::size_t length = sequenceLength(text, i);
            if (length == 0 || isNonCharacter(text, i, length)) {
                out += kReplacement;
                i += length == 0 ? 1 : length;
            } else {
                out.append(text, i, length);
                i += length;
            }
            continue;
        }
        switch (byte) {
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&#39;";
            break;
        default:
            // XML 1.0 allows no control characters in text but tab and line feed (a carriage
            // return would be read back as a line feed).
            if (byte < 0x20 && byte != '\t' && byte != '\n')
                out += kReplacement;
            else
                out += static_cast<char>(byte);
        }
        ++i;
    }
    return out;
}

} // namespace lxconfig
