#include "recorddifference.h"

#include "fieldtext.h"

#include <algorithm>

namespace lxconfig {

namespace {

// The bytes from offset on, width of them, are the same in both records.
bool sameBytes(const lumarex::ConfigRecord &a, const lumarex::ConfigRecord &b, int offset,
               int width)
{
    const auto first = a.bytes().begin() + offset;
    return std::equal(first, first + width, b.bytes().begin() + offset);
}

} // namespace

std::string elementName(const lumarex::FieldInfo &info, int element)
{
    const std::string name = info.name;
    return info.elementCount() == 1 ? name : name + '[' + std::to_string(element) + ']';
}

bool sameElement(const lumarex::ConfigRecord &a, const lumarex::ConfigRecord &b,
                 const lumarex::FieldInfo &info, int element)
{
    return sameBytes(a, b, info.offset + element * info.elementWidth(), info.elementWidth());
}

bool sameField(const lumarex::ConfigRecord &a, const lumarex::ConfigRecord &b,
               const lumarex::FieldInfo &info)
{
    return sameBytes(a, b, info.offset, info.width);
}

std::vector<ElementDifference> recordDifferences(const lumarex::ConfigRecord &a,
                                                 const lumarex::ConfigRecord &b)
{
    std::vector<ElementDifference> differences;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        for (int element = 0; element < info.elementCount(); ++element) {
            if (!sameElement(a, b, info, element))
                differences.push_back({&info, element});
        }
    }
    return differences;
}

std::string differenceLine(const lumarex::ConfigRecord &a, const lumarex::ConfigRecord &b,
                           const ElementDifference &difference)
{
    const lumarex::FieldInfo &info = *difference.info;
    return elementName(info, difference.element) + ": " + elementText(a, info, difference.element) +
           " -> " + elementText(b, info, difference.element);
}

} // namespace lxconfig
