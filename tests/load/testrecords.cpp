#include "testrecords.h"

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
    FieldValues values = {
        {Field::ext0Mode, 0},
        {Field::ext1Mode, 0},
        {Field::frameSkip, 0},
        {Field::triggerPinMode, 0},
        {Field::triggerFfcMode, 0},
        {Field::triggerFrameMode, 0},
        {Field::overlayMode, 0},
        {Field::isothermState, 0},
        {Field::isothermSwitchMode, 0},
        {Field::isothermLower, 15},
        {Field::isothermMiddle, 34},
        {Field::isothermUpper, 40},
        {Field::gimbalRc, 0},
        {Field::gpsReceiver, 2},
        {Field::externalShutter, 0},
        {Field::esoHeating, 800},
        {Field::esoHeatcycle, 1000},
        {Field::esoOffset, 0},
        {Field::esoShutterInterval, 120},
        {Field::esoOpt5, 0},
        {Field::recMaxFramesPerFile, 1000},
        {Field::sbusColormap, 3},
        {Field::sbusColorMapSwitchMode, 0},
        {Field::sbusFfc, 5},
        {Field::sbusIsotherms, 0},
        {Field::sbusIsoLow, 16},
        {Field::sbusIsoMid, 16},
        {Field::sbusIsoUp, 16},
        {Field::sbusOverlay, 1},
        {Field::sbusTrigger, 4},
        {Field::sbusZoom, 2},
        {Field::sbusZoomMode, 0},
        {Field::serialBaudrate, 38400},
        {Field::serialParity, 0},
        {Field::serialStopBits, 1},
        {Field::serialInverted, 1},
    };
    fillTriggerArrays(values, 688, 1366, 0);
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
