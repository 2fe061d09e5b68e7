#include "formprobe.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QWidget>

namespace {

QWidget *controlOf(const QWidget &window, const QString &control)
{
    auto *widget = window.findChild<QWidget *>(control);
    if (widget == nullptr)
        qFatal("The form has no control named %s", qPrintable(control));
    return widget;
}

QString valueText(const QWidget &widget)
{
    if (auto *comboBox = qobject_cast<const QComboBox *>(&widget))
        return QString::number(comboBox->currentIndex());
    if (auto *button = qobject_cast<const QAbstractButton *>(&widget))
        return button->isChecked() ? QStringLiteral("checked") : QStringLiteral("unchecked");
    if (auto *spinBox = qobject_cast<const QSpinBox *>(&widget))
        return QString::number(spinBox->value());
    if (auto *spinBox = qobject_cast<const QDoubleSpinBox *>(&widget))
        return QString::number(spinBox->value(), 'f', 2);
    if (auto *lineEdit = qobject_cast<const QLineEdit *>(&widget))
        return lineEdit->text();
    return {};
}

// The control's own flag: a control on a disabled page keeps it.
bool ownEnabled(const QWidget &widget)
{
    return !widget.testAttribute(Qt::WA_ForceDisabled);
}

} // namespace

QVariant controlValue(const QWidget &window, const QString &control, const QByteArray &property)
{
    const QWidget *widget = controlOf(window, control);
    if (property == "hidden")
        return widget->isHidden();
    if (property == "ownEnabled")
        return ownEnabled(*widget);
    return widget->property(property.constData());
}

QStringList describe(const ControlValues &values)
{
    QStringList lines;
    for (const ControlValue &value : values) {
        lines << QStringLiteral("%1 %2 %3")
                     .arg(value.control, QString::fromLatin1(value.property),
                          value.value.toString());
    }
    return lines;
}

QStringList describeForm(const QWidget &window, const ControlValues &like)
{
    ControlValues actual = like;
    for (ControlValue &value : actual)
        value.value = controlValue(window, value.control, value.property);
    return describe(actual);
}

void setControlValues(QWidget &window, const ControlValues &values)
{
    for (const ControlValue &value : values) {
        if (!controlOf(window, value.control)->setProperty(value.property.constData(), value.value))
            qFatal("Cannot set %s of %s", value.property.constData(), qPrintable(value.control));
    }
}

QStringList formSnapshot(const QWidget &window)
{
    QStringList lines;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_")))
            continue;
        lines << QStringLiteral("%1: %2 %3%4")
                     .arg(widget->objectName(), valueText(*widget),
                          ownEnabled(*widget) ? QStringLiteral("enabled")
                                              : QStringLiteral("disabled"),
                          widget->isHidden() ? QStringLiteral(" hidden") : QString());
    }
    return lines;
}
