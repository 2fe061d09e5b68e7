#include "untouchedform.h"

#include "testdata.h"

#include <QFile>

QByteArray untouchedFormFile()
{
    static const QByteArray bytes = [] {
        QFile file(QStringLiteral(LUMAREX_TEST_DATA_DIR "/untouched-form.bin"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
        return file.readAll();
    }();
    return bytes;
}
