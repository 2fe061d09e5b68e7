// The widget tree of the main window as the form builds it: every page, control, caption,
// layout and spacer, with texts, item lists, ranges, start values, enabled flags and focus order.
// Every expected value below is written out by hand; nothing is read back from the form file.

#include "mainwindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabWidget>
#include <QtTest>
#include <memory>

namespace {

// Where a widget stands. For a grid: row and column (and the column span). For a box layout:
// row holds the index in the box and column is -1.
struct ControlRow
{
    const char *name;
    const char *className;
    const char *page; // tab page that holds it; "centralWidget" for the frame's own controls
    const char *parent;
    const char *layout;
    int row;
    int column;
    int columnSpan;
    bool enabled; // the widget's own flag, not inherited from its page
};

constexpr int Box = -1;

// clang-format off
const ControlRow controlRows[] = {
    // Frame
    {"btnReadConf", "QPushButton", "centralWidget", "centralWidget", "horizontalLayout_2", 1, Box, 1, true},
    {"btnSetConf", "QPushButton", "centralWidget", "centralWidget", "horizontalLayout_2", 2, Box, 1, true},
    {"tabWidget", "QTabWidget", "centralWidget", "centralWidget", "gridLayout_10", 0, 0, 1, true},
    // Periphery
    {"label_35", "QLabel", "tab_5", "tab_5", "gridLayout_13", 1, 0, 1, true},
    {"cbPeripheryGimbalrc", "QCheckBox", "tab_5", "tab_5", "gridLayout_13", 0, 1, 1, true},
    {"label_31", "QLabel", "tab_5", "tab_5", "gridLayout_13", 0, 0, 1, true},
    {"cbPeripheryGPS", "QComboBox", "tab_5", "tab_5", "gridLayout_13", 1, 1, 1, true},
    {"cb_externalshutter", "QCheckBox", "tab_5", "tab_5", "gridLayout_13", 2, 1, 1, true},
    {"label_38", "QLabel", "tab_5", "tab_5", "gridLayout_13", 2, 0, 1, true},
    {"gb_externalshutteroptions", "QGroupBox", "tab_5", "tab_5", "gridLayout_12", 2, 1, 1, true},
    {"label_eso_heatcycle", "QLabel", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 0, 1, 1, true},
    {"label_39", "QLabel", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 0, 0, 1, true},
    {"label_eso_shutterinterval", "QLabel", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 0, 3, 1, true},
    {"label_eso_offset", "QLabel", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 0, 2, 1, true},
    {"label_eso_opt5", "QLabel", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 0, 4, 1, true},
    {"sb_eso_heating", "QSpinBox", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 1, 0, 1, false},
    {"sb_eso_heatcycle", "QSpinBox", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 1, 1, 1, false},
    {"sb_eso_shutterinterval", "QSpinBox", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 1, 3, 1, true},
    {"sb_eso_opt5", "QSpinBox", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 1, 4, 1, false},
    {"sb_eso_offset", "QDoubleSpinBox", "tab_5", "gb_externalshutteroptions", "gridLayout_18", 1, 2, 1, true},
    // Trigger
    {"label_19", "QLabel", "tab_4", "tab_4", "gridLayout", 2, 0, 1, true},
    {"label_13", "QLabel", "tab_4", "tab_4", "gridLayout", 0, 0, 1, true},
    {"cbTriggerFrameMode", "QComboBox", "tab_4", "tab_4", "gridLayout", 2, 1, 1, true},
    {"cbTriggerPinMode", "QComboBox", "tab_4", "tab_4", "gridLayout", 0, 1, 1, true},
    {"label_20", "QLabel", "tab_4", "tab_4", "gridLayout", 1, 0, 1, true},
    {"cbTriggerFFCMode", "QComboBox", "tab_4", "tab_4", "gridLayout", 1, 1, 1, true},
    // GPS/Serial
    {"label_36", "QLabel", "tabSerial", "tabSerial", "verticalLayout", 0, Box, 1, false},
    {"label_6", "QLabel", "tabSerial", "tabSerial", "gridLayout_2", 0, 0, 2, true},
    {"cbParity", "QComboBox", "tabSerial", "tabSerial", "gridLayout_2", 2, 1, 1, true},
    {"label", "QLabel", "tabSerial", "tabSerial", "gridLayout_2", 1, 0, 1, true},
    {"label_2", "QLabel", "tabSerial", "tabSerial", "gridLayout_2", 2, 0, 1, true},
    {"label_4", "QLabel", "tabSerial", "tabSerial", "gridLayout_2", 4, 0, 1, true},
    {"cbStopBit", "QComboBox", "tabSerial", "tabSerial", "gridLayout_2", 3, 1, 1, true},
    {"label_3", "QLabel", "tabSerial", "tabSerial", "gridLayout_2", 3, 0, 1, true},
    {"cbInverted", "QCheckBox", "tabSerial", "tabSerial", "gridLayout_2", 4, 1, 1, true},
    {"cbBaudrate", "QComboBox", "tabSerial", "tabSerial", "gridLayout_2", 1, 1, 1, true},
    // SBUS/PPM
    {"label_18", "QLabel", "tab_SBUS", "tab_SBUS", "verticalLayout_4", 0, Box, 1, false},
    {"label_32", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 2, 0, 1, true},
    {"sBTriggerLow", "QSpinBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 9, 2, 1, true},
    {"label_11", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 8, 0, 1, true},
    {"label_12", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 10, 0, 1, true},
    {"cbSbusFFC", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 3, 1, 1, false},
    {"cbSbusIsotherms", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 4, 1, 1, true},
    {"label_9", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 9, 0, 1, true},
    {"label_14", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 3, 0, 1, true},
    {"label_10", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 1, 0, 1, true},
    {"label_25", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 4, 0, 1, true},
    {"cbSbusColormap", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 1, 1, 1, true},
    {"label_17", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 7, 0, 1, true},
    {"label_16", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 6, 0, 1, true},
    {"label_15", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 5, 0, 1, true},
    {"cbSbusIsoLow", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 5, 1, 1, true},
    {"cbSbusIsoMid", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 6, 1, 1, true},
    {"cbSbusIsoUp", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 7, 1, 1, true},
    {"cbSbusOverlay", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 8, 1, 1, true},
    {"sBTriggerHigh", "QSpinBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 9, 3, 1, true},
    {"cbSbusTrigger", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 9, 1, 1, true},
    {"cbSbusZoom", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 10, 1, 1, true},
    {"label_27", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 0, 2, 1, true},
    {"label_28", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 0, 3, 1, true},
    {"label_33", "QLabel", "tab_SBUS", "tab_SBUS", "gridLayout_3", 11, 0, 1, true},
    {"cbSbusZoomMode", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 11, 1, 1, false},
    {"cbSbusColorMapSwitchMode", "QComboBox", "tab_SBUS", "tab_SBUS", "gridLayout_3", 2, 1, 1, false},
    // Extensions
    {"label_29", "QLabel", "tab_3", "tab_3", "gridLayout_9", 0, 0, 1, true},
    {"cBext0mode", "QComboBox", "tab_3", "tab_3", "gridLayout_9", 0, 1, 1, true},
    {"label_30", "QLabel", "tab_3", "tab_3", "gridLayout_9", 1, 0, 1, true},
    {"cBext1mode", "QComboBox", "tab_3", "tab_3", "gridLayout_9", 1, 1, 1, true},
    // Isotherms
    {"label_21", "QLabel", "Isotherms", "Isotherms", "gridLayout_4", 0, 0, 1, true},
    {"cbIsothermsState", "QComboBox", "Isotherms", "Isotherms", "gridLayout_4", 0, 1, 1, true},
    {"label_22", "QLabel", "Isotherms", "Isotherms", "gridLayout_4", 2, 0, 1, true},
    {"sbIsothermsLower", "QSpinBox", "Isotherms", "Isotherms", "gridLayout_4", 2, 1, 1, true},
    {"label_23", "QLabel", "Isotherms", "Isotherms", "gridLayout_4", 3, 0, 1, true},
    {"sbIsothermsMiddle", "QSpinBox", "Isotherms", "Isotherms", "gridLayout_4", 3, 1, 1, true},
    {"label_24", "QLabel", "Isotherms", "Isotherms", "gridLayout_4", 4, 0, 1, true},
    {"sbIsothermsUpper", "QSpinBox", "Isotherms", "Isotherms", "gridLayout_4", 4, 1, 1, true},
    {"label_34", "QLabel", "Isotherms", "Isotherms", "gridLayout_4", 1, 0, 1, true},
    {"cbIsothermSwitchMode", "QComboBox", "Isotherms", "Isotherms", "gridLayout_4", 1, 1, 1, false},
    // Overlay
    {"cBOverlayMode", "QComboBox", "tab_Overlay", "tab_Overlay", "gridLayout_7", 0, 1, 1, true},
    {"label_26", "QLabel", "tab_Overlay", "tab_Overlay", "gridLayout_7", 0, 0, 1, true},
    // Recording Options
    {"groupBox", "QGroupBox", "tab_2", "tab_2", "gridLayout_16", 0, 0, 1, true},
    {"label_5", "QLabel", "tab_2", "groupBox", "gridLayout_14", 0, 0, 1, true},
    {"label_7", "QLabel", "tab_2", "groupBox", "horizontalLayout", 0, Box, 1, true},
    {"leFrameSkip", "QLineEdit", "tab_2", "groupBox", "horizontalLayout", 1, Box, 1, true},
    {"label_8", "QLabel", "tab_2", "groupBox", "horizontalLayout", 2, Box, 1, true},
    {"groupBox_2", "QGroupBox", "tab_2", "tab_2", "gridLayout_16", 1, 0, 1, true},
    {"label_37", "QLabel", "tab_2", "groupBox_2", "gridLayout_15", 1, 0, 1, true},
    {"sbRecMaxframesperfile", "QSpinBox", "tab_2", "groupBox_2", "gridLayout_15", 1, 1, 1, true},
};
// clang-format on

const QStringList channelList = {
    "Channel 1",  "Channel 2",  "Channel 3",  "Channel 4",  "Channel 5",  "Channel 6",
    "Channel 7",  "Channel 8",  "Channel 9",  "Channel 10", "Channel 11", "Channel 12",
    "Channel 13", "Channel 14", "Channel 15", "Channel 16", "Deactivated"};
const QStringList sbusSwitchModes = {"high/low (default)", "absolute"};

// The nine channel-assignment boxes of the SBUS/PPM page.
const char *const channelBoxes[] = {"cbSbusColormap", "cbSbusFFC",     "cbSbusIsotherms",
                                    "cbSbusIsoLow",   "cbSbusIsoMid",  "cbSbusIsoUp",
                                    "cbSbusOverlay",  "cbSbusTrigger", "cbSbusZoom"};

// The form's layouts, without the main window's own internal layout.
QList<QLayout *> formLayouts(QWidget *window)
{
    QList<QLayout *> form;
    const auto layouts = window->findChildren<QLayout *>();
    for (QLayout *layout : layouts) {
        if (!layout->inherits("QMainWindowLayout"))
            form << layout;
    }
    return form;
}

QLayout *layoutHolding(QWidget *window, QWidget *widget)
{
    const auto layouts = formLayouts(window);
    for (QLayout *layout : layouts) {
        if (layout->indexOf(widget) >= 0)
            return layout;
    }
    return nullptr;
}

QLayout *layoutHolding(QWidget *window, QLayout *inner)
{
    const auto layouts = formLayouts(window);
    for (QLayout *layout : layouts) {
        for (int i = 0; i < layout->count(); ++i) {
            if (layout->itemAt(i)->layout() == inner)
                return layout;
        }
    }
    return nullptr;
}

// The widget's own enabled flag, whatever its page or group box says.
bool ownEnabledFlag(QWidget *widget)
{
    return widget->isEnabledTo(widget->parentWidget());
}

// The tab page a widget lives on (the ancestor that is one of the tab container's pages).
QWidget *pageOf(QTabWidget *tabs, QWidget *widget)
{
    for (QWidget *w = widget; w; w = w->parentWidget()) {
        if (tabs->indexOf(w) >= 0)
            return w;
    }
    return nullptr;
}

// Row and column of item `index` in a grid; for a box layout the index and -1.
QPair<int, int> cellOf(QLayout *layout, int index, int *columnSpan = nullptr)
{
    if (auto *grid = qobject_cast<QGridLayout *>(layout)) {
        int row, column, rowSpan, colSpan;
        grid->getItemPosition(index, &row, &column, &rowSpan, &colSpan);
        if (columnSpan)
            *columnSpan = colSpan;
        return {row, column};
    }
    if (columnSpan)
        *columnSpan = 1;
    return {index, Box};
}

QSpacerItem *spacerAt(QLayout *layout, int row, int column)
{
    for (int i = 0; i < layout->count(); ++i) {
        if (cellOf(layout, i) == qMakePair(row, column))
            return layout->itemAt(i)->spacerItem();
    }
    return nullptr;
}

// Focus moves through the focus chain; the line edit inside a spin box hands its focus to the
// spin box (its focus proxy), so it is not a stop of its own.
QStringList focusStops(QWidget *page)
{
    QStringList names;
    for (QWidget *w = page->nextInFocusChain(); w != page; w = w->nextInFocusChain()) {
        if (page->isAncestorOf(w) && w->focusPolicy() != Qt::NoFocus && !w->focusProxy())
            names << w->objectName();
    }
    return names;
}

QStringList childWidgetNames(QWidget *container)
{
    QStringList names;
    for (QObject *child : container->children()) {
        if (child->isWidgetType())
            names << child->objectName();
    }
    return names;
}

// Types text into a control as the user would, replacing what it shows, and confirms it.
void typeInto(QAbstractSpinBox *box, const QString &text)
{
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
}

} // namespace

class TestPages : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<MainWindow> m_window; // left as built: no test changes it
    template <typename T> T *find(const QString &name) const
    {
        return m_window->findChild<T *>(name);
    }

private slots:
    void initTestCase();
    void cleanupTestCase();

    void frame();
    void buttonRow();
    void tabs_data();
    void tabs();
    void controls_data();
    void controls();
    void creationOrder_data();
    void creationOrder();
    void layouts_data();
    void layouts();
    void spacers_data();
    void spacers();
    void labels_data();
    void labels();
    void groupBoxes_data();
    void groupBoxes();
    void checkBoxes_data();
    void checkBoxes();
    void comboBoxes_data();
    void comboBoxes();
    void spinBoxes_data();
    void spinBoxes();
    void offsetSpinBox();
    void spinBoxesClamp_data();
    void spinBoxesClamp();
    void typedOutOfRangeIsRefused_data();
    void typedOutOfRangeIsRefused();
    void frameSkipField();
    void focusOrder_data();
    void focusOrder();
    void triggerPinModeWidthBounds();
    void serialPageSizePolicy();
    void noToolTips();
    void startState();
    void peripheryUsesSecondColumnOnly();
    void sbusStartValues();
    void freshPagesShowStartValues();
    void independentValuesAccepted();
    void sameChannelForSeveralFunctions();
    void deactivatedIsLastItem();
};

void TestPages::initTestCase()
{
    m_window = std::make_unique<MainWindow>();
}

void TestPages::cleanupTestCase()
{
    m_window.reset();
}

void TestPages::frame()
{
    QCOMPARE(m_window->objectName(), QString("MainWindow"));
    QCOMPARE(m_window->size(), QSize(803, 567));
    QCOMPARE(m_window->windowTitle(), QString("Lumarex 2.0 - Configuration- v1.9.1"));

    auto *central = find<QWidget>("centralWidget");
    QVERIFY(central);
    QCOMPARE(m_window->centralWidget(), central);
    QCOMPARE(central->metaObject()->className(), "QWidget");
    auto *grid = qobject_cast<QGridLayout *>(central->layout());
    QVERIFY(grid);
    QCOMPARE(grid->objectName(), QString("gridLayout_10"));
    QCOMPARE(grid->spacing(), 6);
    QCOMPARE(grid->contentsMargins(), QMargins(11, 11, 11, 11));

    auto *menuBar = find<QMenuBar>("menuBar");
    QVERIFY(menuBar);
    QCOMPARE(m_window->menuBar(), menuBar);
    QCOMPARE(menuBar->geometry(), QRect(0, 0, 803, 21));
    QVERIFY(menuBar->actions().isEmpty());

    auto *statusBar = find<QStatusBar>("statusBar");
    QVERIFY(statusBar);
    QCOMPARE(m_window->statusBar(), statusBar);
    QCOMPARE(statusBar->currentMessage(), QString());

    auto *read = find<QPushButton>("btnReadConf");
    auto *write = find<QPushButton>("btnSetConf");
    QVERIFY(read && write);
    QCOMPARE(read->text(), QString("Read from file"));
    QCOMPARE(write->text(), QString("Write to file"));
    QCOMPARE(write->toolTip(), QString());

    // The spacer first pushes both buttons to the right; load stands left of save.
    auto *row = find<QHBoxLayout>("horizontalLayout_2");
    QVERIFY(row);
    QCOMPARE(row->count(), 3);
    QVERIFY(row->itemAt(0)->spacerItem());
    QCOMPARE(row->itemAt(1)->widget(), read);
    QCOMPARE(row->itemAt(2)->widget(), write);
    QCOMPARE(row->stretch(1), 0);
    QCOMPARE(row->stretch(2), 0);

    auto *tabs = find<QTabWidget>("tabWidget");
    QVERIFY(tabs);
    QVERIFY(ownEnabledFlag(tabs));
    QVERIFY(tabs->isEnabled());
    QCOMPARE(grid->itemAtPosition(0, 0)->widget(), tabs);
    QCOMPARE(tabs->minimumSize(), QSize(0, 0));
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(tabs->currentWidget()->objectName(), QString("tab_5"));
}

void TestPages::buttonRow()
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
    QCOMPARE(save->objectName(), QStringLiteral("btnSetConf"));

    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(load->geometry().right() < save->geometry().left());
    QCOMPARE(save->geometry().right(), window.centralWidget()->width() - 1 - 11);
}

void TestPages::tabs_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("text");

    QTest::newRow("Periphery") << 0 << "tab_5"
                               << "Periphery";
    QTest::newRow("Trigger") << 1 << "tab_4"
                             << "Trigger";
    QTest::newRow("GPS/Serial") << 2 << "tabSerial"
                                << "GPS/Serial";
    QTest::newRow("SBUS/PPM") << 3 << "tab_SBUS"
                              << "SBUS/PPM";
    QTest::newRow("Extensions") << 4 << "tab_3"
                                << "Extensions";
    QTest::newRow("Isotherms") << 5 << "Isotherms"
                               << "Isotherms";
    QTest::newRow("Overlay") << 6 << "tab_Overlay"
                             << "Overlay";
    QTest::newRow("Recording Options") << 7 << "tab_2"
                                       << "Recording Options";
}

void TestPages::tabs()
{
    QFETCH(int, index);
    QFETCH(QString, page);
    QFETCH(QString, text);

    auto *tabs = find<QTabWidget>("tabWidget");
    QVERIFY(tabs);
    QCOMPARE(tabs->count(), 8);
    QWidget *widget = tabs->widget(index);
    QVERIFY(widget);
    QCOMPARE(widget->objectName(), page);
    QCOMPARE(widget->metaObject()->className(), "QWidget");
    QCOMPARE(tabs->tabText(index), text);
    QCOMPARE(tabs->tabToolTip(index), QString());
}

void TestPages::controls_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("layout");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("columnSpan");
    QTest::addColumn<bool>("enabled");

    for (const ControlRow &c : controlRows) {
        QTest::newRow(c.name) << c.className << c.page << c.parent << c.layout << c.row << c.column
                              << c.columnSpan << c.enabled;
    }
}

void TestPages::controls()
{
    QFETCH(QString, className);
    QFETCH(QString, page);
    QFETCH(QString, parent);
    QFETCH(QString, layout);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, columnSpan);
    QFETCH(bool, enabled);

    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const auto matches = m_window->findChildren<QWidget *>(name);
    QCOMPARE(matches.size(), 1);
    QWidget *widget = matches.first();

    QCOMPARE(QString(widget->metaObject()->className()), className);
    QVERIFY(widget->parentWidget());
    QCOMPARE(widget->parentWidget()->objectName(), parent);

    auto *tabs = find<QTabWidget>("tabWidget");
    QWidget *onPage = pageOf(tabs, widget);
    QCOMPARE(onPage ? onPage->objectName() : widget->parentWidget()->objectName(), page);

    QLayout *holder = layoutHolding(m_window.get(), widget);
    QVERIFY(holder);
    QCOMPARE(holder->objectName(), layout);
    int span = 0;
    const auto cell = cellOf(holder, holder->indexOf(widget), &span);
    QCOMPARE(cell.first, row);
    QCOMPARE(cell.second, column);
    QCOMPARE(span, columnSpan);
    if (auto *grid = qobject_cast<QGridLayout *>(holder)) {
        int r, c, rowSpan, colSpan;
        grid->getItemPosition(grid->indexOf(widget), &r, &c, &rowSpan, &colSpan);
        QCOMPARE(rowSpan, 1);
    }
    QCOMPARE(holder->itemAt(holder->indexOf(widget))->alignment(), Qt::Alignment());

    QCOMPARE(ownEnabledFlag(widget), enabled);
}

void TestPages::creationOrder_data()
{
    QTest::addColumn<QStringList>("children");

    QTest::newRow("centralWidget") << QStringList{"btnReadConf", "btnSetConf", "tabWidget"};
    QTest::newRow("tab_5") << QStringList{
        "label_35", "cbPeripheryGimbalrc",      "label_31", "cbPeripheryGPS", "cb_externalshutter",
        "label_38", "gb_externalshutteroptions"};
    QTest::newRow("gb_externalshutteroptions") << QStringList{"label_eso_heatcycle",
                                                              "label_39",
                                                              "label_eso_shutterinterval",
                                                              "label_eso_offset",
                                                              "label_eso_opt5",
                                                              "sb_eso_heating",
                                                              "sb_eso_heatcycle",
                                                              "sb_eso_shutterinterval",
                                                              "sb_eso_opt5",
                                                              "sb_eso_offset"};
    QTest::newRow("tab_4") << QStringList{"label_19",         "label_13", "cbTriggerFrameMode",
                                          "cbTriggerPinMode", "label_20", "cbTriggerFFCMode"};
    QTest::newRow("tabSerial") << QStringList{"label_36",   "label_6",   "cbParity",  "label",
                                              "label_2",    "label_4",   "cbStopBit", "label_3",
                                              "cbInverted", "cbBaudrate"};
    QTest::newRow("tab_SBUS") << QStringList{
        "label_18",        "label_32",       "sBTriggerLow",
        "label_11",        "label_12",       "cbSbusFFC",
        "cbSbusIsotherms", "label_9",        "label_14",
        "label_10",        "label_25",       "cbSbusColormap",
        "label_17",        "label_16",       "label_15",
        "cbSbusIsoLow",    "cbSbusIsoMid",   "cbSbusIsoUp",
        "cbSbusOverlay",   "sBTriggerHigh",  "cbSbusTrigger",
        "cbSbusZoom",      "label_27",       "label_28",
        "label_33",        "cbSbusZoomMode", "cbSbusColorMapSwitchMode"};
    QTest::newRow("tab_3") << QStringList{"label_29", "cBext0mode", "label_30", "cBext1mode"};
    QTest::newRow("Isotherms") << QStringList{
        "label_21", "cbIsothermsState",    "label_22", "sbIsothermsLower",
        "label_23", "sbIsothermsMiddle",   "label_24", "sbIsothermsUpper",
        "label_34", "cbIsothermSwitchMode"};
    QTest::newRow("tab_Overlay") << QStringList{"cBOverlayMode", "label_26"};
    QTest::newRow("tab_2") << QStringList{"groupBox", "groupBox_2"};
    QTest::newRow("groupBox") << QStringList{"label_5", "label_7", "leFrameSkip", "label_8"};
    QTest::newRow("groupBox_2") << QStringList{"label_37", "sbRecMaxframesperfile"};
}

// A widget's children are listed in the order they were created: this is the build order of
// each page, and it also shows that no page holds a widget beyond those listed.
void TestPages::creationOrder()
{
    QFETCH(QStringList, children);
    auto *container = find<QWidget>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(container);
    QCOMPARE(childWidgetNames(container), children);
}

void TestPages::layouts_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("owner"); // widget the layout is set on; empty when nested
    QTest::addColumn<QString>("outer"); // layout it is nested in; empty when set on a widget
    QTest::addColumn<int>("row");       // place in the outer layout (box: index, column -1)
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("itemCount");
    QTest::addColumn<int>("margin");

    // clang-format off
    QTest::newRow("gridLayout_10") << "QGridLayout" << "centralWidget" << "" << -1 << -1 << 2 << 11;
    QTest::newRow("horizontalLayout_2") << "QHBoxLayout" << "" << "gridLayout_10" << 1 << 0 << 3 << 0;
    QTest::newRow("gridLayout_12") << "QGridLayout" << "tab_5" << "" << -1 << -1 << 3 << 11;
    QTest::newRow("gridLayout_13") << "QGridLayout" << "" << "gridLayout_12" << 0 << 1 << 6 << 0;
    QTest::newRow("gridLayout_17") << "QGridLayout" << "gb_externalshutteroptions" << "" << -1 << -1 << 1 << 11;
    QTest::newRow("gridLayout_18") << "QGridLayout" << "" << "gridLayout_17" << 1 << 0 << 10 << 0;
    QTest::newRow("gridLayout_6") << "QGridLayout" << "tab_4" << "" << -1 << -1 << 2 << 11;
    QTest::newRow("gridLayout") << "QGridLayout" << "" << "gridLayout_6" << 0 << 0 << 6 << 0;
    QTest::newRow("verticalLayout") << "QVBoxLayout" << "tabSerial" << "" << -1 << -1 << 3 << 11;
    QTest::newRow("gridLayout_2") << "QGridLayout" << "" << "verticalLayout" << 1 << Box << 9 << 0;
    QTest::newRow("verticalLayout_4") << "QVBoxLayout" << "tab_SBUS" << "" << -1 << -1 << 3 << 11;
    QTest::newRow("gridLayout_3") << "QGridLayout" << "" << "verticalLayout_4" << 1 << Box << 26 << 0;
    QTest::newRow("gridLayout_11") << "QGridLayout" << "tab_3" << "" << -1 << -1 << 2 << 11;
    QTest::newRow("gridLayout_9") << "QGridLayout" << "" << "gridLayout_11" << 0 << 0 << 4 << 0;
    QTest::newRow("gridLayout_5") << "QGridLayout" << "Isotherms" << "" << -1 << -1 << 2 << 11;
    QTest::newRow("gridLayout_4") << "QGridLayout" << "" << "gridLayout_5" << 0 << 0 << 10 << 0;
    QTest::newRow("gridLayout_8") << "QGridLayout" << "tab_Overlay" << "" << -1 << -1 << 2 << 11;
    QTest::newRow("gridLayout_7") << "QGridLayout" << "" << "gridLayout_8" << 0 << 0 << 2 << 0;
    QTest::newRow("gridLayout_16") << "QGridLayout" << "tab_2" << "" << -1 << -1 << 3 << 11;
    QTest::newRow("gridLayout_14") << "QGridLayout" << "groupBox" << "" << -1 << -1 << 2 << 11;
    QTest::newRow("horizontalLayout") << "QHBoxLayout" << "" << "gridLayout_14" << 1 << 0 << 4 << 0;
    QTest::newRow("gridLayout_15") << "QGridLayout" << "groupBox_2" << "" << -1 << -1 << 3 << 11;
    // clang-format on
}

void TestPages::layouts()
{
    QFETCH(QString, className);
    QFETCH(QString, owner);
    QFETCH(QString, outer);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, itemCount);
    QFETCH(int, margin);

    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const auto matches = m_window->findChildren<QLayout *>(name);
    QCOMPARE(matches.size(), 1);
    QLayout *layout = matches.first();

    QCOMPARE(QString(layout->metaObject()->className()), className);
    QCOMPARE(layout->spacing(), 6);
    QCOMPARE(layout->contentsMargins(), QMargins(margin, margin, margin, margin));
    QCOMPARE(layout->count(), itemCount);

    if (!owner.isEmpty()) {
        auto *widget = find<QWidget>(owner);
        QVERIFY(widget);
        QCOMPARE(widget->layout(), layout);
        QVERIFY(!layoutHolding(m_window.get(), layout));
    } else {
        QLayout *holder = layoutHolding(m_window.get(), layout);
        QVERIFY(holder);
        QCOMPARE(holder->objectName(), outer);
        int index = -1;
        for (int i = 0; i < holder->count(); ++i) {
            if (holder->itemAt(i)->layout() == layout)
                index = i;
        }
        const auto cell = cellOf(holder, index);
        QCOMPARE(cell.first, row);
        QCOMPARE(cell.second, column);
    }
}

void TestPages::spacers_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<int>("row"); // box layout: index, column -1
    QTest::addColumn<int>("column");
    QTest::addColumn<QSize>("sizeHint");
    QTest::addColumn<QSizePolicy::Policy>("horizontal");
    QTest::addColumn<QSizePolicy::Policy>("vertical");

    const QSize vertical(20, 40);
    const QSize horizontal(40, 20);
    const auto min = QSizePolicy::Minimum;
    const auto exp = QSizePolicy::Expanding;

    // clang-format off
    QTest::newRow("frame buttons") << "horizontalLayout_2" << 0 << Box << horizontal << exp << min;
    QTest::newRow("Periphery") << "gridLayout_12" << 1 << 1 << vertical << min << exp;
    QTest::newRow("Trigger") << "gridLayout_6" << 1 << 0 << vertical << min << exp;
    QTest::newRow("GPS/Serial") << "verticalLayout" << 2 << Box << vertical << min << exp;
    QTest::newRow("SBUS/PPM") << "verticalLayout_4" << 2 << Box << vertical << min << exp;
    QTest::newRow("Extensions") << "gridLayout_11" << 1 << 0 << vertical << min << exp;
    QTest::newRow("Isotherms") << "gridLayout_5" << 1 << 0 << vertical << min << exp;
    QTest::newRow("Overlay") << "gridLayout_8" << 1 << 0 << vertical << min << exp;
    QTest::newRow("Recording Options") << "gridLayout_16" << 2 << 0 << vertical << min << exp;
    QTest::newRow("Frames row") << "horizontalLayout" << 3 << Box << horizontal << exp << min;
    QTest::newRow("File options row") << "gridLayout_15" << 1 << 2 << horizontal << exp << min;
    // clang-format on
}

void TestPages::spacers()
{
    QFETCH(QString, layout);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QSize, sizeHint);
    QFETCH(QSizePolicy::Policy, horizontal);
    QFETCH(QSizePolicy::Policy, vertical);

    auto *holder = find<QLayout>(layout);
    QVERIFY(holder);
    QSpacerItem *spacer = spacerAt(holder, row, column);
    QVERIFY(spacer);
    QCOMPARE(spacer->sizeHint(), sizeHint);
    QCOMPARE(spacer->sizePolicy().horizontalPolicy(), horizontal);
    QCOMPARE(spacer->sizePolicy().verticalPolicy(), vertical);
}

void TestPages::labels_data()
{
    QTest::addColumn<QString>("text");

    // Periphery
    QTest::newRow("label_31") << "Orvid Gimbal RC";
    QTest::newRow("label_35") << "GPS";
    QTest::newRow("label_38") << "External Shutter";
    QTest::newRow("label_39") << "Heating";
    QTest::newRow("label_eso_heatcycle") << "Heatcycle";
    QTest::newRow("label_eso_offset") << "Offset";
    QTest::newRow("label_eso_shutterinterval") << "shutter interval";
    QTest::newRow("label_eso_opt5") << "opt5";
    // Trigger
    QTest::newRow("label_13") << "Trigger Mode:";
    QTest::newRow("label_20") << "Trigger auto FFC:";
    QTest::newRow("label_19") << "Trigger frame mode ";
    // GPS/Serial
    QTest::newRow("label_36")
        << "Set \"Periphery > GPS\" to \"Custom settings\" to enable configuration.";
    QTest::newRow("label_6")
        << "Settings for interface between Lumarex device and additional hardware:";
    QTest::newRow("label") << "Baudrate:";
    QTest::newRow("label_2") << "Parity bit:";
    QTest::newRow("label_3") << "Stop bit:";
    QTest::newRow("label_4") << "Inverted signal:";
    // SBUS/PPM
    QTest::newRow("label_18")
        << "Set \"Trigger > Trigger mode\" to \"SBUS\" to enable configuration of SBUS channels";
    QTest::newRow("label_27") << "Low";
    QTest::newRow("label_28") << "High";
    QTest::newRow("label_10") << "Color map switch";
    QTest::newRow("label_32") << "Color map switch mode";
    QTest::newRow("label_14") << "FFC mode/execution";
    QTest::newRow("label_25") << "Isotherms ON/OFF";
    QTest::newRow("label_15") << "Isotherm lower threshold";
    QTest::newRow("label_16") << "Isotherm middle threshold";
    QTest::newRow("label_17") << "Isotherm upper threshold";
    QTest::newRow("label_11") << "Overlay ON/OFF";
    QTest::newRow("label_9") << "Trigger ON/OFF";
    QTest::newRow("label_12") << "Zoom inc./dec.";
    QTest::newRow("label_33") << "Zoom mode";
    // Extensions
    QTest::newRow("label_29") << "EXT 0 mode";
    QTest::newRow("label_30") << "EXT 1 mode";
    // Isotherms
    QTest::newRow("label_21") << "Isotherm start state";
    QTest::newRow("label_34") << "Isotherms switch  mode";
    QTest::newRow("label_22") << QString::fromUtf8("Lower threshold (\xc2\xb0"
                                                   "C)");
    QTest::newRow("label_23") << QString::fromUtf8("Middle treshold (\xc2\xb0"
                                                   "C)");
    QTest::newRow("label_24") << QString::fromUtf8("Upper treshold (\xc2\xb0"
                                                   "C)");
    // Overlay
    QTest::newRow("label_26") << "Overlay start state";
    // Recording Options
    QTest::newRow("label_5") << "Define how many frames should be skipped while recording.";
    QTest::newRow("label_7") << "# Frames:";
    QTest::newRow("label_8") << "(0 ... 20000)";
    QTest::newRow("label_37") << "Max frames per file";
}

void TestPages::labels()
{
    QFETCH(QString, text);
    auto *label = find<QLabel>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(label);
    QCOMPARE(label->text(), text);
}

void TestPages::groupBoxes_data()
{
    QTest::addColumn<QString>("title");

    QTest::newRow("gb_externalshutteroptions") << "External Shutter Options";
    QTest::newRow("groupBox") << "Frames";
    QTest::newRow("groupBox_2") << "File options";
}

void TestPages::groupBoxes()
{
    QFETCH(QString, title);
    auto *box = find<QGroupBox>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box);
    QCOMPARE(box->title(), title);
    QVERIFY(!box->isCheckable());
}

void TestPages::checkBoxes_data()
{
    QTest::addColumn<bool>("checked");

    QTest::newRow("cbPeripheryGimbalrc") << false;
    QTest::newRow("cb_externalshutter") << false;
    QTest::newRow("cbInverted") << true;
}

void TestPages::checkBoxes()
{
    QFETCH(bool, checked);
    auto *box = find<QCheckBox>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box);
    QCOMPARE(box->isChecked(), checked);
    QVERIFY(!box->isTristate());
    QCOMPARE(box->text(), QString()); // the caption is the label beside it
}

void TestPages::comboBoxes_data()
{
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<int>("currentIndex");

    QTest::newRow("cbPeripheryGPS")
        << QStringList{"Custom settings",
                       QString::fromUtf8(
                           "Lumarex GPS Receiver - based on u-blox 6 SuperSense\xc2\xae chipset"),
                       "Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT chipset",
                       "Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS UBX-M8030-KT "
                       "chipset"}
        << 2;
    QTest::newRow("cbTriggerPinMode")
        << QStringList{"ON/OFF", "SBUS", "Serial input", "PWM (normal)", "PWM (inverted)", "PPM"}
        << 0;
    QTest::newRow("cbTriggerFFCMode")
        << QStringList{"no additional FFC (default)", "additional FFC on trigger start"} << 0;
    QTest::newRow("cbTriggerFrameMode")
        << QStringList{"Ongoing stream (default)", "Single frame capture"} << 0;
    QTest::newRow("cbBaudrate") << QStringList{"1200",   "2400",   "4800",  "9600",
                                               "19200",  "38400",  "57600", "115200",
                                               "230400", "460800", "921600"}
                                << 5;
    QTest::newRow("cbParity") << QStringList{"none", "odd", "even"} << 0;
    QTest::newRow("cbStopBit") << QStringList{"1", "2"} << 0;

    QTest::newRow("cbSbusColormap") << channelList << 3;
    QTest::newRow("cbSbusColorMapSwitchMode") << sbusSwitchModes << 0;
    QTest::newRow("cbSbusFFC") << channelList << 5;
    QTest::newRow("cbSbusIsotherms") << channelList << 0;
    QTest::newRow("cbSbusIsoLow") << channelList << 16;
    QTest::newRow("cbSbusIsoMid") << channelList << 16;
    QTest::newRow("cbSbusIsoUp") << channelList << 16;
    QTest::newRow("cbSbusOverlay") << channelList << 1;
    QTest::newRow("cbSbusTrigger") << channelList << 4;
    QTest::newRow("cbSbusZoom") << channelList << 2;
    QTest::newRow("cbSbusZoomMode") << sbusSwitchModes << 0;

    QTest::newRow("cBext0mode") << QStringList{"None (default)", "do FFC (automatic FFC is off)",
                                               "External Shutter RX/TX"}
                                << 0;
    QTest::newRow("cBext1mode") << QStringList{"None (default)", "External Sync",
                                               "External Shutter RX/TX"}
                                << 0;
    QTest::newRow("cbIsothermsState") << QStringList{"OFF (default)", "ON"} << 0;
    QTest::newRow("cbIsothermSwitchMode")
        << QStringList{"high/low (default)", "absolute values"} << 0;
    QTest::newRow("cBOverlayMode") << QStringList{"OFF", "ON"} << 0;
}

void TestPages::comboBoxes()
{
    QFETCH(QStringList, items);
    QFETCH(int, currentIndex);

    auto *box = find<QComboBox>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box);
    QVERIFY(!box->isEditable());
    QCOMPARE(box->count(), items.size());
    for (int i = 0; i < items.size(); ++i)
        QCOMPARE(box->itemText(i), items.at(i));
    QCOMPARE(box->currentIndex(), currentIndex);
    QCOMPARE(box->currentText(), items.at(currentIndex));
}

void TestPages::spinBoxes_data()
{
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("value");

    QTest::newRow("sb_eso_heating") << 0 << 1000 << 800;
    QTest::newRow("sb_eso_heatcycle") << 0 << 2000 << 1000;
    QTest::newRow("sb_eso_shutterinterval") << 0 << 3600 << 120;
    QTest::newRow("sb_eso_opt5") << 0 << 99 << 0;
    QTest::newRow("sBTriggerLow") << 1 << 2047 << 688;
    QTest::newRow("sBTriggerHigh") << 1 << 2047 << 1366;
    QTest::newRow("sbIsothermsLower") << 0 << 1000 << 15;
    QTest::newRow("sbIsothermsMiddle") << 0 << 1000 << 34;
    QTest::newRow("sbIsothermsUpper") << 0 << 1000 << 40;
    QTest::newRow("sbRecMaxframesperfile") << 1 << 16000 << 1000;
}

void TestPages::spinBoxes()
{
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, value);

    auto *box = find<QSpinBox>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box);
    QCOMPARE(box->minimum(), minimum);
    QCOMPARE(box->maximum(), maximum);
    QCOMPARE(box->value(), value);
    QCOMPARE(box->singleStep(), 1);
    QCOMPARE(box->prefix(), QString());
    QCOMPARE(box->suffix(), QString());
}

// The offset is saved in hundredths, so its two decimals and its step of 1.00 matter.
void TestPages::offsetSpinBox()
{
    auto *shared = find<QDoubleSpinBox>("sb_eso_offset");
    QVERIFY(shared);
    QCOMPARE(shared->minimum(), -10.0);
    QCOMPARE(shared->maximum(), 10.0);
    QCOMPARE(shared->decimals(), 2);
    QCOMPARE(shared->singleStep(), 1.0);
    QCOMPARE(shared->value(), 0.0);
    QCOMPARE(shared->prefix(), QString());
    QCOMPARE(shared->suffix(), QString());

    MainWindow window;
    auto *box = window.findChild<QDoubleSpinBox *>("sb_eso_offset");
    QVERIFY(box);
    box->setValue(-10.5);
    QCOMPARE(box->value(), -10.0);
    box->setValue(25.0);
    QCOMPARE(box->value(), 10.0);
    box->setValue(1.234);
    QCOMPARE(box->value(), 1.23);
    box->setValue(-9.99);
    QCOMPARE(box->value(), -9.99);
    box->setValue(0.0);
    box->stepUp();
    QCOMPARE(box->value(), 1.0);
    box->stepDown();
    box->stepDown();
    QCOMPARE(box->value(), -1.0);
}

void TestPages::spinBoxesClamp_data()
{
    QTest::addColumn<int>("tooLow");
    QTest::addColumn<int>("tooHigh");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");

    QTest::newRow("sb_eso_heating") << -5 << 5000 << 0 << 1000;
    QTest::newRow("sb_eso_heatcycle") << -5 << 5000 << 0 << 2000;
    QTest::newRow("sb_eso_shutterinterval") << -5 << 5000 << 0 << 3600;
    QTest::newRow("sb_eso_opt5") << -5 << 5000 << 0 << 99;
    QTest::newRow("sBTriggerLow") << 0 << 2048 << 1 << 2047;
    QTest::newRow("sBTriggerHigh") << 0 << 2048 << 1 << 2047;
    QTest::newRow("sbIsothermsLower") << -5 << 5000 << 0 << 1000;
    QTest::newRow("sbIsothermsMiddle") << -1 << 1001 << 0 << 1000;
    QTest::newRow("sbIsothermsUpper") << -5 << 5000 << 0 << 1000;
    QTest::newRow("sbRecMaxframesperfile") << 0 << 16001 << 1 << 16000;
}

void TestPages::spinBoxesClamp()
{
    QFETCH(int, tooLow);
    QFETCH(int, tooHigh);
    QFETCH(int, minimum);
    QFETCH(int, maximum);

    MainWindow window;
    auto *box = window.findChild<QSpinBox *>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(box);
    box->setValue(tooLow);
    QCOMPARE(box->value(), minimum);
    box->setValue(tooHigh);
    QCOMPARE(box->value(), maximum);
    box->setValue(minimum);
    QCOMPARE(box->value(), minimum);
    box->setValue(maximum);
    QCOMPARE(box->value(), maximum);
}

void TestPages::typedOutOfRangeIsRefused_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("refused");

    QTest::newRow("sBTriggerLow 0") << "0" << 0;
    QTest::newRow("sBTriggerLow 2048") << "2048" << 2048;
    QTest::newRow("sBTriggerHigh 0") << "0" << 0;
    QTest::newRow("sBTriggerHigh 2048") << "2048" << 2048;
    QTest::newRow("sbIsothermsLower -5") << "-5" << -5;
    QTest::newRow("sbIsothermsUpper 1001") << "1001" << 1001;
    QTest::newRow("sbRecMaxframesperfile 0") << "0" << 0;
    QTest::newRow("sbRecMaxframesperfile 16001") << "16001" << 16001;
}

// What the user types cannot take a spin box outside its range.
void TestPages::typedOutOfRangeIsRefused()
{
    QFETCH(QString, typed);
    QFETCH(int, refused);

    MainWindow window;
    // The SBUS/PPM page is disabled at start and would swallow the keys.
    window.findChild<QWidget *>("tab_SBUS")->setEnabled(true);
    const QString name = QString::fromLatin1(QTest::currentDataTag()).section(' ', 0, 0);
    auto *box = window.findChild<QSpinBox *>(name);
    QVERIFY(box);

    typeInto(box, "12");
    QCOMPARE(box->value(), 12); // typing reaches the box

    typeInto(box, typed);
    QVERIFY(box->value() != refused);
    QVERIFY(box->value() >= box->minimum());
    QVERIFY(box->value() <= box->maximum());
    QVERIFY(box->text() != typed);
}

// The frame-skip count is free text: no validator, mask or length limit, starting at "0".
void TestPages::frameSkipField()
{
    auto *shared = find<QLineEdit>("leFrameSkip");
    QVERIFY(shared);
    QCOMPARE(shared->text(), QString("0"));
    QVERIFY(!shared->validator());
    QCOMPARE(shared->inputMask(), QString());
    QCOMPARE(shared->maxLength(), 32767);
    QVERIFY(!shared->isReadOnly());

    MainWindow window;
    auto *edit = window.findChild<QLineEdit *>("leFrameSkip");
    QVERIFY(edit);
    edit->selectAll();
    QTest::keyClicks(edit, "abc");
    QCOMPARE(edit->text(), QString("abc"));
    edit->selectAll();
    QTest::keyClicks(edit, "30000");
    QCOMPARE(edit->text(), QString("30000"));
}

void TestPages::focusOrder_data()
{
    QTest::addColumn<QStringList>("order");

    QTest::newRow("tab_5") << QStringList{
        "cbPeripheryGimbalrc", "cbPeripheryGPS",         "cb_externalshutter", "sb_eso_heating",
        "sb_eso_heatcycle",    "sb_eso_shutterinterval", "sb_eso_opt5",        "sb_eso_offset"};
    QTest::newRow("tab_4") << QStringList{"cbTriggerFrameMode", "cbTriggerPinMode",
                                          "cbTriggerFFCMode"};
    QTest::newRow("tabSerial") << QStringList{"cbParity", "cbStopBit", "cbInverted", "cbBaudrate"};
    QTest::newRow("tab_SBUS") << QStringList{"sBTriggerLow",
                                             "cbSbusFFC",
                                             "cbSbusIsotherms",
                                             "cbSbusColormap",
                                             "cbSbusIsoLow",
                                             "cbSbusIsoMid",
                                             "cbSbusIsoUp",
                                             "cbSbusOverlay",
                                             "sBTriggerHigh",
                                             "cbSbusTrigger",
                                             "cbSbusZoom",
                                             "cbSbusZoomMode",
                                             "cbSbusColorMapSwitchMode"};
    QTest::newRow("tab_3") << QStringList{"cBext0mode", "cBext1mode"};
    QTest::newRow("Isotherms") << QStringList{"cbIsothermsState", "sbIsothermsLower",
                                              "sbIsothermsMiddle", "sbIsothermsUpper",
                                              "cbIsothermSwitchMode"};
    QTest::newRow("tab_Overlay") << QStringList{"cBOverlayMode"};
    QTest::newRow("tab_2") << QStringList{"leFrameSkip", "sbRecMaxframesperfile"};
}

void TestPages::focusOrder()
{
    QFETCH(QStringList, order);
    auto *page = find<QWidget>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(page);
    QCOMPARE(focusStops(page), order);
}

// Whatever room the Trigger page gets, the pin mode box keeps between 85 and 381 pixels.
void TestPages::triggerPinModeWidthBounds()
{
    auto *shared = find<QComboBox>("cbTriggerPinMode");
    QVERIFY(shared);
    QCOMPARE(shared->minimumSize(), QSize(85, 0));
    QCOMPARE(shared->maximumSize(), QSize(381, 16777215));

    MainWindow window;
    auto *box = window.findChild<QComboBox *>("cbTriggerPinMode");
    auto *layout = window.findChild<QLayout *>("gridLayout_6");
    QVERIFY(box && layout);

    layout->setGeometry(QRect(0, 0, 3000, 1500));
    QVERIFY(box->width() <= 381);
    QVERIFY(box->width() >= 85);

    layout->setGeometry(QRect(0, 0, 60, 40));
    QVERIFY(box->width() >= 85);
    QVERIFY(box->width() <= 381);
}

void TestPages::serialPageSizePolicy()
{
    auto *page = find<QWidget>("tabSerial");
    QVERIFY(page);
    const QSizePolicy policy = page->sizePolicy();
    QCOMPARE(policy.horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(policy.verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(policy.horizontalStretch(), 0);
    QCOMPARE(policy.verticalStretch(), 0);
    QVERIFY(!policy.hasHeightForWidth());
}

void TestPages::noToolTips()
{
    const auto widgets = m_window->findChildren<QWidget *>();
    QVERIFY(widgets.size() > 100);
    for (QWidget *widget : widgets)
        QVERIFY2(widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
    QCOMPARE(m_window->toolTip(), QString());
}

// The window opens in the state the build gives: no rule has run, and the constructor has only
// hidden the external-shutter options.
void TestPages::startState()
{
    auto *sbusPage = find<QWidget>("tab_SBUS");
    QVERIFY(sbusPage);
    QVERIFY(!sbusPage->isEnabled());
    QVERIFY(!ownEnabledFlag(find<QWidget>("cbSbusFFC")));
    QVERIFY(!find<QWidget>("label_18")->isEnabled());
    QVERIFY(!find<QWidget>("label_36")->isEnabled());

    auto *options = find<QGroupBox>("gb_externalshutteroptions");
    QVERIFY(options);
    QVERIFY(options->isHidden());
    QVERIFY(options->isEnabled());
    QVERIFY(!find<QWidget>("sb_eso_heating")->isEnabled());
    QVERIFY(!find<QWidget>("sb_eso_heatcycle")->isEnabled());
    QVERIFY(!find<QWidget>("sb_eso_opt5")->isEnabled());
    QVERIFY(find<QWidget>("sb_eso_shutterinterval")->isEnabled());
    QVERIFY(find<QWidget>("sb_eso_offset")->isEnabled());

    QVERIFY(!find<QWidget>("cbIsothermSwitchMode")->isEnabled());
    QVERIFY(!ownEnabledFlag(find<QWidget>("cbSbusColorMapSwitchMode")));
    QVERIFY(!ownEnabledFlag(find<QWidget>("cbSbusZoomMode")));

    // The receiver row is selected, yet the serial page stays open: the selection came before
    // the GPS rule was connected.
    QCOMPARE(find<QComboBox>("cbPeripheryGPS")->currentIndex(), 2);
    auto *serialPage = find<QWidget>("tabSerial");
    QVERIFY(serialPage->isEnabled());
    for (const char *name : {"cbBaudrate", "cbParity", "cbStopBit", "cbInverted", "label_6"})
        QVERIFY2(find<QWidget>(name)->isEnabled(), name);

    QCOMPARE(find<QComboBox>("cbTriggerPinMode")->currentIndex(), 0);
    for (const char *name : {"cbTriggerPinMode", "cbTriggerFFCMode", "cbTriggerFrameMode"})
        QVERIFY2(find<QWidget>(name)->isEnabled(), name);

    // No other control is hidden.
    for (const ControlRow &c : controlRows) {
        if (QLatin1String(c.name) != QLatin1String("gb_externalshutteroptions"))
            QVERIFY2(!find<QWidget>(c.name)->isHidden(), c.name);
    }
}

void TestPages::peripheryUsesSecondColumnOnly()
{
    auto *outer = find<QGridLayout>("gridLayout_12");
    QVERIFY(outer);
    QCOMPARE(outer->count(), 3);
    for (int i = 0; i < outer->count(); ++i) {
        int row, column, rowSpan, columnSpan;
        outer->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
        QCOMPARE(column, 1);
        QCOMPARE(columnSpan, 1);
    }
    QCOMPARE(outer->itemAtPosition(0, 1)->layout(), find<QLayout>("gridLayout_13"));
    QVERIFY(outer->itemAtPosition(1, 1)->spacerItem());
    QCOMPARE(outer->itemAtPosition(2, 1)->widget(), find<QWidget>("gb_externalshutteroptions"));
    for (int row = 0; row < 3; ++row)
        QVERIFY(!outer->itemAtPosition(row, 0));

    // Inside the options group, row 0 stays empty.
    auto *options = find<QGridLayout>("gridLayout_17");
    QVERIFY(options);
    QVERIFY(!options->itemAtPosition(0, 0));
    QCOMPARE(options->itemAtPosition(1, 0)->layout(), find<QLayout>("gridLayout_18"));
}

void TestPages::sbusStartValues()
{
    QVERIFY(!find<QWidget>("tab_SBUS")->isEnabled());
    const QList<QPair<const char *, const char *>> shown = {
        {"cbSbusFFC", "Channel 6"},
        {"cbSbusColormap", "Channel 4"},
        {"cbSbusIsotherms", "Channel 1"},
        {"cbSbusIsoLow", "Deactivated"},
        {"cbSbusIsoMid", "Deactivated"},
        {"cbSbusIsoUp", "Deactivated"},
        {"cbSbusOverlay", "Channel 2"},
        {"cbSbusTrigger", "Channel 5"},
        {"cbSbusZoom", "Channel 3"},
        {"cbSbusColorMapSwitchMode", "high/low (default)"},
        {"cbSbusZoomMode", "high/low (default)"},
    };
    for (const auto &entry : shown)
        QCOMPARE(find<QComboBox>(entry.first)->currentText(), QString(entry.second));
    QCOMPARE(find<QSpinBox>("sBTriggerLow")->value(), 688);
    QCOMPARE(find<QSpinBox>("sBTriggerHigh")->value(), 1366);
    QCOMPARE(find<QLabel>("label_27")->text(), QString("Low"));
    QCOMPARE(find<QLabel>("label_28")->text(), QString("High"));
}

void TestPages::freshPagesShowStartValues()
{
    // Periphery, Trigger, GPS/Serial
    QVERIFY(!find<QCheckBox>("cbPeripheryGimbalrc")->isChecked());
    QCOMPARE(find<QComboBox>("cbPeripheryGPS")->currentIndex(), 2);
    QVERIFY(!find<QCheckBox>("cb_externalshutter")->isChecked());
    QCOMPARE(find<QSpinBox>("sb_eso_heating")->value(), 800);
    QCOMPARE(find<QSpinBox>("sb_eso_heatcycle")->value(), 1000);
    QCOMPARE(find<QDoubleSpinBox>("sb_eso_offset")->value(), 0.0);
    QCOMPARE(find<QSpinBox>("sb_eso_shutterinterval")->value(), 120);
    QCOMPARE(find<QSpinBox>("sb_eso_opt5")->value(), 0);
    QCOMPARE(find<QComboBox>("cbTriggerPinMode")->currentText(), QString("ON/OFF"));
    QCOMPARE(find<QComboBox>("cbTriggerFFCMode")->currentText(),
             QString("no additional FFC (default)"));
    QCOMPARE(find<QComboBox>("cbTriggerFrameMode")->currentText(),
             QString("Ongoing stream (default)"));
    QCOMPARE(find<QComboBox>("cbBaudrate")->currentText(), QString("38400"));
    QCOMPARE(find<QComboBox>("cbParity")->currentText(), QString("none"));
    QCOMPARE(find<QComboBox>("cbStopBit")->currentText(), QString("1"));
    QVERIFY(find<QCheckBox>("cbInverted")->isChecked());

    // Extensions, Isotherms, Overlay, Recording Options
    QCOMPARE(find<QComboBox>("cBext0mode")->currentText(), QString("None (default)"));
    QCOMPARE(find<QComboBox>("cBext1mode")->currentText(), QString("None (default)"));
    QCOMPARE(find<QComboBox>("cbIsothermsState")->currentText(), QString("OFF (default)"));
    auto *switchMode = find<QComboBox>("cbIsothermSwitchMode");
    QCOMPARE(switchMode->currentText(), QString("high/low (default)"));
    QVERIFY(!switchMode->isEnabled());
    QCOMPARE(find<QSpinBox>("sbIsothermsLower")->value(), 15);
    QCOMPARE(find<QSpinBox>("sbIsothermsMiddle")->value(), 34);
    QCOMPARE(find<QSpinBox>("sbIsothermsUpper")->value(), 40);
    QCOMPARE(find<QComboBox>("cBOverlayMode")->currentText(), QString("OFF"));
    QCOMPARE(find<QLineEdit>("leFrameSkip")->text(), QString("0"));
    QCOMPARE(find<QSpinBox>("sbRecMaxframesperfile")->value(), 1000);
}

// The form leaves related values independent: no ordering between them is enforced.
void TestPages::independentValuesAccepted()
{
    MainWindow window;
    auto *low = window.findChild<QSpinBox *>("sBTriggerLow");
    auto *high = window.findChild<QSpinBox *>("sBTriggerHigh");
    QVERIFY(low && high);
    low->setValue(1500);
    high->setValue(700);
    QCOMPARE(low->value(), 1500);
    QCOMPARE(high->value(), 700);

    auto *lower = window.findChild<QSpinBox *>("sbIsothermsLower");
    auto *upper = window.findChild<QSpinBox *>("sbIsothermsUpper");
    QVERIFY(lower && upper);
    lower->setValue(50);
    upper->setValue(10);
    QCOMPARE(lower->value(), 50);
    QCOMPARE(upper->value(), 10);
}

void TestPages::sameChannelForSeveralFunctions()
{
    MainWindow window;
    for (const char *name : channelBoxes)
        window.findChild<QComboBox *>(name)->setCurrentIndex(7);
    for (const char *name : channelBoxes) {
        auto *box = window.findChild<QComboBox *>(name);
        QCOMPARE(box->currentIndex(), 7);
        QCOMPARE(box->currentText(), QString("Channel 8"));
    }
}

void TestPages::deactivatedIsLastItem()
{
    MainWindow window;
    for (const char *name : channelBoxes) {
        auto *box = window.findChild<QComboBox *>(name);
        QVERIFY2(box, name);
        box->setCurrentText("Deactivated");
        QCOMPARE(box->currentIndex(), 16);
        box->setCurrentText("Channel 1");
        QCOMPARE(box->currentIndex(), 0);
        QCOMPARE(box->findText("Deactivated"), 16);
    }
}

QTEST_MAIN(TestPages)
#include "tst_pages.moc"
