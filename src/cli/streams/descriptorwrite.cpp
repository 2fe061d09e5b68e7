#include "descriptorwrite.h"

#include <unistd.h>

namespace lxconfig {

int writeAllErrno(int fd, std::string_view data)
{
    while (!data.empty()) {
        const ssize_t written = retried([&] { return ::write(fd, data.data(), data.size()); });
        if (written < 0)
            return errno;
        if (written == 0)
            return EIO;
        data.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

} // namespace lxconfig
