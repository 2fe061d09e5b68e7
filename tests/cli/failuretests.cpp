// A command that fails leaves every file as it was and adds none; a command that succeeds
// replaces its output whole.

#include "expected.h"
#include "tst_cli.h"
#include "workspace.h"

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QTest>

namespace {

// Every file and folder under the workspace with its contents.
QMap<QString, QByteArray> snapshot(const Workspace &workspace)
{
    QMap<QString, QByteArray> entries;
    QDirIterator it(workspace.path("."), QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        entries.insert(path, file.open(QIODevice::ReadOnly) ? file.readAll() : "<folder>");
    }
    return entries;
}

} // namespace

void TestCli::failedCommandKeepsOutput_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("err");

    const QString noFolder = "cannot write: No such file or directory\n";
    QTest::newRow("import malformed JSON")
        << QStringList{"import", "bad.json", "-o", "existing.bin"}
        << "lxconfig: bad.json: malformed JSON: unterminated object at offset 1\n";
    QTest::newRow("import a bad value")
        << QStringList{"import", "range.json", "-o", "existing.bin"}
        << "lxconfig: range.json: gpsReceiver: expected a whole number from 0 to 255\n";
    QTest::newRow("import a missing file")
        << QStringList{"import", "missing.json", "-o", "existing.bin"}
        << "lxconfig: missing.json: cannot open: No such file or directory\n";
    QTest::newRow("import into a missing folder")
        << QStringList{"import", "good.json", "-o", "nowhere/out.bin"}
        << "lxconfig: nowhere/out.bin: " + noFolder;
    QTest::newRow("export a missing file")
        << QStringList{"export", "missing.bin", "-o", "existing.json"}
        << "lxconfig: missing.bin: cannot open: No such file or directory\n";
    QTest::newRow("export a directory") << QStringList{"export", "folder", "-o", "existing.json"}
                                        << "lxconfig: folder: cannot read: Is a directory\n";
    QTest::newRow("export into a missing folder")
        << QStringList{"export", "good.bin", "-o", "nowhere/out.json"}
        << "lxconfig: nowhere/out.json: " + noFolder;
    QTest::newRow("defaults into a missing folder")
        << QStringList{"defaults", "-o", "nowhere/out.bin"}
        << "lxconfig: nowhere/out.bin: " + noFolder;
    QTest::newRow("defaults onto a directory")
        << QStringList{"defaults", "-o", "folder"}
        << "lxconfig: folder: cannot write: Filename refers to a directory\n";
    QTest::newRow("set a bad value")
        << QStringList{"set", "--raw", "good.bin", "gpsReceiver=256"}
        << "lxconfig: good.bin: gpsReceiver: expected a whole number from 0 to "
           "255\n";
}

void TestCli::failedCommandKeepsOutput()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, err);

    const Workspace workspace;
    workspace.write("existing.bin", QByteArray(300, 'Z'));
    workspace.write("existing.json", "{ \"old\": true }\n");
    workspace.write("bad.json", "{");
    workspace.write("range.json",
                    withLines(kDefaultJson, {R"-(    "gpsReceiver": 256,)-"}).toUtf8());
    workspace.write("good.json", withLines(kDefaultJson).toUtf8());
    const QMap<QString, QByteArray> before = snapshot(workspace);

    COMPARE_RUN(workspace.run(arguments), 1, "", err);
    QCOMPARE(snapshot(workspace), before);
}

void TestCli::defaultsReplacesLongerFile()
{
    // Unlike the editor's save, which writes over the start of a file and keeps the rest.
    const Workspace workspace;
    workspace.write("existing.bin", QByteArray(300, 'Z'));
    COMPARE_RUN(workspace.run({"defaults", "-o", "existing.bin"}), 0, "", "");
    QCOMPARE(workspace.read("existing.bin").toHex(' '), kDefaultBytes.toHex(' '));
}
