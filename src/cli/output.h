#pragma once

// Where a command writes: its result on standard output, diagnostics on standard error, both as
// UTF-8 whatever the locale says (item texts carry signs such as U+00AE).

#include <QString>
#include <QTextStream>
#include <cstdio>

namespace lxconfig {

class Output
{
public:
    Output(FILE *out, FILE *err);

    QTextStream &out() { return m_out; }

    // "lxconfig: <text>" on standard error.
    void error(const QString &text);
    // "lxconfig: warning: <text>" on standard error.
    void warning(const QString &text);
    // The error, then a pointer to the help.
    void usageError(const QString &text);

private:
    QTextStream m_out;
    QTextStream m_err;
};

} // namespace lxconfig
