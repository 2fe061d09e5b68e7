#pragma once

#include "configrecord.h"

#include <QMainWindow>

namespace Ui {
class MainWindow;
}

// The editor's one window. The form's widgets are the configuration: the window keeps no
// settings of its own. The slot bodies live with their subsystems: the save and load commands
// in config/, the form rules in form/.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    // The save command up to its file dialog: every control into a sealed record, with the
    // command's console lines.
    lumarex::ConfigRecord recordFromForm();

    // The load command after its read: checks the bytes read and restores every control.
    enum class LoadOutcome
    {
        Restored,
        VersionRefused,
        ChecksumFailed
    };
    LoadOutcome restoreFromFileBytes(const unsigned char *bytes);

    // Shows the modal "Version error" box for a file of another format.
    void versionMismatch(unsigned int version);

    // The file checksum; prints "CRC read: " and the value on saving and loading alike.
    void calc_crc(unsigned char *data, int length, unsigned short *result);
    unsigned short crc_update(unsigned short crc, unsigned char data, unsigned short polynomial);

private slots:
    void on_btnSetConf_clicked();
    void on_btnReadConf_clicked();
    // No underscore after the object name, so connectSlotsByName passes these two over and the
    // constructor connects them itself.
    void on_cbPeripheryGPSIndexChanged(int i);
    void on_cbTriggerPinModeIndexChanged(int i);
    void on_cbTriggerPinMode_currentIndexChanged(const QString &arg1);
    void on_cbPeripheryGimbalrc_stateChanged(int i);
    void on_cb_externalshutter_stateChanged(int arg1);

private:
    Ui::MainWindow *ui;
};
