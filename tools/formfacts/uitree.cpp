#include "uitree.h"

#include <QFile>
#include <QXmlStreamReader>

namespace formfacts {

namespace {

// The single value element inside a <property> or <attribute>: <string>, <number>, ...
QString valueText(const UiElement *holder)
{
    if (!holder || holder->children.empty())
        return QString();
    return holder->children.front()->text;
}

} // namespace

const UiElement *UiElement::child(const QString &childTag, const QString &name) const
{
    for (const auto &element : children) {
        if (element->tag == childTag && (name.isNull() || element->attribute("name") == name))
            return element.get();
    }
    return nullptr;
}

QString UiElement::property(const QString &name) const
{
    return valueText(child(QStringLiteral("property"), name));
}

QString UiElement::attributeText(const QString &name) const
{
    return valueText(child(QStringLiteral("attribute"), name));
}

std::unique_ptr<UiElement> readUiFile(const QString &path, QString &error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = file.errorString();
        return nullptr;
    }
    QXmlStreamReader reader(&file);
    auto root = std::make_unique<UiElement>();
    UiElement *current = root.get();
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            auto element = std::make_unique<UiElement>();
            element->tag = reader.name().toString();
            element->attributes = reader.attributes();
            element->parent = current;
            current->children.push_back(std::move(element));
            current = current->children.back().get();
            break;
        }
        case QXmlStreamReader::EndElement:
            current = current->parent;
            break;
        case QXmlStreamReader::Characters:
            current->text += reader.text();
            break;
        default:
            break;
        }
    }
    if (reader.hasError()) {
        error = QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString());
        return nullptr;
    }
    return root;
}

} // namespace formfacts
