#include "support/FakePointerNear.h"

namespace ostrelle {

Answer FakePointerNear::isWithin(const QRectF &rect) const
{
    if (!m_position) {
        return Answer::Unknown;
    }
    return rect.contains(*m_position) ? Answer::Yes : Answer::No;
}

void FakePointerNear::moveToScreen(const QString &name)
{
    if (m_screen == name) {
        return;
    }
    m_screen = name;
    if (m_isWatching) {
        Q_EMIT screenChanged(name);
    }
}

void FakePointerNear::forget()
{
    m_position.reset();
    m_screen.reset();
}

} // namespace ostrelle
