// lxconfig check and show, run as the real program, on files the editor did not write: sizes
// around the record's, every single-bit flip of the default file, seeded random contents, a
// folder, a missing path and an endless device. For each: the exact lines on each stream, the
// exit status, and no file changed. check takes all flipped files in one run; show runs once per
// offset, with the bit that offset selects, so that every field and every check is met.

#include "configrecord.h"
#include "expected.h"
#include "fileprobe.h"
#include "loadexpectation.h"
#include "referencechecksum.h"
#include "sizedfiles.h"
#include "workspace.h"

#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>
#include <algorithm>

namespace {

constexpr int kRecordSize = lumarex::kRecordSize;

QByteArray zeroPadded(const QByteArray &file)
{
    QByteArray head = file.left(kReadBufferSize);
    return head + QByteArray(qMax(0, kRecordSize - head.size()), '\0');
}

// The magic as lxconfig quotes it: printable ASCII as it is, other bytes, quote and backslash
// as \xNN.
QString quotedMagic(const QByteArray &magic)
{
    QString quoted = QStringLiteral("\"");
    for (const char c : magic) {
        const auto byte = static_cast<quint8>(c);
        if (byte >= 0x20 && byte < 0x7F && c != '"' && c != '\\')
            quoted += QLatin1Char(c);
        else
            quoted += QStringLiteral("\\x%1").arg(byte, 2, 16, QLatin1Char('0'));
    }
    return quoted + QLatin1Char('"');
}

// The first of the editor's checks that the file fails, in the editor's order, as check words it.
QString verdictOn(const QByteArray &file)
{
    const QByteArray record = zeroPadded(file);
    if (!record.startsWith("CONF"))
        return QStringLiteral("bad magic %1 (expected \"CONF\")").arg(quotedMagic(record.left(4)));
    const auto version = qFromLittleEndian<quint32>(record.constData() + 8);
    if (version != kFormatVersion)
        return QStringLiteral("format version %1 (expected %2)").arg(version).arg(kFormatVersion);
    if (storedChecksum(file) != referenceChecksum(file))
        return checksumMismatch(file);
    return QStringLiteral("valid");
}

QString sizeWarning(const QString &name, qint64 size)
{
    return size == kRecordSize
               ? QString()
               : QStringLiteral("lxconfig: warning: %1: %2 bytes (a record is 167)\n")
                     .arg(name)
                     .arg(size);
}

// show prints one line per field in file order.
int showLineOf(int offset)
{
    const auto &table = lumarex::fieldTable();
    const auto holder = std::find_if(table.begin(), table.end(), [offset](const auto &info) {
        return offset >= info.offset && offset < info.offset + info.width;
    });
    return static_cast<int>(holder - table.begin());
}

QString folderOf(const Workspace &workspace)
{
    return workspace.path(QStringLiteral("."));
}

} // namespace

class TestLxconfigMalformed : public QObject
{
    Q_OBJECT

private slots:
    void fileOfSize_data();
    void fileOfSize();
    void unreadablePath_data();
    void unreadablePath();
    void endlessDevice();
    void singleBitFlipsChecked();
    void singleBitFlipShown_data();
    void singleBitFlipShown();
    void randomFilesChecked();

private:
    // Runs lxconfig and makes sure that it changed no file of the workspace.
    static RunResult runUnchanged(const Workspace &workspace, const QStringList &arguments);
};

RunResult TestLxconfigMalformed::runUnchanged(const Workspace &workspace,
                                              const QStringList &arguments)
{
    const QMap<QString, QString> before = treeFingerprint(folderOf(workspace));
    const RunResult result = workspace.run(arguments);
    // QCOMPARE returns from the function it is in, so it gets one of its own.
    [&] { QCOMPARE(treeFingerprint(folderOf(workspace)), before); }();
    return result;
}

void TestLxconfigMalformed::fileOfSize_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("verdict");

    for (const SizedFile &file : sizedFiles(kDefaultBytes))
        QTest::newRow(file.name) << file.contents << verdictOn(file.contents);
}

void TestLxconfigMalformed::fileOfSize()
{
    QFETCH(QByteArray, contents);
    QFETCH(QString, verdict);
    const Workspace workspace;
    const QString name = QStringLiteral("sized.bin");
    workspace.write(name, contents);
    // show prints what the editor would read: the first 167 bytes, a short file padded.
    const QString padded = QStringLiteral("padded.bin");
    workspace.write(padded, zeroPadded(contents).left(kRecordSize));
    const RunResult paddedShow = workspace.run({QStringLiteral("show"), padded});
    QCOMPARE(paddedShow.exitCode, 0);

    const bool valid = verdict == QLatin1String("valid");
    const QString warnings = sizeWarning(name, contents.size());
    COMPARE_RUN(runUnchanged(workspace, {QStringLiteral("check"), name}), valid ? 0 : 1,
                name + QStringLiteral(": ") + verdict + QLatin1Char('\n'), warnings);
    const QString problem =
        valid ? QString() : QStringLiteral("lxconfig: warning: %1: %2\n").arg(name, verdict);
    COMPARE_RUN(runUnchanged(workspace, {QStringLiteral("show"), name}), 0, paddedShow.out,
                problem + warnings);
}

void TestLxconfigMalformed::unreadablePath_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");

    QTest::newRow("folder") << QStringLiteral("folder")
                            << QStringLiteral("cannot read: Is a directory");
    QTest::newRow("missing") << QStringLiteral("missing.bin")
                             << QStringLiteral("cannot open: No such file or directory");
}

void TestLxconfigMalformed::unreadablePath()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    const Workspace workspace;

    COMPARE_RUN(runUnchanged(workspace, {QStringLiteral("check"), name}), 1,
                name + QStringLiteral(": ") + reason + QLatin1Char('\n'), QString());
    COMPARE_RUN(runUnchanged(workspace, {QStringLiteral("show"), name}), 1, QString(),
                QStringLiteral("lxconfig: %1: %2\n").arg(name, reason));
}

void TestLxconfigMalformed::endlessDevice()
{
    // 1024 zero bytes are read, as the editor reads them; a device has no size to tell, so the
    // warning says that it delivered more than that.
    const Workspace workspace;
    const QString name = QStringLiteral("/dev/zero");
    const QString verdict = verdictOn(QByteArray(kReadBufferSize, '\0'));
    const QString endlessWarning =
        QStringLiteral("lxconfig: warning: %1: more than %2 bytes (a record is 167)\n")
            .arg(name)
            .arg(kReadBufferSize);

    COMPARE_RUN(runUnchanged(workspace, {QStringLiteral("check"), name}), 1,
                name + QStringLiteral(": ") + verdict + QLatin1Char('\n'), endlessWarning);
    COMPARE_RUN(runUnchanged(workspace, {QStringLiteral("show"), name}), 0, withLines(kZeroShow),
                QStringLiteral("lxconfig: warning: %1: %2\n").arg(name, verdict) + endlessWarning);
}

void TestLxconfigMalformed::singleBitFlipsChecked()
{
    const Workspace workspace;
    QStringList arguments{QStringLiteral("check")};
    QString expected;
    for (int offset = 0; offset < kRecordSize; ++offset) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray contents = kDefaultBytes;
            contents[offset] = static_cast<char>(contents.at(offset) ^ (1 << bit));
            const QString name = QStringLiteral("flip-%1-%2.bin").arg(offset).arg(bit);
            workspace.write(name, contents);
            arguments << name;
            expected += name + QStringLiteral(": ") + verdictOn(contents) + QLatin1Char('\n');
        }
    }
    QVERIFY(!expected.contains(QLatin1String(": valid\n")));

    COMPARE_RUN(runUnchanged(workspace, arguments), 1, expected, QString());
}

void TestLxconfigMalformed::singleBitFlipShown_data()
{
    QTest::addColumn<int>("offset");

    for (int offset = 0; offset < kRecordSize; ++offset)
        QTest::addRow("offset %d", offset) << offset;
}

void TestLxconfigMalformed::singleBitFlipShown()
{
    QFETCH(int, offset);
    const int line = showLineOf(offset);
    const Workspace workspace;
    QByteArray contents = kDefaultBytes;
    contents[offset] = static_cast<char>(contents.at(offset) ^ (1 << (offset % 8)));
    const QString name = QStringLiteral("flip.bin");
    workspace.write(name, contents);

    const RunResult result = runUnchanged(workspace, {QStringLiteral("show"), name});
    QCOMPARE(result.err,
             QStringLiteral("lxconfig: warning: %1: %2\n").arg(name, verdictOn(contents)));
    QCOMPARE(result.exitCode, 0);
    // Every line but that of the changed field is the default file's; that one keeps its name
    // and offset and shows another value.
    QStringList lines = result.out.split(QLatin1Char('\n'));
    QCOMPARE(lines.takeLast(), QString());
    QCOMPARE(lines.size(), kDefaultShow.size());
    QVERIFY(lines.at(line) != kDefaultShow.at(line));
    QCOMPARE(lines.at(line).left(27), kDefaultShow.at(line).left(27));
    lines[line] = kDefaultShow.at(line);
    QCOMPARE(lines, kDefaultShow);
}

void TestLxconfigMalformed::randomFilesChecked()
{
    const Workspace workspace;
    QRandomGenerator random(kFormatVersion);
    QStringList arguments{QStringLiteral("check")};
    QString expectedOut;
    QString expectedErr;
    for (int i = 0; i < 40; ++i) {
        QByteArray contents(static_cast<int>(random.bounded(0, 2049)), '\0');
        for (char &byte : contents)
            byte = static_cast<char>(random.bounded(256));
        // Every other file gets the right header, to reach the checksum check.
        if (i % 2 == 1)
            contents.replace(0, qMin(12, contents.size()), kDefaultBytes.left(12));
        const QString name = QStringLiteral("random-%1.bin").arg(i);
        workspace.write(name, contents);
        arguments << name;
        expectedOut += name + QStringLiteral(": ") + verdictOn(contents) + QLatin1Char('\n');
        expectedErr += sizeWarning(name, contents.size());
    }

    COMPARE_RUN(runUnchanged(workspace, arguments), 1, expectedOut, expectedErr);
}

QTEST_MAIN(TestLxconfigMalformed)
#include "tst_lxconfigmalformed.moc"
