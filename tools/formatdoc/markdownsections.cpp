#include "markdownsections.h"

#include "controlstable.h"
#include "crc16.h"
#include "fielddocs.h"
#include "formfields.h"

#include <cctype>
#include <cstdio>

namespace formatdoc {

namespace {

using lumarex::FieldInfo;
using lumarex::FieldType;

std::string hexByte(std::uint8_t byte)
{
    char text[3];
    std::snprintf(text, sizeof text, "%02X", byte);
    return text;
}

std::string hexBytes(const std::uint8_t *data, int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += (i ? " " : "") + hexByte(data[i]);
    return text;
}

std::string typeName(FieldType type)
{
    switch (type) {
    case FieldType::Ascii4:
        return "char[4]";
    case FieldType::U8:
        return "u8";
    case FieldType::U16:
        return "u16";
    case FieldType::U32:
        return "u32";
    case FieldType::I32:
        return "i32";
    case FieldType::U16x20:
        return "u16[20]";
    case FieldType::Bytes8:
        return "u8[8]";
    }
    return "?";
}

std::string defaultCell(const lumarex::ConfigRecord &record, const FieldInfo &info)
{
    const std::uint8_t *bytes = record.bytes().data() + info.offset;
    switch (info.type) {
    case FieldType::Ascii4:
        return "\"" + std::string(bytes, bytes + info.width) + "\"";
    case FieldType::I32:
        return std::to_string(record.signedValue(info.field));
    case FieldType::U16x20:
        // The form has one control per array, saved into every element.
        return std::to_string(record.value(info.field)) + " in each";
    case FieldType::Bytes8:
        return hexBytes(bytes, info.width);
    case FieldType::U8:
    case FieldType::U16:
    case FieldType::U32:
        break;
    }
    return std::to_string(record.value(info.field));
}

std::string hexOffset(int offset)
{
    char text[8];
    std::snprintf(text, sizeof text, "%02X", offset);
    return text;
}

} // namespace

std::string layoutTable()
{
    const lumarex::ConfigRecord defaults = lumarex::untouchedFormRecord();
    std::string table = "| Offset | Hex | Width | Type | Field | Meaning | Default |\n"
                        "|---:|---:|---:|---|---|---|---:|\n";
    for (const FieldInfo &info : lumarex::fieldTable()) {
        const FieldDoc *doc = findFieldDoc(info.name);
        table += "| " + std::to_string(info.offset) + " | " + hexOffset(info.offset) + " | " +
                 std::to_string(info.width) + " | " + typeName(info.type) + " | `" + info.name +
                 "` | " + std::string(doc ? doc->meaning : "") + " | " +
                 defaultCell(defaults, info) + " |\n";
    }
    return table;
}

std::string hexDump(const lumarex::RecordBytes &bytes)
{
    constexpr int kPerLine = 16;
    std::string dump = "```text\n";
    for (int start = 0; start < lumarex::kRecordSize; start += kPerLine) {
        char offset[16];
        std::snprintf(offset, sizeof offset, "%08X ", start);
        std::string hex = offset;
        std::string ascii;
        for (int i = start; i < start + kPerLine; ++i) {
            hex += i - start == kPerLine / 2 ? "  " : " ";
            if (i < lumarex::kRecordSize) {
                const std::uint8_t byte = bytes[static_cast<std::size_t>(i)];
                hex += hexByte(byte);
                ascii += std::isprint(byte) ? static_cast<char>(byte) : '.';
            } else {
                hex += "  ";
            }
        }
        dump += hex + "  |" + ascii + "|\n";
    }
    return dump + "```\n";
}

std::string checkValuesTable()
{
    struct Input
    {
        std::string label;
        std::vector<std::uint8_t> bytes;
    };
    lumarex::ConfigRecord emptyPayload;
    emptyPayload.writeHeader();
    const std::vector<Input> inputs = {
        {"ASCII `123456789` (31 32 … 39)", {'1', '2', '3', '4', '5', '6', '7', '8', '9'}},
        {"ASCII `CONF` (43 4F 4E 46)", {'C', 'O', 'N', 'F'}},
        {"the byte 01", {0x01}},
        {"the byte 00", {0x00}},
        {"the byte FF", {0xFF}},
        {"bytes 0 to 164 of a record with the header and an all-zero payload",
         {emptyPayload.bytes().begin(), emptyPayload.bytes().begin() + lumarex::kChecksummedSize}},
    };

    std::string table = "| Input | Length | Checksum | Hex | Stored as |\n"
                        "|---|---:|---:|---:|---|\n";
    for (const Input &input : inputs) {
        const int length = static_cast<int>(input.bytes.size());
        const std::uint16_t crc = lumarex::crc16(input.bytes.data(), length);
        const std::uint8_t stored[2] = {static_cast<std::uint8_t>(crc),
                                        static_cast<std::uint8_t>(crc >> 8)};
        table += "| " + input.label + " | " + std::to_string(length) + " | " + std::to_string(crc) +
                 " | " + hexByte(stored[1]) + hexByte(stored[0]) + " | " + hexBytes(stored, 2) +
                 " |\n";
    }
    return table;
}

std::vector<Section> generatedSections()
{
    return {
        {"LAYOUT", layoutTable()},
        {"CONTROLS", controlsTable()},
        {"DEFAULT FILE", hexDump(lumarex::untouchedFormRecord().bytes())},
        {"CHECK VALUES", checkValuesTable()},
    };
}

} // namespace formatdoc
