// The application shell: start-up prints nothing, the MainWindow meta-object and the process
// itself. The window's widgets, its frame and tabs included, belong to tst_pages.

#include "consolecapture.h"
#include "mainwindow.h"

#include <QCheckBox>
#include <QMetaMethod>
#include <QProcess>
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

class TestShell : public QObject
{
    Q_OBJECT

private slots:
    void constructionPrintsNothing();
    void metaObject_data();
    void metaObject();
    void metaObjectHasNothingElse();
    void metaCast();
    void gimbalSlotRunsTwicePerChange();
    void processExitsWithEventLoopResult_data();
    void processExitsWithEventLoopResult();
};

void TestShell::constructionPrintsNothing()
{
    ConsoleCapture console;
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(console.all(), QStringList());
    QCOMPARE(console.unterminated(), QString());
}

void TestShell::metaObject_data()
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

void TestShell::metaObject()
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

void TestShell::metaObjectHasNothingElse()
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

void TestShell::metaCast()
{
    MainWindow window;
    QCOMPARE(window.qt_metacast("MainWindow"), static_cast<void *>(&window));
    QCOMPARE(window.qt_metacast(nullptr), nullptr);
    QCOMPARE(window.qt_metacast("QMainWindow"),
             static_cast<void *>(static_cast<QMainWindow *>(&window)));
    QCOMPARE(window.qt_metacast("QLineEdit"), nullptr);
    QCOMPARE(window.metaObject(), &MainWindow::staticMetaObject);
}

void TestShell::gimbalSlotRunsTwicePerChange()
{
    MainWindow window;
    auto *gimbal = window.findChild<QCheckBox *>(QStringLiteral("cbPeripheryGimbalrc"));
    ConsoleCapture console;
    gimbal->setChecked(true);
    const QStringList gimbalLines = console.out().filter(QStringLiteral("on cb gimbalrc"));
    QCOMPARE(gimbalLines, QStringList({"on cb gimbalrc 2", "on cb gimbalrc 2"}));
}

void TestShell::processExitsWithEventLoopResult_data()
{
    QTest::addColumn<QString>("exitCodeSetting");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("window closed") << QString() << 0;
    QTest::newRow("loop ended with 7") << QStringLiteral("7") << 7;
}

void TestShell::processExitsWithEventLoopResult()
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

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
