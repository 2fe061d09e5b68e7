// The user manual's quotes of the form held against the form's generated facts: every quoted
// text is a caption, an item, a page or one of the other texts the window shows, and the choices,
// ranges and start values in its settings tables are those of the control the row names, and its
// Tab order table names every control of each page in the form's order. A text or a start value
// changed in the form then fails here, naming the line of docs/manual.md to change, instead of
// going stale silently.

#include "formcontrols.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

namespace {

QString text(std::string_view view)
{
    return QString::fromUtf8(view.data(), int(view.size()));
}

// Quoted texts of the window that are not a control's caption, item or page: group boxes,
// buttons, dialogs, console lines, what the screen reader says, and the manual's own wording.
const QSet<QString> kOtherTexts = {
    // Group boxes, buttons and dialogs.
    "External Shutter Options", "Frames", "File options", "Read from file", "Write to file",
    "Open File", "Save File", "Version error", "Configuration is not compatible with this version",
    ".BIN", "Lumarex 2.0 - Configuration- v1.9.1",
    "Settings for interface between Lumarex device and additional hardware:", "Set ",
    " to enable configuration.", " to enable configuration of SBUS channels",
    // Console lines.
    "Error opening file!", "CRC read: N", "CRC error", "   reading config...",
    "   not implemented.", "MainWindow::on_btnReadConf_clicked()", "on cb gimbalrc 2",
    // What the screen reader says, and the manual's own wording around quotes.
    "check box", "combo box", "spin button", "text", "page tab list", "layered pane",
    "Periphery page tab list", "Trigger page tab", "GPS combo box", "Zoom inc./dec. combo box",
    "checked", "not checked", "Orvid Gimbal RC check box not checked",
    "Lower threshold (°C) 15 spin button", "|", " to ", "(0 ... 20000)"};

QString formatted(double value, int decimals)
{
    QString number = QString::number(value, 'f', decimals);
    if (number.startsWith('-'))
        number.replace(0, 1, QChar(0x2212)); // the manual's minus sign
    return number;
}

QString quoted(std::string_view item)
{
    return '"' + text(item) + '"';
}

QString choicesOf(const lumarex::ControlFacts &control)
{
    if (control.className == "QCheckBox")
        return QStringLiteral("on / off");
    if (control.className == "QComboBox") {
        QStringList items;
        for (std::string_view item : control.items())
            items << quoted(item);
        return items.join(", ");
    }
    if (control.className == "QSpinBox" || control.className == "QDoubleSpinBox")
        return formatted(control.minimum, control.decimals) + " to " +
               formatted(control.maximum, control.decimals);
    return QString();
}

QString startOf(const lumarex::ControlFacts &control)
{
    if (control.className == "QCheckBox")
        return control.startChecked ? QStringLiteral("on") : QStringLiteral("off");
    if (control.className == "QComboBox")
        return quoted(control.item(control.startIndex));
    if (control.className == "QSpinBox" || control.className == "QDoubleSpinBox")
        return formatted(control.startValue, control.decimals);
    return text(control.startText);
}

struct Problems
{
    QStringList lines;
    void add(int line, const QString &what)
    {
        lines << QStringLiteral("docs/manual.md:%1: %2").arg(line).arg(what);
    }
};

// The trimmed cells of a Markdown table row ("| a | b |").
QStringList tableCells(const QString &line)
{
    QStringList cells = line.split('|');
    cells = cells.mid(1, cells.size() - 2);
    for (QString &cell : cells)
        cell = cell.trimmed();
    return cells;
}

// The quoted texts of a table cell, each with whether it stands within parentheses (a caption
// may hold parentheses of its own: "Lower threshold (°C)").
QVector<QPair<QString, bool>> quotesIn(const QString &cell)
{
    QVector<QPair<QString, bool>> quotes;
    int depth = 0;
    bool inQuote = false;
    for (const QChar ch : cell) {
        if (ch == '"') {
            if (!inQuote)
                quotes.append({QString(), depth > 0});
            inQuote = !inQuote;
        } else if (inQuote) {
            quotes.last().first += ch;
        } else if (ch == '(') {
            ++depth;
        } else if (ch == ')' && depth > 0) {
            --depth;
        }
    }
    return quotes;
}

} // namespace

class TestManualQuotes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyQuoteIsInTheWindow();
    void settingsTablesHoldTheForm();
    void tabOrderTableHoldsTheForm();

private:
    QStringList m_lines;
    QHash<QString, const lumarex::ControlFacts *> m_byCaption;
    QSet<QString> m_formTexts;
};

void TestManualQuotes::initTestCase()
{
    QFile file(QStringLiteral(LUMAREX_MANUAL));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName() + ": cannot read"));
    m_lines = QString::fromUtf8(file.readAll()).split('\n');

    QSet<QString> ambiguous;
    for (std::size_t i = 0; i < lumarex::formControlCount(); ++i) {
        const lumarex::ControlFacts &control = lumarex::formControls()[i];
        const QString caption = text(control.caption);
        m_formTexts << caption << text(control.page) << text(control.startText);
        for (std::string_view item : control.items())
            m_formTexts << text(item);
        if (m_byCaption.contains(caption))
            ambiguous << caption;
        m_byCaption.insert(caption, &control);
    }
    for (const QString &caption : qAsConst(ambiguous))
        m_byCaption.remove(caption);
    QVERIFY(m_formTexts.size() > 100);
}

void TestManualQuotes::everyQuoteIsInTheWindow()
{
    // A quote may run on into the next line of its paragraph; it reads as one space there.
    static const QRegularExpression quote(QStringLiteral("\"([^\"\n]*(?:\n[^\"\n]*)?)\""));
    static const QRegularExpression lineBreak(QStringLiteral("\\s*\n\\s*"));
    const QString document = m_lines.join('\n');
    Problems problems;
    auto matches = quote.globalMatch(document);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const QString quotedText = match.captured(1).replace(lineBreak, QStringLiteral(" "));
        if (!m_formTexts.contains(quotedText) && !kOtherTexts.contains(quotedText)) {
            const int line = document.left(match.capturedStart()).count('\n') + 1;
            problems.add(line, QStringLiteral("\"%1\" is not a text of the form").arg(quotedText));
        }
    }
    QVERIFY2(problems.lines.isEmpty(), qPrintable(problems.lines.join('\n')));
}

void TestManualQuotes::settingsTablesHoldTheForm()
{
    // A settings table: a header row starting "| Setting |"; each row names a control by its
    // quoted caption. A Choices or Range cell, and a Default cell that starts with a value, must
    // say what the form says.
    Problems problems;
    int checkedCells = 0;
    QStringList header;
    for (int i = 0; i < m_lines.size(); ++i) {
        const QString &line = m_lines.at(i);
        if (!line.startsWith('|')) {
            header.clear();
            continue;
        }
        const QStringList cells = tableCells(line);
        if (cells.value(0) == QLatin1String("Setting")) {
            header = cells;
            continue;
        }
        if (header.isEmpty() || cells.value(0).startsWith(QLatin1String("---")))
            continue;
        const QString name = cells.value(0);
        const QString caption = name.mid(1, name.size() - 2);
        const lumarex::ControlFacts *control =
            name.startsWith('"') && name.endsWith('"') ? m_byCaption.value(caption) : nullptr;
        if (control == nullptr)
            continue;
        for (int column = 1; column < header.size() && column < cells.size(); ++column) {
            const QString &title = header.at(column);
            const QString &cell = cells.at(column);
            if (title.startsWith(QLatin1String("Choices")) || title == QLatin1String("Range")) {
                if (control->className == "QLineEdit")
                    continue;
                ++checkedCells;
                if (cell != choicesOf(*control))
                    problems.add(i + 1, QStringLiteral("%1: \"%2\", the form says \"%3\"")
                                            .arg(title, cell, choicesOf(*control)));
            } else if (title == QLatin1String("Default")) {
                const QString start = startOf(*control);
                const bool isValue = cell.startsWith('"') || cell.at(0).isDigit() ||
                                     cell == QLatin1String("on") || cell == QLatin1String("off");
                if (!isValue)
                    continue;
                ++checkedCells;
                if (cell != start && !cell.startsWith(start + QLatin1Char(',')))
                    problems.add(
                        i + 1,
                        QStringLiteral("Default: \"%1\", the form says \"%2\"").arg(cell, start));
            }
        }
    }
    QVERIFY2(problems.lines.isEmpty(), qPrintable(problems.lines.join('\n')));
    // The tables are found at all: the Periphery, Trigger, GPS/Serial, SBUS/PPM, Extensions,
    // Isotherms and Overlay pages' rows.
    QVERIFY2(checkedCells >= 40, qPrintable(QString::number(checkedCells) + " cells checked"));
}

void TestManualQuotes::tabOrderTableHoldsTheForm()
{
    // The Tab order table: a header row "| Page | Tab order |", then a row per page naming its
    // controls by their quoted captions. The form sets no Tab order of its own, so Tab follows
    // the order the form lists its controls in. Every control of the page is named in its row,
    // and those named outside parentheses (the ones Tab reaches) come in the form's order.
    Problems problems;
    int rows = 0;
    bool inTable = false;
    for (int i = 0; i < m_lines.size(); ++i) {
        const QString &line = m_lines.at(i);
        if (!line.startsWith('|')) {
            inTable = false;
            continue;
        }
        const QStringList cells = tableCells(line);
        if (cells == QStringList{QStringLiteral("Page"), QStringLiteral("Tab order")}) {
            inTable = true;
            continue;
        }
        if (!inTable || cells.value(0).startsWith(QLatin1String("---")))
            continue;
        ++rows;
        QStringList pageCaptions;
        for (std::size_t c = 0; c < lumarex::formControlCount(); ++c) {
            const lumarex::ControlFacts &control = lumarex::formControls()[c];
            if (text(control.page) == cells.value(0))
                pageCaptions << text(control.caption);
        }
        if (pageCaptions.isEmpty()) {
            problems.add(i + 1, QStringLiteral("\"%1\" is not a page").arg(cells.value(0)));
            continue;
        }
        QStringList named;   // every caption of the page the row quotes
        QStringList reached; // those outside parentheses, in the row's order
        for (const auto &[quotedText, aside] : quotesIn(cells.value(1))) {
            if (!pageCaptions.contains(quotedText))
                continue;
            named << quotedText;
            if (!aside)
                reached << quotedText;
        }
        for (const QString &caption : qAsConst(pageCaptions)) {
            if (!named.contains(caption))
                problems.add(i + 1, QStringLiteral("\"%1\" is not named").arg(caption));
        }
        QStringList inFormOrder;
        for (const QString &caption : qAsConst(pageCaptions)) {
            if (reached.contains(caption))
                inFormOrder << caption;
        }
        if (reached != inFormOrder)
            problems.add(i + 1, QStringLiteral("Tab reaches \"%1\" in this order, the row says "
                                               "\"%2\"")
                                    .arg(inFormOrder.join(QLatin1String("\", \"")),
                                         reached.join(QLatin1String("\", \""))));
    }
    QVERIFY2(problems.lines.isEmpty(), qPrintable(problems.lines.join('\n')));
    QCOMPARE(rows, 8);
}

QTEST_GUILESS_MAIN(TestManualQuotes)
#include "tst_manualquotes.moc"
