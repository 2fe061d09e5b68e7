// The save and load commands without their dialogs and file calls, on a real window: reading
// every control into a sealed record, and checking a record and restoring every control.

#include "commandbench.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <utility>

using lumarex::ConfigRecord;
using lumarex::Field;

namespace {

// A valid file that differs from the start-up form in every restored control, so each restore
// changes the control and runs the form rules connected to it.
ConfigRecord changedRecord(ConfigRecord record)
{
    const std::pair<Field, std::uint32_t> changes[] = {
        {Field::gimbalRc, 1},
        {Field::gpsReceiver, 0},
        {Field::externalShutter, 1},
        {Field::esoHeatcycle, 5},
        {Field::esoHeating, 3},
        {Field::esoOffset, 150},
        {Field::esoShutterInterval, 7},
        {Field::esoOpt5, 2},
        {Field::serialBaudrate, 9600},
        {Field::serialParity, 2},
        {Field::serialStopBits, 2},
        {Field::serialInverted, 1},
        {Field::frameSkip, 3},
        {Field::triggerPinMode, 1},
        {Field::triggerFfcMode, 1},
        {Field::triggerFrameMode, 1},
        {Field::overlayMode, 1},
        {Field::recMaxFramesPerFile, 10},
        {Field::ext0Mode, 1},
        {Field::ext1Mode, 2},
        {Field::isothermState, 1},
        {Field::isothermSwitchMode, 1},
        {Field::isothermLower, 10},
        {Field::isothermMiddle, 20},
        {Field::isothermUpper, 30},
        {Field::sbusColormap, 0},
        {Field::sbusFfc, 0},
        {Field::sbusIsotherms, 1},
        {Field::sbusIsoLow, 0},
        {Field::sbusIsoMid, 1},
        {Field::sbusIsoUp, 2},
        {Field::sbusOverlay, 3},
        {Field::sbusTrigger, 2},
        {Field::sbusZoom, 4},
    };
    for (const auto &[field, value] : changes)
        record.setValue(field, value);
    record.setValue(Field::triggerLow, 11, 2);
    record.setValue(Field::triggerHigh, 22, 2);
    record.seal();
    return record;
}

} // namespace

void registerCommandBenchmarks(MainWindow &window)
{
    benchmark::RegisterBenchmark("save", [&window](benchmark::State &state) {
        for (auto _ : state) {
            ConfigRecord record = window.recordFromForm();
            benchmark::DoNotOptimize(record.data());
        }
    });

    // Alternates between the start-up form and a file that changes every control.
    const ConfigRecord startup = window.recordFromForm();
    const ConfigRecord changed = changedRecord(startup);
    benchmark::RegisterBenchmark("load", [&window, startup, changed](benchmark::State &state) {
        bool flip = false;
        for (auto _ : state) {
            const ConfigRecord &file = flip ? changed : startup;
            flip = !flip;
            benchmark::DoNotOptimize(window.restoreFromFileBytes(file.bytes().data()));
        }
    });
}
