#include "consolecapture.h"

#include <iostream>

class ConsoleCapture::LineBuffer : public std::streambuf
{
public:
    LineBuffer(ConsoleCapture &owner, Stream stream) : m_owner(owner), m_stream(stream) {}

    std::string pending;

protected:
    int_type overflow(int_type ch) override
    {
        if (traits_type::eq_int_type(ch, traits_type::eof()))
            return traits_type::not_eof(ch);
        if (ch == '\n') {
            m_owner.m_lines.push_back({m_stream, QString::fromStdString(pending)});
            pending.clear();
        } else {
            pending.push_back(static_cast<char>(ch));
        }
        return ch;
    }

private:
    ConsoleCapture &m_owner;
    Stream m_stream;
};

ConsoleCapture::ConsoleCapture()
    : m_outBuffer(std::make_unique<LineBuffer>(*this, Stream::Out)),
      m_errBuffer(std::make_unique<LineBuffer>(*this, Stream::Err)),
      m_savedOut(std::cout.rdbuf(m_outBuffer.get())), m_savedErr(std::cerr.rdbuf(m_errBuffer.get()))
{}

ConsoleCapture::~ConsoleCapture()
{
    std::cout.rdbuf(m_savedOut);
    std::cerr.rdbuf(m_savedErr);
}

QStringList ConsoleCapture::linesOf(Stream stream) const
{
    QStringList lines;
    for (const Line &line : m_lines) {
        if (line.stream == stream)
            lines << line.text;
    }
    return lines;
}

QStringList ConsoleCapture::all() const
{
    QStringList lines;
    for (const Line &line : m_lines)
        lines << (line.stream == Stream::Err ? QStringLiteral("ERR: ") : QString()) + line.text;
    return lines;
}

QString ConsoleCapture::unterminated() const
{
    return QString::fromStdString(m_outBuffer->pending + m_errBuffer->pending);
}

void ConsoleCapture::clear()
{
    m_lines.clear();
    m_outBuffer->pending.clear();
    m_errBuffer->pending.clear();
}
