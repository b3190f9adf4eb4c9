#include "core/ForegroundSession.h"

namespace ostrelle {

void ForegroundSession::begin()
{
    ++m_depth;
    if (m_depth == 1)
        Q_EMIT foregroundChanged(true);
    Q_EMIT activationRequested();
}

void ForegroundSession::end()
{
    if (m_depth == 0)
        return;
    --m_depth;
    if (m_depth == 0)
        Q_EMIT foregroundChanged(false);
}

} // namespace ostrelle
