// "Read from file" through the button and the open dialog, on files the editor did not write:
// sizes around the record's, seeded random contents, a folder, a missing path and an endless
// device. For each: the exact console lines on each stream, the form unchanged wherever a check
// fails, no file changed, and no descriptor left open but the one a refused file keeps.

#include "consolecapture.h"
#include "fileprobe.h"
#include "formprobe.h"
#include "loadexpectation.h"
#include "mainwindow.h"
#include "referencechecksum.h"
#include "sizedfiles.h"
#include "storedsettings.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <memory>

namespace {

// What the load does with the valid file cut or grown: refused without the magic (with the
// number at offset 8, here none, as the version), a failed checksum when the file ends before
// it, loaded otherwise.
Expectation expectedLoadOf(const QByteArray &contents)
{
    if (!contents.startsWith("CONF"))
        return refused(0);
    const quint16 computed = referenceChecksum(contents);
    return storedChecksum(contents) == computed ? restored(computed) : checksumFailed(computed);
}

} // namespace

class TestLoadFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void fileOfSize_data();
    void fileOfSize();
    void randomFile_data();
    void randomFile();
    void folder();
    void missingPath();
    void endlessDevice();

private:
    // Presses "Read from file", answers the open dialog with chooseFile and the version dialog
    // as expected, then checks the console, the form and the files in the test's folder.
    void loadThroughButton(const ModalAnswerer::Handler &chooseFile, const Expectation &expected);
    QString writeFile(const QString &name, const QByteArray &contents) const;

    QByteArray m_validFile;
    QStringList m_restoredForm;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<ConsoleCapture> m_console;
    std::unique_ptr<MainWindow> m_window;
    VersionBox m_versionBox;
};

void TestLoadFiles::initTestCase()
{
    MainWindow startForm;
    {
        const ConsoleCapture saveLines; // the save's own lines are not under test here
        m_validFile = storedSettingsFile(startForm);
    }
    // The stored checksum's high byte must not be 0, or the file one byte short would load.
    QVERIFY(m_validFile.at(166) != 0);
    showStoredSettings(startForm);
    startForm.show();
    m_restoredForm = formSnapshot(startForm);
}

void TestLoadFiles::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_console = std::make_unique<ConsoleCapture>();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
}

void TestLoadFiles::cleanup()
{
    m_window.reset();
    m_console.reset();
    m_dir.reset();
}

QString TestLoadFiles::writeFile(const QString &name, const QByteArray &contents) const
{
    const QString path = m_dir->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        return {};
    return path;
}

void TestLoadFiles::loadThroughButton(const ModalAnswerer::Handler &chooseFile,
                                      const Expectation &expected)
{
    const QStringList formBefore = formSnapshot(*m_window);
    const QMap<QString, QString> filesBefore = treeFingerprint(m_dir->path());
    m_console->clear();

    ModalAnswerer answerer;
    answerer.expect(chooseFile);
    answerer.expect(versionDialogAnswer(expected, &m_versionBox));
    QTest::mouseClick(m_window->findChild<QPushButton *>(QStringLiteral("btnReadConf")),
                      Qt::LeftButton);
    QCOMPARE(answerer.answered(), expected.versionDialog ? 2 : 1);

    QCOMPARE(m_console->out(),
             QStringList{QStringLiteral("MainWindow::on_btnReadConf_clicked()")} + expected.out);
    QCOMPARE(m_console->err(), QStringList());
    QCOMPARE(m_console->unterminated(), QString());
    QCOMPARE(formSnapshot(*m_window), expected.restores ? m_restoredForm : formBefore);
    QCOMPARE(treeFingerprint(m_dir->path()), filesBefore);
}

void TestLoadFiles::fileOfSize_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<Expectation>("expected");

    for (const SizedFile &file : sizedFiles(m_validFile))
        QTest::newRow(file.name) << file.contents << expectedLoadOf(file.contents);
}

void TestLoadFiles::fileOfSize()
{
    QFETCH(QByteArray, contents);
    QFETCH(Expectation, expected);
    const QString path = writeFile(QStringLiteral("LXCONFIG.BIN"), contents);
    QVERIFY(!path.isEmpty());

    loadThroughButton(ModalAnswerer::chooseFile(path), expected);
    // The descriptor of a refused file stays open on purpose; every other load closes it.
    QCOMPARE(descriptorsOpenOn(path), expected.versionDialog ? 1 : 0);
}

void TestLoadFiles::randomFile_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<Expectation>("expected");

    QRandomGenerator random(kFormatVersion);
    const auto randomBytes = [&random](int size) {
        QByteArray bytes(size, '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(random.bounded(256));
        return bytes;
    };
    // Whatever follows, a file that does not start with "CONF" is refused with the number at
    // offset 8 read as the version.
    for (int i = 0; i < 3; ++i) {
        QByteArray contents = randomBytes(random.bounded(12, 2049));
        contents[0] = 'X';
        const auto version = qFromLittleEndian<quint32>(contents.constData() + 8);
        QTest::addRow("random %d", i) << contents << refused(version);
    }
    // A right header before random bytes fails the checksum (this seed gives no match).
    for (int i = 0; i < 3; ++i) {
        const QByteArray contents = m_validFile.left(12) + randomBytes(random.bounded(0, 2049));
        const quint16 computed = referenceChecksum(contents);
        QVERIFY(contents.size() < 167
                    ? computed != 0
                    : computed != qFromLittleEndian<quint16>(contents.constData() + 165));
        QTest::addRow("header and random %d", i) << contents << checksumFailed(computed);
    }
}

void TestLoadFiles::randomFile()
{
    fileOfSize();
}

void TestLoadFiles::folder()
{
    // A folder opens and then fails its read.
    const QString path = m_dir->filePath(QStringLiteral("LXCONFIG.BIN"));
    QVERIFY(QDir().mkpath(path));
    QVERIFY(!writeFile(QStringLiteral("LXCONFIG.BIN/inside.bin"), m_validFile).isEmpty());

    loadThroughButton(ModalAnswerer::returnPath(path),
                      failed(QStringLiteral("Error reading file")));
    QCOMPARE(descriptorsOpenOn(path), 0);
}

void TestLoadFiles::missingPath()
{
    const QString path = m_dir->filePath(QStringLiteral("missing/LXCONFIG.BIN"));

    loadThroughButton(ModalAnswerer::returnPath(path),
                      failed(QStringLiteral("Error opening file!")));
    QVERIFY(!QFileInfo::exists(path));
}

void TestLoadFiles::endlessDevice()
{
    // One read of 1024 zero bytes: no magic, and version 0.
    const QString path = QStringLiteral("/dev/zero");
    const int openBefore = descriptorsOpenOn(path);

    loadThroughButton(ModalAnswerer::chooseFile(path), refused(0));
    QCOMPARE(descriptorsOpenOn(path), openBefore + 1);
}

QTEST_MAIN(TestLoadFiles)
#include "tst_loadfiles.moc"
