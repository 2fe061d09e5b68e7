// lxconfig on a terminal: long output through the pager as git sends it there, never in a pipe;
// report's HTML kept off the screen; results and warnings in order on one screen. lxconfig runs
// on a pseudo-terminal of the test's own (forkpty), with a fake pager that marks what it pages.

#include "workspace.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <cerrno>
#include <cstring>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Marks every line it is given, so the screen shows what went through it.
const QString kFakePager = QStringLiteral("PAGER=sed 's/^/paged: /'");

struct TerminalRun
{
    int exitCode;   // -1 when lxconfig did not exit normally
    QString screen; // standard output and standard error as the terminal shows them, "\r" dropped
};

// lxconfig with standard input, output and error on a new terminal, in the workspace's folder,
// in the C locale, with PAGER unset unless the extra "NAME=VALUE" entries set it.
TerminalRun runOnTerminal(const Workspace &workspace, const QStringList &arguments,
                          const QStringList &extra = {})
{
    QList<QByteArray> argumentBytes{QByteArrayLiteral(LXCONFIG_PATH)};
    for (const QString &argument : arguments)
        argumentBytes.append(argument.toUtf8());
    std::vector<char *> argv;
    for (QByteArray &bytes : argumentBytes)
        argv.push_back(bytes.data());
    argv.push_back(nullptr);
    const QByteArray folder = QFile::encodeName(workspace.path("."));
    QList<QPair<QByteArray, QByteArray>> variables;
    for (const QString &entry : extra)
        variables.append({entry.section('=', 0, 0).toUtf8(), entry.section('=', 1).toUtf8()});

    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child < 0)
        qFatal("forkpty: %s", std::strerror(errno));
    if (child == 0) {
        // Only async-signal-safe calls from here: the test may run threads.
        if (::chdir(folder.constData()) != 0)
            ::_exit(126);
        ::unsetenv("PAGER");
        ::unsetenv("LESS");
        ::unsetenv("VERSION_CONTROL");
        ::setenv("LC_ALL", "C", 1);
        ::setenv("TERM", "dumb", 1);
        for (const auto &[name, value] : variables)
            ::setenv(name.constData(), value.constData(), 1);
        ::execv(argv.front(), argv.data());
        ::_exit(127);
    }
    QByteArray screen;
    char buffer[4096];
    for (;;) {
        const ssize_t got = ::read(terminal, buffer, sizeof buffer);
        if (got > 0)
            screen.append(buffer, int(got));
        else if (got < 0 && errno == EINTR)
            continue;
        else
            break; // EIO once the last process holding the terminal has closed it
    }
    ::close(terminal);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, QString::fromUtf8(screen).remove('\r')};
}

// Every line of the text, marked as the fake pager marks it.
QString paged(const QString &text)
{
    QStringList lines = text.split('\n');
    lines.removeLast(); // after the last newline
    QString marked;
    for (const QString &line : lines)
        marked += "paged: " + line + '\n';
    return marked;
}

} // namespace

class TestTerminal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pagedCommands_data();
    void pagedCommands();
    void warningsGoThroughThePagerToo();
    void noPager_data();
    void noPager();
    void defaultPagerIsLess();
    void neverInAPipe();
    void writingCommandsAreNotPaged();
    void warningsInOrderOnTheTerminal();
    void reportRefusesTheTerminal();
    void reportToTheTerminalOnPurpose();

private:
    Workspace m_workspace;
};

void TestTerminal::initTestCase()
{
    m_workspace.write("changed.bin", m_workspace.read("good.bin"));
    QCOMPARE(m_workspace.run({"set", "-q", "changed.bin", "serialParity=2"}).exitCode, 0);
}

void TestTerminal::pagedCommands_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("explain without a name") << QStringList{"explain"} << 0;
    QTest::newRow("explain a name") << QStringList{"explain", "gpsReceiver"} << 0;
    QTest::newRow("explain --list") << QStringList{"explain", "--list"} << 0;
    QTest::newRow("show") << QStringList{"show", "good.bin"} << 0;
    QTest::newRow("diff") << QStringList{"diff", "changed.bin"} << 1;
    QTest::newRow("check") << QStringList{"check", "good.bin", "magic.bin"} << 1;
    QTest::newRow("help") << QStringList{"help", "set"} << 0;
}

void TestTerminal::pagedCommands()
{
    // The same text as in a pipe, every line through the pager; the exit status is lxconfig's.
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    const RunResult piped = m_workspace.run(arguments);
    QCOMPARE(piped.exitCode, exitCode);
    const TerminalRun run = runOnTerminal(m_workspace, arguments, {kFakePager});
    QCOMPARE(run.screen, paged(piped.out));
    QCOMPARE(run.exitCode, exitCode);
}

void TestTerminal::warningsGoThroughThePagerToo()
{
    // Standard error is the terminal too, so its lines join the paged text, in their place.
    const TerminalRun run =
        runOnTerminal(m_workspace, {"check", "good.bin", "long.bin", "good.bin"}, {kFakePager});
    QCOMPARE(run.screen, QStringLiteral("paged: good.bin: valid\n"
                                        "paged: long.bin: valid\n"
                                        "paged: lxconfig: warning: long.bin: 200 bytes (a record "
                                        "is 167)\n"
                                        "paged: good.bin: valid\n"));
    QCOMPARE(run.exitCode, 0);
}

void TestTerminal::noPager_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("environment");
    QTest::newRow("--no-pager") << QStringList{"show", "--no-pager", "good.bin"}
                                << QStringList{kFakePager};
    QTest::newRow("--no-pager first")
        << QStringList{"--no-pager", "show", "good.bin"} << QStringList{kFakePager};
    QTest::newRow("empty PAGER") << QStringList{"show", "good.bin"} << QStringList{"PAGER="};
    QTest::newRow("PAGER=cat") << QStringList{"show", "good.bin"} << QStringList{"PAGER=cat"};
}

void TestTerminal::noPager()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, environment);
    const TerminalRun run = runOnTerminal(m_workspace, arguments, environment);
    QCOMPARE(run.screen, m_workspace.run({"show", "good.bin"}).out);
    QCOMPARE(run.exitCode, 0);
}

void TestTerminal::defaultPagerIsLess()
{
    // Without PAGER: "less -FRX", with LESS=FRX as git sets it. A "less" first in PATH records
    // how it was called.
    QDir(m_workspace.path(".")).mkdir("bin");
    m_workspace.write("bin/less", "#!/bin/sh\necho \"less $* LESS=$LESS\"\nsed 's/^/paged: /'\n");
    QVERIFY(QFile::setPermissions(m_workspace.path("bin/less"),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const TerminalRun run =
        runOnTerminal(m_workspace, {"explain", "esoOpt5"},
                      {"PATH=" + m_workspace.path("bin") + ':' + qEnvironmentVariable("PATH")});
    QCOMPARE(run.screen,
             "less -FRX LESS=FRX\n" + paged(m_workspace.run({"explain", "esoOpt5"}).out));
}

void TestTerminal::neverInAPipe()
{
    const RunResult run = m_workspace.run({"explain", "esoOpt5"}, {kFakePager});
    QVERIFY2(run.out.startsWith("esoOpt5: "), qPrintable(run.out));
    QVERIFY(!run.out.contains("paged: "));
}

void TestTerminal::writingCommandsAreNotPaged()
{
    m_workspace.write("cam.bin", m_workspace.read("good.bin"));
    const TerminalRun run =
        runOnTerminal(m_workspace, {"set", "cam.bin", "serialParity=2"}, {kFakePager});
    QCOMPARE(run.screen, QStringLiteral("cam.bin: 1 value set, 1 changed\n"
                                        "  serialParity: 0 \"none\" -> 2 \"even\"\n"));
    QCOMPARE(run.exitCode, 0);
}

void TestTerminal::warningsInOrderOnTheTerminal()
{
    const TerminalRun run =
        runOnTerminal(m_workspace, {"check", "--no-pager", "long.bin", "empty.bin", "good.bin"});
    QCOMPARE(run.screen,
             QStringLiteral("long.bin: valid\n"
                            "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n"
                            "empty.bin: bad magic \"\\x00\\x00\\x00\\x00\" (expected \"CONF\")\n"
                            "lxconfig: warning: empty.bin: 0 bytes (a record is 167)\n"
                            "good.bin: valid\n"));
    QCOMPARE(run.exitCode, 1);
}

void TestTerminal::reportRefusesTheTerminal()
{
    const TerminalRun run = runOnTerminal(m_workspace, {"report", "good.bin"});
    QCOMPARE(run.screen, QStringLiteral("lxconfig: standard output: is a terminal, and the sheet "
                                        "is HTML; write it with -o FILE.html or print it with "
                                        "--pdf, or pipe it\n"
                                        "Try 'lxconfig help report'.\n"));
    QCOMPARE(run.exitCode, 2);
    // In a pipe and into a file, as ever.
    const RunResult piped = m_workspace.run({"report", "good.bin"});
    QVERIFY(piped.out.startsWith("<?xml") || piped.out.startsWith("<!DOCTYPE"));
    QCOMPARE(piped.exitCode, 0);
    const TerminalRun written = runOnTerminal(m_workspace, {"report", "good.bin", "-o", "s.html"});
    QCOMPARE(written.screen, QString());
    QCOMPARE(written.exitCode, 0);
    QCOMPARE(m_workspace.read("s.html"), piped.out.toUtf8());
}

void TestTerminal::reportToTheTerminalOnPurpose()
{
    // "-o -" names standard output on purpose: the sheet is printed there.
    const TerminalRun run = runOnTerminal(m_workspace, {"report", "good.bin", "-o", "-"});
    QCOMPARE(run.screen, m_workspace.run({"report", "good.bin"}).out);
    QCOMPARE(run.exitCode, 0);
}

QTEST_GUILESS_MAIN(TestTerminal)
#include "tst_terminal.moc"
