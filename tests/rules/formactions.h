#pragma once

// What a user does to the form, as values that a test's data table can carry: choosing combo box
// items and setting check boxes, each control found by its object name.

#include <QMetaType>
#include <QString>
#include <functional>
#include <initializer_list>

class QWidget;

using FormAction = std::function<void(QWidget &window)>;
Q_DECLARE_METATYPE(FormAction)

FormAction selectItem(const QString &comboBox, int index);
// Empties the combo box, which leaves it without a current item.
FormAction clearItems(const QString &comboBox);
// A partially checked state first makes the box a three-state box, as only such a box has one.
FormAction setCheck(const QString &checkBox, Qt::CheckState state);
FormAction inOrder(std::initializer_list<FormAction> actions);
