#include "support/FakePlatform.h"

#include <utility>

namespace ostrelle {

void FakePlatform::loseDisplay()
{
    if (const auto handler = std::exchange(m_displayLost, {})) {
        handler();
    }
}

} // namespace ostrelle
