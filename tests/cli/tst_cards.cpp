// lxconfig cards and lxconfig write: the listing of mounted cards, and a write that is read back
// from the card. Writes run on real FAT32 and exFAT cards (card.h) and on cards that lie
// (lyingcard.py, a FUSE file system in Python): one that keeps the old bytes, one whose flush
// fails, one that turns read-only after the first write, one pulled during the write. Each
// failure must name the file and the reason and leave the card's old file as it was wherever the
// card still allows it.
//
// The listing reads the kernel's tables through paths given to it (SystemTables). Removable
// block devices are not at hand on a test machine, so the listing is run in this process on a
// prepared tree (mount table, /sys/block, by-label links) whose mount points are folders of the
// workspace, and on this process's real mount table with only the removable flag prepared, so
// that a real exFAT card on its loop device is listed with its real size and file.

#include "card.h"
#include "cardscommand.h"
#include "shellrun.h"
#include "workspace.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <cstdio>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char *kHonest = "honest card";
constexpr const char *kStale = "card that keeps the old bytes";
constexpr const char *kFailSync = "card whose flush fails";
constexpr const char *kTurnsReadOnly = "card that turns read-only";
constexpr const char *kVanishes = "card pulled during the write";

QString lyingMode(const QString &card)
{
    if (card == kHonest)
        return "honest";
    if (card == kStale)
        return "stale";
    if (card == kFailSync)
        return "failsync";
    if (card == kTurnsReadOnly)
        return "readonly";
    return "vanish";
}

// A lying card at workspace/folder, holding LXCONFIG.BIN with the bytes of workspace/old.bin.
class LyingCard
{
public:
    LyingCard(const Workspace &workspace, const QString &card, const QString &folder)
        : m_mountPoint(workspace.path(folder))
    {
        QDir().mkpath(m_mountPoint);
        if (geteuid() != 0 || !QFile::exists("/dev/fuse")) {
            m_why = "a lying card is a FUSE mount, which needs root and /dev/fuse";
            return;
        }
        if (runShell(workspace, "/usr/bin/python3 -c 'import fusepy'").exitCode != 0) {
            m_why = "python3-fusepy is not installed (scripts/install-deps.sh test installs it)";
            return;
        }
        m_daemon.start("/usr/bin/python3",
                       {QStringLiteral(LYING_CARD), lyingMode(card), m_mountPoint,
                        "LXCONFIG.BIN=" + workspace.path("old.bin")});
        // It says "ready" once it is mounted, or ends.
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(-1)) {
        }
        if (m_daemon.readLine() != "ready\n")
            m_why = "the lying card did not mount: " + m_daemon.readAllStandardError();
    }
    ~LyingCard()
    {
        QProcess::execute("umount", {"-l", m_mountPoint});
        m_daemon.waitForFinished(-1);
    }
    bool ready() const { return m_why.isEmpty(); }
    QString why() const { return m_why; }

private:
    QString m_mountPoint;
    QProcess m_daemon;
    QString m_why;
};

bool isLying(const QString &card)
{
    return card != kFat32 && card != kExFat;
}

// The card at workspace/c, with workspace/old.bin as its LXCONFIG.BIN; nothing, after QSKIP's
// reason in why, where the machine cannot mount it.
struct AnyCard
{
    AnyCard(const Workspace &workspace, const QString &card)
    {
        if (isLying(card)) {
            lying.emplace(workspace, card, "c");
            why = lying->ready() ? QString() : lying->why();
            return;
        }
        real.emplace(workspace, card, "c");
        why = real->ready() ? QString() : real->why();
        if (why.isEmpty())
            runShell(workspace, "cp old.bin c/LXCONFIG.BIN");
    }
    std::optional<Card> real;
    std::optional<LyingCard> lying;
    QString why;
};

// Two valid files: old.bin on the card, new.bin to write; and a PATH with no udisksctl.
void writeFiles(const Workspace &workspace)
{
    runShell(workspace, "mkdir -p empty && cp good.bin old.bin && cp good.bin new.bin && "
                        "\"$LX\" set -q new.bin gpsReceiver=0 serialBaudrate=9600");
}

const QString kPulledNow = "The card can be pulled now: everything is on it.\n";

} // namespace

class TestCards : public QObject
{
    Q_OBJECT

private slots:
    void writesAndReadsBack_data();
    void writesAndReadsBack();
    void checkOnly();
    void failures_data();
    void failures();
    void refusesWhatIsNoCard();
    void eject();
    void ejectWithoutDiskService();
    void listsPreparedTables();
    void listsRealMount();
};

void TestCards::writesAndReadsBack_data()
{
    QTest::addColumn<QString>("card");
    for (const QString card : {kFat32, kExFat, kHonest})
        QTest::newRow(qPrintable(card)) << card;
}

void TestCards::writesAndReadsBack()
{
    QFETCH(QString, card);
    const Workspace workspace;
    writeFiles(workspace);
    const AnyCard mounted(workspace, card);
    if (!mounted.why.isEmpty())
        QSKIP(qPrintable(mounted.why));
    COMPARE_RUN(workspace.run({"write", "--backup=simple", "new.bin", "c"},
                              {"PATH=" + workspace.path("empty")}),
                0,
                "c/LXCONFIG.BIN: written and verified\n" + kPulledNow +
                    "To unmount it first, run: umount c\n",
                "");
    QCOMPARE(workspace.read("c/LXCONFIG.BIN"), workspace.read("new.bin"));
    QCOMPARE(workspace.read("c/LXCONFIG.BIN~"), workspace.read("old.bin"));
}

void TestCards::checkOnly()
{
    const Workspace workspace;
    writeFiles(workspace);
    const AnyCard mounted(workspace, kHonest);
    if (!mounted.why.isEmpty())
        QSKIP(qPrintable(mounted.why));
    // The lines diff prints, under the card's file, but for the checksum, which the window
    // never shows.
    const RunResult diff = workspace.run({"diff", "c/LXCONFIG.BIN", "new.bin"});
    QCOMPARE(diff.exitCode, 1);
    QString indented;
    for (const QString &line : diff.out.split('\n', Qt::SkipEmptyParts)) {
        if (!line.startsWith("crc: "))
            indented += "  " + line + "\n";
    }
    QCOMPARE(indented.count('\n'), 2);
    COMPARE_RUN(workspace.run({"write", "--check-only", "new.bin", "c"}), 0,
                "c/LXCONFIG.BIN: 2 values change\n" + indented, "");
    COMPARE_RUN(workspace.run({"write", "--check-only", "old.bin", "c"}), 0,
                "c/LXCONFIG.BIN: no setting differs from old.bin\n", "");
    QCOMPARE(workspace.read("c/LXCONFIG.BIN"), workspace.read("old.bin"));
    QVERIFY(QFile::remove(workspace.path("c/LXCONFIG.BIN")));
    COMPARE_RUN(workspace.run({"write", "--check-only", "new.bin", "c"}), 0,
                "c/LXCONFIG.BIN: none yet; write puts new.bin there\n", "");
    QVERIFY(!workspace.exists("c/LXCONFIG.BIN"));
}

void TestCards::failures_data()
{
    QTest::addColumn<QString>("card");
    QTest::addColumn<QString>("damage"); // what is done to a real card first
    QTest::addColumn<QString>("error");  // a pattern for standard error
    QTest::addColumn<bool>("oldKept");
    const QString kept = "; the card's old LXCONFIG.BIN is as it was\n$";
    const QString removed = "^lxconfig: c: is not where a card is mounted \\(was it removed\\?\\); "
                            "nothing is written\n$";
    for (const QString card : {kFat32, kExFat}) {
        QTest::addRow("%s mounted read-only", qPrintable(card))
            << card << "read-only"
            << "^lxconfig: c/LXCONFIG.BIN: cannot write: .*Read-only file system; the card is "
               "write-protected \\(read-only\\)" +
                   kept
            << true;
        QTest::addRow("%s full", qPrintable(card))
            << card << "full"
            << "^lxconfig: c/LXCONFIG.BIN: cannot write: .*; the card is full \\(\\d+ bytes "
               "free, 167 needed\\)" +
                   kept
            << true;
        QTest::addRow("%s removed", qPrintable(card)) << card << "removed" << removed << false;
    }
    QTest::newRow(kStale) << QString(kStale) << ""
                          << "^lxconfig: c/LXCONFIG.BIN: the read-back differs: byte 0 reads "
                             "0x00, 0x43 was written; the card does not keep what is written" +
                                 kept
                          << true;
    QTest::newRow(kFailSync) << QString(kFailSync) << ""
                             << "^lxconfig: c/LXCONFIG.BIN: cannot write: Input/output error" + kept
                             << true;
    QTest::newRow(kTurnsReadOnly)
        << QString(kTurnsReadOnly) << ""
        << "^lxconfig: c/LXCONFIG.BIN: cannot write: Read-only file system; the card is "
           "write-protected \\(read-only\\)" +
               kept
        << true;
    QTest::newRow(kVanishes) << QString(kVanishes) << ""
                             << "^lxconfig: c/LXCONFIG.BIN: cannot write: .*; the card was "
                                "removed or stopped answering \\(c: Transport endpoint is not "
                                "connected\\); the card's LXCONFIG.BIN cannot be read now\n$"
                             << false;
}

void TestCards::failures()
{
    QFETCH(QString, card);
    QFETCH(QString, damage);
    QFETCH(QString, error);
    QFETCH(bool, oldKept);
    const Workspace workspace;
    writeFiles(workspace);
    const AnyCard mounted(workspace, card);
    if (!mounted.why.isEmpty())
        QSKIP(qPrintable(mounted.why));
    QString undo;
    if (damage == "read-only") {
        // A read-only mount of the card over it, as a write-protect switch gives.
        QCOMPARE(runShell(workspace, "mount --bind c c && mount -o remount,ro,bind c").exitCode, 0);
        undo = "umount c";
    } else if (damage == "full") {
        // exFAT refuses a write that does not fit whole, so the last bytes go in small writes.
        runShell(workspace, "{ dd if=/dev/zero of=c/filler bs=64k; "
                            "dd if=/dev/zero bs=512 >>c/filler; } 2>/dev/null");
    } else if (damage == "removed") {
        // The daemon that serves the card is killed: the card is gone, its mount left behind.
        QCOMPARE(runShell(workspace,
                          "card=$(pwd)/c; for p in /proc/[0-9]*; do "
                          "tr '\\0' '\\n' <$p/cmdline 2>/dev/null | grep -qxF \"$card\" && "
                          "kill -9 ${p#/proc/}; done; while stat c >/dev/null 2>&1; do :; done")
                     .exitCode,
                 0);
    }
    const RunResult result = workspace.run({"write", "new.bin", "c"});
    if (!undo.isEmpty())
        runShell(workspace, undo);
    QVERIFY2(QRegularExpression(error).match(result.err).hasMatch(), qPrintable(result.err));
    QCOMPARE(result.out, QString());
    QCOMPARE(result.exitCode, 1);
    if (oldKept)
        QCOMPARE(workspace.read("c/LXCONFIG.BIN"), workspace.read("old.bin"));
}

void TestCards::refusesWhatIsNoCard()
{
    const Workspace workspace;
    writeFiles(workspace);
    QDir(workspace.path(".")).mkdir("c");
    // A folder where the card was once mounted: writing there would leave the file on this
    // machine.
    COMPARE_RUN(workspace.run({"write", "new.bin", "c"}), 1, "",
                "lxconfig: c: is not where a card is mounted (was it removed?); nothing is "
                "written\n");
    // A file the editor refuses never reaches a card.
    const RunResult refused = workspace.run({"write", "magic.bin", "c"});
    const RunResult check = workspace.run({"check", "magic.bin"});
    QCOMPARE(refused.err, "lxconfig: " + check.out);
    QCOMPARE(refused.exitCode, 1);
    QCOMPARE(QDir(workspace.path("c")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
             QStringList());
}

void TestCards::eject()
{
    const Workspace workspace;
    writeFiles(workspace);
    const AnyCard mounted(workspace, kExFat);
    if (!mounted.why.isEmpty())
        QSKIP(qPrintable(mounted.why));
    // The desktop's disk service, as a stand-in that notes what it is asked.
    QDir(workspace.path(".")).mkdir("service");
    workspace.write("service/udisksctl", "#!/bin/sh\necho \"$@\" >>\"$0.asked\"\necho Done.\n");
    QFile::setPermissions(workspace.path("service/udisksctl"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QStringList path{"PATH=" + workspace.path("service")};
    const RunResult offered = workspace.run({"write", "new.bin", "c"}, path);
    QCOMPARE(offered.exitCode, 0);
    const QRegularExpression commands(
        "^c/LXCONFIG.BIN: written and verified\n" + QRegularExpression::escape(kPulledNow) +
        "To unmount it and power it off first: --eject, or run: udisksctl unmount -b "
        "(/dev/loop\\d+) && udisksctl power-off -b \\1\n$");
    const QRegularExpressionMatch match = commands.match(offered.out);
    QVERIFY2(match.hasMatch(), qPrintable(offered.out));
    const QString device = match.captured(1);
    COMPARE_RUN(workspace.run({"write", "--eject", "old.bin", "c"}, path), 0,
                "c/LXCONFIG.BIN: written and verified\nc: unmounted and powered off; the card "
                "can be pulled now.\n",
                "");
    QCOMPARE(workspace.read("service/udisksctl.asked"),
             QString("unmount -b " + device + "\npower-off -b " + device + "\n").toUtf8());
}

void TestCards::ejectWithoutDiskService()
{
    const Workspace workspace;
    writeFiles(workspace);
    const AnyCard mounted(workspace, kHonest);
    if (!mounted.why.isEmpty())
        QSKIP(qPrintable(mounted.why));
    // "c/", as the shell completes it, names the same card.
    COMPARE_RUN(
        workspace.run({"write", "--eject", "new.bin", "c/"}, {"PATH=" + workspace.path("empty")}),
        1, "c/LXCONFIG.BIN: written and verified\n",
        "lxconfig: cannot eject c: udisksctl is not installed (Debian's udisks2); the "
        "file is on the card, which can be pulled now (to unmount it first, run: umount "
        "c)\n");
    QCOMPARE(workspace.read("c/LXCONFIG.BIN"), workspace.read("new.bin"));
}

namespace {

// What listCards prints for the tables.
QString listed(const lxconfig::SystemTables &tables, lxconfig::Format format)
{
    FILE *out = std::tmpfile();
    FILE *err = std::tmpfile();
    lxconfig::Output output(out, err);
    lxconfig::Invocation invocation;
    invocation.format = format;
    lxconfig::listCards(tables, invocation, output);
    output.finish();
    std::rewind(out);
    QFile file;
    file.open(out, QIODevice::ReadOnly);
    const QString text = QString::fromUtf8(file.readAll());
    file.close();
    std::fclose(out);
    std::fclose(err);
    return text;
}

} // namespace

void TestCards::listsPreparedTables()
{
    const Workspace workspace;
    const QString root = QDir(workspace.path(".")).canonicalPath();
    // A USB reader's card (sdb1), a card in the machine's own SD slot, mounted read-only
    // (mmcblk0p1), a stick without partitions (sdc), and the machine's own disk (sda2), which is
    // no card. The mount points are folders of the workspace.
    const QString script =
        "mkdir -p media/CAM\\ 1 media/sd media/stick media/disk "
        "sys/sdb/sdb1 sys/mmcblk0/mmcblk0p1 sys/mmcblk0/device sys/sdc sys/sda/sda2 labels && "
        "echo 1 >sys/sdb/removable && echo 8:16 >sys/sdb/dev && echo 8:17 >sys/sdb/sdb1/dev && "
        "echo 0 >sys/mmcblk0/removable && echo SD >sys/mmcblk0/device/type && "
        "echo 179:0 >sys/mmcblk0/dev && echo 179:1 >sys/mmcblk0/mmcblk0p1/dev && "
        "echo 1 >sys/sdc/removable && echo 8:32 >sys/sdc/dev && "
        "echo 0 >sys/sda/removable && echo 8:0 >sys/sda/dev && echo 8:2 >sys/sda/sda2/dev && "
        "ln -s ../../sdb1 'labels/CAM\\x201' && "
        "cp good.bin 'media/CAM 1/LXCONFIG.BIN' && cp magic.bin media/sd/LXCONFIG.BIN && "
        "printf '%s\\n' "
        "\"21 1 8:2 / $PWD/media/disk rw,relatime shared:1 - ext4 /dev/sda2 rw\" "
        "\"40 21 8:17 / $PWD/media/CAM\\\\0401 rw,nosuid shared:9 - vfat /dev/sdb1 rw\" "
        "\"41 21 179:1 / $PWD/media/sd ro,nosuid shared:10 - exfat /dev/mmcblk0p1 ro\" "
        "\"42 21 0:52 / $PWD/media/stick rw,nosuid - fuseblk /dev/sdc rw\" >mountinfo";
    QCOMPARE(runShell(workspace, script).exitCode, 0);
    const lxconfig::SystemTables tables{workspace.path("mountinfo").toStdString(),
                                        workspace.path("sys").toStdString(),
                                        workspace.path("labels").toStdString()};
    // Sizes are those of the workspace's file system.
    const QString text = listed(tables, lxconfig::Format::Text)
                             .replace(QRegularExpression("size: .* free\n"), "size: S\n");
    QCOMPARE(text, root +
                       "/media/CAM 1\n"
                       "  device: /dev/sdb1\n"
                       "  file system: vfat\n"
                       "  size: S\n"
                       "  label: CAM 1\n"
                       "  read-only: no\n"
                       "  LXCONFIG.BIN: valid\n"
                       "\n" +
                       root +
                       "/media/sd\n"
                       "  device: /dev/mmcblk0p1\n"
                       "  file system: exfat\n"
                       "  size: S\n"
                       "  label: none\n"
                       "  read-only: yes\n"
                       "  LXCONFIG.BIN: refused (" +
                       workspace.run({"check", "magic.bin"}).out.mid(11).chopped(1) +
                       ")\n"
                       "\n" +
                       root +
                       "/media/stick\n"
                       "  device: /dev/sdc\n"
                       "  file system: fuseblk\n"
                       "  size: S\n"
                       "  label: none\n"
                       "  read-only: no\n"
                       "  LXCONFIG.BIN: none\n");
    const QJsonArray cards =
        QJsonDocument::fromJson(listed(tables, lxconfig::Format::Json).toUtf8()).array();
    QCOMPARE(cards.size(), 3);
    const QJsonObject first = cards.at(0).toObject();
    QCOMPARE(first.keys(), QStringList({"device", "file", "fileSystem", "free", "label",
                                        "mountPoint", "readOnly", "size"}));
    QCOMPARE(first["label"].toString(), QString("CAM 1"));
    QVERIFY(first["size"].toDouble() > 0);
    QCOMPARE(first["file"].toObject()["verdict"].toString(), QString("valid"));
    QVERIFY(first["file"].toObject()["reason"].isNull());
    QCOMPARE(cards.at(1).toObject()["readOnly"].toBool(), true);
    QCOMPARE(cards.at(1).toObject()["file"].toObject()["verdict"].toString(), QString("refused"));
    QCOMPARE(cards.at(2).toObject()["label"].isNull(), true);
    // No card at all.
    const lxconfig::SystemTables none{workspace.path("good.bin").toStdString(),
                                      workspace.path("sys").toStdString(),
                                      workspace.path("labels").toStdString()};
    QCOMPARE(listed(none, lxconfig::Format::Text), QString("No card is mounted.\n"));
    QCOMPARE(listed(none, lxconfig::Format::Json), QString("[]\n"));
}

void TestCards::listsRealMount()
{
    const Workspace workspace;
    writeFiles(workspace);
    const Card card(workspace, kExFat, "c");
    if (!card.ready())
        QSKIP(qPrintable(card.why()));
    runShell(workspace, "cp new.bin c/LXCONFIG.BIN");
    // The loop device under the card, marked removable in a /sys/block of the test's own; the
    // mount table is this process's own.
    const ShellResult device = runShell(
        workspace, "device=$(awk '$5 == \"'\"$(pwd)\"'/c\" {for (i = 7; $i != \"-\"; ++i); print "
                   "$(i + 2)}' /proc/self/mountinfo) && "
                   "name=${device#/dev/} && mkdir -p sys/$name && echo 1 >sys/$name/removable && "
                   "echo $device");
    QCOMPARE(device.exitCode, 0);
    const lxconfig::SystemTables tables{"/proc/self/mountinfo", workspace.path("sys").toStdString(),
                                        workspace.path("labels").toStdString()};
    const QString text = listed(tables, lxconfig::Format::Text);
    QVERIFY2(QRegularExpression("^" + QRegularExpression::escape(workspace.path("c")) +
                                "\n  device: " + QRegularExpression::escape(device.out.trimmed()) +
                                "\n  file system: fuseblk\n  size: [0-9.]+ MB, [0-9.]+ MB free\n"
                                "  label: none\n  read-only: no\n  LXCONFIG.BIN: valid\n$")
                 .match(text)
                 .hasMatch(),
             qPrintable(text));
}

QTEST_GUILESS_MAIN(TestCards)
#include "tst_cards.moc"
