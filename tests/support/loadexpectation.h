#pragma once

// What the editor's load must print after its first line for given bytes, and which dialog it
// must show; and how a test answers the version dialog.

#include "dialoganswers.h"
#include "modalanswerer.h"

#include <QByteArray>
#include <QMetaType>
#include <QStringList>

struct Expectation
{
    QStringList out; // standard error stays empty in every case here
    bool versionDialog = false;
    bool restores = false;
};
Q_DECLARE_METATYPE(Expectation)

inline constexpr quint32 kFormatVersion = 20180601;
inline constexpr int kReadBufferSize = 1024;

Expectation refused(quint32 version);
Expectation checksumFailed(quint16 computed);
Expectation restored(quint16 checksum);
Expectation failed(const QString &line);

// For a load that must show the version dialog, presses its Ok button (what the box showed goes
// to seen); for any other, fails the test on a dialog and closes it, so that the test cannot
// wait forever.
ModalAnswerer::Handler versionDialogAnswer(const Expectation &expected, VersionBox *seen);
