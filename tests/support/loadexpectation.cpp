#include "loadexpectation.h"

#include "configrecord.h"

#include <QDialog>
#include <QTest>

Expectation refused(quint32 version)
{
    return {{QStringLiteral("MainWindow::versionMismatch(%1)").arg(version),
             QStringLiteral("<<< dialog accepted")},
            true,
            false};
}

Expectation checksumFailed(quint16 computed)
{
    return {{QStringLiteral("CRC read: %1").arg(computed), QStringLiteral("CRC error")}};
}

Expectation restored(quint16 checksum)
{
    return {{QStringLiteral("CRC read: %1").arg(checksum), QStringLiteral("   reading config...")},
            false,
            true};
}

Expectation failed(const QString &line)
{
    return {{line}};
}

namespace {

// Closes a dialog that should not have opened and fails the test.
void unexpectedDialog(QWidget *dialog)
{
    if (auto *modal = qobject_cast<QDialog *>(dialog))
        modal->reject();
    QFAIL(qPrintable(QStringLiteral("unexpected dialog \"%1\"").arg(dialog->windowTitle())));
}

} // namespace

ModalAnswerer::Handler versionDialogAnswer(const Expectation &expected, VersionBox *seen)
{
    return expected.versionDialog ? answerVersionBox(BoxAnswer::ClickOk, seen) : unexpectedDialog;
}
