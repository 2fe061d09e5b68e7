// The round-trip model held to the real editor. Thousands of seeded random records are loaded
// into a freshly started window and saved at once; every saved byte must be what the model
// predicted. The known quirks of the editor's load then run as named cases through real files
// and the real dialogs, each with the resaved values and the strict findings written out.

#include "consolecapture.h"
#include "editormodel.h"
#include "editorrun.h"
#include "randomrecords.h"
#include "recorddiff.h"
#include "roundtrip.h"
#include "untouchedform.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using lumarex::Field;
using lumarex::RecordBytes;
using lumarex::Verdict;

namespace {

// Enough to meet every mode code, accessory combination and range edge many times over, and to
// stay well under a minute on CI; LUMAREX_ROUNDTRIP_RECORDS asks for more.
constexpr int kDefaultRecords = 3000;

int recordCount()
{
    return qEnvironmentVariableIsSet("LUMAREX_ROUNDTRIP_RECORDS")
               ? qEnvironmentVariableIntValue("LUMAREX_ROUNDTRIP_RECORDS")
               : kDefaultRecords;
}

struct Change
{
    Field field;
    std::uint32_t value;
    int element = -1; // -1: every element of an array field
};
using Changes = QVector<Change>;

struct Expected
{
    Field field;
    std::uint32_t value;
};
using ExpectedValues = QVector<Expected>;

RecordBytes withChanges(const RecordBytes &base, const Changes &changes)
{
    auto record = lumarex::ConfigRecord::fromBytes(base.data(), base.size());
    for (const Change &change : changes) {
        const int count = lumarex::fieldInfo(change.field).elementCount();
        for (int element = 0; element < count; ++element) {
            if (change.element < 0 || change.element == element)
                record.setValue(change.field, change.value, element);
        }
    }
    record.setValue(Field::crc, record.computedChecksum());
    return record.bytes();
}

QByteArray toBytes(const RecordBytes &record)
{
    return QByteArray(reinterpret_cast<const char *>(record.data()), lumarex::kRecordSize);
}

QStringList findingKinds(const RecordBytes &record)
{
    QStringList kinds;
    for (const auto &finding : lumarex::roundtrip::strictFindings(record))
        kinds << QStringLiteral("%1: %2").arg(
            QString::fromLatin1(lumarex::fieldInfo(finding.field).name),
            QString::fromStdString(std::string(whyName(finding.why))));
    return kinds;
}

struct LxconfigRun
{
    int exitCode = -1;
    QByteArray out;
};

LxconfigRun runLxconfig(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(LXCONFIG_PATH), arguments);
    process.waitForFinished(-1);
    LxconfigRun run;
    if (process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    run.out = process.readAllStandardOutput();
    return run;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

Q_DECLARE_METATYPE(Changes)
Q_DECLARE_METATYPE(ExpectedValues)

class TestRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void randomRecordsMatchTheEditor();
    void successiveLoadsMatchTheEditor();
    void untouchedFormSurvives();
    void quirks_data();
    void quirks();
    void findingLine();
    void refusedFiles_data();
    void refusedFiles();
    void lxconfigAgreesWithTheEditor();

private:
    RecordBytes m_untouched{};
};

void TestRoundTrip::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    // The editor's file from an untouched window, written out by hand: the base of the named
    // cases.
    const QByteArray untouched = untouchedFormFile();
    QCOMPARE(untouched.size(), lumarex::kRecordSize);
    std::copy(untouched.begin(), untouched.end(), m_untouched.begin());
}

void TestRoundTrip::randomRecordsMatchTheEditor()
{
    const int count = recordCount();
    QStringList failures;
    int refused = 0;
    QElapsedTimer editorTime;
    qint64 editorNanoseconds = 0;
    for (int seed = 1; seed <= count; ++seed) {
        const RecordBytes record = randomRecord(static_cast<std::uint32_t>(seed));
        const auto prediction = lumarex::roundtrip::predictResave(record);
        editorTime.start();
        const EditorResave editor = resaveInFreshWindow(record);
        editorNanoseconds += editorTime.nsecsElapsed();
        if (!prediction.accepted()) {
            ++refused;
            if (prediction.verdict != Verdict::ChecksumMismatch ||
                editor.outcome != MainWindow::LoadOutcome::ChecksumFailed)
                failures << QStringLiteral("seed %1: the model refuses the file (%2), the editor "
                                           "did not refuse it for its checksum")
                                .arg(seed)
                                .arg(QString::fromStdString(prediction.refusal));
            continue;
        }
        if (editor.outcome != MainWindow::LoadOutcome::Restored) {
            failures
                << QStringLiteral("seed %1: the editor refused a file the model accepts").arg(seed);
            continue;
        }
        if (editor.bytes != prediction.bytes)
            failures << QStringLiteral("seed %1: %2")
                            .arg(seed)
                            .arg(differingFields(editor.bytes, prediction.bytes).join("; "));
        if (failures.size() >= 20)
            break;
    }
    qInfo("%d records, %d refused for their checksum; a fresh window, load and save took %.2f ms "
          "each on average",
          count, refused, editorNanoseconds / 1e6 / count);
    // The refusals must have been met too, or the branch above was never tested.
    QVERIFY(refused > 0);
    if (!failures.isEmpty())
        QFAIL(qPrintable(failures.join('\n')));
}

// Loading a second file into the same window starts from the first file's form, so the rules
// run from states a fresh window never has: the gimbal and the shutter switched off again,
// another receiver, another trigger mode. The model's rule data is held to the window there too.
void TestRoundTrip::successiveLoadsMatchTheEditor()
{
    const int pairs = recordCount() / 3;
    constexpr std::uint32_t kSecondSeeds = 1000000;
    QStringList failures;
    int compared = 0;
    for (std::uint32_t seed = 1; seed <= static_cast<std::uint32_t>(pairs) && failures.size() < 20;
         ++seed) {
        const RecordBytes first = randomRecord(seed);
        const RecordBytes second = randomRecord(kSecondSeeds + seed);
        if (!lumarex::roundtrip::predictResave(first).accepted() ||
            !lumarex::roundtrip::predictResave(second).accepted())
            continue;
        lumarex::roundtrip::EditorModel model;
        model.restore(lumarex::ConfigRecord::fromBytes(first.data(), first.size()));
        model.restore(lumarex::ConfigRecord::fromBytes(second.data(), second.size()));
        const RecordBytes predicted = model.save().bytes();

        const EditorResave editor = resaveAfterLoads({first, second});
        QCOMPARE(editor.outcome, MainWindow::LoadOutcome::Restored);
        ++compared;
        if (editor.bytes != predicted)
            failures << QStringLiteral("seeds %1 then %2: %3")
                            .arg(seed)
                            .arg(kSecondSeeds + seed)
                            .arg(differingFields(editor.bytes, predicted).join("; "));
    }
    if (!failures.isEmpty())
        QFAIL(qPrintable(failures.join('\n')));
    QVERIFY(compared > pairs / 2);
}

void TestRoundTrip::untouchedFormSurvives()
{
    const auto prediction = lumarex::roundtrip::predictResave(m_untouched);
    QVERIFY(prediction.accepted());
    COMPARE_BYTES(toBytes(prediction.bytes), toBytes(m_untouched));
    ConsoleCapture console; // the save's console lines
    MainWindow window;
    COMPARE_BYTES(toBytes(window.recordFromForm().bytes()), toBytes(m_untouched));
    QCOMPARE(findingKinds(m_untouched), QStringList());
}

void TestRoundTrip::quirks_data()
{
    QTest::addColumn<Changes>("changes");
    QTest::addColumn<ExpectedValues>("resaved");
    QTest::addColumn<QStringList>("findings");

    QTest::newRow("negative shutter offset comes back as 10.00")
        << Changes{{Field::esoOffset, static_cast<std::uint32_t>(-125)}}
        << ExpectedValues{{Field::esoOffset, 1000}}
        << QStringList{"esoOffset: clamped to the range"};
    QTest::newRow("offset 0.29 is saved as 0.28")
        << Changes{{Field::esoOffset, 29}} << ExpectedValues{{Field::esoOffset, 28}}
        << QStringList{"esoOffset: changed by the conversion"};
    QTest::newRow("isotherm switch mode restored into the start-state box")
        << Changes{{Field::isothermState, 0}, {Field::isothermSwitchMode, 1}}
        << ExpectedValues{{Field::isothermState, 1}, {Field::isothermSwitchMode, 0}}
        << QStringList{"isothermState: restored into another box",
                       "isothermSwitchMode: restored into another box"};
    QTest::newRow("SBUS switch modes keep the form's values")
        << Changes{{Field::sbusColorMapSwitchMode, 1}, {Field::sbusZoomMode, 1}}
        << ExpectedValues{{Field::sbusColorMapSwitchMode, 0}, {Field::sbusZoomMode, 0}}
        << QStringList{"sbusColorMapSwitchMode: not restored", "sbusZoomMode: not restored"};
    QTest::newRow("gimbal presets the switch modes")
        << Changes{{Field::gimbalRc, 1}}
        << ExpectedValues{{Field::gimbalRc, 1},
                          {Field::triggerPinMode, 0},
                          {Field::isothermSwitchMode, 1},
                          {Field::sbusColorMapSwitchMode, 1},
                          {Field::sbusFfc, 5},
                          {Field::sbusZoomMode, 1}}
        << QStringList{"isothermSwitchMode: preset by a rule",
                       "sbusColorMapSwitchMode: preset by a rule",
                       "sbusZoomMode: preset by a rule"};
    QTest::newRow("GPS receiver presets a baud rate the list lacks")
        << Changes{{Field::gpsReceiver, 3}, {Field::serialBaudrate, 12345}}
        << ExpectedValues{{Field::gpsReceiver, 3}, {Field::serialBaudrate, 115200}}
        << QStringList{"serialBaudrate: preset by a rule"};
    QTest::newRow("GPS receiver 1 presets 38400, then the stored settings win")
        << Changes{{Field::gpsReceiver, 1},
                   {Field::serialBaudrate, 9600},
                   {Field::serialParity, 2},
                   {Field::serialStopBits, 2},
                   {Field::serialInverted, 0}}
        << ExpectedValues{{Field::serialBaudrate, 9600},
                          {Field::serialParity, 2},
                          {Field::serialStopBits, 2},
                          {Field::serialInverted, 0}}
        << QStringList{};
    QTest::newRow("a baud rate the list lacks keeps the start item")
        << Changes{{Field::serialBaudrate, 12345}, {Field::serialStopBits, 3}}
        << ExpectedValues{{Field::serialBaudrate, 38400}, {Field::serialStopBits, 1}}
        << QStringList{"serialBaudrate: no item", "serialStopBits: no item"};
    QTest::newRow("values outside the ranges are clamped")
        << Changes{{Field::esoHeating, 5000},
                   {Field::recMaxFramesPerFile, 0},
                   {Field::isothermUpper, 65535},
                   {Field::triggerLow, 0},
                   {Field::esoShutterInterval, static_cast<std::uint32_t>(-5)}}
        << ExpectedValues{{Field::triggerLow, 1},
                          {Field::isothermUpper, 1000},
                          {Field::esoHeating, 1000},
                          {Field::esoShutterInterval, 0},
                          {Field::recMaxFramesPerFile, 1}}
        << QStringList{"triggerLow: clamped to the range", "isothermUpper: clamped to the range",
                       "esoHeating: clamped to the range",
                       "esoShutterInterval: clamped to the range",
                       "recMaxFramesPerFile: clamped to the range"};
    QTest::newRow("a code without an item leaves the box empty, saved as 255")
        << Changes{{Field::gpsReceiver, 9}, {Field::serialParity, 3}, {Field::sbusZoom, 17}}
        << ExpectedValues{{Field::gpsReceiver, 255},
                          {Field::sbusZoom, 255},
                          {Field::serialParity, 255}}
        << QStringList{"gpsReceiver: no item", "sbusZoom: no item", "serialParity: no item"};
    QTest::newRow("external shutter claims both ports; an unknown code keeps the preset")
        << Changes{{Field::externalShutter, 1}, {Field::ext0Mode, 3}, {Field::ext1Mode, 2}}
        << ExpectedValues{{Field::ext0Mode, 5}, {Field::ext1Mode, 2}, {Field::externalShutter, 1}}
        << QStringList{"ext0Mode: preset by a rule"};
    QTest::newRow("an unknown mode code keeps the start item")
        << Changes{{Field::ext1Mode, 1}} << ExpectedValues{{Field::ext1Mode, 0}}
        << QStringList{"ext1Mode: no item"};
    QTest::newRow("trigger channel past the stored slots")
        << Changes{{Field::sbusTrigger, 25}, {Field::triggerLow, 1000}, {Field::triggerHigh, 1500}}
        << ExpectedValues{{Field::triggerLow, 688},
                          {Field::triggerHigh, 1366},
                          {Field::sbusTrigger, 255}}
        << QStringList{"triggerLow: not restored", "triggerHigh: not restored",
                       "sbusTrigger: no item"};
    QTest::newRow("only the selected trigger slot is shown")
        << Changes{{Field::triggerLow, 100, 0}, {Field::triggerLow, 200, 4}}
        << ExpectedValues{{Field::triggerLow, 200}}
        << QStringList{"triggerLow: no control shows it"};
    QTest::newRow("bytes no control shows")
        << Changes{{Field::payloadLength, 200}, {Field::reserved101, 7}, {Field::spare157, 0xAB}}
        << ExpectedValues{{Field::payloadLength, 153},
                          {Field::reserved101, 0},
                          {Field::spare157, 0}}
        << QStringList{"payloadLength: no control shows it", "reserved101: no control shows it",
                       "spare157: no control shows it"};
    QTest::newRow("a check box saves 1 for any value but 0")
        << Changes{{Field::serialInverted, 7}} << ExpectedValues{{Field::serialInverted, 1}}
        << QStringList{"serialInverted: changed by the conversion"};
}

void TestRoundTrip::quirks()
{
    QFETCH(Changes, changes);
    QFETCH(ExpectedValues, resaved);
    QFETCH(QStringList, findings);
    const RecordBytes record = withChanges(m_untouched, changes);
    QTemporaryDir folder;
    QVERIFY(folder.isValid());

    const QByteArray editorFile = resaveThroughFiles(toBytes(record), folder.path());
    QCOMPARE(editorFile.size(), lumarex::kRecordSize);
    const auto editor = lumarex::ConfigRecord::fromBytes(
        reinterpret_cast<const std::uint8_t *>(editorFile.constData()), lumarex::kRecordSize);
    for (const Expected &expected : resaved) {
        const int count = lumarex::fieldInfo(expected.field).elementCount();
        for (int element = 0; element < count; ++element)
            QCOMPARE(editor.value(expected.field, element), expected.value);
    }

    const auto prediction = lumarex::roundtrip::predictResave(record);
    QVERIFY(prediction.accepted());
    QCOMPARE(differingFields(editor.bytes(), prediction.bytes), QStringList());
    QCOMPARE(findingKinds(record), findings);
}

void TestRoundTrip::findingLine()
{
    const RecordBytes record =
        withChanges(m_untouched, {{Field::triggerLow, 5, 0},
                                  {Field::isothermSwitchMode, 1},
                                  {Field::gpsReceiver, 9},
                                  {Field::esoOffset, static_cast<std::uint32_t>(-125)},
                                  {Field::sbusColorMapSwitchMode, 1},
                                  {Field::serialBaudrate, 12345}});
    QStringList lines;
    for (const auto &finding : lumarex::roundtrip::strictFindings(record))
        lines << QString::fromStdString(finding.text());
    QCOMPARE(lines,
             QStringList({
                 "triggerLow (offset 12): stored 5 in element 0, shown 688 (element 4), saved "
                 "back 688 in every element; no control shows it: one box serves all 20 slots "
                 "and shows the trigger channel's",
                 "isothermState (offset 103): stored 0, shown \"ON\", saved back 1; restored "
                 "into another box: the box holds isothermSwitchMode, restored into it "
                 "afterwards",
                 "isothermSwitchMode (offset 104): stored 1, shown \"high/low (default)\", "
                 "saved back 0; restored into another box: the value goes into \"Isotherm "
                 "start state\"; this box keeps its start value",
                 "gpsReceiver (offset 112): stored 9, shown no item, saved back 255; no item: "
                 "the list has items 0 to 3; the box shows none and saves 255",
                 "esoOffset (offset 122): stored -125, shown 10.00, saved back 1000; clamped to "
                 "the range: read back unsigned as 42949671.71; the box holds -10.00 to 10.00",
                 "sbusColorMapSwitchMode (offset 147): stored 1, shown \"high/low "
                 "(default)\", saved back 0; not restored: Read from file does not restore "
                 "this box; it keeps its start value",
                 "serialBaudrate (offset 158): stored 12345, shown \"38400\", saved back "
                 "38400; no item: no item reads 12345; the box keeps its start value",
             }));
}

void TestRoundTrip::refusedFiles_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<int>("verdict");
    QTest::addColumn<QString>("refusal");

    QTest::newRow("magic") << QByteArray("CONG") << int(Verdict::BadMagic)
                           << "not a configuration file: it does not start with \"CONF\"";
    QTest::newRow("version") << QByteArray("CONF\x99\0\0\0\x7a\xee\x33\x01", 12)
                             << int(Verdict::OtherVersion)
                             << "format version 20180602, the editor reads only 20180601";
}

void TestRoundTrip::refusedFiles()
{
    QFETCH(QByteArray, header);
    QFETCH(int, verdict);
    QFETCH(QString, refusal);
    RecordBytes record = m_untouched;
    std::copy(header.begin(), header.end(), record.begin());
    auto sealed = lumarex::ConfigRecord::fromBytes(record.data(), record.size());
    sealed.setValue(Field::crc, sealed.computedChecksum());

    const auto prediction = lumarex::roundtrip::predictResave(sealed.bytes());
    QCOMPARE(int(prediction.verdict), verdict);
    QCOMPARE(QString::fromStdString(prediction.refusal), refusal);
    QCOMPARE(lumarex::roundtrip::strictFindings(sealed.bytes()).size(), std::size_t(0));
}

// The commands themselves, run as a user runs them, against the real editor: resave writes what
// the editor saves, and check --strict finds something exactly when that differs from the file.
// The editor's own save is tried as well: it is not always kept by a second round trip.
void TestRoundTrip::lxconfigAgreesWithTheEditor()
{
    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString file = folder.filePath("LXCONFIG.BIN");
    const QString resaved = folder.filePath("RESAVED.BIN");
    int kept = 0;
    int changed = 0;
    // Two processes a file: under the sanitizers, where lxconfig starts some 20 times slower,
    // fewer files, as for the random records above.
    const std::uint32_t files = recordCount() >= kDefaultRecords ? 60 : 12;
    for (std::uint32_t seed = 1; seed <= files; ++seed) {
        const RecordBytes record = seed == 1 ? m_untouched : randomRecord(seed);
        const EditorResave first = resaveInFreshWindow(record);
        if (first.outcome != MainWindow::LoadOutcome::Restored)
            continue;
        for (const RecordBytes &input : {record, first.bytes}) {
            const RecordBytes editor = resaveInFreshWindow(input).bytes;
            QVERIFY(writeFile(file, toBytes(input)));
            QFile::remove(resaved);
            QCOMPARE(runLxconfig({"resave", file, "-o", resaved}).exitCode, 0);
            const QByteArray written = readFile(resaved);
            QCOMPARE(written.size(), lumarex::kRecordSize);
            RecordBytes writtenRecord{};
            std::copy(written.begin(), written.end(), writtenRecord.begin());
            const QString where = QStringLiteral("seed %1").arg(seed);
            QVERIFY2(writtenRecord == editor,
                     qPrintable(where + ": " + differingFields(editor, writtenRecord).join("; ")));
            const bool survives = input == editor;
            (survives ? kept : changed) += 1;
            const LxconfigRun strict = runLxconfig({"check", "--strict", file});
            QVERIFY2(strict.exitCode == (survives ? 0 : 1),
                     qPrintable(where + ": " + QString::fromUtf8(strict.out)));
        }
    }
    qInfo("%d files the editor keeps, %d it changes", kept, changed);
    QVERIFY(kept > 0 && changed > 0);
}

QTEST_MAIN(TestRoundTrip)
#include "tst_roundtrip.moc"
