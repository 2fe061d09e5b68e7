// The form rules: how the trigger pin mode, the GPS receiver, the gimbal remote control and the
// external shutter enable, lock and preset other controls, and the console lines they print.
//
// Most cases are scenarios: a fresh window, what the user did before (not recorded), the step
// under test, then the lines that step printed and the states of the controls it concerns.
// Console lines are written as ConsoleCapture::all() gives them, standard error lines marked
// "ERR: "; control states as formstate.h describes them.

#include "consolecapture.h"
#include "formactions.h"
#include "formstate.h"
#include "mainwindow.h"

#include <QTest>

namespace {

const QString kGimbal = QStringLiteral("cbPeripheryGimbalrc");
const QString kGps = QStringLiteral("cbPeripheryGPS");
const QString kPinMode = QStringLiteral("cbTriggerPinMode");
const QString kShutter = QStringLiteral("cb_externalshutter");

const FormAction kNothing = inOrder({});

// Serial settings that no GPS receiver preset uses, so that a preset shows.
const FormAction kChangeSerialValues =
    inOrder({selectItem(QStringLiteral("cbBaudrate"), 9), selectItem(QStringLiteral("cbParity"), 2),
             selectItem(QStringLiteral("cbStopBit"), 1),
             setCheck(QStringLiteral("cbInverted"), Qt::Unchecked)});

// Values that the gimbal rule resets, moved away from their resets.
const FormAction kChangeGimbalDrivenValues =
    inOrder({selectItem(QStringLiteral("cbIsothermsState"), 1),
             selectItem(QStringLiteral("cbTriggerFrameMode"), 1),
             selectItem(QStringLiteral("cBOverlayMode"), 1)});

// Checks each stream apart, then the order of all lines across both.
void compareConsole(const ConsoleCapture &capture, const QStringList &expected)
{
    const QString errorMark = QStringLiteral("ERR: ");
    QStringList expectedOut;
    QStringList expectedErr;
    for (const QString &line : expected) {
        if (line.startsWith(errorMark))
            expectedErr << line.mid(errorMark.size());
        else
            expectedOut << line;
    }
    QCOMPARE(capture.out(), expectedOut);
    QCOMPARE(capture.err(), expectedErr);
    QCOMPARE(capture.all(), expected);
    QCOMPARE(capture.unterminated(), QString());
}

void addScenarioColumns()
{
    QTest::addColumn<FormAction>("before");
    QTest::addColumn<FormAction>("step");
    QTest::addColumn<QStringList>("console");
    QTest::addColumn<QStringList>("states");
}

void runScenario()
{
    QFETCH(FormAction, before);
    QFETCH(FormAction, step);
    QFETCH(QStringList, console);
    QFETCH(QStringList, states);

    ConsoleCapture capture;
    MainWindow window;
    before(window);
    capture.clear();
    step(window);

    compareConsole(capture, console);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(statesLike(window, states), states);
}

} // namespace

class TestRules : public QObject
{
    Q_OBJECT

private slots:
    void startUp_data();
    void startUp();
    void triggerPinMode_data();
    void triggerPinMode() { runScenario(); }
    void gpsReceiver_data();
    void gpsReceiver() { runScenario(); }
    void gimbalRemoteControl_data();
    void gimbalRemoteControl() { runScenario(); }
    void externalShutter_data();
    void externalShutter() { runScenario(); }
    void releasingTheGimbalRestoresTheStartChannels_data();
    void releasingTheGimbalRestoresTheStartChannels();
};

void TestRules::startUp_data()
{
    QTest::addColumn<QStringList>("states");

    // The start-up selections are made before any rule is connected, so the form keeps the
    // states of its build: the serial page open although a GPS receiver is selected.
    QTest::newRow("fresh window") << QStringList{
        "tab_SBUS: disabled",
        "cbSbusFFC: 5 disabled",
        "cbTriggerPinMode: 0 enabled",
        "tabSerial: enabled",
        "cbPeripheryGPS: 2 enabled",
        "cbBaudrate: 5 enabled",
        "cbPeripheryGimbalrc: unchecked enabled",
        "cb_externalshutter: unchecked enabled",
        "gb_externalshutteroptions: enabled hidden",
    };
}

void TestRules::startUp()
{
    QFETCH(QStringList, states);

    ConsoleCapture capture;
    MainWindow window;

    compareConsole(capture, {});
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(statesLike(window, states), states);
}

void TestRules::triggerPinMode_data()
{
    addScenarioColumns();

    QTest::newRow("ON/OFF after SBUS")
        << selectItem(kPinMode, 1) << selectItem(kPinMode, 0)
        << QStringList{"on_cbTriggerPinModeIndexChanged 0",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 5 enabled", "cbTriggerPinMode: 0 enabled"};
    QTest::newRow("SBUS") << kNothing << selectItem(kPinMode, 1)
                          << QStringList{"on_cbTriggerPinModeIndexChanged 1",
                                         "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
                          << QStringList{"tab_SBUS: enabled", "cbSbusFFC: 5 enabled",
                                         "cbTriggerPinMode: 1 enabled"};
    QTest::newRow("Serial input")
        << kNothing << selectItem(kPinMode, 2)
        << QStringList{"on_cbTriggerPinModeIndexChanged 2",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 5 disabled",
                       "cbTriggerPinMode: 2 enabled"};
    QTest::newRow("PWM (normal) after PPM")
        << selectItem(kPinMode, 5) << selectItem(kPinMode, 3)
        << QStringList{"on_cbTriggerPinModeIndexChanged 3",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 5 enabled", "cbTriggerPinMode: 3 enabled"};
    QTest::newRow("PWM (inverted) after SBUS")
        << selectItem(kPinMode, 1) << selectItem(kPinMode, 4)
        << QStringList{"on_cbTriggerPinModeIndexChanged 4",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 5 enabled", "cbTriggerPinMode: 4 enabled"};
    QTest::newRow("PPM") << kNothing << selectItem(kPinMode, 5)
                         << QStringList{"on_cbTriggerPinModeIndexChanged 5",
                                        "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
                         << QStringList{"tab_SBUS: enabled", "cbSbusFFC: 5 enabled",
                                        "cbTriggerPinMode: 5 enabled"};
    QTest::newRow("no item after PPM")
        << selectItem(kPinMode, 5) << selectItem(kPinMode, -1)
        << QStringList{"on_cbTriggerPinModeIndexChanged -1",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 5 enabled",
                       "cbTriggerPinMode: -1 enabled"};

    // Checking the gimbal box has already set the pin mode to "SBUS" and disabled its box; the
    // index can still be set from code, as a load does.
    const FormAction attachGimbal = setCheck(kGimbal, Qt::Checked);
    QTest::newRow("ON/OFF, gimbal attached")
        << attachGimbal << selectItem(kPinMode, 0)
        << QStringList{"on_cbTriggerPinModeIndexChanged 0",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 1 disabled",
                       "cbTriggerPinMode: 0 disabled"};
    QTest::newRow("SBUS after ON/OFF, gimbal attached")
        << inOrder({attachGimbal, selectItem(kPinMode, 0)}) << selectItem(kPinMode, 1)
        << QStringList{"on_cbTriggerPinModeIndexChanged 1",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 1 disabled",
                       "cbTriggerPinMode: 1 disabled"};
    QTest::newRow("Serial input, gimbal attached")
        << attachGimbal << selectItem(kPinMode, 2)
        << QStringList{"on_cbTriggerPinModeIndexChanged 2",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 1 disabled",
                       "cbTriggerPinMode: 2 disabled"};
    QTest::newRow("PWM (normal), gimbal attached")
        << attachGimbal << selectItem(kPinMode, 3)
        << QStringList{"on_cbTriggerPinModeIndexChanged 3",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 1 disabled",
                       "cbTriggerPinMode: 3 disabled"};
    QTest::newRow("PWM (inverted), gimbal attached")
        << attachGimbal << selectItem(kPinMode, 4)
        << QStringList{"on_cbTriggerPinModeIndexChanged 4",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 1 disabled",
                       "cbTriggerPinMode: 4 disabled"};
    QTest::newRow("PPM, gimbal attached")
        << attachGimbal << selectItem(kPinMode, 5)
        << QStringList{"on_cbTriggerPinModeIndexChanged 5",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 1 disabled",
                       "cbTriggerPinMode: 5 disabled"};
    QTest::newRow("no item, gimbal attached")
        << attachGimbal << selectItem(kPinMode, -1)
        << QStringList{"on_cbTriggerPinModeIndexChanged -1",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 1 disabled",
                       "cbTriggerPinMode: -1 disabled"};
}

void TestRules::gpsReceiver_data()
{
    addScenarioColumns();

    QTest::newRow("custom settings keep the serial values")
        << kChangeSerialValues << selectItem(kGps, 0)
        << QStringList{"cbPeripheryGPSIndexChanged 0", "<<< enable tabSerial"}
        << QStringList{"tabSerial: enabled",    "cbPeripheryGPS: 0 enabled",
                       "cbBaudrate: 9 enabled", "cbParity: 2 enabled",
                       "cbStopBit: 1 enabled",  "cbInverted: unchecked enabled"};
    QTest::newRow("custom settings unlock the page")
        << selectItem(kGps, 3) << selectItem(kGps, 0)
        << QStringList{"cbPeripheryGPSIndexChanged 0", "<<< enable tabSerial"}
        << QStringList{"tabSerial: enabled",    "cbPeripheryGPS: 0 enabled",
                       "cbBaudrate: 7 enabled", "cbParity: 0 enabled",
                       "cbStopBit: 0 enabled",  "cbInverted: checked enabled"};
    QTest::newRow("u-blox 6 receiver")
        << kChangeSerialValues << selectItem(kGps, 1) << QStringList{"cbPeripheryGPSIndexChanged 1"}
        << QStringList{"tabSerial: disabled",   "cbPeripheryGPS: 1 enabled",
                       "cbBaudrate: 5 enabled", "cbParity: 0 enabled",
                       "cbStopBit: 0 enabled",  "cbInverted: checked enabled"};
    QTest::newRow("u-blox 8 receiver after custom settings")
        << inOrder({selectItem(kGps, 0), kChangeSerialValues}) << selectItem(kGps, 2)
        << QStringList{"cbPeripheryGPSIndexChanged 2"}
        << QStringList{"tabSerial: disabled",   "cbPeripheryGPS: 2 enabled",
                       "cbBaudrate: 3 enabled", "cbParity: 0 enabled",
                       "cbStopBit: 0 enabled",  "cbInverted: checked enabled"};
    QTest::newRow("10Hz receiver")
        << kChangeSerialValues << selectItem(kGps, 3) << QStringList{"cbPeripheryGPSIndexChanged 3"}
        << QStringList{"tabSerial: disabled",   "cbPeripheryGPS: 3 enabled",
                       "cbBaudrate: 7 enabled", "cbParity: 0 enabled",
                       "cbStopBit: 0 enabled",  "cbInverted: checked enabled"};
    // The start index again is no change: no signal, so the page stays open.
    QTest::newRow("start receiver again")
        << kChangeSerialValues << selectItem(kGps, 2) << QStringList{}
        << QStringList{"tabSerial: enabled",    "cbPeripheryGPS: 2 enabled",
                       "cbBaudrate: 9 enabled", "cbParity: 2 enabled",
                       "cbStopBit: 1 enabled",  "cbInverted: unchecked enabled"};
    QTest::newRow("list cleared") << kChangeSerialValues << clearItems(kGps)
                                  << QStringList{"cbPeripheryGPSIndexChanged -1",
                                                 "ERR: <<< Unknown case"}
                                  << QStringList{
                                         "tabSerial: enabled",    "cbPeripheryGPS: -1 enabled",
                                         "cbBaudrate: 9 enabled", "cbParity: 2 enabled",
                                         "cbStopBit: 1 enabled",  "cbInverted: unchecked enabled"};
    QTest::newRow("no item while a receiver locks the page")
        << selectItem(kGps, 3) << selectItem(kGps, -1)
        << QStringList{"cbPeripheryGPSIndexChanged -1", "ERR: <<< Unknown case"}
        << QStringList{"tabSerial: disabled",   "cbPeripheryGPS: -1 enabled",
                       "cbBaudrate: 7 enabled", "cbParity: 0 enabled",
                       "cbStopBit: 0 enabled",  "cbInverted: checked enabled"};
}

void TestRules::gimbalRemoteControl_data()
{
    addScenarioColumns();

    // The slot is connected by name and again explicitly, so every state change runs it twice.
    // Only the first run changes the pin mode and so fires the nested pin mode lines.
    QTest::newRow("checking")
        << kChangeGimbalDrivenValues << setCheck(kGimbal, Qt::Checked)
        << QStringList{"on cb gimbalrc 2", "on_cbTriggerPinModeIndexChanged 1",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()", "on cb gimbalrc 2"}
        << QStringList{"cbPeripheryGimbalrc: checked enabled",
                       "cbIsothermsState: 0 disabled",
                       "cbIsothermSwitchMode: 1 disabled",
                       "tab_SBUS: disabled",
                       "cbSbusColormap: 0 enabled",
                       "cbSbusColorMapSwitchMode: 1 disabled",
                       "cbSbusFFC: 1 disabled",
                       "cbSbusIsotherms: 2 enabled",
                       "cbSbusIsoLow: 3 enabled",
                       "cbSbusIsoMid: 4 enabled",
                       "cbSbusIsoUp: 5 enabled",
                       "cbSbusOverlay: 6 enabled",
                       "cbSbusTrigger: 8 enabled",
                       "cbSbusZoom: 9 enabled",
                       "cbSbusZoomMode: 1 disabled",
                       "cbTriggerPinMode: 1 disabled",
                       "cbTriggerFrameMode: 0 disabled",
                       "cBOverlayMode: 0 disabled"};
    // "SBUS" opened the page; the gimbal closes it again and the pin mode does not change.
    QTest::newRow("checking with the pin mode at SBUS")
        << selectItem(kPinMode, 1) << setCheck(kGimbal, Qt::Checked)
        << QStringList{"on cb gimbalrc 2", "on cb gimbalrc 2"}
        << QStringList{"tab_SBUS: disabled", "cbSbusFFC: 1 enabled",
                       "cbTriggerPinMode: 1 disabled"};
    // The first run enables the page, then its pin mode change to "ON/OFF" disables it; the
    // second run enables it again and finds the pin mode at "ON/OFF" already, so it stays open.
    QTest::newRow("unchecking")
        << setCheck(kGimbal, Qt::Checked) << setCheck(kGimbal, Qt::Unchecked)
        << QStringList{"on cb gimbalrc 0", "on_cbTriggerPinModeIndexChanged 0",
                       "MainWindow::on_cbTriggerPinMode_currentIndexChanged()", "on cb gimbalrc 0"}
        << QStringList{"cbPeripheryGimbalrc: unchecked enabled",
                       "cbIsothermsState: 0 enabled",
                       "cbIsothermSwitchMode: 0 disabled",
                       "tab_SBUS: enabled",
                       "cbSbusColormap: 3 enabled",
                       "cbSbusColorMapSwitchMode: 0 disabled",
                       "cbSbusFFC: 5 disabled",
                       "cbSbusIsotherms: 0 enabled",
                       "cbSbusIsoLow: 16 enabled",
                       "cbSbusIsoMid: 16 enabled",
                       "cbSbusIsoUp: 16 enabled",
                       "cbSbusOverlay: 1 enabled",
                       "cbSbusTrigger: 4 enabled",
                       "cbSbusZoom: 2 enabled",
                       "cbSbusZoomMode: 0 disabled",
                       "cbTriggerPinMode: 0 enabled",
                       "cbTriggerFrameMode: 0 enabled",
                       "cBOverlayMode: 0 enabled"};
    // The page is open on "PPM" and every value the gimbal resets is moved: none of it changes.
    QTest::newRow("partially checked")
        << inOrder({selectItem(kPinMode, 5), kChangeGimbalDrivenValues})
        << setCheck(kGimbal, Qt::PartiallyChecked)
        << QStringList{"on cb gimbalrc 1", "on cb gimbalrc 1"}
        << QStringList{"cbPeripheryGimbalrc: partially checked enabled",
                       "cbIsothermsState: 1 enabled",
                       "cbIsothermSwitchMode: 0 disabled",
                       "tab_SBUS: enabled",
                       "cbSbusColormap: 3 enabled",
                       "cbSbusColorMapSwitchMode: 0 disabled",
                       "cbSbusFFC: 5 enabled",
                       "cbSbusIsotherms: 0 enabled",
                       "cbSbusIsoLow: 16 enabled",
                       "cbSbusIsoMid: 16 enabled",
                       "cbSbusIsoUp: 16 enabled",
                       "cbSbusOverlay: 1 enabled",
                       "cbSbusTrigger: 4 enabled",
                       "cbSbusZoom: 2 enabled",
                       "cbSbusZoomMode: 0 disabled",
                       "cbTriggerPinMode: 5 enabled",
                       "cbTriggerFrameMode: 1 enabled",
                       "cBOverlayMode: 1 enabled"};
}

void TestRules::externalShutter_data()
{
    addScenarioColumns();

    // The spin boxes in the options group keep their own flags whatever the group does.
    QTest::newRow("checking") << inOrder({selectItem(QStringLiteral("cBext0mode"), 1),
                                          selectItem(QStringLiteral("cBext1mode"), 1)})
                              << setCheck(kShutter, Qt::Checked)
                              << QStringList{"MainWindow::on_checkBox_stateChanged()"}
                              << QStringList{"cb_externalshutter: checked enabled",
                                             "gb_externalshutteroptions: enabled",
                                             "cBext0mode: 2 disabled",
                                             "cBext1mode: 2 disabled",
                                             "sb_eso_heating: disabled",
                                             "sb_eso_heatcycle: disabled",
                                             "sb_eso_offset: enabled",
                                             "sb_eso_shutterinterval: enabled",
                                             "sb_eso_opt5: disabled"};
    QTest::newRow("unchecking") << setCheck(kShutter, Qt::Checked)
                                << setCheck(kShutter, Qt::Unchecked)
                                << QStringList{"MainWindow::on_checkBox_stateChanged()"}
                                << QStringList{"cb_externalshutter: unchecked enabled",
                                               "gb_externalshutteroptions: disabled hidden",
                                               "cBext0mode: 0 enabled",
                                               "cBext1mode: 0 enabled",
                                               "sb_eso_heating: disabled",
                                               "sb_eso_heatcycle: disabled",
                                               "sb_eso_offset: enabled",
                                               "sb_eso_shutterinterval: enabled",
                                               "sb_eso_opt5: disabled"};
}

void TestRules::releasingTheGimbalRestoresTheStartChannels_data()
{
    QTest::addColumn<QString>("comboBox");
    QTest::addColumn<int>("startIndex");

    QTest::newRow("colour map") << "cbSbusColormap" << 3;
    QTest::newRow("colour map switch mode") << "cbSbusColorMapSwitchMode" << 0;
    QTest::newRow("FFC") << "cbSbusFFC" << 5;
    QTest::newRow("isotherms") << "cbSbusIsotherms" << 0;
    QTest::newRow("lower threshold") << "cbSbusIsoLow" << 16;
    QTest::newRow("middle threshold") << "cbSbusIsoMid" << 16;
    QTest::newRow("upper threshold") << "cbSbusIsoUp" << 16;
    QTest::newRow("overlay") << "cbSbusOverlay" << 1;
    QTest::newRow("trigger") << "cbSbusTrigger" << 4;
    QTest::newRow("zoom") << "cbSbusZoom" << 2;
    QTest::newRow("zoom mode") << "cbSbusZoomMode" << 0;
}

// The channels that releasing the gimbal puts back must stay those the form starts with.
void TestRules::releasingTheGimbalRestoresTheStartChannels()
{
    QFETCH(QString, comboBox);
    QFETCH(int, startIndex);

    ConsoleCapture quiet;
    MainWindow fresh;
    MainWindow released;
    inOrder({setCheck(kGimbal, Qt::Checked), setCheck(kGimbal, Qt::Unchecked)})(released);

    QCOMPARE(currentIndexOf(fresh, comboBox), startIndex);
    QCOMPARE(currentIndexOf(released, comboBox), currentIndexOf(fresh, comboBox));
}

QTEST_MAIN(TestRules)
#include "tst_rules.moc"
