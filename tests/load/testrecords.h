#pragma once

// The configuration files the load tests read, built field by field from values written out
// here or read from tests/data, never from what the editor itself would save.

#include "configrecord.h"

#include <QByteArray>
#include <QList>
#include <QMetaType>

// One field value; element picks the slot of a trigger threshold array.
struct FieldValue
{
    lumarex::Field field;
    quint32 value;
    int element = 0;
};
Q_DECLARE_METATYPE(FieldValue)

using FieldValues = QList<FieldValue>;

// What an untouched window saves (tests/data/untouched-form.bin), field by field.
FieldValues untouchedFormValues();

// Every control changed from its start value, with the gimbal remote control, the external
// shutter and the "Custom settings" GPS row switched on so that loading it fires their rules.
FieldValues changedFormValues();

// A different threshold in every slot of both trigger arrays: low 100 + k, high 2000 + k.
FieldValues distinctTriggerThresholds();

// The 167 bytes of a sealed record holding values, later values overriding earlier ones.
QByteArray sealedFile(const FieldValues &values);

// A sealed file of values whose header then gets magic and version, with a checksum that
// matches again, so that only the header can make the file fail.
QByteArray fileWithHeader(const FieldValues &values, const QByteArray &magic, quint32 version);

// A file with one byte changed after sealing; the stored checksum no longer fits.
QByteArray withByte(QByteArray file, int offset, quint8 value);
