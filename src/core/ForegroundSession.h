#pragma once

namespace ostrelle {

/// Counts the windows and system pickers that currently need the program to behave as an ordinary application. Each of
/// them has its own place in the taskbar and asks for the keyboard itself, so nothing else follows from the count here.
/// Main thread.
class ForegroundSession
{
public:
    int depth() const { return m_depth; }
    void begin() { ++m_depth; }
    /// Never below zero.
    void end() { m_depth = m_depth > 0 ? m_depth - 1 : 0; }

private:
    int m_depth = 0;
};

} // namespace ostrelle
