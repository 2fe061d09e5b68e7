#include "pager.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lxconfig {

namespace {

pid_t g_pager = -1;

} // namespace

void startPager()
{
    if (!::isatty(STDOUT_FILENO))
        return;
    const char *variable = std::getenv("PAGER");
    const std::string pager = variable ? variable : "less -FRX";
    if (pager.empty() || pager == "cat")
        return;
    int ends[2];
    if (::pipe(ends) != 0)
        return; // written to the terminal directly then
    // The options git gives less and lv when the user has chosen none.
    ::setenv("LESS", "FRX", 0);
    ::setenv("LV", "-c", 0);
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child < 0) {
        ::close(ends[0]);
        ::close(ends[1]);
        return;
    }
    if (child == 0) {
        ::dup2(ends[0], STDIN_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
        ::execl("/bin/sh", "sh", "-c", pager.c_str(), static_cast<char *>(nullptr));
        ::_exit(127);
    }
    g_pager = child;
    ::dup2(ends[1], STDOUT_FILENO);
    if (::isatty(STDERR_FILENO))
        ::dup2(ends[1], STDERR_FILENO);
    ::close(ends[0]);
    ::close(ends[1]);
}

void waitForPager()
{
    if (g_pager < 0)
        return;
    std::fflush(stdout);
    std::fflush(stderr);
    // The pager reads until every copy of its input's writing end is closed.
    ::close(STDOUT_FILENO);
    ::close(STDERR_FILENO);
    int status = 0;
    while (::waitpid(g_pager, &status, 0) < 0 && errno == EINTR) {
    }
    g_pager = -1;
}

} // namespace lxconfig
