#include "tabpagesaccessible.h"

#include <QStackedWidget>
#include <QTabWidget>

namespace {

QAccessibleInterface *tabPagesFactory(const QString &className, QObject *object)
{
    if (className != QLatin1String("QStackedWidget") || !object || !object->isWidgetType())
        return nullptr;
    auto *stack = static_cast<QStackedWidget *>(object);
    if (!qobject_cast<QTabWidget *>(stack->parentWidget()))
        return nullptr; // a stack of its own is the toolkit's business
    return new TabPagesAccessible(stack);
}

} // namespace

// A client area is a container a screen reader passes over: the page is named by the tab list.
TabPagesAccessible::TabPagesAccessible(QStackedWidget *stack)
    : QAccessibleWidget(stack, QAccessible::Client)
{}

QStackedWidget *TabPagesAccessible::stack() const
{
    return static_cast<QStackedWidget *>(object());
}

// The pages in the order of the tabs, as the toolkit lists them.
int TabPagesAccessible::childCount() const
{
    return stack()->count();
}

QAccessibleInterface *TabPagesAccessible::child(int index) const
{
    if (index < 0 || index >= stack()->count())
        return nullptr;
    return QAccessible::queryAccessibleInterface(stack()->widget(index));
}

int TabPagesAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    if (!child)
        return -1;
    return stack()->indexOf(qobject_cast<QWidget *>(child->object()));
}

void installTabPagesAccessibility()
{
    QAccessible::installFactory(tabPagesFactory);
}
