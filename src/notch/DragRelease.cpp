#include "notch/DragRelease.h"

#include <utility>

namespace ostrelle {

namespace {

constexpr std::chrono::seconds kUnseenDragLimit{30};

} // namespace

bool DragRelease::isOver(Answer buttonHeld, MonotonicTime now)
{
    if (buttonHeld == Answer::Unknown)
        return now - m_start >= kUnseenDragLimit;
    const bool isUp = buttonHeld == Answer::No;
    return std::exchange(m_wasUp, isUp) && isUp;
}

} // namespace ostrelle
