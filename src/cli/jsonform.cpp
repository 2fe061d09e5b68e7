#include "jsonform.h"

#include "fieldvalue.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <cmath>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::FieldInfo;
using lumarex::FieldType;

namespace {

QString keyOf(const FieldInfo &info)
{
    return QString::fromLatin1(info.name);
}

QString elementKey(const FieldInfo &info, int element)
{
    return QStringLiteral("%1[%2]").arg(keyOf(info)).arg(element);
}

// A JSON string literal: quotes, backslashes and control characters escaped, the rest as is.
QString jsonString(const QString &text)
{
    QString quoted = QStringLiteral("\"");
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            quoted += QLatin1Char('\\') + c;
        else if (c.unicode() < 0x20)
            quoted += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            quoted += c;
    }
    return quoted + QLatin1Char('"');
}

std::optional<qint64> wholeNumber(const QJsonValue &value, FieldType type)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    const ValueRange range = valueRange(type);
    // Every bound is exact as a double, so the comparisons are too.
    if (std::trunc(number) != number || number < double(range.min) || number > double(range.max))
        return std::nullopt;
    return static_cast<qint64>(number);
}

// One field's value into the record; the reason naming the key when it does not fit.
std::optional<QString> readField(const QJsonValue &value, const FieldInfo &info,
                                 ConfigRecord &record)
{
    if (info.type == FieldType::Ascii4) {
        if (value.isString() && setMagicText(record, value.toString()))
            return std::nullopt;
        return keyOf(info) + QStringLiteral(": expected %1").arg(kMagicDescription);
    }
    if (info.type == FieldType::U16x20) {
        const QJsonArray array = value.toArray();
        if (!value.isArray() || array.size() != info.elementCount()) {
            return keyOf(info) + QStringLiteral(": expected an array of %1 numbers, each %2")
                                     .arg(info.elementCount())
                                     .arg(rangeDescription(info.type));
        }
        for (int element = 0; element < info.elementCount(); ++element) {
            const std::optional<qint64> number = wholeNumber(array.at(element), info.type);
            if (!number)
                return elementKey(info, element) +
                       QStringLiteral(": expected %1").arg(rangeDescription(info.type));
            setNumber(record, info, element, *number);
        }
        return std::nullopt;
    }
    const std::optional<qint64> number = wholeNumber(value, info.type);
    if (!number)
        return keyOf(info) + QStringLiteral(": expected %1").arg(rangeDescription(info.type));
    setNumber(record, info, 0, *number);
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> recordToJson(const ConfigRecord &record, QString &error)
{
    QStringList members;
    for (const FieldInfo &info : lumarex::fieldTable()) {
        QString value;
        if (info.type == FieldType::Ascii4) {
            value = jsonString(magicText(record));
        } else if (info.type == FieldType::U16x20) {
            QStringList elements;
            for (int element = 0; element < info.elementCount(); ++element)
                elements << numberText(record, info, element);
            value = QLatin1Char('[') + elements.join(QStringLiteral(", ")) + QLatin1Char(']');
        } else {
            const qint64 number = numberOf(record, info, 0);
            const ValueRange range = valueRange(info.type);
            if (number < range.min || number > range.max) {
                error = keyOf(info) + QStringLiteral(": %1 is more than a JSON number holds")
                                          .arg(numberText(record, info, 0));
                return std::nullopt;
            }
            value = QString::number(number);
        }
        members << QStringLiteral("    \"%1\": %2").arg(keyOf(info), value);
    }
    return QStringLiteral("{\n%1\n}\n").arg(members.join(QStringLiteral(",\n"))).toUtf8();
}

std::optional<ConfigRecord> recordFromJson(const QByteArray &json, QString &error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        error = QStringLiteral("malformed JSON: %1 at offset %2")
                    .arg(parseError.errorString())
                    .arg(parseError.offset);
        return std::nullopt;
    }
    if (!document.isObject()) {
        error = QStringLiteral("malformed JSON: not an object");
        return std::nullopt;
    }
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!lumarex::fieldByName(it.key().toStdString())) {
            error = it.key() + QStringLiteral(": no such field");
            return std::nullopt;
        }
    }
    ConfigRecord record;
    for (const FieldInfo &info : lumarex::fieldTable()) {
        const auto it = object.find(keyOf(info));
        if (it == object.end()) {
            error = keyOf(info) + QStringLiteral(": missing");
            return std::nullopt;
        }
        if (const std::optional<QString> problem = readField(*it, info, record)) {
            error = *problem;
            return std::nullopt;
        }
    }
    return record;
}

} // namespace lxconfig
