#include "itemtexts.h"

#include "conversions.h"
#include "formfields.h"

#include <algorithm>

namespace lxconfig {

using lumarex::Field;

namespace {

// How the save command stores a combo box's state decides how a stored value finds its item.
std::optional<ItemLookup> lookupFor(lumarex::Stored stored)
{
    switch (stored) {
    case lumarex::Stored::ItemIndex:
        return ItemLookup::Index;
    case lumarex::Stored::Ext0Code:
        return ItemLookup::Ext0Code;
    case lumarex::Stored::Ext1Code:
        return ItemLookup::Ext1Code;
    case lumarex::Stored::ItemNumber:
        return ItemLookup::MatchedText;
    default:
        return std::nullopt;
    }
}

// One list per combo box of the form, with its texts as the form gives them.
std::vector<ItemList> buildItemLists()
{
    std::vector<ItemList> lists;
    const lumarex::FormField *fields = lumarex::formFields();
    for (std::size_t i = 0; i < lumarex::formFieldCount(); ++i) {
        const std::optional<ItemLookup> lookup = lookupFor(fields[i].stored);
        const lumarex::ControlFacts *control = lumarex::findControl(fields[i].control);
        if (!lookup || !control)
            continue;
        std::vector<std::string> items;
        for (const std::string_view item : control->items())
            items.emplace_back(item);
        lists.push_back({fields[i].field, control->objectName.data(), *lookup, items});
    }
    return lists;
}

std::optional<int> itemIndex(const ItemList &list, std::uint32_t value)
{
    switch (list.lookup) {
    case ItemLookup::Index:
        return static_cast<int>(value);
    case ItemLookup::Ext0Code:
        return lumarex::ext0ModeIndex(static_cast<std::uint8_t>(value));
    case ItemLookup::Ext1Code:
        return lumarex::ext1ModeIndex(static_cast<std::uint8_t>(value));
    case ItemLookup::MatchedText: {
        const auto found = std::find(list.items.begin(), list.items.end(), std::to_string(value));
        return found == list.items.end() ? -1 : static_cast<int>(found - list.items.begin());
    }
    }
    return std::nullopt;
}

} // namespace

const std::vector<ItemList> &itemLists()
{
    static const std::vector<ItemList> lists = buildItemLists();
    return lists;
}

const ItemList *itemListOf(Field field)
{
    const std::vector<ItemList> &lists = itemLists();
    const auto it = std::find_if(lists.begin(), lists.end(),
                                 [field](const ItemList &list) { return list.field == field; });
    return it == lists.end() ? nullptr : &*it;
}

std::optional<std::string> itemText(const ItemList &list, std::uint32_t value)
{
    const std::optional<int> index = itemIndex(list, value);
    if (!index || *index < 0 || static_cast<std::size_t>(*index) >= list.items.size())
        return std::nullopt;
    return list.items.at(*index);
}

} // namespace lxconfig
