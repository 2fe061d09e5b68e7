#include "pdfprint.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace lxconfig {

const std::vector<std::string> &browserNames()
{
    static const std::vector<std::string> names = {"chromium", "chromium-browser", "google-chrome",
                                                   "google-chrome-stable", "chrome"};
    return names;
}

std::optional<std::string> browserOnPath()
{
    const char *path = std::getenv("PATH");
    if (!path)
        return std::nullopt;
    for (const std::string &name : browserNames()) {
        std::istringstream folders(path);
        std::string folder;
        while (std::getline(folders, folder, ':')) {
            const std::string candidate = (folder.empty() ? std::string(".") : folder) + "/" + name;
            if (::access(candidate.c_str(), X_OK) == 0)
                return candidate;
        }
    }
    return std::nullopt;
}

namespace {

// The last lines of the browser's log, for the error message.
std::string logTail(const std::string &log)
{
    std::ifstream in(log);
    std::string line;
    std::vector<std::string> lines;
    while (std::getline(in, line)) {
        if (!line.empty())
            lines.push_back(line);
    }
    std::string tail;
    for (std::size_t i = lines.size() > 3 ? lines.size() - 3 : 0; i < lines.size(); ++i)
        tail += "\n  " + lines[i];
    return tail;
}

} // namespace

Done printToPdf(const std::string &browser, const std::string &html, const std::string &pdf,
                const std::string &work)
{
    std::vector<std::string> arguments = {
        browser,
        "--headless",
        "--disable-gpu",
        "--no-first-run",
        "--no-default-browser-check",
        "--disable-background-networking",
        "--disable-component-update",
        "--disable-sync",
        "--disable-extensions",
        "--disable-crash-reporter",
        // No date, title, address or page number of the browser's own: the sheet has its own.
        "--no-pdf-header-footer",
        "--print-to-pdf-no-header", // the same option in browsers before version 120
        "--user-data-dir=" + work + "/profile",
        "--print-to-pdf=" + pdf,
    };
    // A browser refuses to run as root inside its sandbox.
    if (::geteuid() == 0)
        arguments.insert(arguments.begin() + 1, "--no-sandbox");
    arguments.push_back("file://" + html);
    std::vector<char *> argv;
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    const std::string log = work + "/browser.log";
    const pid_t child = ::fork();
    if (child == -1)
        return Failure{{}, std::string("cannot start ") + browser + ": " + std::strerror(errno)};
    if (child == 0) {
        const int out = ::open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        const int none = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        if (out == -1 || none == -1 || ::dup2(none, 0) == -1 || ::dup2(out, 1) == -1 ||
            ::dup2(out, 2) == -1)
            ::_exit(126);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) == -1) {
        if (errno != EINTR)
            return Failure{{},
                           std::string("cannot wait for ") + browser + ": " + std::strerror(errno)};
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        const std::string how = WIFEXITED(status)
                                    ? "exit status " + std::to_string(WEXITSTATUS(status))
                                    : "signal " + std::to_string(WTERMSIG(status));
        return Failure{{}, browser + " failed (" + how + ")" + logTail(log)};
    }
    if (::access(pdf.c_str(), R_OK) != 0)
        return Failure{{}, browser + " wrote no PDF" + logTail(log)};
    return {};
}

} // namespace lxconfig
