#pragma once

// The editor's item lists, one per combo box, with the field each box feeds. The texts come
// from the table generated from the editor's form (lumarex::formControls()).

#include "configrecord.h"

#include <optional>
#include <string>
#include <vector>

namespace lxconfig {

// How a stored value picks its item.
enum class ItemLookup
{
    Index,       // the value is the item's index
    Ext0Code,    // a device mode code of extension port 0
    Ext1Code,    // a device mode code of extension port 1
    MatchedText, // the value in decimal is the item's text (baud rate, stop bits)
};

struct ItemList
{
    lumarex::Field field;
    const char *comboName; // the editor's object name of the box (NUL-terminated)
    ItemLookup lookup;
    std::vector<std::string> items; // UTF-8
};

const std::vector<ItemList> &itemLists();
const ItemList *itemListOf(lumarex::Field field);

// The item the editor shows for the stored value, or nothing when no item fits.
std::optional<std::string> itemText(const ItemList &list, std::uint32_t value);

} // namespace lxconfig
