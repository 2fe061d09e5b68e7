// lxconfig report FILE... [-o OUT.html | --pdf OUT.pdf]: the printable settings sheet of each
// file, in one HTML page on standard output or in OUT, or printed to a PDF by a headless
// browser. The page is written a file at a time, so a report of many files takes little memory.

#include "commandfiles.h"
#include "commands.h"
#include "htmlreport.h"
#include "pdfprint.h"
#include "recordfile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace lxconfig {

namespace {

// The footer's date: today's in the local time zone, or SOURCE_DATE_EPOCH's (in UTC) when that
// is set, so that a sheet made twice is the same.
std::string dateLine(bool printed)
{
    std::time_t now = std::time(nullptr);
    std::tm day = {};
    if (const char *epoch = std::getenv("SOURCE_DATE_EPOCH")) {
        now = static_cast<std::time_t>(std::strtoll(epoch, nullptr, 10));
        gmtime_r(&now, &day);
    } else {
        localtime_r(&now, &day);
    }
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d", &day);
    return std::string(printed ? "printed " : "made ") + text;
}

// Reads each file and hands its section on; the status says whether every file was valid.
class SheetWriter
{
public:
    SheetWriter(const Invocation &invocation, const SheetOptions &options, Output &output)
        : m_invocation(invocation), m_options(options), m_output(output)
    {}

    // Calls put with the head, each file's section and the tail; stops when put fails.
    void write(const PutPiece &put)
    {
        if (!put(reportHead(m_invocation.arguments, m_options)))
            return;
        for (std::size_t index = 0; index < m_invocation.arguments.size(); ++index) {
            if (!put(reportSection(readFile(index), index, m_options)))
                return;
        }
        put(reportTail());
    }

    int status() const { return m_status; }

private:
    ReportedFile readFile(std::size_t index)
    {
        ReportedFile file;
        file.path = m_invocation.arguments[index];
        const Result<RecordFile> read = readRecordFile(file.path);
        if (!read) {
            // Reported on the sheet and here; the other files are still reported.
            m_output.error(read.failure().message());
            file.unreadable = read.failure().reason;
            m_status = kExitFailure;
        } else {
            file.record = read->record;
            file.refusal = read->refusal;
            file.sizeNote = read->sizeNote;
            if (file.refusal)
                m_status = kExitFailure;
        }
        return file;
    }

    const Invocation &m_invocation;
    const SheetOptions &m_options;
    Output &m_output;
    int m_status = kExitSuccess;
};

// A fresh folder for the page, the PDF and the browser's profile, removed with everything in it.
class WorkFolder
{
public:
    WorkFolder()
    {
        const char *tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/lxconfig-report.XXXXXX";
        if (::mkdtemp(pattern.data()))
            m_path = pattern;
        else
            m_error = errno;
    }
    ~WorkFolder()
    {
        std::error_code ignored;
        if (!m_path.empty())
            std::filesystem::remove_all(m_path, ignored);
    }
    const std::string &path() const { return m_path; }
    int error() const { return m_error; }

private:
    std::string m_path;
    int m_error = 0;
};

int printReport(const Invocation &invocation, SheetOptions options, Output &output)
{
    Invocation asPdf = invocation;
    asPdf.outputPath = invocation.pdfPath;
    if (!succeeded(outputIsNoInput(invocation.pdfPath, invocation.arguments, "to report"), output))
        return kExitFailure;
    const std::optional<std::string> browser = browserOnPath();
    if (!browser) {
        std::string names;
        for (const std::string &name : browserNames())
            names += (names.empty() ? "" : ", ") + name;
        output.error(invocation.pdfPath + ": cannot print: no headless browser on PATH (" + names +
                     "); install chromium, or write the page with -o and print it from a "
                     "browser");
        return kExitFailure;
    }
    WorkFolder work;
    if (work.path().empty()) {
        output.error(invocation.pdfPath +
                     ": cannot make a temporary folder: " + std::strerror(work.error()));
        return kExitFailure;
    }
    if (options.paper == Paper::Any)
        options.paper = Paper::A4;
    const std::string html = work.path() + "/sheet.html";
    const std::string pdf = work.path() + "/sheet.pdf";
    SheetWriter writer(invocation, options, output);
    HeldOutput page;
    Done written = page.open(html);
    if (written)
        written =
            page.writePieces([&writer](const PutPiece &put) { writer.write(put); }, Backup::None);
    if (!succeeded(written, output))
        return kExitFailure;
    if (const Done printed = printToPdf(*browser, html, pdf, work.path()); !printed) {
        output.error(invocation.pdfPath + ": cannot print: " + printed.failure().reason);
        return kExitFailure;
    }
    std::ifstream in(pdf, std::ios::binary);
    const std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return succeeded(writeOutputFile(invocation.pdfPath, data, invocation.backup, output), output)
               ? writer.status()
               : kExitFailure;
}

} // namespace

int reportCommand(const Invocation &invocation, Output &output)
{
    SheetOptions options;
    options.title = invocation.title;
    options.paper = invocation.paper == "a4"       ? Paper::A4
                    : invocation.paper == "letter" ? Paper::Letter
                                                   : Paper::Any;
    if (!invocation.pdfPath.empty()) {
        if (!invocation.outputPath.empty()) {
            output.usageError("report writes a page (-o) or a PDF (--pdf), not both", "report");
            return kExitError;
        }
        options.dateLine = dateLine(true);
        return printReport(invocation, options, output);
    }
    // Some 14 KB of markup on a terminal help nobody; "-o -" still asks for it on purpose.
    if (invocation.outputPath.empty() && ::isatty(STDOUT_FILENO)) {
        output.usageError("standard output: is a terminal, and the sheet is HTML; write it with "
                          "-o FILE.html or print it with --pdf, or pipe it",
                          "report");
        return kExitError;
    }
    if (!succeeded(outputIsNoInput(invocation.outputPath, invocation.arguments, "to report"),
                   output))
        return kExitFailure;
    options.dateLine = dateLine(false);
    SheetWriter writer(invocation, options, output);
    // "-o -" as without -o, so that a failure names "standard output" as every command does.
    if (invocation.outputPath.empty() || invocation.outputPath == kStandardStream) {
        writer.write([&output](std::string_view piece) {
            output.out(piece);
            return true;
        });
        return writer.status();
    }
    HeldOutput file;
    Done written = file.open(invocation.outputPath);
    if (written)
        written = file.writePieces([&writer](const PutPiece &put) { writer.write(put); },
                                   invocation.backup);
    return succeeded(written, output) ? writer.status() : kExitFailure;
}

} // namespace lxconfig
