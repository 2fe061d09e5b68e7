#include "randomrecords.h"

#include <random>
#include <vector>

using lumarex::Field;

namespace {

// Edges of the form's ranges and of the field widths, written out here rather than taken from the
// model, plus values that only mean something as a byte pattern.
const std::vector<std::int64_t> kEdges = {
    0,    1,    2,    3,     4,     5,     6,       7,        8,          15,
    16,   17,   19,   20,    21,    28,    29,      57,       99,         100,
    101,  120,  688,  999,   1000,  1001,  1366,    2000,     2001,       2047,
    2048, 3600, 3601, 16000, 16001, 20000, 65535,   65536,    -1,         -2,
    -10,  -29,  -125, -999,  -1000, -1001, -100000, 42949672, 2147483647, -2147483647 - 1};

// The baud rates the form lists, and numbers near them.
const std::vector<std::uint32_t> kBaudrates = {1200,  2400,   4800,   9600,   19200,  38400,
                                               57600, 115200, 230400, 460800, 921600, 0,
                                               38401, 300,    14400,  1000000};

class Draw
{
public:
    explicit Draw(std::uint32_t seed) : m_engine(seed) {}

    std::uint32_t below(std::uint32_t bound)
    {
        return std::uniform_int_distribution<std::uint32_t>(0, bound - 1)(m_engine);
    }
    bool chance(int percent) { return below(100) < static_cast<std::uint32_t>(percent); }
    std::uint32_t any() { return static_cast<std::uint32_t>(m_engine()); }
    std::uint32_t edge() { return static_cast<std::uint32_t>(kEdges[below(kEdges.size())]); }

    // A combo index: mostly near the lists' lengths, sometimes any byte.
    std::uint32_t index()
    {
        if (chance(10))
            return 255;
        return chance(85) ? below(20) : below(256);
    }
    std::uint32_t check() { return chance(45) ? 0 : chance(80) ? 1 : below(256); }
    std::uint32_t number() { return chance(60) ? edge() : chance(50) ? below(5000) : any(); }

private:
    std::mt19937 m_engine;
};

} // namespace

lumarex::RecordBytes randomRecord(std::uint32_t seed)
{
    Draw draw(seed);
    lumarex::ConfigRecord record;
    record.writeHeader();
    if (draw.chance(5))
        record.setValue(Field::payloadLength, draw.any());

    const Field indexes[] = {
        Field::triggerPinMode, Field::triggerFfcMode, Field::triggerFrameMode,
        Field::overlayMode,    Field::isothermState,  Field::isothermSwitchMode,
        Field::gpsReceiver,    Field::sbusColormap,   Field::sbusColorMapSwitchMode,
        Field::sbusFfc,        Field::sbusIsotherms,  Field::sbusIsoLow,
        Field::sbusIsoMid,     Field::sbusIsoUp,      Field::sbusOverlay,
        Field::sbusZoom,       Field::sbusZoomMode,   Field::serialParity};
    for (Field field : indexes)
        record.setValue(field, draw.index());
    record.setValue(Field::sbusTrigger, draw.chance(90) ? draw.below(24) : draw.below(256));

    for (Field field : {Field::gimbalRc, Field::externalShutter, Field::serialInverted})
        record.setValue(field, draw.check());
    for (Field field : {Field::ext0Mode, Field::ext1Mode})
        record.setValue(field, draw.chance(90) ? draw.below(8) : draw.below(256));

    for (Field field :
         {Field::esoHeating, Field::esoHeatcycle, Field::esoOffset, Field::esoShutterInterval,
          Field::esoOpt5, Field::recMaxFramesPerFile, Field::isothermLower, Field::isothermMiddle,
          Field::isothermUpper, Field::frameSkip})
        record.setValue(field, draw.number());
    // Offsets of whole hundredths inside the range, where cutting toward zero shows.
    if (draw.chance(30))
        record.setValue(Field::esoOffset, draw.below(2001) - 1000);

    // All slots alike as the editor writes them, or each its own.
    const bool alike = draw.chance(50);
    const std::uint32_t low = draw.number();
    const std::uint32_t high = draw.number();
    for (int slot = 0; slot < lumarex::kTriggerSlots; ++slot) {
        record.setValue(Field::triggerLow, alike ? low : draw.number(), slot);
        record.setValue(Field::triggerHigh, alike ? high : draw.number(), slot);
    }

    record.setValue(Field::serialBaudrate,
                    draw.chance(80) ? kBaudrates[draw.below(kBaudrates.size())] : draw.any());
    record.setValue(Field::serialStopBits, draw.chance(90) ? draw.below(4) : draw.below(256));

    // Bytes no control shows.
    if (draw.chance(30))
        record.setValue(Field::reserved101, draw.below(256));
    if (draw.chance(30))
        record.setValue(Field::spare157, draw.below(256));
    record.setValue64(Field::fixed134, draw.chance(70) ? lumarex::kFixed134 : draw.any());

    std::uint16_t checksum = record.computedChecksum();
    if (draw.chance(2))
        checksum = static_cast<std::uint16_t>(checksum ^ (1 + draw.below(0xFFFF)));
    record.setValue(Field::crc, checksum);
    return record.bytes();
}
