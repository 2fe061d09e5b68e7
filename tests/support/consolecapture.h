#pragma once

// Captures the lines a test provokes on std::cout and std::cerr, each stream apart and both in
// the order they were written, while the capture lives.

#include <QStringList>
#include <iosfwd>
#include <memory>
#include <streambuf>
#include <string>
#include <vector>

class ConsoleCapture
{
public:
    enum class Stream
    {
        Out,
        Err
    };

    ConsoleCapture();
    ~ConsoleCapture();
    ConsoleCapture(const ConsoleCapture &) = delete;
    ConsoleCapture &operator=(const ConsoleCapture &) = delete;

    QStringList out() const { return linesOf(Stream::Out); }
    QStringList err() const { return linesOf(Stream::Err); }
    // Every line in order, error lines marked "ERR: ".
    QStringList all() const;
    // Text written without a final newline, on either stream (should stay empty).
    QString unterminated() const;
    void clear();

private:
    class LineBuffer;
    struct Line
    {
        Stream stream;
        QString text;
    };

    QStringList linesOf(Stream stream) const;

    std::vector<Line> m_lines;
    std::unique_ptr<LineBuffer> m_outBuffer;
    std::unique_ptr<LineBuffer> m_errBuffer;
    std::streambuf *m_savedOut;
    std::streambuf *m_savedErr;
};
