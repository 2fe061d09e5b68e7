// "Write to file": every control of the form, shown, hidden or disabled, into the 167-byte
// record, then one write to the file the user names. Failures are reported on the console.
//
// The same conversions exist once more, as a table, in storednumber.cpp (the untouched form and
// the model of src/roundtrip). They are not shared with this file: here each control is read
// through the toolkit (currentIndex(), toUInt() on a QString, value()) in the editor's own fixed
// order, and the editor's steps stay exactly as they are. tst_facts and the differential test of
// tests/roundtrip hold the two equal.

#include "console.h"
#include "conversions.h"
#include "mainwindow.h"
#include "ui_mainwindow.h"

#include <QFileDialog>
#include <fcntl.h>
#include <unistd.h>

using lumarex::Field;

namespace {

// A combo box's current index; -1 (no current item) is stored as FF.
std::uint32_t indexOf(const QComboBox *comboBox)
{
    return static_cast<std::uint32_t>(comboBox->currentIndex());
}

std::uint32_t checkedOf(const QAbstractButton *checkBox)
{
    return checkBox->isChecked() ? 1 : 0;
}

std::uint32_t valueOf(const QSpinBox *spinBox)
{
    return static_cast<std::uint32_t>(spinBox->value());
}

// An extension port's mode code; an index without a code leaves the byte as it is.
void storeExtensionMode(lumarex::ConfigRecord &record, Field field,
                        std::optional<std::uint8_t> code)
{
    if (code)
        record.setValue(field, *code);
    else
        console::reportError("   not implemented.");
}

} // namespace

lumarex::ConfigRecord MainWindow::recordFromForm()
{
    lumarex::ConfigRecord record;
    record.writeHeader();
    console::report("header version: ", lumarex::kFormatVersion);

    record.setValue(Field::serialBaudrate, ui->cbBaudrate->currentText().toUInt());
    record.setValue(Field::serialParity, indexOf(ui->cbParity));
    record.setValue(Field::serialStopBits,
                    static_cast<std::uint32_t>(ui->cbStopBit->currentText().toInt()));
    record.setValue(Field::serialInverted, checkedOf(ui->cbInverted));

    record.setValue(Field::gimbalRc, checkedOf(ui->cbPeripheryGimbalrc));
    record.setValue(Field::gpsReceiver, indexOf(ui->cbPeripheryGPS));
    record.setValue(Field::externalShutter, checkedOf(ui->cb_externalshutter));

    record.setValue(Field::esoHeatcycle, valueOf(ui->sb_eso_heatcycle));
    record.setValue(Field::esoHeating, valueOf(ui->sb_eso_heating));
    record.setValue(Field::esoOffset, static_cast<std::uint32_t>(
                                          lumarex::esoOffsetToField(ui->sb_eso_offset->value())));
    record.setValue(Field::esoShutterInterval, valueOf(ui->sb_eso_shutterinterval));
    record.setValue(Field::esoOpt5, valueOf(ui->sb_eso_opt5));

    record.setValue(Field::reserved101, 0);
    record.setValue(Field::frameSkip, ui->leFrameSkip->text().toUInt());

    record.setValue(Field::triggerFfcMode, indexOf(ui->cbTriggerFFCMode));
    record.setValue(Field::triggerFrameMode, indexOf(ui->cbTriggerFrameMode));
    record.setValue(Field::triggerPinMode, indexOf(ui->cbTriggerPinMode));
    record.setValue(Field::overlayMode, indexOf(ui->cBOverlayMode));
    record.setValue64(Field::fixed134, lumarex::kFixed134);
    record.setValue(Field::recMaxFramesPerFile, valueOf(ui->sbRecMaxframesperfile));

    storeExtensionMode(record, Field::ext0Mode,
                       lumarex::ext0ModeCode(ui->cBext0mode->currentIndex()));
    storeExtensionMode(record, Field::ext1Mode,
                       lumarex::ext1ModeCode(ui->cBext1mode->currentIndex()));

    record.setValue(Field::isothermState, indexOf(ui->cbIsothermsState));
    record.setValue(Field::isothermSwitchMode, indexOf(ui->cbIsothermSwitchMode));
    record.setValue(Field::isothermLower, valueOf(ui->sbIsothermsLower));
    record.setValue(Field::isothermMiddle, valueOf(ui->sbIsothermsMiddle));
    record.setValue(Field::isothermUpper, valueOf(ui->sbIsothermsUpper));

    record.setValue(Field::sbusColormap, indexOf(ui->cbSbusColormap));
    record.setValue(Field::sbusColorMapSwitchMode, indexOf(ui->cbSbusColorMapSwitchMode));
    record.setValue(Field::sbusFfc, indexOf(ui->cbSbusFFC));
    record.setValue(Field::sbusIsotherms, indexOf(ui->cbSbusIsotherms));
    record.setValue(Field::sbusIsoLow, indexOf(ui->cbSbusIsoLow));
    record.setValue(Field::sbusIsoMid, indexOf(ui->cbSbusIsoMid));
    record.setValue(Field::sbusIsoUp, indexOf(ui->cbSbusIsoUp));
    record.setValue(Field::sbusOverlay, indexOf(ui->cbSbusOverlay));
    record.setValue(Field::sbusTrigger, indexOf(ui->cbSbusTrigger));
    record.setValue(Field::sbusZoom, indexOf(ui->cbSbusZoom));
    record.setValue(Field::sbusZoomMode, indexOf(ui->cbSbusZoomMode));

    // The device keeps one threshold pair per trigger selection; the form has one pair, so
    // every slot gets the same values.
    for (int slot = 0; slot < lumarex::kTriggerSlots; ++slot) {
        record.setValue(Field::triggerLow, valueOf(ui->sBTriggerLow), slot);
        record.setValue(Field::triggerHigh, valueOf(ui->sBTriggerHigh), slot);
    }

    unsigned short checksum = 0;
    calc_crc(record.data(), lumarex::kChecksummedSize, &checksum);
    record.setValue(Field::crc, checksum);
    return record;
}

void MainWindow::on_btnSetConf_clicked()
{
    const lumarex::ConfigRecord record = recordFromForm();

    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Save File"),
                                                      tr("LXCONFIG.BIN"), tr(".BIN"));
    const QByteArray encodedPath = path.toUtf8();
    // No O_TRUNC: saving over a longer file replaces only its first 167 bytes.
    const int fd = ::open(encodedPath.constData(), O_RDWR | O_CREAT, 0744);
    if (fd == -1)
        console::report("Error opening file!");
    else if (::write(fd, record.bytes().data(), lumarex::kRecordSize) == -1)
        console::report("Error writing data to file");
    // Also when the open failed: the editor then closes -1 (EBADF, harmless), and keeps doing so.
    ::close(fd);
}
