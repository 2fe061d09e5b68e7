// lxconfig's JSON import on arbitrary text. A form it accepts must describe a record that
// exports and imports back unchanged; a form it refuses must come with a reason.

#include "jsonform.h"

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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view json(reinterpret_cast<const char *>(data), size);
    std::string error;
    const std::optional<lumarex::ConfigRecord> record = lxconfig::recordFromJson(json, error);
    if (!record) {
        require(!error.empty());
        return 0;
    }
    // Import bounds every number by its field, so whatever it accepted can be exported.
    const std::optional<std::string> exported = lxconfig::recordToJson(*record, error);
    require(exported.has_value());
    const std::optional<lumarex::ConfigRecord> again = lxconfig::recordFromJson(*exported, error);
    require(again.has_value() && *again == *record);
    return 0;
}
