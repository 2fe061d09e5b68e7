// The form rules: how choosing an accessory or a trigger mode enables, locks and presets other
// controls. Each rule prints its console line first, then acts; a rule that sets a control with
// rules of its own runs them at once, nested.
//
// src/roundtrip/formrulemodel.cpp writes the same rules down as data for the model and explain.
// The values they preset are shared (rulepresets.h); the rules themselves are not: these are
// the window's slots, connected by name (some twice, on purpose), and what they do between
// signals is the editor's behaviour; driving them from the table would change the window's code
// path. The differential test of tests/roundtrip and tst_rules hold the two equal.

#include "console.h"
#include "mainwindow.h"
#include "rulepresets.h"
#include "ui_mainwindow.h"

namespace {

using lumarex::kGimbalChannels;
using lumarex::kGpsBaudrateIndex;
using lumarex::kPinModePpm;
using lumarex::kPinModeSbus;
using lumarex::kStartChannels;
using lumarex::SbusChannels;

} // namespace

void MainWindow::on_cbTriggerPinModeIndexChanged(int i)
{
    console::report("on_cbTriggerPinModeIndexChanged ", i);
    if (i == kPinModeSbus || i == kPinModePpm) {
        // With the gimbal remote control attached the gimbal owns the receiver channels.
        if (ui->cbPeripheryGimbalrc->isChecked())
            return;
        ui->tab_SBUS->setEnabled(true);
        ui->cbSbusFFC->setEnabled(true);
    } else {
        ui->tab_SBUS->setEnabled(false);
    }
}

void MainWindow::on_cbTriggerPinMode_currentIndexChanged(const QString &)
{
    console::report("MainWindow::on_cbTriggerPinMode_currentIndexChanged()");
}

void MainWindow::on_cbPeripheryGPSIndexChanged(int i)
{
    console::report("cbPeripheryGPSIndexChanged ", i);
    if (i == 0) {
        console::report("<<< enable tabSerial");
        ui->tabSerial->setEnabled(true);
    } else if (i > 0 && i < static_cast<int>(kGpsBaudrateIndex.size())) {
        ui->tabSerial->setEnabled(false);
        ui->cbBaudrate->setCurrentIndex(kGpsBaudrateIndex[static_cast<std::size_t>(i)]);
        ui->cbParity->setCurrentIndex(0);
        ui->cbStopBit->setCurrentIndex(0);
        ui->cbInverted->setChecked(true);
    } else {
        console::reportError("<<< Unknown case");
    }
}

void MainWindow::on_cbPeripheryGimbalrc_stateChanged(int i)
{
    console::report("on cb gimbalrc ", i);
    if (i != Qt::Checked && i != Qt::Unchecked)
        return;

    // Attaching the gimbal locks what it drives; releasing it unlocks and resets the same
    // controls, in the same order.
    const bool attached = i == Qt::Checked;
    ui->cbIsothermsState->setEnabled(!attached);
    ui->cbIsothermsState->setCurrentIndex(0);
    ui->cbIsothermSwitchMode->setCurrentIndex(attached ? 1 : 0);
    ui->tab_SBUS->setEnabled(!attached);

    const SbusChannels &channels = attached ? kGimbalChannels : kStartChannels;
    ui->cbSbusColormap->setCurrentIndex(channels.colormap);
    ui->cbSbusColorMapSwitchMode->setCurrentIndex(channels.colorMapSwitchMode);
    ui->cbSbusFFC->setCurrentIndex(channels.ffc);
    ui->cbSbusIsotherms->setCurrentIndex(channels.isotherms);
    ui->cbSbusIsoLow->setCurrentIndex(channels.isoLow);
    ui->cbSbusIsoMid->setCurrentIndex(channels.isoMid);
    ui->cbSbusIsoUp->setCurrentIndex(channels.isoUp);
    ui->cbSbusOverlay->setCurrentIndex(channels.overlay);
    ui->cbSbusTrigger->setCurrentIndex(channels.trigger);
    ui->cbSbusZoom->setCurrentIndex(channels.zoom);
    ui->cbSbusZoomMode->setCurrentIndex(channels.zoomMode);

    ui->cbTriggerPinMode->setEnabled(!attached);
    ui->cbTriggerPinMode->setCurrentIndex(attached ? kPinModeSbus : 0);
    ui->cbTriggerFrameMode->setEnabled(!attached);
    ui->cbTriggerFrameMode->setCurrentIndex(0);
    ui->cBOverlayMode->setEnabled(!attached);
    ui->cBOverlayMode->setCurrentIndex(0);
}

void MainWindow::on_cb_externalshutter_stateChanged(int arg1)
{
    console::report("MainWindow::on_checkBox_stateChanged()");
    // The external shutter is wired to both extension ports while it is switched on.
    const bool switchedOn = arg1 != Qt::Unchecked;
    constexpr int kExternalShutterItem = 2;
    ui->gb_externalshutteroptions->setEnabled(switchedOn);
    ui->gb_externalshutteroptions->setVisible(switchedOn);
    ui->cBext0mode->setCurrentIndex(switchedOn ? kExternalShutterItem : 0);
    ui->cBext0mode->setEnabled(!switchedOn);
    ui->cBext1mode->setCurrentIndex(switchedOn ? kExternalShutterItem : 0);
    ui->cBext1mode->setEnabled(!switchedOn);
}
