#include "output.h"

#include "descriptorwrite.h"
#include "failure.h"

#include <cerrno>
#include <cstring>

namespace lxconfig {

namespace {

// Enough to keep a long check of many files from gathering without bound.
constexpr std::size_t kPendingLimit = 64 * 1024;

} // namespace

Output::Output(FILE *out, FILE *err) : m_out(out), m_err(err) {}

void Output::out(std::string_view text)
{
    m_pending.append(text);
    if (m_pending.size() >= kPendingLimit)
        flushOut();
}

bool Output::flushOut()
{
    if (m_outError == 0) {
        // Whatever the stdio buffer holds goes first; then the text gathered here.
        if (std::fflush(m_out) != 0)
            m_outError = errno;
        else
            m_outError = writeAllErrno(fileno(m_out), m_pending);
    }
    m_pending.clear();
    return m_outError == 0;
}

void Output::error(std::string_view text)
{
    // What the command has said so far goes first, so that a warning stands next to the result
    // it belongs to, in a pipe as on a terminal, and both streams merged read in order.
    if (!m_pending.empty())
        flushOut();
    std::string line = "lxconfig: ";
    line.append(text);
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), m_err);
    std::fflush(m_err);
}

void Output::usageError(std::string_view text, std::string_view command)
{
    error(text);
    const std::string help =
        command.empty() ? std::string("--help") : "help " + std::string(command);
    std::fputs(("Try 'lxconfig " + help + "'.\n").c_str(), m_err);
    std::fflush(m_err);
}

void Output::warning(std::string_view text)
{
    error(std::string("warning: ").append(text));
}

bool Output::finish()
{
    if (flushOut())
        return true;
    error(Failure{"standard output", std::string("cannot write: ") + std::strerror(m_outError)}
              .message());
    return false;
}

} // namespace lxconfig
