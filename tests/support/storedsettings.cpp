#include "storedsettings.h"

#include "configrecord.h"
#include "mainwindow.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>

QByteArray storedSettingsFile(MainWindow &startForm)
{
    lumarex::ConfigRecord record = startForm.recordFromForm();
    record.setValue(lumarex::Field::frameSkip, 4242);
    record.setValue(lumarex::Field::recMaxFramesPerFile, 2500);
    record.setValue(lumarex::Field::isothermUpper, 77);
    record.setValue(lumarex::Field::sbusZoom, 5);
    record.seal();
    return QByteArray(reinterpret_cast<const char *>(record.bytes().data()), lumarex::kRecordSize);
}

void showStoredSettings(MainWindow &window)
{
    window.findChild<QLineEdit *>(QStringLiteral("leFrameSkip"))->setText(QStringLiteral("4242"));
    window.findChild<QSpinBox *>(QStringLiteral("sbRecMaxframesperfile"))->setValue(2500);
    window.findChild<QSpinBox *>(QStringLiteral("sbIsothermsUpper"))->setValue(77);
    window.findChild<QComboBox *>(QStringLiteral("cbSbusZoom"))->setCurrentIndex(5);
}
