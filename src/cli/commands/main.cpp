// lxconfig: the editor's command-line companion for LXCONFIG.BIN files.

#include "commandline.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

// A standard stream that was closed stays taken by a descriptor that refuses to be written or
// read, so that no file opened later lands on it and writing "standard output" fails visibly.
void holdClosedStandardStreams()
{
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (::fcntl(fd, F_GETFD) == -1)
            ::open("/dev/null", O_PATH);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    holdClosedStandardStreams();
    // Past a file-size limit a write then fails with EFBIG and is reported, instead of the
    // process being killed with a half-written temporary file.
    std::signal(SIGXFSZ, SIG_IGN);
    lxconfig::Output output(stdout, stderr);
    return lxconfig::run(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc), output);
}
