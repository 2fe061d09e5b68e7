#pragma once

// Every file the tool writes goes through a temporary file in the same folder that is renamed
// over the target only when complete, so a failure leaves whatever was there byte for byte.

#include <QByteArray>
#include <QString>
#include <optional>

namespace lxconfig {

// "cannot write: <reason>" when it fails.
std::optional<QString> writeFile(const QString &path, const QByteArray &data);

} // namespace lxconfig
