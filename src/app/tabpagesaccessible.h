#pragma once

// What a screen reader is told about the stack of pages inside the window's tab widget: a plain
// container of the pages, not a "layered pane". The toolkit exposes that stack with a role a
// screen reader speaks on every entry into a page, after the page tab list has already named
// the page. Its children, the pages, stay as they are; nothing of the widget changes.

#include <QAccessibleWidget>

class QStackedWidget;

class TabPagesAccessible : public QAccessibleWidget
{
public:
    explicit TabPagesAccessible(QStackedWidget *stack);

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

private:
    QStackedWidget *stack() const;
};

// Makes the page stack of every tab widget created from now on use TabPagesAccessible. Call
// once, after the application object exists and before the form is built.
void installTabPagesAccessibility();
