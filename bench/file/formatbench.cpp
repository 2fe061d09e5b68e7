// The file format without the window: what encoding, decoding and checksumming one record cost,
// next to copying its 167 bytes, the least any of them can cost.

#include "configrecord.h"
#include "crc16.h"

#include <benchmark/benchmark.h>
#include <cstring>

using lumarex::ConfigRecord;

namespace {

// A record with every field set, as the editor saves it.
ConfigRecord filledRecord(std::uint32_t seed)
{
    ConfigRecord record;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        for (int element = 0; element < info.elementCount(); ++element)
            record.setValue(info.field, seed + static_cast<std::uint32_t>(element), element);
    }
    record.seal();
    return record;
}

void floorMemcpy(benchmark::State &state)
{
    const lumarex::RecordBytes source = filledRecord(1).bytes();
    lumarex::RecordBytes target{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(source.data());
        std::memcpy(target.data(), source.data(), target.size());
        benchmark::ClobberMemory();
    }
    benchmark::DoNotOptimize(target);
}
BENCHMARK(floorMemcpy);

void encode(benchmark::State &state)
{
    std::uint32_t seed = 0;
    for (auto _ : state) {
        ConfigRecord record = filledRecord(seed++);
        benchmark::DoNotOptimize(record.data());
    }
}
BENCHMARK(encode);

void decode(benchmark::State &state)
{
    const lumarex::RecordBytes bytes = filledRecord(1).bytes();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bytes.data());
        const ConfigRecord record = ConfigRecord::fromBytes(bytes.data(), bytes.size());
        std::uint64_t sum = 0;
        for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
            for (int element = 0; element < info.elementCount(); ++element)
                sum += record.value(info.field, element);
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(decode);

void checksum(benchmark::State &state)
{
    const lumarex::RecordBytes bytes = filledRecord(1).bytes();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bytes.data());
        benchmark::DoNotOptimize(lumarex::crc16(bytes.data(), lumarex::kChecksummedSize));
    }
}
BENCHMARK(checksum);

} // namespace
