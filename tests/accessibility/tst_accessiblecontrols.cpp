// What the toolkit's accessibility interfaces say about every captioned control of the window,
// in process: its role, its spoken name and the caption that labels it. The captions come from
// the form's generated facts, the labels that carry them from the window (the label whose buddy
// the control is); the number of captioned controls and the role of each widget class are
// written out here.

#include "formcontrols.h"
#include "mainwindow.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QtTest>
#include <memory>

namespace {

// A control of the form that a label names as its buddy, with the caption the form gives it.
struct FormCaption
{
    QString label;
    QString text;
    QString control;
    QString controlClass;
};

constexpr int captionedControls = 38;

QAccessible::Role roleOfClass(const QString &widgetClass)
{
    if (widgetClass == QLatin1String("QCheckBox"))
        return QAccessible::CheckBox;
    if (widgetClass == QLatin1String("QComboBox"))
        return QAccessible::ComboBox;
    if (widgetClass == QLatin1String("QSpinBox") || widgetClass == QLatin1String("QDoubleSpinBox"))
        return QAccessible::SpinBox;
    if (widgetClass == QLatin1String("QLineEdit"))
        return QAccessible::EditableText;
    return QAccessible::NoRole;
}

QString fromView(std::string_view view)
{
    return QString::fromUtf8(view.data(), int(view.size()));
}

// Every control of the form's facts that a label of the window names as its buddy.
QVector<FormCaption> captions()
{
    MainWindow window;
    const QList<QLabel *> labels = window.findChildren<QLabel *>();
    QVector<FormCaption> found;
    for (std::size_t i = 0; i < lumarex::formControlCount(); ++i) {
        const lumarex::ControlFacts &facts = lumarex::formControls()[i];
        auto *control = window.findChild<QWidget *>(fromView(facts.objectName));
        for (QLabel *label : labels) {
            if (control != nullptr && label->buddy() == control)
                found.append({label->objectName(), fromView(facts.caption),
                              fromView(facts.objectName), fromView(facts.className)});
        }
    }
    return found;
}

} // namespace

Q_DECLARE_METATYPE(FormCaption)

class TestAccessibleControls : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasACaption();
    void controlSpeaksItsCaption_data();
    void controlSpeaksItsCaption();
    void sbusPageKeepsItsRolesWhenEnabled();
    void comboBoxOffersItsCurrentItem();

private:
    std::unique_ptr<MainWindow> m_window;
};

void TestAccessibleControls::init()
{
    m_window = std::make_unique<MainWindow>();
}

void TestAccessibleControls::cleanup()
{
    m_window.reset();
}

void TestAccessibleControls::everyControlHasACaption()
{
    QCOMPARE(captions().size(), captionedControls);
}

void TestAccessibleControls::controlSpeaksItsCaption_data()
{
    QTest::addColumn<FormCaption>("caption");
    for (const FormCaption &caption : captions())
        QTest::newRow(qPrintable(caption.control)) << caption;
}

void TestAccessibleControls::controlSpeaksItsCaption()
{
    QFETCH(FormCaption, caption);
    auto *control = m_window->findChild<QWidget *>(caption.control);
    auto *label = m_window->findChild<QLabel *>(caption.label);
    QVERIFY(control != nullptr);
    QVERIFY(label != nullptr);
    QCOMPARE(label->text().remove(QLatin1Char('&')), caption.text);
    QCOMPARE(label->buddy(), control);

    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(control);
    QVERIFY(accessible != nullptr);
    QCOMPARE(accessible->role(), roleOfClass(caption.controlClass));
    QVERIFY(!accessible->text(QAccessible::Name).isEmpty());
    // A combo box is named by its current item here; every other control by its caption.
    if (accessible->role() != QAccessible::ComboBox)
        QCOMPARE(accessible->text(QAccessible::Name), caption.text);

    QAccessibleInterface *labelAccessible = QAccessible::queryAccessibleInterface(label);
    QCOMPARE(labelAccessible->role(), QAccessible::StaticText);
    QVector<QAccessibleInterface *> labelledBy;
    const auto relations = accessible->relations(QAccessible::Label);
    for (const auto &relation : relations)
        labelledBy.append(relation.first);
    QVERIFY2(labelledBy.contains(labelAccessible),
             qPrintable(caption.control + " is not labelled by " + caption.label));
}

// The SBUS/PPM page is built disabled; when the trigger mode opens it, its controls must still be
// exposed with their real roles.
void TestAccessibleControls::sbusPageKeepsItsRolesWhenEnabled()
{
    auto *page = m_window->findChild<QWidget *>(QStringLiteral("tab_SBUS"));
    auto *triggerMode = m_window->findChild<QComboBox *>(QStringLiteral("cbTriggerPinMode"));
    QVERIFY(page != nullptr && triggerMode != nullptr);
    QVERIFY(!page->isEnabled());
    triggerMode->setCurrentIndex(1); // "SBUS"
    QVERIFY(page->isEnabled());
    int controls = 0;
    for (const FormCaption &caption : captions()) {
        auto *control = m_window->findChild<QWidget *>(caption.control);
        if (!page->isAncestorOf(control))
            continue;
        ++controls;
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(control);
        QCOMPARE(accessible->role(), roleOfClass(caption.controlClass));
        QVERIFY(!accessible->state().disabled || !control->isEnabled());
    }
    QCOMPARE(controls, 13);
}

// A screen reader reads a combo box's current item from its text, and follows a change through
// the box's items, exposed as its children.
void TestAccessibleControls::comboBoxOffersItsCurrentItem()
{
    const auto comboBoxes = m_window->findChildren<QComboBox *>();
    QVERIFY(!comboBoxes.isEmpty());
    for (QComboBox *comboBox : comboBoxes) {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(comboBox);
        QVERIFY(accessible != nullptr);
        QAccessibleTextInterface *text = accessible->textInterface();
        QVERIFY2(text != nullptr, qPrintable(comboBox->objectName()));
        QCOMPARE(text->text(0, text->characterCount()), comboBox->currentText());
        QCOMPARE(accessible->childCount(), comboBox->count());
        QAccessibleInterface *current = accessible->child(comboBox->currentIndex());
        QVERIFY(current != nullptr);
        QCOMPARE(current->role(), QAccessible::ListItem);
        QCOMPARE(current->text(QAccessible::Name), comboBox->currentText());
        QVERIFY(current->state().selected);
        QCOMPARE(current->parent(), accessible);
        QCOMPARE(accessible->indexOfChild(current), comboBox->currentIndex());
    }
}

QTEST_MAIN(TestAccessibleControls)
#include "tst_accessiblecontrols.moc"
