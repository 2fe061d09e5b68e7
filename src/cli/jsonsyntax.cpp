#include "jsonsyntax.h"

#include <algorithm>
#include <vector>

namespace lxconfig {

namespace {

// Deeper than any form, and shallow enough that no document costs much to build or free.
constexpr std::size_t kMaxNesting = 1024;

class DocumentBuilder : public nlohmann::json_sax<JsonValue>
{
public:
    DocumentBuilder(JsonValue &root, std::size_t size) : m_root(root), m_size(size) {}

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
            problem = name + ": duplicate key";
            return false;
        }
        m_key = name;
        return true;
    }

    bool parse_error(std::size_t position, const std::string &lastToken,
                     const nlohmann::detail::exception &exception) override
    {
        // The parser counts the end of the input as one more byte read.
        problem = "malformed JSON: " + describe(exception.what(), lastToken) + " at offset " +
                  std::to_string(std::min(position, m_size));
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
        if (m_open.size() == kMaxNesting) {
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

    JsonValue &m_root;
    std::size_t m_size;
    std::vector<JsonValue *> m_open; // the objects and arrays being filled, innermost last
    std::string m_key;               // the key of the next value in an object
};

} // namespace

std::optional<std::string> parseJson(std::string_view text, JsonValue &document)
{
    DocumentBuilder builder(document, text.size());
    if (JsonValue::sax_parse(text.begin(), text.end(), &builder))
        return std::nullopt;
    return builder.problem.value_or("malformed JSON");
}

} // namespace lxconfig
