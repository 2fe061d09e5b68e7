// Runs the model of the editor's load and save on arbitrary bytes, as `lxconfig check --strict`
// and `lxconfig resave` do, and asserts what must hold for any file: a file the editor accepts
// gives a saved file the editor accepts too, and the strict findings are empty exactly when
// that saved file is the file itself. The input also goes to explain as a name.

#include "configrecord.h"
#include "editorverdict.h"
#include "explain.h"
#include "roundtrip.h"

#include <cstdlib>
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
    lumarex::ConfigRecord record = lumarex::ConfigRecord::fromBytes(data, size);
    // Most inputs would fail the checksum and never reach the model: an odd first byte asks for
    // the header and checksum to be made right, so every field's values get through.
    if (size > 0 && (data[0] & 1))
        record.seal();

    const auto prediction = lumarex::roundtrip::predictResave(record.bytes());
    require(prediction.accepted() ==
            (lumarex::editorVerdict(record) == lumarex::Verdict::Accepted));
    const auto findings = lumarex::roundtrip::strictFindings(record.bytes());
    if (!prediction.accepted()) {
        require(!prediction.refusal.empty());
        require(findings.empty());
    } else {
        const auto saved =
            lumarex::ConfigRecord::fromBytes(prediction.bytes.data(), prediction.bytes.size());
        require(lumarex::editorVerdict(saved) == lumarex::Verdict::Accepted);
        require(findings.empty() == (prediction.bytes == record.bytes()));
        for (const auto &finding : findings)
            require(!finding.text().empty());
    }

    const std::string_view name(reinterpret_cast<const char *>(data), size < 64 ? size : 64);
    const auto explanation = lxconfig::explain(name);
    require(explanation.found == !explanation.lines.empty());
    return 0;
}
