// Differential: lxconfig's JSON reader against a strict reference reading of the same bytes.
// The reference is nlohmann-json's own DOM parser over the whole input, with no NUL byte
// allowed anywhere (JSON has none, not even in a string; the parser would take one for the end
// of the input), a key given twice in one object refused, and lxconfig's nesting limit. Any
// text that one accepts and the other refuses, or that the two read as different documents, is
// a finding: the input is printed and the target aborts.

#include "jsonsyntax.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Json = lxconfig::JsonValue;

std::optional<Json> referenceReading(std::string_view text)
{
    if (text.find('\0') != std::string_view::npos)
        return std::nullopt;
    bool refused = false;
    std::vector<std::set<std::string>> keys; // the keys seen in each open object
    std::size_t open = 0;
    const auto callback = [&](int, Json::parse_event_t event, Json &parsed) {
        switch (event) {
        case Json::parse_event_t::object_start:
        case Json::parse_event_t::array_start:
            if (open == lxconfig::kMaxJsonNesting)
                refused = true;
            ++open;
            if (event == Json::parse_event_t::object_start)
                keys.emplace_back();
            break;
        case Json::parse_event_t::object_end:
            keys.pop_back();
            --open;
            break;
        case Json::parse_event_t::array_end:
            --open;
            break;
        case Json::parse_event_t::key:
            if (!keys.back().insert(parsed.get<std::string>()).second)
                refused = true;
            break;
        case Json::parse_event_t::value:
            break;
        }
        return true;
    };
    Json document = Json::parse(text.begin(), text.end(), callback, /*allow_exceptions=*/false);
    if (refused || document.is_discarded())
        return std::nullopt;
    return document;
}

[[noreturn]] void finding(const char *what, std::string_view text, const std::string &reason)
{
    std::fprintf(stderr, "json differential: %s (lxconfig: %s)\ninput:", what, reason.c_str());
    for (const char c : text)
        std::fprintf(stderr, " %02x", static_cast<unsigned char>(c));
    std::fputc('\n', stderr);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    const lxconfig::Result<Json> parsed = lxconfig::parseJson(text);
    const std::optional<std::string> problem =
        parsed ? std::nullopt : std::optional<std::string>(parsed.failure().reason);
    const Json read = parsed ? *parsed : Json();
    const std::optional<Json> reference = referenceReading(text);
    if (problem && reference)
        finding("lxconfig refuses what the reference reads", text, *problem);
    if (!problem && !reference)
        finding("lxconfig reads what the reference refuses", text, "read");
    if (!problem && read != *reference)
        finding("the two read different documents", text, "read");
    if (problem && problem->empty())
        finding("a refusal without a reason", text, "");
    return 0;
}
