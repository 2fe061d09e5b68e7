// The application shell: the window frame, the MainWindow meta-object and the process itself.

#include "consolecapture.h"
#include "mainwindow.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QMetaMethod>
#include <QProcess>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QtTest>

namespace {

// What Qt itself may say on stderr on a machine without a session; never the editor's words.
QStringList withoutToolkitNotices(const QString &stderrText)
{
    QStringList lines = stderrText.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const QString &line) {
                                   return line.startsWith(QLatin1String("QStandardPaths: ")) ||
                                          line == QLatin1String("This plugin does not support "
                                                                "propagateSizeHints()");
                               }),
                lines.end());
    return lines;
}

struct EditorRun
{
    int exitCode;
    QByteArray out;
    QByteArray err;
};

EditorRun runEditor(const QProcessEnvironment &environment)
{
    QProcess editor;
    editor.setProcessEnvironment(environment);
    editor.start(QStringLiteral(AUTOCLOSE_EDITOR), QStringList());
    const bool finished = editor.waitForFinished(60000);
    return {finished && editor.exitStatus() == QProcess::NormalExit ? editor.exitCode() : -1,
            editor.readAllStandardOutput(), editor.readAllStandardError()};
}

} // namespace

class ShellTest : public QObject
{
    Q_OBJECT

private slots:
    void constructionPrintsNothing();
    void frame();
    void tabs_data();
    void tabs();
    void buttonRow();
    void metaObject_data();
    void metaObject();
    void metaObjectHasNothingElse();
    void metaCast();
    void gimbalSlotRunsTwicePerChange();
    void processExitsWithEventLoopResult_data();
    void processExitsWithEventLoopResult();
};

void ShellTest::constructionPrintsNothing()
{
    ConsoleCapture console;
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(console.all(), QStringList());
    QCOMPARE(console.unterminated(), QString());
}

void ShellTest::frame()
{
    MainWindow window;
    QCOMPARE(window.objectName(), QStringLiteral("MainWindow"));
    QCOMPARE(window.windowTitle(), QStringLiteral("Lumarex 2.0 - Configuration- v1.9.1"));
    QCOMPARE(window.size(), QSize(803, 567));

    auto *central = window.centralWidget();
    QCOMPARE(central->objectName(), QStringLiteral("centralWidget"));
    auto *grid = qobject_cast<QGridLayout *>(central->layout());
    QVERIFY(grid);
    QCOMPARE(grid->objectName(), QStringLiteral("gridLayout_10"));
    QCOMPARE(grid->spacing(), 6);
    QCOMPARE(grid->contentsMargins(), QMargins(11, 11, 11, 11));

    auto *tabs = window.findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    QVERIFY(tabs);
    QCOMPARE(grid->indexOf(tabs), grid->indexOf(grid->itemAtPosition(0, 0)->widget()));
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(tabs->minimumSize(), QSize(0, 0));
    QVERIFY(tabs->isEnabled());

    QCOMPARE(window.menuBar()->objectName(), QStringLiteral("menuBar"));
    QCOMPARE(window.menuBar()->geometry(), QRect(0, 0, 803, 21));
    QVERIFY(window.menuBar()->actions().isEmpty());
    QCOMPARE(window.statusBar()->objectName(), QStringLiteral("statusBar"));
    QCOMPARE(window.statusBar()->currentMessage(), QString());
}

void ShellTest::tabs_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << "tab_5"
                       << "Periphery";
    QTest::newRow("1") << 1 << "tab_4"
                       << "Trigger";
    QTest::newRow("2") << 2 << "tabSerial"
                       << "GPS/Serial";
    QTest::newRow("3") << 3 << "tab_SBUS"
                       << "SBUS/PPM";
    QTest::newRow("4") << 4 << "tab_3"
                       << "Extensions";
    QTest::newRow("5") << 5 << "Isotherms"
                       << "Isotherms";
    QTest::newRow("6") << 6 << "tab_Overlay"
                       << "Overlay";
    QTest::newRow("7") << 7 << "tab_2"
                       << "Recording Options";
}

void ShellTest::tabs()
{
    QFETCH(int, index);
    QFETCH(QString, page);
    QFETCH(QString, text);
    MainWindow window;
    auto *tabs = window.findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    QCOMPARE(tabs->count(), 8);
    QCOMPARE(tabs->widget(index)->objectName(), page);
    QCOMPARE(tabs->tabText(index), text);
}

void ShellTest::buttonRow()
{
    MainWindow window;
    auto *grid = qobject_cast<QGridLayout *>(window.centralWidget()->layout());
    auto *row = qobject_cast<QHBoxLayout *>(grid->itemAtPosition(1, 0)->layout());
    QVERIFY(row);
    QCOMPARE(row->objectName(), QStringLiteral("horizontalLayout_2"));
    QCOMPARE(row->spacing(), 6);
    QCOMPARE(row->count(), 3);

    // A spacer first pushes both buttons to the right-hand end: load left of save.
    QSpacerItem *spacer = row->itemAt(0)->spacerItem();
    QVERIFY(spacer);
    QCOMPARE(spacer->sizeHint(), QSize(40, 20));
    QCOMPARE(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);

    auto *load = qobject_cast<QPushButton *>(row->itemAt(1)->widget());
    auto *save = qobject_cast<QPushButton *>(row->itemAt(2)->widget());
    QVERIFY(load && save);
    QCOMPARE(load->objectName(), QStringLiteral("btnReadConf"));
    QCOMPARE(load->text(), QStringLiteral("Read from file"));
    QCOMPARE(save->objectName(), QStringLiteral("btnSetConf"));
    QCOMPARE(save->text(), QStringLiteral("Write to file"));
    QCOMPARE(save->toolTip(), QString());
    QCOMPARE(row->stretch(1), 0);
    QCOMPARE(row->stretch(2), 0);

    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(load->geometry().right() < save->geometry().left());
    QCOMPARE(save->geometry().right(), window.centralWidget()->width() - 1 - 11);
}

void ShellTest::metaObject_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QByteArrayList>("parameterNames");
    QTest::newRow("save") << 0 << QByteArray("on_btnSetConf_clicked()") << QByteArrayList();
    QTest::newRow("load") << 1 << QByteArray("on_btnReadConf_clicked()") << QByteArrayList();
    QTest::newRow("gps") << 2 << QByteArray("on_cbPeripheryGPSIndexChanged(int)")
                         << QByteArrayList{"i"};
    QTest::newRow("pin mode") << 3 << QByteArray("on_cbTriggerPinModeIndexChanged(int)")
                              << QByteArrayList{"i"};
    QTest::newRow("pin mode text")
        << 4 << QByteArray("on_cbTriggerPinMode_currentIndexChanged(QString)")
        << QByteArrayList{"arg1"};
    QTest::newRow("gimbal") << 5 << QByteArray("on_cbPeripheryGimbalrc_stateChanged(int)")
                            << QByteArrayList{"i"};
    QTest::newRow("shutter") << 6 << QByteArray("on_cb_externalshutter_stateChanged(int)")
                             << QByteArrayList{"arg1"};
}

void ShellTest::metaObject()
{
    QFETCH(int, index);
    QFETCH(QByteArray, signature);
    QFETCH(QByteArrayList, parameterNames);
    const QMetaObject &meta = MainWindow::staticMetaObject;
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QCOMPARE(method.methodSignature(), signature);
    QCOMPARE(method.methodType(), QMetaMethod::Slot);
    QCOMPARE(method.access(), QMetaMethod::Private);
    QCOMPARE(method.returnType(), int(QMetaType::Void));
    QCOMPARE(method.parameterNames(), parameterNames);
}

void ShellTest::metaObjectHasNothingElse()
{
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QCOMPARE(meta.className(), "MainWindow");
    QCOMPARE(meta.superClass(), &QMainWindow::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 7);
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
    QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 0);
    QCOMPARE(meta.classInfoCount() - meta.classInfoOffset(), 0);
    QCOMPARE(meta.constructorCount(), 0);
}

void ShellTest::metaCast()
{
    MainWindow window;
    QCOMPARE(window.qt_metacast("MainWindow"), static_cast<void *>(&window));
    QCOMPARE(window.qt_metacast(nullptr), nullptr);
    QCOMPARE(window.qt_metacast("QMainWindow"),
             static_cast<void *>(static_cast<QMainWindow *>(&window)));
    QCOMPARE(window.qt_metacast("QLineEdit"), nullptr);
    QCOMPARE(window.metaObject(), &MainWindow::staticMetaObject);
}

void ShellTest::gimbalSlotRunsTwicePerChange()
{
    MainWindow window;
    auto *gimbal = window.findChild<QCheckBox *>(QStringLiteral("cbPeripheryGimbalrc"));
    ConsoleCapture console;
    gimbal->setChecked(true);
    const QStringList gimbalLines = console.out().filter(QStringLiteral("on cb gimbalrc"));
    QCOMPARE(gimbalLines, QStringList({"on cb gimbalrc 2", "on cb gimbalrc 2"}));
}

void ShellTest::processExitsWithEventLoopResult_data()
{
    QTest::addColumn<QString>("exitCodeSetting");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("window closed") << QString() << 0;
    QTest::newRow("loop ended with 7") << QStringLiteral("7") << 7;
}

void ShellTest::processExitsWithEventLoopResult()
{
    QFETCH(QString, exitCodeSetting);
    QFETCH(int, exitCode);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    if (!exitCodeSetting.isEmpty())
        environment.insert(QStringLiteral("AUTOCLOSE_EXIT_CODE"), exitCodeSetting);

    const EditorRun run = runEditor(environment);
    QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(run.out, QByteArray());
    QCOMPARE(withoutToolkitNotices(QString::fromLocal8Bit(run.err)), QStringList());
}

QTEST_MAIN(ShellTest)
#include "tst_shell.moc"
