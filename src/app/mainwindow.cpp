#include "mainwindow.h"

#include "ui_mainwindow.h"

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent), ui(new Ui::MainWindow)
{
    // setupUi makes the start-up selections before any slot is connected, so no form rule runs
    // while the window is built.
    ui->setupUi(this);

    // The slots named on_<object>_<signal>. uic runs with --no-autoconnection, so they are
    // connected here, in the order QMetaObject::connectSlotsByName would connect them, rather
    // than by that call, which matches every slot name against every object name of the form.
    connect(ui->btnSetConf, SIGNAL(clicked()), this, SLOT(on_btnSetConf_clicked()));
    connect(ui->btnReadConf, SIGNAL(clicked()), this, SLOT(on_btnReadConf_clicked()));
    connect(ui->cbTriggerPinMode, SIGNAL(currentIndexChanged(QString)), this,
            SLOT(on_cbTriggerPinMode_currentIndexChanged(QString)));
    connect(ui->cbPeripheryGimbalrc, SIGNAL(stateChanged(int)), this,
            SLOT(on_cbPeripheryGimbalrc_stateChanged(int)));
    connect(ui->cb_externalshutter, SIGNAL(stateChanged(int)), this,
            SLOT(on_cb_externalshutter_stateChanged(int)));

    // The gimbal slot is connected a second time: it runs twice per change, and both runs set the
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
