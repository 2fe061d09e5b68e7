// What the strict check costs: the editor's verdict alone against the verdict followed by the
// round-trip model's strict findings, each over the same 10,000 files: the differential test's
// seeded random records (full of values the editor cannot hold), and the files the editor saves
// from them. No file is read, so the ratio is that of the work itself;
// reading the files would add the same cost to both sides.

#include "editorverdict.h"
#include "randomrecords.h"
#include "roundtrip.h"

#include <benchmark/benchmark.h>
#include <vector>

namespace {

constexpr int kRecords = 10000;

const std::vector<lumarex::RecordBytes> &records()
{
    static const std::vector<lumarex::RecordBytes> all = [] {
        std::vector<lumarex::RecordBytes> made;
        made.reserve(kRecords);
        for (int seed = 1; seed <= kRecords; ++seed)
            made.push_back(randomRecord(static_cast<std::uint32_t>(seed)));
        return made;
    }();
    return all;
}

// The files the editor itself saves from those records: what an operator mostly checks, with
// few or no findings.
const std::vector<lumarex::RecordBytes> &editorFiles()
{
    static const std::vector<lumarex::RecordBytes> all = [] {
        std::vector<lumarex::RecordBytes> made;
        made.reserve(kRecords);
        for (const auto &record : records()) {
            const auto prediction = lumarex::roundtrip::predictResave(record);
            made.push_back(prediction.accepted() ? prediction.bytes : record);
        }
        return made;
    }();
    return all;
}

lumarex::ConfigRecord recordOf(const lumarex::RecordBytes &bytes)
{
    return lumarex::ConfigRecord::fromBytes(bytes.data(), bytes.size());
}

void plainVerdict(benchmark::State &state, const std::vector<lumarex::RecordBytes> &files)
{
    for (auto _ : state) {
        int accepted = 0;
        for (const auto &record : files)
            accepted += lumarex::editorVerdict(recordOf(record)) == lumarex::Verdict::Accepted;
        benchmark::DoNotOptimize(accepted);
    }
    state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK_CAPTURE(plainVerdict, random, records())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(plainVerdict, editorFiles, editorFiles())->Unit(benchmark::kMillisecond);

void strictFindings(benchmark::State &state, const std::vector<lumarex::RecordBytes> &files)
{
    for (auto _ : state) {
        std::size_t findings = 0;
        for (const auto &record : files) {
            if (lumarex::editorVerdict(recordOf(record)) == lumarex::Verdict::Accepted)
                findings += lumarex::roundtrip::strictFindings(record).size();
        }
        benchmark::DoNotOptimize(findings);
    }
    state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK_CAPTURE(strictFindings, random, records())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(strictFindings, editorFiles, editorFiles())->Unit(benchmark::kMillisecond);

void predictResave(benchmark::State &state)
{
    for (auto _ : state) {
        unsigned sum = 0;
        for (const auto &record : records())
            sum += lumarex::roundtrip::predictResave(record).bytes[165];
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(predictResave)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
