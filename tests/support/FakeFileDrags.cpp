#include "support/FakeFileDrags.h"

namespace ostrelle {

void FakeFileDrags::enter(const QPointF &position)
{
    leave();
    m_isOver = true;
    m_position = position;
    Q_EMIT entered(position);
}

void FakeFileDrags::know(const QStringList &paths)
{
    if (m_isOver && (!m_paths || (m_paths->isEmpty() && !paths.isEmpty()))) {
        m_paths = paths.mid(0, kFileLimit);
        Q_EMIT filesKnown(*m_paths);
    }
}

void FakeFileDrags::enter(const QPointF &position, const QStringList &paths)
{
    enter(position);
    know(paths);
}

void FakeFileDrags::moveTo(const QPointF &position)
{
    if (m_isOver) {
        m_position = position;
        Q_EMIT moved(position);
    }
}

void FakeFileDrags::leave()
{
    if (m_isOver) {
        end();
        Q_EMIT left();
    }
}

void FakeFileDrags::drop()
{
    if (!m_isAccepted) {
        leave();
        return;
    }
    know({});
    const QStringList paths = *m_paths;
    end();
    Q_EMIT dropped(m_position, paths);
}

void FakeFileDrags::end()
{
    m_isOver = false;
    m_isAccepted = false;
    m_paths.reset();
}

} // namespace ostrelle
