#include "support/FakeDragOut.h"

#include <utility>

namespace ostrelle {

void FakeDragOut::start(QWidget &source, const FileDrag &drag, std::function<void(Outcome)> ended)
{
    if (m_ended) {
        QMetaObject::invokeMethod(
            &source, [ended = std::move(ended)] { ended(Outcome::Cancelled); }, Qt::QueuedConnection);
        return;
    }
    m_source = &source;
    m_drag = drag;
    m_ended = std::move(ended);
    ++m_count;
}

void FakeDragOut::end(Outcome outcome)
{
    if (const auto ended = std::exchange(m_ended, nullptr); ended && m_source) {
        ended(outcome);
    }
}

} // namespace ostrelle
