// --format json of check, show and diff, read back with the toolkit's JSON parser and compared
// with written-out values; and the schema of the export form, applied by a real validator
// (python3-jsonschema) to forms that import accepts and refuses.

#include "expected.h"
#include "workspace.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

namespace {

QJsonDocument parsed(const RunResult &result)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(result.out.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError)
        qWarning("not JSON (%s): %s", qPrintable(error.errorString()), qPrintable(result.out));
    return document;
}

QJsonObject object(std::initializer_list<QPair<QString, QJsonValue>> members)
{
    return QJsonObject(members);
}

const QJsonValue kNull(QJsonValue::Null);

// The words "valid" or "invalid" of a validator's output, one per file.
inline QStringList verdictWords(const QString &output)
{
    QStringList words;
    for (const QString &line : output.split('\n', Qt::SkipEmptyParts))
        words << line.section(": ", 1, 1).trimmed();
    return words;
}

// Sets OUTPUT to python3-jsonschema's words on files in the workspace, one line "PATH: valid" or
// "PATH: invalid: REASON" each, after checking that a second validator (Ajv, on Node.js) gives
// the same verdict on each; skips the test, saying why, when a validator cannot run on this
// machine. Macros because QSKIP and QVERIFY must return from the test function itself.
#define SCHEMA_VERDICTS(workspace, names, output)                                                  \
    do {                                                                                           \
        if (!QFile::exists("/usr/bin/python3"))                                                    \
            QSKIP("/usr/bin/python3 is missing (scripts/install-deps.sh test installs "            \
                  "python3-jsonschema)");                                                          \
        const QString node_ = QStandardPaths::findExecutable("node");                              \
        if (node_.isEmpty())                                                                       \
            QSKIP("node is missing (scripts/install-deps.sh test installs Node.js and Ajv)");      \
        if (!QFile::exists(QStringLiteral(AJV_MODULES "/ajv/package.json")))                       \
            QSKIP("Ajv is not installed in " AJV_MODULES " (scripts/install-deps.sh test "         \
                  "installs it)");                                                                 \
        QStringList arguments_{QStringLiteral(FORM_SCHEMA)};                                       \
        for (const QString &name_ : (names))                                                       \
            arguments_ << (workspace).path(name_);                                                 \
        QProcess validator_;                                                                       \
        validator_.start("/usr/bin/python3", QStringList{QStringLiteral(VALIDATOR)} + arguments_); \
        QVERIFY(validator_.waitForFinished(-1));                                                   \
        if (QString::fromUtf8(validator_.readAllStandardError())                                   \
                .contains("No module named 'jsonschema'"))                                         \
            QSKIP("python3-jsonschema is not installed (scripts/install-deps.sh test installs "    \
                  "it)");                                                                          \
        QCOMPARE(validator_.exitCode(), 0);                                                        \
        output = QString::fromUtf8(validator_.readAllStandardOutput());                            \
        QProcess ajv_;                                                                             \
        QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();               \
        environment_.insert("NODE_PATH", QStringLiteral(AJV_MODULES));                             \
        ajv_.setProcessEnvironment(environment_);                                                  \
        ajv_.start(node_, QStringList{QStringLiteral(AJV_VALIDATOR)} + arguments_);                \
        QVERIFY(ajv_.waitForFinished(-1));                                                         \
        const QString ajvOutput_ = QString::fromUtf8(ajv_.readAllStandardOutput());                \
        QVERIFY2(ajv_.exitCode() == 0, ajv_.readAllStandardError().constData());                   \
        QVERIFY2(verdictWords(ajvOutput_) == verdictWords(output),                                 \
                 qPrintable("python3-jsonschema:\n" + output + "Ajv:\n" + ajvOutput_));            \
    } while (false)

// Sets VERDICT to the word on one file: "valid" or "invalid".
#define SCHEMA_VERDICT(workspace, name, verdict)                                                   \
    do {                                                                                           \
        QString output_;                                                                           \
        SCHEMA_VERDICTS(workspace, QStringList{name}, output_);                                    \
        verdict = output_.section(": ", 1, 1).trimmed();                                           \
    } while (false)

} // namespace

class TestJsonOutput : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void check();
    void checkStrict();
    void show();
    void showStatuses();
    void nameNotUtf8();
    void diffTwoFiles();
    void diffFromTheDefaults();
    void textStaysTheDefault();
    void exportsFitTheSchema_data();
    void exportsFitTheSchema();
    void schemaAgreesWithImport_data();
    void schemaAgreesWithImport();
    void schemaAgreesWithImportAtEveryBound();
    void duplicateKeysOnlyImportSees();

private:
    Workspace m_workspace;
};

void TestJsonOutput::init()
{
    QCOMPARE(m_workspace.run({"defaults", "-o", "hazards.bin"}).exitCode, 0);
    QCOMPARE(m_workspace
                 .run({"set", "--raw", "hazards.bin", "esoHeating=1500", "sbusZoom=17",
                       "esoOffset=-125"})
                 .exitCode,
             0);
}

void TestJsonOutput::check()
{
    const RunResult result = m_workspace.run(
        {"check", "--format", "json", "good.bin", "magic.bin", "long.bin", "missing.bin"});
    QCOMPARE(result.exitCode, 1);
    // The size warning still goes to standard error as well.
    QCOMPARE(result.err, "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n");
    const QJsonArray expected{
        object({{"path", "good.bin"}, {"verdict", "valid"}, {"reason", kNull}, {"warning", kNull}}),
        object({{"path", "magic.bin"},
                {"verdict", "refused"},
                {"reason", "bad magic \"XONF\" (expected \"CONF\")"},
                {"warning", kNull}}),
        object({{"path", "long.bin"},
                {"verdict", "valid"},
                {"reason", kNull},
                {"warning", "200 bytes (a record is 167)"}}),
        object({{"path", "missing.bin"},
                {"verdict", "unreadable"},
                {"reason", "cannot open: No such file or directory"},
                {"warning", kNull}}),
    };
    QCOMPARE(parsed(result).array(), expected);
    const RunResult good = m_workspace.run({"check", "--format=json", "good.bin"});
    QCOMPARE(good.exitCode, 0);
}

void TestJsonOutput::checkStrict()
{
    const RunResult result =
        m_workspace.run({"check", "--strict", "--format", "json", "good.bin", "hazards.bin"});
    QCOMPARE(result.exitCode, 1);
    const QJsonArray files = parsed(result).array();
    QCOMPARE(files.size(), 2);
    QCOMPARE(files[0].toObject()["findings"].toArray(), QJsonArray());
    const QJsonArray findings = files[1].toObject()["findings"].toArray();
    QCOMPARE(findings.size(), 3);
    QCOMPARE(findings[0].toObject(), object({{"field", "esoHeating"},
                                             {"offset", 114},
                                             {"stored", "1500"},
                                             {"shown", "1000"},
                                             {"saved", "1000"},
                                             {"why", "clamped to the range"},
                                             {"reason", "the box holds 0 to 1000"}}));
    QCOMPARE(findings[1].toObject()["field"], "esoOffset");
    QCOMPARE(findings[2].toObject()["field"], "sbusZoom");
    QCOMPARE(findings[2].toObject()["why"], "no item");
    QCOMPARE(findings[2].toObject()["saved"], "255");
}

void TestJsonOutput::show()
{
    const RunResult result = m_workspace.run({"show", "--format", "json", "hazards.bin"});
    QCOMPARE(result.exitCode, 0);
    const QJsonObject document = parsed(result).object();
    QCOMPARE(document["path"], "hazards.bin");
    const QJsonArray fields = document["fields"].toArray();
    // 43 single fields and two arrays of 20 elements.
    QCOMPARE(fields.size(), 83);
    QCOMPARE(fields[0].toObject(),
             object({{"field", "magic"}, {"element", kNull}, {"offset", 0}, {"value", "CONF"}}));
    QCOMPARE(fields[3].toObject(),
             object({{"field", "triggerLow"}, {"element", 0}, {"offset", 12}, {"value", 688}}));
    QCOMPARE(fields[22].toObject(),
             object({{"field", "triggerLow"}, {"element", 19}, {"offset", 50}, {"value", 688}}));
    QJsonObject byName;
    for (const QJsonValue &field : fields) {
        if (field.toObject()["element"].isNull())
            byName[field.toObject()["field"].toString()] = field;
    }
    QCOMPARE(
        byName["gpsReceiver"].toObject(),
        object({{"field", "gpsReceiver"},
                {"element", kNull},
                {"offset", 112},
                {"value", 2},
                {"text",
                 "Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT chipset"}}));
    QCOMPARE(byName["sbusZoom"].toObject()["text"], kNull); // no item
    QCOMPARE(byName["esoOffset"].toObject()["value"], -125);
    QCOMPARE(byName["esoOffset"].toObject()["text"], "10.00");
    QVERIFY(!byName["esoHeating"].toObject().contains("text"));
    QCOMPARE(byName["esoHeating"].toObject()["value"], 1500);
}

void TestJsonOutput::showStatuses()
{
    // A file the editor refuses is shown all the same, with the warning; a missing one is an
    // error with nothing on standard output: the statuses of the text form.
    const RunResult refused = m_workspace.run({"show", "--format", "json", "magic.bin"});
    QCOMPARE(refused.exitCode, 0);
    QCOMPARE(refused.err, "lxconfig: warning: magic.bin: bad magic \"XONF\" (expected \"CONF\")\n");
    QCOMPARE(parsed(refused).object()["fields"].toArray()[0].toObject()["value"], "XONF");
    COMPARE_RUN(m_workspace.run({"show", "--format", "json", "missing.bin"}), 1, "",
                "lxconfig: missing.bin: cannot open: No such file or directory\n");
}

void TestJsonOutput::nameNotUtf8()
{
    // The name "caf\xe9.bin" (Latin-1), made and passed by the shell as raw bytes: the JSON stays
    // UTF-8, with U+FFFD for the stray byte.
    QProcess shell;
    shell.setWorkingDirectory(m_workspace.path("."));
    shell.start("/bin/sh", {"-c",
                            "name=$(printf 'caf\\351.bin') && cp good.bin \"$name\" && "
                            "\"$0\" check --format json \"$name\"; status=$?; "
                            // Removed here, as the toolkit cannot name it to remove it.
                            "rm \"$name\" && exit $status",
                            QStringLiteral(LXCONFIG_PATH)});
    QVERIFY(shell.waitForFinished(-1));
    QCOMPARE(shell.exitCode(), 0);
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(shell.readAllStandardOutput(), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(document.array()[0].toObject()["path"], QStringLiteral("caf\uFFFD.bin"));
    QCOMPARE(document.array()[0].toObject()["verdict"], "valid");
}

void TestJsonOutput::diffTwoFiles()
{
    QCOMPARE(m_workspace.run({"set", "--raw", "good.bin", "gpsReceiver=1", "triggerLow[3]=700"})
                 .exitCode,
             0);
    const RunResult result =
        m_workspace.run({"diff", "--format", "json", "good.bin", "hazards.bin"});
    QCOMPARE(result.exitCode, 1);
    const QJsonObject document = parsed(result).object();
    QCOMPARE(document["a"], "good.bin");
    QCOMPARE(document["b"], "hazards.bin");
    const QJsonArray differences = document["differences"].toArray();
    QStringList names;
    for (const QJsonValue &difference : differences)
        names << difference.toObject()["field"].toString();
    QCOMPARE(names, QStringList({"triggerLow", "gpsReceiver", "esoHeating", "esoOffset", "sbusZoom",
                                 "crc"}));
    QCOMPARE(
        differences[0].toObject(),
        object({{"field", "triggerLow"}, {"element", 3}, {"offset", 18}, {"a", 700}, {"b", 688}}));
    QCOMPARE(
        differences[1].toObject(),
        object({{"field", "gpsReceiver"},
                {"element", kNull},
                {"offset", 112},
                {"a", 1},
                {"b", 2},
                {"aText", "Lumarex GPS Receiver - based on u-blox 6 SuperSense\u00ae chipset"},
                {"bText",
                 "Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT chipset"}}));
    QCOMPARE(differences[4].toObject()["aText"], "Channel 3");
    QCOMPARE(differences[4].toObject()["bText"], kNull);
    // The same files: no differences, exit 0.
    const RunResult same = m_workspace.run({"diff", "--format", "json", "good.bin", "good.bin"});
    QCOMPARE(same.exitCode, 0);
    QCOMPARE(parsed(same).object()["differences"].toArray(), QJsonArray());
}

void TestJsonOutput::diffFromTheDefaults()
{
    const RunResult result = m_workspace.run({"diff", "--format", "json", "hazards.bin"});
    QCOMPARE(result.exitCode, 1);
    const QJsonObject document = parsed(result).object();
    QCOMPARE(document["b"], kNull);
    QCOMPARE(document["differences"].toArray().size(), 4); // three fields and the checksum
    // A failure is still 2, with nothing on standard output.
    const RunResult missing = m_workspace.run({"diff", "--format", "json", "missing.bin"});
    QCOMPARE(missing.exitCode, 2);
    QCOMPARE(missing.out, QString());
}

void TestJsonOutput::textStaysTheDefault()
{
    COMPARE_RUN(m_workspace.run({"check", "--format", "text", "good.bin"}), 0, "good.bin: valid\n",
                "");
    COMPARE_RUN(m_workspace.run({"diff", "hazards.bin"}), 1,
                "esoHeating: 1500 -> 800\n"
                "esoOffset: -125 (shown as 10.00) -> 0 (shown as 0.00)\n"
                "sbusZoom: 17 (no item) -> 2 \"Channel 3\"\n" +
                    crcChange(m_workspace.read("hazards.bin"), kDefaultBytes),
                "");
}

void TestJsonOutput::schemaAgreesWithImport_data()
{
    QTest::addColumn<QString>("change"); // a key=JSON change to the exported form, or a removal
    QTest::addColumn<bool>("valid");
    QTest::newRow("as exported") << "" << true;
    QTest::newRow("zero fraction") << "gpsReceiver=1.0" << true;
    QTest::newRow("largest u32") << "headerVersion=4294967295" << true;
    QTest::newRow("extra key") << "brightness=3" << false;
    QTest::newRow("missing key") << "-gpsReceiver" << false;
    QTest::newRow("missing checksum") << "-crc" << false;
    QTest::newRow("string for a number") << "gpsReceiver=\"1\"" << false;
    QTest::newRow("past a byte") << "gpsReceiver=256" << false;
    QTest::newRow("negative u8") << "gpsReceiver=-1" << false;
    QTest::newRow("fraction") << "esoHeating=2.5" << false;
    QTest::newRow("i32 below its range") << "esoOffset=-2147483649" << false;
    QTest::newRow("short array") << "triggerLow=[1,2,3]" << false;
    QTest::newRow("magic of five") << "magic=\"CONFX\"" << false;
    QTest::newRow("magic past Latin-1") << "magic=\"CON\\u0100\"" << false;
    QTest::newRow("magic of Latin-1") << "magic=\"CON\\u00ff\"" << true;
    // A pattern's $ matches before a final newline in Python, so ^...{4}$ let this one through.
    QTest::newRow("magic of four and a newline") << "magic=\"CONF\\n\"" << false;
    QTest::newRow("magic of three and a newline") << "magic=\"CON\\n\"" << true;
    QTest::newRow("magic of three") << "magic=\"CON\"" << false;
}

void TestJsonOutput::schemaAgreesWithImport()
{
    QFETCH(QString, change);
    QFETCH(bool, valid);
    QCOMPARE(m_workspace.run({"export", "good.bin", "-o", "form.json"}).exitCode, 0);
    QJsonObject form = QJsonDocument::fromJson(m_workspace.read("form.json")).object();
    QByteArray text;
    if (change.startsWith('-')) {
        form.remove(change.mid(1));
        text = QJsonDocument(form).toJson();
    } else if (!change.isEmpty()) {
        // Spliced in as text, so that numbers keep the exact form given (1.0, 4294967295).
        const QString key = change.section('=', 0, 0);
        form.remove(key);
        text = QJsonDocument(form).toJson();
        text.insert(text.indexOf('{') + 1,
                    QStringLiteral("\"%1\": %2,").arg(key, change.section('=', 1)).toUtf8());
    } else {
        text = m_workspace.read("form.json");
    }
    m_workspace.write("changed.json", text);

    QString verdict;
    SCHEMA_VERDICT(m_workspace, "changed.json", verdict);
    QCOMPARE(verdict == "valid", valid);
    const RunResult imported = m_workspace.run({"import", "changed.json", "-o", "imported.bin"});
    QVERIFY2((imported.exitCode == 0) == valid, qPrintable(imported.err));
}

void TestJsonOutput::exportsFitTheSchema_data()
{
    QTest::addColumn<QStringList>("assignments"); // given to set --force on the default record
    QTest::addColumn<QByteArray>("magic");        // the first four bytes, written over the file
    QTest::newRow("defaults") << QStringList() << QByteArray("CONF");
    QTest::newRow("out of the boxes' ranges")
        << QStringList({"esoHeating=1500", "sbusZoom=17", "esoOffset=-125"}) << QByteArray("CONF");
    QTest::newRow("largest values")
        << QStringList({"headerVersion=4294967295", "esoOffset=2147483647", "gpsReceiver=255",
                        "triggerLow[0]=65535", "fixed134=9007199254740991"})
        << QByteArray("CONF");
    QTest::newRow("smallest values")
        << QStringList({"payloadLength=0", "esoOffset=-2147483648", "triggerHigh[19]=0",
                        "fixed134=0", "isothermLower=0"})
        << QByteArray("CONF");
    QTest::newRow("magic of any bytes") << QStringList() << QByteArray("\x00\xffO\x7f", 4);
}

void TestJsonOutput::exportsFitTheSchema()
{
    QFETCH(QStringList, assignments);
    QFETCH(QByteArray, magic);
    m_workspace.write("varied.bin", kDefaultBytes);
    if (!assignments.isEmpty()) {
        const QStringList set{"set", "--raw", "--force", "varied.bin"};
        QCOMPARE(m_workspace.run(set + assignments).exitCode, 0);
    }
    m_workspace.write("varied.bin", patched(m_workspace.read("varied.bin"), 0, magic));
    QCOMPARE(m_workspace.run({"export", "varied.bin", "-o", "form.json"}).exitCode, 0);
    QString verdict;
    SCHEMA_VERDICT(m_workspace, "form.json", verdict);
    QCOMPARE(verdict, "valid");
    // And import takes the form back to the same bytes, checksum aside (import computes it).
    QCOMPARE(m_workspace.run({"import", "form.json", "-o", "back.bin"}).exitCode, 0);
    QCOMPARE(m_workspace.read("back.bin").left(165), m_workspace.read("varied.bin").left(165));
}

void TestJsonOutput::schemaAgreesWithImportAtEveryBound()
{
    // Each number field at the schema's minimum and maximum and one past each: the validator and
    // import must give the same answer on every form, so that no field has a bound of its own
    // in import that the schema misses.
    QFile schemaFile(QStringLiteral(FORM_SCHEMA));
    QVERIFY(schemaFile.open(QIODevice::ReadOnly));
    const QJsonObject properties =
        QJsonDocument::fromJson(schemaFile.readAll()).object()["properties"].toObject();
    QCOMPARE(m_workspace.run({"export", "good.bin", "-o", "form.json"}).exitCode, 0);
    const QJsonObject form = QJsonDocument::fromJson(m_workspace.read("form.json")).object();
    QStringList names;
    QStringList variants;
    for (auto field = properties.begin(); field != properties.end(); ++field) {
        const QJsonObject schema = field.value().toObject();
        if (schema["type"] != "integer")
            continue;
        // Whole numbers up to 2^53 are exact in a double.
        const auto minimum = static_cast<qint64>(schema["minimum"].toDouble());
        const auto maximum = static_cast<qint64>(schema["maximum"].toDouble());
        for (const qint64 value : {minimum - 1, minimum, maximum, maximum + 1}) {
            QJsonObject changed = form;
            changed.remove(field.key());
            QByteArray text = QJsonDocument(changed).toJson();
            text.insert(text.indexOf('{') + 1,
                        QStringLiteral("\"%1\": %2,").arg(field.key()).arg(value).toUtf8());
            const QString name = QStringLiteral("bound-%1.json").arg(names.size());
            m_workspace.write(name, text);
            names << name;
            variants << field.key() + '=' + QString::number(value);
        }
    }
    QCOMPARE(names.size(), 4 * 42); // every field but the magic and the two arrays

    QString verdicts;
    SCHEMA_VERDICTS(m_workspace, names, verdicts);
    const QStringList lines = verdicts.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), names.size());
    int accepted = 0;
    for (int i = 0; i < names.size(); ++i) {
        const bool schemaAccepts = lines[i].endsWith(": valid");
        const RunResult imported = m_workspace.run({"import", names[i], "-o", "bound.bin"});
        QVERIFY2(schemaAccepts == (imported.exitCode == 0),
                 qPrintable(variants[i] + ": " + lines[i] + " / " + imported.err));
        accepted += schemaAccepts ? 1 : 0;
    }
    QCOMPARE(accepted, 2 * 42);
}

void TestJsonOutput::duplicateKeysOnlyImportSees()
{
    // A schema applies to the object as parsed, where a repeated key has only its last value;
    // import refuses the repetition. The guide names this as the one difference.
    QCOMPARE(m_workspace.run({"export", "good.bin", "-o", "form.json"}).exitCode, 0);
    QByteArray text = m_workspace.read("form.json");
    text.insert(text.indexOf('{') + 1, "\"gpsReceiver\": 999,");
    m_workspace.write("twice.json", text);
    QString verdict;
    SCHEMA_VERDICT(m_workspace, "twice.json", verdict);
    QCOMPARE(verdict, "valid");
    COMPARE_RUN(m_workspace.run({"import", "twice.json", "-o", "twice.bin"}), 1, "",
                "lxconfig: twice.json: gpsReceiver: duplicate key\n");
    QVERIFY(!m_workspace.exists("twice.bin"));
}

QTEST_GUILESS_MAIN(TestJsonOutput)
#include "tst_jsonoutput.moc"
