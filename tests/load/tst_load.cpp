// "Read from file": the open dialog, the version box, the magic, version and checksum checks,
// every control put back in its order with the form rules that the restores fire, and the file
// descriptor that each way through the command leaves open. The files are written from field
// values set out in testrecords.cpp; every expected line, checksum and control value is written
// out by hand.

#include "consolecapture.h"
#include "dialoganswers.h"
#include "formprobe.h"
#include "loaddriver.h"
#include "mainwindow.h"
#include "referencechecksum.h"
#include "testrecords.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

using lumarex::Field;

Q_DECLARE_METATYPE(BoxAnswer)

namespace {

const QString kClicked = QStringLiteral("MainWindow::on_btnReadConf_clicked()");
const QString kReading = QStringLiteral("   reading config...");
const QString kNotImplemented = QStringLiteral("   not implemented.");
const QString kFileName = QStringLiteral("LXCONFIG.BIN");

// The lines of a load that passes every check and fires no rule.
QStringList loadedLines(int checksum)
{
    return {kClicked, QStringLiteral("CRC read: %1").arg(checksum), kReading};
}

} // namespace

#define VERIFY_DIALOGS(run, window, dialogs)                                                       \
    do {                                                                                           \
        verifyDialogs(run, window, dialogs);                                                       \
        if (QTest::currentTestFailed())                                                            \
            return;                                                                                \
    } while (false)

class TestLoad : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void unopenedFile_data();
    void unopenedFile();
    void refusedFile_data();
    void refusedFile();
    void checksumMismatch_data();
    void checksumMismatch();
    void changedFormLoadsBack_data();
    void changedFormLoadsBack();
    void storedValue_data();
    void storedValue();
    void rulesFiredByLoad_data();
    void rulesFiredByLoad();
    void longerFile_data();
    void longerFile();

private:
    QString writeFile(const QByteArray &bytes) const;
    static std::unique_ptr<MainWindow> freshWindow();
    static void verifyDialogs(const LoadRun &run, const MainWindow &window, int dialogs);

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestLoad::initTestCase()
{
    // The file dialog remembers its last folder in the user's settings; keep that out of them.
    QStandardPaths::setTestModeEnabled(true);

    // The first file dialog makes the toolkit open descriptors of its own that stay open (a
    // file-system watcher, helpers of the display connection); open one here so that the counts
    // below see only what the load command leaves open.
    ModalAnswerer answerer;
    answerer.expect(ModalAnswerer::cancel());
    QFileDialog::getOpenFileName(nullptr, QString());
    QVERIFY(answerer.allAnswered());
}

void TestLoad::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

QString TestLoad::writeFile(const QByteArray &bytes) const
{
    const QString path = m_dir->filePath(kFileName);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Cannot write %s", qPrintable(path));
    return path;
}

std::unique_ptr<MainWindow> TestLoad::freshWindow()
{
    auto window = std::make_unique<MainWindow>();
    window->show();
    return window;
}

// The open dialog as the command asks for it, the number of dialogs the load showed, and no
// console text left without its newline.
void TestLoad::verifyDialogs(const LoadRun &run, const MainWindow &window, int dialogs)
{
    QCOMPARE(run.openDialogTitle, QStringLiteral("Open File"));
    QCOMPARE(run.openDialogParent, &window);
    QCOMPARE(run.dialogsAnswered, dialogs);
    QCOMPARE(run.unterminated, QString());
}

void TestLoad::unopenedFile_data()
{
    // The chosen path, relative to the test's folder, which holds a subfolder "folder"; no path
    // means the dialog is cancelled.
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QStringList>("out");

    QTest::newRow("dialog cancelled") << QString() << QStringList{kClicked, "Error opening file!"};
    QTest::newRow("file in a missing folder")
        << "missing/LXCONFIG.BIN" << QStringList{kClicked, "Error opening file!"};
    // open() on a folder succeeds read-only; read() then fails with EISDIR.
    QTest::newRow("folder") << "folder" << QStringList{kClicked, "Error reading file"};
}

void TestLoad::unopenedFile()
{
    QFETCH(QString, choice);
    QFETCH(QStringList, out);
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("folder")));
    auto window = freshWindow();
    const QStringList formBefore = formSnapshot(*window);

    const LoadRun run = pressReadFromFile(
        *window, choice.isNull() ? ModalAnswerer::cancel()
                                 : ModalAnswerer::returnPath(m_dir->filePath(choice)));

    VERIFY_DIALOGS(run, *window, 1);
    QCOMPARE(run.out, out);
    QCOMPARE(run.err, QStringList());
    QCOMPARE(run.descriptorsLeftOpen, 0);
    QCOMPARE(formSnapshot(*window), formBefore);
}

void TestLoad::refusedFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<BoxAnswer>("answer");
    QTest::addColumn<QStringList>("out");

    const QString accepted = QStringLiteral("<<< dialog accepted");
    const QString rejected = QStringLiteral("<<< dialog rejected");
    const QString mismatch0 = QStringLiteral("MainWindow::versionMismatch(0)");
    const QString mismatchNext = QStringLiteral("MainWindow::versionMismatch(20180602)");

    QTest::newRow("empty file, Ok clicked")
        << QByteArray() << BoxAnswer::ClickOk << QStringList{kClicked, mismatch0, accepted};
    QTest::newRow("empty file, box rejected")
        << QByteArray() << BoxAnswer::Reject << QStringList{kClicked, mismatch0, rejected};
    QTest::newRow("version 20180602, Ok clicked")
        << fileWithHeader(changedFormValues(), "CONF", 20180602) << BoxAnswer::ClickOk
        << QStringList{kClicked, mismatchNext, accepted};
    QTest::newRow("version 20180602, box rejected")
        << fileWithHeader(changedFormValues(), "CONF", 20180602) << BoxAnswer::Reject
        << QStringList{kClicked, mismatchNext, rejected};
    QTest::newRow("version 20180600")
        << fileWithHeader(changedFormValues(), "CONF", 20180600) << BoxAnswer::ClickOk
        << QStringList{kClicked, "MainWindow::versionMismatch(20180600)", accepted};
    QTest::newRow("magic CONG with the right version")
        << fileWithHeader(changedFormValues(), "CONG", 20180601) << BoxAnswer::ClickOk
        << QStringList{kClicked, "MainWindow::versionMismatch(20180601)", accepted};
    // Version bytes 0A 0B 0C 0D, little-endian.
    QTest::newRow("lower-case magic")
        << fileWithHeader(changedFormValues(), "conf", 0x0D0C0B0A) << BoxAnswer::Reject
        << QStringList{kClicked, "MainWindow::versionMismatch(218893066)", rejected};
    QTest::newRow("three bytes of magic")
        << QByteArray("CON") << BoxAnswer::ClickOk << QStringList{kClicked, mismatch0, accepted};
    QTest::newRow("magic alone") << QByteArray("CONF") << BoxAnswer::ClickOk
                                 << QStringList{kClicked, mismatch0, accepted};
}

void TestLoad::refusedFile()
{
    QFETCH(QByteArray, content);
    QFETCH(BoxAnswer, answer);
    QFETCH(QStringList, out);
    const QString path = writeFile(content);
    auto window = freshWindow();
    const QStringList formBefore = formSnapshot(*window);

    VersionBox box;
    const LoadRun run =
        pressReadFromFile(*window, ModalAnswerer::chooseFile(path), answerVersionBox(answer, &box));

    VERIFY_DIALOGS(run, *window, 2);
    QVERIFY(box.isMessageBox);
    QCOMPARE(box.title, QStringLiteral("Version error"));
    QCOMPARE(box.text, QStringLiteral("<p>Configuration is not compatible with this version</p>"));
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(box.defaultButton, QMessageBox::Ok);
    QCOMPARE(box.parent, nullptr);
    // The command asks for Qt::Dialog | Qt::WindowTitleHint; Qt adds the system menu hint to
    // any window that asks for a title bar hint.
    QCOMPARE(box.flags, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
    QCOMPARE(run.out, out);
    QCOMPARE(run.err, QStringList());
    // The refused file's descriptor stays open until the process ends.
    QCOMPARE(run.descriptorsLeftOpen, 1);
    QCOMPARE(formSnapshot(*window), formBefore);
}

void TestLoad::checksumMismatch_data()
{
    // One byte of the changed-form file replaced after sealing.
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("value");

    QTest::newRow("GPS receiver 0 made 3") << 112 << 3;
    QTest::newRow("trigger low slot 4 made 0") << 20 << 0;
    QTest::newRow("inverted signal 0 made 1") << 164 << 1;
    QTest::newRow("spare byte, read by nobody") << 157 << 0x5A;
    QTest::newRow("payload length, read by nobody") << 4 << 0x9A;
    QTest::newRow("stored checksum's low byte made 13") << 165 << 0x13;
}

void TestLoad::checksumMismatch()
{
    QFETCH(int, offset);
    QFETCH(int, value);
    const QByteArray file =
        withByte(sealedFile(changedFormValues()), offset, static_cast<quint8>(value));
    QVERIFY(file != sealedFile(changedFormValues()));
    const QString path = writeFile(file);
    auto window = freshWindow();
    const QStringList formBefore = formSnapshot(*window);

    const LoadRun run = pressReadFromFile(*window, ModalAnswerer::chooseFile(path));

    VERIFY_DIALOGS(run, *window, 1);
    QCOMPARE(run.out,
             (QStringList{kClicked, QStringLiteral("CRC read: %1").arg(referenceChecksum(file)),
                          "CRC error"}));
    QCOMPARE(run.err, QStringList());
    QCOMPARE(run.descriptorsLeftOpen, 0);
    QCOMPARE(formSnapshot(*window), formBefore);
}

void TestLoad::changedFormLoadsBack_data()
{
    QTest::addColumn<ControlValue>("expected");

    QTest::newRow("gimbal remote control") << ControlValue{"cbPeripheryGimbalrc", "checked", true};
    QTest::newRow("GPS receiver") << ControlValue{"cbPeripheryGPS", "currentIndex", 0};
    QTest::newRow("external shutter") << ControlValue{"cb_externalshutter", "checked", true};
    QTest::newRow("heatcycle") << ControlValue{"sb_eso_heatcycle", "value", 1500};
    QTest::newRow("heating") << ControlValue{"sb_eso_heating", "value", 300};
    QTest::newRow("offset") << ControlValue{"sb_eso_offset", "value", 2.5};
    QTest::newRow("shutter interval") << ControlValue{"sb_eso_shutterinterval", "value", 600};
    QTest::newRow("opt5") << ControlValue{"sb_eso_opt5", "value", 42};
    QTest::newRow("baud rate 115200") << ControlValue{"cbBaudrate", "currentIndex", 7};
    QTest::newRow("parity even") << ControlValue{"cbParity", "currentIndex", 2};
    QTest::newRow("stop bits 2") << ControlValue{"cbStopBit", "currentIndex", 1};
    QTest::newRow("inverted signal") << ControlValue{"cbInverted", "checked", false};
    QTest::newRow("frame skip") << ControlValue{"leFrameSkip", "text", "12345"};
    QTest::newRow("trigger mode PPM") << ControlValue{"cbTriggerPinMode", "currentIndex", 5};
    QTest::newRow("trigger auto FFC") << ControlValue{"cbTriggerFFCMode", "currentIndex", 1};
    QTest::newRow("trigger frame mode") << ControlValue{"cbTriggerFrameMode", "currentIndex", 1};
    QTest::newRow("overlay start state") << ControlValue{"cBOverlayMode", "currentIndex", 1};
    QTest::newRow("max frames per file") << ControlValue{"sbRecMaxframesperfile", "value", 5000};
    QTest::newRow("EXT 0 code 1") << ControlValue{"cBext0mode", "currentIndex", 1};
    QTest::newRow("EXT 1 code 2") << ControlValue{"cBext1mode", "currentIndex", 1};
    // Isotherm state 1 and switch mode 0 are stored: the start-state box shows the switch mode.
    QTest::newRow("isotherm start state shows the switch mode")
        << ControlValue{"cbIsothermsState", "currentIndex", 0};
    // The three switch-mode boxes are not restored and keep what the gimbal rule chose.
    QTest::newRow("isotherm switch mode, from the gimbal rule")
        << ControlValue{"cbIsothermSwitchMode", "currentIndex", 1};
    QTest::newRow("lower threshold") << ControlValue{"sbIsothermsLower", "value", 100};
    QTest::newRow("middle threshold") << ControlValue{"sbIsothermsMiddle", "value", 200};
    QTest::newRow("upper threshold") << ControlValue{"sbIsothermsUpper", "value", 300};
    QTest::newRow("SBUS colour map") << ControlValue{"cbSbusColormap", "currentIndex", 7};
    QTest::newRow("SBUS colour map switch mode, from the gimbal rule")
        << ControlValue{"cbSbusColorMapSwitchMode", "currentIndex", 1};
    QTest::newRow("SBUS FFC") << ControlValue{"cbSbusFFC", "currentIndex", 11};
    QTest::newRow("SBUS isotherms") << ControlValue{"cbSbusIsotherms", "currentIndex", 12};
    QTest::newRow("SBUS isotherm lower") << ControlValue{"cbSbusIsoLow", "currentIndex", 13};
    QTest::newRow("SBUS isotherm middle") << ControlValue{"cbSbusIsoMid", "currentIndex", 14};
    QTest::newRow("SBUS isotherm upper") << ControlValue{"cbSbusIsoUp", "currentIndex", 15};
    QTest::newRow("SBUS overlay") << ControlValue{"cbSbusOverlay", "currentIndex", 10};
    QTest::newRow("SBUS trigger") << ControlValue{"cbSbusTrigger", "currentIndex", 3};
    QTest::newRow("SBUS zoom") << ControlValue{"cbSbusZoom", "currentIndex", 0};
    QTest::newRow("SBUS zoom mode, from the gimbal rule")
        << ControlValue{"cbSbusZoomMode", "currentIndex", 1};
    QTest::newRow("trigger low, slot 3") << ControlValue{"sBTriggerLow", "value", 103};
    QTest::newRow("trigger high, slot 3") << ControlValue{"sBTriggerHigh", "value", 2003};
}

void TestLoad::changedFormLoadsBack()
{
    QFETCH(ControlValue, expected);
    const QString path = writeFile(sealedFile(changedFormValues()));
    auto window = freshWindow();

    const LoadRun run = pressReadFromFile(*window, ModalAnswerer::chooseFile(path));

    VERIFY_DIALOGS(run, *window, 1);
    QCOMPARE(run.descriptorsLeftOpen, 0);
    QCOMPARE(describeForm(*window, {expected}), describe({expected}));
}

void TestLoad::storedValue_data()
{
    // The untouched form's file with changes, loaded into a fresh window in which the user first
    // made the settings of "before"; no rule fires.
    QTest::addColumn<FieldValues>("changes");
    QTest::addColumn<ControlValues>("before");
    QTest::addColumn<QStringList>("err");
    QTest::addColumn<ControlValues>("expected");

    const QStringList none;
    const QStringList notImplemented{kNotImplemented};

    QTest::newRow("offset 125 is 1.25") << FieldValues{{Field::esoOffset, 125}} << ControlValues{}
                                        << none << ControlValues{{"sb_eso_offset", "value", 1.25}};
    QTest::newRow("offset -125, read unsigned, is clamped to 10.00")
        << FieldValues{{Field::esoOffset, 0xFFFFFF83}} << ControlValues{} << none
        << ControlValues{{"sb_eso_offset", "value", 10.0}};
    QTest::newRow("offset 1001 is clamped to 10.00")
        << FieldValues{{Field::esoOffset, 1001}} << ControlValues{} << none
        << ControlValues{{"sb_eso_offset", "value", 10.0}};
    QTest::newRow("heating 5000 is clamped to 1000")
        << FieldValues{{Field::esoHeating, 5000}} << ControlValues{} << none
        << ControlValues{{"sb_eso_heating", "value", 1000}};
    QTest::newRow("heatcycle -1 is clamped to 0")
        << FieldValues{{Field::esoHeatcycle, 0xFFFFFFFF}} << ControlValues{} << none
        << ControlValues{{"sb_eso_heatcycle", "value", 0}};
    QTest::newRow("shutter interval 3601 is clamped to 3600")
        << FieldValues{{Field::esoShutterInterval, 3601}} << ControlValues{} << none
        << ControlValues{{"sb_eso_shutterinterval", "value", 3600}};
    QTest::newRow("opt5 100 is clamped to 99")
        << FieldValues{{Field::esoOpt5, 100}} << ControlValues{} << none
        << ControlValues{{"sb_eso_opt5", "value", 99}};
    QTest::newRow("isotherm lower 2000 is clamped to 1000")
        << FieldValues{{Field::isothermLower, 2000}} << ControlValues{} << none
        << ControlValues{{"sbIsothermsLower", "value", 1000}};
    QTest::newRow("isotherm upper 65535, zero-extended, is clamped to 1000")
        << FieldValues{{Field::isothermUpper, 65535}} << ControlValues{} << none
        << ControlValues{{"sbIsothermsUpper", "value", 1000}};
    QTest::newRow("trigger low 0 in slot 4 is clamped to 1")
        << FieldValues{{Field::triggerLow, 0, 4}} << ControlValues{} << none
        << ControlValues{{"sBTriggerLow", "value", 1}};
    QTest::newRow("trigger high 65535 in slot 4 is clamped to 2047")
        << FieldValues{{Field::triggerHigh, 65535, 4}} << ControlValues{} << none
        << ControlValues{{"sBTriggerHigh", "value", 2047}};
    QTest::newRow("max frames per file 0 is clamped to 1")
        << FieldValues{{Field::recMaxFramesPerFile, 0}} << ControlValues{} << none
        << ControlValues{{"sbRecMaxframesperfile", "value", 1}};
    QTest::newRow("parity 200 leaves no current item")
        << FieldValues{{Field::serialParity, 200}} << ControlValues{} << none
        << ControlValues{{"cbParity", "currentIndex", -1}};
    QTest::newRow("SBUS zoom 200 leaves no current item")
        << FieldValues{{Field::sbusZoom, 200}} << ControlValues{} << none
        << ControlValues{{"cbSbusZoom", "currentIndex", -1}};
    QTest::newRow("EXT 0 code 5 selects item 2")
        << FieldValues{{Field::ext0Mode, 5}} << ControlValues{} << none
        << ControlValues{{"cBext0mode", "currentIndex", 2}};
    QTest::newRow("EXT 0 code 1 selects item 1")
        << FieldValues{{Field::ext0Mode, 1}} << ControlValues{} << none
        << ControlValues{{"cBext0mode", "currentIndex", 1}};
    QTest::newRow("EXT 0 code 0 selects item 0")
        << FieldValues{{Field::ext0Mode, 0}} << ControlValues{{"cBext0mode", "currentIndex", 2}}
        << none << ControlValues{{"cBext0mode", "currentIndex", 0}};
    QTest::newRow("EXT 0 code 2 is not implemented")
        << FieldValues{{Field::ext0Mode, 2}} << ControlValues{{"cBext0mode", "currentIndex", 1}}
        << notImplemented << ControlValues{{"cBext0mode", "currentIndex", 1}};
    QTest::newRow("EXT 1 code 6 selects item 2")
        << FieldValues{{Field::ext1Mode, 6}} << ControlValues{} << none
        << ControlValues{{"cBext1mode", "currentIndex", 2}};
    QTest::newRow("EXT 1 code 2 selects item 1")
        << FieldValues{{Field::ext1Mode, 2}} << ControlValues{} << none
        << ControlValues{{"cBext1mode", "currentIndex", 1}};
    QTest::newRow("EXT 1 code 0 selects item 0")
        << FieldValues{{Field::ext1Mode, 0}} << ControlValues{{"cBext1mode", "currentIndex", 2}}
        << none << ControlValues{{"cBext1mode", "currentIndex", 0}};
    QTest::newRow("EXT 1 code 5 is not implemented")
        << FieldValues{{Field::ext1Mode, 5}} << ControlValues{{"cBext1mode", "currentIndex", 1}}
        << notImplemented << ControlValues{{"cBext1mode", "currentIndex", 1}};
    QTest::newRow("EXT 1 code 1, port 0's code, is not implemented")
        << FieldValues{{Field::ext1Mode, 1}} << ControlValues{{"cBext1mode", "currentIndex", 2}}
        << notImplemented << ControlValues{{"cBext1mode", "currentIndex", 2}};
    QTest::newRow("both ports with unknown codes")
        << FieldValues{{Field::ext0Mode, 3}, {Field::ext1Mode, 4}}
        << ControlValues{{"cBext0mode", "currentIndex", 1}, {"cBext1mode", "currentIndex", 2}}
        << QStringList{kNotImplemented, kNotImplemented}
        << ControlValues{{"cBext0mode", "currentIndex", 1}, {"cBext1mode", "currentIndex", 2}};
    QTest::newRow("SBUS trigger 4 takes slot 4 of both arrays")
        << distinctTriggerThresholds() + FieldValues{{Field::sbusTrigger, 4}} << ControlValues{}
        << none
        << ControlValues{{"cbSbusTrigger", "currentIndex", 4},
                         {"sBTriggerLow", "value", 104},
                         {"sBTriggerHigh", "value", 2004}};
    QTest::newRow("SBUS trigger 0 takes slot 0 of both arrays")
        << distinctTriggerThresholds() + FieldValues{{Field::sbusTrigger, 0}} << ControlValues{}
        << none
        << ControlValues{{"cbSbusTrigger", "currentIndex", 0},
                         {"sBTriggerLow", "value", 100},
                         {"sBTriggerHigh", "value", 2000}};
    QTest::newRow("SBUS trigger 19, past the list, takes slot 19")
        << distinctTriggerThresholds() + FieldValues{{Field::sbusTrigger, 19}} << ControlValues{}
        << none
        << ControlValues{{"cbSbusTrigger", "currentIndex", -1},
                         {"sBTriggerLow", "value", 119},
                         {"sBTriggerHigh", "value", 2019}};
    QTest::newRow("SBUS trigger 25, past the arrays, leaves both thresholds")
        << distinctTriggerThresholds() + FieldValues{{Field::sbusTrigger, 25}, {Field::sbusZoom, 7}}
        << ControlValues{{"sBTriggerLow", "value", 500}, {"sBTriggerHigh", "value", 1500}} << none
        << ControlValues{{"cbSbusTrigger", "currentIndex", -1},
                         {"cbSbusZoom", "currentIndex", 7},
                         {"sBTriggerLow", "value", 500},
                         {"sBTriggerHigh", "value", 1500}};
    QTest::newRow("baud rate 9600 selects its item")
        << FieldValues{{Field::serialBaudrate, 9600}} << ControlValues{} << none
        << ControlValues{{"cbBaudrate", "currentIndex", 3}};
    QTest::newRow("baud rate 921600 selects the last item")
        << FieldValues{{Field::serialBaudrate, 921600}} << ControlValues{} << none
        << ControlValues{{"cbBaudrate", "currentIndex", 10}};
    QTest::newRow("baud rate 12345, with no item, leaves the box")
        << FieldValues{{Field::serialBaudrate, 12345}}
        << ControlValues{{"cbBaudrate", "currentIndex", 2}} << none
        << ControlValues{{"cbBaudrate", "currentIndex", 2}};
    QTest::newRow("stop bits 2 selects \"2\"")
        << FieldValues{{Field::serialStopBits, 2}} << ControlValues{} << none
        << ControlValues{{"cbStopBit", "currentIndex", 1}};
    QTest::newRow("stop bits 1 selects \"1\"")
        << FieldValues{{Field::serialStopBits, 1}}
        << ControlValues{{"cbStopBit", "currentIndex", 1}} << none
        << ControlValues{{"cbStopBit", "currentIndex", 0}};
    QTest::newRow("stop bits 3, with no item, leaves the box")
        << FieldValues{{Field::serialStopBits, 3}}
        << ControlValues{{"cbStopBit", "currentIndex", 1}} << none
        << ControlValues{{"cbStopBit", "currentIndex", 1}};
    QTest::newRow("inverted signal 0 unchecks")
        << FieldValues{{Field::serialInverted, 0}} << ControlValues{} << none
        << ControlValues{{"cbInverted", "checked", false}};
    QTest::newRow("frame skip 4294967295")
        << FieldValues{{Field::frameSkip, 4294967295}} << ControlValues{} << none
        << ControlValues{{"leFrameSkip", "text", "4294967295"}};
    QTest::newRow("isotherm switch mode 1 goes to the start-state box")
        << FieldValues{{Field::isothermState, 0}, {Field::isothermSwitchMode, 1}} << ControlValues{}
        << none
        << ControlValues{{"cbIsothermsState", "currentIndex", 1},
                         {"cbIsothermSwitchMode", "currentIndex", 0}};
    QTest::newRow("isotherm state 1 is overwritten by switch mode 0")
        << FieldValues{{Field::isothermState, 1}} << ControlValues{} << none
        << ControlValues{{"cbIsothermsState", "currentIndex", 0}};
    QTest::newRow("SBUS switch modes are not restored")
        << FieldValues{{Field::sbusColorMapSwitchMode, 1}, {Field::sbusZoomMode, 1}}
        << ControlValues{} << none
        << ControlValues{{"cbSbusColorMapSwitchMode", "currentIndex", 0},
                         {"cbSbusZoomMode", "currentIndex", 0}};
}

void TestLoad::storedValue()
{
    QFETCH(FieldValues, changes);
    QFETCH(ControlValues, before);
    QFETCH(QStringList, err);
    QFETCH(ControlValues, expected);
    const QByteArray file = sealedFile(untouchedFormValues() + changes);
    const QString path = writeFile(file);
    auto window = freshWindow();
    setControlValues(*window, before);

    const LoadRun run = pressReadFromFile(*window, ModalAnswerer::chooseFile(path));

    VERIFY_DIALOGS(run, *window, 1);
    QCOMPARE(run.out, loadedLines(referenceChecksum(file)));
    QCOMPARE(run.err, err);
    QCOMPARE(run.descriptorsLeftOpen, 0);
    QCOMPARE(describeForm(*window, expected), describe(expected));
}

void TestLoad::rulesFiredByLoad_data()
{
    QTest::addColumn<ControlValues>("before");
    QTest::addColumn<FieldValues>("file");
    QTest::addColumn<QStringList>("lines"); // both streams in order, standard error as "ERR: "
    QTest::addColumn<ControlValues>("expected");

    const QString gimbalOn = QStringLiteral("on cb gimbalrc 2");
    const QString gimbalOff = QStringLiteral("on cb gimbalrc 0");
    const QString pinModeText =
        QStringLiteral("MainWindow::on_cbTriggerPinMode_currentIndexChanged()");
    const QString shutter = QStringLiteral("MainWindow::on_checkBox_stateChanged()");
    const auto crcRead = [](const FieldValues &file) {
        return QStringLiteral("CRC read: %1").arg(referenceChecksum(sealedFile(file)));
    };

    // Step 1 checks the gimbal box: its rule runs twice, the first run moving the trigger mode
    // to SBUS (nested pin-mode lines), the second finding everything set. Step 2 picks "Custom
    // settings", step 3 the shutter, step 14 PPM, which the attached gimbal keeps from opening
    // the SBUS/PPM page.
    QTest::newRow("gimbal attached, custom GPS, shutter on, PPM")
        << ControlValues{} << changedFormValues()
        << QStringList{kClicked, crcRead(changedFormValues()),        kReading,
                       gimbalOn, "on_cbTriggerPinModeIndexChanged 1", pinModeText,
                       gimbalOn, "cbPeripheryGPSIndexChanged 0",      "<<< enable tabSerial",
                       shutter,  "on_cbTriggerPinModeIndexChanged 5", pinModeText}
        << ControlValues{{"tab_SBUS", "ownEnabled", false},
                         {"cbSbusFFC", "ownEnabled", false},
                         {"tabSerial", "ownEnabled", true},
                         {"gb_externalshutteroptions", "hidden", false},
                         {"gb_externalshutteroptions", "ownEnabled", true},
                         {"cBext0mode", "ownEnabled", false},
                         {"cBext1mode", "ownEnabled", false},
                         {"cbIsothermsState", "ownEnabled", false},
                         {"cbTriggerPinMode", "ownEnabled", false},
                         {"cbTriggerFrameMode", "ownEnabled", false},
                         {"cBOverlayMode", "ownEnabled", false}};

    // The user had attached the gimbal and switched the shutter on. Releasing the gimbal moves
    // the trigger mode from SBUS to ON/OFF in the first run, which locks the SBUS/PPM page; the
    // second run unlocks it and, the mode being ON/OFF already, nothing locks it again. Then the
    // third receiver presets the serial page, the shutter goes off, and EXT 1 code 7 is unknown.
    const FieldValues receiver3 =
        untouchedFormValues() + FieldValues{{Field::gpsReceiver, 3}, {Field::ext1Mode, 7}};
    QTest::newRow("gimbal released, receiver 3, shutter off, unknown EXT 1 code")
        << ControlValues{{"cbPeripheryGimbalrc", "checked", true},
                         {"cb_externalshutter", "checked", true}}
        << receiver3
        << QStringList{kClicked,
                       crcRead(receiver3),
                       kReading,
                       gimbalOff,
                       "on_cbTriggerPinModeIndexChanged 0",
                       pinModeText,
                       gimbalOff,
                       "cbPeripheryGPSIndexChanged 3",
                       shutter,
                       "ERR: " + kNotImplemented}
        << ControlValues{{"tab_SBUS", "ownEnabled", true},
                         {"cbSbusFFC", "ownEnabled", false},
                         {"cbTriggerPinMode", "currentIndex", 0},
                         {"cbTriggerPinMode", "ownEnabled", true},
                         {"tabSerial", "ownEnabled", false},
                         {"cbBaudrate", "currentIndex", 5},
                         {"gb_externalshutteroptions", "hidden", true},
                         {"gb_externalshutteroptions", "ownEnabled", false},
                         {"cBext0mode", "currentIndex", 0},
                         {"cBext0mode", "ownEnabled", true},
                         {"cBext1mode", "currentIndex", 0},
                         {"cBext1mode", "ownEnabled", true},
                         {"cbIsothermsState", "ownEnabled", true},
                         {"cbIsothermSwitchMode", "currentIndex", 0},
                         {"cbSbusColorMapSwitchMode", "currentIndex", 0},
                         {"cbSbusZoomMode", "currentIndex", 0},
                         {"cbTriggerFrameMode", "ownEnabled", true},
                         {"cBOverlayMode", "ownEnabled", true}};

    // Without the gimbal, SBUS at step 14 opens the page and its FFC box. EXT 0 code 2 is
    // unknown, so that box keeps the item the shutter rule chose at step 3.
    const FieldValues receiver1 = untouchedFormValues() + FieldValues{{Field::triggerPinMode, 1},
                                                                      {Field::gpsReceiver, 1},
                                                                      {Field::externalShutter, 1},
                                                                      {Field::ext0Mode, 2},
                                                                      {Field::ext1Mode, 6}};
    QTest::newRow("receiver 1, shutter on, SBUS, unknown EXT 0 code")
        << ControlValues{} << receiver1
        << QStringList{kClicked,    crcRead(receiver1),
                       kReading,    "cbPeripheryGPSIndexChanged 1",
                       shutter,     "on_cbTriggerPinModeIndexChanged 1",
                       pinModeText, "ERR: " + kNotImplemented}
        << ControlValues{{"tab_SBUS", "ownEnabled", true},
                         {"cbSbusFFC", "ownEnabled", true},
                         {"tabSerial", "ownEnabled", false},
                         {"cbBaudrate", "currentIndex", 5},
                         {"gb_externalshutteroptions", "hidden", false},
                         {"cBext0mode", "currentIndex", 2},
                         {"cBext0mode", "ownEnabled", false},
                         {"cBext1mode", "currentIndex", 2},
                         {"cBext1mode", "ownEnabled", false}};
}

void TestLoad::rulesFiredByLoad()
{
    QFETCH(ControlValues, before);
    QFETCH(FieldValues, file);
    QFETCH(QStringList, lines);
    QFETCH(ControlValues, expected);
    const QString path = writeFile(sealedFile(file));
    auto window = freshWindow();
    {
        ConsoleCapture userActionLines; // not part of the load
        setControlValues(*window, before);
    }

    const LoadRun run = pressReadFromFile(*window, ModalAnswerer::chooseFile(path));

    VERIFY_DIALOGS(run, *window, 1);
    QCOMPARE(run.all, lines);
    QCOMPARE(run.descriptorsLeftOpen, 0);
    QCOMPARE(describeForm(*window, expected), describe(expected));
}

void TestLoad::longerFile_data()
{
    QTest::addColumn<int>("size");

    QTest::newRow("200 bytes") << 200;
    QTest::newRow("2000 bytes, more than one read takes") << 2000;
}

void TestLoad::longerFile()
{
    QFETCH(int, size);
    QByteArray content = sealedFile(untouchedFormValues() + FieldValues{{Field::frameSkip, 20000}});
    content.append(size - content.size(), '\xEE');
    const QString path = writeFile(content);
    auto window = freshWindow();

    const LoadRun run = pressReadFromFile(*window, ModalAnswerer::chooseFile(path));

    VERIFY_DIALOGS(run, *window, 1);
    QCOMPARE(run.out, loadedLines(referenceChecksum(content)));
    QCOMPARE(run.err, QStringList());
    QCOMPARE(run.descriptorsLeftOpen, 0);
    QCOMPARE(controlValue(*window, "leFrameSkip", "text"), QVariant("20000"));
}

QTEST_MAIN(TestLoad)
#include "tst_load.moc"
