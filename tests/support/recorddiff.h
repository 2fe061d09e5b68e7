#pragma once

// Comparing two configuration files byte by byte, with a message that names the field and the
// offset of the first difference, which a plain comparison of byte arrays would not.

#include <QByteArray>
#include <QString>

// Empty when the two are equal; otherwise e.g. "serialParity at offset 162: expected 00, got 01"
// or "length: expected 167, got 166".
QString firstDifference(const QByteArray &expected, const QByteArray &actual);

// QVERIFY2 with that message.
#define COMPARE_BYTES(actual, expected)                                                            \
    do {                                                                                           \
        const QString difference_ = firstDifference((expected), (actual));                         \
        QVERIFY2(difference_.isEmpty(), qPrintable(difference_));                                  \
    } while (false)
