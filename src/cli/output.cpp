#include "output.h"

namespace lxconfig {

Output::Output(FILE *out, FILE *err) : m_out(out), m_err(err)
{
    m_out.setCodec("UTF-8");
    m_err.setCodec("UTF-8");
}

void Output::error(const QString &text)
{
    m_err << "lxconfig: " << text << Qt::endl;
}

void Output::usageError(const QString &text)
{
    error(text);
    m_err << "Try 'lxconfig --help'." << Qt::endl;
}

void Output::warning(const QString &text)
{
    error(QStringLiteral("warning: ") + text);
}

} // namespace lxconfig
