#include "support/FakeDragSense.h"

namespace ostrelle {

void FakeDragSense::beginDrag()
{
    ++m_changeCount;
}

} // namespace ostrelle
