#include "mainwindow.h"

#include "ui_mainwindow.h"

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent), ui(new Ui::MainWindow)
{
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
}

MainWindow::~MainWindow()
{
    delete ui;
}
