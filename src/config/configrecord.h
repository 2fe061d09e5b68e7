#pragma once

// The 167-byte configuration image that the camera reads from LXCONFIG.BIN.
//
// Every field's name, offset, width and type lives in the one table returned by fieldTable();
// the editor's save and load commands, the command-line tool and the tests all go through it.
// Multi-byte values are little-endian at unaligned offsets and are written byte by byte.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace lumarex {

inline constexpr int kRecordSize = 167;
inline constexpr int kChecksummedSize = 165; // bytes 0..164 are covered by the CRC
inline constexpr std::array<std::uint8_t, 4> kMagic = {'C', 'O', 'N', 'F'};
inline constexpr std::uint32_t kPayloadLength = kChecksummedSize - 12;
inline constexpr std::uint32_t kFormatVersion = 20180601;
inline constexpr std::uint64_t kFixed134 = 0x40000000; // a constant of the format
inline constexpr int kTriggerSlots = 20; // fixed by the format, not by the trigger channel list

enum class Field
{
    magic,
    payloadLength,
    headerVersion,
    triggerLow,
    triggerHigh,
    ext0Mode,
    ext1Mode,
    frameSkip,
    triggerPinMode,
    triggerFfcMode,
    triggerFrameMode,
    reserved101,
    overlayMode,
    isothermState,
    isothermSwitchMode,
    isothermLower,
    isothermMiddle,
    isothermUpper,
    gimbalRc,
    gpsReceiver,
    externalShutter,
    esoHeating,
    esoHeatcycle,
    esoOffset,
    esoShutterInterval,
    esoOpt5,
    fixed134,
    recMaxFramesPerFile,
    sbusColormap,
    sbusColorMapSwitchMode,
    sbusFfc,
    sbusIsotherms,
    sbusIsoLow,
    sbusIsoMid,
    sbusIsoUp,
    sbusOverlay,
    sbusTrigger,
    sbusZoom,
    sbusZoomMode,
    spare157,
    serialBaudrate,
    serialParity,
    serialStopBits,
    serialInverted,
    crc,
};

enum class FieldType
{
    Ascii4, // four ASCII bytes
    U8,
    U16,
    U32,
    I32,    // two's complement
    U16x20, // 20 little-endian u16 elements
    Bytes8, // an opaque 64-bit little-endian constant
};

struct FieldInfo
{
    Field field;
    const char *name; // the field's name in the file format, e.g. "triggerLow"
    int offset;
    int width; // total bytes, e.g. 40 for a u16[20]
    FieldType type;

    int elementCount() const { return type == FieldType::U16x20 ? kTriggerSlots : 1; }
    int elementWidth() const { return width / elementCount(); }
};

inline constexpr int kFieldCount = static_cast<int>(Field::crc) + 1;

// All fields in file order; fieldTable()[i].field == Field(i).
const std::array<FieldInfo, kFieldCount> &fieldTable();
const FieldInfo &fieldInfo(Field field);
std::optional<Field> fieldByName(std::string_view name);

using RecordBytes = std::array<std::uint8_t, kRecordSize>;

// One configuration image. A new record is all zero bytes, so a byte that no setting feeds is
// never left undefined in a saved file.
class ConfigRecord
{
public:
    ConfigRecord() = default;

    // Copies up to 167 bytes; a shorter input reads as if padded with zero bytes.
    static ConfigRecord fromBytes(const std::uint8_t *data, std::size_t size);

    // The element's bits, zero-extended (an Ascii4 or Bytes8 field gives its low 32 bits).
    // An element outside the field reads as 0, and setValue ignores it.
    std::uint32_t value(Field field, int element = 0) const;
    // The element reinterpreted as signed at its width (I32 fields).
    std::int32_t signedValue(Field field, int element = 0) const;
    std::uint64_t value64(Field field) const; // for Bytes8

    // Stores the low bits of value that fit the element's width, little-endian.
    void setValue(Field field, std::uint32_t value, int element = 0);
    void setValue64(Field field, std::uint64_t value);

    // "CONF", the payload length and the format version in bytes 0..11.
    void writeHeader();
    // The header, reserved101 = 0 and fixed134; then the checksum over bytes 0..164.
    void seal();

    bool hasMagic() const;
    std::uint16_t storedChecksum() const { return static_cast<std::uint16_t>(value(Field::crc)); }
    std::uint16_t computedChecksum() const;

    const RecordBytes &bytes() const { return m_bytes; }
    std::uint8_t *data() { return m_bytes.data(); }

    bool operator==(const ConfigRecord &other) const { return m_bytes == other.m_bytes; }
    bool operator!=(const ConfigRecord &other) const { return !(*this == other); }

private:
    RecordBytes m_bytes{};
};

} // namespace lumarex
