#include "recorddiff.h"

#include "configrecord.h"

namespace {

// The field that holds the byte, or "after the record".
QString placeOf(int offset)
{
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        if (offset >= info.offset && offset < info.offset + info.width)
            return QLatin1String(info.name);
    }
    return QStringLiteral("after the record");
}

QString hexByte(const QByteArray &bytes, int offset)
{
    return QStringLiteral("%1").arg(static_cast<quint8>(bytes.at(offset)), 2, 16, QLatin1Char('0'));
}

} // namespace

QString firstDifference(const QByteArray &expected, const QByteArray &actual)
{
    const int common = qMin(expected.size(), actual.size());
    for (int offset = 0; offset < common; ++offset) {
        if (expected.at(offset) != actual.at(offset)) {
            return QStringLiteral("%1 at offset %2: expected %3, got %4")
                .arg(placeOf(offset))
                .arg(offset)
                .arg(hexByte(expected, offset), hexByte(actual, offset));
        }
    }
    if (expected.size() != actual.size())
        return QStringLiteral("length: expected %1, got %2")
            .arg(expected.size())
            .arg(actual.size());
    return QString();
}
