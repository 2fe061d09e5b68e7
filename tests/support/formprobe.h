#pragma once

// Reads and sets controls of the form by object name, so that data tables can name them.

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariant>

class QWidget;

// A control's Qt property (currentIndex, checked, value, text) or one of two flags of the
// control itself: "ownEnabled" (a control on a disabled page keeps its own flag) and "hidden".
struct ControlValue
{
    QString control;
    QByteArray property;
    QVariant value;
};
Q_DECLARE_METATYPE(ControlValue)

using ControlValues = QList<ControlValue>;

QVariant controlValue(const QWidget &window, const QString &control, const QByteArray &property);

// "<control> <property> <value>" per value, so that a failed comparison of two lists names the
// control that differs.
QStringList describe(const ControlValues &values);
// The same lines with the values that the form holds for the controls and properties of like.
QStringList describeForm(const QWidget &window, const ControlValues &like);

// Sets each property through its setter, as choosing an item or ticking a box does.
void setControlValues(QWidget &window, const ControlValues &values);

// One line per named control with its value and its own enabled and hidden flags; equal snapshots
// before and after an action mean the action left the form as it was.
QStringList formSnapshot(const QWidget &window);
