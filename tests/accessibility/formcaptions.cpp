#include "formcaptions.h"

#include <QFile>
#include <QHash>
#include <QXmlStreamReader>

namespace {

struct LabelEntry
{
    QString name;
    QString text;
    QString buddy;
};

// The text inside the current element's single child element (<string> or <cstring>).
QString childText(QXmlStreamReader &reader)
{
    QString text;
    while (reader.readNextStartElement()) {
        text = reader.readElementText();
    }
    return text;
}

} // namespace

QVector<FormCaption> readFormCaptions(const QString &formPath, QString *error)
{
    QFile file(formPath);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = formPath + ": " + file.errorString();
        return {};
    }
    QXmlStreamReader reader(&file);
    QHash<QString, QString> classOf;
    QVector<LabelEntry> labels;
    // The widgets currently open, innermost last; a property belongs to the innermost one.
    QVector<int> openLabel; // index into labels, or -1 for a widget that is no label
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("widget")) {
            const QString name = reader.attributes().value("name").toString();
            const QString widgetClass = reader.attributes().value("class").toString();
            classOf.insert(name, widgetClass);
            if (widgetClass == QLatin1String("QLabel")) {
                labels.append({name, {}, {}});
                openLabel.append(labels.size() - 1);
            } else {
                openLabel.append(-1);
            }
        } else if (reader.isEndElement() && reader.name() == QLatin1String("widget")) {
            openLabel.removeLast();
        } else if (reader.isStartElement() && reader.name() == QLatin1String("property") &&
                   !openLabel.isEmpty() && openLabel.last() >= 0) {
            LabelEntry &label = labels[openLabel.last()];
            const auto property = reader.attributes().value("name");
            if (property == QLatin1String("text"))
                label.text = childText(reader);
            else if (property == QLatin1String("buddy"))
                label.buddy = childText(reader);
        }
    }
    if (reader.hasError()) {
        *error = formPath + ": " + reader.errorString();
        return {};
    }
    QVector<FormCaption> captions;
    for (const LabelEntry &label : labels) {
        if (!label.buddy.isEmpty())
            captions.append({label.name, label.text, label.buddy, classOf.value(label.buddy)});
    }
    return captions;
}
