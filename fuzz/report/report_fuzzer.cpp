// lxconfig's settings sheet for any file name and any record. The first input byte is the
// length of the name, the name follows, the rest is the file. The page must be text an XML
// reader accepts whatever the name holds, and a name that is already such text must come back
// unchanged from its escaped form.

#include "htmlreport.h"
#include "recordfile.h"
#include "xmltext.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// Whether the bytes are UTF-8 and every character is one XML 1.0 allows. Written apart from
// the escaping on purpose: it decodes first and judges the code point after.
bool isXmlText(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80   ? 1
                                   : lead < 0xC0 ? 0
                                   : lead < 0xE0 ? 2
                                   : lead < 0xF0 ? 3
                                   : lead < 0xF8 ? 4
                                                 : 0;
        if (length == 0 || i + length > text.size())
            return false;
        std::uint32_t code = length == 1 ? lead : lead & (0x7Fu >> length);
        for (std::size_t k = 1; k < length; ++k) {
            const auto byte = static_cast<unsigned char>(text[i + k]);
            if ((byte & 0xC0) != 0x80)
                return false;
            code = (code << 6) | (byte & 0x3Fu);
        }
        const std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (code < smallest[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF) ||
            code == 0xFFFE || code == 0xFFFF ||
            (code < 0x20 && code != 9 && code != 10 && code != 13))
            return false;
        i += length;
    }
    return true;
}

// The text an XML reader gives back for escaped text: only the entities the escaping writes.
std::string unescaped(std::string_view text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        require(text[i] != '<' && text[i] != '>' && text[i] != '"' && text[i] != '\'');
        if (text[i] != '&') {
            out += text[i];
            continue;
        }
        bool known = false;
        for (const auto &[entity, character] : {std::pair{"&lt;", '<'},
                                                {"&gt;", '>'},
                                                {"&amp;", '&'},
                                                {"&quot;", '"'},
                                                {"&#39;", '\''}}) {
            if (text.substr(i).rfind(entity, 0) == 0) {
                out += character;
                i += std::string_view(entity).size() - 1;
                known = true;
                break;
            }
        }
        require(known);
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::size_t nameLength = std::min<std::size_t>(data[0], size - 1);
    const std::string name(reinterpret_cast<const char *>(data + 1), nameLength);
    const std::string bytes(reinterpret_cast<const char *>(data + 1 + nameLength),
                            size - 1 - nameLength);

    const std::string escaped = lxconfig::xmlEscaped(name);
    require(isXmlText(escaped));
    const std::string back = unescaped(escaped);
    // A carriage return is the one character XML allows that a reader gives back otherwise.
    if (isXmlText(name) && name.find('\r') == std::string::npos)
        require(back == name);

    lxconfig::ReportedFile file;
    file.path = name;
    const lxconfig::RecordFile read = lxconfig::recordFileOf(bytes, bytes.size());
    file.record = read.record;
    file.refusal = read.refusal;
    file.sizeNote = read.sizeNote;
    lxconfig::ReportedFile unreadable;
    unreadable.path = name;
    unreadable.unreadable = name;
    // The name as the file's and as the camera's, so that it is in the style sheet's headers too.
    lxconfig::SheetOptions options;
    options.title = name;
    const std::string page =
        lxconfig::reportHead({name, name}, options) + lxconfig::reportSection(file, 0, options) +
        lxconfig::reportSection(unreadable, 1, options) + lxconfig::reportTail();
    require(isXmlText(page));
    require(page.find("-name\">" + escaped + "</h1>") != std::string::npos);
    // The style sheet reads the same as HTML and as XML: nothing in it to end or escape.
    const std::size_t styleStart = page.find("<style>") + 7;
    const std::string style = page.substr(styleStart, page.find("</style>") - styleStart);
    require(style.find_first_of("<&") == std::string::npos);
    return 0;
}
