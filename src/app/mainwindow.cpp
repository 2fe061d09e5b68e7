#include "mainwindow.h"

#include "comboboxaccessible.h"
#include "tabpagesaccessible.h"
#include "ui_mainwindow.h"

#include <QAccessible>

namespace {

// A widget created inside an already disabled parent is disabled by the toolkit during its own
// constructor, and that announcement makes the toolkit build and keep an accessibility interface
// while the object is still a bare QWidget: screen readers would hear a nameless "filler" for
// it forever. Dropping those cached interfaces lets the next query build them for the widgets'
// real classes; no widget, state or connection of the form changes.
void dropAccessibleInterfacesCachedInConstruction(QWidget *disabledAtBuild)
{
    const auto widgets = disabledAtBuild->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (QAccessibleInterface *cached = QAccessible::queryAccessibleInterface(widget))
            QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(cached));
    }
}

} // namespace

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent), ui(new Ui::MainWindow)
{
    // Before the form is built: a combo box's interface may be made while setupUi fills it.
    installComboBoxAccessibility();
    installTabPagesAccessibility();

    // setupUi makes the start-up selections before it connects slots by name, so no form rule
    // runs while the window is built.
    ui->setupUi(this);

    // The gimbal slot is also connected by name: it runs twice per change, and both runs set the
    // same state. The device tooling has always behaved so.
    connect(ui->cbPeripheryGimbalrc, SIGNAL(stateChanged(int)), this,
            SLOT(on_cbPeripheryGimbalrc_stateChanged(int)));
    connect(ui->cbPeripheryGPS, SIGNAL(currentIndexChanged(int)), this,
            SLOT(on_cbPeripheryGPSIndexChanged(int)));
    connect(ui->cbTriggerPinMode, SIGNAL(currentIndexChanged(int)), this,
            SLOT(on_cbTriggerPinModeIndexChanged(int)));

    ui->gb_externalshutteroptions->hide();

    // The SBUS/PPM page is disabled before its controls are created.
    dropAccessibleInterfacesCachedInConstruction(ui->tab_SBUS);
}

MainWindow::~MainWindow()
{
    delete ui;
}
