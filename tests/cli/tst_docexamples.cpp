// The shell sessions of docs/lxconfig.md, run as written against the built lxconfig, so that the
// documentation cannot drift from the program. A session is a ```console block: "$ COMMAND"
// lines, each followed by what it prints (standard output and standard error as one terminal
// shows them); a line "..." stands for any number of lines. Each session runs in an empty folder
// of its own, its commands one after the other in one /bin/sh, with lxconfig first in PATH.
//
// With LUMAREX_UPDATE_EXAMPLES=1 in the environment, a step whose printed lines differ from the
// documented ones gets the printed lines written into the document instead of failing, for a
// change that is meant to change lxconfig's output; read the difference (git diff
// docs/lxconfig.md) before committing it. A step with "..." keeps its lines: each that names one
// printed line by its first word (a setting's name) takes that line's text, if the step then
// matches; otherwise it fails as without the variable.

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <optional>

namespace {

struct Step
{
    int line; // in the document, from 1
    QString command;
    QStringList expected;
};

struct Session
{
    int line; // of the opening fence
    QList<Step> steps;
};

QList<Session> sessionsOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    const QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
    QList<Session> sessions;
    bool inSession = false;
    bool inOtherBlock = false;
    for (int i = 0; i < lines.size(); ++i) {
        const QString &line = lines.at(i);
        if (line.startsWith("```")) {
            if (inSession || inOtherBlock) {
                inSession = inOtherBlock = false;
            } else if (line == "```console") {
                inSession = true;
                sessions.append({i + 1, {}});
            } else {
                inOtherBlock = true;
            }
            continue;
        }
        if (!inSession)
            continue;
        if (line.startsWith("$ "))
            sessions.last().steps.append({i + 1, line.mid(2), {}});
        else if (!sessions.last().steps.isEmpty())
            sessions.last().steps.last().expected.append(line);
        else
            qFatal("%s:%d: output before the first command", qPrintable(path), i + 1);
    }
    return sessions;
}

// Whether the lines printed match the expected ones, where "..." matches any run of lines.
bool matches(const QStringList &expected, int e, const QStringList &actual, int a)
{
    if (e == expected.size())
        return a == actual.size();
    if (expected.at(e).trimmed() == "...") {
        for (int skip = a; skip <= actual.size(); ++skip) {
            if (matches(expected, e + 1, actual, skip))
                return true;
        }
        return false;
    }
    return a < actual.size() && expected.at(e) == actual.at(a) &&
           matches(expected, e + 1, actual, a + 1);
}

// The abridged step's lines with each one whose first word is that of exactly one printed line
// (and of no other documented line) replaced by that printed line; nothing unless the result
// matches what was printed.
std::optional<QStringList> abridgedUpdate(const QStringList &expected, const QStringList &actual)
{
    auto firstWord = [](const QString &line) {
        return line.section(' ', 0, 0, QString::SectionSkipEmpty);
    };
    auto withWord = [&](const QStringList &lines, const QString &word) {
        QStringList found;
        for (const QString &line : lines) {
            if (firstWord(line) == word)
                found.append(line);
        }
        return found;
    };
    QStringList updated = expected;
    for (QString &line : updated) {
        const QString word = firstWord(line);
        const QStringList printed = withWord(actual, word);
        if (line.trimmed() != "..." && printed.size() == 1 && withWord(expected, word).size() == 1)
            line = printed.first();
    }
    if (!matches(updated, 0, actual, 0))
        return std::nullopt;
    return updated;
}

// What each command printed, run in order in one shell.
QList<QStringList> runSession(const Session &session, const QString &folder)
{
    // A separator line after each command that keeps the command's exit status for the next.
    const QString separator = QStringLiteral("--8<-- lxconfig documentation step --8<--");
    QString script = "exec 2>&1\n";
    for (const Step &step : session.steps) {
        script += step.command + '\n';
        script += "step_status=$?; echo; echo '" + separator + "'; (exit $step_status)\n";
    }
    QProcess shell;
    shell.setWorkingDirectory(folder);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C");
    environment.insert("PATH", QFileInfo(QStringLiteral(LXCONFIG_PATH)).absolutePath() + ':' +
                                   environment.value("PATH"));
    environment.remove("VERSION_CONTROL");
    environment.remove("PAGER");
    environment.remove("COLUMNS"); // compare's width: none, as in a script
    shell.setProcessEnvironment(environment);
    shell.start("/bin/sh", {"-c", script});
    shell.closeWriteChannel();
    shell.waitForFinished(-1);
    const QString output = QString::fromUtf8(shell.readAllStandardOutput());
    QList<QStringList> printed;
    for (const QString &part : output.split("\n" + separator + "\n")) {
        // Each part ends with the newline echoed before the separator (and the command's own).
        QStringList lines = part.split('\n');
        lines.removeLast();
        printed.append(lines);
    }
    printed.removeLast(); // after the last separator
    return printed;
}

// Replaces the documented lines of the steps with what they printed, in the document's file.
void writePrinted(const QList<QPair<Step, QStringList>> &changes)
{
    QFile file(QStringLiteral(LXCONFIG_DOC));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
    file.close();
    int shift = 0;
    for (const auto &change : changes) {
        const Step &step = change.first;
        const int first = step.line + shift; // the line after the command, from 0
        for (int i = 0; i < step.expected.size(); ++i)
            lines.removeAt(first);
        for (int i = 0; i < change.second.size(); ++i)
            lines.insert(first + i, change.second.at(i));
        shift += change.second.size() - step.expected.size();
    }
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(lines.join('\n').toUtf8()) < 0)
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

} // namespace

class TestDocExamples : public QObject
{
    Q_OBJECT

private slots:
    void sessions_data();
    void sessions();
};

void TestDocExamples::sessions_data()
{
    QTest::addColumn<int>("index");
    const QList<Session> sessions = sessionsOf(QStringLiteral(LXCONFIG_DOC));
    QVERIFY2(sessions.size() >= 8, "docs/lxconfig.md has lost its sessions");
    for (int i = 0; i < sessions.size(); ++i)
        QTest::addRow("lxconfig.md:%d", sessions.at(i).line) << i;
}

void TestDocExamples::sessions()
{
    QFETCH(int, index);
    const Session session = sessionsOf(QStringLiteral(LXCONFIG_DOC)).at(index);
    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QList<QStringList> printed = runSession(session, folder.path());
    QCOMPARE(printed.size(), session.steps.size());
    const bool update = qEnvironmentVariableIntValue("LUMAREX_UPDATE_EXAMPLES") == 1;
    QList<QPair<Step, QStringList>> changes;
    for (int i = 0; i < session.steps.size(); ++i) {
        const Step &step = session.steps.at(i);
        const QStringList actual = printed.at(i);
        if (!matches(step.expected, 0, actual, 0)) {
            const std::optional<QStringList> written =
                !step.expected.contains(QStringLiteral("..."))
                    ? actual
                    : abridgedUpdate(step.expected, actual);
            if (update && written) {
                changes.append({step, *written});
                continue;
            }
            if (!changes.isEmpty())
                writePrinted(changes); // the steps before, so that only this one is left
            QFAIL(qPrintable(QStringLiteral("docs/lxconfig.md:%1: $ %2\n--- documented:\n%3\n"
                                            "--- printed:\n%4")
                                 .arg(step.line)
                                 .arg(step.command, step.expected.join('\n'), actual.join('\n'))));
        }
    }
    if (!changes.isEmpty()) {
        writePrinted(changes);
        qWarning("docs/lxconfig.md:%d: the session's printed lines written into the document",
                 session.line);
    }
}

QTEST_GUILESS_MAIN(TestDocExamples)
#include "tst_docexamples.moc"
