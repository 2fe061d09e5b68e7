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

// Writes everything to the descriptor, retrying short writes. It returns an errno, not a Result,
// because the callers make different messages of it (the file layer's "cannot write: ...", the
// card's cause, standard output's error at exit): the errno of the failure, or 0 when all of
// it was written.
int writeAllErrno(int fd, std::string_view data);

} // namespace lxconfig
