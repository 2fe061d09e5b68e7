// The form's facts: what the generator reads from a Designer form (small forms written out
// here, one quirk of the generated setup code or the toolkit each), and the generated table of
// the real form held equal to a live window, control by control, so that the table cannot
// drift from what uic builds. The pairing of fields and controls is checked against both.

#include "consolecapture.h"
#include "controllookup.h"
#include "formfields.h"
#include "formreader.h"
#include "mainwindow.h"
#include "recorddiff.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString qString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

// A form with one tab page holding the given layout items.
QByteArray formWith(const QByteArray &pageItems)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ui version=\"4.0\">\n"
           "<widget class=\"QMainWindow\" name=\"MainWindow\"><widget class=\"QWidget\" "
           "name=\"central\"><layout class=\"QGridLayout\" name=\"outer\"><item row=\"0\" "
           "column=\"0\"><widget class=\"QTabWidget\" name=\"tabs\">"
           "<widget class=\"QWidget\" name=\"first\"><attribute name=\"title\"><string>&amp;First"
           "</string></attribute><layout class=\"QGridLayout\" name=\"grid\">" +
           pageItems + "</layout></widget></widget></item></layout></widget></widget></ui>\n";
}

QByteArray cell(int row, int column, const QByteArray &widget)
{
    return "<item row=\"" + QByteArray::number(row) + "\" column=\"" + QByteArray::number(column) +
           "\">" + widget + "</item>";
}

QByteArray label(const QByteArray &name, const QByteArray &text, const QByteArray &buddy = {})
{
    const QByteArray buddyProperty =
        buddy.isEmpty() ? QByteArray()
                        : "<property name=\"buddy\"><cstring>" + buddy + "</cstring></property>";
    return "<widget class=\"QLabel\" name=\"" + name + "\"><property name=\"text\"><string>" +
           text + "</string></property>" + buddyProperty + "</widget>";
}

std::vector<formfacts::Control> readForm(const QByteArray &form)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("form.ui"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(form) != form.size())
        qFatal("cannot write %s", qPrintable(path));
    file.close();
    QString error;
    const std::unique_ptr<formfacts::UiElement> tree = formfacts::readUiFile(path, error);
    if (!tree)
        qFatal("%s", qPrintable(error));
    return formfacts::readControls(*tree, error);
}

// The tab page that holds the widget, and that page's tab widget.
QWidget *pageOf(QWidget *widget, QTabWidget **tabs)
{
    for (QWidget *page = widget; page && page->parentWidget(); page = page->parentWidget()) {
        // A page's parent is the tab widget's internal stack.
        if (auto *owner = qobject_cast<QTabWidget *>(page->parentWidget()->parentWidget())) {
            *tabs = owner;
            return page;
        }
    }
    return nullptr;
}

QString shownText(QString text)
{
    static const QRegularExpression marker(QStringLiteral("&(.)"));
    return text.replace(marker, QStringLiteral("\\1"));
}

} // namespace

class TestFacts : public QObject
{
    Q_OBJECT

private slots:
    void readsSpinBoxesAsTheToolkitSetsThem_data();
    void readsSpinBoxesAsTheToolkitSetsThem();
    void readsComboBoxSelection_data();
    void readsComboBoxSelection();
    void findsCaptions_data();
    void findsCaptions();
    void readsPagesAndCheckBoxes();

    void tableHasEveryInputControlOfTheWindow();
    void tableMatchesLiveWindow_data();
    void tableMatchesLiveWindow();
    void everyFieldPairsWithAControlOfItsKind();
    void untouchedFormRecordIsWhatTheEditorSaves();
};

void TestFacts::readsSpinBoxesAsTheToolkitSetsThem_data()
{
    QTest::addColumn<QByteArray>("widget");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    const QByteArray spin = "<widget class=\"QSpinBox\" name=\"box\">";
    const QByteArray doubleSpin = "<widget class=\"QDoubleSpinBox\" name=\"box\">";
    auto property = [](const char *name, const char *type, const char *value) {
        return QByteArray("<property name=\"") + name + "\"><" + type + ">" + value + "</" + type +
               "></property>";
    };
    QTest::newRow("spin box, no properties") << spin + "</widget>" << 0.0 << 99.0 << 0.0 << 0;
    QTest::newRow("double spin box, no properties")
        << doubleSpin + "</widget>" << 0.0 << 99.99 << 0.0 << 2;
    QTest::newRow("value before maximum is cut to 99")
        << spin + property("value", "number", "500") + property("maximum", "number", "1000") +
               "</widget>"
        << 0.0 << 1000.0 << 99.0 << 0;
    QTest::newRow("minimum raises the value")
        << spin + property("minimum", "number", "5") + "</widget>" << 5.0 << 99.0 << 5.0 << 0;
    QTest::newRow("minimum above the maximum raises it")
        << spin + property("minimum", "number", "150") + "</widget>" << 150.0 << 150.0 << 150.0
        << 0;
    QTest::newRow("maximum below the minimum lowers it")
        << spin + property("maximum", "number", "-3") + "</widget>" << -3.0 << -3.0 << -3.0 << 0;
    QTest::newRow("decimals") << doubleSpin + property("decimals", "number", "1") +
                                     property("minimum", "double", "-10.000000000000000") +
                                     "</widget>"
                              << -10.0 << 99.99 << 0.0 << 1;
}

void TestFacts::readsSpinBoxesAsTheToolkitSetsThem()
{
    QFETCH(QByteArray, widget);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, value);
    QFETCH(int, decimals);
    const std::vector<formfacts::Control> controls = readForm(formWith(cell(0, 1, widget)));
    QCOMPARE(int(controls.size()), 1);
    QCOMPARE(controls[0].minimum, minimum);
    QCOMPARE(controls[0].maximum, maximum);
    QCOMPARE(controls[0].startValue, value);
    QCOMPARE(controls[0].decimals, decimals);
}

void TestFacts::readsComboBoxSelection_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    const QByteArray current = "<property name=\"currentIndex\"><number>";
    const QByteArray currentEnd = "</number></property>";
    const QByteArray currentText = "<property name=\"currentText\"><string>";
    const QByteArray currentTextEnd = "</string></property>";
    QTest::newRow("first item without a current index") << QByteArray() << 0 << "a";
    QTest::newRow("current index") << current + "2" + currentEnd << 2 << "c";
    QTest::newRow("index past the items selects none") << current + "3" + currentEnd << -1 << "";
    QTest::newRow("current text selects its item")
        << currentText + "b" + currentTextEnd << 1 << "b";
    QTest::newRow("current text of no item keeps the first")
        << currentText + "x" + currentTextEnd << 0 << "a";
    QTest::newRow("current index is set last")
        << currentText + "b" + currentTextEnd + current + "2" + currentEnd << 2 << "c";
}

void TestFacts::readsComboBoxSelection()
{
    QFETCH(QByteArray, properties);
    QFETCH(int, index);
    QFETCH(QString, text);
    QByteArray items;
    for (const char *item : {"a", "b", "c"})
        items += QByteArray("<item><property name=\"text\"><string>") + item +
                 "</string></property></item>";
    const std::vector<formfacts::Control> controls = readForm(formWith(cell(
        0, 1, "<widget class=\"QComboBox\" name=\"box\">" + properties + items + "</widget>")));
    QCOMPARE(int(controls.size()), 1);
    QCOMPARE(controls[0].items, QStringList({"a", "b", "c"}));
    QCOMPARE(controls[0].startIndex, index);
    QCOMPARE(controls[0].startText, text);
}

void TestFacts::findsCaptions_data()
{
    const QByteArray box = "<widget class=\"QCheckBox\" name=\"box\"/>";
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<QString>("caption");
    QTest::newRow("left in the row") << cell(0, 0, label("l", "Left")) + cell(0, 1, box) << "Left";
    QTest::newRow("nearest to the left")
        << cell(0, 0, label("far", "Far")) + cell(0, 1, label("near", "Near")) + cell(0, 2, box)
        << "Near";
    QTest::newRow("above in the column, when the row has none")
        << cell(0, 1, label("l", "Above")) + cell(1, 1, box) << "Above";
    QTest::newRow("buddy wins") << cell(0, 0, label("l", "Left")) +
                                       cell(1, 0, label("b", "B&amp;uddy", "box")) + cell(0, 1, box)
                                << "Buddy";
    QTest::newRow("doubled ampersand")
        << cell(0, 0, label("l", "A &amp;&amp; B")) + cell(0, 1, box) << "A & B";
    QTest::newRow("trailing space kept")
        << cell(0, 0, label("l", "Mode ")) + cell(0, 1, box) << "Mode ";
    QTest::newRow("no label") << cell(0, 1, box) << "";
}

void TestFacts::findsCaptions()
{
    QFETCH(QByteArray, items);
    QFETCH(QString, caption);
    const std::vector<formfacts::Control> controls = readForm(formWith(items));
    QCOMPARE(int(controls.size()), 1);
    QCOMPARE(controls[0].caption, caption);
}

void TestFacts::readsPagesAndCheckBoxes()
{
    const std::vector<formfacts::Control> controls = readForm(formWith(
        cell(0, 0,
             "<widget class=\"QCheckBox\" name=\"on\"><property name=\"checked\"><bool>true"
             "</bool></property></widget>") +
        cell(1, 0, "<widget class=\"QCheckBox\" name=\"off\"/>") +
        cell(2, 0,
             "<widget class=\"QLineEdit\" name=\"edit\"><property name=\"text\"><string>7"
             "</string></property></widget>")));
    QCOMPARE(int(controls.size()), 3);
    QCOMPARE(controls[0].objectName, QStringLiteral("on"));
    QCOMPARE(controls[0].page, QStringLiteral("First"));
    QCOMPARE(controls[0].pageIndex, 0);
    QVERIFY(controls[0].startChecked);
    QVERIFY(!controls[1].startChecked);
    QCOMPARE(controls[2].className, QStringLiteral("QLineEdit"));
    QCOMPARE(controls[2].startText, QStringLiteral("7"));
}

void TestFacts::tableHasEveryInputControlOfTheWindow()
{
    MainWindow window;
    QStringList live;
    const auto tabs = window.findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    for (QWidget *widget : tabs->findChildren<QWidget *>()) {
        if (qobject_cast<QComboBox *>(widget) || qobject_cast<QAbstractSpinBox *>(widget) ||
            qobject_cast<QCheckBox *>(widget) ||
            (qobject_cast<QLineEdit *>(widget) &&
             !qobject_cast<QAbstractSpinBox *>(widget->parentWidget())))
            live << widget->objectName();
    }
    QStringList table;
    for (std::size_t i = 0; i < lumarex::formControlCount(); ++i)
        table << qString(lumarex::formControls()[i].objectName);
    live.sort();
    table.sort();
    QCOMPARE(table, live);
}

void TestFacts::tableMatchesLiveWindow_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < lumarex::formControlCount(); ++i) {
        const std::string name(lumarex::formControls()[i].objectName);
        QTest::newRow(name.c_str()) << static_cast<int>(i);
    }
}

void TestFacts::tableMatchesLiveWindow()
{
    QFETCH(int, index);
    const lumarex::ControlFacts &facts = lumarex::formControls()[index];
    MainWindow window;
    auto &control = controlNamed<QWidget>(window, qString(facts.objectName));
    QCOMPARE(control.metaObject()->className(), qString(facts.className));

    QTabWidget *tabs = nullptr;
    QWidget *page = pageOf(&control, &tabs);
    QVERIFY(page);
    QCOMPARE(tabs->indexOf(page), facts.pageIndex);
    QCOMPARE(shownText(tabs->tabText(facts.pageIndex)), qString(facts.page));

    // The caption is a label beside the control, in the same parent widget.
    const auto labels =
        control.parentWidget()->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    const bool captioned = std::any_of(labels.begin(), labels.end(), [&facts](const QLabel *label) {
        return shownText(label->text()) == qString(facts.caption);
    });
    QVERIFY2(captioned, qPrintable(qString(facts.caption)));

    if (auto *combo = qobject_cast<QComboBox *>(&control)) {
        QStringList items;
        for (std::string_view item : facts.items())
            items << qString(item);
        QCOMPARE(combo->count(), facts.itemCount);
        for (int i = 0; i < combo->count(); ++i)
            QCOMPARE(combo->itemText(i), items.at(i));
        QCOMPARE(combo->currentIndex(), facts.startIndex);
        QCOMPARE(combo->currentText(), qString(facts.startText));
    } else if (auto *spin = qobject_cast<QSpinBox *>(&control)) {
        QCOMPARE(double(spin->minimum()), facts.minimum);
        QCOMPARE(double(spin->maximum()), facts.maximum);
        QCOMPARE(double(spin->value()), facts.startValue);
    } else if (auto *doubleSpin = qobject_cast<QDoubleSpinBox *>(&control)) {
        QCOMPARE(doubleSpin->minimum(), facts.minimum);
        QCOMPARE(doubleSpin->maximum(), facts.maximum);
        QCOMPARE(doubleSpin->value(), facts.startValue);
        QCOMPARE(doubleSpin->decimals(), facts.decimals);
    } else if (auto *check = qobject_cast<QCheckBox *>(&control)) {
        QCOMPARE(check->isChecked(), facts.startChecked);
    } else if (auto *edit = qobject_cast<QLineEdit *>(&control)) {
        QCOMPARE(edit->text(), qString(facts.startText));
    } else {
        QFAIL("a control of a class the table does not describe");
    }
}

void TestFacts::everyFieldPairsWithAControlOfItsKind()
{
    for (std::size_t i = 0; i < lumarex::formFieldCount(); ++i) {
        const lumarex::FormField &entry = lumarex::formFields()[i];
        const lumarex::ControlFacts *control = lumarex::findControl(entry.control);
        QVERIFY2(control, entry.control.data());
        QCOMPARE(lumarex::controlOf(entry.field), control);
        const std::string_view expectedClass = [&entry]() -> std::string_view {
            switch (entry.stored) {
            case lumarex::Stored::Checked:
                return "QCheckBox";
            case lumarex::Stored::Value:
                return "QSpinBox";
            case lumarex::Stored::Hundredths:
                return "QDoubleSpinBox";
            case lumarex::Stored::TextNumber:
                return "QLineEdit";
            default:
                return "QComboBox";
            }
        }();
        QCOMPARE(qString(control->className), qString(expectedClass));
    }
    // Every control of the form feeds exactly one field.
    QCOMPARE(lumarex::formFieldCount(), lumarex::formControlCount());
}

void TestFacts::untouchedFormRecordIsWhatTheEditorSaves()
{
    MainWindow window;
    lumarex::ConfigRecord saved;
    {
        const ConsoleCapture quiet;
        saved = window.recordFromForm();
    }
    auto bytes = [](const lumarex::ConfigRecord &record) {
        return QByteArray(reinterpret_cast<const char *>(record.bytes().data()),
                          lumarex::kRecordSize);
    };
    COMPARE_BYTES(bytes(lumarex::untouchedFormRecord()), bytes(saved));
}

QTEST_MAIN(TestFacts)
#include "tst_facts.moc"
