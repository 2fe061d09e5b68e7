// "Read from file": one read of the chosen file, the format library's verdict on it (magic,
// version, checksum), then every stored value back into its control in a fixed order. Restoring a
// control runs its form rules at once, and later steps overwrite what those rules preset.
//
// src/roundtrip/restoreorder.cpp writes the same order down as data for the model. It is not
// shared with this file: here each step is a toolkit call whose signal runs the window's rule
// slots at that moment, nested, and the editor's steps stay exactly as they are; driving the
// window from the table would change how and when it runs them. The differential test of
// tests/roundtrip holds the two equal.

#include "console.h"
#include "conversions.h"
#include "editorverdict.h"
#include "mainwindow.h"
#include "ui_mainwindow.h"

#include <QFileDialog>
#include <QMessageBox>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

using lumarex::Field;

namespace {

int intField(const lumarex::ConfigRecord &record, Field field)
{
    return static_cast<int>(record.value(field));
}

bool checkField(const lumarex::ConfigRecord &record, Field field)
{
    return record.value(field) != 0;
}

// A mode code the port does not know leaves its box as it is.
void restoreExtensionMode(QComboBox *comboBox, std::optional<int> index)
{
    if (index)
        comboBox->setCurrentIndex(*index);
    else
        console::reportError("   not implemented.");
}

} // namespace

void MainWindow::on_btnReadConf_clicked()
{
    console::report("MainWindow::on_btnReadConf_clicked()");
    const QString path =
        QFileDialog::getOpenFileName(this, QStringLiteral("Open File"), QString(), QString());

    unsigned char buffer[lumarex::kEditorReadSize];
    std::memset(buffer, 0, sizeof buffer);

    // A cancelled dialog gives an empty path, which fails here.
    const QByteArray encodedPath = path.toUtf8();
    const int fd = ::open(encodedPath.constData(), O_RDONLY);
    if (fd == -1) {
        console::report("Error opening file!");
        ::close(fd);
        return;
    }
    if (::read(fd, buffer, sizeof buffer) == -1) {
        console::report("Error reading file");
        ::close(fd);
        return;
    }
    // After the version dialog the descriptor stays open until the process ends, as the
    // editor has always done.
    if (restoreFromFileBytes(buffer) != LoadOutcome::VersionRefused)
        ::close(fd);
}

MainWindow::LoadOutcome MainWindow::restoreFromFileBytes(const unsigned char *bytes)
{
    // A short file reads as if padded with zero bytes; bytes after the record are ignored.
    lumarex::ConfigRecord record = lumarex::ConfigRecord::fromBytes(bytes, lumarex::kRecordSize);
    const lumarex::Verdict verdict = lumarex::editorVerdict(record);
    if (verdict == lumarex::Verdict::BadMagic || verdict == lumarex::Verdict::OtherVersion) {
        versionMismatch(record.value(Field::headerVersion));
        return LoadOutcome::VersionRefused;
    }
    // The verdict has decided; this call stays for the "CRC read:" line it prints.
    unsigned short checksum = 0;
    calc_crc(record.data(), lumarex::kChecksummedSize, &checksum);
    if (verdict == lumarex::Verdict::ChecksumMismatch) {
        console::report("CRC error");
        return LoadOutcome::ChecksumFailed;
    }
    console::report("   reading config...");

    const QString baudrateText = QString::number(record.value(Field::serialBaudrate));
    const QString stopBitsText =
        QString::number(static_cast<int>(record.value(Field::serialStopBits)));
    const QString frameSkipText = QString::number(record.value(Field::frameSkip));

    ui->cbPeripheryGimbalrc->setChecked(checkField(record, Field::gimbalRc));
    ui->cbPeripheryGPS->setCurrentIndex(intField(record, Field::gpsReceiver));
    ui->cb_externalshutter->setChecked(checkField(record, Field::externalShutter));
    ui->sb_eso_heatcycle->setValue(record.signedValue(Field::esoHeatcycle));
    ui->sb_eso_heating->setValue(record.signedValue(Field::esoHeating));
    // Read back unsigned: a negative offset comes back clamped to the control's maximum.
    ui->sb_eso_offset->setValue(lumarex::esoOffsetFromField(record.value(Field::esoOffset)));
    ui->sb_eso_shutterinterval->setValue(record.signedValue(Field::esoShutterInterval));
    ui->sb_eso_opt5->setValue(record.signedValue(Field::esoOpt5));
    ui->cbBaudrate->setCurrentText(baudrateText);
    ui->cbParity->setCurrentIndex(intField(record, Field::serialParity));
    ui->cbStopBit->setCurrentText(stopBitsText);
    ui->cbInverted->setChecked(checkField(record, Field::serialInverted));
    ui->leFrameSkip->setText(frameSkipText);
    ui->cbTriggerPinMode->setCurrentIndex(intField(record, Field::triggerPinMode));
    ui->cbTriggerFFCMode->setCurrentIndex(intField(record, Field::triggerFfcMode));
    ui->cbTriggerFrameMode->setCurrentIndex(intField(record, Field::triggerFrameMode));
    ui->cBOverlayMode->setCurrentIndex(intField(record, Field::overlayMode));
    ui->sbRecMaxframesperfile->setValue(record.signedValue(Field::recMaxFramesPerFile));
    restoreExtensionMode(ui->cBext0mode, lumarex::ext0ModeIndex(static_cast<std::uint8_t>(
                                             record.value(Field::ext0Mode))));
    restoreExtensionMode(ui->cBext1mode, lumarex::ext1ModeIndex(static_cast<std::uint8_t>(
                                             record.value(Field::ext1Mode))));
    // The switch mode goes into the start-state box too; the editor has always restored it so,
    // and cbIsothermSwitchMode keeps its value.
    ui->cbIsothermsState->setCurrentIndex(intField(record, Field::isothermState));
    ui->cbIsothermsState->setCurrentIndex(intField(record, Field::isothermSwitchMode));
    ui->sbIsothermsLower->setValue(intField(record, Field::isothermLower));
    ui->sbIsothermsMiddle->setValue(intField(record, Field::isothermMiddle));
    ui->sbIsothermsUpper->setValue(intField(record, Field::isothermUpper));
    // The two switch-mode boxes of the SBUS/PPM page are not restored.
    ui->cbSbusColormap->setCurrentIndex(intField(record, Field::sbusColormap));
    ui->cbSbusFFC->setCurrentIndex(intField(record, Field::sbusFfc));
    ui->cbSbusIsotherms->setCurrentIndex(intField(record, Field::sbusIsotherms));
    ui->cbSbusIsoLow->setCurrentIndex(intField(record, Field::sbusIsoLow));
    ui->cbSbusIsoMid->setCurrentIndex(intField(record, Field::sbusIsoMid));
    ui->cbSbusIsoUp->setCurrentIndex(intField(record, Field::sbusIsoUp));
    ui->cbSbusOverlay->setCurrentIndex(intField(record, Field::sbusOverlay));
    const int triggerSlot = intField(record, Field::sbusTrigger);
    ui->cbSbusTrigger->setCurrentIndex(triggerSlot);
    ui->cbSbusZoom->setCurrentIndex(intField(record, Field::sbusZoom));
    // The thresholds of the selected trigger channel; a selection past the 20 stored slots
    // leaves both boxes as they are.
    if (triggerSlot < lumarex::kTriggerSlots) {
        ui->sBTriggerLow->setValue(static_cast<int>(record.value(Field::triggerLow, triggerSlot)));
        ui->sBTriggerHigh->setValue(
            static_cast<int>(record.value(Field::triggerHigh, triggerSlot)));
    }
    return LoadOutcome::Restored;
}

void MainWindow::versionMismatch(unsigned int version)
{
    console::report("MainWindow::versionMismatch(", version, ")");
    QMessageBox box;
    box.setWindowTitle(tr("Version error"));
    box.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint);
    box.setText(tr("<p>Configuration is not compatible with this version</p>"));
    box.setIcon(QMessageBox::Warning);
    box.setStandardButtons(QMessageBox::Ok);
    box.setDefaultButton(QMessageBox::Ok);
    if (box.exec() == QMessageBox::Ok)
        console::report("<<< dialog accepted");
    else
        console::report("<<< dialog rejected");
}
