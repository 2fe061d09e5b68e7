// JSON texts at the edges of the grammar, through the real lxconfig: each is given to import as
// a form and to apply as a template, and both must read it alike. Malformed texts (NUL bytes,
// stray or repeated byte order marks, lone surrogates, numbers past a double, nesting past
// lxconfig's limit) are refused with the same message and leave every file as it was; odd but
// valid ones (a byte order mark at the start, escaped keys, exponents, -0) are read.

#include "expected.h"
#include "workspace.h"

#include <QTest>

namespace {

// The default record's form as export writes it, the base of most texts.
QByteArray form(const QStringList &replacements = {})
{
    return withLines(kDefaultJson, replacements).toUtf8();
}

QByteArray bytes(const char *text, int size)
{
    return QByteArray(text, size);
}

QString malformed(const QString &what, qsizetype offset)
{
    return QStringLiteral("malformed JSON: %1 at offset %2").arg(what).arg(offset);
}

} // namespace

class TestJsonTexts : public QObject
{
    Q_OBJECT

private slots:
    void importAndApply_data();
    void importAndApply();
};

void TestJsonTexts::importAndApply_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error"); // after "lxconfig: t.json: "; empty when the text is read

    const QByteArray whole = form();

    // NUL bytes: the text is everything in the file, not the part before the first NUL.
    const QByteArray tail = R"({"isothermLower": 21, "colour": [)";
    QTest::newRow("NUL, then a second document")
        << whole + '\0' + tail << malformed("garbage at the end of the document", whole.size());
    QTest::newRow("NUL at the end")
        << whole + '\0' << malformed("garbage at the end of the document", whole.size());
    QTest::newRow("a number, then NUL")
        << bytes("123\0", 4) << malformed("garbage at the end of the document", 3);
    QTest::newRow("NUL where a member goes")
        << QByteArray("{").append('\0').append(whole.mid(1)) << malformed("illegal value", 1);
    const QByteArray rawNul = form().replace("\"gpsReceiver\"", bytes("\"gps\0Receiver\"", 14));
    QTest::newRow("NUL in a key") << rawNul
                                  << malformed("invalid escape sequence", rawNul.indexOf("\"gps"));
    QTest::newRow("NUL alone") << bytes("\0", 1) << malformed("illegal value", 0);

    // Byte order marks: one at the start is allowed and skipped, anywhere else it is a stray byte.
    const QByteArray bom = "\xef\xbb\xbf";
    QTest::newRow("byte order mark") << bom + whole << QString();
    QTest::newRow("two byte order marks") << bom + bom + whole << malformed("illegal value", 3);
    QTest::newRow("byte order mark after space")
        << " " + bom + whole << malformed("illegal value", 1);

    // Strings: surrogates and UTF-8.
    const QByteArray lone = R"({"\ud800gpsReceiver": 1})";
    QTest::newRow("lone high surrogate") << lone << malformed("invalid escape sequence", 1);
    QTest::newRow("lone low surrogate")
        << QByteArray(R"({"\udc00": 1})") << malformed("invalid escape sequence", 1);
    QTest::newRow("surrogate encoded in UTF-8")
        << QByteArray("{\"\xed\xa0\x80\": 1}") << malformed("invalid UTF8 string", 1);
    QTest::newRow("overlong UTF-8")
        << QByteArray("{\"\xc0\xaf\": 1}") << malformed("invalid UTF8 string", 1);
    QTest::newRow("escaped key") << form().replace("\"gpsReceiver\"", "\"\\u0067psReceiver\"")
                                 << QString();

    // Numbers: past a double's range is an error, not infinity; other spellings of a number are
    // read as the number.
    const QByteArray huge = form({QStringLiteral("    \"gpsReceiver\": 1e400,")});
    QTest::newRow("huge exponent") << huge << malformed("illegal number", huge.indexOf("1e400"));
    const QByteArray hugeNegative = form({QStringLiteral("    \"esoOffset\": -1E+999,")});
    QTest::newRow("huge negative exponent")
        << hugeNegative << malformed("illegal number", hugeNegative.indexOf("-1E+999"));
    QTest::newRow("exponent") << form({QStringLiteral("    \"gpsReceiver\": 0.02e2,")})
                              << QString();
    QTest::newRow("minus zero") << form({QStringLiteral("    \"esoOffset\": -0,")}) << QString();
    // The parser reads 01 as the number 0 followed by the number 1, which is the wrong token.
    const QByteArray leadingZero = form({QStringLiteral("    \"gpsReceiver\": 01,")});
    QTest::newRow("leading zero") << leadingZero
                                  << malformed("unterminated object",
                                               leadingZero.indexOf(": 01") + 3);

    // Nesting: lxconfig reads no deeper than 1024 levels; within that, a nested value is simply
    // not a number.
    QTest::newRow("nested past the limit")
        << QByteArray(100000, '[') << QStringLiteral("malformed JSON: too deeply nested document");
    QTest::newRow("nested within the limit")
        << form({QStringLiteral("    \"gpsReceiver\": %1%2,")
                     .arg(QString(1000, '['), QString(1000, ']'))})
        << QStringLiteral("gpsReceiver: expected a whole number from 0 to 255");

    // Offsets name the first byte of the token that is wrong.
    QTest::newRow("value where a comma goes")
        << QByteArray("[1 true]") << malformed("missing value separator", 3);
    QTest::newRow("string where a colon goes")
        << QByteArray(R"({"a" "b"})") << malformed("missing name separator", 5);
    QTest::newRow("broken literal")
        << QByteArray(R"({"gpsReceiver": tru})") << malformed("illegal value", 16);
    QTest::newRow("unterminated string")
        << QByteArray(R"({"gpsReceiver)") << malformed("unterminated string", 1);

    QTest::newRow("unterminated string of a megabyte")
        << R"({"gpsReceiver": ")" + QByteArray(1000 * 1000, 'x')
        << malformed("unterminated string", 16);

    // Quoted keys are shown with their control characters escaped.
    QTest::newRow("terminal escape in a key")
        << QByteArray(R"({"\u001b[31mRED": 1})") << QStringLiteral("\\u001b[31mRED: no such field");
    QTest::newRow("NUL escaped in a key")
        << QByteArray(R"({"a\u0000b": 1})") << QStringLiteral("a\\u0000b: no such field");
    QTest::newRow("C1 control in a key")
        << QByteArray(R"({"\u009b2J": 1})") << QStringLiteral("\\u009b2J: no such field");
    QTest::newRow("repeated key with a newline")
        << QByteArray(R"({"a\nb": 1, "a\nb": 2})") << QStringLiteral("a\\u000ab: duplicate key");
}

void TestJsonTexts::importAndApply()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    Workspace workspace;
    workspace.write("t.json", text);
    const QByteArray good = workspace.read("good.bin");
    workspace.write("cam.bin", good);

    const RunResult imported = workspace.run({"import", "t.json", "-o", "out.bin"});
    const RunResult applied = workspace.run({"apply", "t.json", "cam.bin"});
    if (error.isEmpty()) {
        QVERIFY2(imported.exitCode == 0, qPrintable(imported.err));
        QVERIFY2(applied.exitCode == 0, qPrintable(applied.err));
        QCOMPARE(workspace.read("out.bin"), good);
        QCOMPARE(workspace.read("cam.bin"), good);
        return;
    }
    const QString expected = "lxconfig: t.json: " + error + '\n';
    QCOMPARE(imported.err, expected);
    QCOMPARE(imported.exitCode, 1);
    QVERIFY(!workspace.exists("out.bin"));
    QCOMPARE(applied.err, expected);
    QCOMPARE(applied.out, QString());
    QCOMPARE(applied.exitCode, 1);
    QCOMPARE(workspace.read("cam.bin"), good);
}

QTEST_GUILESS_MAIN(TestJsonTexts)
#include "tst_jsontexts.moc"
