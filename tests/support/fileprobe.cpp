#include "fileprobe.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

QMap<QString, QString> treeFingerprint(const QString &root)
{
    QMap<QString, QString> entries;
    QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QString fingerprint = QStringLiteral("dir");
        if (!it.fileInfo().isDir()) {
            QFile file(path);
            QCryptographicHash hash(QCryptographicHash::Sha256);
            fingerprint = file.open(QIODevice::ReadOnly) && hash.addData(&file)
                              ? QString::fromLatin1(hash.result().toHex())
                              : QStringLiteral("unreadable");
        }
        entries.insert(QDir(root).relativeFilePath(path), fingerprint);
    }
    return entries;
}

int descriptorsOpenOn(const QString &path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    int count = 0;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QFileInfo &link :
         descriptors.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        if (link.symLinkTarget() == target)
            ++count;
    }
    return count;
}
