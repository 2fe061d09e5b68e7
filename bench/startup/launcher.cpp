// Starts each program RUNS times on the offscreen platform, alternating their order from round
// to round so that a busy machine weighs on both alike, and prints the medians of what the
// first-paint probe reports:
//   lumarex-startup-bench RUNS NAME=PROGRAM...
// One line per program: "<name> first-paint-ms=<median> peak-rss-kb=<median> runs=<n>".

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace {

struct Program
{
    std::string name;
    std::string path;
    std::vector<double> firstPaintMs;
    std::vector<double> peakRssKb;
};

struct Sample
{
    double firstPaintMs = -1;
    double peakRssKb = -1;
};

long long monotonicNs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec;
}

// Runs the program once with its standard error on a pipe and parses the probe's line.
Sample runOnce(const std::string &path)
{
    int pipeFds[2];
    if (pipe(pipeFds) != 0) {
        std::perror("pipe");
        std::exit(1);
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", 0, 0);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDERR_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipeFds[0]);
    posix_spawn_file_actions_addclose(&actions, pipeFds[1]);

    std::vector<std::string> variables;
    for (char **entry = environ; *entry; ++entry) {
        if (std::strncmp(*entry, "QT_QPA_PLATFORM=", 16) != 0)
            variables.emplace_back(*entry);
    }
    variables.emplace_back("QT_QPA_PLATFORM=offscreen");
    variables.emplace_back("LUMAREX_BENCH_T0_NS=00000000000000000000");
    std::vector<char *> envp;
    for (std::string &variable : variables)
        envp.push_back(variable.data());
    envp.push_back(nullptr);
    char *argv[] = {const_cast<char *>(path.c_str()), nullptr};

    // The stamp goes into the space reserved above, so nothing is allocated after taking it.
    std::string &stamp = variables.back();
    const std::size_t digits = stamp.size() - std::strlen("LUMAREX_BENCH_T0_NS=");
    std::snprintf(stamp.data() + stamp.size() - digits, digits + 1, "%0*lld",
                  static_cast<int>(digits), monotonicNs());
    pid_t child = 0;
    const int error = posix_spawn(&child, path.c_str(), &actions, nullptr, argv, envp.data());
    posix_spawn_file_actions_destroy(&actions);
    close(pipeFds[1]);
    if (error != 0) {
        std::fprintf(stderr, "cannot start %s: %s\n", path.c_str(), std::strerror(error));
        std::exit(1);
    }

    std::string output;
    char buffer[4096];
    ssize_t count;
    while ((count = read(pipeFds[0], buffer, sizeof buffer)) > 0)
        output.append(buffer, static_cast<std::size_t>(count));
    close(pipeFds[0]);
    int status = 0;
    waitpid(child, &status, 0);

    Sample sample;
    long long ns = 0;
    long kb = 0;
    const std::size_t line = output.rfind("first-paint-ns=");
    if (line == std::string::npos ||
        std::sscanf(output.c_str() + line, "first-paint-ns=%lld peak-rss-kb=%ld", &ns, &kb) != 2) {
        std::fprintf(stderr, "%s reported no first paint:\n%s", path.c_str(), output.c_str());
        std::exit(1);
    }
    sample.firstPaintMs = static_cast<double>(ns) / 1e6;
    sample.peakRssKb = static_cast<double>(kb);
    return sample;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s RUNS NAME=PROGRAM...\n", argv[0]);
        return 2;
    }
    const int runs = std::atoi(argv[1]);
    std::vector<Program> programs;
    for (int i = 2; i < argc; ++i) {
        const char *equals = std::strchr(argv[i], '=');
        if (!equals) {
            std::fprintf(stderr, "expected NAME=PROGRAM, got %s\n", argv[i]);
            return 2;
        }
        programs.push_back(
            {std::string(argv[i], static_cast<std::size_t>(equals - argv[i])), equals + 1, {}, {}});
    }

    // One unmeasured start each brings the libraries and fonts into the page cache.
    for (const Program &program : programs)
        runOnce(program.path);
    for (int round = 0; round < runs; ++round) {
        for (std::size_t i = 0; i < programs.size(); ++i) {
            Program &program = programs[round % 2 ? programs.size() - 1 - i : i];
            const Sample sample = runOnce(program.path);
            program.firstPaintMs.push_back(sample.firstPaintMs);
            program.peakRssKb.push_back(sample.peakRssKb);
        }
    }
    for (const Program &program : programs) {
        std::printf("%s first-paint-ms=%.2f peak-rss-kb=%.0f runs=%d\n", program.name.c_str(),
                    median(program.firstPaintMs), median(program.peakRssKb), runs);
    }
    return 0;
}
