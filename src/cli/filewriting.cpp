#include "filewriting.h"

#include <QSaveFile>

namespace lxconfig {

std::optional<QString> writeFile(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit())
        return std::nullopt;
    return QStringLiteral("cannot write: ") + file.errorString();
}

} // namespace lxconfig
