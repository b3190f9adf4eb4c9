#include "support/FakeDragSense.h"

namespace ostrelle {

void FakeDragSense::beginDrag()
{
    ++m_changeCount;
    Q_EMIT changed();
}

} // namespace ostrelle
