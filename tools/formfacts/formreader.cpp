#include "formreader.h"

#include <QSet>
#include <algorithm>
#include <functional>

namespace formfacts {

namespace {

const QSet<QString> kInputClasses = {"QComboBox", "QSpinBox", "QDoubleSpinBox", "QCheckBox",
                                     "QLineEdit"};

bool isWidgetOf(const UiElement *element, const QString &className)
{
    return element && element->tag == QLatin1String("widget") &&
           element->attribute("class") == className;
}

// What a label shows: "&&" is an ampersand, a single '&' only marks the shortcut letter.
QString shownText(const QString &text)
{
    QString shown;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&') && i + 1 < text.size())
            ++i;
        shown += text.at(i);
    }
    return shown;
}

void forEachWidget(const UiElement &element, const std::function<void(const UiElement &)> &visit)
{
    for (const auto &child : element.children) {
        if (child->tag == QLatin1String("widget"))
            visit(*child);
        forEachWidget(*child, visit);
    }
}

const UiElement *labelOfItem(const UiElement &item)
{
    const UiElement *widget = item.child(QStringLiteral("widget"));
    return isWidgetOf(widget, QStringLiteral("QLabel")) ? widget : nullptr;
}

int cell(const UiElement &item, const char *name)
{
    return item.attribute(name).toInt();
}

// In a grid: the nearest label to the left in the same row, else the nearest label above in
// the same column (the external shutter options put their labels over the boxes). In a box
// layout: the nearest label before the control.
const UiElement *layoutLabel(const UiElement &controlItem)
{
    const UiElement *layout = controlItem.parent;
    if (!layout || layout->tag != QLatin1String("layout"))
        return nullptr;
    const bool grid = !controlItem.attribute("row").isEmpty();
    const int row = cell(controlItem, "row");
    const int column = cell(controlItem, "column");
    const UiElement *best = nullptr;
    int bestDistance = 0;
    auto consider = [&](const UiElement *label, int distance) {
        if (label && distance > 0 && (!best || distance < bestDistance)) {
            best = label;
            bestDistance = distance;
        }
    };
    int position = 0;
    int controlPosition = 0;
    for (const auto &item : layout->children) {
        ++position;
        if (item.get() == &controlItem)
            controlPosition = position;
    }
    position = 0;
    for (const auto &item : layout->children) {
        ++position;
        if (item->tag != QLatin1String("item"))
            continue;
        const UiElement *label = labelOfItem(*item);
        if (!grid)
            consider(label, controlPosition - position);
        else if (cell(*item, "row") == row)
            consider(label, column - cell(*item, "column"));
    }
    if (best || !grid)
        return best;
    for (const auto &item : layout->children) {
        if (item->tag == QLatin1String("item") && cell(*item, "column") == column)
            consider(labelOfItem(*item), row - cell(*item, "row"));
    }
    return best;
}

QString captionOf(const UiElement &form, const UiElement &control)
{
    const QString name = control.attribute("name");
    const UiElement *buddyLabel = nullptr;
    forEachWidget(form, [&](const UiElement &widget) {
        if (!buddyLabel && isWidgetOf(&widget, QStringLiteral("QLabel")) &&
            widget.property(QStringLiteral("buddy")) == name)
            buddyLabel = &widget;
    });
    const bool inLayout = control.parent && control.parent->tag == QLatin1String("item");
    const UiElement *label =
        buddyLabel ? buddyLabel : (inLayout ? layoutLabel(*control.parent) : nullptr);
    return label ? shownText(label->property(QStringLiteral("text"))) : QString();
}

// The generated setup code adds the items, sets the current text in its translation step (a
// non-editable box selects the matching item), then sets the current index last.
void readComboBox(const UiElement &widget, Control &control)
{
    for (const auto &child : widget.children) {
        if (child->tag == QLatin1String("item"))
            control.items << child->property(QStringLiteral("text"));
    }
    control.startIndex = control.items.isEmpty() ? -1 : 0;
    const QString currentText = widget.property(QStringLiteral("currentText"));
    if (!currentText.isNull() && control.items.contains(currentText))
        control.startIndex = control.items.indexOf(currentText);
    const QString currentIndex = widget.property(QStringLiteral("currentIndex"));
    if (!currentIndex.isNull()) {
        const int index = currentIndex.toInt();
        control.startIndex = index >= 0 && index < control.items.size() ? index : -1;
    }
    control.startText = control.startIndex >= 0 ? control.items.at(control.startIndex) : QString();
}

// The properties apply in the form's order, each through the toolkit's setter: a new minimum
// above the maximum raises the maximum, and every change keeps the value inside the range.
// A spin box the form says nothing about runs from 0 to 99 (99.99 with two decimals).
void readSpinBox(const UiElement &widget, Control &control)
{
    const bool isDouble = control.className == QLatin1String("QDoubleSpinBox");
    control.minimum = 0;
    control.maximum = isDouble ? 99.99 : 99;
    control.decimals = isDouble ? 2 : 0;
    control.startValue = 0;
    for (const auto &child : widget.children) {
        if (child->tag != QLatin1String("property") || child->children.empty())
            continue;
        const QString name = child->attribute("name");
        const double number = child->children.front()->text.toDouble();
        if (name == QLatin1String("minimum")) {
            control.minimum = number;
            control.maximum = std::max(control.maximum, number);
        } else if (name == QLatin1String("maximum")) {
            control.maximum = number;
            control.minimum = std::min(control.minimum, number);
        } else if (name == QLatin1String("value")) {
            control.startValue = number;
        } else if (name == QLatin1String("decimals") && isDouble) {
            control.decimals = static_cast<int>(number);
        }
        control.startValue = std::clamp(control.startValue, control.minimum, control.maximum);
    }
}

bool isEnabled(const UiElement &widget)
{
    return widget.property(QStringLiteral("enabled")) != QLatin1String("false");
}

Control readControl(const UiElement &form, const UiElement &widget)
{
    Control control;
    control.objectName = widget.attribute("name");
    control.className = widget.attribute("class");
    control.caption = captionOf(form, widget);
    if (control.className == QLatin1String("QComboBox"))
        readComboBox(widget, control);
    else if (control.className.endsWith(QLatin1String("SpinBox")))
        readSpinBox(widget, control);
    else if (control.className == QLatin1String("QCheckBox"))
        control.startChecked = widget.property(QStringLiteral("checked")) == QLatin1String("true");
    else
        control.startText = widget.property(QStringLiteral("text"));
    control.ownEnabled = isEnabled(widget);
    control.enabledAtStart = true;
    for (const UiElement *around = &widget; around; around = around->parent) {
        if (around->tag == QLatin1String("widget") && !isEnabled(*around))
            control.enabledAtStart = false;
    }
    return control;
}

const UiElement *findTabWidget(const UiElement &form)
{
    const UiElement *tabWidget = nullptr;
    forEachWidget(form, [&](const UiElement &widget) {
        if (!tabWidget && isWidgetOf(&widget, QStringLiteral("QTabWidget")))
            tabWidget = &widget;
    });
    return tabWidget;
}

} // namespace

std::vector<Control> readControls(const UiElement &form, QString &error)
{
    const UiElement *tabWidget = findTabWidget(form);
    if (!tabWidget) {
        error = QStringLiteral("the form has no tab widget");
        return {};
    }
    std::vector<Control> controls;
    int pageIndex = 0;
    for (const auto &page : tabWidget->children) {
        if (page->tag != QLatin1String("widget"))
            continue;
        const QString title = shownText(page->attributeText(QStringLiteral("title")));
        forEachWidget(*page, [&](const UiElement &widget) {
            if (!kInputClasses.contains(widget.attribute("class")))
                return;
            Control control = readControl(form, widget);
            control.page = title;
            control.pageIndex = pageIndex;
            controls.push_back(control);
        });
        ++pageIndex;
    }
    return controls;
}

} // namespace formfacts
