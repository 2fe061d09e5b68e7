#include "comboboxitemaccessible.h"

#include <QComboBox>

ComboBoxItemAccessible::ComboBoxItemAccessible(QComboBox *comboBox, int index)
    : m_comboBox(comboBox), m_index(index)
{}

bool ComboBoxItemAccessible::isValid() const
{
    return m_comboBox && m_index < m_comboBox->count();
}

QObject *ComboBoxItemAccessible::object() const
{
    return nullptr;
}

QAccessibleInterface *ComboBoxItemAccessible::parent() const
{
    return m_comboBox ? QAccessible::queryAccessibleInterface(m_comboBox.data()) : nullptr;
}

QAccessibleInterface *ComboBoxItemAccessible::child(int) const
{
    return nullptr;
}

int ComboBoxItemAccessible::childCount() const
{
    return 0;
}

int ComboBoxItemAccessible::indexOfChild(const QAccessibleInterface *) const
{
    return -1;
}

QAccessibleInterface *ComboBoxItemAccessible::childAt(int, int) const
{
    return nullptr;
}

QString ComboBoxItemAccessible::text(QAccessible::Text t) const
{
    if (!isValid() || t != QAccessible::Name)
        return QString();
    return m_comboBox->itemText(m_index);
}

void ComboBoxItemAccessible::setText(QAccessible::Text, const QString &) {}

QRect ComboBoxItemAccessible::rect() const
{
    return QRect();
}

QAccessible::Role ComboBoxItemAccessible::role() const
{
    return QAccessible::ListItem;
}

QAccessible::State ComboBoxItemAccessible::state() const
{
    QAccessible::State state;
    state.selectable = true;
    state.invisible = true; // the list is shown only while the box is open
    if (isValid() && m_comboBox->currentIndex() == m_index)
        state.selected = true;
    if (!isValid() || !m_comboBox->isEnabled())
        state.disabled = true;
    return state;
}
