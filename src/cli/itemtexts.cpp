#include "itemtexts.h"

#include "conversions.h"

#include <algorithm>

namespace lxconfig {

using lumarex::Field;

namespace {

// "Channel 1" to "Channel 16", then "Deactivated": channel n is index n - 1.
std::vector<std::string> channelList()
{
    std::vector<std::string> items;
    for (int channel = 1; channel <= 16; ++channel)
        items.push_back("Channel " + std::to_string(channel));
    items.push_back("Deactivated");
    return items;
}

std::vector<ItemList> buildItemLists()
{
    const std::vector<std::string> channels = channelList();
    const std::vector<std::string> sbusSwitchModes = {"high/low (default)", "absolute"};
    const auto index = ItemLookup::Index;
    return {
        {Field::gpsReceiver,
         "cbPeripheryGPS",
         index,
         {"Custom settings", "Lumarex GPS Receiver - based on u-blox 6 SuperSense\u00AE chipset",
          "Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT chipset",
          "Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS UBX-M8030-KT chipset"}},
        {Field::triggerPinMode,
         "cbTriggerPinMode",
         index,
         {"ON/OFF", "SBUS", "Serial input", "PWM (normal)", "PWM (inverted)", "PPM"}},
        {Field::triggerFfcMode,
         "cbTriggerFFCMode",
         index,
         {"no additional FFC (default)", "additional FFC on trigger start"}},
        {Field::triggerFrameMode,
         "cbTriggerFrameMode",
         index,
         {"Ongoing stream (default)", "Single frame capture"}},
        {Field::serialBaudrate,
         "cbBaudrate",
         ItemLookup::MatchedText,
         {"1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200", "230400", "460800",
          "921600"}},
        {Field::serialParity, "cbParity", index, {"none", "odd", "even"}},
        {Field::serialStopBits, "cbStopBit", ItemLookup::MatchedText, {"1", "2"}},
        {Field::sbusColormap, "cbSbusColormap", index, channels},
        {Field::sbusColorMapSwitchMode, "cbSbusColorMapSwitchMode", index, sbusSwitchModes},
        {Field::sbusFfc, "cbSbusFFC", index, channels},
        {Field::sbusIsotherms, "cbSbusIsotherms", index, channels},
        {Field::sbusIsoLow, "cbSbusIsoLow", index, channels},
        {Field::sbusIsoMid, "cbSbusIsoMid", index, channels},
        {Field::sbusIsoUp, "cbSbusIsoUp", index, channels},
        {Field::sbusOverlay, "cbSbusOverlay", index, channels},
        {Field::sbusTrigger, "cbSbusTrigger", index, channels},
        {Field::sbusZoom, "cbSbusZoom", index, channels},
        {Field::sbusZoomMode, "cbSbusZoomMode", index, sbusSwitchModes},
        {Field::ext0Mode,
         "cBext0mode",
         ItemLookup::Ext0Code,
         {"None (default)", "do FFC (automatic FFC is off)", "External Shutter RX/TX"}},
        {Field::ext1Mode,
         "cBext1mode",
         ItemLookup::Ext1Code,
         {"None (default)", "External Sync", "External Shutter RX/TX"}},
        {Field::isothermState, "cbIsothermsState", index, {"OFF (default)", "ON"}},
        // The Isotherms page says "absolute values" where the SBUS/PPM page says "absolute".
        {Field::isothermSwitchMode,
         "cbIsothermSwitchMode",
         index,
         {"high/low (default)", "absolute values"}},
        {Field::overlayMode, "cBOverlayMode", index, {"OFF", "ON"}},
    };
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
        const auto it = std::find(list.items.begin(), list.items.end(), std::to_string(value));
        return it == list.items.end() ? -1 : static_cast<int>(it - list.items.begin());
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
    if (!index || *index < 0 || *index >= static_cast<int>(list.items.size()))
        return std::nullopt;
    return list.items.at(static_cast<std::size_t>(*index));
}

} // namespace lxconfig
