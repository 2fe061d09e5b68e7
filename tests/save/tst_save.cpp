// "Write to file": the bytes the editor writes, the console lines it prints and what it does to
// the file system, driven through the button and the save dialog as a user would.
// Expected bytes are written out here. Where a row edits the form, the new checksum comes from
// this file's own bit-serial CRC, never from the editor's.

#include "configrecord.h"
#include "consolecapture.h"
#include "formprobe.h"
#include "mainwindow.h"
#include "modalanswerer.h"
#include "recorddiff.h"
#include "referencechecksum.h"
#include "untouchedform.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <sys/stat.h>

namespace {

const QString kVersionLine = QStringLiteral("header version: 20180601");

// The untouched form's file with one field replaced and the checksum made to fit.
QByteArray untouchedWith(int offset, const QByteArray &field)
{
    QByteArray file = untouchedFormFile();
    file.replace(offset, field.size(), field);
    return withMendedChecksum(file);
}

QString crcLine(const QByteArray &file)
{
    return QStringLiteral("CRC read: %1").arg(referenceChecksum(file));
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString permissionsOf(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return QStringLiteral("no such file");
    return QString::number(status.st_mode & 07777, 8);
}

// Every file and folder below root, relative to it.
QStringList treeOf(const QString &root)
{
    QStringList entries;
    QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        entries << QDir(root).relativeFilePath(it.next());
    entries.sort();
    return entries;
}

// Sets a control by its object name: a combo box's index (-1 for no current item), a spin
// box's value, a check box's state, or the text typed into a cleared line edit.
void setControl(QWidget *window, const QString &name, const QVariant &value)
{
    QWidget *control = window->findChild<QWidget *>(name);
    QVERIFY2(control != nullptr, qPrintable(name));
    if (auto *comboBox = qobject_cast<QComboBox *>(control)) {
        comboBox->setCurrentIndex(value.toInt());
        QCOMPARE(comboBox->currentIndex(), value.toInt());
    } else if (auto *doubleSpinBox = qobject_cast<QDoubleSpinBox *>(control)) {
        doubleSpinBox->setValue(value.toDouble());
        QCOMPARE(doubleSpinBox->value(), value.toDouble());
    } else if (auto *spinBox = qobject_cast<QSpinBox *>(control)) {
        spinBox->setValue(value.toInt());
        QCOMPARE(spinBox->value(), value.toInt());
    } else if (auto *checkBox = qobject_cast<QCheckBox *>(control)) {
        checkBox->setChecked(value.toBool());
    } else if (auto *lineEdit = qobject_cast<QLineEdit *>(control)) {
        lineEdit->clear();
        QTest::keyClicks(lineEdit, value.toString());
        QCOMPARE(lineEdit->text(), value.toString());
    } else {
        QFAIL(qPrintable(QStringLiteral("no way to set %1").arg(name)));
    }
}

// Closes whatever dialog a handler was given and could not answer properly, so that a failed
// check does not leave the test waiting in the dialog's event loop.
void dismiss(QWidget *dialog)
{
    if (auto *modal = qobject_cast<QDialog *>(dialog))
        modal->reject();
}

// Checks what the save dialog offers, then lets respond answer it.
ModalAnswerer::Handler checkedSaveDialog(QWidget *window, const ModalAnswerer::Handler &respond)
{
    return [window, respond](QWidget *dialog) {
        auto *fileDialog = qobject_cast<QFileDialog *>(dialog);
        const auto answer = qScopeGuard([&] { fileDialog ? respond(dialog) : dismiss(dialog); });
        QVERIFY(fileDialog != nullptr);
        QCOMPARE(fileDialog->parentWidget(), window);
        QCOMPARE(fileDialog->windowTitle(), QStringLiteral("Save File"));
        QCOMPARE(fileDialog->acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(fileDialog->nameFilters(), QStringList{QStringLiteral(".BIN")});
        QCOMPARE(QFileInfo(fileDialog->selectedFiles().value(0)).fileName(),
                 QStringLiteral("LXCONFIG.BIN"));
    };
}

// Answers the dialog's question whether to replace an existing file with Yes.
void confirmOverwrite(QWidget *dialog)
{
    auto *messageBox = qobject_cast<QMessageBox *>(dialog);
    QAbstractButton *yes = messageBox ? messageBox->button(QMessageBox::Yes) : nullptr;
    if (yes == nullptr) {
        dismiss(dialog);
        QFAIL("expected the question whether to replace the file");
    }
    QTest::mouseClick(yes, Qt::LeftButton);
}

// Edits spread over the pages, one of them with a rule that shows the shutter options.
void editForm(QWidget *window)
{
    setControl(window, QStringLiteral("cb_externalshutter"), true);
    setControl(window, QStringLiteral("sb_eso_offset"), -3.75);
    setControl(window, QStringLiteral("leFrameSkip"), QStringLiteral("123"));
    setControl(window, QStringLiteral("cbSbusTrigger"), 9);
    setControl(window, QStringLiteral("cbBaudrate"), 7);
    setControl(window, QStringLiteral("cbInverted"), false);
    setControl(window, QStringLiteral("sbIsothermsUpper"), 500);
    setControl(window, QStringLiteral("sBTriggerLow"), 1500);
}

// Sets the process umask for the scope of one test and puts the previous one back.
class UmaskScope
{
public:
    explicit UmaskScope(mode_t mask) : m_previous(::umask(mask)) {}
    ~UmaskScope() { ::umask(m_previous); }
    UmaskScope(const UmaskScope &) = delete;
    UmaskScope &operator=(const UmaskScope &) = delete;

private:
    mode_t m_previous;
};

} // namespace

class TestSave : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void referenceCrcMatchesKnownValues_data();
    void referenceCrcMatchesKnownValues();
    void untouchedFormSavesExpectedBytes();
    void savesConvertedValue_data();
    void savesConvertedValue();
    void bothPortsWithoutItemReportOneLineEach();
    void savesHiddenShutterOption_data();
    void savesHiddenShutterOption();
    void cancelWritesNothing();
    void unopenablePathWritesNothing_data();
    void unopenablePathWritesNothing();
    void failedWriteIsReported();
    void savingOverFileReplacesOnlyFirst167Bytes_data();
    void savingOverFileReplacesOnlyFirst167Bytes();
    void savingOverFileKeepsItsPermissions_data();
    void savingOverFileKeepsItsPermissions();
    void newFileGetsModeLessUmask_data();
    void newFileGetsModeLessUmask();
    void savingTwiceGivesSameBytes();
    void savedFilePassesFormatChecks();
    void saveLeavesFormUnchanged();

private:
    QString pathOf(const QString &name) const { return m_dir->filePath(name); }
    void pressWriteToFile(const ModalAnswerer::Handler &respond, bool replacesFile = false);
    void saveAs(const QString &path);
    static void addFieldColumns();
    void checkSavedField();

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_previousDirectory;
    std::unique_ptr<ConsoleCapture> m_console;
    std::unique_ptr<MainWindow> m_window;
};

void TestSave::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    // The dialog opens in the working directory; a stray file written there shows up in m_dir.
    m_previousDirectory = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_dir->path()));
    m_console = std::make_unique<ConsoleCapture>();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
}

void TestSave::cleanup()
{
    m_window.reset();
    m_console.reset();
    QDir::setCurrent(m_previousDirectory);
    m_dir.reset();
}

// Presses "Write to file" and answers the save dialog, then the question whether to replace
// the file if one is due. Only the command's own console lines remain captured.
void TestSave::pressWriteToFile(const ModalAnswerer::Handler &respond, bool replacesFile)
{
    ModalAnswerer answerer;
    answerer.expect(checkedSaveDialog(m_window.get(), respond));
    if (replacesFile)
        answerer.expect(confirmOverwrite);
    m_console->clear();
    QTest::mouseClick(m_window->findChild<QPushButton *>(QStringLiteral("btnSetConf")),
                      Qt::LeftButton);
    QVERIFY(answerer.allAnswered());
    QCOMPARE(answerer.answered(), replacesFile ? 2 : 1);
    QCOMPARE(m_console->unterminated(), QString());
}

void TestSave::saveAs(const QString &path)
{
    pressWriteToFile(ModalAnswerer::chooseFile(path), QFileInfo::exists(path));
}

void TestSave::referenceCrcMatchesKnownValues_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("crc");

    QTest::newRow("123456789") << QByteArray("123456789") << 1866;
    QTest::newRow("CONF") << QByteArray("CONF") << 61657;
    QTest::newRow("01") << QByteArray::fromHex("01") << 2280;
    QTest::newRow("FF") << QByteArray::fromHex("FF") << 1959;
    QTest::newRow("header, zero payload")
        << QByteArray::fromHex("434F4E469900000079EE3301") + QByteArray(153, '\0') << 39143;
    // The data file's written-out checksum is the reference's value for its first 165 bytes.
    QTest::newRow("untouched form")
        << untouchedFormFile().left(165) << int(storedChecksum(untouchedFormFile()));
}

// The checksum helper that the rows below rely on agrees with the format's known values.
void TestSave::referenceCrcMatchesKnownValues()
{
    QFETCH(QByteArray, data);
    QFETCH(int, crc);
    QCOMPARE(int(referenceCrc(data)), crc);
}

void TestSave::untouchedFormSavesExpectedBytes()
{
    const QString path = pathOf(QStringLiteral("LXCONFIG.BIN"));
    saveAs(path);

    COMPARE_BYTES(contentsOf(path), untouchedFormFile());
    QCOMPARE(m_console->out(), (QStringList{kVersionLine, crcLine(untouchedFormFile())}));
    QCOMPARE(m_console->err(), QStringList());
}

void TestSave::addFieldColumns()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QStringList>("errors");
}

// One control set, the form saved: the file is the untouched one with that field changed, and
// the console shows the command's lines with any error lines between them.
void TestSave::checkSavedField()
{
    QFETCH(QString, control);
    QFETCH(QVariant, value);
    QFETCH(int, offset);
    QFETCH(QByteArray, field);
    QFETCH(QStringList, errors);

    setControl(m_window.get(), control, value);
    if (QTest::currentTestFailed())
        return;
    const QString path = pathOf(QStringLiteral("LXCONFIG.BIN"));
    saveAs(path);

    const QByteArray expected = untouchedWith(offset, field);
    COMPARE_BYTES(contentsOf(path), expected);
    QCOMPARE(m_console->out(), (QStringList{kVersionLine, crcLine(expected)}));
    QCOMPARE(m_console->err(), errors);
    QStringList all{kVersionLine};
    for (const QString &error : qAsConst(errors))
        all << QStringLiteral("ERR: ") + error;
    all << crcLine(expected);
    QCOMPARE(m_console->all(), all);
}

void TestSave::savesConvertedValue_data()
{
    addFieldColumns();
    const QStringList none;
    const QStringList notImplemented{QStringLiteral("   not implemented.")};

    // The shutter offset in hundredths, truncated toward zero, as a signed 32-bit number.
    QTest::newRow("offset 0.29") << "sb_eso_offset" << QVariant(0.29) << 122
                                 << QByteArray::fromHex("1C000000") << none;
    QTest::newRow("offset -0.29") << "sb_eso_offset" << QVariant(-0.29) << 122
                                  << QByteArray::fromHex("E4FFFFFF") << none;
    QTest::newRow("offset -1.25") << "sb_eso_offset" << QVariant(-1.25) << 122
                                  << QByteArray::fromHex("83FFFFFF") << none;
    QTest::newRow("offset 2.5") << "sb_eso_offset" << QVariant(2.5) << 122
                                << QByteArray::fromHex("FA000000") << none;
    QTest::newRow("offset 10") << "sb_eso_offset" << QVariant(10.0) << 122
                               << QByteArray::fromHex("E8030000") << none;
    QTest::newRow("offset -10") << "sb_eso_offset" << QVariant(-10.0) << 122
                                << QByteArray::fromHex("18FCFFFF") << none;

    // The frame-skip text as an unsigned decimal number, 0 when it is none.
    QTest::newRow("frame skip abc")
        << "leFrameSkip" << QVariant("abc") << 94 << QByteArray::fromHex("00000000") << none;
    QTest::newRow("frame skip empty")
        << "leFrameSkip" << QVariant("") << 94 << QByteArray::fromHex("00000000") << none;
    QTest::newRow("frame skip 12a")
        << "leFrameSkip" << QVariant("12a") << 94 << QByteArray::fromHex("00000000") << none;
    QTest::newRow("frame skip -1")
        << "leFrameSkip" << QVariant("-1") << 94 << QByteArray::fromHex("00000000") << none;
    QTest::newRow("frame skip 20001")
        << "leFrameSkip" << QVariant("20001") << 94 << QByteArray::fromHex("214E0000") << none;
    QTest::newRow("frame skip 30000")
        << "leFrameSkip" << QVariant("30000") << 94 << QByteArray::fromHex("30750000") << none;
    QTest::newRow("frame skip 4294967295")
        << "leFrameSkip" << QVariant("4294967295") << 94 << QByteArray::fromHex("FFFFFFFF") << none;
    QTest::newRow("frame skip 4294967296")
        << "leFrameSkip" << QVariant("4294967296") << 94 << QByteArray::fromHex("00000000") << none;

    // Extension ports: a device mode code per item, different for the two ports.
    QTest::newRow("EXT 0 item 0") << "cBext0mode" << QVariant(0) << 92 << QByteArray::fromHex("00")
                                  << none;
    QTest::newRow("EXT 0 item 1") << "cBext0mode" << QVariant(1) << 92 << QByteArray::fromHex("01")
                                  << none;
    QTest::newRow("EXT 0 item 2") << "cBext0mode" << QVariant(2) << 92 << QByteArray::fromHex("05")
                                  << none;
    QTest::newRow("EXT 0 no item")
        << "cBext0mode" << QVariant(-1) << 92 << QByteArray::fromHex("00") << notImplemented;
    QTest::newRow("EXT 1 item 0") << "cBext1mode" << QVariant(0) << 93 << QByteArray::fromHex("00")
                                  << none;
    QTest::newRow("EXT 1 item 1") << "cBext1mode" << QVariant(1) << 93 << QByteArray::fromHex("02")
                                  << none;
    QTest::newRow("EXT 1 item 2") << "cBext1mode" << QVariant(2) << 93 << QByteArray::fromHex("06")
                                  << none;
    QTest::newRow("EXT 1 no item")
        << "cBext1mode" << QVariant(-1) << 93 << QByteArray::fromHex("00") << notImplemented;

    // Combo boxes store their index; no current item is FF.
    QTest::newRow("parity even") << "cbParity" << QVariant(2) << 162 << QByteArray::fromHex("02")
                                 << none;
    QTest::newRow("parity no item")
        << "cbParity" << QVariant(-1) << 162 << QByteArray::fromHex("FF") << none;
    QTest::newRow("SBUS trigger no item")
        << "cbSbusTrigger" << QVariant(-1) << 154 << QByteArray::fromHex("FF") << none;
    QTest::newRow("overlay start no item")
        << "cBOverlayMode" << QVariant(-1) << 102 << QByteArray::fromHex("FF") << none;
    QTest::newRow("isotherm switch no item")
        << "cbIsothermSwitchMode" << QVariant(-1) << 104 << QByteArray::fromHex("FF") << none;
    QTest::newRow("SBUS colour map deactivated")
        << "cbSbusColormap" << QVariant(16) << 146 << QByteArray::fromHex("10") << none;
    QTest::newRow("SBUS isotherm lower channel 1")
        << "cbSbusIsoLow" << QVariant(0) << 150 << QByteArray::fromHex("00") << none;
    QTest::newRow("trigger auto FFC")
        << "cbTriggerFFCMode" << QVariant(1) << 99 << QByteArray::fromHex("01") << none;
    QTest::newRow("trigger single frame")
        << "cbTriggerFrameMode" << QVariant(1) << 100 << QByteArray::fromHex("01") << none;

    // Baud rate and stop bits store their item's text as a number.
    QTest::newRow("baud 1200") << "cbBaudrate" << QVariant(0) << 158
                               << QByteArray::fromHex("B0040000") << none;
    QTest::newRow("baud 115200") << "cbBaudrate" << QVariant(7) << 158
                                 << QByteArray::fromHex("00C20100") << none;
    QTest::newRow("baud 921600") << "cbBaudrate" << QVariant(10) << 158
                                 << QByteArray::fromHex("00100E00") << none;
    QTest::newRow("baud no item") << "cbBaudrate" << QVariant(-1) << 158
                                  << QByteArray::fromHex("00000000") << none;
    QTest::newRow("stop bits 2") << "cbStopBit" << QVariant(1) << 163 << QByteArray::fromHex("02")
                                 << none;
    QTest::newRow("stop bits no item")
        << "cbStopBit" << QVariant(-1) << 163 << QByteArray::fromHex("00") << none;
    QTest::newRow("not inverted") << "cbInverted" << QVariant(false) << 164
                                  << QByteArray::fromHex("00") << none;

    // Spin values; each trigger threshold fills all 20 elements of its array.
    QTest::newRow("trigger low 2047") << "sBTriggerLow" << QVariant(2047) << 12
                                      << QByteArray::fromHex("FF07").repeated(20) << none;
    QTest::newRow("trigger high 1")
        << "sBTriggerHigh" << QVariant(1) << 52 << QByteArray::fromHex("0100").repeated(20) << none;
    QTest::newRow("isotherm lower 1000")
        << "sbIsothermsLower" << QVariant(1000) << 105 << QByteArray::fromHex("E803") << none;
    QTest::newRow("isotherm middle 0")
        << "sbIsothermsMiddle" << QVariant(0) << 107 << QByteArray::fromHex("0000") << none;
    QTest::newRow("isotherm upper 999")
        << "sbIsothermsUpper" << QVariant(999) << 109 << QByteArray::fromHex("E703") << none;
    QTest::newRow("frames per file 16000") << "sbRecMaxframesperfile" << QVariant(16000) << 142
                                           << QByteArray::fromHex("803E0000") << none;
    QTest::newRow("frames per file 1")
        << "sbRecMaxframesperfile" << QVariant(1) << 142 << QByteArray::fromHex("01000000") << none;
}

void TestSave::savesConvertedValue()
{
    checkSavedField();
}

// Neither port has a mode code to store; each says so on its own line, and their bytes stay 0,
// which here leaves the untouched form's file.
void TestSave::bothPortsWithoutItemReportOneLineEach()
{
    setControl(m_window.get(), QStringLiteral("cBext0mode"), -1);
    setControl(m_window.get(), QStringLiteral("cBext1mode"), -1);
    const QString path = pathOf(QStringLiteral("LXCONFIG.BIN"));
    saveAs(path);

    COMPARE_BYTES(contentsOf(path), untouchedFormFile());
    const QString notImplemented = QStringLiteral("   not implemented.");
    QCOMPARE(m_console->out(), (QStringList{kVersionLine, crcLine(untouchedFormFile())}));
    QCOMPARE(m_console->err(), (QStringList{notImplemented, notImplemented}));
    QCOMPARE(m_console->all(),
             (QStringList{kVersionLine, QStringLiteral("ERR: ") + notImplemented,
                          QStringLiteral("ERR: ") + notImplemented, crcLine(untouchedFormFile())}));
}

void TestSave::savesHiddenShutterOption_data()
{
    addFieldColumns();
    const QStringList none;

    QTest::newRow("shutter interval 3600") << "sb_eso_shutterinterval" << QVariant(3600) << 126
                                           << QByteArray::fromHex("100E0000") << none;
    QTest::newRow("shutter interval 0") << "sb_eso_shutterinterval" << QVariant(0) << 126
                                        << QByteArray::fromHex("00000000") << none;
    QTest::newRow("offset -2.5") << "sb_eso_offset" << QVariant(-2.5) << 122
                                 << QByteArray::fromHex("06FFFFFF") << none;
    QTest::newRow("heating 1000") << "sb_eso_heating" << QVariant(1000) << 114
                                  << QByteArray::fromHex("E8030000") << none;
    QTest::newRow("heatcycle 0") << "sb_eso_heatcycle" << QVariant(0) << 118
                                 << QByteArray::fromHex("00000000") << none;
    QTest::newRow("opt5 99") << "sb_eso_opt5" << QVariant(99) << 130
                             << QByteArray::fromHex("63000000") << none;
}

// The external shutter is off and its options group hidden, as at start-up; the save reads the
// hidden controls all the same.
void TestSave::savesHiddenShutterOption()
{
    const auto *options =
        m_window->findChild<QGroupBox *>(QStringLiteral("gb_externalshutteroptions"));
    QVERIFY(options != nullptr);
    QVERIFY(options->isHidden());
    checkSavedField();
    QVERIFY(options->isHidden());
}

void TestSave::cancelWritesNothing()
{
    pressWriteToFile(ModalAnswerer::cancel());

    QCOMPARE(m_console->out(), (QStringList{kVersionLine, crcLine(untouchedFormFile()),
                                            QStringLiteral("Error opening file!")}));
    QCOMPARE(m_console->err(), QStringList());
    QCOMPARE(treeOf(m_dir->path()), QStringList());
}

void TestSave::unopenablePathWritesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("folders");

    QTest::newRow("missing folder") << "missing/LXCONFIG.BIN" << QStringList();
    QTest::newRow("existing folder") << "LXCONFIG.BIN" << QStringList{"LXCONFIG.BIN"};
}

void TestSave::unopenablePathWritesNothing()
{
    QFETCH(QString, name);
    QFETCH(QStringList, folders);
    for (const QString &folder : qAsConst(folders))
        QVERIFY(QDir(m_dir->path()).mkdir(folder));

    pressWriteToFile(ModalAnswerer::returnPath(pathOf(name)));

    QCOMPARE(m_console->out(), (QStringList{kVersionLine, crcLine(untouchedFormFile()),
                                            QStringLiteral("Error opening file!")}));
    QCOMPARE(m_console->err(), QStringList());
    QCOMPARE(treeOf(m_dir->path()), folders);
}

void TestSave::failedWriteIsReported()
{
    const QString deviceFull = QStringLiteral("/dev/full");
    if (!QFileInfo::exists(deviceFull))
        QSKIP("/dev/full, which fails every write, is missing here");

    pressWriteToFile(ModalAnswerer::returnPath(deviceFull));

    QCOMPARE(m_console->out(), (QStringList{kVersionLine, crcLine(untouchedFormFile()),
                                            QStringLiteral("Error writing data to file")}));
    QCOMPARE(m_console->err(), QStringList());
}

void TestSave::savingOverFileReplacesOnlyFirst167Bytes_data()
{
    QTest::addColumn<QByteArray>("existing");
    QTest::addColumn<QByteArray>("keptTail");

    QTest::newRow("300 bytes") << QByteArray(300, '\xAB') << QByteArray(133, '\xAB');
    QTest::newRow("168 bytes") << QByteArray(168, '\xEE') << QByteArray(1, '\xEE');
    QTest::newRow("167 bytes") << QByteArray(167, '\xAB') << QByteArray();
    QTest::newRow("10 bytes") << QByteArray(10, '\xCD') << QByteArray();
}

void TestSave::savingOverFileReplacesOnlyFirst167Bytes()
{
    QFETCH(QByteArray, existing);
    QFETCH(QByteArray, keptTail);
    const QString path = pathOf(QStringLiteral("LXCONFIG.BIN"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(existing), existing.size());
    file.close();

    saveAs(path);

    COMPARE_BYTES(contentsOf(path), untouchedFormFile() + keptTail);
}

void TestSave::savingOverFileKeepsItsPermissions_data()
{
    QTest::addColumn<int>("mode");

    QTest::newRow("0600") << 0600;
    QTest::newRow("0664") << 0664;
    QTest::newRow("0751") << 0751;
}

void TestSave::savingOverFileKeepsItsPermissions()
{
    QFETCH(int, mode);
    const QString path = pathOf(QStringLiteral("LXCONFIG.BIN"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), static_cast<mode_t>(mode)), 0);

    saveAs(path);

    COMPARE_BYTES(contentsOf(path), untouchedFormFile());
    QCOMPARE(permissionsOf(path), QString::number(mode, 8));
}

void TestSave::newFileGetsModeLessUmask_data()
{
    QTest::addColumn<int>("umask");
    QTest::addColumn<int>("mode");

    QTest::newRow("umask 022") << 022 << 0744;
    QTest::newRow("umask 077") << 077 << 0700;
    QTest::newRow("umask 027") << 027 << 0740;
    QTest::newRow("umask 000") << 000 << 0744;
}

void TestSave::newFileGetsModeLessUmask()
{
    QFETCH(int, umask);
    QFETCH(int, mode);
    const QString path = pathOf(QStringLiteral("LXCONFIG.BIN"));
    {
        const UmaskScope scope(static_cast<mode_t>(umask));
        saveAs(path);
    }

    COMPARE_BYTES(contentsOf(path), untouchedFormFile());
    QCOMPARE(permissionsOf(path), QString::number(mode, 8));
}

void TestSave::savingTwiceGivesSameBytes()
{
    editForm(m_window.get());
    const QString first = pathOf(QStringLiteral("first.BIN"));
    const QString second = pathOf(QStringLiteral("second.BIN"));
    saveAs(first);
    const QStringList firstLines = m_console->all();
    saveAs(second);

    QCOMPARE(contentsOf(first).size(), 167);
    QVERIFY(contentsOf(first) != untouchedFormFile());
    COMPARE_BYTES(contentsOf(second), contentsOf(first));
    QCOMPARE(m_console->all(), firstLines);
}

void TestSave::savedFilePassesFormatChecks()
{
    editForm(m_window.get());
    const QString path = pathOf(QStringLiteral("LXCONFIG.BIN"));
    saveAs(path);

    const QByteArray saved = contentsOf(path);
    QCOMPARE(saved.size(), 167);
    const auto record = lumarex::ConfigRecord::fromBytes(
        reinterpret_cast<const std::uint8_t *>(saved.constData()), std::size_t(saved.size()));
    QVERIFY(record.hasMagic());
    QCOMPARE(record.value(lumarex::Field::headerVersion), 20180601u);
    QCOMPARE(record.value(lumarex::Field::payloadLength), 153u);
    QCOMPARE(record.computedChecksum(), record.storedChecksum());
    QCOMPARE(int(record.storedChecksum()), int(referenceCrc(saved.left(165))));
    QCOMPARE(m_console->out(), (QStringList{kVersionLine, crcLine(saved)}));

    // The edits, read back through the format library.
    QCOMPARE(record.value(lumarex::Field::externalShutter), 1u);
    QCOMPARE(record.value(lumarex::Field::ext0Mode), 5u);
    QCOMPARE(record.value(lumarex::Field::ext1Mode), 6u);
    QCOMPARE(record.signedValue(lumarex::Field::esoOffset), -375);
    QCOMPARE(record.value(lumarex::Field::frameSkip), 123u);
    QCOMPARE(record.value(lumarex::Field::sbusTrigger), 9u);
    QCOMPARE(record.value(lumarex::Field::serialBaudrate), 115200u);
    QCOMPARE(record.value(lumarex::Field::serialInverted), 0u);
    QCOMPARE(record.value(lumarex::Field::isothermUpper), 500u);
    QCOMPARE(record.value(lumarex::Field::triggerLow, 0), 1500u);
    QCOMPARE(record.value(lumarex::Field::triggerLow, 19), 1500u);
}

void TestSave::saveLeavesFormUnchanged()
{
    editForm(m_window.get());
    const QStringList before = formSnapshot(*m_window);
    // Every named widget of the window: the 38 settings controls, their captions, the pages,
    // the group boxes, the buttons and the frame.
    QCOMPARE(before.size(), 100);

    saveAs(pathOf(QStringLiteral("LXCONFIG.BIN")));

    QCOMPARE(formSnapshot(*m_window), before);
}

QTEST_MAIN(TestSave)
#include "tst_save.moc"
