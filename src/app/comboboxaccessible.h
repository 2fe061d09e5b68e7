#pragma once

// What a screen reader is told about a combo box of the window: its caption (the labelled-by
// relation of its buddy label), its role, and its current item, as a value it can read on focus
// and as an announcement when the item changes. The toolkit's own interface on this platform
// offers neither: the current item is in no interface a screen reader reads, and a change of item
// reaches it only as events it drops for combo boxes. Nothing of the widget changes; this is the
// accessible view of it only.

#include <QAccessibleWidget>
#include <QHash>

class QComboBox;

class ComboBoxAccessible : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit ComboBoxAccessible(QComboBox *comboBox);
    ~ComboBoxAccessible() override;

    void *interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text t) const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;

    // The text interface holds the current item, read only.
    void selection(int selectionIndex, int *startOffset, int *endOffset) const override;
    int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int startOffset, int endOffset) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    QString attributes(int offset, int *startOffset, int *endOffset) const override;

private:
    QComboBox *comboBox() const;
    QString currentItem() const;

    mutable QHash<int, QAccessible::Id> m_items;
};

// Makes every combo box created from now on (and every one whose interface is not built yet) use
// ComboBoxAccessible. Call once, after the application object exists.
void installComboBoxAccessibility();
