#include "comboboxaccessible.h"

#include "comboboxitemaccessible.h"

#include <QAbstractItemView>
#include <QComboBox>

namespace {

QAccessibleInterface *comboBoxFactory(const QString &className, QObject *object)
{
    if (className != QLatin1String("QComboBox") || !object || !object->isWidgetType())
        return nullptr;
    auto *comboBox = static_cast<QComboBox *>(object);
    if (comboBox->isEditable())
        return nullptr; // the toolkit's own interface speaks the line edit
    return new ComboBoxAccessible(comboBox);
}

} // namespace

ComboBoxAccessible::ComboBoxAccessible(QComboBox *comboBox)
    : QAccessibleWidget(comboBox, QAccessible::ComboBox)
{
    // A change of item is announced as the focus of the box's list moving to the new item, which
    // a screen reader speaks at once; the keyboard focus stays on the box. The toolkit's own
    // announcement of the change (a new name and a selection change of the box) is one a screen
    // reader drops for combo boxes. Only while the box has the focus: a rule changing another
    // box says nothing, as before.
    QObject::connect(comboBox, QOverload<int>::of(&QComboBox::currentIndexChanged), comboBox,
                     [comboBox](int index) {
                         if (index < 0 || !comboBox->hasFocus())
                             return;
                         QAccessibleEvent event(comboBox, QAccessible::Focus);
                         event.setChild(index);
                         QAccessible::updateAccessibility(&event);
                     });
}

ComboBoxAccessible::~ComboBoxAccessible()
{
    for (QAccessible::Id id : qAsConst(m_items))
        QAccessible::deleteAccessibleInterface(id);
}

QComboBox *ComboBoxAccessible::comboBox() const
{
    return static_cast<QComboBox *>(object());
}

QString ComboBoxAccessible::currentItem() const
{
    return comboBox()->currentText();
}

void *ComboBoxAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString ComboBoxAccessible::text(QAccessible::Text t) const
{
    // Named by its current item, as the toolkit names it on this platform; the caption comes
    // through the labelled-by relation.
    if (t == QAccessible::Name || t == QAccessible::Value)
        return currentItem();
    return QAccessibleWidget::text(t);
}

int ComboBoxAccessible::childCount() const
{
    return comboBox()->count();
}

QAccessibleInterface *ComboBoxAccessible::child(int index) const
{
    if (index < 0 || index >= comboBox()->count())
        return nullptr;
    auto found = m_items.constFind(index);
    if (found != m_items.constEnd())
        return QAccessible::accessibleInterface(*found);
    auto *item = new ComboBoxItemAccessible(comboBox(), index);
    m_items.insert(index, QAccessible::registerAccessibleInterface(item));
    return item;
}

int ComboBoxAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    for (auto it = m_items.constBegin(); it != m_items.constEnd(); ++it) {
        if (QAccessible::accessibleInterface(it.value()) == child)
            return it.key();
    }
    return -1;
}

QStringList ComboBoxAccessible::actionNames() const
{
    return {showMenuAction(), pressAction()};
}

void ComboBoxAccessible::doAction(const QString &actionName)
{
    if (actionName == showMenuAction() || actionName == pressAction())
        comboBox()->showPopup();
}

void ComboBoxAccessible::selection(int, int *startOffset, int *endOffset) const
{
    *startOffset = *endOffset = 0;
}

int ComboBoxAccessible::selectionCount() const
{
    return 0;
}

void ComboBoxAccessible::addSelection(int, int) {}

void ComboBoxAccessible::removeSelection(int) {}

void ComboBoxAccessible::setSelection(int, int, int) {}

int ComboBoxAccessible::cursorPosition() const
{
    return 0;
}

void ComboBoxAccessible::setCursorPosition(int) {}

QString ComboBoxAccessible::text(int startOffset, int endOffset) const
{
    const QString item = currentItem();
    if (endOffset < 0 || endOffset > item.size())
        endOffset = item.size();
    startOffset = qBound(0, startOffset, endOffset);
    return item.mid(startOffset, endOffset - startOffset);
}

int ComboBoxAccessible::characterCount() const
{
    return currentItem().size();
}

QRect ComboBoxAccessible::characterRect(int) const
{
    return QRect();
}

int ComboBoxAccessible::offsetAtPoint(const QPoint &) const
{
    return -1;
}

void ComboBoxAccessible::scrollToSubstring(int, int) {}

QString ComboBoxAccessible::attributes(int, int *startOffset, int *endOffset) const
{
    *startOffset = 0;
    *endOffset = characterCount();
    return QString();
}

void installComboBoxAccessibility()
{
    QAccessible::installFactory(comboBoxFactory);
}
