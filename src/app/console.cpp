#include "console.h"

// The two streams as <iostream> declares them, without the start-up initialiser that including
// <iostream> adds to this file (see console.h).
namespace std {
extern ostream cout;
extern ostream cerr;
} // namespace std

namespace console {

namespace {

// Sets up the standard streams once, as <iostream> would have done at start-up, and flushes
// them when the program ends.
void setUpStreams()
{
    static const std::ios_base::Init streams;
}

} // namespace

std::ostream &standardOutput()
{
    setUpStreams();
    return std::cout;
}

std::ostream &standardError()
{
    setUpStreams();
    return std::cerr;
}

} // namespace console
