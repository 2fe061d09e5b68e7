#include "testrecords.h"

#include "untouchedform.h"

#include <algorithm>

using lumarex::Field;

namespace {

lumarex::ConfigRecord recordOf(const FieldValues &values)
{
    lumarex::ConfigRecord record;
    for (const FieldValue &value : values)
        record.setValue(value.field, value.value, value.element);
    record.seal();
    return record;
}

QByteArray bytesOf(const lumarex::ConfigRecord &record)
{
    return QByteArray(reinterpret_cast<const char *>(record.bytes().data()), lumarex::kRecordSize);
}

void fillTriggerArrays(FieldValues &values, quint32 low, quint32 high, quint32 step)
{
    for (int slot = 0; slot < lumarex::kTriggerSlots; ++slot) {
        values.append({Field::triggerLow, low + step * static_cast<quint32>(slot), slot});
        values.append({Field::triggerHigh, high + step * static_cast<quint32>(slot), slot});
    }
}

} // namespace

FieldValues untouchedFormValues()
{
    // Every field the format does not fix, element by element, from the untouched form's file.
    const QByteArray file = untouchedFormFile();
    const lumarex::ConfigRecord record =
        lumarex::ConfigRecord::fromBytes(reinterpret_cast<const std::uint8_t *>(file.constData()),
                                         static_cast<std::size_t>(file.size()));
    const Field sealed[] = {Field::magic,       Field::payloadLength, Field::headerVersion,
                            Field::reserved101, Field::fixed134,      Field::crc};
    FieldValues values;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        if (std::find(std::begin(sealed), std::end(sealed), info.field) != std::end(sealed))
            continue;
        for (int element = 0; element < info.elementCount(); ++element)
            values.append({info.field, record.value(info.field, element), element});
    }
    return values;
}

FieldValues changedFormValues()
{
    // The three switch-mode bytes stay 0: what those boxes show after a load then can only come
    // from the gimbal rule, since the load does not restore them.
    return untouchedFormValues() + distinctTriggerThresholds() +
           FieldValues{
               {Field::ext0Mode, 1},
               {Field::ext1Mode, 2},
               {Field::frameSkip, 12345},
               {Field::triggerPinMode, 5},
               {Field::triggerFfcMode, 1},
               {Field::triggerFrameMode, 1},
               {Field::overlayMode, 1},
               {Field::isothermState, 1},
               {Field::isothermSwitchMode, 0},
               {Field::isothermLower, 100},
               {Field::isothermMiddle, 200},
               {Field::isothermUpper, 300},
               {Field::gimbalRc, 1},
               {Field::gpsReceiver, 0},
               {Field::externalShutter, 1},
               {Field::esoHeating, 300},
               {Field::esoHeatcycle, 1500},
               {Field::esoOffset, 250},
               {Field::esoShutterInterval, 600},
               {Field::esoOpt5, 42},
               {Field::recMaxFramesPerFile, 5000},
               {Field::sbusColormap, 7},
               {Field::sbusColorMapSwitchMode, 0},
               {Field::sbusFfc, 11},
               {Field::sbusIsotherms, 12},
               {Field::sbusIsoLow, 13},
               {Field::sbusIsoMid, 14},
               {Field::sbusIsoUp, 15},
               {Field::sbusOverlay, 10},
               {Field::sbusTrigger, 3},
               {Field::sbusZoom, 0},
               {Field::sbusZoomMode, 0},
               {Field::serialBaudrate, 115200},
               {Field::serialParity, 2},
               {Field::serialStopBits, 2},
               {Field::serialInverted, 0},
           };
}

FieldValues distinctTriggerThresholds()
{
    FieldValues values;
    fillTriggerArrays(values, 100, 2000, 1);
    return values;
}

QByteArray sealedFile(const FieldValues &values)
{
    return bytesOf(recordOf(values));
}

QByteArray fileWithHeader(const FieldValues &values, const QByteArray &magic, quint32 version)
{
    lumarex::ConfigRecord record = recordOf(values);
    Q_ASSERT(magic.size() == 4);
    std::copy_n(magic.constData(), 4, record.data());
    record.setValue(Field::headerVersion, version);
    record.setValue(Field::crc, record.computedChecksum());
    return bytesOf(record);
}

QByteArray withByte(QByteArray file, int offset, quint8 value)
{
    file[offset] = static_cast<char>(value);
    return file;
}
