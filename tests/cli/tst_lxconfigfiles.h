#pragma once

// lxconfig's promises about files, under faults and odd inputs: a failed write changes nothing,
// no temporary file is ever left, only regular files are replaced, set keeps what the file was,
// concurrent sets lose nothing, standard output failures are failures, input is bounded, names
// are taken as the bytes given. The promises about files on a camera's card run on FAT32 and exFAT
// cards too (card.h). Each slot drives the built program through real files, real
// devices, mount namespaces and strace; what the machine cannot offer is skipped with the reason.

#include <QObject>

class TestLxconfigFiles : public QObject
{
    Q_OBJECT

private slots:
    // faulttests.cpp
    void fullFilesystem_data();
    void fullFilesystem();
    void fileSizeLimit_data();
    void fileSizeLimit();
    void fullDevice_data();
    void fullDevice();
    void refusingFolder_data();
    void refusingFolder();
    void standardOutputFails_data();
    void standardOutputFails();
    void killedAtEveryStep_data();
    void killedAtEveryStep();
    void failedCall_data();
    void failedCall();
    void everySignalHeld_data();
    void everySignalHeld();

    // specialfiletests.cpp
    void outputsThatAreNotFiles_data();
    void outputsThatAreNotFiles();
    void outputIntoFifo();
    void outputThatIsAnInput_data();
    void outputThatIsAnInput();
    void outputThatIsStandardInput_data();
    void outputThatIsStandardInput();
    void standardInput_data();
    void standardInput();
    void inputFromFifo();
    void symbolicLinks();
    void linkLoop_data();
    void linkLoop();
    void namesAsGiven_data();
    void namesAsGiven();
    void boundedInput_data();
    void boundedInput();

    // editingtests.cpp
    void setKeepsMode_data();
    void setKeepsMode();
    void setKeepsOwner_data();
    void setKeepsOwner();
    void setBreaksHardLink();
    void concurrentSets_data();
    void concurrentSets();
    void resaveOverItselfWaitsForTheLock();
};
