#pragma once

namespace ostrelle {

/// The line on a terminal that says how far a command on many files has come; nothing where standard error is none, or
/// for the first files, which come at once.
class ProgressLine
{
public:
    ProgressLine();

    void step();
    /// Takes it off, so that something else can be printed.
    void clear();

private:
    bool m_isShown = false;
    bool m_isVisible = false;
    int m_count = 0;
};

} // namespace ostrelle
