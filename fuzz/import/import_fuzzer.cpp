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
    const lxconfig::Result<lumarex::ConfigRecord> record = lxconfig::recordFromJson(json);
    if (!record) {
        require(!record.failure().reason.empty());
        return 0;
    }
    // Import bounds every number by its field, so whatever it accepted can be exported.
    const lxconfig::Result<std::string> exported = lxconfig::recordToJson(*record);
    require(static_cast<bool>(exported));
    const lxconfig::Result<lumarex::ConfigRecord> again = lxconfig::recordFromJson(*exported);
    require(again && *again == *record);
    return 0;
}
