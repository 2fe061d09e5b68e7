#pragma once

// One item of a combo box's list as a screen reader sees it: a list item named by its text,
// selected when it is the box's current item. The items are the box's accessible children, so
// that a change of item can be announced as the focus of the box's list moving to the new item.

#include <QAccessibleInterface>
#include <QPointer>

class QComboBox;

class ComboBoxItemAccessible : public QAccessibleInterface
{
public:
    ComboBoxItemAccessible(QComboBox *comboBox, int index);

    bool isValid() const override;
    QObject *object() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QString text(QAccessible::Text t) const override;
    void setText(QAccessible::Text t, const QString &text) override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;

private:
    QPointer<QComboBox> m_comboBox;
    int m_index;
};
