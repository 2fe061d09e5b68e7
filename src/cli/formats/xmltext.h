#pragma once

// Text for an XML (XHTML) page, and for the style sheet in it, from bytes that may be anything,
// such as a file name.

#include <string>

namespace lxconfig {

// The text with the five XML specials escaped and everything XML 1.0 does not allow replaced
// by U+FFFD: bytes that are not well-formed UTF-8 (stray continuation bytes, overlong forms,
// surrogates, code points past U+10FFFF, cut-off sequences), control characters other than tab
// and line feed, and the non-characters U+FFFE and U+FFFF. Each such byte or character is
// replaced by one U+FFFD, so the page stays well-formed and every other character is kept.
std::string xmlEscaped(const std::string &text);

// The text as a quoted CSS string ("...") for the page's style sheet, with the same
// replacements as xmlEscaped; every ASCII character but letters, digits, space and "._-/" is
// written as a CSS escape, so the string is the same read as HTML or as XML and can never end
// the style element or the string.
std::string cssString(const std::string &text);

} // namespace lxconfig
