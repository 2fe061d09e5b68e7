// The window from the keyboard alone, with real key events: Tab reaches every enabled control
// of every page, in the order the controls are created; Space works the check boxes; Ctrl+Tab
// and Ctrl+Shift+Tab switch pages, except that a combo box keeps Ctrl+Tab to itself.
// The expected orders are written out by hand.

#include "mainwindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QTabWidget>
#include <QtTest>
#include <memory>

namespace {

// More presses than any page has stops: a walk that never comes back is a failure, not a hang.
constexpr int maxTabPresses = 100;

QWidget *focused()
{
    return QApplication::focusWidget();
}

// The controls of a page that Tab must reach: enabled, shown and taking focus by Tab. A spin
// box's inner line edit hands its focus to the spin box, so it is no stop of its own.
QSet<QWidget *> reachableControls(QWidget *page)
{
    QSet<QWidget *> controls;
    const auto widgets = page->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if ((widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() && widget->isVisible() &&
            !widget->focusProxy())
            controls.insert(widget);
    }
    return controls;
}

} // namespace

class TestKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void tabOrderOfEachPage_data();
    void tabOrderOfEachPage();
    void tabReachesEveryEnabledControl();
    void spaceTogglesACheckBox();
    void pageSwitching();
    void openedPagesKeepTheirOrder();

private:
    // Ctrl+Tab from the tab bar until the page at index is shown.
    void showPage(int index);
    // Presses Tab from the tab bar round the whole window; returns the stops on the current page.
    QStringList tabStopsOnCurrentPage();
    // Presses Tab until the focus leaves the tab bar (and its scroll arrows).
    void tabOutOfTheTabBar();
    QSet<QWidget *> tabStopsRound();

    std::unique_ptr<MainWindow> m_window;
    QTabWidget *m_tabs = nullptr;
};

void TestKeyboard::init()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QApplication::setActiveWindow(m_window.get());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_tabs = m_window->findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    QVERIFY(m_tabs != nullptr);
}

void TestKeyboard::cleanup()
{
    m_window.reset();
}

void TestKeyboard::showPage(int index)
{
    QWidget *tabBar = m_tabs->tabBar();
    tabBar->setFocus(Qt::TabFocusReason);
    QCOMPARE(focused(), tabBar);
    for (int presses = 0; m_tabs->currentIndex() != index && presses < m_tabs->count(); ++presses)
        QTest::keyClick(tabBar, Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(m_tabs->currentIndex(), index);
}

void TestKeyboard::tabOutOfTheTabBar()
{
    for (int presses = 0; presses < maxTabPresses; ++presses) {
        QTest::keyClick(focused(), Qt::Key_Tab);
        if (focused() != m_tabs->tabBar() && !m_tabs->tabBar()->isAncestorOf(focused()))
            return;
    }
}

QSet<QWidget *> TestKeyboard::tabStopsRound()
{
    QSet<QWidget *> stops;
    QWidget *start = focused();
    for (int presses = 0; presses < maxTabPresses; ++presses) {
        QTest::keyClick(focused(), Qt::Key_Tab);
        if (focused() == start)
            return stops;
        stops.insert(focused());
    }
    qWarning("Tab did not come back to where it started");
    return {};
}

QStringList TestKeyboard::tabStopsOnCurrentPage()
{
    QWidget *page = m_tabs->currentWidget();
    QStringList names;
    QWidget *start = focused();
    for (int presses = 0; presses < maxTabPresses; ++presses) {
        QTest::keyClick(focused(), Qt::Key_Tab);
        if (focused() == start)
            return names;
        if (m_tabs->tabBar()->isAncestorOf(focused()))
            continue; // the tab bar's scroll arrows, shown when its tabs do not fit the font
        if (page->isAncestorOf(focused()))
            names.append(focused()->objectName());
        else
            names.append(QStringLiteral("(") + focused()->objectName() + QStringLiteral(")"));
    }
    return {QStringLiteral("Tab did not come back to where it started")};
}

void TestKeyboard::tabOrderOfEachPage_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QStringList>("order");
    // After the page's controls Tab goes on to the two command buttons and back to the tab bar.
    const QStringList frame = {QStringLiteral("(btnReadConf)"), QStringLiteral("(btnSetConf)")};
    QTest::newRow("Periphery") << 0
                               << QStringList{"cbPeripheryGimbalrc", "cbPeripheryGPS",
                                              "cb_externalshutter"} +
                                      frame;
    QTest::newRow("Trigger") << 1
                             << QStringList{"cbTriggerFrameMode", "cbTriggerPinMode",
                                            "cbTriggerFFCMode"} +
                                    frame;
    QTest::newRow("GPS/Serial") << 2
                                << QStringList{"cbParity", "cbStopBit", "cbInverted",
                                               "cbBaudrate"} +
                                       frame;
    // Built disabled: nothing to reach until the trigger mode opens it.
    QTest::newRow("SBUS/PPM") << 3 << frame;
    QTest::newRow("Extensions") << 4 << QStringList{"cBext0mode", "cBext1mode"} + frame;
    QTest::newRow("Isotherms") << 5
                               << QStringList{"cbIsothermsState", "sbIsothermsLower",
                                              "sbIsothermsMiddle", "sbIsothermsUpper"} +
                                      frame;
    QTest::newRow("Overlay") << 6 << QStringList{"cBOverlayMode"} + frame;
    QTest::newRow("Recording Options")
        << 7 << QStringList{"leFrameSkip", "sbRecMaxframesperfile"} + frame;
}

void TestKeyboard::tabOrderOfEachPage()
{
    QFETCH(int, page);
    QFETCH(QStringList, order);
    showPage(page);
    const QStringList stops = tabStopsOnCurrentPage();
    QCOMPARE(stops.join(QLatin1Char(' ')), order.join(QLatin1Char(' ')));
}

// Once the keyboard has opened everything that starts closed (SBUS as trigger mode opens the
// SBUS/PPM page, the external shutter shows its options), Tab still reaches every enabled
// control of every page.
void TestKeyboard::tabReachesEveryEnabledControl()
{
    auto *triggerMode = m_window->findChild<QComboBox *>(QStringLiteral("cbTriggerPinMode"));
    auto *shutter = m_window->findChild<QCheckBox *>(QStringLiteral("cb_externalshutter"));
    QVERIFY(triggerMode != nullptr && shutter != nullptr);
    showPage(1);
    triggerMode->setFocus(Qt::TabFocusReason);
    QTest::keyClick(triggerMode, Qt::Key_Down);
    QCOMPARE(triggerMode->currentText(), QStringLiteral("SBUS"));
    showPage(0);
    shutter->setFocus(Qt::TabFocusReason);
    QTest::keyClick(shutter, Qt::Key_Space);
    QVERIFY(shutter->isChecked());

    int reached = 0;
    for (int page = 0; page < m_tabs->count(); ++page) {
        showPage(page);
        const QSet<QWidget *> expected = reachableControls(m_tabs->widget(page));
        const QSet<QWidget *> stops = tabStopsRound();
        for (QWidget *control : expected)
            QVERIFY2(stops.contains(control),
                     qPrintable(control->objectName() + " is not reached by Tab"));
        reached += expected.size();
    }
    // 3 + 2 shutter options on Periphery, 3 Trigger, 4 Serial, 11 SBUS/PPM (its two switch-mode
    // boxes stay disabled), 0 Extensions (the shutter claims both ports), 4 Isotherms (the
    // switch mode stays disabled), 1 Overlay, 2 Recording Options.
    QCOMPARE(reached, 30);
}

void TestKeyboard::spaceTogglesACheckBox()
{
    auto *gimbal = m_window->findChild<QCheckBox *>(QStringLiteral("cbPeripheryGimbalrc"));
    QVERIFY(gimbal != nullptr);
    showPage(0);
    tabOutOfTheTabBar();
    QCOMPARE(focused(), gimbal);
    QTest::keyClick(gimbal, Qt::Key_Space);
    QVERIFY(gimbal->isChecked());
    QTest::keyClick(gimbal, Qt::Key_Space);
    QVERIFY(!gimbal->isChecked());
}

void TestKeyboard::pageSwitching()
{
    auto *frameMode = m_window->findChild<QComboBox *>(QStringLiteral("cbTriggerFrameMode"));
    QVERIFY(frameMode != nullptr);
    showPage(1);
    tabOutOfTheTabBar();
    QCOMPARE(focused(), frameMode);
    // As an X keyboard sends them: Ctrl+Tab is the key Tab with the text of a tab character,
    // which the combo box takes for a search; Ctrl+Shift+Tab is the key Backtab without text,
    // which it passes on to the tab container.
    QTest::sendKeyEvent(QTest::Click, frameMode, Qt::Key_Tab, QStringLiteral("\t"),
                        Qt::ControlModifier);
    QCOMPARE(m_tabs->currentIndex(), 1);
    QTest::sendKeyEvent(QTest::Click, frameMode, Qt::Key_Backtab, QString(),
                        Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_tabs->currentIndex(), 0);
}

// The controls that start closed take their places in the order of creation too.
void TestKeyboard::openedPagesKeepTheirOrder()
{
    auto *triggerMode = m_window->findChild<QComboBox *>(QStringLiteral("cbTriggerPinMode"));
    auto *shutter = m_window->findChild<QCheckBox *>(QStringLiteral("cb_externalshutter"));
    QVERIFY(triggerMode != nullptr && shutter != nullptr);
    showPage(1);
    triggerMode->setFocus(Qt::TabFocusReason);
    QTest::keyClick(triggerMode, Qt::Key_Down);
    showPage(0);
    shutter->setFocus(Qt::TabFocusReason);
    QTest::keyClick(shutter, Qt::Key_Space);

    showPage(0);
    QCOMPARE(tabStopsOnCurrentPage().join(QLatin1Char(' ')),
             QStringLiteral("cbPeripheryGimbalrc cbPeripheryGPS cb_externalshutter "
                            "sb_eso_shutterinterval sb_eso_offset (btnReadConf) (btnSetConf)"));
    showPage(3);
    QCOMPARE(tabStopsOnCurrentPage().join(QLatin1Char(' ')),
             QStringLiteral("sBTriggerLow cbSbusFFC cbSbusIsotherms cbSbusColormap cbSbusIsoLow "
                            "cbSbusIsoMid cbSbusIsoUp cbSbusOverlay sBTriggerHigh cbSbusTrigger "
                            "cbSbusZoom (btnReadConf) (btnSetConf)"));
}

QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
