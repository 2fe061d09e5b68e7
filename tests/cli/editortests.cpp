// lxconfig's tables held against the editor itself: its item texts against the form's combo
// boxes, its defaults against what the untouched form saves.

#include "consolecapture.h"
#include "itemtexts.h"
#include "mainwindow.h"
#include "tst_cli.h"
#include "workspace.h"

#include <QComboBox>
#include <QSet>
#include <QTest>

namespace {

QStringList textsOf(const std::vector<std::string> &items)
{
    QStringList texts;
    for (const std::string &item : items)
        texts << QString::fromStdString(item);
    return texts;
}

QByteArray bytesOf(const lumarex::ConfigRecord &record)
{
    return QByteArray(reinterpret_cast<const char *>(record.bytes().data()), lumarex::kRecordSize);
}

// What the editor saves from the form as it stands, its console lines held back.
lumarex::ConfigRecord savedRecord(MainWindow &window)
{
    const ConsoleCapture capture;
    return window.recordFromForm();
}

// Chooses the item as the user would, the form rules' console lines held back.
void choose(QComboBox *combo, int index)
{
    const ConsoleCapture capture;
    combo->setCurrentIndex(index);
}

} // namespace

void TestCli::itemTextsMatchForm_data()
{
    QTest::addColumn<QString>("comboName");
    QTest::addColumn<QStringList>("items");
    for (const lxconfig::ItemList &list : lxconfig::itemLists())
        QTest::newRow(list.comboName) << QString::fromLatin1(list.comboName) << textsOf(list.items);
}

void TestCli::itemTextsMatchForm()
{
    QFETCH(QString, comboName);
    QFETCH(QStringList, items);

    MainWindow window;
    const auto *combo = window.findChild<QComboBox *>(comboName);
    QVERIFY(combo);
    QStringList formItems;
    for (int i = 0; i < combo->count(); ++i)
        formItems << combo->itemText(i);
    QCOMPARE(items, formItems);
}

void TestCli::itemListsCoverForm()
{
    MainWindow window;
    QSet<QString> formCombos;
    for (const QComboBox *combo : window.findChildren<QComboBox *>())
        formCombos.insert(combo->objectName());
    QSet<QString> listed;
    for (const lxconfig::ItemList &list : lxconfig::itemLists())
        listed.insert(QString::fromLatin1(list.comboName));
    QCOMPARE(listed, formCombos);
    QCOMPARE(int(lxconfig::itemLists().size()), 23);
}

void TestCli::itemListsMatchSavedFields_data()
{
    itemTextsMatchForm_data();
}

void TestCli::itemListsMatchSavedFields()
{
    QFETCH(QString, comboName);

    // Every item chosen in the form is saved into the list's field as a value for which the
    // list names that same item: the field and the way it picks its item are the editor's.
    const lxconfig::ItemList *list = nullptr;
    for (const lxconfig::ItemList &candidate : lxconfig::itemLists()) {
        if (comboName == QLatin1String(candidate.comboName))
            list = &candidate;
    }
    QVERIFY(list);
    MainWindow window;
    auto *combo = window.findChild<QComboBox *>(comboName);
    QVERIFY(combo);
    for (int i = 0; i < combo->count(); ++i) {
        choose(combo, i);
        const std::uint32_t stored = savedRecord(window).value(list->field);
        QCOMPARE(QString::fromStdString(lxconfig::itemText(*list, stored).value_or("(no item)")),
                 combo->itemText(i));
    }
}

void TestCli::defaultsCommandMatchesEditor()
{
    MainWindow window;
    const Workspace workspace;
    COMPARE_RUN(workspace.run({"defaults", "-o", "LXCONFIG.BIN"}), 0, "", "");
    QCOMPARE(workspace.read("LXCONFIG.BIN").toHex(' '), bytesOf(savedRecord(window)).toHex(' '));
}
