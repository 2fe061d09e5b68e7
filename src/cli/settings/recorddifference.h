#pragma once

// Where two records differ, element by element in file order, and how set and apply name such
// a difference: "triggerLow[4]: 700 -> 688", each value as show prints it. diff, set and apply
// all print their differences through it.

#include "configrecord.h"

#include <string>
#include <vector>

namespace lxconfig {

struct ElementDifference
{
    const lumarex::FieldInfo *info;
    int element; // 0 for a field of one element
};

// Whether the element, or the whole field, holds the same bytes in both records.
bool sameElement(const lumarex::ConfigRecord &a, const lumarex::ConfigRecord &b,
                 const lumarex::FieldInfo &info, int element);
bool sameField(const lumarex::ConfigRecord &a, const lumarex::ConfigRecord &b,
               const lumarex::FieldInfo &info);

std::vector<ElementDifference> recordDifferences(const lumarex::ConfigRecord &a,
                                                 const lumarex::ConfigRecord &b);

// "serialBaudrate", "triggerLow[4]": an element as diff, set and apply name it.
std::string elementName(const lumarex::FieldInfo &info, int element);

// "name: A -> B", without a newline.
std::string differenceLine(const lumarex::ConfigRecord &a, const lumarex::ConfigRecord &b,
                           const ElementDifference &difference);

} // namespace lxconfig
