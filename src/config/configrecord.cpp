#include "configrecord.h"

#include "crc16.h"

#include <algorithm>

namespace lumarex {

namespace {

using T = FieldType;

constexpr std::array<FieldInfo, kFieldCount> kFields = {{
    {Field::magic, "magic", 0, 4, T::Ascii4},
    {Field::payloadLength, "payloadLength", 4, 4, T::U32},
    {Field::headerVersion, "headerVersion", 8, 4, T::U32},
    {Field::triggerLow, "triggerLow", 12, 40, T::U16x20},
    {Field::triggerHigh, "triggerHigh", 52, 40, T::U16x20},
    {Field::ext0Mode, "ext0Mode", 92, 1, T::U8},
    {Field::ext1Mode, "ext1Mode", 93, 1, T::U8},
    {Field::frameSkip, "frameSkip", 94, 4, T::U32},
    {Field::triggerPinMode, "triggerPinMode", 98, 1, T::U8},
    {Field::triggerFfcMode, "triggerFfcMode", 99, 1, T::U8},
    {Field::triggerFrameMode, "triggerFrameMode", 100, 1, T::U8},
    {Field::reserved101, "reserved101", 101, 1, T::U8},
    {Field::overlayMode, "overlayMode", 102, 1, T::U8},
    {Field::isothermState, "isothermState", 103, 1, T::U8},
    {Field::isothermSwitchMode, "isothermSwitchMode", 104, 1, T::U8},
    {Field::isothermLower, "isothermLower", 105, 2, T::U16},
    {Field::isothermMiddle, "isothermMiddle", 107, 2, T::U16},
    {Field::isothermUpper, "isothermUpper", 109, 2, T::U16},
    {Field::gimbalRc, "gimbalRc", 111, 1, T::U8},
    {Field::gpsReceiver, "gpsReceiver", 112, 1, T::U8},
    {Field::externalShutter, "externalShutter", 113, 1, T::U8},
    {Field::esoHeating, "esoHeating", 114, 4, T::I32},
    {Field::esoHeatcycle, "esoHeatcycle", 118, 4, T::I32},
    {Field::esoOffset, "esoOffset", 122, 4, T::I32},
    {Field::esoShutterInterval, "esoShutterInterval", 126, 4, T::I32},
    {Field::esoOpt5, "esoOpt5", 130, 4, T::I32},
    {Field::fixed134, "fixed134", 134, 8, T::Bytes8},
    {Field::recMaxFramesPerFile, "recMaxFramesPerFile", 142, 4, T::I32},
    {Field::sbusColormap, "sbusColormap", 146, 1, T::U8},
    {Field::sbusColorMapSwitchMode, "sbusColorMapSwitchMode", 147, 1, T::U8},
    {Field::sbusFfc, "sbusFfc", 148, 1, T::U8},
    {Field::sbusIsotherms, "sbusIsotherms", 149, 1, T::U8},
    {Field::sbusIsoLow, "sbusIsoLow", 150, 1, T::U8},
    {Field::sbusIsoMid, "sbusIsoMid", 151, 1, T::U8},
    {Field::sbusIsoUp, "sbusIsoUp", 152, 1, T::U8},
    {Field::sbusOverlay, "sbusOverlay", 153, 1, T::U8},
    {Field::sbusTrigger, "sbusTrigger", 154, 1, T::U8},
    {Field::sbusZoom, "sbusZoom", 155, 1, T::U8},
    {Field::sbusZoomMode, "sbusZoomMode", 156, 1, T::U8},
    {Field::spare157, "spare157", 157, 1, T::U8},
    {Field::serialBaudrate, "serialBaudrate", 158, 4, T::U32},
    {Field::serialParity, "serialParity", 162, 1, T::U8},
    {Field::serialStopBits, "serialStopBits", 163, 1, T::U8},
    {Field::serialInverted, "serialInverted", 164, 1, T::U8},
    {Field::crc, "crc", 165, 2, T::U16},
}};

// Little-endian bytes of one element, at most eight; unaligned offsets rule out casting.
std::uint64_t readLittleEndian(const RecordBytes &bytes, int offset, int width)
{
    std::uint64_t value = 0;
    for (int i = width - 1; i >= 0; --i)
        value = (value << 8) | bytes[static_cast<std::size_t>(offset + i)];
    return value;
}

void writeLittleEndian(RecordBytes &bytes, int offset, int width, std::uint64_t value)
{
    for (int i = 0; i < width; ++i) {
        bytes[static_cast<std::size_t>(offset + i)] = static_cast<std::uint8_t>(value);
        value >>= 8;
    }
}

// An element outside the field reads as 0 and is never written, so a bad index cannot reach
// a neighbouring field or run past the record.
std::uint64_t loadElement(const RecordBytes &bytes, const FieldInfo &info, int element,
                          int maxWidth)
{
    if (element < 0 || element >= info.elementCount())
        return 0;
    const int width = std::min(info.elementWidth(), maxWidth);
    return readLittleEndian(bytes, info.offset + element * info.elementWidth(), width);
}

void storeElement(RecordBytes &bytes, const FieldInfo &info, int element, std::uint64_t value)
{
    if (element < 0 || element >= info.elementCount())
        return;
    writeLittleEndian(bytes, info.offset + element * info.elementWidth(), info.elementWidth(),
                      value);
}

} // namespace

const std::array<FieldInfo, kFieldCount> &fieldTable()
{
    return kFields;
}

const FieldInfo &fieldInfo(Field field)
{
    return kFields[static_cast<std::size_t>(field)];
}

std::optional<Field> fieldByName(std::string_view name)
{
    const auto it = std::find_if(kFields.begin(), kFields.end(),
                                 [name](const FieldInfo &info) { return info.name == name; });
    if (it == kFields.end())
        return std::nullopt;
    return it->field;
}

ConfigRecord ConfigRecord::fromBytes(const std::uint8_t *data, std::size_t size)
{
    ConfigRecord record;
    std::copy_n(data, std::min<std::size_t>(size, kRecordSize), record.m_bytes.begin());
    return record;
}

std::uint32_t ConfigRecord::value(Field field, int element) const
{
    return static_cast<std::uint32_t>(loadElement(m_bytes, fieldInfo(field), element, 4));
}

std::int32_t ConfigRecord::signedValue(Field field, int element) const
{
    const int bits = std::min(fieldInfo(field).elementWidth(), 4) * 8;
    const std::uint32_t raw = value(field, element);
    if (bits == 32)
        return static_cast<std::int32_t>(raw);
    // Sign-extend from the element's width.
    const std::uint32_t signBit = 1U << (bits - 1);
    return static_cast<std::int32_t>(raw ^ signBit) - static_cast<std::int32_t>(signBit);
}

std::uint64_t ConfigRecord::value64(Field field) const
{
    return loadElement(m_bytes, fieldInfo(field), 0, 8);
}

void ConfigRecord::setValue(Field field, std::uint32_t value, int element)
{
    storeElement(m_bytes, fieldInfo(field), element, value);
}

void ConfigRecord::setValue64(Field field, std::uint64_t value)
{
    storeElement(m_bytes, fieldInfo(field), 0, value);
}

void ConfigRecord::writeHeader()
{
    std::copy(kMagic.begin(), kMagic.end(), m_bytes.begin());
    setValue(Field::payloadLength, kPayloadLength);
    setValue(Field::headerVersion, kFormatVersion);
}

void ConfigRecord::seal()
{
    writeHeader();
    setValue(Field::reserved101, 0);
    setValue64(Field::fixed134, kFixed134);
    setValue(Field::crc, computedChecksum());
}

bool ConfigRecord::hasMagic() const
{
    return std::equal(kMagic.begin(), kMagic.end(), m_bytes.begin());
}

std::uint16_t ConfigRecord::computedChecksum() const
{
    return crc16(m_bytes.data(), kChecksummedSize);
}

} // namespace lumarex
