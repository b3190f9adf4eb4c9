#include "support/FakeDragOut.h"

#include <utility>

namespace ostrelle {

void FakeDragOut::start(QWidget &source, const FileDrag &drag, std::function<void(Outcome)> ended)
{
    if (begin(source, std::move(ended)))
        m_drag = drag;
}

void FakeDragOut::startText(QWidget &source, const TextDrag &drag, std::function<void(Outcome)> ended)
{
    if (begin(source, std::move(ended)))
        m_textDrag = drag;
}

bool FakeDragOut::begin(QWidget &source, std::function<void(Outcome)> ended)
{
    if (m_ended) {
        QMetaObject::invokeMethod(
            &source, [ended = std::move(ended)] { ended(Outcome::Cancelled); }, Qt::QueuedConnection);
        return false;
    }
    m_source = &source;
    m_ended = std::move(ended);
    ++m_count;
    return true;
}

void FakeDragOut::end(Outcome outcome)
{
    if (const auto ended = std::exchange(m_ended, nullptr); ended && m_source) {
        ended(outcome);
    }
}

} // namespace ostrelle
