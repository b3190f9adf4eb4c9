#include "command/ProgressLine.h"

#include <unistd.h>

#include <cstdio>

namespace ostrelle {
namespace {

constexpr int kSilentSteps = 20;

} // namespace

ProgressLine::ProgressLine()
    : m_isShown(::isatty(STDERR_FILENO) == 1)
{
}

void ProgressLine::step()
{
    ++m_count;
    if (!m_isShown || m_count < kSilentSteps)
        return;
    std::fprintf(stderr, "%d files ...", m_count);
    std::fflush(stderr);
    m_isVisible = true;
}

void ProgressLine::clear()
{
    if (!m_isVisible)
        return;
    // What goes to the same terminal has to be there before the line is drawn again.
    std::fflush(stdout);
    std::fputs("\r\x1b[K", stderr);
    m_isVisible = false;
}

} // namespace ostrelle
