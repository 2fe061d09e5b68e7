#include "jsonsyntax.h"

#include "messagetext.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace lxconfig {

namespace {

class DocumentBuilder : public nlohmann::json_sax<JsonValue>
{
public:
    DocumentBuilder(JsonValue &root, std::string_view text) : m_root(root), m_text(text) {}

    std::optional<std::string> problem;

    bool null() override { return put(nullptr) != nullptr; }
    bool boolean(bool value) override { return put(value) != nullptr; }
    bool number_integer(number_integer_t value) override { return put(value) != nullptr; }
    bool number_unsigned(number_unsigned_t value) override { return put(value) != nullptr; }
    bool number_float(number_float_t value, const string_t &) override
    {
        return put(value) != nullptr;
    }
    bool string(string_t &value) override { return put(value) != nullptr; }
    bool binary(binary_t &value) override { return put(JsonValue::binary(value)) != nullptr; }
    bool start_object(std::size_t) override { return open(JsonValue::object()); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(JsonValue::array()); }
    bool end_array() override { return close(); }

    bool key(string_t &name) override
    {
        if (m_open.back()->contains(name)) {
            problem = escapedForMessage(name) + ": duplicate key";
            return false;
        }
        m_key = name;
        return true;
    }

    bool parse_error(std::size_t position, const std::string &lastToken,
                     const nlohmann::detail::exception &exception) override
    {
        const std::string what = exception.what();
        const std::size_t start = tokenStart(position, lastToken, what);
        // The parser takes a NUL byte for the end of the input; the text goes on past it.
        const bool atNul = start < m_text.size() && m_text[start] == '\0';
        problem = "malformed JSON: " + (atNul ? "illegal value" : describe(what, lastToken)) +
                  " at offset " + std::to_string(start);
        return false;
    }

private:
    JsonValue *put(JsonValue value)
    {
        if (m_open.empty()) {
            m_root = std::move(value);
            return &m_root;
        }
        JsonValue &container = *m_open.back();
        if (container.is_array()) {
            container.push_back(std::move(value));
            return &container.back();
        }
        return &(container[m_key] = std::move(value));
    }

    bool open(JsonValue container)
    {
        if (m_open.size() == kMaxJsonNesting) {
            problem = "malformed JSON: too deeply nested document";
            return false;
        }
        m_open.push_back(put(std::move(container)));
        return true;
    }

    bool close()
    {
        m_open.pop_back();
        return true;
    }

    // The parser's complaint in the words of the messages lxconfig has always given.
    std::string describe(const std::string &what, const std::string &lastToken) const
    {
        const auto has = [&what](const char *text) { return what.find(text) != std::string::npos; };
        const bool inObject = !m_open.empty() && m_open.back()->is_object();
        const bool inArray = !m_open.empty() && m_open.back()->is_array();
        if (has("expected end of input") && !has("unexpected end of input"))
            return "garbage at the end of the document";
        if (has("invalid string")) {
            if (has("missing closing quote"))
                return "unterminated string";
            if (has("escape") || has("backslash") || has("\\u"))
                return "invalid escape sequence";
            if (has("UTF-8"))
                return "invalid UTF8 string";
            return "illegal value";
        }
        if (has("invalid number") || has("number overflow"))
            return "illegal number";
        if (has("invalid literal")) {
            const bool numeric =
                !lastToken.empty() &&
                (lastToken[0] == '-' || (lastToken[0] >= '0' && lastToken[0] <= '9'));
            return numeric ? "illegal number" : "illegal value";
        }
        if (has("unexpected end of input"))
            return inObject  ? "unterminated object"
                   : inArray ? "unterminated array"
                             : "illegal value";
        if (has("while parsing object key"))
            return has("unexpected '}'") ? "object is missing after a comma" : "illegal value";
        if (has("while parsing object separator"))
            return "missing name separator";
        if (has("while parsing object"))
            return "unterminated object";
        if (has("while parsing array"))
            return has("unexpected '}'") ? "object is missing after a comma"
                                         : "missing value separator";
        return "illegal value";
    }

    // The first byte of the token the parser stopped at. The parser reports the position after
    // the last byte it read (one past the end when it read the end) and the bytes it read since
    // the start of the last string or number, with control characters written as <U+00XX>.
    std::size_t tokenStart(std::size_t position, const std::string &lastToken,
                           const std::string &what) const
    {
        const std::size_t end = std::min(position, m_text.size());
        const auto has = [&what](const char *text) { return what.find(text) != std::string::npos; };
        const char last = end > 0 && position <= m_text.size() ? m_text[end - 1] : '\0';
        const bool stringOrNumber =
            has("invalid string") || has("invalid number") || has("number overflow") ||
            (position <= m_text.size() && (last == '"' || (last >= '0' && last <= '9')) &&
             !lastToken.empty() &&
             (lastToken[0] == '"' || lastToken[0] == '-' ||
              (lastToken[0] >= '0' && lastToken[0] <= '9')));
        if (stringOrNumber) {
            // lastToken is the string or number itself: walk back over the bytes that read as it.
            std::size_t start = end;
            std::size_t matched = 0; // characters of lastToken, from its end
            while (start > 0 && matched < lastToken.size()) {
                const std::string read = asRead(m_text.substr(start - 1, 1));
                if (read.size() > lastToken.size() - matched ||
                    lastToken.compare(lastToken.size() - matched - read.size(), read.size(),
                                      read) != 0)
                    break;
                matched += read.size();
                --start;
            }
            if (matched == lastToken.size())
                return start;
        }
        if (position > m_text.size() || end == 0)
            return end;
        // A literal (true, false, null), or the letters read of one, ends at the last byte read;
        // anything else is that one byte.
        std::size_t start = end - 1;
        while (start > 0 && m_text[start - 1] >= 'a' && m_text[start - 1] <= 'z')
            --start;
        return start;
    }

    static std::string asRead(std::string_view bytes)
    {
        std::string read;
        for (const char c : bytes) {
            if (static_cast<unsigned char>(c) <= 0x1F) {
                char escaped[9];
                std::snprintf(escaped, sizeof escaped, "<U+%.4X>", static_cast<unsigned char>(c));
                read += escaped;
            } else {
                read += c;
            }
        }
        return read;
    }

    JsonValue &m_root;
    std::string_view m_text;
    std::vector<JsonValue *> m_open; // the objects and arrays being filled, innermost last
    std::string m_key;               // the key of the next value in an object
};

} // namespace

Result<JsonValue> parseJson(std::string_view text)
{
    JsonValue document;
    DocumentBuilder builder(document, text);
    if (!JsonValue::sax_parse(text.begin(), text.end(), &builder))
        return Failure{{}, builder.problem.value_or("malformed JSON")};
    // The parser ends the text at a NUL byte outside a string; the whole text must be the value.
    const std::size_t nul = text.find('\0');
    if (nul != std::string_view::npos)
        return Failure{{},
                       "malformed JSON: garbage at the end of the document at offset " +
                           std::to_string(nul)};
    return document;
}

} // namespace lxconfig
