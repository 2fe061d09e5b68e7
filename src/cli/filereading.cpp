#include "filereading.h"

#include <QFile>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lxconfig {

namespace {

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// Reads until the end of the file or maxBytes; false when a read fails.
bool readUpTo(int fd, qint64 maxBytes, QByteArray &data)
{
    char chunk[4096];
    while (data.size() < maxBytes) {
        const auto wanted = static_cast<std::size_t>(
            std::min<qint64>(static_cast<qint64>(sizeof chunk), maxBytes - data.size()));
        const ssize_t got = ::read(fd, chunk, wanted);
        if (got < 0)
            return false;
        if (got == 0)
            break;
        data.append(chunk, static_cast<int>(got));
    }
    return true;
}

} // namespace

FileContents readFile(const QString &path, qint64 maxBytes)
{
    FileContents contents;
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY);
    if (fd == -1) {
        contents.error = QStringLiteral("cannot open: ") + systemError();
        return contents;
    }
    struct stat status = {};
    if (!readUpTo(fd, maxBytes, contents.data) || ::fstat(fd, &status) == -1)
        contents.error = QStringLiteral("cannot read: ") + systemError();
    else
        contents.size = status.st_size;
    ::close(fd);
    return contents;
}

} // namespace lxconfig
