#pragma once

#include "foundation/TaskScheduler.h"
#include "platform/PointerNear.h"

namespace ostrelle {

/// Tells from repeated looks at the pointer buttons when a drag is over: none was held at two looks in a row or, where
/// the buttons cannot be seen, after 30 s.
class DragRelease
{
public:
    explicit DragRelease(MonotonicTime start = {})
        : m_start(start)
    {
    }

    bool isOver(Answer buttonHeld, MonotonicTime now);

private:
    MonotonicTime m_start;
    bool m_wasUp = false;
};

} // namespace ostrelle
