#include "recorddifference.h"

#include "fieldtext.h"

#include <algorithm>

namespace lxconfig {

namespace {

bool sameElement(const lumarex::ConfigRecord &a, const lumarex::ConfigRecord &b,
                 const lumarex::FieldInfo &info, int element)
{
    const int offset = info.offset + element * info.elementWidth();
    const auto first = a.bytes().begin() + offset;
    return std::equal(first, first + info.elementWidth(), b.bytes().begin() + offset);
}

} // namespace

std::string elementName(const lumarex::FieldInfo &info, int element)
{
    const std::string name = info.name;
    return info.elementCount() == 1 ? name : name + '[' + std::to_string(element) + ']';
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
