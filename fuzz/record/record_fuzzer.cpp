// Decodes arbitrary bytes as a configuration file and checks them as the load does, asserting
// what must hold for any input: every field reads back into an identical image, elements
// outside a field read as 0 without touching memory past the record, and the byte-wise CRC
// agrees with the routine that folds single bytes.

#include "configrecord.h"
#include "conversions.h"
#include "crc16.h"

#include <cstdlib>
#include <string_view>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// Every field element of `source`, written one by one into a fresh record.
lumarex::ConfigRecord reencoded(const lumarex::ConfigRecord &source)
{
    lumarex::ConfigRecord copy;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        if (info.type == lumarex::FieldType::Bytes8) {
            copy.setValue64(info.field, source.value64(info.field));
            continue;
        }
        for (int element = 0; element < info.elementCount(); ++element)
            copy.setValue(info.field, source.value(info.field, element), element);
        // Outside the field: reads 0 and a write is ignored.
        require(source.value(info.field, -1) == 0);
        require(source.value(info.field, info.elementCount()) == 0);
        copy.setValue(info.field, 0xFFFFFFFF, info.elementCount());
        copy.setValue(info.field, 0xFFFFFFFF, -1);
    }
    return copy;
}

void checkConversions(const lumarex::ConfigRecord &record)
{
    const auto ext0 = static_cast<std::uint8_t>(record.value(lumarex::Field::ext0Mode));
    if (const auto index = lumarex::ext0ModeIndex(ext0))
        require(lumarex::ext0ModeCode(*index) == ext0);
    const auto ext1 = static_cast<std::uint8_t>(record.value(lumarex::Field::ext1Mode));
    if (const auto index = lumarex::ext1ModeIndex(ext1))
        require(lumarex::ext1ModeCode(*index) == ext1);
    require(lumarex::esoOffsetFromField(record.value(lumarex::Field::esoOffset)) >= 0.0);
    require(record.signedValue(lumarex::Field::esoOffset) ==
            static_cast<std::int32_t>(record.value(lumarex::Field::esoOffset)));
}

std::uint16_t foldedChecksum(const std::uint8_t *data, std::size_t size)
{
    std::uint16_t crc = 0;
    for (std::size_t i = 0; i < size; ++i)
        crc = lumarex::crc16Update(crc, data[i], lumarex::kCrcPolynomial);
    return crc;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const lumarex::ConfigRecord record = lumarex::ConfigRecord::fromBytes(data, size);
    // The image is the input's first 167 bytes, a shorter input padded with zero bytes.
    for (std::size_t i = 0; i < lumarex::kRecordSize; ++i)
        require(record.bytes()[i] == (i < size ? data[i] : 0));
    require(reencoded(record) == record);
    checkConversions(record);

    // Sealing any record makes it pass the load's three checks and keeps every setting.
    lumarex::ConfigRecord sealed = record;
    sealed.seal();
    require(sealed.hasMagic());
    require(sealed.value(lumarex::Field::headerVersion) == lumarex::kFormatVersion);
    require(sealed.storedChecksum() == sealed.computedChecksum());
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        if (info.offset >= 12 && info.field != lumarex::Field::reserved101 &&
            info.field != lumarex::Field::fixed134 && info.field != lumarex::Field::crc) {
            for (int element = 0; element < info.elementCount(); ++element)
                require(sealed.value(info.field, element) == record.value(info.field, element));
        }
    }

    // The checksum routine over the whole input, whatever its length.
    const int length = size > 1 << 20 ? 1 << 20 : static_cast<int>(size);
    require(lumarex::crc16(data, length) == foldedChecksum(data, static_cast<std::size_t>(length)));

    // The input as a field name, as the command-line tool looks names up.
    const std::string_view name(reinterpret_cast<const char *>(data), size);
    if (const auto field = lumarex::fieldByName(name))
        require(lumarex::fieldInfo(*field).name == name);
    return 0;
}
