#pragma once

// A Designer form read into a plain element tree, so that the code that finds controls and
// their labels can look at parents, siblings and grid cells freely.

#include <QString>
#include <QXmlStreamAttributes>
#include <memory>
#include <vector>

namespace formfacts {

struct UiElement
{
    QString tag; // "widget", "layout", "item", "property", "string", ...
    QXmlStreamAttributes attributes;
    QString text; // the character data directly inside the element, kept as written
    std::vector<std::unique_ptr<UiElement>> children;
    UiElement *parent = nullptr;

    QString attribute(const char *name) const { return attributes.value(name).toString(); }
    // The first child element with that tag and, if given, that "name" attribute.
    const UiElement *child(const QString &childTag, const QString &name = QString()) const;
    // The text of <property name="..."><string|number|double|bool|cstring>, or a null string.
    QString property(const QString &name) const;
    // The text of <attribute name="..."><string>, as a tab page's title.
    QString attributeText(const QString &name) const;
};

// The whole form, or nullptr with a reason in error.
std::unique_ptr<UiElement> readUiFile(const QString &path, QString &error);

} // namespace formfacts
