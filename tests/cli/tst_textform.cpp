// The settings as text: export --format text, import --format text and set --from, through the
// program. import restores every byte of any file, set --from edits as the window does; git
// diffs files through the text.

#include "configrecord.h"
#include "expected.h"
#include "referencechecksum.h"
#include "shellrun.h"
#include "workspace.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

using lumarex::ConfigRecord;
using lumarex::FieldType;

// Random files; the count is stated in docs/testing.md.
constexpr int kRandomFiles = 300;
constexpr quint32 kSeed = 29;

// The text's last line: the checksum.
QString checksumLine(quint16 checksum)
{
    return "crc = " + QString::number(checksum) + "\n";
}
const QString kFromCam1 =
    QStringLiteral("cam2.bin: 45 values set, 20 changed\n"
                   "  ext0Mode: 0 \"None (default)\" -> 5 \"External Shutter RX/TX\"\n"
                   "  ext1Mode: 0 \"None (default)\" -> 6 \"External Shutter RX/TX\"\n"
                   "  triggerPinMode: 0 \"ON/OFF\" -> 1 \"SBUS\"\n"
                   "  isothermSwitchMode: 0 \"high/low (default)\" -> 1 \"absolute values\"\n"
                   "  gimbalRc: 0 -> 1\n"
                   "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS "
                   "UBX-M8030-KT chipset\" -> 0 \"Custom settings\"\n"
                   "  externalShutter: 0 -> 1\n"
                   "  esoOffset: 0 (shown as 0.00) -> 250 (shown as 2.50)\n"
                   "  sbusColormap: 3 \"Channel 4\" -> 0 \"Channel 1\"\n"
                   "  sbusColorMapSwitchMode: 0 \"high/low (default)\" -> 1 \"absolute\"\n"
                   "  sbusFfc: 5 \"Channel 6\" -> 1 \"Channel 2\"\n"
                   "  sbusIsotherms: 0 \"Channel 1\" -> 2 \"Channel 3\"\n"
                   "  sbusIsoLow: 16 \"Deactivated\" -> 3 \"Channel 4\"\n"
                   "  sbusIsoMid: 16 \"Deactivated\" -> 4 \"Channel 5\"\n"
                   "  sbusIsoUp: 16 \"Deactivated\" -> 5 \"Channel 6\"\n"
                   "  sbusOverlay: 1 \"Channel 2\" -> 6 \"Channel 7\"\n"
                   "  sbusTrigger: 4 \"Channel 5\" -> 8 \"Channel 9\"\n"
                   "  sbusZoom: 2 \"Channel 3\" -> 9 \"Channel 10\"\n"
                   "  sbusZoomMode: 0 \"high/low (default)\" -> 1 \"absolute\"\n"
                   "  serialBaudrate: 38400 \"38400\" -> 115200 \"115200\"\n");
const QString kNoEquals =
    QStringLiteral("lxconfig: cam.txt: line 3: expected NAME = VALUE: a setting's name, '=', its "
                   "value (blank lines and lines beginning with '#' are ignored)\n");
const QString kUnknownName =
    QStringLiteral("lxconfig: cam.bin: cam.txt, line 2: serialBaudrat: no such setting (did you "
                   "mean serialBaudrate?); lxconfig explain lists every setting\n");
const QString kBadValue =
    QStringLiteral("lxconfig: cam.bin: cam.txt, line 1: serialParity: no item \"sometimes\"; the "
                   "window offers 0 \"none\", 1 \"odd\", 2 \"even\"\n");
const QString kLocked =
    QStringLiteral("lxconfig: cam.bin: cam.txt, line 3: esoOffset: the window locks it (group "
                   "External Shutter Options) while externalShutter is off (the external-shutter "
                   "rule); set externalShutter to on first\n");
const QString kNotHeld =
    QStringLiteral("lxconfig: cam.bin: cam.txt, line 1: externalShutter: the window's check box "
                   "holds on (1) or off (0); --force stores it all the same\n");
const QString kConstant = QStringLiteral("lxconfig: cam.bin: cam.txt, line 1: spare157: no control "
                                         "of the window sets spare157; --raw writes its bytes\n");
const QString kRawFrom =
    QStringLiteral("lxconfig: --from edits as the window does, --raw takes SETTING=VALUE; import "
                   "restores every byte of a text\nTry 'lxconfig help set'.\n");
const QString kRepeated =
    QStringLiteral("lxconfig: -: line 67: spare157: given before, on line 66; each setting once\n");
const QString kMissing = QStringLiteral(
    "lxconfig: -: no line gives triggerHigh[0]; every setting is needed to restore the file\n");
const QString kElement =
    QStringLiteral("lxconfig: -: line 31: triggerLow[20]: an element from 0 to 19\n");
const QString kMagic = QStringLiteral(
    "lxconfig: -: line 5: magic: expected 4 characters in double quotes, a byte as \\xNN\n");
// Made when asked: the data file's bytes are not there while globals are made.
QString checksumMended()
{
    return "lxconfig: warning: -: crc 1 replaced by the computed checksum " +
           QString::number(storedChecksum(kDefaultBytes)) + "\n";
}

// A file with random values: every byte random (a file the editor refuses), or the editor's
// defaults with some fields given random stored numbers, many of which the window cannot hold.
// The checksum fits, as in every file the editor accepts; a text that gives another is mended.
QByteArray randomFile(QRandomGenerator &random)
{
    ConfigRecord record = ConfigRecord::fromBytes(
        reinterpret_cast<const std::uint8_t *>(kDefaultBytes.constData()), kDefaultBytes.size());
    if (random.bounded(4) == 0) {
        for (int i = 0; i < lumarex::kRecordSize; ++i)
            record.data()[i] = static_cast<std::uint8_t>(random.bounded(256));
    } else {
        for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
            if (info.field == lumarex::Field::magic || info.field == lumarex::Field::crc)
                continue;
            const int how = random.bounded(3);
            const bool each = random.bounded(2) == 0;
            const quint32 small = random.bounded(4);
            const quint32 any = random.generate();
            for (int element = 0; element < info.elementCount(); ++element) {
                if (how == 1)
                    record.setValue(info.field, each ? random.bounded(4) : small, element);
                else if (how == 2)
                    record.setValue(info.field, each ? random.generate() : any, element);
            }
            if (how == 2 && info.type == FieldType::Bytes8)
                record.setValue64(info.field, random.generate64());
        }
    }
    record.setValue(lumarex::Field::crc, record.computedChecksum());
    return QByteArray(reinterpret_cast<const char *>(record.bytes().data()), lumarex::kRecordSize);
}

} // namespace

class TestTextForm : public QObject
{
    Q_OBJECT

private slots:
    void defaultFile();
    void roundTripRandomFiles();
    void ownTextChangesNothing();
    void fromAnotherCamera();
    void fromStandardInput();
    void fromErrors_data();
    void fromErrors();
    void importErrors_data();
    void importErrors();
    void gitDiffShowsSettings();

private:
    Workspace m_workspace;
};

void TestTextForm::defaultFile()
{
    COMPARE_RUN(m_workspace.run({"export", "--format", "text", "good.bin"}), 0, kDefaultText, "");
}

void TestTextForm::roundTripRandomFiles()
{
    QRandomGenerator random(kSeed);
    for (int i = 0; i < kRandomFiles; ++i) {
        const QByteArray bytes = randomFile(random);
        m_workspace.write("random.bin", bytes);
        const RunResult exported =
            m_workspace.run({"export", "--format", "text", "random.bin", "-o", "random.txt"});
        QVERIFY2(exported.exitCode == 0, qPrintable(exported.err));
        const RunResult imported =
            m_workspace.run({"import", "--format", "text", "random.txt", "-o", "back.bin"});
        QVERIFY2(imported.exitCode == 0 && imported.err.isEmpty(),
                 qPrintable(QString::number(i) + ": " + imported.err));
        QVERIFY2(m_workspace.read("back.bin") == bytes,
                 qPrintable(QString::number(i) + ":\n" + m_workspace.read("random.txt")));
    }
}

// A file as the window writes it, given its own text, stays as it is.
void TestTextForm::ownTextChangesNothing()
{
    QRandomGenerator random(kSeed + 1);
    for (int kept = 0; kept < 25;) {
        m_workspace.write("random.bin", randomFile(random));
        if (m_workspace.run({"resave", "random.bin", "-o", "kept.bin"}).exitCode != 0)
            continue; // a file the editor refuses
        ++kept;
        const QByteArray keptBytes = m_workspace.read("kept.bin");
        QCOMPARE(
            m_workspace.run({"export", "--format=text", "kept.bin", "-o", "kept.txt"}).exitCode, 0);
        const RunResult set = m_workspace.run({"set", "kept.bin", "--from", "kept.txt"});
        QVERIFY2(set.exitCode == 0, qPrintable(set.err + m_workspace.read("kept.txt")));
        QVERIFY2(set.out.endsWith(" values set, 0 changed; the file is left as it was\n"),
                 qPrintable(set.out));
        QCOMPARE(m_workspace.read("kept.bin"), keptBytes);
    }
}

// Copy one camera's settings to another through the text, as the window would.
void TestTextForm::fromAnotherCamera()
{
    m_workspace.write("cam1.bin", kDefaultBytes);
    m_workspace.write("cam2.bin", kDefaultBytes);
    QCOMPARE(m_workspace
                 .run({"set", "-q", "cam1.bin", "gpsReceiver=Custom", "serialBaudrate=115200",
                       "Trigger Mode=PPM", "externalShutter=on", "esoOffset=2.5", "gimbalRc=on"})
                 .exitCode,
             0);
    QCOMPARE(m_workspace.run({"export", "--format", "text", "cam1.bin", "-o", "cam1.txt"}).exitCode,
             0);
    COMPARE_RUN(m_workspace.run({"set", "cam2.bin", "--from", "cam1.txt"}), 0, kFromCam1, "");
    QCOMPARE(m_workspace.read("cam2.bin"), m_workspace.read("cam1.bin"));
}

void TestTextForm::fromStandardInput()
{
    m_workspace.write("cam.bin", kDefaultBytes);
    const ShellResult result =
        runShell(m_workspace, "printf 'gpsReceiver = Custom settings\\r\\n# the serial port\\n\\n"
                              "serialBaudrate = 9600\\nParity bit=even\\n' | "
                              "\"$LX\" set cam.bin --from -");
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, QByteArray("cam.bin: 3 values set, 3 changed\n"
                                    "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox 8 "
                                    "Multi GNSS UBX-M8030-KT chipset\" -> 0 \"Custom settings\"\n"
                                    "  serialBaudrate: 38400 \"38400\" -> 9600 \"9600\"\n"
                                    "  serialParity: 0 \"none\" -> 2 \"even\"\n"));
    QCOMPARE(result.exitCode, 0);
}

void TestTextForm::fromErrors_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("error");
    QTest::newRow("no equals sign") << QByteArray("serialParity = even\n\nserialBaudrate 9600\n")
                                    << QStringList() << 1 << kNoEquals;
    QTest::newRow("unknown name") << QByteArray("# serial\nserialBaudrat = 9600\n") << QStringList()
                                  << 1 << kUnknownName;
    QTest::newRow("value") << QByteArray("serialParity = sometimes\n") << QStringList() << 1
                           << kBadValue;
    QTest::newRow("locked") << QByteArray("serialParity = none\n\nesoOffset = 2.5\n")
                            << QStringList() << 1 << kLocked;
    QTest::newRow("not held") << QByteArray("externalShutter = 7\n") << QStringList() << 1
                              << kNotHeld;
    QTest::newRow("constant") << QByteArray("spare157 = 3\n") << QStringList() << 1 << kConstant;
    QTest::newRow("raw") << QByteArray("serialParity = even\n") << QStringList{"--raw"} << 2
                         << kRawFrom;
}

void TestTextForm::fromErrors()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, options);
    QFETCH(int, status);
    QFETCH(QString, error);
    m_workspace.write("cam.bin", kDefaultBytes);
    m_workspace.write("cam.txt", text);
    COMPARE_RUN(m_workspace.run(QStringList{"set", "cam.bin", "--from", "cam.txt"} + options),
                status, "", error);
    QCOMPARE(m_workspace.read("cam.bin"), kDefaultBytes);
}

void TestTextForm::importErrors_data()
{
    QTest::addColumn<QString>("edit"); // a sed script run on the default file's text
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("error");
    QTest::newRow("repeated") << "s/^spare157 = 0$/&\\nspare157 = 0/" << 1 << kRepeated;
    QTest::newRow("missing") << "/^triggerHigh/d" << 1 << kMissing;
    QTest::newRow("element") << "s/^triggerLow = .*/triggerLow[20] = 1/" << 1 << kElement;
    QTest::newRow("magic") << "s/^magic = .*/magic = CONF/" << 1 << kMagic;
    QTest::newRow("checksum") << "s/^crc = .*/crc = 1/" << 0 << checksumMended();
    QTest::newRow("no checksum") << "/^crc/d" << 0 << "";
}

void TestTextForm::importErrors()
{
    QFETCH(QString, edit);
    QFETCH(int, status);
    QFETCH(QString, error);
    QFile::remove(m_workspace.path("back.bin"));
    const ShellResult result =
        runShell(m_workspace, "\"$LX\" export --format text good.bin | sed '" + edit +
                                  "' | \"$LX\" import --format text - -o back.bin");
    QCOMPARE(QString::fromUtf8(result.err), error);
    QCOMPARE(result.exitCode, status);
    QCOMPARE(m_workspace.read("back.bin"), status == 0 ? kDefaultBytes : QByteArray());
}

// git diff, log -p and show print the settings that changed, through textconv.
void TestTextForm::gitDiffShowsSettings()
{
    const QString git = QStandardPaths::findExecutable("git");
    if (git.isEmpty())
        QSKIP("git is not installed (scripts/install-deps.sh test installs it)");
    const QString script =
        QStringLiteral("set -e\n"
                       "export GIT_CONFIG_NOSYSTEM=1 HOME=\"$PWD\" GIT_AUTHOR_NAME=t "
                       "GIT_AUTHOR_EMAIL=t@t.invalid\n"
                       "export GIT_COMMITTER_NAME=t GIT_COMMITTER_EMAIL=t@t.invalid GIT_PAGER=cat\n"
                       "mkdir repo && cd repo && git init -q\n"
                       "git config diff.lxconfig.textconv \"$LX export --format text\"\n"
                       "echo '*.BIN diff=lxconfig' > .gitattributes\n"
                       "mkdir cam1 && cp ../good.bin cam1/LXCONFIG.BIN\n"
                       "git add . && git commit -q -m first\n"
                       "\"$LX\" set -q cam1/LXCONFIG.BIN gpsReceiver=Custom serialBaudrate=9600\n"
                       "git commit -q -am second\n"
                       "git diff --no-color -U0 HEAD~1 HEAD | grep '^[-+][^-+]'\n"
                       "echo ---\n"
                       "git log -p --no-color -U0 -1 | grep '^[-+][^-+]'\n"
                       "echo ---\n"
                       "git show --no-color -U0 HEAD | grep '^[-+][^-+]'\n");
    const ShellResult result = runShell(m_workspace, script);
    const QByteArray changed =
        "-gpsReceiver = \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS "
        "UBX-M8030-KT chipset\"\n"
        "+gpsReceiver = \"Custom settings\"\n"
        "-serialBaudrate = \"38400\"\n"
        "+serialBaudrate = \"9600\"\n"
        "-" +
        checksumLine(storedChecksum(kDefaultBytes)).toUtf8() + "+" +
        checksumLine(referenceChecksum(m_workspace.read("repo/cam1/LXCONFIG.BIN"))).toUtf8();
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, changed + "---\n" + changed + "---\n" + changed);
    QCOMPARE(result.exitCode, 0);
}

QTEST_GUILESS_MAIN(TestTextForm)
#include "tst_textform.moc"
