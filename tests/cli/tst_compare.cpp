// lxconfig compare on a fleet the test makes: how the files group, the minority marked, refused
// and missing files listed, every format, --all, the terminal's width, and usage errors.

#include "workspace.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QXmlStreamReader>

namespace {

// Each run without a terminal width unless the row gives one.
const QString kNoWidth = QStringLiteral("COLUMNS=");

const QStringList kFleet = {"cam1/LXCONFIG.BIN", "cam2/LXCONFIG.BIN", "cam3/LXCONFIG.BIN",
                            "cam4/LXCONFIG.BIN", "cam5/LXCONFIG.BIN", "cam6/LXCONFIG.BIN",
                            "cam7/LXCONFIG.BIN"};

// The fleet's five accepted files, a line per setting and file.
const QString kLines = QStringLiteral("serialBaudrate: 4 x \"38400\", 1 x \"9600\": cam3\n"
                                      "  cam1  \"38400\"\n"
                                      "  cam2  \"38400\"\n"
                                      "  cam3  \"9600\" *\n"
                                      "  cam4  \"38400\"\n"
                                      "  cam5  \"38400\"\n"
                                      "serialParity: 4 x \"none\", 1 x \"even\": cam5\n"
                                      "  cam1  \"none\"\n"
                                      "  cam2  \"none\"\n"
                                      "  cam3  \"none\"\n"
                                      "  cam4  \"none\"\n"
                                      "  cam5  \"even\" *\n"
                                      "* fewer files hold this value than the most common one\n");

// What the editor says of cam6's file, the workspace's checksum.bin.
QString cam6Reason()
{
    return sampleMismatch("checksum.bin");
}

QString refusedLines()
{
    return "Not compared:\n"
           "  cam6/LXCONFIG.BIN: " +
           cam6Reason() +
           "\n"
           "  cam7/LXCONFIG.BIN: cannot open: No such file or directory\n";
}

} // namespace

class TestCompare : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void groupsAndMinority();
    void sameSettings();
    void tieMarksNoMinority();
    void valueTheWindowCannotShow();
    void columnsWhereTheTerminalIsWideEnough_data();
    void columnsWhereTheTerminalIsWideEnough();
    void json();
    void csv();
    void html();
    void all();
    void labels_data();
    void labels();
    void usageErrors_data();
    void usageErrors();

private:
    std::unique_ptr<Workspace> m_workspace;
};

void TestCompare::init()
{
    // Five cameras the editor loads: cam3 at 9600 baud, cam5 with even parity; cam6's checksum
    // does not fit, cam7 has no file.
    m_workspace = std::make_unique<Workspace>();
    for (int camera = 1; camera <= 6; ++camera) {
        QVERIFY(QDir(m_workspace->path(".")).mkpath(QString("cam%1").arg(camera)));
        m_workspace->write(kFleet[camera - 1], m_workspace->read("good.bin"));
    }
    QCOMPARE(m_workspace->run({"set", "-q", "cam3/LXCONFIG.BIN", "serialBaudrate=9600"}).exitCode,
             0);
    QCOMPARE(m_workspace->run({"set", "-q", "cam5/LXCONFIG.BIN", "serialParity=even"}).exitCode, 0);
    m_workspace->write("cam6/LXCONFIG.BIN", m_workspace->read("checksum.bin"));
}

void TestCompare::groupsAndMinority()
{
    COMPARE_RUN(m_workspace->run(QStringList{"compare"} + kFleet, {kNoWidth}), 2,
                kLines + refusedLines(), "");
    // Without the refused and missing files the exit status says only that the files differ.
    QCOMPARE(m_workspace->run(QStringList{"compare"} + kFleet.mid(0, 5), {kNoWidth}).exitCode, 1);
}

void TestCompare::sameSettings()
{
    COMPARE_RUN(
        m_workspace->run({"compare", "cam1/LXCONFIG.BIN", "cam2/LXCONFIG.BIN", "cam4/LXCONFIG.BIN"},
                         {kNoWidth}),
        0, "No setting differs across the 3 files the editor loads.\n", "");
}

void TestCompare::tieMarksNoMinority()
{
    COMPARE_RUN(m_workspace->run({"compare", "cam1/LXCONFIG.BIN", "cam3/LXCONFIG.BIN"}, {kNoWidth}),
                1,
                "serialBaudrate: 1 x \"38400\", 1 x \"9600\"\n"
                "  cam1  \"38400\"\n"
                "  cam3  \"9600\"\n",
                "");
}

void TestCompare::valueTheWindowCannotShow()
{
    // -1.25 degrees, below the box's range: the window shows 10.00 (the stored number read
    // unsigned and held to the range), and compare says both, as show does.
    QCOMPARE(m_workspace
                 ->run({"set", "-q", "--force", "cam2/LXCONFIG.BIN", "externalShutter=on",
                        "esoOffset=-125"})
                 .exitCode,
             0);
    QCOMPARE(m_workspace->run({"set", "-q", "--force", "cam1/LXCONFIG.BIN", "externalShutter=on"})
                 .exitCode,
             0);
    COMPARE_RUN(m_workspace->run({"compare", "cam1/LXCONFIG.BIN", "cam2/LXCONFIG.BIN"}, {kNoWidth}),
                1,
                "esoOffset: 1 x 0.00, 1 x -125 (shown as 10.00)\n"
                "  cam1  0.00\n"
                "  cam2  -125 (shown as 10.00)\n",
                "");
}

void TestCompare::columnsWhereTheTerminalIsWideEnough_data()
{
    QTest::addColumn<QString>("columns");
    QTest::addColumn<QString>("expected");
    const QString columns =
        "                cam1     cam2     cam3      cam4     cam5\n"
        "serialBaudrate  \"38400\"  \"38400\"  \"9600\" *  \"38400\"  \"38400\"\n"
        "                4 x \"38400\", 1 x \"9600\": cam3\n"
        "serialParity    \"none\"   \"none\"   \"none\"    \"none\"   \"even\" *\n"
        "                4 x \"none\", 1 x \"even\": cam5\n"
        "* fewer files hold this value than the most common one\n";
    // The widest line of the table is 61 characters.
    QTest::newRow("80 columns") << "80" << columns;
    QTest::newRow("exactly wide enough") << "61" << columns;
    QTest::newRow("one too few") << "60" << kLines;
    QTest::newRow("labels alone too wide") << "30" << kLines;
    QTest::newRow("not a number") << "wide" << kLines;
}

void TestCompare::columnsWhereTheTerminalIsWideEnough()
{
    QFETCH(QString, columns);
    QFETCH(QString, expected);
    COMPARE_RUN(m_workspace->run(QStringList{"compare"} + kFleet.mid(0, 5), {"COLUMNS=" + columns}),
                1, expected, "");
}

void TestCompare::json()
{
    const RunResult result =
        m_workspace->run(QStringList{"compare", "--format", "json"} + kFleet, {kNoWidth});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.exitCode, 2);
    QJsonParseError error;
    const QJsonObject document = QJsonDocument::fromJson(result.out.toUtf8(), &error).object();
    QCOMPARE(error.error, QJsonParseError::NoError);

    const QJsonArray files = document["files"].toArray();
    QCOMPARE(files.size(), 7);
    QCOMPARE(files[0].toObject()["path"].toString(), QString("cam1/LXCONFIG.BIN"));
    QCOMPARE(files[0].toObject()["label"].toString(), QString("cam1"));
    QCOMPARE(files[0].toObject()["verdict"].toString(), QString("valid"));
    QVERIFY(files[0].toObject()["reason"].isNull());
    QCOMPARE(files[5].toObject()["verdict"].toString(), QString("refused"));
    QCOMPARE(files[5].toObject()["reason"].toString(), cam6Reason());
    QCOMPARE(files[6].toObject()["verdict"].toString(), QString("unreadable"));

    const QJsonArray settings = document["settings"].toArray();
    QCOMPARE(settings.size(), 2);
    const QJsonObject baudrate = settings[0].toObject();
    QCOMPARE(baudrate["setting"].toString(), QString("serialBaudrate"));
    QVERIFY(baudrate["element"].isNull());
    const QJsonArray groups = baudrate["groups"].toArray();
    QCOMPARE(groups.size(), 2);
    QCOMPARE(groups[0].toObject()["value"].toInt(), 38400);
    QCOMPARE(groups[0].toObject()["text"].toString(), QString("\"38400\""));
    QCOMPARE(groups[0].toObject()["count"].toInt(), 4);
    QCOMPARE(groups[0].toObject()["minority"].toBool(), false);
    QCOMPARE(groups[0].toObject()["files"].toArray(), QJsonArray({"cam1", "cam2", "cam4", "cam5"}));
    QCOMPARE(groups[1].toObject()["value"].toInt(), 9600);
    QCOMPARE(groups[1].toObject()["count"].toInt(), 1);
    QCOMPARE(groups[1].toObject()["minority"].toBool(), true);
    QCOMPARE(groups[1].toObject()["files"].toArray(), QJsonArray({"cam3"}));
    QCOMPARE(settings[1].toObject()["setting"].toString(), QString("serialParity"));
}

void TestCompare::csv()
{
    // A label with a comma and quotes is quoted, its quotes doubled; lines end with CRLF.
    m_workspace->write("a,\"b\".bin", m_workspace->read("cam3/LXCONFIG.BIN"));
    COMPARE_RUN(m_workspace->run({"compare", "--format", "csv", "cam1/LXCONFIG.BIN", "a,\"b\".bin",
                                  "cam6/LXCONFIG.BIN"},
                                 {kNoWidth}),
                2,
                "setting,cam1/LXCONFIG.BIN,\"a,\"\"b\"\".bin\",cam6/LXCONFIG.BIN,groups\r\n"
                "verdict,valid,valid," +
                    cam6Reason() +
                    ",\r\n"
                    "serialBaudrate,\"\"\"38400\"\"\",\"\"\"9600\"\"\",,\"1 x \"\"38400\"\", 1 x "
                    "\"\"9600\"\"\"\r\n",
                "");
}

void TestCompare::html()
{
    const RunResult result =
        m_workspace->run(QStringList{"compare", "--format", "html"} + kFleet, {kNoWidth});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.exitCode, 2);
    // Read as XML: the rows of the table, each as its cells' texts; marked cells with a "!".
    QXmlStreamReader xml(result.out);
    QList<QStringList> rows;
    QString cell;
    bool inTable = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("table"))
            inTable = true;
        else if (inTable && xml.isStartElement() && xml.name() == QLatin1String("tr"))
            rows.append(QStringList());
        else if (inTable && xml.isStartElement() &&
                 (xml.name() == QLatin1String("td") || xml.name() == QLatin1String("th")))
            cell = xml.attributes().value("class") == QLatin1String("minority") ? "!" : "";
        else if (inTable && xml.isCharacters())
            cell += xml.text();
        else if (inTable && xml.isEndElement() &&
                 (xml.name() == QLatin1String("td") || xml.name() == QLatin1String("th")))
            rows.last().append(cell);
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QCOMPARE(rows.size(), 4);
    QCOMPARE(rows[0], QStringList({"Setting", "cam1", "cam2", "cam3", "cam4", "cam5", "cam6",
                                   "cam7", "How the files group"}));
    QCOMPARE(rows[1], QStringList({"Verdict", "valid", "valid", "valid", "valid", "valid",
                                   cam6Reason(), "cannot open: No such file or directory", ""}));
    QCOMPARE(rows[2],
             QStringList({"serialBaudrate", "\"38400\"", "\"38400\"", "!\"9600\" *", "\"38400\"",
                          "\"38400\"", "", "", "4 x \"38400\", 1 x \"9600\": cam3"}));
    QCOMPARE(rows[3][5], QString("!\"even\" *"));
}

void TestCompare::all()
{
    // Every element of every field but the checksum: 82 rows of two lines each for one file.
    const RunResult result =
        m_workspace->run({"compare", "--all", "cam1/LXCONFIG.BIN"}, {kNoWidth});
    QCOMPARE(result.exitCode, 0);
    const QStringList lines = result.out.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2 * 82);
    QCOMPARE(lines[0], QString("magic: 1 x \"CONF\""));
    QVERIFY(lines.contains("triggerLow[19]: 1 x 688"));
    QVERIFY(lines.contains("gimbalRc: 1 x off"));
    QVERIFY(lines.contains("esoOffset: 1 x 0.00"));
    QVERIFY(!result.out.contains("crc"));
    const RunResult fleet =
        m_workspace->run(QStringList{"compare", "--all", "--format", "csv"} + kFleet.mid(0, 5));
    QCOMPARE(fleet.out.count("\r\n"), 2 + 82);
}

void TestCompare::labels_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("header");
    QTest::newRow("base names") << QStringList{"a.bin", "b.bin"} << "setting,a.bin,b.bin,groups";
    QTest::newRow("the folder that differs")
        << QStringList{"site1/cam1/X.BIN", "site2/cam1/X.BIN", "site2/cam2/X.BIN"}
        << "setting,site1/cam1,site2/cam1,cam2,groups";
    QTest::newRow("one in this folder")
        << QStringList{"X.BIN", "cam2/X.BIN"} << "setting,X.BIN,cam2/X.BIN,groups";
    QTest::newRow("named twice") << QStringList{"./a.bin", "a.bin"}
                                 << "setting,./a.bin,a.bin,groups";
}

void TestCompare::labels()
{
    QFETCH(QStringList, files);
    QFETCH(QString, header);
    for (const QString &file : files) {
        QVERIFY(QDir(m_workspace->path(".")).mkpath(QFileInfo(file).path()));
        m_workspace->write(file, m_workspace->read("good.bin"));
    }
    const RunResult result = m_workspace->run(QStringList{"compare", "--format", "csv"} + files);
    QCOMPARE(result.out.section("\r\n", 0, 0), header);
}

void TestCompare::usageErrors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const QString tryHelp = "Try 'lxconfig help compare'.\n";
    QTest::newRow("no file") << QStringList{"compare"}
                             << "lxconfig: usage: lxconfig compare FILE...\n" + tryHelp;
    QTest::newRow("unknown format")
        << QStringList{"compare", "--format", "pdf", "a.bin"}
        << "lxconfig: Unknown format 'pdf' (text or json; compare also csv or html).\n" + tryHelp;
    QTest::newRow("standard input")
        << QStringList{"compare", "good.bin", "-"}
        << "lxconfig: compare reads each file twice, so it takes files, not standard input\n" +
               tryHelp;
    QTest::newRow("an output file") << QStringList{"compare", "good.bin", "-o", "out.txt"}
                                    << "lxconfig: usage: lxconfig compare FILE...\n" + tryHelp;
    QTest::newRow("csv is compare's")
        << QStringList{"show", "--format", "csv", "good.bin"}
        << "lxconfig: usage: lxconfig show FILE\nTry 'lxconfig help show'.\n";
    QTest::newRow("--all is compare's")
        << QStringList{"diff", "--all", "good.bin"}
        << "lxconfig: usage: lxconfig diff A [B]\nTry 'lxconfig help diff'.\n";
}

void TestCompare::usageErrors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    COMPARE_RUN(m_workspace->run(arguments), 2, "", error);
}

QTEST_GUILESS_MAIN(TestCompare)
#include "tst_compare.moc"
