#pragma once

// Writing to a descriptor (standard output, a file being replaced), whole and through signals.

#include <cerrno>
#include <string_view>

namespace lxconfig {

// Retries a call that a signal interrupted.
template <typename Call> auto retried(Call call)
{
    decltype(call()) result;
    do {
        result = call();
    } while (result == -1 && errno == EINTR);
    return result;
}

// Writes everything to the descriptor, retrying short writes; the errno of the failure, or 0.
int writeAll(int fd, std::string_view data);

} // namespace lxconfig
